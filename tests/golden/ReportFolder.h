#pragma once

#include "FetchyardBussiness/DeterminantWriteFile/ReportExportObject.h"
#include "Reports.h"
#include "tests/unit/TempFolder.h"

#include <filesystem>
#include <string>

namespace golden {

// A folder of a test's own in which the libraries work, with "out/" for reports.
class ReportFolder
{
public:
    ReportFolder();

    // UTF-8, with a final "/".
    std::string Out() const { return folder_.File("out/"); }
    std::filesystem::path Path(const std::string& below) const { return folder_.Path() / below; }
    // Hands the report over page by page, as an export does; a page that is refused ends it. The number of
    // pages that were taken.
    std::size_t Write(FetchyardBussiness::CExportReportDataToFileObject& writer, int type,
                      Report report) const;

private:
    const TempFolder folder_;
};

// The whole content of a file; empty if there is none.
std::string Content(const std::filesystem::path& path);

}  // namespace golden
