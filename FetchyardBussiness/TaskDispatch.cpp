#include "FetchyardBussiness/TaskDispatch.h"

#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardLogical/DownloadTaskManager.h"

#include <map>

namespace FetchyardBussiness::details {

using FetchyardLogical::CDownloadTaskManager;
using ZellTaskKit::CDownloadTaskBase;

namespace {

constexpr int kParallelTasks = 5;
constexpr int kParallelTasksWithOverlay = 1;

// The ends of an upload to evidence do not count as ended here.
bool HasEnded(ZellTaskKit::DownloadState state)
{
    return state == ZellTaskKit::Finished || state == ZellTaskKit::Failed || state == ZellTaskKit::Stopped;
}

bool IsOverlayExportPending()
{
    const std::map<unsigned int, std::shared_ptr<CDownloadTaskBase>> tasks =
        CDownloadTaskManager::Instance().GetAllTask();
    for (const auto& [number, task] : tasks) {
        if (!task || HasEnded(task->GetDownloadState()))
            continue;
        const auto composite = std::dynamic_pointer_cast<CDeterminantWriteFileTask>(task);
        if (composite && composite->HasInfoOverlayVideo())
            return true;
    }
    return false;
}

}  // namespace

bool DispatchTasks(const std::vector<std::shared_ptr<CDownloadTaskBase>>& tasks)
{
    const int limit = IsOverlayExportPending() ? kParallelTasksWithOverlay : kParallelTasks;
    CDownloadTaskManager::Instance().SetMaxParallelDownloadNum(limit);
    return CDownloadTaskManager::Instance().AddTransferTask(tasks);
}

}  // namespace FetchyardBussiness::details
