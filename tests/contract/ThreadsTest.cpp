#include "fakes/FetchyardLogical/FakeEngine.h"
#include "fakes/ZellBase/FakeMessageLoop.h"
#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "support/ExportTest.h"
#include "support/PersonTest.h"
#include "support/VideoTest.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace contract {
namespace {

using FetchyardBussiness::CDownloadBussinessManager;
using FetchyardBussiness::CDownloadBussinessManagerObserver;
using ZellTaskKit::CTaskCallbackParam;

constexpr int kRuns = 150;

// The states of one run, whichever thread reports them.
class StateList final : public ZellTaskKit::ITaskHost
{
public:
    void OnTaskState(const CTaskCallbackParam& report) override
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        states_.push_back(report.GetVal_state());
    }
    void OnTaskParamChanged(const std::string&) override {}

    std::vector<int> Take()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        return std::exchange(states_, {});
    }

private:
    std::mutex mutex_;
    std::vector<int> states_;
};

// Threads that do one thing again and again until the object goes.
class Pollers
{
public:
    ~Pollers()
    {
        ended_ = true;
        for (std::thread& thread : threads_)
            thread.join();
    }

    template <typename Action>
    void Add(Action action)
    {
        threads_.emplace_back([this, action] {
            while (!ended_) {
                action();
                std::this_thread::yield();
            }
        });
    }

private:
    std::atomic<bool> ended_{false};
    std::vector<std::thread> threads_;
};

class ThreadsTest : public VideoTest
{
protected:
    ThreadsTest()
    {
        fakes::SetRecording(false);
        Settings().str_request_api = "/api";
        for (const char* const name : {"a.jpg", "b.jpg", "c.jpg"})
            AddPicture(name, std::string("/p/") + name);
        task_->SetDownloadTaskParam(record_, false);
        task_->SetTaskHost(&states_);
        fakes::TheScript().page_source = [this] {
            ++page_;
            return Page(Sheet(page_, {{"a"}, {"b"}}), page_ == 5);
        };
    }

    ~ThreadsTest() override { task_->SetTaskHost(nullptr); }

    // Everything that is asked of a running task, from threads of their own.
    void Watch(Pollers& pollers)
    {
        pollers.Add([this] { task_->GetProgress(); });
        pollers.Add([this] {
            task_->GetCommData();
            task_->SetCommonData("text of a host");
            task_->GetDownloadState();
            task_->HasInfoOverlayVideo();
            task_->Suspend();
        });
    }

    // One run in which the request comes from another thread, at a moment that moves from run to run.
    template <typename Request>
    std::vector<int> RunAgainst(int number, Request request)
    {
        page_ = 0;
        Settings().file_total_page_is_finished = false;
        Settings().restart_is_need_download = false;
        Settings().file_current_page = 1;
        Settings().is_server_data_to_write = true;
        for (auto& picture : Settings().vec_image_download)
            picture.is_has_download = false;
        for (auto& video : Settings().vec_video_download)
            video.is_has_download = false;
        std::atomic<bool> now{false};
        const std::string& operation = operations_[static_cast<std::size_t>(number) % operations_.size()];
        fakes::OnCall(operation, fakes::CountOf(operation) + 1, [&now] { now = true; });
        std::thread requester([&now, &request] {
            while (!now)
                std::this_thread::yield();
            request();
        });
        task_->Exec();
        now = true;
        requester.join();
        return states_.Take();
    }

    template <typename Request>
    void ExpectOneEndOf(const std::set<int>& ends, Request request)
    {
        Pollers pollers;
        Watch(pollers);
        for (int number = 0; number < kRuns; ++number) {
            const std::vector<int> states = RunAgainst(number, request);
            ASSERT_EQ(states.size(), states_between_.size() + 2) << "run " << number;
            EXPECT_EQ(states.front(), 1);
            EXPECT_TRUE(std::equal(states_between_.begin(), states_between_.end(), states.begin() + 1));
            EXPECT_EQ(ends.count(states.back()), 1U) << "run " << number << " ends in " << states.back();
        }
    }

    // The server is ready at the fourth question of each run.
    static void AnswerPolls()
    {
        fakes::PollAnswer ready;
        ready.is_ready = true;
        ready.urls = {"/l/a.log", "/l/b.log"};
        ready.download.str_quern = "/file";
        fakes::TheScript().polls = {{}, {}, {}, ready};
    }

    StateList states_;
    int page_ = 0;                     // of the thread that runs the task
    std::vector<int> states_between_;  // the first state and the last
    // The calls at which a request may come in.
    std::vector<std::string> operations_ = {"DirectoryExists",    "SyncLoadImage", "GetExportFileDataList",
                                            "csv open",           "csv line",      "csv write",
                                            "csv open to append", "csv close"};
};

TEST_F(ThreadsTest, StopAndDeleteOfAGeneratedReportEndInOneState)
{
    operations_ = {"GetExportFileDataList", "ZC_Sleep", "GetServerFileGenerateState", "ClientSynSend",
                   "NotifyServerDeleteCacheFile"};
    fakes::TheScript().page_source = [] {
        AnswerPolls();
        fakes::PageAnswer page;
        page.is_rowcolumn_data = false;
        page.server.operate_request.str_quern = "/operate";
        return page;
    };
    ExpectOneEndOf({4, 6}, [this] { task_->Stop(); });
    ExpectOneEndOf({4, 200}, [this] { task_->Delete(); });
}

TEST_F(ThreadsTest, StopAndDeleteOfGatheredLogsEndInOneState)
{
    Settings().file_operate_type = FetchyardBussiness::kForceLogExport;
    operations_ = {"ZC_Sleep", "CircleGetFileState", "DownloadFile"};
    for (int number = 0; number < kRuns; ++number) {
        Pollers pollers;
        Watch(pollers);
        AnswerPolls();
        const bool stops = number % 2 == 0;
        const std::vector<int> states =
            RunAgainst(number, [this, stops] { stops ? task_->Stop() : task_->Delete(); });
        ASSERT_EQ(states.size(), 2U);
        EXPECT_TRUE(states.back() == 4 || states.back() == (stops ? 6 : 200)) << states.back();
    }
}

TEST_F(ThreadsTest, StopAndDeleteOfVideosEndInOneState)
{
    Settings().vec_image_download.clear();
    Settings().str_request_api = "";
    Stamp(AddVideo("one"));
    Stamp(AddVideo("two", 1));
    AddVideo("three");
    operations_ = {"GetPluginHandle", "StartDownloadVideoFile", "StartCovert", "Translate", "RenameFile"};
    states_between_ = {13, 14};
    ExpectOneEndOf({4, 6}, [this] { task_->Stop(); });
    ExpectOneEndOf({4, 200}, [this] { task_->Delete(); });
}

TEST_F(ThreadsTest, StopAtAnyMomentEndsInOneState)
{
    ExpectOneEndOf({4, 6}, [this] { task_->Stop(); });
}

TEST_F(ThreadsTest, DeleteAtAnyMomentEndsInOneState)
{
    ExpectOneEndOf({4, 200}, [this] { task_->Delete(); });
}

TEST_F(ThreadsTest, StopAndDeleteTogetherEndInOneState)
{
    ExpectOneEndOf({4, 6, 200}, [this] {
        std::thread other([this] { task_->Stop(); });
        task_->Delete();
        other.join();
    });
}

TEST_F(ThreadsTest, StopOfAnExportWithFailedItemsEndsInOneState)
{
    Settings().is_continue_dowinloading = true;
    fakes::TheScript().pictures["/p/b.jpg"] = {{21, 404}, ""};
    ExpectOneEndOf({5, 6}, [this] { task_->Stop(); });
}

TEST_F(ThreadsTest, StopDuringFailingPageCallsEndsInOneState)
{
    fakes::TheScript().page_source = [this] {
        ++page_;
        return page_ < 3 ? Page(Sheet(page_, {{"a"}}), false) : FailedPage(22, 56);
    };
    ExpectOneEndOf({5, 6}, [this] { task_->Stop(); });
}

TEST_F(ThreadsTest, StopReachesAWorkbookThatCannotBeMade)
{
    Settings().export_file_type = FetchyardBussiness::kExcelReport;
    fakes::FailCalls("xlsx init", 1, -1);
    Pollers pollers;
    Watch(pollers);
    for (int number = 0; number < 50; ++number) {
        page_ = 0;
        Settings().file_total_page_is_finished = false;
        std::atomic<bool> now{false};
        fakes::OnCall("xlsx init", fakes::CountOf("xlsx init") + 3, [&now] { now = true; });
        std::thread requester([this, &now] {
            while (!now)
                std::this_thread::yield();
            task_->Stop();
        });
        task_->Exec();
        requester.join();
        EXPECT_EQ(states_.Take(), (std::vector<int>{1, 6}));
    }
}

TEST_F(ThreadsTest, StopLooksAtAServersAnswerWhileTheNextOneArrives)
{
    fakes::TheScript().page_source = [this] {
        ++page_;
        fakes::PageAnswer page = Page(Sheet(page_, {{"a"}}), false);
        if (page_ == 3) {
            page.is_rowcolumn_data = false;
            page.server.query_request.task_id = "task of the server";
            page.server.operate_request.str_quern = "/operate";
        }
        return page;
    };
    Pollers pollers;
    Watch(pollers);
    for (int number = 0; number < kRuns; ++number) {
        const std::vector<int> states = RunAgainst(number, [this] {
            task_->Stop();
            task_->Delete();
        });
        ASSERT_EQ(states.size(), 2U);
        EXPECT_EQ(states.front(), 1);
    }
}

TEST_F(ThreadsTest, AccountMayBeRenewedBetweenRunsWhileOthersWatch)
{
    Pollers pollers;
    Watch(pollers);
    for (int number = 0; number < kRuns; ++number) {
        EXPECT_TRUE(task_->SetAccountInforToRequest());
        EXPECT_EQ(RunAgainst(number, [] {}), (std::vector<int>{1, 4}));
    }
}

TEST_F(ThreadsTest, ObserversComeAndGoWhileStatesArrive)
{
    struct Counter final : CDownloadBussinessManagerObserver
    {
        void UpdateDownloadBussinessManagerState(const Param&) override { ++count; }
        std::atomic<int> count{0};
    };
    CDownloadBussinessManager& manager = CDownloadBussinessManager::Instance();
    manager.Init();
    Counter steady;
    manager.RegisterObserver(&steady);
    {
        Pollers pollers;
        for (int thread = 0; thread < 2; ++thread) {
            pollers.Add([&manager] {
                Counter visitor;
                manager.RegisterObserver(&visitor);
                manager.AsyncUnregisterObserver(&visitor);
            });
        }
        for (int number = 0; number < kRuns; ++number) {
            fakes::ReportFromEngine({CTaskCallbackParam("a", ZellTaskKit::Downloading, {})});
            fakes::RunPosted();
        }
    }
    EXPECT_EQ(steady.count, kRuns);
    manager.SyncUnregisterObserver(&steady);
    manager.Unit();
}

TEST_F(ThreadsTest, RequestsFromSeveralThreadsEachGiveTheirTask)
{
    const std::string request = InFolder(R"({"FileExportRequest":{"FileExportType":0,"RequestData":{
        "WriteFileCondition":{"SaveFilePathDir":"<tmp>/","ExportFileName":"A"}}}})");
    fakes::TheScript().engine_tasks[1] = task_;
    std::vector<std::thread> threads;
    std::atomic<int> tasks{0};
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&request, &tasks] {
            for (int number = 0; number < 50; ++number) {
                std::vector<std::string> guids;
                if (CDownloadBussinessManager::Instance().AddDownloadCommTask(guids, {request}))
                    tasks += static_cast<int>(guids.size());
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(tasks, 200);
    EXPECT_EQ(fakes::TheScript().handed_over.size(), 200U);
}

class PersonThreadsTest : public PersonTest
{
protected:
    PersonThreadsTest()
    {
        fakes::SetRecording(false);
        Settings().str_save_path = Folder() + "Pers\xE4/";
        fakes::TheScript().utf8_mark = Folder() + "utf8";
        task_->SetDownloadTaskParam(record_, false);
        task_->SetTaskHost(&states_);
    }

    ~PersonThreadsTest() override { task_->SetTaskHost(nullptr); }

    StateList states_;
};

// The folder of the record changes on the way, when the archive is made.
TEST_F(PersonThreadsTest, PersonExportIsWatchedAndStoppedAtAnyMoment)
{
    static const std::vector<std::string> operations = {"DirectoryExists", "GetExportPicDataList",
                                                        "SyncLoadImage", "LaunchApp", "RenameFile"};
    Pollers pollers;
    pollers.Add([this] { task_->GetProgress(); });
    pollers.Add([this] {
        task_->GetDownloadState();
        task_->Suspend();
    });
    for (int number = 0; number < kRuns; ++number) {
        fakes::TheScript().person_pages.clear();
        for (int page = 1; page <= 3; ++page)
            AddPage({"a", "b"}, page == 3);
        Settings().file_total_page_is_finished = false;
        Settings().str_save_path = Folder() + "Pers\xE4/";
        std::atomic<bool> now{false};
        const std::string& operation = operations[static_cast<std::size_t>(number) % operations.size()];
        fakes::OnCall(operation, fakes::CountOf(operation) + 1, [&now] { now = true; });
        std::thread requester([this, &now] {
            while (!now)
                std::this_thread::yield();
            task_->Stop();
        });
        task_->Exec();
        now = true;
        requester.join();
        const std::vector<int> states = states_.Take();
        ASSERT_EQ(states.size(), 2U) << "run " << number;
        EXPECT_EQ(states.front(), 1);
        EXPECT_TRUE(states.back() == 4 || states.back() == 6) << states.back();
    }
}

}  // namespace
}  // namespace contract
