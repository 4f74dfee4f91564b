#include "DownloadFixture.h"
#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "FetchyardLogical/DownloadTaskManager.h"
#include "FetchyardLogicalHost/EngineHost.h"
#include "tests/system/StationProcess.h"

#include <nlohmann/json.hpp>

#include <atomic>
#include <map>
#include <mutex>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

using namespace SystemTest;
using FetchyardBussiness::CDownloadBussinessManager;
using FetchyardLogical::CDownloadTaskManager;
using nlohmann::json;

namespace {

constexpr int kRounds = 6;
constexpr int kEnoughLooks = 1000;
constexpr int kSeeds = 3;

// The states of each task, in the order in which they were reported.
struct StatesByTask final : FetchyardBussiness::CDownloadBussinessManagerObserver
{
    void UpdateDownloadBussinessManagerState(const Param& report) override
    {
        const std::lock_guard<std::mutex> lock(mutex);
        states[report.task_guid].push_back(report.state);
    }

    std::mutex mutex;
    std::map<std::string, std::vector<int>> states;
};

// Exports of every branch run while other threads stop, delete, list and ask for progress all the time.
class StationExportThreads : public DownloadFixture
{
protected:
    StationExportThreads() { UseSite(station_.Address()); }

    std::string Export(const std::string& name, const std::string& api, const json& condition, int type,
                       int branch = 0)
    {
        const json request = {{"FileExportPurpose", 0},
                              {"FileExportRequest",
                               {{"FileExportType", branch},
                                {"RequestData",
                                 {{"ExportFileParam",
                                   {{"RequestMethod", "POST"},
                                    {"RequestAPI", api},
                                    {"RequestCondition", condition.dump()},
                                    {"SiteID", 0},
                                    {"DeviceIdList", branch == 4 ? DockFiles() : json::array()}}},
                                  {"WriteFileCondition",
                                   {{"ExportFileName", name},
                                    {"ExportFileType", type},
                                    {"SaveFilePathDir", settings_.save_path + name + "/"}}}}}}}};
        return request.dump();
    }

    static json DockFiles()
    {
        return json::array({{{"DeviceId", 1}, {"FileID", 1001}, {"FileName", "a.jpg"}},
                            {{"DeviceId", 1}, {"FileID", 1002}, {"FileName", "b.jpg"}}});
    }

    std::vector<std::string> Requests(int round)
    {
        const std::string mark = std::to_string(round) + "-";
        const json events = {{"PageIndex", 1}, {"PageSize", 20}, {"Limit", 120}, {"Pictures", "linked"}};
        json generated = events;
        generated["FileType"] = 1;
        generated["ReadyAfterPolls"] = 2;
        const json logs = {{"CameraIds", {1, 2}}, {"ReadyAfterPolls", 2}};
        return {Export(mark + "table", "/api/v1/events/report", events, 1),
                Export(mark + "book", "/api/v1/events/report", events, 0),
                Export(mark + "text", "/api/v1/events/report", events, 3),
                Export(mark + "made", "/api/v1/events/generated-report", generated, 1),
                Export(mark + "logs", "/api/v1/logs/gather", logs, 3, 3),
                Export(mark + "dock", "", json::object(), 3, 4)};
    }

    // Looks at tasks without end, and once in a while stops or deletes one.
    void Meddle(unsigned int seed)
    {
        std::mt19937 random(seed);
        while (!ended_) {
            const auto tasks = FetchyardLogical::ListTasks();
            if (tasks.empty())
                continue;
            const std::string& guid = tasks[random() % tasks.size()].guid;
            const unsigned int what = random() % 600;
            if (what == 0)
                FetchyardLogical::StopTask(guid);
            else if (what == 1)
                FetchyardLogical::DeleteTask(guid);
            for (const auto& [number, task] : CDownloadTaskManager::Instance().GetAllTask())
                EXPECT_LT(task->GetProgress().GetVal_finished_size(), 100000U) << number;
            ++looks_;
        }
    }

    void RunRounds(CDownloadBussinessManager& manager)
    {
        for (const int end = rounds_ + kRounds; rounds_ < end; ++rounds_) {
            std::vector<std::string> guids;
            EXPECT_TRUE(manager.AddDownloadCommTask(guids, Requests(rounds_)));
            guids_.insert(guids.begin(), guids.end());
        }
        EXPECT_TRUE(FetchyardLogical::WaitUntilIdle(std::chrono::minutes(5)));
    }

    void RunAll()
    {
        auto& manager = CDownloadBussinessManager::Instance();
        ASSERT_TRUE(manager.Init());
        manager.RegisterObserver(&observer_);
        std::vector<std::thread> meddlers;
        for (unsigned int seed = 1; seed <= kSeeds; ++seed)
            meddlers.emplace_back([this, seed] { Meddle(seed); });
        // Where exports outrun the others, there are more of them.
        do
            RunRounds(manager);
        while (looks_ <= kEnoughLooks && !HasFailure());
        ended_ = true;
        for (std::thread& meddler : meddlers)
            meddler.join();
        manager.SyncUnregisterObserver(&observer_);
        manager.Unit();
    }

    // 4 finished, 5 failed, 6 stopped, 200 deleted.
    static bool IsEnd(int state) { return state >= 4; }

    StationProcess station_;
    StatesByTask observer_;
    std::set<std::string> guids_;
    int rounds_ = 0;
    std::atomic<bool> ended_{false};
    std::atomic<int> looks_{0};
};

}  // namespace

TEST_F(StationExportThreads, ExportsThatOthersStopAndDeleteEndInOneStateEach)
{
    RunAll();
    EXPECT_EQ(guids_.size(), 6U * static_cast<unsigned int>(rounds_));
    EXPECT_EQ(observer_.states.size(), guids_.size());
    EXPECT_GT(looks_, kEnoughLooks);
    std::map<int, int> ends;
    for (const auto& [guid, states] : observer_.states) {
        EXPECT_EQ(guids_.count(guid), 1U) << guid;
        std::set<int> different;
        for (const int state : states)
            if (IsEnd(state))
                different.insert(state);
        ASSERT_EQ(different.size(), 1U) << guid << " " << testing::PrintToString(states);
        ++ends[*different.begin()];
    }
    EXPECT_EQ(ends.count(5), 0U) << "nothing fails here";
    RecordProperty("ends", testing::PrintToString(ends));
}
