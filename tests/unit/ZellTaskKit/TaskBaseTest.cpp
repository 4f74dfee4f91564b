#include "ZellTaskKit/DownloadTaskBase.h"

#include <gtest/gtest.h>

#include <future>
#include <string>
#include <thread>
#include <vector>

namespace {

using Zell::Base::Error::ErrorCode;
using ZellTaskKit::CDownloadProgress;
using ZellTaskKit::CDownloadTaskParam;
using ZellTaskKit::CTaskCallbackParam;

class PlainTask : public ZellTaskKit::CDownloadTaskBase
{
public:
    void Exec() override {}
    bool Stop() override { return true; }
    CDownloadProgress GetProgress() override { return {}; }
    bool Suspend() override { return true; }
};

class OtherParam : public CDownloadTaskParam
{
};

class RecordingHost final : public ZellTaskKit::ITaskHost
{
public:
    void OnTaskState(const CTaskCallbackParam& report) override
    {
        const ErrorCode error = report.GetVal_error_code();
        calls.push_back("state " + report.GetVal_task_guid() + " " + std::to_string(report.GetVal_state()) +
                        " " + std::to_string(error.iFirstCode) + "," + std::to_string(error.iSecondCode));
    }
    void OnTaskParamChanged(const std::string& guid) override { calls.push_back("param " + guid); }

    std::vector<std::string> calls;
};

TEST(TaskBase, TheOperationsThatATaskMayLeaveOut)
{
    PlainTask task;
    EXPECT_FALSE(task.SetCommonData("text"));
    EXPECT_EQ(task.GetCommData(), "");
    EXPECT_TRUE(task.Delete());
    EXPECT_TRUE(task.SetAccountInforToRequest());
    std::map<int, std::vector<int>> cameras = {{1, {2}}};
    ErrorCode error(1, 2);
    task.RelatedCameraList(cameras, error);
    EXPECT_TRUE(cameras.empty());
    EXPECT_EQ(error.iFirstCode, 0);
    EXPECT_EQ(error.iSecondCode, 0);
}

TEST(TaskBase, TheGuidIsMadeWithTheFirstRecordAndKept)
{
    PlainTask task;
    EXPECT_EQ(task.GetGuid(), "");
    const auto first = std::make_shared<CDownloadTaskParam>();
    task.SetDownloadTaskParam(first, false);
    const std::string guid = task.GetGuid();
    EXPECT_EQ(guid.size(), 36U);
    EXPECT_EQ(first->GetVal_str_guid(), guid);
    const auto later = std::make_shared<CDownloadTaskParam>();
    later->SetVal_str_guid("another");
    task.SetDownloadTaskParam(later, false);
    EXPECT_EQ(task.GetGuid(), guid);
    EXPECT_EQ(later->GetVal_str_guid(), guid);
    PlainTask other;
    other.SetDownloadTaskParam(std::make_shared<CDownloadTaskParam>(), false);
    EXPECT_NE(other.GetGuid(), guid);
}

TEST(TaskBase, ARecordThatBringsAGuidGivesItToANewTask)
{
    PlainTask task;
    const auto param = std::make_shared<CDownloadTaskParam>();
    param->SetVal_str_guid("resumed");
    task.SetDownloadTaskParam(param, false);
    EXPECT_EQ(task.GetGuid(), "resumed");
}

TEST(TaskBase, TheRecordIsGivenOnlyAsWhatItIs)
{
    PlainTask task;
    EXPECT_EQ(task.GetDownloadTaskParam<CDownloadTaskParam>(), nullptr);
    const auto param = std::make_shared<CDownloadTaskParam>();
    task.SetDownloadTaskParam(param, false);
    EXPECT_EQ(task.GetDownloadTaskParam<CDownloadTaskParam>(), param);
    EXPECT_EQ(task.GetDownloadTaskParam<OtherParam>(), nullptr);
    const auto other = std::make_shared<OtherParam>();
    task.SetDownloadTaskParam(other, false);
    EXPECT_EQ(task.GetDownloadTaskParam<OtherParam>(), other);
    task.SetDownloadTaskParam(nullptr, false);
    EXPECT_EQ(task.GetDownloadTaskParam<CDownloadTaskParam>(), nullptr);
}

TEST(TaskBase, TheStateIsThatOfTheRecordUntilOneIsReported)
{
    PlainTask task;
    EXPECT_EQ(task.GetDownloadState(), ZellTaskKit::Unstarted);
    const auto param = std::make_shared<CDownloadTaskParam>();
    param->SetVal_state(ZellTaskKit::Uploading);
    task.SetDownloadTaskParam(param, false);
    EXPECT_EQ(task.GetDownloadState(), ZellTaskKit::Uploading);
    task.NotifyTaskState(ZellTaskKit::UploadFinished);
    EXPECT_EQ(task.GetDownloadState(), ZellTaskKit::UploadFinished);
    EXPECT_EQ(param->GetVal_state(), ZellTaskKit::Uploading);
}

TEST(TaskBase, ReportsCarryTheThreadsLastErrorAndDoNotClearIt)
{
    PlainTask task;
    const auto param = std::make_shared<CDownloadTaskParam>();
    param->SetVal_str_guid("g");
    RecordingHost host;
    task.SetTaskHost(&host);
    task.SetDownloadTaskParam(param, false);
    Zell::Base::Error::SetLastError(ErrorCode());
    task.NotifyTaskState(ZellTaskKit::Downloading);
    Zell::Base::Error::SetLastError(ErrorCode(2, 20, 2330));
    task.NotifyTaskState(ZellTaskKit::Failed);
    task.NotifyTaskState(ZellTaskKit::Deleted);
    task.SetDownloadTaskParam(param, false);
    task.SetTaskHost(nullptr);
    task.NotifyTaskState(ZellTaskKit::Finished);
    task.SetDownloadTaskParam(param, false);
    EXPECT_EQ(host.calls, (std::vector<std::string>{"param g", "state g 1 0,0", "state g 5 20,2330",
                                                    "state g 200 20,2330", "param g"}));
    Zell::Base::Error::SetLastError(ErrorCode());
}

// A host that waits inside a report until the test lets it go.
class WaitingHost final : public ZellTaskKit::ITaskHost
{
public:
    void OnTaskState(const CTaskCallbackParam&) override
    {
        entered.set_value();
        release.get_future().wait();
        left = true;
    }
    void OnTaskParamChanged(const std::string&) override {}

    std::promise<void> entered;
    std::promise<void> release;
    bool left = false;
};

TEST(TaskBase, AChangeOfHostWaitsForAReportInProgress)
{
    PlainTask task;
    WaitingHost host;
    task.SetTaskHost(&host);
    std::thread worker([&task] { task.NotifyTaskState(ZellTaskKit::Downloading); });
    host.entered.get_future().wait();
    auto changed = std::async(std::launch::async, [&] {
        task.SetTaskHost(nullptr);
        return host.left;
    });
    EXPECT_EQ(changed.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    EXPECT_EQ(task.GetDownloadState(), ZellTaskKit::Downloading);
    host.release.set_value();
    EXPECT_TRUE(changed.get());
    worker.join();
}

// A host that answers a report by taking itself away.
class LeavingHost final : public ZellTaskKit::ITaskHost
{
public:
    explicit LeavingHost(PlainTask& task) : task_(task) {}
    void OnTaskState(const CTaskCallbackParam&) override
    {
        ++reports;
        task_.SetTaskHost(nullptr);
    }
    void OnTaskParamChanged(const std::string&) override {}

    int reports = 0;

private:
    PlainTask& task_;
};

TEST(TaskBase, AHostMayLeaveWithinAReport)
{
    PlainTask task;
    LeavingHost host(task);
    task.SetTaskHost(&host);
    task.NotifyTaskState(ZellTaskKit::Downloading);
    task.NotifyTaskState(ZellTaskKit::Finished);
    EXPECT_EQ(host.reports, 1);
}

TEST(TaskBase, ErrorsAndTheirValuesAreKept)
{
    PlainTask task;
    EXPECT_FALSE(task.GetErrorParamState());
    task.SetTaskErrorCode(ErrorCode(2, 20, 3));
    task.SetErrorParamState(true);
    task.SetErrorParam({{"ArrayList[1]/FileName", "a.jpg"}});
    EXPECT_EQ(task.GetTaskErrorCode().iSecondCode, 3);
    EXPECT_TRUE(task.GetErrorParamState());
    EXPECT_EQ(task.GetErrorParam().at("ArrayList[1]/FileName"), "a.jpg");
}

TEST(TaskBase, AllMayBeAskedWhileTheTaskRuns)
{
    PlainTask task;
    RecordingHost host;
    task.SetTaskHost(&host);
    std::thread worker([&task] {
        for (int i = 0; i < 500; ++i) {
            task.SetDownloadTaskParam(std::make_shared<OtherParam>(), false);
            task.NotifyTaskState(ZellTaskKit::Downloading);
            task.SetErrorParam({{"a", "b"}});
            task.SetTaskErrorCode(ErrorCode(1, i));
        }
    });
    for (int i = 0; i < 500; ++i) {
        task.GetGuid();
        task.GetDownloadState();
        task.GetErrorParam();
        task.GetTaskErrorCode();
        if (const auto param = task.GetDownloadTaskParam<OtherParam>())
            param->GetVal_str_guid();
    }
    worker.join();
    EXPECT_EQ(host.calls.size(), 1000U);
}

}  // namespace
