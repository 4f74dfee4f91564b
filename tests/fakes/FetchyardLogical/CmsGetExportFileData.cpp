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

fakes::PollAnswer NextPoll()
{
    fakes::Script& script = fakes::TheScript();
    if (script.polls.empty())
        return fakes::PollAnswer();
    fakes::PollAnswer answer = std::move(script.polls.front());
    script.polls.pop_front();
    return answer;
}

std::string Shown(const RequstData& request)
{
    std::string shown = request.str_method + " " + request.str_quern + " " + request.str_request;
    if (request.site_id != 0)
        shown += " site=" + std::to_string(request.site_id);
    return shown;
}

// What a request has beside its three texts, if that is not what a fresh one has.
std::string Addressing(const RequstData& request)
{
    const RequstData fresh;
    std::string shown;
    if (!request.task_id.empty())
        shown += " task=" + request.task_id;
    if (request.pattern != fresh.pattern)
        shown += " pattern=" + std::to_string(request.pattern);
    return shown;
}

// What a failed call leaves: sheets that start nothing anew, with the rows that the caller has left in them.
void LeaveSheetsOfFailure(ExportDataNode& node)
{
    for (ExportSheet& sheet : node.vec_sheets)
        sheet.page_index = 0;
}

}  // namespace

bool CmsGetExportFileData::GetExportFileDataList(CmsGetExportFileData& data, const RequstData& request)
{
    const bool succeeds = fakes::Call("GetExportFileDataList", Shown(request));
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

bool CmsGetExportFileData::GetAllForceLog(CmsGetExportFileData& data, const RequstData& request)
{
    if (!fakes::Call("GetAllForceLog", Shown(request))) {
        data.error_code = fakes::TheScript().force_log_error;
        return false;
    }
    data.export_data_node.file_guid = fakes::TheScript().force_log_guid;
    if (!fakes::TheScript().pages.empty()) {
        // Of a server that takes a stop of its gathering.
        const fakes::PageAnswer answer = NextAnswer();
        data.export_data_node.is_rowcolumn_data = answer.is_rowcolumn_data;
        data.export_data_node.server_genareate_node = answer.server;
    }
    return true;
}

bool CmsGetExportFileData::CircleGetFileState(CmsGetExportFileData& data, const RequstData& request,
                                              bool& failed)
{
    fakes::Call("CircleGetFileState", data.export_data_node.file_guid + " " + Shown(request));
    const fakes::PollAnswer answer = NextPoll();
    failed = answer.failed;
    if (!answer.download.task_id.empty())
        data.export_data_node.server_genareate_node.query_request.task_id = answer.download.task_id;
    if (answer.is_ready)
        data.export_data_node.file_url_list = answer.urls;
    return answer.is_ready;
}

bool CmsGetExportFileData::GetServerFileGenerateState(const RequstData& query, RequstData& download,
                                                      RequstData& delete_cache, bool& failed)
{
    fakes::Call("GetServerFileGenerateState", Shown(query) + Addressing(query));
    const fakes::PollAnswer answer = NextPoll();
    failed = answer.failed;
    if (answer.is_ready) {
        download = answer.download;
        delete_cache = answer.delete_cache;
    }
    return answer.is_ready;
}

bool CmsGetExportFileData::NotifyServerDeleteCacheFile(const RequstData& request)
{
    return fakes::Call("NotifyServerDeleteCacheFile", Shown(request) + Addressing(request));
}

bool CmsGetExportFileData::TakeOperateActionToServer(const RequstData& request)
{
    return fakes::Call("TakeOperateActionToServer", Shown(request));
}

}  // namespace FetchyardLogical
