#include "FetchyardBussiness/ImageDownload/ImageParam.h"
#include "support/ExportTest.h"
#include "ZellBase/Error.h"

#include <filesystem>
#include <sstream>

namespace contract {
namespace {

using Zell::Base::Error::ErrorCode;

// Where the text of a whole run stands: states, errors, log texts and calls, in their order.
class ExportDriverTest : public ExportTest
{
protected:
    static void Answer(const std::vector<fakes::PageAnswer>& pages)
    {
        fakes::TheScript().pages.assign(pages.begin(), pages.end());
    }

    static void ThreePages()
    {
        Answer({Page(Sheet(1, {{"08:00", "door"}}), false), Page(Sheet(2, {{"08:01", "gate"}}), false),
                Page(Sheet(3, {{"08:02", "yard"}}), true)});
    }

    void MakeEvidence() { record_->str_evidence_param = R"({"Case":7})"; }
};

TEST_F(ExportDriverTest, ThreePagesOfCsv)
{
    ThreePages();
    EXPECT_EQ(Run(), R"(
state 1 (0,0)
log3 Start export.
DirectoryExists <tmp>/Alarm/
log3 Start export , file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
log3 DownloadPictures  code_now1 iFirstCode = 0  iSecondCode = 0
log3 DownloadPictures code_now2 iFirstCode = 0  iSecondCode = 0
log3 ptr_determinant_control_param->vs_file_param_.file_total_page_is_finished = 0, b_stop_ = 0, b_delete_ = 0
GetExportFileDataList POST /api {"PageIndex":1,"PageSize":2}
log3 CDeterminantWriteFileTask::Exec()GetExportFileDataList, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.  data_condition_.export_data_node.is_rowcolumn_data =1
log3 CDeterminantWriteFileTask::Exec()  data_condition_.export_data_node.file_total_page_is_finished = 0
log3 CDeterminantWriteFileTask::WriteDataToFile excel_data.export_file_type = 1
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile to csv file: <tmp>/Alarm/Alarm.csv.
csv open <tmp>/Alarm/Alarm.csv
csv line "Time","Text"
csv line "08:00","door"
csv write
csv close
log3 CDeterminantWriteFileTask::WriteDataToFile return = 1
log3 CDeterminantWriteFileTask::Exec(): write_is_ok = 1
log3 CDeterminantWriteFileTask::Exec()  ptr_determinant_control_param->vs_file_param_.file_current_page = 1
GetExportFileDataList POST /api {"PageIndex":2,"PageSize":2}
log3 CDeterminantWriteFileTask::Exec()GetExportFileDataList, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.  data_condition_.export_data_node.is_rowcolumn_data =1
log3 CDeterminantWriteFileTask::Exec()  data_condition_.export_data_node.file_total_page_is_finished = 0
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile  add to csv file: <tmp>/Alarm/Alarm.csv.
csv open to append <tmp>/Alarm/Alarm.csv
csv line "08:01","gate"
csv write
csv close
log3 CDeterminantWriteFileTask::WriteDataToFile return = 1
log3 CDeterminantWriteFileTask::Exec(): write_is_ok = 1
log3 CDeterminantWriteFileTask::Exec()  ptr_determinant_control_param->vs_file_param_.file_current_page = 2
GetExportFileDataList POST /api {"PageIndex":3,"PageSize":2}
log3 CDeterminantWriteFileTask::Exec()GetExportFileDataList, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.  data_condition_.export_data_node.is_rowcolumn_data =1
log3 CDeterminantWriteFileTask::Exec()  data_condition_.export_data_node.file_total_page_is_finished = 1
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile  add to csv file: <tmp>/Alarm/Alarm.csv.
csv open to append <tmp>/Alarm/Alarm.csv
csv line "08:02","yard"
csv write
csv close
log3 CDeterminantWriteFileTask::WriteDataToFile return = 1
log3 CDeterminantWriteFileTask::Exec(): write_is_ok = 1
log3 all data has download finished. file = Alarm
log3 CDeterminantWriteFileTask::Exec() success·
state 4 (0,0)
log3 Download export result, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
)");
    EXPECT_EQ(Settings().file_current_page, 3);
    EXPECT_TRUE(Settings().file_total_page_is_finished);
    EXPECT_FALSE(Settings().restart_is_need_download);
    EXPECT_EQ(Settings().str_request_condition, R"({"PageIndex":1,"PageSize":2})");
}

TEST_F(ExportDriverTest, PicturesAloneFinishWithoutAReport)
{
    Settings().str_request_api = "";
    AddPicture("a.jpg", "/p/a");
    EXPECT_EQ(Run(), R"(
state 1 (0,0)
log3 Start export.
DirectoryExists <tmp>/Alarm/
log3 Start export , file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
log3 DownloadPictures code_now iFirstCode = 0  iSecondCode = 0
new CImageMultiSyncLoader
log3 Start image download :sync_load_param.save_full_name =  <tmp>/Alarm/a.jpg
SyncLoadImage type=1 url=/p/a request=/p/a cache=1 site=0 -> <tmp>/Alarm/a.jpg
SetLastError (0,0)
SetDownloadTaskParam
log3 DownloadPictures  code_now1 iFirstCode = 0  iSecondCode = 0
log3 DownloadPictures code_now2 iFirstCode = 0  iSecondCode = 0
log3 ptr_determinant_control_param->vs_file_param_.file_total_page_is_finished = 0, b_stop_ = 0, b_delete_ = 0
log3 CDeterminantWriteFileTask::Exec() success·
state 4 (0,0)
log3 Download export result, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
)");
    EXPECT_TRUE(Exists("Alarm/a.jpg"));
}

TEST_F(ExportDriverTest, EmptyRequestFinishesWithoutAnything)
{
    Settings().str_request_api = "";
    EXPECT_EQ(Run(), R"(
state 1 (0,0)
log3 Start export.
DirectoryExists <tmp>/Alarm/
log3 Start export , file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
log3 DownloadPictures  code_now1 iFirstCode = 0  iSecondCode = 0
log3 DownloadPictures code_now2 iFirstCode = 0  iSecondCode = 0
log3 ptr_determinant_control_param->vs_file_param_.file_total_page_is_finished = 0, b_stop_ = 0, b_delete_ = 0
log3 CDeterminantWriteFileTask::Exec() success·
state 4 (0,0)
log3 Download export result, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
)");
}

TEST_F(ExportDriverTest, CallThatFailsAtPageOne)
{
    Answer({FailedPage(21, 500)});
    EXPECT_EQ(Run(), R"(
state 1 (0,0)
log3 Start export.
DirectoryExists <tmp>/Alarm/
log3 Start export , file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
log3 DownloadPictures  code_now1 iFirstCode = 0  iSecondCode = 0
log3 DownloadPictures code_now2 iFirstCode = 0  iSecondCode = 0
log3 ptr_determinant_control_param->vs_file_param_.file_total_page_is_finished = 0, b_stop_ = 0, b_delete_ = 0
GetExportFileDataList POST /api {"PageIndex":1,"PageSize":2}
log5 CDeterminantWriteFileTask::Exec() ret = 0
SetLastError (21,500)
state 5 (21,500)
log3 CDeterminantWriteFileTask::WriteDataToFile excel_data.export_file_type = 1
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile
log5 CExportReportDataToCSVFileObject::ExportDataToFile excel_data.vec_sheets.size() < 1
log3 CDeterminantWriteFileTask::WriteDataToFile return = 0
)");
    EXPECT_TRUE(Settings().restart_is_need_download);
    EXPECT_EQ(Settings().file_current_page, 1);
}

TEST_F(ExportDriverTest, CallThatFailsAtPageTwoClosesTheCsv)
{
    Answer({Page(Sheet(1, {{"08:00", "door"}}), false), FailedPage(22, 56)});
    EXPECT_EQ(Run(), R"(
state 1 (0,0)
log3 Start export.
DirectoryExists <tmp>/Alarm/
log3 Start export , file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
log3 DownloadPictures  code_now1 iFirstCode = 0  iSecondCode = 0
log3 DownloadPictures code_now2 iFirstCode = 0  iSecondCode = 0
log3 ptr_determinant_control_param->vs_file_param_.file_total_page_is_finished = 0, b_stop_ = 0, b_delete_ = 0
GetExportFileDataList POST /api {"PageIndex":1,"PageSize":2}
log3 CDeterminantWriteFileTask::Exec()GetExportFileDataList, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.  data_condition_.export_data_node.is_rowcolumn_data =1
log3 CDeterminantWriteFileTask::Exec()  data_condition_.export_data_node.file_total_page_is_finished = 0
log3 CDeterminantWriteFileTask::WriteDataToFile excel_data.export_file_type = 1
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile to csv file: <tmp>/Alarm/Alarm.csv.
csv open <tmp>/Alarm/Alarm.csv
csv line "Time","Text"
csv line "08:00","door"
csv write
csv close
log3 CDeterminantWriteFileTask::WriteDataToFile return = 1
log3 CDeterminantWriteFileTask::Exec(): write_is_ok = 1
log3 CDeterminantWriteFileTask::Exec()  ptr_determinant_control_param->vs_file_param_.file_current_page = 1
GetExportFileDataList POST /api {"PageIndex":2,"PageSize":2}
log5 CDeterminantWriteFileTask::Exec() ret = 0
SetLastError (22,56)
state 5 (22,56)
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile  add to csv file: <tmp>/Alarm/Alarm.csv.
csv open to append <tmp>/Alarm/Alarm.csv
csv write
csv close
log3 CDeterminantWriteFileTask::WriteDataToFile return = 1
)");
    EXPECT_TRUE(Settings().restart_is_need_download);
    EXPECT_FALSE(Settings().file_total_page_is_finished);
}

TEST_F(ExportDriverTest, CallThatFailsAtPageTwoClosesTheWorkbook)
{
    Settings().export_file_type = FetchyardBussiness::kExcelReport;
    Answer({Page(Sheet(1, {{"08:00", "door"}}), false), FailedPage(22, 56)});
    EXPECT_EQ(Lines(Run(), "xlsx"), R"(
xlsx init <tmp>/Alarm/Alarm.xlsx in <tmp>/Alarm/
xlsx sheet Alarms
xlsx cell 0,0 "Time"
xlsx cell 0,1 "Text"
xlsx cell 1,0 "08:00"
xlsx cell 1,1 "door"
xlsx sheet Alarms
xlsx used rows
xlsx close
)");
}

TEST_F(ExportDriverTest, CallThatFailsIsCollectedWhenTheExportGoesOnAfterFailures)
{
    Settings().is_continue_dowinloading = true;
    Answer({FailedPage(21, 500)});
    EXPECT_EQ(Run(), R"(
state 1 (0,0)
log3 Start export.
DirectoryExists <tmp>/Alarm/
log3 Start export , file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
log3 DownloadPictures  code_now1 iFirstCode = 0  iSecondCode = 0
log3 DownloadPictures code_now2 iFirstCode = 0  iSecondCode = 0
log3 ptr_determinant_control_param->vs_file_param_.file_total_page_is_finished = 0, b_stop_ = 0, b_delete_ = 0
GetExportFileDataList POST /api {"PageIndex":1,"PageSize":2}
log5 CDeterminantWriteFileTask::Exec() ret = 0
SetLastError (21,500)
GetErrorInfoByCode 21/500
SetErrorParamState true
SetErrorParam ArrayList[1]/ErrorReason=text of 21/500; ArrayList[1]/FileName=Alarm
SetDownloadTaskParam
state 5 (21,500)
log3 CDeterminantWriteFileTask::WriteDataToFile excel_data.export_file_type = 1
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile
log5 CExportReportDataToCSVFileObject::ExportDataToFile excel_data.vec_sheets.size() < 1
log3 CDeterminantWriteFileTask::WriteDataToFile return = 0
)");
    EXPECT_EQ(task_->GetCommData(), R"({"ArrayList":[{"FileName":"Alarm","ErrorReason":"text of 21/500"}]})");
}

TEST_F(ExportDriverTest, PageWithoutSheets)
{
    Answer({fakes::PageAnswer()});
    EXPECT_EQ(Run(), R"(
state 1 (0,0)
log3 Start export.
DirectoryExists <tmp>/Alarm/
log3 Start export , file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
log3 DownloadPictures  code_now1 iFirstCode = 0  iSecondCode = 0
log3 DownloadPictures code_now2 iFirstCode = 0  iSecondCode = 0
log3 ptr_determinant_control_param->vs_file_param_.file_total_page_is_finished = 0, b_stop_ = 0, b_delete_ = 0
GetExportFileDataList POST /api {"PageIndex":1,"PageSize":2}
log3 CDeterminantWriteFileTask::Exec()GetExportFileDataList, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.  data_condition_.export_data_node.is_rowcolumn_data =1
log5 CDeterminantWriteFileTask::Exec() data_condition_.export_data_node.vec_sheets.size() < 1
SetLastError (20,3)
state 5 (20,3)
)");
    EXPECT_FALSE(Settings().restart_is_need_download);
}

TEST_F(ExportDriverTest, PageWithoutSheetsIsCollectedWithTheCodeOfThePageCall)
{
    Settings().is_continue_dowinloading = true;
    Answer({fakes::PageAnswer()});
    EXPECT_EQ(Lines(Run(), "GetErrorInfoByCode"), "\nGetErrorInfoByCode 0/0\n");
    EXPECT_EQ(task_->GetCommData(), R"({"ArrayList":[{"FileName":"Alarm","ErrorReason":"text of 0/0"}]})");
}

TEST_F(ExportDriverTest, PageThatCannotBeWritten)
{
    Answer({Page(Sheet(1, {{"08:00", "door"}}), false)});
    fakes::FailCalls("csv open", 1, 1);
    EXPECT_EQ(Run(), R"(
state 1 (0,0)
log3 Start export.
DirectoryExists <tmp>/Alarm/
log3 Start export , file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
log3 DownloadPictures  code_now1 iFirstCode = 0  iSecondCode = 0
log3 DownloadPictures code_now2 iFirstCode = 0  iSecondCode = 0
log3 ptr_determinant_control_param->vs_file_param_.file_total_page_is_finished = 0, b_stop_ = 0, b_delete_ = 0
GetExportFileDataList POST /api {"PageIndex":1,"PageSize":2}
log3 CDeterminantWriteFileTask::Exec()GetExportFileDataList, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.  data_condition_.export_data_node.is_rowcolumn_data =1
log3 CDeterminantWriteFileTask::Exec()  data_condition_.export_data_node.file_total_page_is_finished = 0
log3 CDeterminantWriteFileTask::WriteDataToFile excel_data.export_file_type = 1
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile to csv file: <tmp>/Alarm/Alarm.csv.
csv open <tmp>/Alarm/Alarm.csv -> fails
log3 CDeterminantWriteFileTask::WriteDataToFile return = 0
log3 CDeterminantWriteFileTask::Exec(): write_is_ok = 0
log5  CDeterminantWriteFileTask::Exec() requset.str_request has no PageIndex, requset.str_request = {"PageIndex":1,"PageSize":2}
SetLastError (20,3219)
state 5 (20,3219)
)");
    EXPECT_TRUE(Settings().restart_is_need_download);
}

TEST_F(ExportDriverTest, FormatWithoutAWriterFailsItsPage)
{
    Settings().export_file_type = 4;
    Answer({Page(Sheet(1, {{"08:00", "door"}}), false)});
    EXPECT_EQ(Run(), R"(
state 1 (0,0)
log3 Start export.
DirectoryExists <tmp>/Alarm/
log3 Start export , file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
log3 DownloadPictures  code_now1 iFirstCode = 0  iSecondCode = 0
log3 DownloadPictures code_now2 iFirstCode = 0  iSecondCode = 0
log3 ptr_determinant_control_param->vs_file_param_.file_total_page_is_finished = 0, b_stop_ = 0, b_delete_ = 0
GetExportFileDataList POST /api {"PageIndex":1,"PageSize":2}
log3 CDeterminantWriteFileTask::Exec()GetExportFileDataList, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.  data_condition_.export_data_node.is_rowcolumn_data =1
log3 CDeterminantWriteFileTask::Exec()  data_condition_.export_data_node.file_total_page_is_finished = 0
log3 CDeterminantWriteFileTask::WriteDataToFile excel_data.export_file_type = 4
log3 CDeterminantWriteFileTask::WriteDataToFile return false
log3 CDeterminantWriteFileTask::Exec(): write_is_ok = 0
log5  CDeterminantWriteFileTask::Exec() requset.str_request has no PageIndex, requset.str_request = {"PageIndex":1,"PageSize":2}
SetLastError (20,3219)
state 5 (20,3219)
)");
    Answer({Page(Sheet(1, {{"08:00", "door"}}), false)});
    EXPECT_EQ(Lines(Run(), "log3 CDeterminantWriteFileTask::WriteDataToFile"),
              "\nlog3 CDeterminantWriteFileTask::WriteDataToFile return false\n");
}

TEST_F(ExportDriverTest, WriteFailureIsCollectedUnderItsOwnCode)
{
    Settings().is_continue_dowinloading = true;
    Answer({Page(Sheet(1, {{"08:00", "door"}}), false)});
    fakes::FailCalls("csv open", 1, 1);
    EXPECT_EQ(States(Run()), "1 5 (20,3219)");
    EXPECT_EQ(task_->GetCommData(),
              R"({"ArrayList":[{"FileName":"Alarm","ErrorReason":"text of 20/3219"}]})");
}

TEST_F(ExportDriverTest, ReportWithoutAFolderGoesBesideTheProgram)
{
    Settings().str_export_file_path = "";
    fakes::TheScript().every_folder_exists = true;
    fakes::TheScript().exe_path = Folder();
    Answer({Page(Sheet(1, {}), true)});
    const std::string trace = Run();
    EXPECT_NE(trace.find("\nlog3 CDeterminantWriteFileTask::Exec()  data_condition_.export_data_node."
                         "file_total_page_is_finished = 1\nGetCurExePath 260\n"),
              std::string::npos)
        << trace;
    EXPECT_EQ(Lines(trace, "csv open"), "\ncsv open <tmp>/Alarm.csv\n");
}

TEST_F(ExportDriverTest, ProgramFolderThatIsUnknownIsLoggedAndTheReportHasNone)
{
    Settings().str_export_file_path = "";
    fakes::TheScript().every_folder_exists = true;
    fakes::FailCalls("GetCurExePath", 1, 1);
    Answer({Page(Sheet(1, {}), true)});
    const std::string trace = Run();
    EXPECT_NE(trace.find("\nGetCurExePath 260 -> fails\nlog5 Get exe path failed.·\n"), std::string::npos)
        << trace;
    EXPECT_EQ(Lines(trace, "csv open"), "\ncsv open Alarm.csv\n");
}

TEST_F(ExportDriverTest, HeadsOfTheLogAreQualifiedNames)
{
    fakes::TheScript().show_log_heads = true;
    Settings().str_request_api = "";
    Settings().is_need_compress_zip = true;
    fakes::FailCalls("NQX_AccessFile", 1, 1);
    const std::string trace = Run();
    std::istringstream lines(Lines(trace, "log"));
    int count = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line.empty())
            continue;
        ++count;
        const std::string head = line.substr(5, line.find(']') - 4);
        EXPECT_TRUE(head.rfind("[FetchyardBussiness::CDeterminantWriteFileTask::", 0) == 0 ||
                    head == "[Compress::CompressFolder]")
            << line;
    }
    EXPECT_EQ(count, 11);
}

// A further run of an export that was not finished.
class ResumeTest : public ExportDriverTest
{
protected:
    ResumeTest()
    {
        Settings().restart_is_need_download = true;
        Settings().file_current_page = 4;
        Answer({Page(Sheet(5, {{"08:04", "dock"}}), true)});
    }
};

TEST_F(ResumeTest, ConditionWithoutAPageIndexIsBadInput)
{
    Settings().str_request_condition = R"({"PageSize":2})";
    EXPECT_EQ(Run(), R"(
state 1 (0,0)
log3 Start export.
DirectoryExists <tmp>/Alarm/
log3 Start export , file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
log3 DownloadPictures  code_now1 iFirstCode = 0  iSecondCode = 0
log3 DownloadPictures code_now2 iFirstCode = 0  iSecondCode = 0
log5 requset.str_request has no PageIndex, requset.str_request = {"PageSize":2}
SetLastError (20,3)
state 5 (20,3)
)");
}

TEST_F(ResumeTest, FinishedReportEndsAtOnceAndIsNotPacked)
{
    Settings().file_total_page_is_finished = true;
    Settings().is_need_compress_zip = true;
    EXPECT_EQ(Run(), R"(
state 1 (0,0)
log3 Start export.
DirectoryExists <tmp>/Alarm/
log3 Start export , file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
log3 DownloadPictures  code_now1 iFirstCode = 0  iSecondCode = 0
log3 DownloadPictures code_now2 iFirstCode = 0  iSecondCode = 0
state 4 (0,0)
log3 Download export success, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
)");
}

TEST_F(ResumeTest, FinishedReportOfAnEvidenceExportIsRegistered)
{
    MakeEvidence();
    Settings().file_total_page_is_finished = true;
    EXPECT_EQ(Run(), R"(
state 7 (0,0)
log3 Start export.
DirectoryExists <tmp>/Alarm/
log3 Start export , file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
log3 DownloadPictures  code_now1 iFirstCode = 0  iSecondCode = 0
log3 DownloadPictures code_now2 iFirstCode = 0  iSecondCode = 0
log3 Request API: /API/Evidence/V0/CreateEvidence, request message : {"Case":7}.
DoRequest /API/Evidence/V0/CreateEvidence {"Case":7}
state 10 (0,0)
log3 Download export success, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
)");
}

TEST_F(ResumeTest, FinishedReportWhoseEvidenceIsRefusedFails)
{
    MakeEvidence();
    Settings().file_total_page_is_finished = true;
    fakes::FailCalls("DoRequest", 1, 1);
    EXPECT_EQ(Run(), R"(
state 7 (0,0)
log3 Start export.
DirectoryExists <tmp>/Alarm/
log3 Start export , file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
log3 DownloadPictures  code_now1 iFirstCode = 0  iSecondCode = 0
log3 DownloadPictures code_now2 iFirstCode = 0  iSecondCode = 0
log3 Request API: /API/Evidence/V0/CreateEvidence, request message : {"Case":7}.
DoRequest /API/Evidence/V0/CreateEvidence {"Case":7} -> fails
log5 Do request failed.
state 11 (0,0)
log5 upload files to evidence failed.
)");
}

TEST_F(ResumeTest, CsvAsksForTheStoredPagePlusOne)
{
    EXPECT_EQ(Run(), R"(
state 1 (0,0)
log3 Start export.
DirectoryExists <tmp>/Alarm/
log3 Start export , file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
log3 DownloadPictures  code_now1 iFirstCode = 0  iSecondCode = 0
log3 DownloadPictures code_now2 iFirstCode = 0  iSecondCode = 0
log3 Download ptr_determinant_control_param->vs_file_param_.file_total_page_is_finished = 0  requset.str_request = {"PageIndex":5,"PageSize":2}   requset.str_quern =/api
log3 ptr_determinant_control_param->vs_file_param_.file_total_page_is_finished = 0, b_stop_ = 0, b_delete_ = 0
GetExportFileDataList POST /api {"PageIndex":5,"PageSize":2}
log3 CDeterminantWriteFileTask::Exec()GetExportFileDataList, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.  data_condition_.export_data_node.is_rowcolumn_data =1
log3 CDeterminantWriteFileTask::Exec()  data_condition_.export_data_node.file_total_page_is_finished = 1
log3 CDeterminantWriteFileTask::WriteDataToFile excel_data.export_file_type = 1
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile  add to csv file: <tmp>/Alarm/Alarm.csv.
csv open to append <tmp>/Alarm/Alarm.csv
csv line "08:04","dock"
csv write
csv close
log3 CDeterminantWriteFileTask::WriteDataToFile return = 1
log3 CDeterminantWriteFileTask::Exec(): write_is_ok = 1
log3 all data has download finished. file = Alarm
log3 CDeterminantWriteFileTask::Exec() success·
state 4 (0,0)
log3 Download export result, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
)");
    EXPECT_EQ(Settings().file_current_page, 5);
}

TEST_F(ResumeTest, EveryFormatButExcelMovesOn)
{
    const std::vector<std::pair<int, std::string>> rows = {{0, "1"}, {1, "5"}, {2, "5"}, {3, "5"}};
    for (const auto& [type, page] : rows) {
        Settings().export_file_type = type;
        Settings().file_current_page = 4;
        Settings().file_total_page_is_finished = false;
        Settings().restart_is_need_download = true;
        Answer({FailedPage(21, 500)});
        EXPECT_EQ(Lines(Run(), "GetExportFileDataList"),
                  "\nGetExportFileDataList POST /api {\"PageIndex\":" + page + ",\"PageSize\":2}\n")
            << type;
    }
}

TEST_F(ResumeTest, NothingMovesOnWithoutNeed)
{
    Settings().restart_is_need_download = false;
    EXPECT_EQ(Lines(Run(), "GetExportFileDataList"),
              "\nGetExportFileDataList POST /api {\"PageIndex\":1,\"PageSize\":2}\n");
}

TEST_F(ResumeTest, NothingMovesOnWhenTheServerGeneratesTheFile)
{
    Settings().is_server_data_to_write = false;
    EXPECT_EQ(Lines(Run(), "GetExportFileDataList"),
              "\nGetExportFileDataList POST /api {\"PageIndex\":1,\"PageSize\":2}\n");
}

TEST_F(ResumeTest, EmptyConditionIsAskedAsItStands)
{
    Settings().str_request_condition = "";
    EXPECT_EQ(Lines(Run(), "GetExportFileDataList"), "\nGetExportFileDataList POST /api·\n");
}

TEST_F(ResumeTest, StopBeforeTheCheckSkipsIt)
{
    AddPicture("a.jpg", "/p/a");
    Settings().str_request_condition = R"({"PageSize":2})";
    fakes::OnCall("SyncLoadImage", 1, [this] { task_->Stop(); });
    EXPECT_EQ(States(Run()), "1 6 (0,0)");
}

// What becomes of the request text from page to page.
TEST_F(ExportDriverTest, PageNumberIsRewrittenInTheText)
{
    struct Row
    {
        const char* condition;
        const char* second_request;
    };
    const std::vector<Row> rows = {
        {R"({"PageIndex":1,"PageSize":2})", R"( {"PageIndex":2,"PageSize":2})"},
        {R"({"A":"x,y","PageIndex":17,"B":1})", R"( {"A":"x,y","PageIndex":2,"B":1})"},
        {R"({"PageIndex": 1 ,"B":1})", R"( {"PageIndex":2,"B":1})"},
        {R"({"In":{"PageIndex":9,"x":1},"PageIndex":1,"B":1})",
         R"( {"In":{"PageIndex":2,"x":1},"PageIndex":1,"B":1})"},
        {R"({"In":{"PageIndex":9},"B":1})", R"( {"In":{"PageIndex":2,"B":1})"},
        {R"({"Text":"\"PageIndex\":1,","PageIndex":1,"B":1})",
         R"( {"Text":"\"PageIndex\":1,","PageIndex":2,"B":1})"},
        {R"({"PageIndex":1,"A":0,"PageIndex":7,"B":1})", R"( {"PageIndex":2,"A":0,"PageIndex":7,"B":1})"},
        {R"({"A\"PageIndex":5,"PageIndex":1,"B":1})", R"( {"A\"PageIndex":2,"PageIndex":1,"B":1})"},
        {R"({"Text":"PageIndex","PageIndex":1,"B":1})", R"( {"Text":"PageIndex","PageIndex":2,"B":1})"},
        {R"({"PageSize":2})", "·"},
        {R"({"PageSize":2,"PageIndex":1})", "·"},
        {R"({"PageIndex" :1,"B":1})", "·"},
        {R"({"pageIndex":1,"B":1})", "·"},
        {R"("PageIndex":)", "·"},
        {R"("PageIndex":,)", R"( "PageIndex":2,)"},
    };
    for (const Row& row : rows) {
        Settings().str_request_condition = row.condition;
        Settings().file_total_page_is_finished = false;
        Settings().restart_is_need_download = false;
        Settings().file_current_page = 1;
        Answer({Page(Sheet(1, {}), false), Page(Sheet(2, {}), true)});
        EXPECT_EQ(Lines(Run(), "GetExportFileDataList"),
                  "\nGetExportFileDataList POST /api " + std::string(row.condition) +
                      "\nGetExportFileDataList POST /api" + row.second_request + "\n");
    }
}

TEST_F(ExportDriverTest, RequestCarriesItsSite)
{
    Settings().request_site_id = 12;
    Answer({FailedPage(21, 500)});
    EXPECT_EQ(Lines(Run(), "GetExportFileDataList"),
              "\nGetExportFileDataList POST /api {\"PageIndex\":1,\"PageSize\":2} site=12\n");
}

TEST_F(ExportDriverTest, PicturesOfCellsComeFromTheSiteOfTheRequest)
{
    Settings().request_site_id = 12;
    ExportTest::Settings().str_export_file_name = "Alarm";
    FetchyardLogical::ExportSheet sheet = Sheet(1, {});
    sheet.vec_rows = {{PictureCell("/p/1.jpg", 2, "t")}};
    Answer({Page(sheet, true)});
    EXPECT_EQ(Lines(Run(), "SyncLoadImage"),
              "\nSyncLoadImage type=1 url=/p/1.jpg request=/p/1.jpg cache=1 site=12 -> <tmp>/Alarm/t.jpg\n");
}

TEST_F(ExportDriverTest, RowsAreDroppedBehindEachPage)
{
    // A failed second call hands the closing write what the task has left in the page: no rows of page 1.
    Answer({Page(Sheet(1, {{"08:00", "door"}}), false), FailedPage(22, 56)});
    const std::string lines = Lines(Run(), "csv line");
    EXPECT_EQ(lines, "\ncsv line \"Time\",\"Text\"\ncsv line \"08:00\",\"door\"\n");
}

// A server that never calls a page the last one.
TEST_F(ExportDriverTest, PagesThatNeverEndAreWrittenUntilAStop)
{
    int page = 0;
    fakes::TheScript().page_source = [&page] { return Page(Sheet(++page, {{"08:00", "door"}}), false); };
    fakes::OnCall("GetExportFileDataList", 1000, [this] { task_->Stop(); });
    const std::string trace = Run();
    EXPECT_EQ(States(trace), "1 6 (0,0)");
    EXPECT_EQ(fakes::CountOf("GetExportFileDataList"), 1000);
    EXPECT_NE(trace.find("\nGetExportFileDataList POST /api {\"PageIndex\":1000,\"PageSize\":2}\n"),
              std::string::npos);
    EXPECT_EQ(Settings().file_current_page, 1001);
    fakes::OnCall("GetExportFileDataList", 1010, [this] { task_->Delete(); });
    EXPECT_EQ(States(Run()), "1 200 (0,0)");
    EXPECT_EQ(fakes::CountOf("GetExportFileDataList"), 1010);
}

// The server's own number of the page says what the writer does, whichever page was asked for.
TEST_F(ExportDriverTest, FirstPageThatComesAgainStartsTheReportAnew)
{
    Answer({Page(Sheet(1, {{"08:00", "door"}}), false), Page(Sheet(1, {{"08:01", "gate"}}), true)});
    const std::string trace = Run();
    EXPECT_EQ(Lines(trace, "csv"), R"(
csv open <tmp>/Alarm/Alarm.csv
csv line "Time","Text"
csv line "08:00","door"
csv write
csv close
csv open <tmp>/Alarm/Alarm.csv
csv line "Time","Text"
csv line "08:01","gate"
csv write
csv close
)");
    EXPECT_EQ(States(trace), "1 4 (0,0)");
}

TEST_F(ExportDriverTest, LaterPageThatComesAgainIsWrittenAgain)
{
    Answer({Page(Sheet(1, {}), false), Page(Sheet(2, {{"08:01", "gate"}}), false),
            Page(Sheet(2, {{"08:01", "gate"}}), true)});
    const std::string trace = Run();
    EXPECT_EQ(Lines(trace, "csv line"), R"(
csv line "Time","Text"
csv line "08:01","gate"
csv line "08:01","gate"
)");
    EXPECT_EQ(States(trace), "1 4 (0,0)");
}

TEST_F(ExportDriverTest, TaskWithoutARecord)
{
    record_ = nullptr;
    EXPECT_EQ(Run(), R"(
state 5 (0,0)
log5 Export param failed·
)");
}

TEST_F(ExportDriverTest, TaskWithARecordOfAnotherClass)
{
    task_->SetDownloadTaskParam(std::make_shared<FetchyardBussiness::ImageParam>(), false);
    fakes::Take();
    task_->Exec();
    EXPECT_EQ(Trace(), "\nstate 5 (0,0)\nlog5 Export param failed·\n");
}

TEST_F(ExportDriverTest, MissingFolderIsMade)
{
    std::filesystem::remove(Folder() + "Alarm");
    Settings().str_request_api = "";
    EXPECT_EQ(States(Run()), "1 4 (0,0)");
    EXPECT_TRUE(Exists("Alarm"));
}

TEST_F(ExportDriverTest, FolderThatCannotBeMade)
{
    std::filesystem::remove(Folder() + "Alarm");
    fakes::FailCalls("MakeFullDir", 1, -1);
    const std::string expected = R"(
log3 Start export.
DirectoryExists <tmp>/Alarm/ -> missing
MakeFullDir <tmp>/Alarm/ -> fails
SetLastError (20,3215)
)";
    EXPECT_EQ(Run(), "\nstate 1 (0,0)" + expected + "state 5 (20,3215)\n" +
                         "log5  create file path =<tmp>/Alarm/  failed.  task failed\n");
    MakeEvidence();
    EXPECT_EQ(Run(), "\nstate 7 (0,0)" + expected + "state 11 (20,3215)\n" +
                         "log5  create file path =<tmp>/Alarm/  failed.  task failed\n");
}

TEST_F(ExportDriverTest, UnknownKindsOfExportFetchNothing)
{
    AddPicture("a.jpg", "/p/a");
    for (const int type : {1, 2, 5, -1}) {
        Settings().file_operate_type = type;
        EXPECT_EQ(Run(), R"(
state 1 (0,0)
log3 Start export.
DirectoryExists <tmp>/Alarm/
log3 Start export , file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
log3 CDeterminantWriteFileTask::Exec() success·
state 4 (0,0)
log3 Download export result, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
)") << type;
    }
}

TEST_F(ExportDriverTest, UnknownKindsOfExportArePacked)
{
    Settings().file_operate_type = 1;
    Settings().is_need_compress_zip = true;
    const std::string trace = Run();
    EXPECT_EQ(States(trace), "1 4 (0,0)");
    EXPECT_NE(trace.find("\nLaunchApp 7za.exe a -tzip"), std::string::npos);
}

TEST_F(ExportDriverTest, UnknownKindsOfExportCanBeStoppedAndDeleted)
{
    Settings().file_operate_type = 1;
    fakes::OnCall("DirectoryExists", 1, [this] { task_->Stop(); });
    EXPECT_EQ(States(Run()), "1 6 (0,0)");
    fakes::OnCall("DirectoryExists", 2, [this] { task_->Delete(); });
    EXPECT_EQ(States(Run()), "1 200 (0,0)");
}

TEST_F(ExportDriverTest, EvidenceExportIsRegisteredAtItsEnd)
{
    MakeEvidence();
    fakes::TheScript().evidence_answer =
        R"({"Response":{"ErrorModule":0,"ErrorCode":0,"SearchXml":"<found/>"}})";
    Answer({Page(Sheet(1, {}), true)});
    const std::string trace = Run();
    EXPECT_EQ(trace.substr(trace.find("log3 all data")), R"(log3 all data has download finished. file = Alarm
log3 CDeterminantWriteFileTask::Exec() success·
log3 Request API: /API/Evidence/V0/CreateEvidence, request message : {"Case":7}.
DoRequest /API/Evidence/V0/CreateEvidence {"Case":7}
state 10 (0,0)
log3 Download export result, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
)");
    EXPECT_EQ(States(trace), "7 10 (0,0)");
    EXPECT_EQ(record_->GetVal_str_search_xml(), "<found/>");
}

TEST_F(ExportDriverTest, EvidenceAnswers)
{
    struct Row
    {
        const char* answer;
        const char* states;
        const char* search_xml;
    };
    const std::vector<Row> rows = {
        {"", "7 10 (0,0)", ""},
        {"no json", "7 10 (0,0)", ""},
        {R"({"Response":{"SearchXml":"x"}})", "7 10 (0,0)", "x"},
        {R"({"Response":{"ErrorModule":1,"SearchXml":"x"}})", "7 11 (0,0)", "before"},
        {R"({"Response":{"ErrorCode":1}})", "7 11 (0,0)", "before"},
    };
    MakeEvidence();
    Settings().str_request_api = "";
    for (const Row& row : rows) {
        record_->SetVal_str_search_xml("before");
        fakes::TheScript().evidence_answer = row.answer;
        const std::string trace = Run();
        EXPECT_EQ(States(trace), row.states) << row.answer;
        EXPECT_EQ(record_->GetVal_str_search_xml(), row.search_xml) << row.answer;
    }
}

TEST_F(ExportDriverTest, EvidenceThatCannotBeRegisteredFailsAndKeepsTheFiles)
{
    MakeEvidence();
    AddPicture("a.jpg", "/p/a");
    Settings().str_request_api = "";
    fakes::FailCalls("DoRequest", 1, 1);
    const std::string trace = Run();
    EXPECT_EQ(trace.substr(trace.find("log3 CDeterminantWriteFileTask::Exec() success")),
              R"(log3 CDeterminantWriteFileTask::Exec() success·
log3 Request API: /API/Evidence/V0/CreateEvidence, request message : {"Case":7}.
DoRequest /API/Evidence/V0/CreateEvidence {"Case":7} -> fails
log5 Do request failed.
state 11 (0,0)
log5 upload files to evidence failed.
)");
    EXPECT_TRUE(Exists("Alarm/a.jpg"));
}

TEST_F(ExportDriverTest, StatesOfAnEvidenceExport)
{
    MakeEvidence();
    Answer({FailedPage(21, 500)});
    EXPECT_EQ(States(Run()), "7 11 (21,500)");
    Answer({fakes::PageAnswer()});
    EXPECT_EQ(States(Run()), "7 11 (20,3)");
    Answer({Page(Sheet(1, {}), true)});
    fakes::FailCalls("csv open", 1, 1);
    EXPECT_EQ(States(Run()), "7 11 (20,3219)");
}

TEST_F(ExportDriverTest, OneFailedPictureGivesItsOwnCode)
{
    Settings().is_continue_dowinloading = true;
    AddPicture("a.jpg", "/bad");
    AddPicture("b.jpg", "/p/b");
    fakes::TheScript().pictures["/bad"] = {ErrorCode(21, 404), ""};
    Answer({Page(Sheet(1, {}), true)});
    EXPECT_EQ(Run(), R"(
state 1 (0,0)
log3 Start export.
DirectoryExists <tmp>/Alarm/
log3 Start export , file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
log3 DownloadPictures code_now iFirstCode = 0  iSecondCode = 0
new CImageMultiSyncLoader
log3 Start image download :sync_load_param.save_full_name =  <tmp>/Alarm/a.jpg
SyncLoadImage type=1 url=/bad request=/bad cache=1 site=0 -> <tmp>/Alarm/a.jpg
log5 CDeterminantWriteFileTask::Exec()  image download filed  , ptr_img_url_key->strImageUrl = : /bad
GetErrorInfoByCode 21/404
SetErrorParamState true
SetErrorParam ArrayList[1]/ErrorReason=text of 21/404; ArrayList[1]/FileName=a.jpg
SetDownloadTaskParam
SetLastError (21,404)
log3 Start image download :sync_load_param.save_full_name =  <tmp>/Alarm/b.jpg
SyncLoadImage type=1 url=/p/b request=/p/b cache=1 site=0 -> <tmp>/Alarm/b.jpg
SetLastError (0,0)
SetDownloadTaskParam
log3 DownloadPictures  code_now1 iFirstCode = 0  iSecondCode = 0
log3 DownloadPictures code_now2 iFirstCode = 0  iSecondCode = 0
log3 ptr_determinant_control_param->vs_file_param_.file_total_page_is_finished = 0, b_stop_ = 0, b_delete_ = 0
GetExportFileDataList POST /api {"PageIndex":1,"PageSize":2}
log3 CDeterminantWriteFileTask::Exec()GetExportFileDataList, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.  data_condition_.export_data_node.is_rowcolumn_data =1
log3 CDeterminantWriteFileTask::Exec()  data_condition_.export_data_node.file_total_page_is_finished = 1
log3 CDeterminantWriteFileTask::WriteDataToFile excel_data.export_file_type = 1
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile to csv file: <tmp>/Alarm/Alarm.csv.
csv open <tmp>/Alarm/Alarm.csv
csv line "Time","Text"
csv write
csv close
log3 CDeterminantWriteFileTask::WriteDataToFile return = 1
log3 CDeterminantWriteFileTask::Exec(): write_is_ok = 1
log3 all data has download finished. file = Alarm
log3 CDeterminantWriteFileTask::Exec() success·
SetLastError (21,404)
state 5 (21,404)
log3 Download export result, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
)");
    EXPECT_EQ(task_->GetCommData(), R"({"ArrayList":[{"FileName":"a.jpg","ErrorReason":"text of 21/404"}]})");
    EXPECT_EQ(record_->GetVal_reserve_data(), task_->GetCommData());
}

TEST_F(ExportDriverTest, TwoFailedFilesGiveTheCommonCodeWhateverTheirCodes)
{
    Settings().is_continue_dowinloading = true;
    AddPicture("z.jpg", "/bad");
    AddPicture("a.jpg", "/worse");
    Settings().str_request_api = "";
    fakes::TheScript().pictures["/bad"] = {ErrorCode(21, 404), ""};
    fakes::TheScript().pictures["/worse"] = {ErrorCode(22, 7), ""};
    EXPECT_EQ(States(Run()), "1 5 (20,3605)");
    EXPECT_EQ(task_->GetCommData(), R"({"ArrayList":[{"FileName":"a.jpg","ErrorReason":"text of 22/7"},)"
                                    R"({"FileName":"z.jpg","ErrorReason":"text of 21/404"}]})");
    fakes::TheScript().pictures["/worse"] = {ErrorCode(21, 404), ""};
    EXPECT_EQ(States(Run()), "1 5 (20,3605)");
}

TEST_F(ExportDriverTest, TwoFailuresOfOneNameCountAsOneWithTheFirstReason)
{
    Settings().is_continue_dowinloading = true;
    AddPicture("a.jpg", "/bad");
    AddPicture("a.jpg", "/worse");
    Settings().str_request_api = "";
    fakes::TheScript().pictures["/bad"] = {ErrorCode(21, 404), ""};
    fakes::TheScript().pictures["/worse"] = {ErrorCode(22, 500), ""};
    EXPECT_EQ(States(Run()), "1 5 (21,404)");
    EXPECT_EQ(task_->GetCommData(), R"({"ArrayList":[{"FileName":"a.jpg","ErrorReason":"text of 21/404"}]})");
}

TEST_F(ExportDriverTest, CodesOfAFormerRunStayAndItsFilesDoNot)
{
    Settings().is_continue_dowinloading = true;
    AddPicture("a.jpg", "/bad");
    Settings().str_request_api = "";
    fakes::TheScript().pictures["/bad"] = {ErrorCode(21, 404), ""};
    EXPECT_EQ(States(Run()), "1 5 (21,404)");
    fakes::TheScript().pictures["/bad"] = {ErrorCode(22, 500), ""};
    EXPECT_EQ(States(Run()), "1 5 (21,404)");
    fakes::TheScript().pictures["/bad"] = {ErrorCode(22, 7), ""};
    EXPECT_EQ(States(Run()), "1 5 (22,7)");
    EXPECT_EQ(task_->GetCommData(), R"({"ArrayList":[{"FileName":"a.jpg","ErrorReason":"text of 22/7"}]})");
}

TEST_F(ExportDriverTest, FailedFilesTextOfAFormerRunStaysUntilTheNextFailure)
{
    Settings().is_continue_dowinloading = true;
    AddPicture("a.jpg", "/bad");
    Settings().str_request_api = "";
    fakes::TheScript().pictures["/bad"] = {ErrorCode(21, 404), ""};
    Run();
    fakes::TheScript().pictures.clear();
    EXPECT_EQ(States(Run()), "1 4 (0,0)");
    EXPECT_EQ(task_->GetCommData(), R"({"ArrayList":[{"FileName":"a.jpg","ErrorReason":"text of 21/404"}]})");
}

TEST_F(ExportDriverTest, CollectedFailuresOfAnEvidenceExportAreNotRegistered)
{
    MakeEvidence();
    Settings().is_continue_dowinloading = true;
    AddPicture("a.jpg", "/bad");
    Settings().str_request_api = "";
    fakes::TheScript().pictures["/bad"] = {ErrorCode(21, 404), ""};
    EXPECT_EQ(States(Run()), "7 11 (21,404)");
    EXPECT_EQ(fakes::CountOf("DoRequest"), 0);
}

TEST_F(ExportDriverTest, SecondRunGoesOnWithTheSameWriter)
{
    Answer({Page(Sheet(1, {{"08:00", "door"}}), false), FailedPage(22, 56)});
    Run();
    Answer({Page(Sheet(3, {{"08:02", "yard"}}), true)});
    EXPECT_EQ(Run(), R"(
log3 Exec set signal to write file b_stop_ =0
log3 CExportReportDataToFileObject::SetTaskStopState  state = 0
state 1 (0,0)
log3 Start export.
DirectoryExists <tmp>/Alarm/
log3 Start export , file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
log3 DownloadPictures  code_now1 iFirstCode = 0  iSecondCode = 0
log3 DownloadPictures code_now2 iFirstCode = 0  iSecondCode = 0
log3 Download ptr_determinant_control_param->vs_file_param_.file_total_page_is_finished = 0  requset.str_request = {"PageIndex":3,"PageSize":2}   requset.str_quern =/api
log3 ptr_determinant_control_param->vs_file_param_.file_total_page_is_finished = 0, b_stop_ = 0, b_delete_ = 0
GetExportFileDataList POST /api {"PageIndex":3,"PageSize":2}
log3 CDeterminantWriteFileTask::Exec()GetExportFileDataList, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.  data_condition_.export_data_node.is_rowcolumn_data =1
log3 CDeterminantWriteFileTask::Exec()  data_condition_.export_data_node.file_total_page_is_finished = 1
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile
log3 CExportReportDataToCSVFileObject::ExportDataToCSVFile  add to csv file: <tmp>/Alarm/Alarm.csv.
csv open to append <tmp>/Alarm/Alarm.csv
csv line "08:02","yard"
csv write
csv close
log3 CDeterminantWriteFileTask::WriteDataToFile return = 1
log3 CDeterminantWriteFileTask::Exec(): write_is_ok = 1
log3 all data has download finished. file = Alarm
log3 CDeterminantWriteFileTask::Exec() success·
state 4 (0,0)
log3 Download export result, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
)");
}

TEST_F(ExportDriverTest, DockStationFilesAreFetchedInTheOrderOfTheirNumbers)
{
    Settings().file_operate_type = 4;
    Settings().request_site_id = 12;
    Settings().map_device_log[9] = {3, "nine.log"};
    Settings().map_device_log[2] = {4, "two.log"};
    EXPECT_EQ(Run(), R"(
state 1 (0,0)
log3 Start export.
DirectoryExists <tmp>/Alarm/
log3 Start export , file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
new CImageMultiSyncLoader
log3 Start download  dockstation files :sync_load_param.save_full_name =  <tmp>/Alarm/two.log
SyncLoadImage type=4 url=2 request= cache=0 site=12 device=4 -> <tmp>/Alarm/two.log
SetLastError (0,0)
log3 Start download  dockstation files :sync_load_param.save_full_name =  <tmp>/Alarm/nine.log
SyncLoadImage type=4 url=9 request= cache=0 site=12 device=3 -> <tmp>/Alarm/nine.log
SetLastError (0,0)
log3 CDeterminantWriteFileTask::Exec() success·
state 4 (0,0)
log3 Download export result, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
)");
    EXPECT_TRUE(Exists("Alarm/nine.log"));
    EXPECT_TRUE(Settings().is_continue_dowinloading);
}

TEST_F(ExportDriverTest, DockStationFileThatFailsIsCollectedAndTheOthersArrive)
{
    Settings().file_operate_type = 4;
    Settings().map_device_log[2] = {4, "two.log"};
    Settings().map_device_log[9] = {3, "nine.log"};
    fakes::TheScript().pictures["2"] = {ErrorCode(21, 404), ""};
    const std::string trace = Run();
    EXPECT_EQ(States(trace), "1 5 (21,404)");
    EXPECT_EQ(Lines(trace, "log5"),
              "\nlog5 CDeterminantWriteFileTask::Exec()  dockstation files download filed  ,file id = : 2\n");
    EXPECT_EQ(task_->GetCommData(),
              R"({"ArrayList":[{"FileName":"two.log","ErrorReason":"text of 21/404"}]})");
    EXPECT_TRUE(Exists("Alarm/nine.log"));
}

TEST_F(ExportDriverTest, DockStationLoopEndsOnlyWhenBothFlagsAreUp)
{
    Settings().file_operate_type = 4;
    for (int file = 1; file <= 3; ++file)
        Settings().map_device_log[file] = {4, std::to_string(file)};
    fakes::OnCall("SyncLoadImage", 1, [this] { task_->Stop(); });
    EXPECT_EQ(States(Run()), "1 6 (0,0)");
    EXPECT_EQ(fakes::CountOf("SyncLoadImage"), 3);
    fakes::OnCall("SyncLoadImage", 5, [this] {
        task_->Stop();
        task_->Delete();
    });
    EXPECT_EQ(States(Run()), "1 200 (0,0)");
    EXPECT_EQ(fakes::CountOf("SyncLoadImage"), 5);
}

TEST_F(ExportDriverTest, DockStationExportWithoutFilesMakesNoLoader)
{
    Settings().file_operate_type = 4;
    EXPECT_EQ(States(Run()), "1 4 (0,0)");
    EXPECT_EQ(fakes::CountOf("new CImageMultiSyncLoader"), 0);
}

}  // namespace
}  // namespace contract
