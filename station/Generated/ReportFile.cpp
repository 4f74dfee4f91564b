#include "station/Generated/ReportFile.h"

#include "station/Generated/HtmlReport.h"
#include "station/Generated/PlainReports.h"
#include "station/Generated/WorkbookReport.h"

#include <array>
#include <utility>

namespace Station {

std::string_view SuffixOf(ReportFileType type)
{
    switch (type) {
        case ReportFileType::Workbook:
            return ".xlsx";
        case ReportFileType::Csv:
            return ".csv";
        case ReportFileType::Page:
            return ".html";
        case ReportFileType::Text:
            break;
    }
    return ".txt";
}

std::string_view ContentTypeOf(std::string_view suffix)
{
    constexpr std::array<std::pair<std::string_view, std::string_view>, 4> kTypes = {
        {{".xlsx", "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet"},
         {".csv", "text/csv; charset=utf-8"},
         {".html", "text/html; charset=utf-8"},
         {".txt", "text/plain; charset=utf-8"}}};
    for (const auto& [known, type] : kTypes)
        if (known == suffix)
            return type;
    return "application/octet-stream";
}

std::unique_ptr<ReportFile> OpenReportFile(ReportFileType type, const std::filesystem::path& path,
                                           PictureMode mode, EventPictures& pictures)
{
    switch (type) {
        case ReportFileType::Workbook:
            return std::make_unique<WorkbookReport>(path, mode, pictures);
        case ReportFileType::Csv:
            return std::make_unique<CsvReport>(path, mode);
        case ReportFileType::Page:
            return std::make_unique<HtmlReport>(path, mode, pictures);
        case ReportFileType::Text:
            break;
    }
    return std::make_unique<TextReport>(path, mode);
}

}  // namespace Station
