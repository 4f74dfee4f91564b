#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/ErrorText.h"
#include "FetchyardBussiness/Log.h"
#include "FetchyardBussiness/ShortVideo/StoredObject.h"

namespace FetchyardBussiness {

using FetchyardLogical::CmsGetExportFileData;

namespace {

constexpr int kMostPolls = 299;  // about five minutes

// What stands behind the last "/".
std::string NameInUrl(const std::string& url)
{
    return url.substr(url.rfind('/') + 1);
}

}  // namespace

// The server gathers its logs first, and then they are fetched one by one. The run ends here.
void CDeterminantWriteFileTask::FetchForceLogs(Run& run)
{
    CmsGetExportFileData::GetAllForceLog(data_condition_, run.requset);
    server_side_.Publish(data_condition_.export_data_node);
    if (data_condition_.export_data_node.file_guid.empty()) {
        LogInfo("data_condition_.export_data_node.file_guid is null ");
        Zell::Base::Error::SetLastError(data_condition_.error_code);
        Notify(run, ZellTaskKit::Failed);
        return;
    }
    bool ready = false;
    const auto ask = [&](bool& failed) {
        const bool is_ready = CmsGetExportFileData::CircleGetFileState(data_condition_, run.requset, failed);
        server_side_.Publish(data_condition_.export_data_node);
        return is_ready;
    };
    if (PollServer(kMostPolls, ask, ready) && !EndsAfterPolling(run, ready))
        FetchLogFiles();
}

// These states are the plain ones, for an evidence export too.
void CDeterminantWriteFileTask::FetchLogFiles()
{
    const ExportDataNode& page = data_condition_.export_data_node;
    bool all_fetched = true;
    for (const std::string& url : page.file_url_list) {
        const std::string target = page.file_save_path + NameInUrl(url);
        all_fetched = all_fetched && DonloadFileFromOXTLocalStorage(kUploadFile, target, url, kLocalStorage);
    }
    NotifyTaskState(all_fetched ? ZellTaskKit::Finished : ZellTaskKit::Failed);
}

}  // namespace FetchyardBussiness
