#include "station/Generated/GeneratedReport.h"

#include "station/Making/Polls.h"
#include "station/Report/EventQuery.h"
#include "station/Services.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace Station {
namespace {

constexpr std::size_t kLongestPageSize = 32;

// It goes into the command line of whoever makes the PDF, unquoted.
bool IsPageSize(const std::string& text)
{
    return !text.empty() && text.size() <= kLongestPageSize &&
           std::all_of(text.begin(), text.end(), [](char letter) {
               return (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z') ||
                      (letter >= '0' && letter <= '9');
           });
}

void MakeReport(const GeneratedReportRequest& request, Services& services, const std::filesystem::path& path,
                WorkProgress& progress)
{
    const Store::Loan database = services.store.Borrow();
    const auto file = OpenReportFile(request.type, path, request.condition.pictures, services.pictures);
    file->AddHead(TitlesOf(request.condition, CountEvents(*database, request.condition)),
                  ColumnsOf(request.condition.pictures));
    ReadEvents(*database, request.condition, [&](const Event& event) {
        file->AddRow(event, ReportRow(event, ++progress.rows));
        return !progress.is_unwanted;
    });
    file->Finish();
}

}  // namespace

bool ReadGeneratedReportRequest(const nlohmann::json& json, GeneratedReportRequest& request,
                                std::string& reason)
{
    std::int64_t type = -1;
    if (!ReadWholeCondition(json, request.condition, reason) ||
        !ReadNumber(json, "FileType", 0, 3, type, reason) ||
        !ReadText(json, "PdfPageSize", request.page_size, reason) ||
        !ReadNumber(json, "PdfPageOrientation", 0, 1, request.page_orientation, reason) ||
        !ReadPolls(json, request.order, reason))
        return false;
    if (type < 0) {
        reason = "FileType is missing.";
        return false;
    }
    if (!IsPageSize(request.page_size)) {
        reason = "PdfPageSize must be letters and digits, such as A4.";
        return false;
    }
    request.type = static_cast<ReportFileType>(type);
    return true;
}

WorkOrder OrderOf(const GeneratedReportRequest& request, Services& services)
{
    WorkOrder order = request.order;
    order.suffix = SuffixOf(request.type);
    order.note = nlohmann::ordered_json{{"PdfPageSize", request.page_size},
                                        {"PdfPageOrientation", request.page_orientation}}
                     .dump();
    order.make = [request, &services](const std::filesystem::path& path, WorkProgress& progress) {
        MakeReport(request, services, path, progress);
    };
    return order;
}

}  // namespace Station
