#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "FetchyardBussiness/TranscodingTask/TranscodingTask.h"
#include "support/ContractTest.h"
#include "ZellBase/Error.h"
#include "ZellBase/Util.h"

#include <fstream>

namespace contract {
namespace {

using FetchyardBussiness::CDownloadBussinessManager;
using FetchyardBussiness::CTranscodingTask;
using FetchyardBussiness::TranscodingParam;
using FetchyardLogical::TrasncodingFile;

class TranscodingTest : public ContractTest
{
protected:
    TranscodingTest()
        : record_(std::make_shared<TranscodingParam>()), task_(std::make_shared<CTranscodingTask>())
    {
        record_->SetVal_str_name("Stamping");
        record_->SetVal_str_file_path(Folder());
    }

    TrasncodingFile& AddFile(const std::string& source, const std::string& target)
    {
        TrasncodingFile file;
        file.source_file = Folder() + source;
        file.save_file = Folder() + target;
        file.watermark_text = "mark";
        file.watermark_kind = 2;
        record_->transcode_files.push_back(file);
        Write(source, "video");
        return record_->transcode_files.back();
    }

    void Write(const std::string& name, const std::string& content) const
    {
        std::ofstream(Folder() + name, std::ios::binary) << content;
    }

    std::string Run()
    {
        task_->SetDownloadTaskParam(record_, false);
        Zell::Base::Error::SetLastError({});
        fakes::Take();
        task_->Exec();
        return Trace();
    }

    std::shared_ptr<TranscodingParam> record_;
    std::shared_ptr<CTranscodingTask> task_;
};

TEST_F(TranscodingTest, EmptyListReportsItsFourStates)
{
    EXPECT_EQ(Run(), R"(
state 1 (0,0)
log3 Start transcoding video file.
state 13 (0,0)
state 14 (0,0)
state 4 (0,0)
)");
}

TEST_F(TranscodingTest, FilesAreStampedInTheirOrder)
{
    AddFile("a.mp4", "a-out.mp4");
    AddFile("b.mp4", "b-out.mp4");
    EXPECT_EQ(Run(), R"(
state 1 (0,0)
log3 Start transcoding video file.
state 13 (0,0)
log3 start to transcode file:<tmp>/a.mp4, save file to:<tmp>/a-out.mp4
AddPlatformWatermarkToVideoFile <tmp>/a.mp4 "mark" 2 <tmp>/a-out.mp4
log3 Add watermark succ.
log3 transcode file succ.
log3 start to transcode file:<tmp>/b.mp4, save file to:<tmp>/b-out.mp4
AddPlatformWatermarkToVideoFile <tmp>/b.mp4 "mark" 2 <tmp>/b-out.mp4
log3 Add watermark succ.
log3 transcode file succ.
state 14 (0,0)
state 4 (0,0)
)");
    EXPECT_TRUE(Exists("b-out.mp4"));
}

TEST_F(TranscodingTest, SourceIsDeletedAndAPictureSaved)
{
    TrasncodingFile& file = AddFile("a.mp4", "a-out.mp4");
    file.b_delete_source = true;
    file.b_capture_image = true;
    EXPECT_EQ(Run(), R"(
state 1 (0,0)
log3 Start transcoding video file.
state 13 (0,0)
log3 start to transcode file:<tmp>/a.mp4, save file to:<tmp>/a-out.mp4
AddPlatformWatermarkToVideoFile <tmp>/a.mp4 "mark" 2 <tmp>/a-out.mp4
log3 Add watermark succ.
DeleteFileW <tmp>/a.mp4
StartPlayLocalFile <tmp>/a-out.mp4 no window 0
GetFileTime 1
ZC_Sleep 100
CaptureImage 1 1
StopLocalFilePlay 1
OpenFile <tmp>/a-out.jpg 22 8192
WriteFile 4
CloseFile
log3 transcode file succ.
state 14 (0,0)
state 4 (0,0)
)");
    EXPECT_FALSE(Exists("a.mp4"));
    EXPECT_TRUE(Exists("a-out.jpg"));
}

TEST_F(TranscodingTest, FailuresBehindTheStampAreLoggedAlone)
{
    TrasncodingFile& file = AddFile("a.mp4", "a-out.mp4");
    file.b_delete_source = true;
    file.b_capture_image = true;
    fakes::FailCalls("DeleteFileW", 1, 1);
    fakes::FailCalls("StartPlayLocalFile", 1, 1);
    EXPECT_EQ(Run(), R"(
state 1 (0,0)
log3 Start transcoding video file.
state 13 (0,0)
log3 start to transcode file:<tmp>/a.mp4, save file to:<tmp>/a-out.mp4
AddPlatformWatermarkToVideoFile <tmp>/a.mp4 "mark" 2 <tmp>/a-out.mp4
log3 Add watermark succ.
DeleteFileW <tmp>/a.mp4 -> fails
log5 Delete file failed. file:<tmp>/a.mp4
StartPlayLocalFile <tmp>/a-out.mp4 no window 0 -> fails
log5 Failed to open the play file：<tmp>/a-out.mp4, error code: 0
StopLocalFilePlay -1
log5 Capture image failed. video path:<tmp>/a-out.mp4
log3 transcode file succ.
state 14 (0,0)
state 4 (0,0)
)");
}

TEST_F(TranscodingTest, PictureThatDoesNotComeIsAskedForThreeTimes)
{
    AddFile("a.mp4", "a-out.mp4").b_capture_image = true;
    fakes::FailCalls("CaptureImage", 1, -1);
    const std::string trace = Run();
    EXPECT_EQ(fakes::CountOf("CaptureImage"), 3);
    EXPECT_EQ(fakes::CountOf("ZC_Sleep"), 3);
    EXPECT_NE(trace.find("\nlog5 Capture image failed.\nlog5 Capture image failed. video path:"),
              std::string::npos);
    EXPECT_NE(trace.find("\nstate 4 "), std::string::npos);
}

TEST_F(TranscodingTest, FileWithoutALengthGivesNoPicture)
{
    AddFile("a.mp4", "a-out.mp4").b_capture_image = true;
    fakes::FailCalls("GetFileTime", 1, 1);
    const std::string trace = Run();
    EXPECT_NE(trace.find("\nlog5 Clipe file failed.path:<tmp>/a-out.mp4\nStopLocalFilePlay 1\n"),
              std::string::npos)
        << trace;
}

TEST_F(TranscodingTest, PictureThatCannotBeWrittenIsLogged)
{
    AddFile("a.mp4", "a-out.mp4").b_capture_image = true;
    fakes::FailCalls("OpenFile", 1, 1);
    EXPECT_NE(
        Run().find(
            "\nlog5 Filed to Zell::Base::FileSystem::OpenFile.\nlog5 Capture image failed. video path:"),
        std::string::npos);
    fakes::FailCalls("WriteFile", fakes::CountOf("WriteFile") + 1, 1);
    EXPECT_NE(Run().find("\nCloseFile\nlog5 Capture image failed. video path:"), std::string::npos);
}

TEST_F(TranscodingTest, NamesWithoutAnExtensionGiveNoPicture)
{
    for (const char* target : {"", ".x"}) {
        record_->transcode_files.clear();
        TrasncodingFile& file = AddFile("a", "unused");
        file.save_file = target[0] == '.' ? ".x" : "out";
        file.b_capture_image = true;
        fakes::TheScript().watermark_results = {7};  // a success that leaves no file here
        const std::string trace = Run();
        EXPECT_EQ(trace.find("StartPlayLocalFile"), std::string::npos) << trace;
        EXPECT_EQ(trace.find("log5"), std::string::npos) << trace;
    }
}

TEST_F(TranscodingTest, NamedResultsFailTheTask)
{
    for (const int ret : {1, 2, 3, 5}) {
        record_->transcode_files.clear();
        AddFile("a.mp4", "a-out.mp4");
        AddFile("b.mp4", "b-out.mp4");
        fakes::TheScript().watermark_results = {ret};
        const std::string trace = Run();
        EXPECT_EQ("\n" + trace.substr(trace.find("log5")),
                  "\nlog5 Add video watermark failed. ret: " + std::to_string(ret) +
                      ", first code: 20, secode code: 3.\nstate 5 (20,3)\n");
    }
}

TEST_F(TranscodingTest, ResultThatIsNotNamedCountsAsSuccess)
{
    AddFile("a.mp4", "a-out.mp4");
    fakes::TheScript().watermark_results = {7};
    EXPECT_NE(Run().find("log3 Add watermark succ.\nlog3 transcode file succ.\n"), std::string::npos);
}

TEST_F(TranscodingTest, StoppedFileEndsTheTaskAndIsNotFinished)
{
    TrasncodingFile& file = AddFile("a.mp4", "a-out.mp4");
    file.b_delete_source = true;
    file.b_capture_image = true;
    AddFile("b.mp4", "b-out.mp4");
    fakes::TheScript().watermark_results = {4};
    fakes::OnCall("AddPlatformWatermarkToVideoFile", 1, [this] { task_->Stop(); });
    EXPECT_EQ(Run(), R"(
state 1 (0,0)
log3 Start transcoding video file.
state 13 (0,0)
log3 start to transcode file:<tmp>/a.mp4, save file to:<tmp>/a-out.mp4
AddPlatformWatermarkToVideoFile <tmp>/a.mp4 "mark" 2 <tmp>/a-out.mp4
StopPlatformWatermarkToVideoFile <tmp>/a.mp4
SetLastError (20,3)
log4 has already stopped add watermark.
state 6 (20,3)
)");
    EXPECT_TRUE(Exists("a.mp4"));
}

TEST_F(TranscodingTest, StopBetweenFilesIsSeenAtTheNextOne)
{
    AddFile("a.mp4", "a-out.mp4");
    AddFile("b.mp4", "b-out.mp4");
    fakes::OnCall("AddPlatformWatermarkToVideoFile", 1, [this] { task_->Stop(); });
    const std::string trace = Run();
    EXPECT_EQ(fakes::CountOf("AddPlatformWatermarkToVideoFile"), 1);
    EXPECT_EQ("\n" + trace.substr(trace.find("log3 start to transcode file:<tmp>/b.mp4")), R"(
log3 start to transcode file:<tmp>/b.mp4, save file to:<tmp>/b-out.mp4
state 6 (0,0)
)");
}

TEST_F(TranscodingTest, StopBehindTheLastFileStillStops)
{
    AddFile("a.mp4", "a-out.mp4");
    fakes::OnCall("AddPlatformWatermarkToVideoFile", 1, [this] { task_->Stop(); });
    EXPECT_NE(Run().find("\nstate 6 "), std::string::npos);
    EXPECT_NE(Run().find("\nstate 14 (0,0)\nstate 4 (0,0)\n"), std::string::npos)
        << "the next run has no flag";
}

TEST_F(TranscodingTest, StopTellsEverySourceThatHasBegunOnce)
{
    AddFile("a.mp4", "a-out.mp4");
    AddFile("b.mp4", "b-out.mp4");
    Run();
    fakes::Take();
    EXPECT_TRUE(task_->Stop());
    EXPECT_TRUE(task_->Stop());
    EXPECT_EQ(Trace(), R"(
StopPlatformWatermarkToVideoFile <tmp>/a.mp4
StopPlatformWatermarkToVideoFile <tmp>/b.mp4
)");
    EXPECT_TRUE(task_->Suspend());
}

TEST_F(TranscodingTest, TaskWithoutARecordFails)
{
    const auto task = std::make_shared<CTranscodingTask>();
    fakes::Take();
    task->Exec();
    EXPECT_EQ(Trace(), R"(
state 1 (0,0)
log3 Start transcoding video file.
state 5 (0,0)
log5 transcoding video file failed. convert video param failed.
)");
    EXPECT_EQ(task->GetProgress().GetVal_finished_size(), 0u);
    EXPECT_EQ(Trace(), "\nlog5 transcoding video file failed. convert video param failed.\n");
}

TEST_F(TranscodingTest, ProgressIsTheKilobytesOfTheResults)
{
    AddFile("a.mp4", "a-out.mp4");
    AddFile("b.mp4", "b-out.mp4");
    task_->SetDownloadTaskParam(record_, false);
    EXPECT_EQ(task_->GetProgress().GetVal_finished_size(), 0u);
    Write("a-out.mp4", "1");
    EXPECT_EQ(task_->GetProgress().GetVal_finished_size(), 1u);
    Write("a-out.mp4", std::string(1025, 'x'));
    Write("b-out.mp4", std::string(1025, 'x'));
    EXPECT_EQ(task_->GetProgress().GetVal_finished_size(), 4u);
    record_->transcode_files.push_back(record_->transcode_files.front());
    EXPECT_EQ(task_->GetProgress().GetVal_finished_size(), 6u) << "an entry listed twice counts twice";
    record_->SetVal_str_file_path(Folder() + "nowhere");
    fakes::Take();
    EXPECT_EQ(task_->GetProgress().GetVal_finished_size(), 0u);
    EXPECT_NE(Trace().find("log5 dir is not exists.<tmp>/nowhere\n"), std::string::npos);
}

TEST_F(TranscodingTest, RecordKeepsItsNameAndItsResults)
{
    AddFile("a.mp4", "a-out.mp4").b_delete_source = true;
    AddFile("b.mp4", "b-out.mp4");
    const std::string written = record_->CreateResumeXml();
    std::string xml;
    Zell::Base::Encrypt::Base64Decode(xml, written);
    EXPECT_NE(xml.find("<TaskParamType>100</TaskParamType>"), std::string::npos) << xml;
    TranscodingParam read;
    read.SetVal_str_resume_xml(written);
    ASSERT_TRUE(read.ResumeParamFromXml());
    EXPECT_EQ(read.GetVal_str_name(), "Stamping");
    ASSERT_EQ(read.transcode_files.size(), 2u);
    EXPECT_EQ(read.transcode_files[0].save_file, Folder() + "a-out.mp4");
    EXPECT_EQ(read.transcode_files[0].source_file, "");
    EXPECT_FALSE(read.transcode_files[0].b_delete_source);
}

TEST_F(TranscodingTest, RecordWithoutFilesHasAnEmptyList)
{
    std::string xml;
    Zell::Base::Encrypt::Base64Decode(xml, TranscodingParam().CreateResumeXml());
    EXPECT_NE(xml.find("<TranscodeFileList"), std::string::npos) << xml;
}

TEST_F(TranscodingTest, TextThatIsNoRecordLeavesTheRecordAsItWas)
{
    std::string no_xml;
    Zell::Base::Encrypt::Base64Encode(no_xml, "<FileExportParams>");
    for (const std::string& text : {std::string(), std::string("***"), no_xml}) {
        record_->SetVal_str_resume_xml(text);
        EXPECT_FALSE(record_->ResumeParamFromXml()) << text;
        EXPECT_EQ(record_->GetVal_str_name(), "Stamping");
        EXPECT_TRUE(record_->transcode_files.empty());
    }
}

// The front door.
class TranscodingRequestTest : public TranscodingTest
{
protected:
    TranscodingRequestTest()
    {
        CDownloadBussinessManager::Instance();
        fakes::TheScript().transcoding_names = {"a-out.mp4"};
    }

    std::shared_ptr<TranscodingParam> Added(const std::string& target)
    {
        TrasncodingFile file;
        file.save_file = target;
        fakes::TheScript().transcoding_files = {file, file};
        std::string guid;
        EXPECT_TRUE(CDownloadBussinessManager::Instance().AddTranscodingTask(guid, "request"));
        const auto task = fakes::TheScript().handed_over.back();
        EXPECT_EQ(guid, task->GetGuid());
        return task->GetDownloadTaskParam<TranscodingParam>();
    }
};

TEST_F(TranscodingRequestTest, RequestBecomesOneTask)
{
    const auto record = Added("/out/a-out.mp4");
    EXPECT_EQ(record->GetVal_str_name(), "Stamping");
    EXPECT_EQ(record->GetVal_str_file_path(), "/out");
    EXPECT_EQ(record->GetVal_str_plugin_id(), "fetchyard.c");
    EXPECT_EQ(record->GetDownloadFileNames(), std::vector<std::string>{"a-out.mp4"});
    EXPECT_TRUE(record->GetVal_b_show_tip());
    EXPECT_TRUE(record->GetVal_b_enable_size());
    EXPECT_FALSE(record->GetVal_b_enable_percent());
    EXPECT_FALSE(record->GetVal_b_enable_speed());
    EXPECT_FALSE(record->GetVal_b_enable_remain_time());
    EXPECT_EQ(record->transcode_files.size(), 2u);
    EXPECT_EQ(fakes::CountOf("SetMaxParallelDownloadNum"), 1);
}

TEST_F(TranscodingRequestTest, FolderIsThatOfTheFirstResult)
{
    EXPECT_EQ(Added("a-out.mp4")->GetVal_str_file_path(), "");
    EXPECT_EQ(Added("/a-out.mp4")->GetVal_str_file_path(), "");
    EXPECT_EQ(Added("x/y/a-out.mp4")->GetVal_str_file_path(), "x/y");
}

TEST_F(TranscodingRequestTest, ResumedTaskHasItsResultsAndNoSources)
{
    AddFile("a.mp4", "a-out.mp4");
    std::shared_ptr<ZellTaskKit::CDownloadTaskBase> task;
    const std::string text = record_->CreateResumeXml();
    ASSERT_TRUE(CDownloadBussinessManager::Instance().ResumeDownloadTask(task, text));
    const auto record = task->GetDownloadTaskParam<TranscodingParam>();
    ASSERT_NE(std::dynamic_pointer_cast<CTranscodingTask>(task), nullptr);
    EXPECT_EQ(record->GetVal_str_name(), "Stamping");
    EXPECT_EQ(record->GetVal_str_resume_xml(), text);
    EXPECT_EQ(record->GetVal_str_plugin_id(), "fetchyard.c");
    EXPECT_EQ(record->GetVal_open_type(), ZellTaskKit::OpenFolder);
    EXPECT_EQ(record->GetVal_state(), TranscodingParam().GetVal_state());
    EXPECT_TRUE(record->GetVal_b_enable_size());
    EXPECT_FALSE(record->GetVal_b_enable_percent());
    EXPECT_EQ(record->transcode_files.at(0).source_file, "");
    EXPECT_EQ(record->transcode_files.at(0).save_file, Folder() + "a-out.mp4");
}

TEST_F(TranscodingRequestTest, RefusalsLeaveTheGuidAsItWas)
{
    std::string guid = "before";
    fakes::Take();
    EXPECT_FALSE(CDownloadBussinessManager::Instance().AddTranscodingTask(guid, "request"));
    EXPECT_EQ(Trace(), "\nParseTranscodingRequest request\nlog5 Has no file need to transfer.\n");
    fakes::FailCalls("ParseTranscodingRequest", 2, 1);
    EXPECT_FALSE(CDownloadBussinessManager::Instance().AddTranscodingTask(guid, "request"));
    EXPECT_EQ(Trace(),
              "\nParseTranscodingRequest request -> fails\nlog5 Parse transcoding request failed.\n");
    EXPECT_EQ(guid, "before");
    EXPECT_TRUE(fakes::TheScript().handed_over.empty());
}

}  // namespace
}  // namespace contract
