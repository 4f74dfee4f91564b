#include "support/ExportTest.h"
#include "ZellBase/Error.h"

namespace contract {
namespace {

using Zell::Base::Error::ErrorCode;

// Logs that a server gathers: the whole trace, with the polls driven by the script.
class ForceLogTest : public ExportTest
{
protected:
    ForceLogTest()
    {
        Settings().file_operate_type = FetchyardBussiness::kForceLogExport;
        Settings().str_request_api = "/logs";
        Settings().str_request_condition = R"({"CameraIds":[1]})";
        Settings().request_site_id = 3;
    }

    static void Ready(int polls_before, const std::list<std::string>& urls)
    {
        fakes::TheScript().polls.assign(polls_before, fakes::PollAnswer());
        fakes::PollAnswer last;
        last.is_ready = true;
        last.urls = urls;
        fakes::TheScript().polls.push_back(last);
    }

    // The trace behind the head that all runs have.
    std::string Rest()
    {
        const std::string trace = Run();
        const std::string head = "task-1, file save path: <tmp>/Alarm/.\n";
        return "\n" + trace.substr(trace.find(head) + head.size());
    }

    void MakeEvidence() { record_->str_evidence_param = R"({"Case":7})"; }
};

TEST_F(ForceLogTest, GatheredFilesAreFetchedOneByOne)
{
    Ready(1, {"http://s/logs/g/camera-1.log", "http://s/logs/g/station.log"});
    EXPECT_EQ(Run(), R"(
state 1 (0,0)
log3 Start export.
DirectoryExists <tmp>/Alarm/
log3 Start export , file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
GetAllForceLog POST /logs {"CameraIds":[1]} site=3
ZC_Sleep 1000
CircleGetFileState gathering-1 POST /logs {"CameraIds":[1]} site=3
ZC_Sleep 1000
CircleGetFileState gathering-1 POST /logs {"CameraIds":[1]} site=3
DownloadFile http://s/logs/g/camera-1.log <tmp>/Alarm/camera-1.log 0
DownloadFile http://s/logs/g/station.log <tmp>/Alarm/station.log 0
state 4 (0,0)
)");
}

TEST_F(ForceLogTest, NameIsWhatStandsBehindTheLastSlash)
{
    Ready(0, {"plain.log", "http://s/", "a/b/c d?x=1"});
    EXPECT_EQ(Lines(Run(), "DownloadFile"), R"(
DownloadFile plain.log <tmp>/Alarm/plain.log 0
DownloadFile http://s/ <tmp>/Alarm/ 0
DownloadFile a/b/c d?x=1 <tmp>/Alarm/c d?x=1 0
)");
}

TEST_F(ForceLogTest, NoFilesAtAllFinish)
{
    Ready(0, {});
    EXPECT_EQ(States(Run()), "1 4 (0,0)");
}

TEST_F(ForceLogTest, FileThatFailsLeavesOutTheOthers)
{
    Ready(0, {"/l/a.log", "/l/b.log", "/l/c.log"});
    fakes::FailCalls("DownloadFile", 2, 1);
    EXPECT_EQ(Rest(), R"(
GetAllForceLog POST /logs {"CameraIds":[1]} site=3
ZC_Sleep 1000
CircleGetFileState gathering-1 POST /logs {"CameraIds":[1]} site=3
DownloadFile /l/a.log <tmp>/Alarm/a.log 0
DownloadFile /l/b.log <tmp>/Alarm/b.log 0 -> fails
log5 download file object file_url = /l/b.log, palce = 0
log5 CDeterminantWriteFileTask::DonloadFileFromCairn()  EnumUpLoadType::File filed
SetLastError (20,3605)
state 5 (20,3605)
)");
}

// The gathering ends in the plain states.
TEST_F(ForceLogTest, EndOfAnEvidenceExportIsThePlainOne)
{
    MakeEvidence();
    Ready(0, {"/l/a.log"});
    EXPECT_EQ(States(Run()), "7 4 (0,0)");
    Ready(0, {"/l/a.log"});
    fakes::FailCalls("DownloadFile", 2, 1);
    EXPECT_EQ(States(Run()), "7 5 (20,3605)");
}

TEST_F(ForceLogTest, GatheringThatCannotBeginFailsWithItsReason)
{
    fakes::FailCalls("GetAllForceLog", 1, -1);
    fakes::TheScript().force_log_error = ErrorCode(24, 1);
    const std::string expected = R"(
GetAllForceLog POST /logs {"CameraIds":[1]} site=3 -> fails
log3 data_condition_.export_data_node.file_guid is null·
SetLastError (24,1)
)";
    EXPECT_EQ(Rest(), expected + "state 5 (24,1)\n");
    MakeEvidence();
    EXPECT_EQ(Rest(), expected + "state 11 (24,1)\n");
}

// The result of the call is not looked at, only the number of the gathering.
TEST_F(ForceLogTest, GatheringWithoutANumberFails)
{
    fakes::TheScript().force_log_guid = "";
    EXPECT_EQ(States(Run()), "1 5 (0,0)");
    EXPECT_EQ(fakes::CountOf("CircleGetFileState"), 0);
}

TEST_F(ForceLogTest, PointlessPollEndsTheRunInStateFive)
{
    MakeEvidence();
    fakes::PollAnswer pointless;
    pointless.failed = true;
    fakes::TheScript().polls = {fakes::PollAnswer(), pointless};
    EXPECT_EQ(Rest(), R"(
GetAllForceLog POST /logs {"CameraIds":[1]} site=3
ZC_Sleep 1000
CircleGetFileState gathering-1 POST /logs {"CameraIds":[1]} site=3
ZC_Sleep 1000
CircleGetFileState gathering-1 POST /logs {"CameraIds":[1]} site=3
state 5 (0,0)
)");
}

// Ready and pointless at once is pointless.
TEST_F(ForceLogTest, PointlessWinsOverReady)
{
    fakes::PollAnswer both;
    both.failed = true;
    both.is_ready = true;
    fakes::TheScript().polls = {both};
    EXPECT_EQ(States(Run()), "1 5 (0,0)");
}

TEST_F(ForceLogTest, PollsAreUsedUpAfterTwoHundredAndNinetyNine)
{
    const std::string trace = Run();
    EXPECT_EQ(fakes::CountOf("CircleGetFileState"), 299);
    EXPECT_EQ(fakes::CountOf("ZC_Sleep"), 299);
    const std::string last_poll = "CircleGetFileState gathering-1 POST /logs {\"CameraIds\":[1]} site=3\n";
    EXPECT_EQ(
        "\n" + trace.substr(trace.rfind(last_poll)),
        "\n" + last_poll +
            R"(log3 CDeterminantWriteFileTask::Exec() server_genareate_node  failed     file name: task-1
SetLastError (20,3201)
state 5 (20,3201)
)");
    MakeEvidence();
    EXPECT_EQ(States(Run()), "7 11 (20,3201)");
}

TEST_F(ForceLogTest, LogsThatAreReadyAtTheLastPollAreFetched)
{
    Ready(298, {"/l/a.log"});
    EXPECT_EQ(States(Run()), "1 4 (0,0)");
    EXPECT_EQ(fakes::CountOf("CircleGetFileState"), 299);
}

TEST_F(ForceLogTest, UsedUpPollsAreCollectedWhenTheExportGoesOnAfterFailures)
{
    Settings().is_continue_dowinloading = true;
    const std::string trace = Run();
    EXPECT_EQ("\n" + trace.substr(trace.find("SetLastError (20,3201)")), R"(
SetLastError (20,3201)
GetErrorInfoByCode 20/3201
SetErrorParamState true
SetErrorParam ArrayList[1]/ErrorReason=text of 20/3201; ArrayList[1]/FileName=Alarm
SetDownloadTaskParam
state 5 (20,3201)
)");
}

TEST_F(ForceLogTest, StopEndsThePolling)
{
    fakes::OnCall("CircleGetFileState", 2, [this] { task_->Stop(); });
    EXPECT_EQ(Rest(), R"(
GetAllForceLog POST /logs {"CameraIds":[1]} site=3
ZC_Sleep 1000
CircleGetFileState gathering-1 POST /logs {"CameraIds":[1]} site=3
ZC_Sleep 1000
CircleGetFileState gathering-1 POST /logs {"CameraIds":[1]} site=3
log3 CDeterminantWriteFileTask::Exec() start to stop task.
log3 finish stop task.
state 6 (0,0)
log3 Download stop success, server_genareate_node  b_stop_ file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
)");
}

// Whatever a call has said of the server's side is what the next stop goes by.
TEST_F(ForceLogTest, ServerThatTakesAStopIsToldWithTheLatestNumber)
{
    fakes::PageAnswer gathering;
    gathering.is_rowcolumn_data = false;
    gathering.server.query_request.task_id = "t";
    gathering.server.operate_request.str_method = "PUT";
    gathering.server.operate_request.str_quern = "/operate";
    fakes::TheScript().pages = {gathering, gathering};
    fakes::OnCall("ZC_Sleep", 1, [this] { task_->Stop(); });
    EXPECT_EQ(Lines(Run(), "TakeOperateActionToServer"),
              "\nTakeOperateActionToServer PUT /operate {\"OperateType\":1,\"TaskId\":\"t\"}\n");
    fakes::PollAnswer renumbered;
    renumbered.download.task_id = "t-2";
    fakes::TheScript().polls = {renumbered};
    fakes::OnCall("ZC_Sleep", 3, [this] { task_->Delete(); });
    const std::string trace = Run();
    EXPECT_EQ(Lines(trace, "TakeOperateActionToServer"),
              "\nTakeOperateActionToServer PUT /operate {\"OperateType\":2,\"TaskId\":\"t-2\"}\n");
    EXPECT_EQ(States(trace), "1 200 (0,0)");
}

TEST_F(ForceLogTest, StopDuringThePauseLetsThePollGoOut)
{
    fakes::OnCall("ZC_Sleep", 1, [this] { task_->Stop(); });
    EXPECT_EQ(States(Run()), "1 6 (0,0)");
    EXPECT_EQ(fakes::CountOf("CircleGetFileState"), 1);
}

TEST_F(ForceLogTest, StopInTheReadyPollFetchesNothing)
{
    MakeEvidence();
    Ready(0, {"/l/a.log"});
    fakes::OnCall("CircleGetFileState", 1, [this] { task_->Stop(); });
    EXPECT_EQ(States(Run()), "7 12 (0,0)");
    EXPECT_EQ(fakes::CountOf("DownloadFile"), 0);
}

TEST_F(ForceLogTest, DeleteWinsOverStop)
{
    fakes::OnCall("ZC_Sleep", 1, [this] {
        task_->Stop();
        task_->Delete();
    });
    EXPECT_EQ(Rest(), R"(
GetAllForceLog POST /logs {"CameraIds":[1]} site=3
ZC_Sleep 1000
log3 CDeterminantWriteFileTask::Exec() start to stop task.
log3 finish stop task.
log3 CDeterminantWriteFileTask::Delete() b_downloading_video_ = 0
CircleGetFileState gathering-1 POST /logs {"CameraIds":[1]} site=3
log3 Download delete success, server_genareate_node b_delete_ file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
state 200 (0,0)
)");
}

// The fetches are not cut short, and the run ends as they do.
TEST_F(ForceLogTest, StopDuringTheFetchesIsNotSeen)
{
    Ready(0, {"/l/a.log", "/l/b.log"});
    fakes::OnCall("DownloadFile", 1, [this] { task_->Stop(); });
    EXPECT_EQ(States(Run()), "1 4 (0,0)");
    EXPECT_EQ(fakes::CountOf("DownloadFile"), 2);
}

TEST_F(ForceLogTest, StoredObjectsAreFetchedByTheirKind)
{
    struct Row
    {
        int kind;
        const char* trace;
    };
    const std::vector<Row> rows = {
        {0, R"(
DownloadFileByPic /o <tmp>/o.bin 7 -> fails
log5 download pic object file_url = /o, palce = 7
log5 CDeterminantWriteFileTask::DonloadFileFromCairn()   EnumUpLoadType::Pic filed
SetLastError (20,2330)
)"},
        {1, R"(
DownloadFile /o <tmp>/o.bin 7 -> fails
log5 download file object file_url = /o, palce = 7
log5 CDeterminantWriteFileTask::DonloadFileFromCairn()  EnumUpLoadType::File filed
SetLastError (20,3605)
)"},
        {2, R"(
DownloadFileByPicInOXT /o <tmp>/o.bin -> fails
log5 download PIC_OXT object file_url = /o, palce = 7
log5 CDeterminantWriteFileTask::DonloadFileFromCairn()   EnumUpLoadType::PIC_OXT filed
SetLastError (20,2316)
)"},
    };
    fakes::FailCalls("DownloadFile", 1, -1);
    fakes::FailCalls("DownloadFileByPic", 1, -1);
    fakes::FailCalls("DownloadFileByPicInOXT", 1, -1);
    for (const Row& row : rows) {
        EXPECT_FALSE(task_->DonloadFileFromOXTLocalStorage(row.kind, Folder() + "o.bin", "/o", 7));
        EXPECT_EQ(Trace(), row.trace);
    }
}

TEST_F(ForceLogTest, StoredObjectThatArrivesLeavesTheLastError)
{
    for (const int kind : {0, 1, 2})
        EXPECT_TRUE(task_->DonloadFileFromOXTLocalStorage(kind, Folder() + "o.bin", "/o", -1));
    EXPECT_EQ(Trace(), R"(
DownloadFileByPic /o <tmp>/o.bin -1
DownloadFile /o <tmp>/o.bin -1
DownloadFileByPicInOXT /o <tmp>/o.bin
)");
}

TEST_F(ForceLogTest, UnknownKindsOfObjectsAreNotFetchedAndGood)
{
    for (const int kind : {-1, 3, 100})
        EXPECT_TRUE(task_->DonloadFileFromOXTLocalStorage(kind, Folder() + "o.bin", "/o", 0));
    EXPECT_EQ(Trace(), "\n");
}

}  // namespace
}  // namespace contract
