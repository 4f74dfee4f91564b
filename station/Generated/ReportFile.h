#pragma once

#include "station/Report/EventTable.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Station {

class EventPictures;

// A whole report on its way into a file, row by row; memory does not grow with the rows. Throws StoreError if
// the file can't be written.
class ReportFile
{
public:
    virtual ~ReportFile() = default;

    // The head comes once, before all rows.
    virtual void AddHead(const std::vector<std::string>& titles,
                         const std::vector<ReportColumn>& columns) = 0;
    virtual void AddRow(const Event& event, const ReportRow& row) = 0;
    // The file is whole only after this.
    virtual void Finish() = 0;
};

// The numbers are those that a client asks with.
enum class ReportFileType { Workbook = 0, Csv = 1, Page = 2, Text = 3 };

// Such as ".csv".
std::string_view SuffixOf(ReportFileType type);
std::string_view ContentTypeOf(std::string_view suffix);

// Opens a new file; what is there already is overwritten. The pictures must outlive the file.
std::unique_ptr<ReportFile> OpenReportFile(ReportFileType type, const std::filesystem::path& path,
                                           PictureMode mode, EventPictures& pictures);

}  // namespace Station
