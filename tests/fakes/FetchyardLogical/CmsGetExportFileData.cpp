#include "FetchyardLogical/CmsGetExportFileData.h"

#include "fakes/Journal.h"
#include "fakes/Script.h"

#include <utility>

namespace FetchyardLogical {
namespace {

constexpr Zell::Base::Error::ErrorCode kNoAnswerLeft(99, 99);

fakes::PageAnswer NextAnswer()
{
    fakes::Script& script = fakes::TheScript();
    if (script.page_source)
        return script.page_source();
    if (script.pages.empty()) {
        fakes::Append("no page answer left");
        fakes::PageAnswer answer;
        answer.ok = false;
        answer.error = kNoAnswerLeft;
        return answer;
    }
    fakes::PageAnswer answer = std::move(script.pages.front());
    script.pages.pop_front();
    return answer;
}

// What a failed call leaves: sheets without rows that start nothing anew.
void LeaveSheetsOfFailure(ExportDataNode& node)
{
    for (ExportSheet& sheet : node.vec_sheets) {
        sheet.vec_rows.clear();
        sheet.page_index = 0;
    }
}

}  // namespace

bool CmsGetExportFileData::GetExportFileDataList(CmsGetExportFileData& data, const RequstData& request)
{
    std::string shown = request.str_method + " " + request.str_quern + " " + request.str_request;
    if (request.site_id != 0)
        shown += " site=" + std::to_string(request.site_id);
    const bool succeeds = fakes::Call("GetExportFileDataList", shown);
    fakes::PageAnswer answer = NextAnswer();
    if (!succeeds || !answer.ok) {
        data.error_code = answer.error;
        LeaveSheetsOfFailure(data.export_data_node);
        return false;
    }
    ExportDataNode& node = data.export_data_node;
    node.is_rowcolumn_data = answer.is_rowcolumn_data;
    node.file_total_page_is_finished = answer.is_last;
    node.vec_sheets = std::move(answer.sheets);
    node.server_genareate_node = std::move(answer.server);
    return true;
}

bool CmsGetExportFileData::TakeOperateActionToServer(const RequstData& request)
{
    return fakes::Call("TakeOperateActionToServer",
                       request.str_method + " " + request.str_quern + " " + request.str_request);
}

}  // namespace FetchyardLogical
