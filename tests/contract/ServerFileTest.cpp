#include "support/ExportTest.h"
#include "support/HtmlTool.h"
#include "ZellBase/Error.h"

#include <filesystem>
#include <fstream>
#include <regex>

namespace contract {
namespace {

using FetchyardLogical::RequstData;

RequstData Request(const std::string& method, const std::string& address, const std::string& text = "")
{
    RequstData request;
    request.str_method = method;
    request.str_quern = address;
    request.str_request = text;
    request.site_id = 5;
    request.pattern = 2;
    request.task_id = "t-7";
    return request;
}

// A report that the server generates itself.
class ServerFileTest : public ExportTest
{
protected:
    ServerFileTest()
    {
        fakes::TheScript().public_data_path = Folder() + "public/";
        page_.is_rowcolumn_data = false;
        page_.server.query_request = Request("POST", "/state", "{query}");
        page_.server.download_request = Request("GET", "/file");
        page_.server.delete_cache_request = Request("POST", "/drop", "{drop}");
        page_.server.operate_request = Request("PUT", "/operate");
        fakes::TheScript().pages = {page_};
    }

    void Created()
    {
        page_.server.file_is_created = true;
        fakes::TheScript().pages = {page_};
    }

    // The server is ready after so many polls that say "not yet", and names the two requests then.
    void Ready(int polls_before)
    {
        fakes::PollAnswer ready;
        ready.is_ready = true;
        ready.download = Request("GET", "/later/file");
        ready.delete_cache = Request("POST", "/later/drop", "{later}");
        fakes::TheScript().polls.assign(polls_before, fakes::PollAnswer());
        fakes::TheScript().polls.push_back(ready);
    }

    // The trace behind the page call.
    std::string Rest()
    {
        const std::string trace = Run();
        const std::string mark = "is_rowcolumn_data =0\n";
        return "\n" + trace.substr(trace.find(mark) + mark.size());
    }

    std::string Content(const std::string& path) const
    {
        std::ifstream file(Folder() + path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    // The trace with the present time masked.
    static std::string Unstamped(const std::string& trace)
    {
        static const std::regex stamp(R"(\d{4}(_\d{2}){5}_\d{3})");
        return std::regex_replace(trace, stamp, "<stamp>");
    }

    void MakeEvidence() { record_->str_evidence_param = R"({"Case":7})"; }

    fakes::PageAnswer page_;
};

constexpr char kFetched[] = R"(log3 server_genareate_node  file_is_created 11111111
log3 server_genareate_node data_condition_.export_data_node.server_genareate_node.file_is_created  ok   file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
log3 CFileExportTask file_export_task exe()  file name: Alarm.csv
SetDownloadTaskParam
log3 Start export file.
log3 Start export file, file name: , file guid: task-2, file save path: .
ClientSynSend GET /file request= send= pattern=2 timeout=600000 site=0
DirectoryExists <tmp>/Alarm/
OpenFile <tmp>/Alarm/Alarm.csv 15 8192
WriteFile 13
CloseFile
log3 download export file sucess, file name: , file guid: task-2, file save path: .
NotifyServerDeleteCacheFile POST /drop {drop}
log3 NotifyServerDeleteCacheFile   result =1   file name: Alarm.csv
)";

constexpr char kFinished[] = R"(log3 CDeterminantWriteFileTask::Exec() success·
state 4 (0,0)
log3 Download export result, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
)";

TEST_F(ServerFileTest, CreatedFileIsFetchedAndTheServerDropsItOnce)
{
    Created();
    EXPECT_EQ(Rest(), std::string("\n") + kFetched + kFinished);
    EXPECT_EQ(Content("Alarm/Alarm.csv"), "body of /file");
    EXPECT_FALSE(Settings().is_server_data_to_write);
    EXPECT_EQ(fakes::CountOf("NotifyServerDeleteCacheFile"), 1);
}

TEST_F(ServerFileTest, FileIsPolledForWithThreeTextsAlone)
{
    Ready(1);
    const std::string trace = Rest();
    EXPECT_EQ(trace.substr(0, trace.find("log3 server_genareate_node data_condition")), R"(
log3 data_condition_.export_data_node.server_genareate_node.file_is_created  file name: Alarm
ZC_Sleep 1000
GetServerFileGenerateState POST /state {query}
ZC_Sleep 1000
GetServerFileGenerateState POST /state {query}
log3 server_genareate_node  data_condition_.export_data_node.server_genareate_node.file_is_created  finished   file name: Alarm
log3 server_genareate_node  file_is_created 11111111
)");
    EXPECT_NE(trace.find("\nClientSynSend GET /later/file "), std::string::npos);
    EXPECT_NE(trace.find("\nNotifyServerDeleteCacheFile POST /later/drop {later}\n"), std::string::npos);
    EXPECT_EQ(Content("Alarm/Alarm.csv"), "body of /later/file");
    EXPECT_EQ(States(trace), "4 (0,0)");
}

TEST_F(ServerFileTest, NameHasTheSuffixOfItsFormat)
{
    const std::vector<std::pair<int, const char*>> rows = {{0, "Alarm.xlsx"}, {1, "Alarm.csv"},
                                                           {3, "Alarm.txt"},  {4, "Alarm.html"},
                                                           {5, "Alarm.7z"},   {6, "Alarm"}};
    for (const auto& [type, name] : rows) {
        Created();
        Settings().export_file_type = type;
        EXPECT_EQ(States(Run()), "1 4 (0,0)");
        EXPECT_TRUE(Exists(std::string("Alarm/") + name)) << name;
    }
}

TEST_F(ServerFileTest, PdfComesAsHtmlAndIsTurned)
{
    Created();
    Settings().export_file_type = FetchyardBussiness::kPdfReport;
    Settings().pdf_page_size = "A3";  // of reports that are written here
    const std::string trace = Unstamped(Rest());
    EXPECT_EQ("\n" + trace.substr(trace.find("NotifyServer")), std::string(R"(
NotifyServerDeleteCacheFile POST /drop {drop}
log3 NotifyServerDeleteCacheFile   result =1   file name: Alarm.html
DirectoryExists <tmp>/public/Fetchyard/ -> missing
MakeFullDir <tmp>/public/Fetchyard/
CopyFileW <tmp>/Alarm/Alarm.html <tmp>/public/Fetchyard/<stamp>.html 0
wkhtmltopdf  --encoding utf-8 --page-size A4 <tmp>/public/Fetchyard/<stamp>.html <tmp>/public/Fetchyard/<stamp>.pdf
log3 pdf has been created!
DeleteFileW <tmp>/public/Fetchyard/<stamp>.html
DeleteFileW <tmp>/Alarm/Alarm.html
CopyFileW <tmp>/public/Fetchyard/<stamp>.pdf <tmp>/Alarm/Alarm.pdf 0
DeleteFileW <tmp>/public/Fetchyard/<stamp>.pdf
log3  determanatewritefiletask pdf has been created! pdf_path =<tmp>/Alarm/Alarm.pdf   copy_result= 0  del_result = 0
)") + kFinished);
    EXPECT_EQ(Content("Alarm/Alarm.pdf"), "%PDF of 13 bytes");
    EXPECT_FALSE(Exists("Alarm/Alarm.html"));
    EXPECT_EQ(HtmlOfTheTool(), "body of /file");
}

TEST_F(ServerFileTest, PageOfThePdfIsThatOfTheDownload)
{
    Settings().export_file_type = FetchyardBussiness::kPdfReport;
    page_.server.download_request.pdf_page_size = "Letter";
    page_.server.download_request.pdf_page_orintation = 0;
    Created();
    const std::string trace = Unstamped(Run());
    EXPECT_EQ(Lines(trace, "wkhtmltopdf"), R"(
wkhtmltopdf  --encoding utf-8  -O landscape --page-size Letter <tmp>/public/Fetchyard/<stamp>.html <tmp>/public/Fetchyard/<stamp>.pdf
)");
}

TEST_F(ServerFileTest, ScratchFolderThatCannotBeMadeFailsAndKeepsTheHtml)
{
    Settings().export_file_type = FetchyardBussiness::kPdfReport;
    Created();
    fakes::FailCalls("MakeFullDir", 1, -1);
    const std::string trace = Unstamped(Rest());
    EXPECT_EQ("\n" + trace.substr(trace.find("NotifyServer")), R"(
NotifyServerDeleteCacheFile POST /drop {drop}
log3 NotifyServerDeleteCacheFile   result =1   file name: Alarm.html
DirectoryExists <tmp>/public/Fetchyard/ -> missing
MakeFullDir <tmp>/public/Fetchyard/ -> fails
SetLastError (20,3215)
log5   CDeterminantWriteFileTask::DownloadFileFromServer create file path =<tmp>/public/Fetchyard/  failed.  task failed
state 5 (20,3215)
log3 server_genareate_node  DownloadFileFromServer failed
)");
    EXPECT_TRUE(Exists("Alarm/Alarm.html"));
}

TEST_F(ServerFileTest, HtmlThatCannotBeCopiedLeavesNoReportAndTheExportFinishes)
{
    Settings().export_file_type = FetchyardBussiness::kPdfReport;
    Created();
    fakes::FailCalls("CopyFileW", 1, 1);
    const std::string trace = Unstamped(Rest());
    EXPECT_EQ("\n" + trace.substr(trace.find("CopyFileW")), std::string(R"(
CopyFileW <tmp>/Alarm/Alarm.html <tmp>/public/Fetchyard/<stamp>.html 0 -> fails
log5 copy html failed. html_path_new =<tmp>/public/Fetchyard/<stamp>.html
wkhtmltopdf  --encoding utf-8 --page-size A4 <tmp>/public/Fetchyard/<stamp>.html <tmp>/public/Fetchyard/<stamp>.pdf
log3 pdf has been created!
DeleteFileW <tmp>/public/Fetchyard/<stamp>.html
DeleteFileW <tmp>/Alarm/Alarm.html
CopyFileW <tmp>/public/Fetchyard/<stamp>.pdf <tmp>/Alarm/Alarm.pdf 0
DeleteFileW <tmp>/public/Fetchyard/<stamp>.pdf
log3  determanatewritefiletask pdf has been created! pdf_path =<tmp>/Alarm/Alarm.pdf   copy_result= -1  del_result = -1
)") + kFinished);
    EXPECT_FALSE(Exists("Alarm/Alarm.pdf"));
    EXPECT_FALSE(Exists("Alarm/Alarm.html"));
}

TEST_F(ServerFileTest, ToolThatCannotStartIsSeenInTheLogAlone)
{
    Settings().export_file_type = FetchyardBussiness::kPdfReport;
    Created();
    fakes::FailCalls("wkhtmltopdf", 1, 1);
    const std::string trace = Unstamped(Rest());
    EXPECT_EQ(Lines(trace, "log3 requset.str_request"), R"(
log3 requset.str_request file =  --encoding utf-8 --page-size A4 <tmp>/public/Fetchyard/<stamp>.html <tmp>/public/Fetchyard/<stamp>.pdf  failed
)");
    EXPECT_EQ(Lines(trace, "log3 pdf has"), "\nlog3 pdf has been created!\n");
    EXPECT_EQ(States(trace), "4 (0,0)");
}

// A blank in the scratch folder's name breaks the line: nothing is quoted.
TEST_F(ServerFileTest, BlankInTheScratchFolderIsNotQuoted)
{
    fakes::TheScript().public_data_path = Folder() + "pub lic/";
    Settings().export_file_type = FetchyardBussiness::kPdfReport;
    Created();
    EXPECT_EQ(Lines(Unstamped(Run()), "wkhtmltopdf"), R"(
wkhtmltopdf  --encoding utf-8 --page-size A4 <tmp>/pub lic/Fetchyard/<stamp>.html <tmp>/pub lic/Fetchyard/<stamp>.pdf
)");
}

TEST_F(ServerFileTest, FetchThatFailsIsReportedTwiceAndTheServerKeepsItsFile)
{
    Created();
    fakes::FailCalls("ClientSynSend", 1, -1);
    const std::string trace = Rest();
    const std::string expected = R"(
log3 CFileExportTask Exec result, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
SetLastError (20,3219)
)";
    EXPECT_EQ("\n" + trace.substr(trace.find("log3 CFileExportTask Exec result")),
              expected + R"(state 5 (20,3219)
state 5 (20,3219)
log3 server_genareate_node  DownloadFileFromServer failed
)");
    EXPECT_EQ(fakes::CountOf("NotifyServerDeleteCacheFile"), 0);
    MakeEvidence();
    Created();
    EXPECT_EQ(States(Run()), "7 11 11 (20,3219)");
}

TEST_F(ServerFileTest, FetchThatFailsIsCollectedUnderTheNameOfItsFile)
{
    Settings().is_continue_dowinloading = true;
    Settings().export_file_type = FetchyardBussiness::kPdfReport;
    Created();
    fakes::FailCalls("ClientSynSend", 1, 1);
    const std::string trace = Rest();
    EXPECT_EQ("\n" + trace.substr(trace.find("SetLastError (20,3219)")), R"(
SetLastError (20,3219)
GetErrorInfoByCode 20/3219
SetErrorParamState true
SetErrorParam ArrayList[1]/ErrorReason=text of 20/3219; ArrayList[1]/FileName=Alarm.html
SetDownloadTaskParam
state 5 (20,3219)
state 5 (20,3219)
log3 server_genareate_node  DownloadFileFromServer failed
)");
}

TEST_F(ServerFileTest, ServerThatKeepsItsCopyChangesNothing)
{
    Created();
    fakes::FailCalls("NotifyServerDeleteCacheFile", 1, 1);
    const std::string trace = Run();
    EXPECT_EQ(Lines(trace, "log3 NotifyServer"),
              "\nlog3 NotifyServerDeleteCacheFile   result =0   file name: Alarm.csv\n");
    EXPECT_EQ(States(trace), "1 4 (0,0)");
}

TEST_F(ServerFileTest, PollsAreUsedUpAfterThreeThousandFiveHundredAndNinetyNine)
{
    const std::string trace = Run();
    EXPECT_EQ(fakes::CountOf("GetServerFileGenerateState"), 3599);
    EXPECT_EQ(fakes::CountOf("ZC_Sleep"), 3599);
    EXPECT_EQ("\n" + trace.substr(trace.find("log3 CDeterminantWriteFileTask::Exec() server_gen")), R"(
log3 CDeterminantWriteFileTask::Exec() server_genareate_node  failed     file name: task-1
SetLastError (20,3201)
state 5 (20,3201)
)");
    fakes::TheScript().pages = {page_};
    MakeEvidence();
    EXPECT_EQ(States(Run()), "7 11 (20,3201)");
}

TEST_F(ServerFileTest, FileThatIsThereAtTheLastPollIsFetched)
{
    Ready(3598);
    EXPECT_EQ(States(Run()), "1 4 (0,0)");
    EXPECT_EQ(fakes::CountOf("GetServerFileGenerateState"), 3599);
}

TEST_F(ServerFileTest, UsedUpPollsAreCollectedWhenTheExportGoesOnAfterFailures)
{
    Settings().is_continue_dowinloading = true;
    EXPECT_EQ(States(Run()), "1 5 (20,3201)");
    EXPECT_EQ(task_->GetCommData(),
              R"({"ArrayList":[{"FileName":"Alarm","ErrorReason":"text of 20/3201"}]})");
}

TEST_F(ServerFileTest, PointlessPollEndsTheRunInStateFive)
{
    fakes::PollAnswer pointless;
    pointless.failed = true;
    fakes::TheScript().polls = {fakes::PollAnswer(), pointless};
    MakeEvidence();
    EXPECT_EQ(Rest(), R"(
log3 data_condition_.export_data_node.server_genareate_node.file_is_created  file name: Alarm
ZC_Sleep 1000
GetServerFileGenerateState POST /state {query}
ZC_Sleep 1000
GetServerFileGenerateState POST /state {query}
state 5 (0,0)
)");
    EXPECT_FALSE(Settings().is_server_data_to_write);
}

TEST_F(ServerFileTest, StopDuringThePollingTellsTheServerAndEndsInSix)
{
    fakes::OnCall("GetServerFileGenerateState", 2, [this] { task_->Stop(); });
    const std::string trace = Rest();
    EXPECT_EQ("\n" + trace.substr(trace.find("log3 CDeterminantWriteFileTask::Exec() start to stop")), R"(
log3 CDeterminantWriteFileTask::Exec() start to stop task.
TakeOperateActionToServer PUT /operate {"OperateType":1,"TaskId":"t-7"}
log3 Download stop signal to server result = 1
log3 finish stop task.
state 6 (0,0)
log3 Download stop success, server_genareate_node  b_stop_ file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
)");
    EXPECT_EQ(fakes::CountOf("GetServerFileGenerateState"), 2);
}

TEST_F(ServerFileTest, StopOfAnEvidenceExportEndsInTwelve)
{
    MakeEvidence();
    Ready(0);
    fakes::OnCall("GetServerFileGenerateState", 1, [this] { task_->Stop(); });
    EXPECT_EQ(States(Run()), "7 12 (0,0)");
    EXPECT_EQ(fakes::CountOf("ClientSynSend"), 0);
}

// The list is asked for again, since a run begins with a fresh page.
TEST_F(ServerFileTest, RunAfterAStopAsksAndPollsAnew)
{
    fakes::OnCall("GetServerFileGenerateState", 1, [this] { task_->Stop(); });
    EXPECT_EQ(States(Run()), "1 6 (0,0)");
    fakes::TheScript().pages = {page_};
    Ready(1);
    const std::string trace = Run();
    EXPECT_EQ(States(trace), "1 4 (0,0)");
    EXPECT_EQ(Lines(trace, "GetExportFileDataList"),
              "\nGetExportFileDataList POST /api {\"PageIndex\":1,\"PageSize\":2}\n");
    EXPECT_EQ(
        Lines(trace, "GetServerFileGenerateState"),
        "\nGetServerFileGenerateState POST /state {query}\nGetServerFileGenerateState POST /state {query}\n");
}

TEST_F(ServerFileTest, DeleteDuringThePollingTellsTheServerAndEndsInTwoHundred)
{
    fakes::OnCall("GetServerFileGenerateState", 1, [this] {
        task_->Stop();
        task_->Delete();
    });
    const std::string trace = Rest();
    EXPECT_EQ("\n" + trace.substr(trace.find("log3 CDeterminantWriteFileTask::Delete()")), R"(
log3 CDeterminantWriteFileTask::Delete() b_downloading_video_ = 0
TakeOperateActionToServer PUT /operate {"OperateType":2,"TaskId":"t-7"}
log3  CDeterminantWriteFileTask::Delete() signal to server is_success = 1
log3 Download delete success, server_genareate_node b_delete_ file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
state 200 (0,0)
)");
}

// The flag of a delete goes up when the server has been told, not before.
TEST_F(ServerFileTest, DeleteRaisesItsFlagBehindTheServersAnswer)
{
    fakes::OnCall("ZC_Sleep", 2, [this] { task_->Delete(); });
    Ready(5);
    int polls_when_told = -1;
    fakes::OnCall("TakeOperateActionToServer", 1,
                  [&polls_when_told] { polls_when_told = fakes::CountOf("GetServerFileGenerateState"); });
    EXPECT_EQ(States(Run()), "1 200 (0,0)");
    EXPECT_EQ(polls_when_told, 1);
    EXPECT_EQ(fakes::CountOf("GetServerFileGenerateState"), 2);
}

// The fetch is not cut short, and the flag counts behind it.
TEST_F(ServerFileTest, StopDuringTheFetchIsSeenAtTheEnd)
{
    Created();
    fakes::OnCall("ClientSynSend", 1, [this] { task_->Stop(); });
    EXPECT_EQ(States(Run()), "1 6 (0,0)");
    EXPECT_TRUE(Exists("Alarm/Alarm.csv"));
    EXPECT_EQ(fakes::CountOf("NotifyServerDeleteCacheFile"), 1);
}

TEST_F(ServerFileTest, FileIsPackedAndRegistered)
{
    Settings().is_need_compress_zip = true;
    MakeEvidence();
    Created();
    const std::string trace = Run();
    EXPECT_EQ(States(trace), "7 10 (0,0)");
    EXPECT_EQ(fakes::CountOf("LaunchApp"), 1);
    EXPECT_EQ(fakes::CountOf("DoRequest"), 1);
    EXPECT_LT(trace.find("\nLaunchApp"), trace.find("\nDoRequest"));
}

// The pages before it stay, and the loop ends with the file.
TEST_F(ServerFileTest, FileBehindARowPageEndsTheLoop)
{
    page_.server.file_is_created = true;
    fakes::TheScript().pages = {Page(Sheet(1, {{"08:00", "door"}}), false), page_};
    Settings().export_file_type = FetchyardBussiness::kTxtReport;
    EXPECT_EQ(States(Run()), "1 4 (0,0)");
    EXPECT_EQ(fakes::CountOf("GetExportFileDataList"), 2);
}

TEST_F(ServerFileTest, FetchWithoutARecordIsRefused)
{
    const auto task = std::make_shared<FetchyardBussiness::CDeterminantWriteFileTask>();
    fakes::Take();
    EXPECT_FALSE(task->DownloadFileFromServer());
    EXPECT_EQ(Trace(), "\nlog5 DownloadFileFromServer ptr_determinant_control_param is null!\n");
}

// A record that goes away while the server is asked: the run goes on with the one it has.
TEST_F(ServerFileTest, RecordThatGoesBeforeTheFetchFailsTheExport)
{
    Ready(0);
    fakes::OnCall("GetServerFileGenerateState", 1, [this] { task_->SetDownloadTaskParam(nullptr, false); });
    const std::string trace = Run();
    EXPECT_EQ(States(trace), "1 5 (0,0)");
    EXPECT_NE(trace.find("log5 DownloadFileFromServer ptr_determinant_control_param is null!\n"
                         "state 5 (0,0)\nlog3 server_genareate_node  DownloadFileFromServer failed\n"),
              std::string::npos);
}

}  // namespace
}  // namespace contract
