// bench_engine KIND COUNT [STORE]: prints the seconds it took.
//   tasks       COUNT small tasks through the engine, handed over in batches of 100, from the hand-over to
//   the last end
//               state at the observer; on a store if one is named. The line before tells how long a state was
//               on its way to the observer, at the 99th percentile, in milliseconds.
//   fill        makes a store of COUNT ended tasks with records of 1,500 bytes
//   list        opens that store and lists its tasks
#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "FetchyardLogical/DownloadTaskManager.h"
#include "FetchyardLogicalHost/EngineHost.h"
#include "ZellClientHostSettings/ClientSettings.h"
#include "ZellTaskKit/DownloadTaskBase.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

using namespace ZellTaskKit;
using Clock = std::chrono::steady_clock;

constexpr std::size_t kBatch = 100;
constexpr std::size_t kRecordSize = 1500;

class Record final : public CDownloadTaskParam
{
public:
    explicit Record(std::size_t size) : text_(size, 'R') {}
    std::string CreateResumeXml() override { return text_; }

private:
    const std::string text_;
};

// Reports its start and its end, and remembers when.
class SmallTask final : public CDownloadTaskBase
{
public:
    explicit SmallTask(std::size_t record_size)
    {
        std::shared_ptr<CDownloadTaskParam> record;
        if (record_size > 0)
            record = std::make_shared<Record>(record_size);
        else
            record = std::make_shared<CDownloadTaskParam>();
        record->SetVal_str_name("Gate 3, 2026-01-31");
        record->SetVal_str_file_path("/exports/2026-01-31/gate-3/");
        record->SetVal_str_plugin_id("fetchyard.c");
        SetDownloadTaskParam(record, false);
    }
    void Exec() override
    {
        told[0] = Clock::now();
        NotifyTaskState(Downloading);
        told[1] = Clock::now();
        NotifyTaskState(Finished);
    }
    bool Stop() override { return true; }
    CDownloadProgress GetProgress() override { return {}; }
    bool Suspend() override { return true; }

    std::array<Clock::time_point, 2> told;
};

// Hears of states where the other plug-ins of a client do: on the notification thread.
class Watch final : public FetchyardBussiness::CDownloadBussinessManagerObserver
{
public:
    explicit Watch(const std::vector<std::shared_ptr<SmallTask>>& tasks)
    {
        for (const auto& task : tasks)
            tasks_.emplace(task->GetGuid(), task.get());
        ways_.reserve(2 * tasks.size());
    }

    void UpdateDownloadBussinessManagerState(const Param& param) override
    {
        const Clock::time_point now = Clock::now();
        const bool is_end = param.state == Finished;
        const std::lock_guard<std::mutex> lock(mutex_);
        ways_.push_back(now - tasks_.at(param.task_guid)->told[is_end ? 1 : 0]);
        ends_ += is_end ? 1 : 0;
        if (ends_ == tasks_.size())
            ended_.notify_all();
    }

    void WaitForTheEnd()
    {
        std::unique_lock<std::mutex> lock(mutex_);
        ended_.wait(lock, [this] { return ends_ == tasks_.size(); });
    }

    double LongestButOnePercent()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        std::sort(ways_.begin(), ways_.end());
        return std::chrono::duration<double, std::milli>(ways_[ways_.size() * 99 / 100]).count();
    }

private:
    std::unordered_map<std::string, SmallTask*> tasks_;
    std::mutex mutex_;
    std::condition_variable ended_;
    std::vector<Clock::duration> ways_;
    std::size_t ends_ = 0;
};

double SecondsSince(Clock::time_point begin)
{
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

bool RunTasks(std::size_t count, std::size_t record_size, bool asks)
{
    std::vector<std::shared_ptr<SmallTask>> tasks;
    for (std::size_t i = 0; i < count; ++i)
        tasks.push_back(std::make_shared<SmallTask>(record_size));
    Watch watch(tasks);
    auto& manager = FetchyardBussiness::CDownloadBussinessManager::Instance();
    auto& engine = FetchyardLogical::CDownloadTaskManager::Instance();
    if (!manager.Init() || !manager.RegisterObserver(&watch))
        return false;
    const Clock::time_point begin = Clock::now();
    for (std::size_t i = 0; i < count; i += kBatch) {
        const auto end = std::min(i + kBatch, count);
        if (asks) {
            // As the business layer does at each hand-over.
            const auto known = engine.GetAllTask();
            engine.SetMaxParallelDownloadNum(known.size() > count ? 1 : 5);
        }
        if (!engine.AddTransferTask({tasks.begin() + static_cast<std::ptrdiff_t>(i),
                                     tasks.begin() + static_cast<std::ptrdiff_t>(end)}))
            return false;
    }
    watch.WaitForTheEnd();
    const double seconds = SecondsSince(begin);
    manager.SyncUnregisterObserver(&watch);
    std::printf("99 of 100 states were with the observer after %.3f ms\n%.6f\n", watch.LongestButOnePercent(),
                seconds);
    return manager.Unit() && FetchyardLogical::StoreTrouble().empty() && FetchyardLogical::CloseTaskStore();
}

bool OpenStore(const std::string& store)
{
    std::string message;
    const bool is_open = FetchyardLogical::OpenTaskStore(store, message);
    if (!message.empty())
        std::fprintf(stderr, "%s\n", message.c_str());
    return is_open;
}

bool ListStored(const std::string& store, std::size_t count)
{
    const Clock::time_point begin = Clock::now();
    if (!OpenStore(store))
        return false;
    const auto tasks = FetchyardLogical::ListTasks();
    std::printf("%.6f\n", SecondsSince(begin));
    return tasks.size() == count && FetchyardLogical::CloseTaskStore();
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 3)
        return 2;
    ZellClientHost::SetClientSettings({});  // as every host does before it starts anything
    const std::string kind = argv[1];
    const auto count = static_cast<std::size_t>(std::atoll(argv[2]));
    const std::string store = argc > 3 ? argv[3] : "";
    bool done = false;
    if (kind == "list")
        done = ListStored(store, count);
    else if (kind == "tasks" || kind == "fill")
        done = (store.empty() || OpenStore(store)) &&
               RunTasks(count, kind == "fill" ? kRecordSize : 0, kind == "tasks");
    return done ? 0 : 1;
}
