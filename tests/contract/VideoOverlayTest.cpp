#include "support/VideoTest.h"

#include <fstream>

namespace contract {
namespace {

// Videos that are stamped behind their download.
class VideoOverlayTest : public VideoTest
{
protected:
    std::string Content(const std::string& path) const
    {
        std::ifstream file(Folder() + path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    // The trace behind the download of the only video.
    std::string Stamping()
    {
        const std::string phase = Phase();
        const std::string mark = "StartDownloadVideoFile \"\"\n";
        return "\n" + phase.substr(phase.find(mark) + mark.size());
    }
};

TEST_F(VideoOverlayTest, Mp4EndsUnderItsNameAlone)
{
    Stamp(AddVideo("one"));
    EXPECT_EQ(Stamping(), R"(
IsHandleAvailable
GetWaterMarkConfig
GetUserInfo
SetWaterMarkParam on [operator|confidential] color 10,20,30 size 40 transparency 50 angle 60 space 70 bench 1280x720
SetSrcFilePathStr <tmp>/Alarm/one.mp4
SetDstFilePathStr <tmp>/Alarm/guid-2.mp4
StartCovert
DeleteFileW <tmp>/Alarm/one.mp4
RenameFile <tmp>/Alarm/guid-2.mp4 <tmp>/Alarm/one.mp4
log3 CDeterminantWriteFileTask::DownloadVideoFile end
SetLastError (0,0)
SetDownloadTaskParam
state 14 (0,0)
)");
    EXPECT_EQ(Content("Alarm/one.mp4"), "stamped video");
    EXPECT_FALSE(Exists("Alarm/guid-2.mp4"));
    EXPECT_EQ(Marks(), "+");
}

TEST_F(VideoOverlayTest, AviEndsUnderItsNameAndTheStampedMp4Stays)
{
    Stamp(AddVideo("one", 1));
    EXPECT_EQ(Stamping(), R"(
IsHandleAvailable
GetWaterMarkConfig
GetUserInfo
SetWaterMarkParam on [operator|confidential] color 10,20,30 size 40 transparency 50 angle 60 space 70 bench 1280x720
SetSrcFilePathStr <tmp>/Alarm/one.mp4
SetDstFilePathStr <tmp>/Alarm/guid-2.mp4
StartCovert
CVideoFormatTransfer
Translate <tmp>/Alarm/guid-3.avi <tmp>/Alarm/guid-2.mp4 0 ""
DeleteFileW <tmp>/Alarm/one.mp4
RenameFile <tmp>/Alarm/guid-3.avi <tmp>/Alarm/one.avi
log3 CDeterminantWriteFileTask::DownloadVideoFile end
SetLastError (0,0)
SetDownloadTaskParam
state 14 (0,0)
)");
    EXPECT_EQ(Content("Alarm/one.avi"), "translated stamped video");
    EXPECT_EQ(Content("Alarm/guid-2.mp4"), "stamped video");
    EXPECT_FALSE(Exists("Alarm/one.mp4"));
}

TEST_F(VideoOverlayTest, OtherFormatsHaveNoExtension)
{
    Stamp(AddVideo("one", 0));
    const std::string trace = Stamping();
    EXPECT_EQ(Lines(trace, "SetSrc"), "\nSetSrcFilePathStr <tmp>/Alarm/one\n");
    EXPECT_EQ(Lines(trace, "SetDst"), "\nSetDstFilePathStr <tmp>/Alarm/guid-2\n");
    EXPECT_EQ(Content("Alarm/one"), "stamped video");
}

TEST_F(VideoOverlayTest, TypeMinusOneLeavesTheVideoAsItCame)
{
    Stamp(AddVideo("one"), -1);
    EXPECT_EQ(Stamping(), R"(
IsHandleAvailable
log5 [VideoWatermarkCovert]info overlay type none. infoOverlayType: -1
log3 CDeterminantWriteFileTask::DownloadVideoFile end
SetLastError (0,0)
SetDownloadTaskParam
state 14 (0,0)
)");
    EXPECT_EQ(Content("Alarm/one.mp4"), "video");
    EXPECT_EQ(Marks(), "+");
}

TEST_F(VideoOverlayTest, OverlayThatCannotStampFailsTheVideo)
{
    Stamp(AddVideo("one"));
    fakes::FailCalls("IsHandleAvailable", 1, -1);
    EXPECT_EQ(Stamping(), R"(
IsHandleAvailable -> fails
log5 [VideoWatermarkCovert]info overlay handle none.
DeleteFileW <tmp>/Alarm/one.mp4
DeleteFileW <tmp>/Alarm/one.avi
GetErrorInfoByCode 20/3
SetErrorParamState true
SetErrorParam ArrayList[1]/ErrorReason=text of 20/3; ArrayList[1]/FileName=one
SetDownloadTaskParam
log5 [DownloadVideoFile]video overlay info fail
log5 CDeterminantWriteFileTask::Exec()  video download filed
SetLastError (20,3)
SetDownloadTaskParam
state 14 (20,3)
state 5 (20,3)
state 5 (20,3)
log5 DownloadPictures failed·
)");
    EXPECT_FALSE(Exists("Alarm/one.mp4"));
    EXPECT_EQ(fakes::CountOf("StartCovert"), 0);
}

TEST_F(VideoOverlayTest, FailedStampDeletesTheVideoAndItsPicture)
{
    auto& entry = AddVideo("one");
    Stamp(entry);
    entry.video.download_info.is_snap = true;
    fakes::TheScript().stamp_results = {3};
    EXPECT_EQ(Stamping(), R"(
IsHandleAvailable
GetWaterMarkConfig
GetUserInfo
SetWaterMarkParam on [operator|confidential] color 10,20,30 size 40 transparency 50 angle 60 space 70 bench 1280x720
SetSrcFilePathStr <tmp>/Alarm/one.mp4
SetDstFilePathStr <tmp>/Alarm/guid-2.mp4
StartCovert
DeleteFileW <tmp>/Alarm/guid-2.mp4
DeleteFileW <tmp>/Alarm/one.mp4
DeleteFileW <tmp>/Alarm/one.avi
DeleteFileW <tmp>/Alarm/one.jpg
log5 [VideoOverlayInfoStart]convert fail. err: 3
DeleteFileW <tmp>/Alarm/one.mp4
DeleteFileW <tmp>/Alarm/one.avi
DeleteFileW <tmp>/Alarm/one.jpg
GetErrorInfoByCode 20/3
SetErrorParamState true
SetErrorParam ArrayList[1]/ErrorReason=text of 20/3; ArrayList[1]/FileName=one
SetDownloadTaskParam
log5 [DownloadVideoFile]video overlay info fail
log5 CDeterminantWriteFileTask::Exec()  video download filed
SetLastError (20,3)
SetDownloadTaskParam
state 14 (20,3)
state 5 (20,3)
state 5 (20,3)
log5 DownloadPictures failed·
)");
    EXPECT_FALSE(Exists("Alarm/one.mp4"));
    EXPECT_FALSE(Exists("Alarm/one.jpg"));
}

// The entry is made whatever the export does after a failure.
TEST_F(VideoOverlayTest, FailedStampIsCollectedAndTheNextVideoFetched)
{
    Settings().is_continue_dowinloading = true;
    Stamp(AddVideo("one"));
    AddVideo("two");
    fakes::TheScript().stamp_results = {7};
    EXPECT_EQ(States(Run()), "1 13 14 5 (20,3)");
    EXPECT_EQ(Marks(), "-+");
    EXPECT_EQ(task_->GetCommData(), R"({"ArrayList":[{"FileName":"one","ErrorReason":"text of 20/3"}]})");
}

TEST_F(VideoOverlayTest, SourceThatCannotBeDeletedFailsTheVideo)
{
    Stamp(AddVideo("one"));
    fakes::FailCalls("DeleteFileW", 1, 1);
    const std::string trace = Stamping();
    EXPECT_EQ(Lines(trace, "log5 [VideoOverlayInfoStart]"), R"(
log5 [VideoOverlayInfoStart]delete fail. srcFilePathStr: <tmp>/Alarm/one.mp4, dstFilePathStr: <tmp>/Alarm/guid-2.mp4
)");
    EXPECT_EQ(fakes::CountOf("RenameFile"), 0);
    EXPECT_FALSE(Exists("Alarm/guid-2.mp4"));
    EXPECT_EQ(Marks(), "-");
}

TEST_F(VideoOverlayTest, StampedFileThatCannotBeRenamedFailsTheVideo)
{
    Stamp(AddVideo("one"));
    fakes::FailCalls("RenameFile", 1, 1);
    EXPECT_EQ(States(Run()), "1 13 14 5 5 (20,3)");
    EXPECT_FALSE(Exists("Alarm/one.mp4"));
    EXPECT_FALSE(Exists("Alarm/guid-2.mp4"));
}

TEST_F(VideoOverlayTest, TransferThatCannotBeMadeFailsTheVideo)
{
    Stamp(AddVideo("one", 1));
    fakes::FailCalls("CVideoFormatTransfer", 1, 1);
    EXPECT_EQ(Lines(Stamping(), "log5 [VideoOverlayInfoStart]"),
              "\nlog5 [VideoOverlayInfoStart]make translater fail.\n");
    EXPECT_FALSE(Exists("Alarm/one.mp4"));
}

TEST_F(VideoOverlayTest, FailedTransferLeavesNothing)
{
    Stamp(AddVideo("one", 1));
    fakes::TheScript().translate_results = {5};
    EXPECT_EQ(Lines(Stamping(), "log5 [VideoOverlayInfoStart]"), R"(
log5 [VideoOverlayInfoStart]delete fail. srcFilePathStr: <tmp>/Alarm/one.mp4, dstFilePathStr: <tmp>/Alarm/guid-2.mp4, aviFilePathStr0: <tmp>/Alarm/one.avi, aviFilePathStr1: <tmp>/Alarm/guid-3.avi
)");
    for (const char* file : {"one.mp4", "one.avi", "guid-2.mp4", "guid-3.avi"})
        EXPECT_FALSE(Exists(std::string("Alarm/") + file)) << file;
}

TEST_F(VideoOverlayTest, StopDuringAStampStopsTheOverlaysAndDeletesTheVideo)
{
    Stamp(AddVideo("one"));
    AddVideo("two");
    Stamp(AddVideo("three"), -1);
    fakes::TheScript().stamp_results = {1};
    fakes::OnCall("StartCovert", 1, [this] { task_->Stop(); });
    const std::string trace = Stamping();
    const std::size_t stop = trace.find("log3 CDeterminantWriteFileTask::Exec() start to stop");
    EXPECT_EQ("\n" + trace.substr(stop), R"(
log3 CDeterminantWriteFileTask::Exec() start to stop task.
StopDownloadVideoFile guid-1
IsHandleAvailable
StopCovert
IsHandleAvailable
log3 [VideoOverlayInfoStop]stop video overlay info
log3 finish stop task.
DeleteFileW <tmp>/Alarm/guid-2.mp4
DeleteFileW <tmp>/Alarm/one.mp4
DeleteFileW <tmp>/Alarm/one.avi
log5 [VideoOverlayInfoStart]convert fail. err: 1
DeleteFileW <tmp>/Alarm/one.mp4
DeleteFileW <tmp>/Alarm/one.avi
GetErrorInfoByCode 20/3
SetErrorParamState true
SetErrorParam ArrayList[1]/ErrorReason=text of 20/3; ArrayList[1]/FileName=one
SetDownloadTaskParam
log5 [DownloadVideoFile]video overlay info fail
log5 CDeterminantWriteFileTask::Exec()  video download filed
SetLastError (20,3)
SetDownloadTaskParam
state 14 (20,3)
state 5 (20,3)
state 5 (20,3)
log5 DownloadPictures failed·
)");
    EXPECT_EQ(Marks(), "---");
}

// A stamp that ends well beside the stop is thrown away all the same.
TEST_F(VideoOverlayTest, StampThatEndsWellBesideAStopIsThrownAway)
{
    Stamp(AddVideo("one"));
    fakes::OnCall("StartCovert", 1, [this] { task_->Stop(); });
    EXPECT_EQ(States(Run()), "1 13 14 6 (0,0)");
    EXPECT_FALSE(Exists("Alarm/one.mp4"));
    EXPECT_EQ(Marks(), "-");
}

// A stopped fetch leaves no file, so the stamp of it fails, and that is a failure unless they are collected.
TEST_F(VideoOverlayTest, StoppedFetchOfAVideoThatIsStampedEndsAsFailed)
{
    Stamp(AddVideo("one"));
    fakes::VideoAnswer stopped;
    stopped.writes = false;
    fakes::TheScript().videos = {stopped};
    fakes::TheScript().stamp_results = {3};
    fakes::OnCall("StartDownloadVideoFile", 1, [this] { task_->Stop(); });
    EXPECT_EQ(States(Run()), "1 13 14 5 5 (20,3)");
    Settings().is_continue_dowinloading = true;
    fakes::TheScript().videos = {stopped};
    fakes::TheScript().stamp_results = {3};
    fakes::OnCall("StartDownloadVideoFile", 2, [this] { task_->Stop(); });
    EXPECT_EQ(States(Run()), "1 13 14 6 (20,3)");
}

TEST_F(VideoOverlayTest, WatermarkIsThatOfTheMomentOfTheStamp)
{
    fakes::WatermarkConfig& config = fakes::TheScript().watermark;
    config.has_user_name = true;
    config.has_time = true;
    config.has_custom_content = true;
    config.custom_content = "Fetchyard";
    Stamp(AddVideo("one"));
    EXPECT_EQ(Lines(Short(Run()), "SetWaterMarkParam"), R"(
SetWaterMarkParam on [operator|<now>|Fetchyard] color 10,20,30 size 40 transparency 50 angle 60 space 70 bench 1280x720
)");
    Settings().vec_video_download[0].is_has_download = false;
    config.has_time = false;
    fakes::FailCalls("GetUserInfo", fakes::CountOf("GetUserInfo") + 1, 1);
    EXPECT_EQ(Lines(Short(Run()), "SetWaterMarkParam"), R"(
SetWaterMarkParam on [Fetchyard] color 10,20,30 size 40 transparency 50 angle 60 space 70 bench 1280x720
)");
}

}  // namespace
}  // namespace contract
