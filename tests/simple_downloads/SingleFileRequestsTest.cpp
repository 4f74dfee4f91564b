#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "FetchyardBussiness/FileDownload/FileExportTask.h"
#include "FetchyardBussiness/ImageDownload/ImageDownloadTask.h"
#include "FetchyardBussiness/ShortVideo/ShortVideoExportTask.h"
#include "FetchyardBussiness/SingleFileRequests.h"
#include "FetchyardBussiness/VideoDownload/VideoDownloadTask.h"
#include "support/ContractTest.h"
#include "ZellBase/Error.h"

namespace contract {
namespace {

using namespace FetchyardBussiness;
using ZellTaskKit::CDownloadTaskParam;
using Texts = std::vector<std::string>;
using Records = std::vector<std::shared_ptr<CDownloadTaskParam>>;

class SingleFileRequestsTest : public ContractTest
{
protected:
    static bool Add(const Texts& requests) { return Manager().AddFileDownloadTask(Guids(), requests); }
    static bool Add(const Records& records) { return Manager().AddFileDownloadTask(Guids(), records); }
    static CDownloadBussinessManager& Manager() { return CDownloadBussinessManager::Instance(); }
    static Texts& Guids()
    {
        static auto* guids = new Texts;
        return *guids;
    }
    SingleFileRequestsTest() { Guids().clear(); }

    static std::string Request(const std::string& entries)
    {
        return R"({"FileRequestList":[)" + entries + "]}";
    }
    static std::string Entry(int type, const std::string& node)
    {
        return R"({"FileRequest":{"FileType":)" + std::to_string(type) +
               R"(,"SavePath":"/s/","FileName":"n","RequestUrl":"/u",)" + node + "}}";
    }
    static std::string Picture() { return Entry(0, R"("ImageParam":{"SaveCache":true})"); }
    static std::string File() { return Entry(1, R"("FileParam":{"RequestMethod":"POST"})"); }
    static std::string Video() { return Entry(2, R"("VideoParam":{"VideoDownloadParam":"v"})"); }
    static std::string Clip() { return Entry(3, R"("ShortVideoParam":{"StoragePlace":0})"); }

    template <typename Task>
    static bool FirstTaskIs()
    {
        const auto& tasks = fakes::TheScript().handed_over;
        return !tasks.empty() && std::dynamic_pointer_cast<Task>(tasks.front()) != nullptr;
    }

    static bool LastErrorIsBadInput()
    {
        const auto error = Zell::Base::Error::GetLastError();
        return error.iFirstCode == 20 && error.iSecondCode == 3;
    }
};

TEST_F(SingleFileRequestsTest, EachKindMakesItsTask)
{
    EXPECT_TRUE(Add(Texts{Request(Picture())}));
    EXPECT_TRUE(FirstTaskIs<CImageDownloadTask>());
    fakes::Reset();
    EXPECT_TRUE(Add(Texts{Request(File())}));
    EXPECT_TRUE(FirstTaskIs<CFileExportTask>());
    fakes::Reset();
    EXPECT_TRUE(Add(Texts{Request(Video())}));
    EXPECT_TRUE(FirstTaskIs<CVideoDownloadTask>());
    fakes::Reset();
    EXPECT_TRUE(Add(Texts{Request(Clip())}));
    EXPECT_TRUE(FirstTaskIs<CShortVideoExportTask>());
}

TEST_F(SingleFileRequestsTest, MixedRequestKeepsTheFirstKindOnly)
{
    EXPECT_TRUE(Add(Texts{Request(File() + "," + Picture() + "," + Picture())}));
    EXPECT_EQ(fakes::TheScript().handed_over.size(), 1u);
    EXPECT_EQ(Guids().size(), 1u);
    EXPECT_TRUE(FirstTaskIs<CImageDownloadTask>());
}

TEST_F(SingleFileRequestsTest, TwoEntriesOfOneKindMakeOneTask)
{
    EXPECT_TRUE(Add(Texts{Request(Picture() + "," + Picture())}));
    EXPECT_EQ(fakes::TheScript().handed_over.size(), 1u);
    EXPECT_EQ(Guids().size(), 1u);
    EXPECT_TRUE(FirstTaskIs<CImageDownloadTask>());
}

TEST_F(SingleFileRequestsTest, TaskOfATextHasTheBasePartOnlyAndFails)
{
    ASSERT_TRUE(Add(Texts{Request(Picture())}));
    const auto task = fakes::TheScript().handed_over.front();
    EXPECT_EQ(task->GetDownloadTaskParam<ImageParam>(), nullptr);
    EXPECT_NE(task->GetDownloadTaskParam<CDownloadTaskParam>(), nullptr);
    Trace();
    task->Exec();
    EXPECT_EQ(fakes::CountOf("SyncLoadImage"), 0);
    EXPECT_EQ(task->GetDownloadState(), ZellTaskKit::Failed);
}

TEST_F(SingleFileRequestsTest, NoRequestIsFalseWithALine)
{
    EXPECT_FALSE(Add(Texts{}));
    EXPECT_EQ(Trace(), "\nlog5  CDownloadBussinessManager::AddDownloadCommTask  process task failed!\n");
}

TEST_F(SingleFileRequestsTest, UnknownKindIsLoggedAndLeavesNothing)
{
    const std::string request = Request(Entry(7, R"("X":{})"));
    EXPECT_FALSE(Add(Texts{request}));
    EXPECT_EQ(Trace(), "\nlog5 Input file type error. type = 7, json: " + request +
                           "\nlog5 Cannot get download params.\n"
                           "log5  CDownloadBussinessManager::AddDownloadCommTask  process task failed!\n");
}

TEST_F(SingleFileRequestsTest, MissingKindCountsAsMinusOne)
{
    EXPECT_FALSE(Add(Texts{R"({"FileRequestList":[{"FileRequest":{}}]})"}));
    EXPECT_NE(Trace().find("log5 Input file type error. type = -1, json: "), std::string::npos);
}

TEST_F(SingleFileRequestsTest, BadTextLosesTheRequestsBeforeItAndKeepsTheirGuids)
{
    EXPECT_FALSE(Add(Texts{Request(Picture()), "no json"}));
    EXPECT_EQ(Guids().size(), 1u);
    EXPECT_TRUE(fakes::TheScript().handed_over.empty());
    EXPECT_TRUE(LastErrorIsBadInput());
    EXPECT_NE(Trace().find("log5 Input json error. json = no json\n"), std::string::npos);
}

TEST_F(SingleFileRequestsTest, MissingNodeEndsTheCall)
{
    const std::string request = R"({"FileRequestList":[{"FileRequest":{"FileType":1}}]})";
    EXPECT_FALSE(Add(Texts{request}));
    EXPECT_TRUE(LastErrorIsBadInput());
    EXPECT_EQ(Trace(), "\nlog5 Input image param failed. node json: .\nlog5 Input json error. json = " +
                           request + "\nSetLastError (20,3)\n");
}

TEST_F(SingleFileRequestsTest, NodesAreReadIntoTheirRecords)
{
    ImageItem picture;
    ASSERT_TRUE(details::ParseImageParam(
        picture, R"({"SaveCache":true,"WorkstationID":1,"AccessType":2,"ImageType":3,"PersonID":4})"));
    EXPECT_TRUE(picture.save_cache);
    EXPECT_EQ(picture.workstation_id, 1);
    EXPECT_EQ(picture.access_type, 2);
    EXPECT_EQ(picture.image_type, 3);
    EXPECT_EQ(picture.person_id, 4);

    FileExportItem file;
    ASSERT_TRUE(details::ParseFileParam(
        file,
        R"({"RequestData":"d","SendData":"s","RequestMethod":"PUT","RequestPattern":6,"RequestQueryParams":)"
        R"([{"QueryParam":{"key":"a","value":"1"}},{"QueryParam":{"key":"a","value":"2"}}]})"));
    EXPECT_EQ(file.request_data, "d");
    EXPECT_EQ(file.send_data, "s");
    EXPECT_EQ(file.request_method, "PUT");
    EXPECT_EQ(file.request_pattern, 6);
    EXPECT_EQ(file.query_params, (std::map<std::string, std::string>{{"a", "2"}}));

    ShortVideoItem clip;
    ASSERT_TRUE(details::ParseShortVideoParam(clip, R"({"StoragePlace":0,"DownloadType":2})"));
    EXPECT_EQ(clip.EnumStoragePlace, 0);
    EXPECT_EQ(clip.EnumUpLoadType, 2);

    VideoTaskParam video;
    ASSERT_TRUE(details::ParseVideoParam(video, R"({"VideoDownloadParam":"v"})"));
    EXPECT_EQ(video.video_requests, Texts{"v"});
}

TEST_F(SingleFileRequestsTest, AbsentKeysReplaceTheDefaults)
{
    FileExportItem file;
    ASSERT_TRUE(details::ParseFileParam(file, "{}"));
    EXPECT_EQ(file.request_method, "");
    EXPECT_EQ(file.request_pattern, -1);
    ShortVideoItem clip;
    ASSERT_TRUE(details::ParseShortVideoParam(clip, "{}"));
    EXPECT_EQ(clip.EnumStoragePlace, -1);
    EXPECT_EQ(clip.EnumUpLoadType, -1);
    VideoTaskParam video;
    ASSERT_TRUE(details::ParseVideoParam(video, "{}"));
    EXPECT_EQ(video.video_requests, Texts{""});
}

TEST_F(SingleFileRequestsTest, RecordsReachTheirTasksWhole)
{
    auto picture = std::make_shared<ImageParam>();
    picture->SetVal_file_type(ZellTaskKit::ImageFile);
    auto clip = std::make_shared<ShortVideoDownloadParam>();
    clip->SetVal_file_type(ZellTaskKit::ShortVideoFile);
    auto file = std::make_shared<FileExportParam>();
    file->SetVal_file_type(ZellTaskKit::ServerFile);
    EXPECT_TRUE(Add(Records{picture, clip, file, std::make_shared<VideoTaskParam>()}));
    const auto& tasks = fakes::TheScript().handed_over;
    ASSERT_EQ(tasks.size(), 4u);
    EXPECT_EQ(tasks[0]->GetDownloadTaskParam<ImageParam>(), picture);
    EXPECT_NE(std::dynamic_pointer_cast<CShortVideoExportTask>(tasks[1]), nullptr);
    EXPECT_NE(std::dynamic_pointer_cast<CFileExportTask>(tasks[2]), nullptr);
    EXPECT_NE(std::dynamic_pointer_cast<CVideoDownloadTask>(tasks[3]), nullptr);
    EXPECT_EQ(Guids().size(), 4u);
}

TEST_F(SingleFileRequestsTest, RecordOfAnotherClassEndsTheCall)
{
    auto wrong = std::make_shared<FileExportParam>();
    wrong->SetVal_file_type(ZellTaskKit::ImageFile);
    Trace();
    EXPECT_FALSE(Add(Records{std::make_shared<VideoTaskParam>(), wrong}));
    EXPECT_EQ(Guids().size(), 1u);
    EXPECT_TRUE(fakes::TheScript().handed_over.empty());
    EXPECT_NE(Trace().find("log5 Convert ptr failed.\n"), std::string::npos);
}

TEST_F(SingleFileRequestsTest, NullRecordsAreLoggedOneByOne)
{
    EXPECT_FALSE(Add(Records{nullptr, nullptr}));
    EXPECT_EQ(Trace(),
              "\nlog5 Input download file ptr is nullptr.\nlog5 Input download file ptr is nullptr.\n");
}

TEST_F(SingleFileRequestsTest, UnknownFileTypeIsPassedOverWithoutAWord)
{
    auto record = std::make_shared<ImageParam>();
    record->SetVal_file_type(static_cast<ZellTaskKit::DownloadFileType>(9));
    Trace();
    EXPECT_FALSE(Add(Records{record}));
    EXPECT_EQ(Trace(), "\n");
}

}  // namespace
}  // namespace contract
