#include "FetchyardLogical/DownloadTaskManager.h"

#include "Engine/Engine.h"
#include "SensitiveAccount.h"
#include "ZellBase/Leaving.h"
#include "ZellBaseHost/PerThread.h"

#include <atomic>
#include <utility>

ZELL_SINGLETON_DEFINE(FetchyardLogical::CDownloadTaskManager)

namespace FetchyardLogical {

namespace {

// The snapshot that this thread was given last: its reference stays good although newer ones exist.
std::shared_ptr<const details::TaskMap>& PinnedSnapshot()
{
    using Snapshot = std::shared_ptr<const details::TaskMap>;
    static const auto& pinned = *new Zell::Base::details::CPerThread<Snapshot>();
    return pinned.Value();
}

}  // namespace

// What the engine's threads hold of the manager. The manager goes with the statics of the process, perhaps
// before those threads, and leaves the link behind empty; it joins nothing then.
struct CDownloadTaskManager::Core final : public details::IReportSink
{
    explicit Core(CDownloadTaskManager* manager) : owner(manager) {}

    void OnReports(const details::Reports& reports) override
    {
        if (CDownloadTaskManager* const manager = owner.load())
            manager->NotifyObservers(&CDownloadTaskManagerObserver::UpdateDownloadTaskManagerState, reports);
    }

    std::atomic<CDownloadTaskManager*> owner;
    const std::shared_ptr<details::Engine> engine = details::Engine::Shared();
};

CDownloadTaskManager::CDownloadTaskManager() : core_(std::make_shared<Core>(this))
{
    core_->engine->SetSink(core_);
}

CDownloadTaskManager::~CDownloadTaskManager()
{
    core_->owner = nullptr;
}

bool CDownloadTaskManager::Init()
{
    return core_->engine->Init();
}

bool CDownloadTaskManager::Unit()
{
    // A thread that is held back for good can't be waited for.
    if (Zell::Base::details::IsProcessLeaving() || !core_->engine->Unit())
        return false;
    PinnedSnapshot().reset();
    return true;
}

void CDownloadTaskManager::SetTransCallback(
    std::function<std::string(const Zell::Base::Error::ErrorCode&)> callback)
{
    core_->engine->SetTextCallback(std::move(callback));
}

void CDownloadTaskManager::SetMaxParallelDownloadNum(const int& count)
{
    core_->engine->SetLimit(count);
}

bool CDownloadTaskManager::AddTransferTask(
    const std::vector<std::shared_ptr<ZellTaskKit::CDownloadTaskBase>>& tasks)
{
    return core_->engine->Add(tasks);
}

const std::map<unsigned int, std::shared_ptr<ZellTaskKit::CDownloadTaskBase>>&
CDownloadTaskManager::GetAllTask()
{
    auto& pinned = PinnedSnapshot();
    pinned = core_->engine->Snapshot();
    return *pinned;
}

bool CDownloadTaskManager::SetSensitiveInfoToTask(const std::string& text)
{
    return details::StoreSensitiveAccount(text);
}

}  // namespace FetchyardLogical
