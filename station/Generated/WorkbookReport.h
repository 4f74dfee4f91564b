#pragma once

#include "station/Generated/ReportFile.h"

#include <memory>

struct lxw_workbook;
struct lxw_worksheet;
struct lxw_format;

namespace Station {

// A workbook that leaves memory row by row. What does not fit on a sheet goes on on the next one. The first
// kMostPictures rows of a report with embedded pictures have them, as small ones, since they stay in memory
// until the end; the others have the picture's address.
class WorkbookReport final : public ReportFile
{
public:
    static constexpr int kMostPictures = 1000;

    WorkbookReport(const std::filesystem::path& path, PictureMode mode, EventPictures& pictures);
    ~WorkbookReport() override;

    void AddHead(const std::vector<std::string>& titles, const std::vector<ReportColumn>& columns) override;
    void AddRow(const Event& event, const ReportRow& row) override;
    void Finish() override;

private:
    struct Formats;

    void MakeFormats();
    void StartSheet();
    // The next row is one without a picture.
    void SetTextRow();
    void EndSheet();
    void AddCell(std::uint16_t column, CellStyle style, std::string_view text, const Event& event);
    void AddPicture(const Event& event);
    // The library does not tell of a full disk.
    void CheckRoom() const;
    void Check(int code) const;

    const std::filesystem::path path_;
    std::string folder_;  // the library wants it changeable
    const PictureMode mode_;
    EventPictures& pictures_;
    std::vector<std::string> titles_;
    std::vector<ReportColumn> columns_;
    lxw_workbook* book_ = nullptr;
    lxw_worksheet* sheet_ = nullptr;
    std::unique_ptr<Formats> formats_;
    int sheets_ = 0;
    bool has_picture_rows_ = false;
    int pictures_added_ = 0;
    std::uint32_t row_ = 0;  // of the sheet, the next one
    std::uint32_t header_row_ = 0;
    std::int64_t rows_ = 0;  // of the report
};

}  // namespace Station
