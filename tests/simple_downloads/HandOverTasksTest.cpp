#include "FetchyardBussiness/ImageDownload/ImageParam.h"
#include "FetchyardBussiness/ShortVideo/ShortVideoExportTask.h"
#include "FetchyardBussiness/VideoDownload/VideoDownloadTask.h"
#include "support/ContractTest.h"

namespace contract {
namespace {

using FetchyardBussiness::CShortVideoExportTask;
using FetchyardBussiness::CVideoDownloadTask;
using FetchyardBussiness::ImageParam;
using FetchyardBussiness::ShortVideoDownloadParam;
using FetchyardBussiness::ShortVideoItem;
using FetchyardBussiness::VideoTaskParam;

template <typename Task>
std::string RunTask(Task& task, const std::shared_ptr<ZellTaskKit::CDownloadTaskParam>& param)
{
    task.SetDownloadTaskParam(param, false);
    fakes::Take();
    task.Exec();
    return "\n" + fakes::TakeText();
}

std::shared_ptr<ShortVideoDownloadParam> Clips(const std::vector<int>& upload_types)
{
    auto param = std::make_shared<ShortVideoDownloadParam>();
    param->SetVal_str_name("clips");
    param->SetVal_str_file_path("/clips/");
    for (const int type : upload_types) {
        ShortVideoItem item;
        item.file_name = "c" + std::to_string(param->clips.size() + 1);
        item.save_path = "/clips/";
        item.str_shortvideo_url = "/store";
        item.EnumUpLoadType = type;
        item.EnumStoragePlace = 3;
        param->clips.push_back(item);
    }
    return param;
}

class ClipTaskTest : public ContractTest
{
};

TEST_F(ClipTaskTest, UploadTypePicksTheCall)
{
    CShortVideoExportTask task;
    EXPECT_EQ(RunTask(task, Clips({0, 1, 2})), R"(
state 1 (0,0)
log3 Start export shortvideo.
log3 Start export file, file name: clips, file guid: task-1, file save path: /clips/.
DownloadFileByPic /store /clips/c1 3
DownloadFile /store /clips/c2 3
DownloadFileByPicInOXT /store /clips/c3
state 4 (0,0)
log3 download export file sucess, file name: clips, file guid: task-1, file save path: /clips/.
)");
}

TEST_F(ClipTaskTest, FailedClipDoesNotKeepTheOthersFromBeingFetched)
{
    fakes::FailCalls("DownloadFile", 1, 1);
    CShortVideoExportTask task;
    EXPECT_EQ(RunTask(task, Clips({1, 1, 1})), R"(
state 1 (0,0)
log3 Start export shortvideo.
log3 Start export file, file name: clips, file guid: task-1, file save path: /clips/.
DownloadFile /store /clips/c1 3 -> fails
DownloadFile /store /clips/c2 3
DownloadFile /store /clips/c3 3
state 5 (0,0)
)");
}

TEST_F(ClipTaskTest, UnknownUploadTypeFailsWithoutAFetch)
{
    CShortVideoExportTask task;
    EXPECT_EQ(RunTask(task, Clips({5})), R"(
state 1 (0,0)
log3 Start export shortvideo.
log3 Start export file, file name: clips, file guid: task-1, file save path: /clips/.
state 5 (0,0)
)");
}

TEST_F(ClipTaskTest, EmptyListSucceeds)
{
    CShortVideoExportTask task;
    EXPECT_NE(RunTask(task, Clips({})).find("state 4 (0,0)"), std::string::npos);
}

TEST_F(ClipTaskTest, RecordOfAnotherClassFails)
{
    CShortVideoExportTask task;
    EXPECT_EQ(RunTask(task, std::make_shared<ImageParam>()), R"(
state 1 (0,0)
log3 Start export shortvideo.
state 5 (0,0)
log5 Export file failed. create file ptr failed.·
)");
}

TEST_F(ClipTaskTest, StopAndSuspendChangeNothing)
{
    CShortVideoExportTask task;
    fakes::OnCall("DownloadFile", 1, [&task] {
        EXPECT_TRUE(task.Stop());
        EXPECT_TRUE(task.Suspend());
    });
    RunTask(task, Clips({1, 1}));
    EXPECT_EQ(fakes::CountOf("DownloadFile"), 2);
    EXPECT_EQ(task.GetProgress().GetVal_finished_size(), 0u);
}

class VideoTaskTest : public ContractTest
{
protected:
    static std::shared_ptr<VideoTaskParam> Videos(const std::vector<std::string>& requests)
    {
        auto param = std::make_shared<VideoTaskParam>();
        param->video_requests = requests;
        return param;
    }
};

TEST_F(VideoTaskTest, RefusedRequestEndsTheTask)
{
    fakes::FailCalls("DoRequest", 2, 1);
    CVideoDownloadTask task;
    EXPECT_EQ(RunTask(task, Videos({"one", "two", "three"})), R"(
state 1 (0,0)
log3 Start download video.
log3 Request API: /API/ClipVault/V0/DownloadVideoFiles, request message : one.
DoRequest /API/ClipVault/V0/DownloadVideoFiles one
log3 Request API: /API/ClipVault/V0/DownloadVideoFiles, request message : two.
DoRequest /API/ClipVault/V0/DownloadVideoFiles two -> fails
log5 Do request failed.
state 5 (0,0)
)");
}

TEST_F(VideoTaskTest, EmptyListSucceedsAndSendsNothing)
{
    CVideoDownloadTask task;
    EXPECT_EQ(RunTask(task, Videos({})), "\nstate 1 (0,0)\nlog3 Start download video.\nstate 4 (0,0)\n");
}

TEST_F(VideoTaskTest, StopReturnsTrueAndTheRestGoesOut)
{
    CVideoDownloadTask task;
    fakes::OnCall("DoRequest", 1, [&task] {
        EXPECT_TRUE(task.Stop());
        EXPECT_TRUE(task.Suspend());
    });
    RunTask(task, Videos({"one", "two"}));
    EXPECT_EQ(fakes::CountOf("DoRequest"), 2);
    EXPECT_EQ(task.GetProgress().GetVal_finished_size(), 0u);
}

TEST_F(VideoTaskTest, RecordOfAnotherClassFails)
{
    CVideoDownloadTask task;
    EXPECT_EQ(RunTask(task, std::make_shared<ImageParam>()), R"(
state 1 (0,0)
log3 Start download video.
state 5 (0,0)
log5 Start download video failed. convert video param failed.
)");
}

}  // namespace
}  // namespace contract
