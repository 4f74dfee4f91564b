#include "support/ExportTest.h"
#include "ZellBase/Error.h"

#include <filesystem>
#include <fstream>

namespace contract {
namespace {

using Zell::Base::Error::ErrorCode;

class StopDeleteProgressTest : public ExportTest
{
protected:
    StopDeleteProgressTest() { ThreePages(); }

    static void ThreePages()
    {
        auto& pages = fakes::TheScript().pages;
        pages.clear();
        for (int page = 1; page <= 3; ++page)
            pages.push_back(Page(Sheet(page, {{"a"}, {"b"}}), page == 3));
    }

    void WriteFile(const std::string& name, std::size_t size) const
    {
        std::filesystem::create_directories(std::filesystem::path(Folder() + "Alarm/" + name).parent_path());
        std::ofstream(Folder() + "Alarm/" + name) << std::string(size, 'x');
    }

    unsigned long long Kilobytes() { return task_->GetProgress().GetVal_finished_size(); }

    // A page that says that the server generates the file itself, as far as this trace needs it.
    static fakes::PageAnswer ServerPage()
    {
        fakes::PageAnswer page;
        page.is_rowcolumn_data = false;
        page.server.query_request.task_id = "t-7";
        page.server.operate_request.str_method = "PUT";
        page.server.operate_request.str_quern = "/operate";
        page.server.operate_request.str_request = "not this text";
        return page;
    }
};

TEST_F(StopDeleteProgressTest, StopBetweenPagesTellsTheWriterOnce)
{
    Run();
    ThreePages();
    fakes::Take();
    EXPECT_TRUE(task_->Stop());
    EXPECT_EQ(Trace(), R"(
log3 CDeterminantWriteFileTask::Exec() start to stop task.
log3 Download stop signal to write file b_stop_ =1
log3 CExportReportDataToFileObject::SetTaskStopState  state = 1
log3 finish stop task.
)");
    EXPECT_TRUE(Settings().restart_is_need_download);
    EXPECT_TRUE(task_->Stop());
    EXPECT_EQ(Trace(), R"(
log3 CDeterminantWriteFileTask::Exec() start to stop task.
log3  CDeterminantWriteFileTask::Exec() has already stop.
)");
}

TEST_F(StopDeleteProgressTest, StopBeforeAnyPageTellsNobody)
{
    task_->SetDownloadTaskParam(record_, false);
    fakes::Take();
    EXPECT_TRUE(task_->Stop());
    EXPECT_EQ(Trace(), R"(
log3 CDeterminantWriteFileTask::Exec() start to stop task.
log3 finish stop task.
)");
    EXPECT_TRUE(Settings().restart_is_need_download);
}

TEST_F(StopDeleteProgressTest, StopWithoutARecordReportsFiveBeforeItSetsTheError)
{
    EXPECT_FALSE(task_->Stop());
    EXPECT_EQ(Trace(), R"(
log3 CDeterminantWriteFileTask::Exec() start to stop task.
state 5 (0,0)
SetLastError (20,3209)
log5 Export param failed·
)");
    EXPECT_TRUE(task_->Stop());
    EXPECT_EQ(Trace(), R"(
log3 CDeterminantWriteFileTask::Exec() start to stop task.
log3  CDeterminantWriteFileTask::Exec() has already stop.
)");
}

TEST_F(StopDeleteProgressTest, StopBeforeTheRunIsForgottenByIt)
{
    task_->SetDownloadTaskParam(record_, false);
    Settings().restart_is_need_download = false;
    task_->Stop();
    Settings().restart_is_need_download = false;
    task_->Delete();
    EXPECT_EQ(States(Run()), "1 4 (0,0)");
}

TEST_F(StopDeleteProgressTest, DeleteTellsTheWriterTheStateOfTheStopFlag)
{
    Run();
    fakes::Take();
    EXPECT_TRUE(task_->Delete());
    EXPECT_EQ(Trace(), R"(
log3 CDeterminantWriteFileTask::Delete() b_downloading_video_ = 0
log3 Download Delete signal to write file b_stop_ =0
log3 CExportReportDataToFileObject::SetTaskStopState  state = 0
)");
    task_->Stop();
    fakes::Take();
    EXPECT_TRUE(task_->Delete());
    EXPECT_EQ(Trace(), R"(
log3 CDeterminantWriteFileTask::Delete() b_downloading_video_ = 0
log3 Download Delete signal to write file b_stop_ =1
log3 CExportReportDataToFileObject::SetTaskStopState  state = 1
)");
}

TEST_F(StopDeleteProgressTest, DeleteWithoutARecordOrAWriterOnlyRaisesItsFlag)
{
    EXPECT_TRUE(task_->Delete());
    EXPECT_TRUE(task_->Delete());
    EXPECT_EQ(Trace(), R"(
log3 CDeterminantWriteFileTask::Delete() b_downloading_video_ = 0
log3 CDeterminantWriteFileTask::Delete() b_downloading_video_ = 0
)");
}

TEST_F(StopDeleteProgressTest, StopOfAServerGeneratedExportTellsTheServer)
{
    fakes::TheScript().pages = {ServerPage()};
    Run();
    Settings().restart_is_need_download = false;
    EXPECT_TRUE(task_->Stop());
    EXPECT_EQ(Trace(), R"(
log3 CDeterminantWriteFileTask::Exec() start to stop task.
TakeOperateActionToServer PUT /operate {"OperateType":1,"TaskId":"t-7"}
log3 Download stop signal to server result = 1
log3 finish stop task.
)");
    EXPECT_FALSE(Settings().restart_is_need_download);
    EXPECT_TRUE(task_->Stop());
    EXPECT_EQ(fakes::CountOf("TakeOperateActionToServer"), 1);
}

TEST_F(StopDeleteProgressTest, DeleteOfAServerGeneratedExportTellsTheServerEachTime)
{
    fakes::TheScript().pages = {ServerPage()};
    Run();
    fakes::FailCalls("TakeOperateActionToServer", 2, 1);
    EXPECT_TRUE(task_->Delete());
    EXPECT_TRUE(task_->Delete());
    EXPECT_EQ(Trace(), R"(
log3 CDeterminantWriteFileTask::Delete() b_downloading_video_ = 0
TakeOperateActionToServer PUT /operate {"OperateType":2,"TaskId":"t-7"}
log3  CDeterminantWriteFileTask::Delete() signal to server is_success = 1
log3 CDeterminantWriteFileTask::Delete() b_downloading_video_ = 0
TakeOperateActionToServer PUT /operate {"OperateType":2,"TaskId":"t-7"} -> fails
log3  CDeterminantWriteFileTask::Delete() signal to server is_success = 0
)");
}

// Where a request comes in, and what becomes of the run.
struct PlaceRow
{
    const char* operation;
    int number;
    const char* stopped;  // states after a stop
    const char* deleted;  // states after a delete
    int pages;            // page calls of the run
    int rows;             // records of a stopped run that reached the file
};

TEST_F(StopDeleteProgressTest, EndsOfARunByThePlaceAtWhichTheRequestComes)
{
    const std::vector<PlaceRow> rows = {
        {"state 1", 1, "1 6 (0,0)", "1 200 (0,0)", 0, 0},
        {"DirectoryExists", 1, "1 6 (0,0)", "1 200 (0,0)", 0, 0},
        {"SyncLoadImage", 1, "1 6 (0,0)", "1 200 (0,0)", 0, 0},
        {"GetExportFileDataList", 1, "1 6 (0,0)", "1 200 (0,0)", 1, 3},
        {"csv open", 1, "1 6 (0,0)", "1 200 (0,0)", 1, 1},
        {"csv line", 2, "1 6 (0,0)", "1 200 (0,0)", 1, 2},
        {"csv close", 1, "1 6 (0,0)", "1 200 (0,0)", 1, 3},
        {"GetExportFileDataList", 2, "1 6 (0,0)", "1 200 (0,0)", 2, 3},
        {"csv open to append", 1, "1 6 (0,0)", "1 200 (0,0)", 2, 3},
        {"GetExportFileDataList", 3, "1 6 (0,0)", "1 200 (0,0)", 3, 5},
        {"csv close", 3, "1 6 (0,0)", "1 200 (0,0)", 3, 7},
        {"LaunchApp", 1, "1 4 (0,0)", "1 4 (0,0)", 3, 7},
        {"state 4", 1, "1 4 (0,0)", "1 4 (0,0)", 3, 7},
    };
    for (const PlaceRow& row : rows) {
        for (const bool is_stop : {true, false}) {
            fakes::Reset();
            fakes::SetAlias(Folder().substr(0, Folder().size() - 1), "<tmp>");
            ThreePages();
            task_ = std::make_shared<FetchyardBussiness::CDeterminantWriteFileTask>();
            record_ = std::make_shared<FetchyardBussiness::DeterminantDownloadParam>(*record_);
            Settings().file_total_page_is_finished = false;
            Settings().restart_is_need_download = false;
            Settings().is_need_compress_zip = true;
            Settings().vec_image_download.clear();
            AddPicture("a.jpg", "/p/a");
            fakes::OnCall(row.operation, row.number,
                          [this, is_stop] { is_stop ? task_->Stop() : task_->Delete(); });
            EXPECT_EQ(States(Run()), is_stop ? row.stopped : row.deleted)
                << row.operation << " " << row.number;
            EXPECT_EQ(fakes::CountOf("GetExportFileDataList"), row.pages)
                << row.operation << " " << row.number;
            if (is_stop) {
                EXPECT_EQ(fakes::CountOf("csv line"), row.rows) << row.operation << " " << row.number;
            }
        }
    }
}

TEST_F(StopDeleteProgressTest, StopInAPageCallWritesThePageUpToTheStop)
{
    fakes::OnCall("GetExportFileDataList", 2, [this] { task_->Stop(); });
    const std::string trace = Run();
    EXPECT_EQ(trace.substr(trace.find("GetExportFileDataList POST /api {\"PageIndex\":2")),
              R"(GetExportFileDataList POST /api {"PageIndex":2,"PageSize":2}
log3 CDeterminantWriteFileTask::Exec() start to stop task.
log3 Download stop signal to write file b_stop_ =1
log3 CExportReportDataToFileObject::SetTaskStopState  state = 1
log3 finish stop task.
log3 CDeterminantWriteFileTask::Exec()GetExportFileDataList, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.  data_condition_.export_data_node.is_rowcolumn_data =1
log3 CDeterminantWriteFileTask::Exec()  data_condition_.export_data_node.file_total_page_is_finished = 0
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile
log3 CDeterminantWriteFileTask::WriteDataToFile return = 1
log3 CDeterminantWriteFileTask::Exec(): write_is_ok = 1
log3 CDeterminantWriteFileTask::Exec()  ptr_determinant_control_param->vs_file_param_.file_current_page = 2
state 6 (0,0)
log3 Download stop success, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
)");
    EXPECT_EQ(Settings().file_current_page, 3);
    EXPECT_TRUE(Settings().restart_is_need_download);
}

TEST_F(StopDeleteProgressTest, StopInTheLastPageCallEndsStoppedWithTheReportFinished)
{
    fakes::OnCall("GetExportFileDataList", 3, [this] { task_->Stop(); });
    EXPECT_EQ(States(Run()), "1 6 (0,0)");
    EXPECT_TRUE(Settings().file_total_page_is_finished);
    EXPECT_FALSE(Settings().restart_is_need_download);
}

TEST_F(StopDeleteProgressTest, DeleteAloneLetsThePageBeWrittenWhole)
{
    fakes::OnCall("csv line", 2, [this] { task_->Delete(); });
    const std::string trace = Run();
    EXPECT_EQ(fakes::CountOf("csv line"), 3);
    EXPECT_EQ(
        trace.substr(trace.find("log3 Download delete success")),
        R"(log3 Download delete success, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
state 200 (0,0)
)");
    EXPECT_TRUE(Exists("Alarm"));
}

TEST_F(StopDeleteProgressTest, DeleteWinsOverStop)
{
    fakes::OnCall("GetExportFileDataList", 1, [this] {
        task_->Stop();
        task_->Delete();
    });
    EXPECT_EQ(States(Run()), "1 200 (0,0)");
}

TEST_F(StopDeleteProgressTest, DeleteWinsOverFailedItems)
{
    Settings().is_continue_dowinloading = true;
    AddPicture("a.jpg", "/bad");
    fakes::TheScript().pictures["/bad"] = {ErrorCode(21, 404), ""};
    fakes::OnCall("csv close", 3, [this] { task_->Delete(); });
    EXPECT_EQ(States(Run()), "1 200 (21,404)");
}

TEST_F(StopDeleteProgressTest, StopWinsOverFailedItems)
{
    Settings().is_continue_dowinloading = true;
    AddPicture("a.jpg", "/bad");
    fakes::TheScript().pictures["/bad"] = {ErrorCode(21, 404), ""};
    fakes::OnCall("csv close", 3, [this] { task_->Stop(); });
    EXPECT_EQ(States(Run()), "1 6 (21,404)");
}

TEST_F(StopDeleteProgressTest, FailedPageCallWinsOverAStopInIt)
{
    fakes::TheScript().pages = {FailedPage(23, 6)};
    fakes::OnCall("GetExportFileDataList", 1, [this] { task_->Stop(); });
    EXPECT_EQ(States(Run()), "1 5 (23,6)");
}

TEST_F(StopDeleteProgressTest, EvidenceExportIsStoppedInStateTwelve)
{
    record_->str_evidence_param = "{}";
    fakes::OnCall("GetExportFileDataList", 1, [this] { task_->Stop(); });
    EXPECT_EQ(States(Run()), "7 12 (0,0)");
    ThreePages();
    Settings().restart_is_need_download = false;
    fakes::OnCall("GetExportFileDataList", 2, [this] { task_->Delete(); });
    EXPECT_EQ(States(Run()), "7 200 (0,0)");
    EXPECT_EQ(fakes::CountOf("DoRequest"), 0);
}

TEST_F(StopDeleteProgressTest, RunAfterAStopGoesOnWithItsWriter)
{
    fakes::OnCall("GetExportFileDataList", 1, [this] { task_->Stop(); });
    Run();
    fakes::TheScript().pages = {Page(Sheet(3, {{"z"}}), true)};
    const std::string trace = Run();
    EXPECT_EQ(trace.substr(0, trace.find("log3 Start export.")), R"(
log3 Exec set signal to write file b_stop_ =0
log3 CExportReportDataToFileObject::SetTaskStopState  state = 0
state 1 (0,0)
)");
    EXPECT_EQ(States(trace), "1 4 (0,0)");
    EXPECT_EQ(Lines(trace, "csv line"), "\ncsv line \"z\"\n");
}

TEST_F(StopDeleteProgressTest, SuspendDoesNothing)
{
    EXPECT_TRUE(task_->Suspend());
    EXPECT_EQ(Trace(), "\n");
}

TEST_F(StopDeleteProgressTest, ProgressIsKilobytesRoundedUpForEachFile)
{
    task_->SetDownloadTaskParam(record_, false);
    EXPECT_EQ(Kilobytes(), 0U);
    WriteFile("empty", 0);
    EXPECT_EQ(Kilobytes(), 0U);
    WriteFile("one", 1);
    EXPECT_EQ(Kilobytes(), 1U);
    WriteFile("full", 1024);
    EXPECT_EQ(Kilobytes(), 2U);
    WriteFile("over", 1025);
    EXPECT_EQ(Kilobytes(), 4U);
    WriteFile("Sub/below/deep", 10);
    EXPECT_EQ(Kilobytes(), 5U);
}

TEST_F(StopDeleteProgressTest, ProgressLooksBelowTheExportFolderAtFilesAlone)
{
    task_->SetDownloadTaskParam(record_, false);
    fakes::Take();
    task_->GetProgress();
    EXPECT_EQ(Trace(), R"(
log3 CDeterminantWriteFileTask::GetProgress() , file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
GetFilesInDir <tmp>/Alarm/ recursive
)");
}

TEST_F(StopDeleteProgressTest, ProgressOfAMissingFolderIsZero)
{
    task_->SetDownloadTaskParam(record_, false);
    std::filesystem::remove(Folder() + "Alarm");
    fakes::Take();
    EXPECT_EQ(Kilobytes(), 0U);
    EXPECT_EQ(Trace(), R"(
log3 CDeterminantWriteFileTask::GetProgress() , file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
GetFilesInDir <tmp>/Alarm/ recursive
log3 dir is not exists.<tmp>/Alarm/
)");
}

TEST_F(StopDeleteProgressTest, ProgressWithoutARecordIsZero)
{
    EXPECT_EQ(Kilobytes(), 0U);
    EXPECT_EQ(Trace(), "\nlog5 CDeterminantWriteFileTask::GetProgress() nullptr == ptr_ftp_param\n");
}

TEST_F(StopDeleteProgressTest, CommonDataIsKeptAndTheAnswerIsFalse)
{
    EXPECT_EQ(task_->GetCommData(), "");
    EXPECT_FALSE(task_->SetCommonData("text"));
    EXPECT_EQ(task_->GetCommData(), "text");
    Run();
    EXPECT_EQ(task_->GetCommData(), "text");
}

TEST_F(StopDeleteProgressTest, RelatedCamerasAreNoneAndTheErrorIsCleared)
{
    std::map<int, std::vector<int>> cameras = {{1, {2}}};
    ErrorCode error(7, 8);
    task_->RelatedCameraList(cameras, error);
    EXPECT_TRUE(cameras.empty());
    EXPECT_EQ(error.iFirstCode, 0);
    EXPECT_EQ(error.iSecondCode, 0);
}

}  // namespace
}  // namespace contract
