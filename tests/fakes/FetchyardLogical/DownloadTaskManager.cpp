#include "FetchyardLogical/DownloadTaskManager.h"

#include "fakes/FetchyardLogical/FakeEngine.h"
#include "fakes/Journal.h"
#include "fakes/Script.h"

#include <mutex>
#include <utility>

ZELL_SINGLETON_DEFINE(FetchyardLogical::CDownloadTaskManager)

namespace {

using TransCallback = std::function<std::string(const Zell::Base::Error::ErrorCode&)>;
using Observer = FetchyardLogical::CDownloadTaskManagerObserver;

TransCallback& TheCallback()
{
    static auto* callback = new TransCallback;
    return *callback;
}

std::function<void(const Observer::Param&)>& TheReport()
{
    static auto* report = new std::function<void(const Observer::Param&)>;
    return *report;
}

}  // namespace

namespace FetchyardLogical {

struct CDownloadTaskManager::Core
{
    explicit Core(CDownloadTaskManager& manager)
    {
        TheReport() = [&manager](const Observer::Param& reports) {
            manager.NotifyObservers(&CDownloadTaskManagerObserver::UpdateDownloadTaskManagerState, reports);
        };
    }
};

CDownloadTaskManager::CDownloadTaskManager() : core_(std::make_shared<Core>(*this)) {}

CDownloadTaskManager::~CDownloadTaskManager()
{
    TheReport() = nullptr;
}

bool CDownloadTaskManager::Init()
{
    return fakes::Call("engine Init", "");
}

bool CDownloadTaskManager::Unit()
{
    return fakes::Call("engine Unit", "");
}

void CDownloadTaskManager::SetTransCallback(TransCallback callback)
{
    fakes::Call("SetTransCallback", "");
    TheCallback() = std::move(callback);
}

void CDownloadTaskManager::SetMaxParallelDownloadNum(const int& count)
{
    fakes::Call("SetMaxParallelDownloadNum", std::to_string(count));
}

bool CDownloadTaskManager::AddTransferTask(
    const std::vector<std::shared_ptr<ZellTaskKit::CDownloadTaskBase>>& tasks)
{
    std::string guids;
    for (const auto& task : tasks)
        guids += (guids.empty() ? "" : " ") + task->GetGuid();
    {
        static std::mutex mutex;  // several threads may hand over
        const std::lock_guard<std::mutex> lock(mutex);
        auto& handed_over = fakes::TheScript().handed_over;
        handed_over.insert(handed_over.end(), tasks.begin(), tasks.end());
    }
    return fakes::Call("AddTransferTask", guids);
}

const std::map<unsigned int, std::shared_ptr<ZellTaskKit::CDownloadTaskBase>>&
CDownloadTaskManager::GetAllTask()
{
    fakes::Call("GetAllTask", "");
    return fakes::TheScript().engine_tasks;
}

bool CDownloadTaskManager::SetSensitiveInfoToTask(const std::string& text)
{
    return fakes::Call("SetSensitiveInfoToTask", text);
}

}  // namespace FetchyardLogical

namespace fakes {

void ReportFromEngine(const FetchyardLogical::CDownloadTaskManagerObserver::Param& reports)
{
    FetchyardLogical::CDownloadTaskManager::Instance();
    TheReport()(reports);
}

std::string TextFromCallback(const Zell::Base::Error::ErrorCode& error)
{
    return TheCallback() ? TheCallback()(error) : "no callback";
}

}  // namespace fakes
