// What a server makes by itself: reports and gathered logs, asked for until they are there.
#include "FetchyardLogical/CmsGetExportFileData.h"
#include "Log.h"
#include "Report/ServerCall.h"

using Zell::Base::Error::ErrorCode;

namespace FetchyardLogical {

namespace {

constexpr ErrorCode kNotUnderstood(2, ZellNetLink::kModuleAnswer, ZellNetLink::AnswerNotUnderstood);
constexpr ErrorCode kServerGaveUp(2, 20, 3201);

enum class FileState { Working, Ready, Failed, Unknown };

// Who has stopped a server's work knows it: the task that did so sees its own flag at the next turn.
FileState StateIn(ZellNetLink::CRapidJsonProto& answer)
{
    const std::string state = answer.get_v("/State", std::string());
    if (state == "working" || state == "stopped")
        return FileState::Working;
    if (state == "ready")
        return FileState::Ready;
    return state == "failed" ? FileState::Failed : FileState::Unknown;
}

void LogFailure(const char* function, const RequstData& request, const ErrorCode& error)
{
    FETCHYARD_LOGICAL_LOG(4, function, "%s failed with %d/%d", request.str_quern.c_str(), error.iFirstCode,
                          error.iSecondCode);
}

// What a poll gives back for an error: asking goes on, unless that is pointless.
bool EndPoll(const char* function, const RequstData& request, const ErrorCode& error, bool& failed)
{
    LogFailure(function, request, error);
    failed = !details::IsPassing(error);
    if (failed)
        Zell::Base::Error::SetLastError(error);
    return false;
}

// True if the files are there; otherwise error says what is wrong, if anything is.
bool AskForState(const RequstData& request, ZellNetLink::CRapidJsonProto& answer, ErrorCode& error)
{
    error = details::AskServer(request, answer);
    if (details::IsFailure(error))
        return false;
    const FileState state = StateIn(answer);
    if (state == FileState::Failed)
        error = kServerGaveUp;
    if (state == FileState::Unknown)
        error = kNotUnderstood;
    return state == FileState::Ready;
}

// A request that the answer does not name stays as it is.
void ReadRequest(ZellNetLink::CRapidJsonProto& answer, const std::string& path, const RequstData& asked,
                 RequstData& request)
{
    if (answer.get_node_str(path, 0).empty())
        return;
    request = RequstData();
    request.str_method = answer.get_v(path + "/Method", std::string());
    request.str_quern = details::WholeAddress(answer.get_v(path + "/Api", std::string()), asked);
    request.str_request = answer.get_v(path + "/Request", std::string());
    request.site_id = answer.get_int_v(path + "/SiteId", asked.site_id);
    request.pattern = answer.get_int_v(path + "/Pattern", request.pattern);
    request.task_id = answer.get_v(path + "/TaskId", std::string());
    request.pdf_page_size = answer.get_v(path + "/PdfPageSize", request.pdf_page_size);
    request.pdf_page_orintation = answer.get_int_v(path + "/PdfPageOrientation", request.pdf_page_orintation);
}

// The question about a gathering is the request that began it, with its number.
RequstData WithGuid(const RequstData& request, const std::string& guid)
{
    ZellNetLink::CRapidJsonProto condition;
    condition.set_str(request.str_request);
    condition.set_v("/FileGuid", guid);
    RequstData poll = request;
    poll.str_request = condition.get_str(0);
    return poll;
}

bool TellServer(const char* function, const RequstData& request)
{
    ZellNetLink::CRapidJsonProto answer;
    const ErrorCode error = details::AskServer(request, answer);
    if (!details::IsFailure(error))
        return true;
    LogFailure(function, request, error);
    return false;
}

}  // namespace

bool CmsGetExportFileData::GetAllForceLog(CmsGetExportFileData& data, const RequstData& request)
{
    ZellNetLink::CRapidJsonProto answer;
    ExportDataNode& node = data.export_data_node;
    node.file_guid.clear();
    node.file_url_list.clear();
    data.error_code = details::AskServer(request, answer);
    if (!details::IsFailure(data.error_code)) {
        node.file_guid = answer.get_v("/FileGuid", std::string());
        if (node.file_guid.empty())
            data.error_code = kNotUnderstood;
    }
    if (!details::IsFailure(data.error_code))
        return true;
    LogFailure("FetchyardLogical::CmsGetExportFileData::GetAllForceLog", request, data.error_code);
    return false;
}

bool CmsGetExportFileData::CircleGetFileState(CmsGetExportFileData& data, const RequstData& request,
                                              bool& failed)
{
    constexpr char function[] = "FetchyardLogical::CmsGetExportFileData::CircleGetFileState";
    ZellNetLink::CRapidJsonProto answer;
    ExportDataNode& node = data.export_data_node;
    failed = false;
    const bool ready = AskForState(WithGuid(request, node.file_guid), answer, data.error_code);
    if (details::IsFailure(data.error_code))
        return EndPoll(function, request, data.error_code, failed);
    if (!ready)
        return false;
    node.file_url_list.clear();
    const int count = answer.get_cnt("/Files");
    for (int number = 1; number <= count; ++number) {
        const std::string url = answer.get_v("/Files[" + std::to_string(number) + "]", std::string());
        node.file_url_list.push_back(details::WholeAddress(url, request));
    }
    return true;
}

bool CmsGetExportFileData::GetServerFileGenerateState(const RequstData& query, RequstData& download,
                                                      RequstData& delete_cache, bool& failed)
{
    constexpr char function[] = "FetchyardLogical::CmsGetExportFileData::GetServerFileGenerateState";
    ZellNetLink::CRapidJsonProto answer;
    ErrorCode error;
    failed = false;
    const bool ready = AskForState(query, answer, error);
    if (ready) {
        ReadRequest(answer, "/Download", query, download);
        ReadRequest(answer, "/DeleteCache", query, delete_cache);
        if (download.str_quern.empty())
            error = kNotUnderstood;
    }
    return details::IsFailure(error) ? EndPoll(function, query, error, failed) : ready;
}

bool CmsGetExportFileData::NotifyServerDeleteCacheFile(const RequstData& request)
{
    return TellServer("FetchyardLogical::CmsGetExportFileData::NotifyServerDeleteCacheFile", request);
}

bool CmsGetExportFileData::TakeOperateActionToServer(const RequstData& request)
{
    return TellServer("FetchyardLogical::CmsGetExportFileData::TakeOperateActionToServer", request);
}

}  // namespace FetchyardLogical
