#include "support/VideoTest.h"

namespace contract {
namespace {

constexpr char kRefused[] = R"({"Response":{"ErrorModule":24,"ErrorCode":4}})";

// The phase of an export that fetches its videos through the plug-in.
class VideoPhaseTest : public VideoTest
{
protected:
    // The request for the only video.
    std::string Request()
    {
        const std::string trace = Run();
        const std::string mark = "StartDownloadVideoFile \"\" ";
        const std::size_t begin = trace.find(mark) + mark.size();
        return trace.substr(begin, trace.find('\n', begin) - begin);
    }
};

TEST_F(VideoPhaseTest, VideosAreFetchedOneAfterTheOtherAndMarked)
{
    AddVideo("one");
    AddVideo("two");
    EXPECT_EQ(Phase(), R"(
log3 Start video download
state 13 (0,0)
GetPluginHandle clipvault.c
GetPluginHandle clipvault.c
GetPluginHandle clipvault.c
GetPluginHandle clipvault.c
log3 CDeterminantWriteFileTask::DownloadVideoFile videoTask.size()= 2
log3 CDeterminantWriteFileTask::CreateVideoDownloadParm device_type == -1
StartDownloadVideoFile ""
log3 [VideoWatermarkCovert]info overlay nullptr.
log3 CDeterminantWriteFileTask::CreateVideoDownloadParm device_type == -1
StartDownloadVideoFile ""
log3 [VideoWatermarkCovert]info overlay nullptr.
log3 CDeterminantWriteFileTask::DownloadVideoFile end
SetLastError (0,0)
SetDownloadTaskParam
state 14 (0,0)
)");
    EXPECT_EQ(Marks(), "++");
    EXPECT_TRUE(Exists("Alarm/one.mp4"));
}

TEST_F(VideoPhaseTest, CameraIsAskedForByItsNumber)
{
    AddVideo("one").video.camera_info.camera_id = 5;
    EXPECT_EQ(
        Request(),
        std::string(R"({"DownloadVideoFileRequest":{"GUID":"guid-1","DownloadParam":{"DownloadType":0,)"
                    R"("VideoFormat":2,"CustomFilePath":"<tmp>/Alarm/","IsSnap":false},"ResourceParam":[)"
                    R"({"ResourceID":"5","ResourceType":1001,"SiteID":"0","IsCameraNO":false,)"
                    R"("DownloadTime":[{"StartTime":1000,"EndTime":2000}],"CustomFileName":"one"}]}})"));
}

TEST_F(VideoPhaseTest, DeviceIsAskedForByItsNumberAndType)
{
    auto& entry = AddVideo("one", 1);
    entry.video.camera_info.device_id = 7;
    entry.video.camera_info.device_type = 2008;
    entry.video.camera_info.site_id = 3;
    entry.video.download_info.is_snap = true;
    entry.video.download_info.str_video_password = "secret";
    EXPECT_EQ(
        Request(),
        std::string(R"({"DownloadVideoFileRequest":{"GUID":"guid-1","DownloadParam":{"DownloadType":1,)"
                    R"("VideoFormat":1,"Password":"secret","CustomFilePath":"<tmp>/Alarm/","IsSnap":true},)"
                    R"("ResourceParam":[{"ResourceID":"7","ResourceType":2008,"SiteID":"3",)"
                    R"("IsCameraNO":true,"DownloadTime":[{"StartTime":1000,"EndTime":2000}],)"
                    R"("CustomFileName":"one"}]}})"));
    EXPECT_TRUE(Exists("Alarm/one.avi"));
    EXPECT_TRUE(Exists("Alarm/one.jpg"));
}

TEST_F(VideoPhaseTest, TypeOfTheDownloadFollowsTheDevice)
{
    for (const auto& [type, download] :
         std::vector<std::pair<int, int>>{{2002, 1}, {2008, 1}, {2003, 0}, {0, 0}}) {
        Settings().vec_video_download.clear();
        AddVideo("one").video.camera_info.device_type = type;
        EXPECT_NE(Request().find("\"DownloadType\":" + std::to_string(download)), std::string::npos) << type;
    }
}

// 32 bits are what the plug-in's request has.
TEST_F(VideoPhaseTest, TimesAreCutTo32Bits)
{
    auto& entry = AddVideo("one");
    entry.video.camera_info.begin_time = (1LL << 32) + 17;
    entry.video.camera_info.end_time = 3000000000LL;
    EXPECT_NE(Request().find(R"({"StartTime":17,"EndTime":-1294967296})"), std::string::npos);
}

TEST_F(VideoPhaseTest, StampedVideoIsAskedForAsMp4WithoutThePlatformsMark)
{
    Stamp(AddVideo("one", 1));
    const std::string request = Request();
    EXPECT_NE(request.find(R"("VideoFormat":2)"), std::string::npos) << request;
    EXPECT_NE(request.find(R"("IsNeedPlatformWatermark":false)"), std::string::npos) << request;
}

TEST_F(VideoPhaseTest, VideoThatIsNotToBeStampedIsAskedForAsItIs)
{
    Stamp(AddVideo("one", 1), -1);
    EXPECT_EQ(Request().find("IsNeedPlatformWatermark"), std::string::npos);
    Settings().vec_video_download.clear();
    Stamp(AddVideo("two", 1));
    fakes::FailCalls("IsHandleAvailable", fakes::CountOf("IsHandleAvailable") + 1, -1);
    const std::string request = Request();
    EXPECT_EQ(request.find("IsNeedPlatformWatermark"), std::string::npos);
    EXPECT_NE(request.find(R"("VideoFormat":1)"), std::string::npos);
}

struct MissingRow
{
    const char* module;
    const char* words;
};

TEST_F(VideoPhaseTest, PluginWithoutAFunctionFailsTheExport)
{
    const std::vector<MissingRow> rows = {{VIDEO_PLUGIN_START, "Get video download func failed."},
                                          {VIDEO_PLUGIN_SIZE, "Get video size func failed."},
                                          {VIDEO_PLUGIN_STOP, "Get stop download video func failed."},
                                          {VIDEO_PLUGIN_REMOVE, "Get Remove downloader func failed."}};
    AddVideo("one");
    for (const MissingRow& row : rows) {
        UsePlugin(row.module);
        const std::string trace = Run();
        EXPECT_NE(trace.find(std::string("\nlog5 Get task_func handle failed.\nlog5 ") + row.words + R"(
log5 CDeterminantWriteFileTask::Exec()  video download filed
SetLastError (20,3)
SetDownloadTaskParam
state 14 (20,3)
state 5 (20,3)
state 5 (20,3)
log5 DownloadPictures failed·
)"),
                  std::string::npos)
            << trace;
        EXPECT_EQ(fakes::CountOf("StartDownloadVideoFile"), 0);
    }
}

TEST_F(VideoPhaseTest, MissingPluginOfAnEvidenceExportHasNoStatesOfItsOwn)
{
    fakes::TheScript().plugins.clear();
    AddVideo("one");
    MakeEvidence();
    EXPECT_EQ(States(Run()), "7 11 11 (20,3)");
}

// No entry is made, so the export can still finish.
TEST_F(VideoPhaseTest, MissingPluginOfAnExportThatGoesOnLeavesItFinished)
{
    fakes::TheScript().plugins.clear();
    Settings().is_continue_dowinloading = true;
    AddVideo("one");
    EXPECT_EQ(States(Run()), "1 13 14 4 (20,3)");
    EXPECT_EQ(Marks(), "-");
}

TEST_F(VideoPhaseTest, FailedStartEndsTheExportWithThePluginsCode)
{
    fakes::TheScript().videos = {{false, kRefused}};
    AddVideo("one");
    AddVideo("two");
    EXPECT_EQ(Phase(), R"(
log3 Start video download
state 13 (0,0)
GetPluginHandle clipvault.c
GetPluginHandle clipvault.c
GetPluginHandle clipvault.c
GetPluginHandle clipvault.c
log3 CDeterminantWriteFileTask::DownloadVideoFile videoTask.size()= 2
log3 CDeterminantWriteFileTask::CreateVideoDownloadParm device_type == -1
StartDownloadVideoFile ""
log5 Call video plugin push video func failed. file_name = one
log5 video Download result, ErrorModule =[24], ErrorCode =[4]
GetErrorInfoByCode 24/4
SetErrorParamState true
SetErrorParam ArrayList[1]/ErrorReason=text of 24/4; ArrayList[1]/FileName=one
SetDownloadTaskParam
RemoveDownloader guid-1
log5 Call video plugin push video func failed. is_continue = 0
log5 CDeterminantWriteFileTask::Exec()  video download filed
SetLastError (24,4)
SetDownloadTaskParam
state 14 (24,4)
state 5 (24,4)
state 5 (24,4)
log5 DownloadPictures failed·
)");
    EXPECT_EQ(Marks(), "--");
}

TEST_F(VideoPhaseTest, FailedStartIsCollectedAndTheNextVideoFetched)
{
    Settings().is_continue_dowinloading = true;
    fakes::TheScript().videos = {{false, kRefused}};
    AddVideo("one");
    AddVideo("two");
    EXPECT_EQ(States(Run()), "1 13 14 5 (24,4)");
    EXPECT_EQ(Marks(), "-+");
    EXPECT_EQ(task_->GetCommData(), R"({"ArrayList":[{"FileName":"one","ErrorReason":"text of 24/4"}]})");
}

TEST_F(VideoPhaseTest, NextRunFetchesWhatHasFailed)
{
    Settings().is_continue_dowinloading = true;
    fakes::TheScript().videos = {{false, kRefused}};
    AddVideo("one");
    AddVideo("two");
    Run();
    EXPECT_EQ(States(Run()), "1 13 14 4 (0,0)");
    EXPECT_EQ(fakes::CountOf("StartDownloadVideoFile"), 3);
    EXPECT_EQ(Marks(), "++");
}

TEST_F(VideoPhaseTest, PluginThatThrowsHasFailedWithoutAWord)
{
    fakes::VideoAnswer bad;
    bad.throws = true;
    fakes::TheScript().videos = {bad};
    AddVideo("one");
    EXPECT_EQ(States(Run()), "1 13 14 5 5 (-1,-1)");
    EXPECT_EQ(fakes::CountOf("RemoveDownloader"), 1);
}

struct AnswerRow
{
    const char* response;
    bool good;
    int module;
    int code;
    const char* list;  // of the failed files
};

TEST_F(VideoPhaseTest, AnswersOfThePlugin)
{
    const std::vector<AnswerRow> rows = {
        {"", false, -1, -1, R"({"ArrayList":[{"FileName":"v","ErrorReason":"text of -1/-1"}]})"},
        {"no json", false, -1, -1, R"({"ArrayList":[{"FileName":"v","ErrorReason":"text of -1/-1"}]})"},
        {kRefused, false, 24, 4, R"({"ArrayList":[{"FileName":"v","ErrorReason":"text of 24/4"}]})"},
        {R"({"Response":{"ErrorModule":0,"ErrorCode":9}})", false, 0, 9,
         R"({"ArrayList":[{"FileName":"v","ErrorReason":"text of 0/9"}]})"},
        {R"({"Response":{"ErrorModule":0,"ErrorCode":0,"ResourceDownloadState":[]}})", false, 0, 0, ""},
        {R"({"Response":{"ErrorModule":0,"ErrorCode":0,"ResourceDownloadState":[{"ResourceID":"5",)"
         R"("ResourceDownloadStateType":3,"ErrorModule":24,"ErrorCode":4},{"ResourceDownloadStateType":2,)"
         R"("ErrorModule":0,"ErrorCode":0}]}})",
         true, 24, 4, R"({"ArrayList":[{"FileName":"v","ErrorReason":"text of 24/4"}]})"},
        {R"({"Response":{"ErrorModule":0,"ErrorCode":0,"ResourceDownloadState":[{"ResourceDownloadStateType":2,)"
         R"("ErrorModule":0,"ErrorCode":1},{"ErrorModule":3,"ErrorCode":4}]}})",
         false, 3, 4, R"({"ArrayList":[{"FileName":"v","ErrorReason":"text of 0/1"}]})"},
    };
    for (const AnswerRow& row : rows) {
        const auto task = std::make_shared<FetchyardBussiness::CDeterminantWriteFileTask>();
        task->SetDownloadTaskParam(record_, false);
        Zell::Base::Error::ErrorCode error;
        EXPECT_EQ(task->AnalyzeVideoDownloadResult(error, "v", row.response), row.good) << row.response;
        EXPECT_EQ(error.iFirstCode, row.module) << row.response;
        EXPECT_EQ(error.iSecondCode, row.code) << row.response;
        EXPECT_EQ(task->GetCommData(), row.list) << row.response;
    }
}

TEST_F(VideoPhaseTest, LogOfFailedResources)
{
    Zell::Base::Error::ErrorCode error;
    fakes::Take();
    task_->AnalyzeVideoDownloadResult(
        error, "v",
        R"({"Response":{"ErrorModule":0,"ErrorCode":0,"ResourceDownloadState":[{"ResourceID":"5","ErrorModule":1,"ErrorCode":2}]}})");
    task_->AnalyzeVideoDownloadResult(error, "v", kRefused);
    EXPECT_EQ(Lines(Trace(), "log5 video"), R"(
log5 video Download Faile !!!, CamID  = [5] ErrorModule =[1], ErrorCode =[2]
log5 video Download result, ErrorModule =[24], ErrorCode =[4]
)");
}

TEST_F(VideoPhaseTest, StopDuringADownloadReachesItsGuidAndEndsStopped)
{
    fakes::VideoAnswer stopped;
    stopped.writes = false;
    fakes::TheScript().videos = {stopped};
    AddVideo("one").video.download_info.is_snap = true;
    AddVideo("two");
    fakes::OnCall("StartDownloadVideoFile", 1, [this] { task_->Stop(); });
    EXPECT_EQ(Phase(), R"(
log3 Start video download
state 13 (0,0)
GetPluginHandle clipvault.c
GetPluginHandle clipvault.c
GetPluginHandle clipvault.c
GetPluginHandle clipvault.c
log3 CDeterminantWriteFileTask::DownloadVideoFile videoTask.size()= 2
log3 CDeterminantWriteFileTask::CreateVideoDownloadParm device_type == -1
StartDownloadVideoFile ""
log3 CDeterminantWriteFileTask::Exec() start to stop task.
StopDownloadVideoFile guid-1
log3 [VideoOverlayInfoStop]stop video overlay info
log3 finish stop task.
log3 [VideoWatermarkCovert]info overlay nullptr.
DeleteFileW <tmp>/Alarm/one.mp4
DeleteFileW <tmp>/Alarm/one.avi
DeleteFileW <tmp>/Alarm/one.jpg
log3 CDeterminantWriteFileTask::DownloadVideoFile end
SetLastError (0,0)
SetDownloadTaskParam
state 14 (0,0)
)");
    EXPECT_EQ(Marks(), "--");
    EXPECT_EQ(fakes::CountOf("StartDownloadVideoFile"), 1);
}

// The file that came in spite of the stop is deleted.
TEST_F(VideoPhaseTest, VideoThatArrivesBesideAStopIsFetchedAnew)
{
    AddVideo("one");
    fakes::OnCall("StartDownloadVideoFile", 1, [this] { task_->Stop(); });
    EXPECT_EQ(States(Run()), "1 13 14 6 (0,0)");
    EXPECT_FALSE(Exists("Alarm/one.mp4"));
    EXPECT_EQ(Marks(), "-");
    EXPECT_EQ(States(Run()), "1 13 14 4 (0,0)");
    EXPECT_TRUE(Exists("Alarm/one.mp4"));
}

TEST_F(VideoPhaseTest, DeleteDuringADownloadReachesItsGuidAndKeepsTheVideo)
{
    AddVideo("one");
    AddVideo("two");
    fakes::OnCall("StartDownloadVideoFile", 1, [this] { task_->Delete(); });
    const std::string trace = Short(Run());
    const std::size_t start = trace.find("StartDownloadVideoFile");
    EXPECT_EQ("\n" + trace.substr(start, trace.find("log3 DownloadPictures code_now2") - start), R"(
StartDownloadVideoFile ""
log3 CDeterminantWriteFileTask::Delete() b_downloading_video_ = 1
log3 CDeterminantWriteFileTask::Delete() b_downloading_video_·
StopDownloadVideoFile guid-1
log3 [VideoOverlayInfoStop]stop video overlay info
log3 [VideoWatermarkCovert]info overlay nullptr.
log3 CDeterminantWriteFileTask::DownloadVideoFile end
SetLastError (0,0)
SetDownloadTaskParam
state 14 (0,0)
)");
    EXPECT_EQ(Marks(), "+-");
    EXPECT_EQ(States(trace), "1 13 14 200 (0,0)");
}

// The guid of the first video was meant; the plug-in hears of the second's before that begins.
TEST_F(VideoPhaseTest, StopBetweenTwoVideosEndsThePhase)
{
    AddVideo("one");
    AddVideo("two");
    auto& overlay = Settings().vec_video_download[0];
    Stamp(overlay, -1);
    fakes::OnCall("StartDownloadVideoFile", 2, [this] { ADD_FAILURE(); });
    fakes::OnCall("IsHandleAvailable", 2, [this] { task_->Stop(); });
    EXPECT_EQ(States(Run()), "1 13 14 6 (0,0)");
    EXPECT_EQ(Marks(), "--");
}

TEST_F(VideoPhaseTest, StopBeforeThePhaseLeavesItOut)
{
    AddVideo("one");
    fakes::OnCall("DirectoryExists", 1, [this] { task_->Stop(); });
    EXPECT_EQ(States(Run()), "1 6 (0,0)");
    EXPECT_EQ(fakes::CountOf("StartDownloadVideoFile"), 0);
}

TEST_F(VideoPhaseTest, StopBehindThePhaseDoesNotReachThePlugin)
{
    AddVideo("one");
    Run();
    task_->Stop();
    EXPECT_EQ(fakes::CountOf("StopDownloadVideoFile"), 0);
    EXPECT_EQ(fakes::CountOf("StopCovert"), 0);
}

// A failure leaves the phase's mark up, and a stop behind it still tells the plug-in.
TEST_F(VideoPhaseTest, StopBehindAFailedPhaseStillReachesThePlugin)
{
    fakes::TheScript().videos = {{false, kRefused}};
    AddVideo("one");
    Run();
    fakes::Take();
    task_->Stop();
    EXPECT_EQ(Trace(), R"(
log3 CDeterminantWriteFileTask::Exec() start to stop task.
StopDownloadVideoFile guid-1
log3 [VideoOverlayInfoStop]stop video overlay info
log3 finish stop task.
)");
}

TEST_F(VideoPhaseTest, StatesOfAnEvidenceExportHaveNoVideoPhase)
{
    MakeEvidence();
    AddVideo("one");
    EXPECT_EQ(States(Run()), "7 10 (0,0)");
}

}  // namespace
}  // namespace contract
