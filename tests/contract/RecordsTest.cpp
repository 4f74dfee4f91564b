#include "FetchyardBussiness/DeterminantWriteFile/DeterminantDownloadParam.h"
#include "FetchyardBussiness/FileDownload/FileExportParam.h"
#include "FetchyardBussiness/ImageDownload/ImageParam.h"
#include "FetchyardBussiness/ShortVideo/ShortVideoDownloadParam.h"
#include "FetchyardBussiness/VideoDownload/VideoTaskParam.h"
#include "support/ContractTest.h"

#include <algorithm>

namespace contract {
namespace {

using namespace FetchyardBussiness;
using Zell::Base::Error::ErrorCode;
using Zell::MultimediaComm::InfoOverlay;
using Zell::MultimediaComm::InfoOverlayLineArray;

class RecordsTest : public ContractTest
{
};

TEST_F(RecordsTest, ErrorCodeOfThreeNumbersDropsTheKind)
{
    const ErrorCode error(2, 20, 3);
    EXPECT_EQ(error.iFirstCode, 20);
    EXPECT_EQ(error.iSecondCode, 3);
    const ErrorCode system(0, 13);
    EXPECT_EQ(system.iFirstCode, 0);
    EXPECT_EQ(system.iSecondCode, 13);
}

TEST_F(RecordsTest, FreshFileExportItemIsAGet)
{
    const FileExportItem item;
    EXPECT_EQ(item.request_method, "GET");
    EXPECT_EQ(item.request_pattern, 0);
    EXPECT_EQ(item.file_name + item.save_path + item.request_url + item.request_data + item.send_data, "");
    EXPECT_TRUE(item.query_params.empty());
    EXPECT_TRUE(FileExportParam().file_items.empty());
}

TEST_F(RecordsTest, FreshShortVideoItemIsAFileOfTheObjectStorage)
{
    const ShortVideoItem item;
    EXPECT_EQ(item.EnumUpLoadType, 1);
    EXPECT_EQ(item.EnumStoragePlace, 1);
    EXPECT_EQ(item.file_name + item.save_path + item.str_shortvideo_url, "");
    EXPECT_TRUE(ShortVideoDownloadParam().clips.empty());
}

TEST_F(RecordsTest, FreshVideoRecordHasItsDefaults)
{
    const VideoTaskParam video;
    EXPECT_TRUE(video.video_requests.empty());
    EXPECT_EQ(video.ptr_info_overlay, nullptr);
    EXPECT_EQ(video.download_info.video_format, 0);
    EXPECT_EQ(video.download_info.file_format, 2);
    EXPECT_TRUE(video.download_info.is_snap);
    EXPECT_EQ(video.download_info.str_video_password + video.download_info.str_video_save_path_current +
                  video.download_info.str_video_save_name + video.download_info.str_video_save_path,
              "");
    EXPECT_EQ(video.camera_info.camera_id, -1);
    EXPECT_EQ(video.camera_info.site_id, 0);
    EXPECT_EQ(video.camera_info.device_id, -1);
    EXPECT_EQ(video.camera_info.device_type, -1);
    EXPECT_EQ(video.camera_info.begin_time, 0);
    EXPECT_EQ(video.camera_info.end_time, 0);
}

TEST_F(RecordsTest, FreshImageItemHasItsDefaults)
{
    const ImageItem item;
    EXPECT_FALSE(item.save_cache);
    EXPECT_EQ(item.image_url, "");
    EXPECT_EQ(item.workstation_id, -1);
    EXPECT_EQ(item.access_type, 0);
    EXPECT_EQ(item.image_type, 0);
    EXPECT_EQ(item.person_id, -1);
    EXPECT_TRUE(ImageParam().image_items.empty());
}

TEST_F(RecordsTest, FreshExportRecordHasItsDefaults)
{
    const DeterminantDownloadParam param;
    const VsFileParam& file = param.vs_file_param_;
    EXPECT_EQ(param.str_evidence_param, "");
    EXPECT_EQ(file.file_operate_type, 0);
    EXPECT_EQ(file.str_request_method + file.str_request_api + file.str_request_condition, "");
    EXPECT_EQ(file.request_site_id, 0);
    EXPECT_EQ(file.str_export_file_name + file.str_export_file_path + file.str_zip_password, "");
    EXPECT_EQ(file.export_file_type, 0);
    EXPECT_FALSE(file.is_need_compress_zip);
    EXPECT_EQ(file.pdf_page_size, "A4");
    EXPECT_EQ(file.pdf_page_orintation, 0);
    EXPECT_FALSE(file.restart_is_need_download);
    EXPECT_TRUE(file.is_server_data_to_write);
    EXPECT_EQ(file.file_current_page, 1);
    EXPECT_FALSE(file.file_total_page_is_finished);
    EXPECT_TRUE(file.vec_image_download.empty());
    EXPECT_TRUE(file.vec_video_download.empty());
    EXPECT_TRUE(file.vec_short_video.empty());
    EXPECT_FALSE(file.is_continue_dowinloading);
    EXPECT_TRUE(file.map_site_camera.empty());
    EXPECT_FALSE(file.check_password_request);
    EXPECT_EQ(file.str_received_condition, "");
    EXPECT_FALSE(file.is_resumed);
    EXPECT_EQ(file.password_type, 0);
    EXPECT_EQ(file.web_login_model, 1);
    EXPECT_TRUE(file.map_device_log.empty());
}

TEST_F(RecordsTest, FreshListEntriesAreNotDone)
{
    EXPECT_FALSE(ImageDownloadEntry().is_has_download);
    EXPECT_FALSE(VideoDownloadEntry().is_has_download);
    EXPECT_FALSE(ShortVideoEntry().is_has_download);
}

TEST_F(RecordsTest, CopyOfAnExportRecordHasListsOfItsOwnAndSharesTheOverlays)
{
    DeterminantDownloadParam param;
    param.SetVal_str_name("Alarm");
    param.str_evidence_param = "{}";
    param.vs_file_param_.file_current_page = 4;
    param.vs_file_param_.restart_is_need_download = true;
    VideoDownloadEntry video;
    video.video.ptr_info_overlay = std::make_shared<InfoOverlay>();
    param.vs_file_param_.vec_video_download.push_back(video);
    param.vs_file_param_.map_site_camera[3] = {1, 1};

    const DeterminantDownloadParam copy(param);
    param.vs_file_param_.vec_video_download.clear();
    param.vs_file_param_.map_site_camera.clear();

    EXPECT_EQ(copy.GetVal_str_name(), "Alarm");
    EXPECT_EQ(copy.str_evidence_param, "{}");
    EXPECT_EQ(copy.vs_file_param_.file_current_page, 4);
    EXPECT_TRUE(copy.vs_file_param_.restart_is_need_download);
    ASSERT_EQ(copy.vs_file_param_.vec_video_download.size(), 1U);
    EXPECT_EQ(copy.vs_file_param_.vec_video_download[0].video.ptr_info_overlay, video.video.ptr_info_overlay);
    EXPECT_EQ(copy.vs_file_param_.map_site_camera.at(3), (std::vector<int>{1, 1}));
}

TEST_F(RecordsTest, CopyOfASimpleRecordCopiesItsBaseAndItsList)
{
    ImageParam param;
    param.SetVal_str_name("a.jpg");
    param.image_items.resize(2);
    const ImageParam copy(param);
    param.image_items.clear();
    EXPECT_EQ(copy.GetVal_str_name(), "a.jpg");
    EXPECT_EQ(copy.image_items.size(), 2U);
}

TEST_F(RecordsTest, FreshOverlayIsOfTypeMinusOneAndItsLinesAreZero)
{
    EXPECT_EQ(InfoOverlay().GetInfoOverlayType(), -1);
    const InfoOverlayLineArray line;
    EXPECT_EQ(line.GetFontSize(), 0);
    EXPECT_EQ(line.GetColorRGB(), (std::array<int, 3>{0, 0, 0}));
    EXPECT_EQ(line.GetContentStr(), "");
}

}  // namespace
}  // namespace contract
