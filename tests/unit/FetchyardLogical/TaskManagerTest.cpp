#include "FetchyardLogical/CmsGetExportFileData.h"
#include "FetchyardLogical/DownloadTaskManager.h"
#include "FetchyardLogicalHost/EngineHost.h"
#include "tests/unit/TempFolder.h"
#include "ZellClientHostSettings/ClientSettings.h"
#include "ZellTaskKit/ClientServices.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <mutex>
#include <thread>

using namespace FetchyardLogical;
using namespace ZellTaskKit;

namespace {

class QuickTask : public CDownloadTaskBase
{
public:
    QuickTask() { SetDownloadTaskParam(std::make_shared<CDownloadTaskParam>(), false); }
    void Exec() override
    {
        NotifyTaskState(Downloading);
        NotifyTaskState(Finished);
    }
    bool Stop() override { return true; }
    CDownloadProgress GetProgress() override { return {}; }
    bool Suspend() override { return true; }
};

class Observer final : public CDownloadTaskManagerObserver
{
public:
    void UpdateDownloadTaskManagerState(const Param& reports) override
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        sizes_.push_back(reports.size());
        for (const CTaskCallbackParam& report : reports)
            states_.push_back(report.GetVal_state());
    }
    std::vector<int> States() const
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        return states_;
    }
    std::vector<std::size_t> Sizes() const
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        return sizes_;
    }

private:
    mutable std::mutex mutex_;
    std::vector<int> states_;
    std::vector<std::size_t> sizes_;
};

// Reports and asks for pages without end, and does not heed a stop.
class EndlessTask : public CDownloadTaskBase
{
public:
    explicit EndlessTask(std::atomic<int>& started) : started_(started)
    {
        SetDownloadTaskParam(std::make_shared<CDownloadTaskParam>(), false);
    }
    void Exec() override
    {
        NotifyTaskState(Downloading);
        ++started_;
        RequstData request;
        request.str_quern = "http://127.0.0.1:1/nobody";
        CmsGetExportFileData page;
        for (;;) {
            NotifyTaskState(TranscodingBegin);
            CmsGetExportFileData::GetExportFileDataList(page, request);
            NotifyTaskState(TranscodingEnd);
        }
    }
    bool Stop() override { return true; }
    CDownloadProgress GetProgress() override { return {}; }
    bool Suspend() override { return true; }

private:
    std::atomic<int>& started_;
};

// The process's engine, up for the length of a test.
class TaskManager : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(Manager().Init()); }
    void TearDown() override { Manager().Unit(); }
    static CDownloadTaskManager& Manager() { return CDownloadTaskManager::Instance(); }
};

}  // namespace

TEST_F(TaskManager, AnObserverHearsEachStateInAListOfOne)
{
    Observer observer;
    ASSERT_TRUE(Manager().RegisterObserver(&observer));
    ASSERT_TRUE(Manager().AddTransferTask({std::make_shared<QuickTask>()}));
    ASSERT_TRUE(WaitUntilIdle(std::chrono::minutes(1)));
    Manager().SyncUnregisterObserver(&observer);
    EXPECT_EQ(observer.States(), (std::vector<int>{1, 4}));
    EXPECT_EQ(observer.Sizes(), (std::vector<std::size_t>{1, 1}));
}

TEST_F(TaskManager, TheReferenceOfGetAllTaskStaysGoodWhileOthersAddAndAsk)
{
    ASSERT_TRUE(Manager().AddTransferTask({std::make_shared<QuickTask>()}));
    const auto& first = Manager().GetAllTask();
    std::thread other([] {
        for (int i = 0; i < 200; ++i) {
            EXPECT_TRUE(Manager().AddTransferTask({std::make_shared<QuickTask>()}));
            const auto copy = Manager().GetAllTask();
            EXPECT_EQ(copy.size(), static_cast<std::size_t>(i + 2));
        }
    });
    other.join();
    EXPECT_EQ(first.size(), 1u);
    EXPECT_EQ(Manager().GetAllTask().size(), 201u);
    ASSERT_TRUE(WaitUntilIdle(std::chrono::minutes(1)));
}

TEST_F(TaskManager, TasksGoWithUnit)
{
    auto task = std::make_shared<QuickTask>();
    const std::weak_ptr<QuickTask> watched = task;
    ASSERT_TRUE(Manager().AddTransferTask({task}));
    EXPECT_EQ(Manager().GetAllTask().size(), 1u);
    EXPECT_EQ(ListTasks().size(), 1u);
    task.reset();
    ASSERT_TRUE(Manager().Unit());
    EXPECT_TRUE(watched.expired());
    EXPECT_TRUE(ListTasks().empty());
}

TEST(TaskManagerExit, LeavingTheProcessInTheMiddleOfTasksIsClean)
{
    ::testing::GTEST_FLAG(death_test_style) = "threadsafe";
    const auto leave = [] {
        static auto* const observer = new Observer;
        static std::atomic<int> started{0};
        ZellClientHost::SetClientSettings({});  // as every host does before it starts anything
        CDownloadTaskManager& manager = CDownloadTaskManager::Instance();
        manager.Init();
        manager.RegisterObserver(observer);
        std::vector<std::shared_ptr<CDownloadTaskBase>> tasks;
        for (int i = 0; i < 8; ++i)
            tasks.push_back(std::make_shared<EndlessTask>(started));
        manager.AddTransferTask(tasks);
        while (started < 5)
            std::this_thread::yield();
        std::exit(0);
    };
    EXPECT_EXIT(leave(), ::testing::ExitedWithCode(0), "");
}

// A static of the host may be the one that calls Unit.
TEST(TaskManagerExit, UnitFromAStaticThatGoesNeitherHangsNorStops)
{
    ::testing::GTEST_FLAG(death_test_style) = "threadsafe";
    const auto leave = [] {
        ZellClientHost::SetClientSettings({});
        CDownloadTaskManager& manager = CDownloadTaskManager::Instance();
        std::atexit([] {
            if (CDownloadTaskManager::Instance().Unit())
                std::_Exit(9);
        });
        manager.Init();
        manager.AddTransferTask({std::make_shared<QuickTask>()});
        WaitUntilIdle(std::chrono::minutes(1));
        std::exit(0);
    };
    EXPECT_EXIT(leave(), ::testing::ExitedWithCode(0), "");
}

TEST_F(TaskManager, AnAccountTextIsTakenOnlyIfItIsOne)
{
    const TempFolder folder;
    ZellClientHost::ClientSettings settings;
    settings.data_path = settings.public_data_path = folder.Text();
    ZellClientHost::SetClientSettings(settings);
    std::string ciphered;
    ASSERT_TRUE(PrivateEncrypt::AESEncryptForSensitiveInfor(ciphered, "s3cret"));
    for (const std::string& text :
         {std::string(), std::string("no json"), std::string("[]"), std::string(R"({"UserName":"u"})"),
          R"({"PassWord":")" + ciphered + "\"}", R"({"UserName":"","PassWord":")" + ciphered + "\"}",
          std::string(R"({"UserName":"u","PassWord":"plain"})")})
        EXPECT_FALSE(Manager().SetSensitiveInfoToTask(text)) << text;
    EXPECT_TRUE(Manager().SetSensitiveInfoToTask(R"({"UserName":"u","PassWord":")" + ciphered + "\"}"));
    int number = 7;
    std::string name;
    std::string password;
    ASSERT_TRUE(CUserCommonManager::Instance().GetUserInfo(number, name, password));
    EXPECT_EQ(name, "u");
    EXPECT_EQ(password, "s3cret");
}
