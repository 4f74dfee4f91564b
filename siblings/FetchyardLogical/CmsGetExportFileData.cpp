#include "FetchyardLogical/CmsGetExportFileData.h"

#include "Engine/Engine.h"
#include "Log.h"
#include "Report/PageParser.h"
#include "Report/PictureKeys.h"
#include "Report/ServerCall.h"
#include "ZellNetLink/RapidJsonProto.h"
#include "ZellPictureLoaderHost/WarmUp.h"

#include <cstdlib>
#include <exception>
#include <string_view>
#include <utility>

using Zell::Base::Error::ErrorCode;

namespace FetchyardLogical {

namespace {

// A page that can't be held in memory fails like one that can't be read; it must not end the task in between.
ErrorCode FetchPage(const RequstData& request, details::ReportPage& page)
{
    try {
        ZellNetLink::HttpResponse answer = details::CallServer(request);
        if (details::IsFailure(answer.error))
            return answer.error;
        return details::ParseReportPage(answer.body, request.site_id, page);
    } catch (const std::exception& error) {
        FETCHYARD_LOGICAL_LOG(5, "FetchyardLogical::FetchPage", "exception: %s", error.what());
        return ErrorCode(2, ZellNetLink::kModuleAnswer, ZellNetLink::AnswerNotUnderstood);
    }
}

// By the rule with which the page in a request text is rewritten: the number behind the first key.
bool AsksForFirstPage(const std::string& request)
{
    constexpr std::string_view key = "\"PageIndex\":";
    const std::size_t found = request.find(key);
    return found != std::string::npos && std::strtol(request.c_str() + found + key.size(), nullptr, 10) == 1;
}

// What is left for the write that closes the report: sheets that neither start it anew nor add to it.
void LeaveWithoutRows(ExportDataNode& node, const std::string& request)
{
    if (AsksForFirstPage(request))
        node.vec_sheets.clear();
    for (ExportSheet& sheet : node.vec_sheets) {
        sheet.vec_rows.clear();
        if (sheet.page_index == 1)
            sheet.page_index = 0;
    }
}

void Deliver(details::ReportPage&& page, ExportDataNode& node)
{
    node.is_rowcolumn_data = page.is_rowcolumn_data;
    node.file_total_page_is_finished = page.is_last;
    node.vec_sheets = std::move(page.sheets);
    if (!page.is_rowcolumn_data)
        node.server_genareate_node = std::move(page.server);
}

}  // namespace

bool CmsGetExportFileData::GetExportFileDataList(CmsGetExportFileData& data, const RequstData& request)
{
    details::ReportPage page;
    data.error_code = FetchPage(request, page);
    if (details::IsFailure(data.error_code)) {
        FETCHYARD_LOGICAL_LOG(4, "FetchyardLogical::CmsGetExportFileData::GetExportFileDataList",
                              "%s failed with %d/%d", request.str_quern.c_str(), data.error_code.iFirstCode,
                              data.error_code.iSecondCode);
        LeaveWithoutRows(data.export_data_node, request.str_request);
        return false;
    }
    Deliver(std::move(page), data.export_data_node);
    details::Engine::CountPage();
    const auto keys = details::PictureKeys(data.export_data_node);
    if (!keys.empty())
        ZellPictureLoader::WarmPictures(keys);
    return true;
}

bool CmsGetExportFileData::TakeOperateActionToServer(const RequstData& request)
{
    const ZellNetLink::HttpResponse answer = details::CallServer(request);
    ErrorCode error = answer.error;
    if (!details::IsFailure(error) && !answer.body.empty()) {
        ZellNetLink::CRapidJsonProto json;
        error = json.set_str(answer.body)
                    ? ErrorCode(json.get_int_v("/ErrorModule", 0), json.get_int_v("/ErrorCode", 0))
                    : ErrorCode(2, ZellNetLink::kModuleAnswer, ZellNetLink::AnswerNotUnderstood);
    }
    if (!details::IsFailure(error))
        return true;
    FETCHYARD_LOGICAL_LOG(4, "FetchyardLogical::CmsGetExportFileData::TakeOperateActionToServer",
                          "%s failed with %d/%d", request.str_quern.c_str(), error.iFirstCode,
                          error.iSecondCode);
    return false;
}

}  // namespace FetchyardLogical
