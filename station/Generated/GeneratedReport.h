#pragma once

#include "station/Generated/ReportFile.h"
#include "station/Making/Workshop.h"

#include <nlohmann/json_fwd.hpp>

namespace Station {

struct Services;

// What a client asks the station to generate.
struct GeneratedReportRequest
{
    ReportCondition condition;  // without a page
    ReportFileType type = ReportFileType::Workbook;
    // For whoever makes a PDF of the page; the station hands them back.
    std::string page_size = "A4";
    std::int64_t page_orientation = 1;  // 0 landscape
    WorkOrder order;                    // how long the client is kept waiting; nothing else of it
};

// False, with the reason in words, for a member with a wrong value.
bool ReadGeneratedReportRequest(const nlohmann::json& json, GeneratedReportRequest& request,
                                std::string& reason);

// The order to make it; its note is {"PdfPageSize":..,"PdfPageOrientation":..}. The services must outlive the
// workshop.
WorkOrder OrderOf(const GeneratedReportRequest& request, Services& services);

}  // namespace Station
