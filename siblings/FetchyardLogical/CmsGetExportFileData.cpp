#include "FetchyardLogical/CmsGetExportFileData.h"

#include "Engine/Engine.h"
#include "Log.h"
#include "Report/NextPage.h"
#include "Report/PageCall.h"
#include "Report/PageParser.h"
#include "Report/PictureKeys.h"
#include "Report/ServerCall.h"
#include "ZellPictureLoaderHost/WarmUp.h"

#include <exception>
#include <utility>

using Zell::Base::Error::ErrorCode;

namespace FetchyardLogical {

namespace {

// A page that can't be held in memory fails like one that can't be read; it must not end the task in between.
ErrorCode FetchPage(const RequstData& request, details::ReportPage& page)
{
    try {
        ZellNetLink::HttpResponse answer = details::CallForPage(request);
        if (details::IsFailure(answer.error))
            return answer.error;
        return details::ParseReportPage(answer.body, request.site_id, page);
    } catch (const std::exception& error) {
        FETCHYARD_LOGICAL_LOG(5, "FetchyardLogical::FetchPage", "exception: %s", error.what());
        return ErrorCode(2, ZellNetLink::kModuleAnswer, ZellNetLink::AnswerNotUnderstood);
    }
}

// What is left for the write that closes the report: sheets that neither start it anew nor add to it.
void LeaveWithoutRows(ExportDataNode& node, const std::string& request)
{
    if (details::PageInRequest(request) == 1)
        node.vec_sheets.clear();
    for (ExportSheet& sheet : node.vec_sheets) {
        sheet.vec_rows.clear();
        if (sheet.page_index == 1)
            sheet.page_index = 0;
    }
}

// What the requests are copied into later has no site.
void MakeWhole(ServerGenerateNode& server, const RequstData& asked)
{
    for (RequstData* request : {&server.query_request, &server.download_request, &server.delete_cache_request,
                                &server.operate_request})
        request->str_quern = details::WholeAddress(request->str_quern, asked);
}

void Deliver(details::ReportPage&& page, const RequstData& asked, ExportDataNode& node)
{
    node.is_rowcolumn_data = page.is_rowcolumn_data;
    node.file_total_page_is_finished = page.is_last;
    node.vec_sheets = std::move(page.sheets);
    if (page.is_rowcolumn_data)
        return;
    node.server_genareate_node = std::move(page.server);
    MakeWhole(node.server_genareate_node, asked);
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
    if (page.is_rowcolumn_data && !page.is_last)
        details::FetchNextPageAhead(request);
    Deliver(std::move(page), request, data.export_data_node);
    details::Engine::CountPage();
    const auto keys = details::PictureKeys(data.export_data_node);
    if (!keys.empty())
        ZellPictureLoader::WarmPictures(keys);
    return true;
}

}  // namespace FetchyardLogical
