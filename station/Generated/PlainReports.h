#pragma once

#include "station/Generated/OutputFile.h"
#include "station/Generated/ReportFile.h"

namespace Station {

// Comma-separated, as RFC 4180 has it, in UTF-8 with a byte-order mark: without one Excel reads the local
// code page. The columns' names and the rows, and no titles: programs read it.
class CsvReport final : public ReportFile
{
public:
    CsvReport(const std::filesystem::path& path, PictureMode mode);

    void AddHead(const std::vector<std::string>& titles, const std::vector<ReportColumn>& columns) override;
    void AddRow(const Event& event, const ReportRow& row) override;
    void Finish() override;

private:
    void AddCell(std::string_view text, bool is_first);

    const bool has_pictures_;
    OutputFile file_;
};

// One line a row, cells apart by tabs; a tab or a line end inside of a text becomes a blank.
class TextReport final : public ReportFile
{
public:
    TextReport(const std::filesystem::path& path, PictureMode mode);

    void AddHead(const std::vector<std::string>& titles, const std::vector<ReportColumn>& columns) override;
    void AddRow(const Event& event, const ReportRow& row) override;
    void Finish() override;

private:
    void AddCell(std::string_view text, bool is_first);

    const bool has_pictures_;
    OutputFile file_;
};

}  // namespace Station
