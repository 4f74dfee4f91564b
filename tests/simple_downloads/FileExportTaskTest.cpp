#include "FetchyardBussiness/FileDownload/FileExportTask.h"
#include "FetchyardBussiness/ImageDownload/ImageParam.h"
#include "support/ContractTest.h"

#include <fstream>
#include <sstream>

namespace contract {
namespace {

using FetchyardBussiness::CFileExportTask;
using FetchyardBussiness::FileExportItem;
using FetchyardBussiness::FileExportParam;

class FileExportTaskTest : public ContractTest
{
protected:
    std::shared_ptr<FileExportParam> Files(const std::vector<std::string>& urls) const
    {
        auto param = std::make_shared<FileExportParam>();
        param->SetVal_str_name("files");
        param->SetVal_str_file_path(Folder());
        for (const std::string& url : urls) {
            FileExportItem item;
            item.file_name = "f" + std::to_string(param->file_items.size() + 1);
            item.save_path = Folder();
            item.request_url = url;
            param->file_items.push_back(item);
        }
        return param;
    }

    static std::string Run(CFileExportTask& task,
                           const std::shared_ptr<ZellTaskKit::CDownloadTaskParam>& param)
    {
        task.SetDownloadTaskParam(param, false);
        fakes::Take();
        task.Exec();
        return Trace();
    }

    // The lines of a trace that are a state or a log line.
    static std::string StatesAndLog(const std::string& trace)
    {
        std::istringstream lines(trace);
        std::string kept = "\n";
        for (std::string line; std::getline(lines, line);) {
            if (line.rfind("state", 0) == 0 || line.rfind("log", 0) == 0)
                kept += line + "\n";
        }
        return kept;
    }

    std::string Content(const std::string& name) const
    {
        std::ostringstream content;
        content << std::ifstream(Folder() + name).rdbuf();
        return content.str();
    }
};

TEST_F(FileExportTaskTest, FilesAreFetchedInOrderAndWritten)
{
    CFileExportTask task;
    const std::string trace = Run(task, Files({"/one", "/two"}));
    EXPECT_EQ(StatesAndLog(trace), R"(
state 1 (0,0)
log3 Start export file.
log3 Start export file, file name: files, file guid: task-1, file save path: <tmp>/.
log3 download export file sucess, file name: files, file guid: task-1, file save path: <tmp>/.
state 4 (0,0)
)");
    EXPECT_EQ(Content("f1"), "body of /one");
    EXPECT_EQ(Content("f2"), "body of /two");
}

TEST_F(FileExportTaskTest, EmptyListSucceedsWithoutARequest)
{
    CFileExportTask task;
    const std::string trace = Run(task, Files({}));
    EXPECT_NE(trace.find("state 4 (0,0)"), std::string::npos) << trace;
    EXPECT_EQ(fakes::CountOf("ClientSynSend"), 0);
}

TEST_F(FileExportTaskTest, EveryFieldOfAnItemReachesTheRequest)
{
    const auto param = Files({"/one"});
    FileExportItem& item = param->file_items.front();
    item.request_method = "POST";
    item.request_data = "data";
    item.send_data = "sent";
    item.request_pattern = 5;
    item.query_params = {{"b", "2"}, {"a", "1"}};
    CFileExportTask task;
    const std::string trace = Run(task, param);
    EXPECT_NE(
        trace.find(
            "\nClientSynSend POST /one a=1 b=2 request=data send=sent pattern=5 timeout=600000 site=0\n"),
        std::string::npos)
        << trace;
}

TEST_F(FileExportTaskTest, BlanksOfAUrlAreEncodedAndTheLogShowsTheUrlAsItWas)
{
    fakes::FailCalls("ClientSynSend", 1, 1);
    CFileExportTask task;
    const std::string trace = Run(task, Files({"/a b\tc"}));
    EXPECT_NE(trace.find("ClientSynSend GET /a%20b%20c "), std::string::npos) << trace;
    EXPECT_NE(trace.find("log5 request download url[/a b\tc]failed, [MainError: 21],[SubError: "
                         "500]\nSetLastError (21,500)\nstate 5 (21,500)"),
              std::string::npos)
        << trace;
}

TEST_F(FileExportTaskTest, FailedFetchDropsTheRestAndLeavesNoFile)
{
    fakes::FailCalls("ClientSynSend", 2, 1);
    CFileExportTask task;
    Run(task, Files({"/one", "/two", "/three"}));
    EXPECT_EQ(fakes::CountOf("ClientSynSend"), 2);
    EXPECT_TRUE(Exists("f1"));
    EXPECT_FALSE(Exists("f2"));
}

TEST_F(FileExportTaskTest, StopBeforeTheFirstFileIsLost)
{
    CFileExportTask task;
    EXPECT_TRUE(task.Stop());
    const std::string trace = Run(task, Files({"/one"}));
    EXPECT_NE(trace.find("state 4 (0,0)"), std::string::npos) << trace;
}

TEST_F(FileExportTaskTest, StopAtTheStartEndsInState6)
{
    CFileExportTask task;
    fakes::OnCall("state 1", 1, [&task] { EXPECT_TRUE(task.Suspend()); });
    const std::string trace = Run(task, Files({"/one"}));
    EXPECT_EQ(StatesAndLog(trace), R"(
state 1 (0,0)
log3 Start export file.
log3 Start export file, file name: files, file guid: task-1, file save path: <tmp>/.
state 6 (0,0)
log4 Task has already been stopped. file name: files.
)");
    EXPECT_EQ(fakes::CountOf("ClientSynSend"), 0);
}

TEST_F(FileExportTaskTest, StopDuringTheRequestEndsInState5AndLeavesAnEmptyFile)
{
    CFileExportTask task;
    fakes::OnCall("ClientSynSend", 1, [&task] { EXPECT_TRUE(task.Stop()); });
    const std::string trace = Run(task, Files({"/one"}));
    EXPECT_NE(trace.find("state 5 (0,0)\nlog4 Task has already been stopped. file name: files.\n"),
              std::string::npos)
        << trace;
    EXPECT_TRUE(Exists("f1"));
    EXPECT_EQ(Content("f1"), "");
}

TEST_F(FileExportTaskTest, RepeatedFetchAddsToTheFile)
{
    const auto param = Files({"/one"});
    CFileExportTask task;
    Run(task, param);
    Run(task, param);
    EXPECT_EQ(Content("f1"), "body of /onebody of /one");
}

TEST_F(FileExportTaskTest, FolderWithoutASeparatorJoinsOntoTheName)
{
    const auto param = Files({"/one"});
    param->file_items.front().save_path = Folder() + "below";
    CFileExportTask task;
    Run(task, param);
    EXPECT_TRUE(Exists("belowf1"));
    EXPECT_TRUE(Exists("below"));
}

TEST_F(FileExportTaskTest, FolderThatCannotBeMadeIsFoundBehindTheFetch)
{
    std::ofstream(Folder() + "file") << "x";
    const auto param = Files({"/one"});
    param->file_items.front().save_path = Folder() + "file/below/";
    CFileExportTask task;
    const std::string trace = Run(task, param);
    EXPECT_NE(trace.find("log5 make dir failed. dir: <tmp>/file/below/\nSetLastError (0,20)\nstate 5 (0,20)"),
              std::string::npos)
        << trace;
    EXPECT_EQ(fakes::CountOf("ClientSynSend"), 1);
}

TEST_F(FileExportTaskTest, FileThatCannotBeOpenedDropsTheRest)
{
    fakes::FailCalls("OpenFile", 2, 1);
    CFileExportTask task;
    const std::string trace = Run(task, Files({"/one", "/two", "/three"}));
    EXPECT_NE(trace.find("log5 Open file[<tmp>/f2] failed.\nSetLastError (0,13)\nstate 5 (0,13)\n"),
              std::string::npos)
        << trace;
    EXPECT_EQ(fakes::CountOf("ClientSynSend"), 2);
    EXPECT_EQ(Content("f1"), "body of /one");
}

TEST_F(FileExportTaskTest, WriteThatFailsClosesTheFileAndSetsNoError)
{
    fakes::FailCalls("WriteFile", 1, 1);
    CFileExportTask task;
    const std::string trace = Run(task, Files({"/one", "/two"}));
    EXPECT_NE(trace.find("WriteFile 12 -> fails\nCloseFile\n"
                         "log5 Write data to file failed. file name: <tmp>/f1, receive data: body of /one.\n"
                         "state 5 (0,0)\n"),
              std::string::npos)
        << trace;
    EXPECT_EQ(fakes::CountOf("ClientSynSend"), 1);
}

TEST_F(FileExportTaskTest, EmptyBodyLeavesAnEmptyFile)
{
    CFileExportTask task;
    const std::string trace = Run(task, Files({"/nothing"}));
    EXPECT_NE(trace.find("state 4 (0,0)"), std::string::npos) << trace;
    EXPECT_TRUE(Exists("f1"));
    EXPECT_EQ(Content("f1"), "");
}

TEST_F(FileExportTaskTest, StopBehindAFileEndsInState6AndKeepsIt)
{
    CFileExportTask task;
    fakes::OnCall("WriteFile", 1, [&task] { task.Stop(); });
    const std::string trace = Run(task, Files({"/one", "/two"}));
    EXPECT_NE(trace.find("state 6 (0,0)\nlog4 Task has already been stopped. file name: files.\n"),
              std::string::npos)
        << trace;
    EXPECT_EQ(Content("f1"), "body of /one");
    EXPECT_EQ(fakes::CountOf("ClientSynSend"), 1);
}

TEST_F(FileExportTaskTest, RecordOfAnotherClassFails)
{
    CFileExportTask task;
    EXPECT_EQ(StatesAndLog(Run(task, std::make_shared<FetchyardBussiness::ImageParam>())), R"(
state 1 (0,0)
log3 Start export file.
state 5 (0,0)
log5 Export file failed. create file ptr failed.·
)");
}

TEST_F(FileExportTaskTest, InlineRunReportsNothingAndKeepsItsResult)
{
    CFileExportTask task;
    EXPECT_TRUE(task.GetExecResult());
    task.SetNotifyState(false);
    const std::string trace = Run(task, Files({"/one", "/two", "/three"}));
    EXPECT_EQ(trace.find("state"), std::string::npos) << trace;
    EXPECT_TRUE(task.GetExecResult());
    fakes::FailCalls("ClientSynSend", 4, 1);
    Run(task, Files({"/four"}));
    EXPECT_FALSE(task.GetExecResult());
}

TEST_F(FileExportTaskTest, InlineRunThatIsStoppedHasFailed)
{
    CFileExportTask task;
    task.SetNotifyState(false);
    fakes::OnCall("WriteFile", 1, [&task] { task.Stop(); });
    const std::string trace = Run(task, Files({"/one", "/two"}));
    EXPECT_EQ(trace.find("state"), std::string::npos) << trace;
    EXPECT_FALSE(task.GetExecResult());
}

TEST_F(FileExportTaskTest, ProgressIsAlwaysZero)
{
    CFileExportTask task;
    Run(task, Files({"/one"}));
    EXPECT_EQ(task.GetProgress().GetVal_finished_size(), 0u);
}

}  // namespace
}  // namespace contract
