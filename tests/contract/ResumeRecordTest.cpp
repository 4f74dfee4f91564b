#include "FetchyardBussiness/DeterminantWriteFile/DeterminantDownloadParam.h"
#include "support/ContractTest.h"
#include "support/ResumeRecords.h"

#include <functional>

namespace contract {
namespace {

using namespace FetchyardBussiness;
using Zell::Base::Error::ErrorCode;
using Zell::MultimediaComm::InfoOverlay;
using Zell::MultimediaComm::InfoOverlayLineArray;

void FillSettings(DeterminantDownloadParam& param)
{
    VsFileParam& file = param.vs_file_param_;
    file.str_request_method = "POST";
    file.str_request_api = "/api/v1/events/report";
    file.str_request_condition = R"({"PageIndex":1,"PageSize":100})";
    file.request_site_id = 7;
    file.str_export_file_name = "Alarms";
    file.str_export_file_path = "D:/Exports/Alarms/";
    file.export_file_type = kCsvReport;
}

InfoOverlayLineArray Line(const std::string& content, int first)
{
    InfoOverlayLineArray line;
    line.SetFontSize(first);
    line.SetColorRGB({first + 1, first + 2, first + 3});
    line.SetTransparencyNum(first + 4);
    line.SetContentStr(content);
    line.SetPosXType(first + 5);
    line.SetPosX(first + 6);
    line.SetPosYType(first + 7);
    line.SetPosY(first + 8);
    line.SetBeginMilliSecond(first + 9);
    line.SetEndMilliSecond(first + 10);
    return line;
}

VideoDownloadEntry StampedVideo()
{
    VideoDownloadEntry entry;
    entry.is_has_download = true;
    VideoDownloadInfo& info = entry.video.download_info;
    info.video_format = 1;
    info.str_video_password = "secret";
    info.str_video_save_path_current = "D:/Exports/Alarms/gate/";
    info.str_video_save_name = "gate";
    info.str_video_save_path = "D:/Exports/Alarms/";
    info.file_format = 3;
    info.is_snap = false;
    VideoCameraInfo& camera = entry.video.camera_info;
    camera.camera_id = 11;
    camera.site_id = 7;
    camera.device_id = 12;
    camera.device_type = 2008;
    camera.begin_time = 1767225600;
    camera.end_time = 4294967301;
    entry.video.SetVal_str_file_path("D:/Exports/Alarms/gate/");
    auto overlay = std::make_shared<InfoOverlay>();
    overlay->SetInfoOverlayType(0);
    overlay->SetInfoOverlayLineArrayType(2);
    overlay->SetInfoOverlayLineArrayVec({Line("north <gate> & yard", 10), Line("大门", 30)});
    entry.video.ptr_info_overlay = overlay;
    return entry;
}

void FillLists(VsFileParam& file)
{
    ImageDownloadEntry picture;
    picture.is_has_download = true;
    picture.image.SetVal_str_name("one.jpg");
    picture.image.SetVal_str_file_path("D:/Exports/Alarms/Pictures/");
    ImageItem item;
    item.save_cache = true;
    item.image_url = "/pictures/event-1.jpg?a=1&b=2";
    item.workstation_id = 7;
    item.access_type = 3;
    item.image_type = 17;
    picture.image.image_items = {item, ImageItem()};
    ImageDownloadEntry bare;
    bare.image.SetVal_str_file_path("D:/Exports/Alarms/");
    file.vec_image_download = {picture, bare};

    VideoDownloadEntry plain;
    plain.video.camera_info.camera_id = 11;
    plain.video.camera_info.site_id = 7;
    file.vec_video_download = {StampedVideo(), plain};

    ShortVideoEntry object;
    object.is_has_download = true;
    object.clip = {"clip.mp4", "D:/Exports/Alarms/", "/storage/clips/3", 2, 0};
    file.vec_short_video = {object, ShortVideoEntry()};
    file.map_device_log = {{9, {4, "late.log"}}, {5, {3, "early.log"}}};
}

void FillFull(DeterminantDownloadParam& param)
{
    FillSettings(param);
    VsFileParam& file = param.vs_file_param_;
    file.file_operate_type = kForceLogExport;
    file.export_file_type = kPdfReport;
    file.pdf_page_size = "A3";
    file.pdf_page_orintation = 1;
    file.is_need_compress_zip = true;
    file.str_zip_password = "zip secret";
    file.restart_is_need_download = true;
    file.is_server_data_to_write = false;
    file.file_current_page = 42;
    file.file_total_page_is_finished = true;
    file.is_continue_dowinloading = false;
    file.password_type = 3;
    file.web_login_model = 2;
    param.str_evidence_param = R"({"Case":7})";
    param.SetVal_reserve_data(" blanks\tand a tab,\r\nand lines ");
    param.SetVal_error_(ErrorCode(2, 20, 3219));
    FillLists(file);
}

class ResumeRecordTest : public ContractTest
{
protected:
    static std::string Written(DeterminantDownloadParam& param) { return Decoded(param.CreateResumeXml()); }

    static bool Read(const std::string& xml, DeterminantDownloadParam& param)
    {
        param.SetVal_str_resume_xml(Encoded(xml));
        return param.ResumeParamFromXml();
    }

    static std::shared_ptr<DeterminantDownloadParam> ReadBack(const std::string& inside)
    {
        auto param = std::make_shared<DeterminantDownloadParam>();
        EXPECT_TRUE(Read("<FileExportParams>" + inside + "</FileExportParams>", *param));
        return param;
    }

    static void ReadFull(DeterminantDownloadParam& param)
    {
        ASSERT_TRUE(Read(Golden("resume-full.xml"), param));
    }
};

TEST_F(ResumeRecordTest, PlainExportIsWrittenAsTheGoldenRecord)
{
    DeterminantDownloadParam param;
    FillSettings(param);
    EXPECT_EQ(Written(param), Golden("resume-plain.xml"));
}

TEST_F(ResumeRecordTest, FullExportIsWrittenAsTheGoldenRecord)
{
    DeterminantDownloadParam param;
    FillFull(param);
    EXPECT_EQ(Written(param), Golden("resume-full.xml"));
}

TEST_F(ResumeRecordTest, PasswordCheckedExportIsWrittenWithoutItsAccountData)
{
    DeterminantDownloadParam param;
    FillSettings(param);
    param.vs_file_param_.check_password_request = true;
    param.vs_file_param_.str_received_condition = param.vs_file_param_.str_request_condition;
    param.vs_file_param_.str_request_condition =
        R"({"PageIndex":1,"CheckPasswordRequest":{"PassWord":"ciphered"}})";
    EXPECT_EQ(Written(param), Golden("resume-password.xml"));
}

TEST_F(ResumeRecordTest, WriterAndReaderTellThatTheyWork)
{
    DeterminantDownloadParam param;
    fakes::Take();
    param.SetVal_str_resume_xml(param.CreateResumeXml());
    EXPECT_EQ(fakes::TakeText(), "log3 DeterminantDownloadParam::CreateResumeXml\n");
    EXPECT_TRUE(param.ResumeParamFromXml());
    EXPECT_EQ(fakes::TakeText(), "log3 DeterminantDownloadParam::ResumeParamFromXml\n");
}

TEST_F(ResumeRecordTest, SettingsComeBack)
{
    DeterminantDownloadParam param;
    ReadFull(param);
    const VsFileParam& file = param.vs_file_param_;
    EXPECT_EQ(file.file_operate_type, kForceLogExport);
    EXPECT_EQ(file.export_file_type, kPdfReport);
    EXPECT_EQ(file.pdf_page_size, "A3");
    EXPECT_EQ(file.pdf_page_orintation, 1);
    EXPECT_EQ(file.str_request_method, "POST");
    EXPECT_EQ(file.str_request_api, "/api/v1/events/report");
    EXPECT_EQ(file.str_request_condition, R"({"PageIndex":1,"PageSize":100})");
    EXPECT_EQ(file.request_site_id, 7);
    EXPECT_FALSE(file.check_password_request);
    EXPECT_FALSE(param.GetIsExportSensitiveInfo());
    EXPECT_EQ(file.password_type, 3);
    EXPECT_EQ(file.web_login_model, 2);
    EXPECT_EQ(file.str_export_file_name, "Alarms");
    EXPECT_EQ(file.str_export_file_path, "D:/Exports/Alarms/");
    EXPECT_EQ(file.file_current_page, 42);
    EXPECT_TRUE(file.file_total_page_is_finished);
    EXPECT_TRUE(file.restart_is_need_download);
    EXPECT_FALSE(file.is_server_data_to_write);
    EXPECT_TRUE(file.is_resumed);
    EXPECT_EQ(param.GetVal_error_().iFirstCode, 20);
    EXPECT_EQ(param.GetVal_error_().iSecondCode, 3219);
}

TEST_F(ResumeRecordTest, BlanksTabsAndLineEndsComeBackAsTheyWere)
{
    DeterminantDownloadParam param;
    ReadFull(param);
    EXPECT_EQ(param.GetVal_reserve_data(), " blanks\tand a tab,\r\nand lines ");
}

TEST_F(ResumeRecordTest, PicturesComeBackWithoutTheirNames)
{
    DeterminantDownloadParam param;
    ReadFull(param);
    const auto& pictures = param.vs_file_param_.vec_image_download;
    ASSERT_EQ(pictures.size(), 2U);
    EXPECT_TRUE(pictures[0].is_has_download);
    EXPECT_EQ(pictures[0].image.GetVal_str_name(), "");
    EXPECT_EQ(pictures[0].image.GetVal_str_file_path(), "D:/Exports/Alarms/Pictures/");
    ASSERT_EQ(pictures[0].image.image_items.size(), 1U);
    const ImageItem& item = pictures[0].image.image_items[0];
    EXPECT_TRUE(item.save_cache);
    EXPECT_EQ(item.image_url, "/pictures/event-1.jpg?a=1&b=2");
    EXPECT_EQ(item.workstation_id, 7);
    EXPECT_EQ(item.access_type, 3);
    EXPECT_EQ(item.image_type, 17);
    EXPECT_EQ(item.person_id, -1);
}

TEST_F(ResumeRecordTest, PictureWithoutAReferenceComesBackWithAnEmptyOne)
{
    DeterminantDownloadParam param;
    ReadFull(param);
    const ImageDownloadEntry& bare = param.vs_file_param_.vec_image_download[1];
    EXPECT_FALSE(bare.is_has_download);
    EXPECT_EQ(bare.image.GetVal_str_file_path(), "D:/Exports/Alarms/");
    ASSERT_EQ(bare.image.image_items.size(), 1U);
    const ImageItem& item = bare.image.image_items[0];
    EXPECT_TRUE(item.save_cache);
    EXPECT_EQ(item.image_url, "");
    EXPECT_EQ(item.workstation_id, -1);
    EXPECT_EQ(item.access_type, -1);
    EXPECT_EQ(item.image_type, -1);
    EXPECT_EQ(item.person_id, -1);
}

TEST_F(ResumeRecordTest, VideosComeBackWithoutPasswordDeviceAndFolder)
{
    DeterminantDownloadParam param;
    ReadFull(param);
    ASSERT_EQ(param.vs_file_param_.vec_video_download.size(), 2U);
    const VideoDownloadEntry& entry = param.vs_file_param_.vec_video_download[0];
    const VideoDownloadInfo& info = entry.video.download_info;
    const VideoCameraInfo& camera = entry.video.camera_info;
    EXPECT_TRUE(entry.is_has_download);
    EXPECT_EQ(info.video_format, 1);
    EXPECT_EQ(info.file_format, 3);
    EXPECT_FALSE(info.is_snap);
    EXPECT_EQ(info.str_video_save_path_current, "D:/Exports/Alarms/gate/");
    EXPECT_EQ(info.str_video_save_name, "gate");
    EXPECT_EQ(info.str_video_save_path, "D:/Exports/Alarms/");
    EXPECT_EQ(info.str_video_password, "");
    EXPECT_EQ(camera.camera_id, 11);
    EXPECT_EQ(camera.site_id, 7);
    EXPECT_EQ(camera.device_id, -1);
    EXPECT_EQ(camera.device_type, -1);
    EXPECT_EQ(entry.video.GetVal_str_file_path(), "");
}

TEST_F(ResumeRecordTest, TimeBeyond32BitsComesBackAsItsLowBits)
{
    DeterminantDownloadParam param;
    ReadFull(param);
    const VideoCameraInfo& camera = param.vs_file_param_.vec_video_download[0].video.camera_info;
    EXPECT_EQ(camera.begin_time, 1767225600);
    EXPECT_EQ(camera.end_time, 5);
    const auto read = ReadBack(
        "<VideoDownloadList><OneVideo><EndTime>2147483648</EndTime></OneVideo>"
        "</VideoDownloadList>");
    EXPECT_EQ(read->vs_file_param_.vec_video_download[0].video.camera_info.end_time, -2147483648LL);
}

TEST_F(ResumeRecordTest, OverlayLinesComeBackInOrder)
{
    DeterminantDownloadParam param;
    ReadFull(param);
    const auto& overlay = param.vs_file_param_.vec_video_download[0].video.ptr_info_overlay;
    ASSERT_NE(overlay, nullptr);
    EXPECT_EQ(overlay->GetInfoOverlayType(), 0);
    EXPECT_EQ(overlay->GetInfoOverlayLineArrayType(), 2);
    const std::vector<InfoOverlayLineArray> lines = overlay->GetInfoOverlayLineArrayVec();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].GetContentStr(), "north <gate> & yard");
    EXPECT_EQ(lines[0].GetFontSize(), 10);
    EXPECT_EQ(lines[1].GetContentStr(), "大门");
    EXPECT_EQ(lines[1].GetFontSize(), 30);
    EXPECT_EQ(lines[1].GetColorRGB(), (std::array<int, 3>{31, 32, 33}));
    EXPECT_EQ(lines[1].GetTransparencyNum(), 34);
    EXPECT_EQ(lines[1].GetPosXType(), 35);
    EXPECT_EQ(lines[1].GetPosX(), 36);
    EXPECT_EQ(lines[1].GetPosYType(), 37);
    EXPECT_EQ(lines[1].GetPosY(), 38);
    EXPECT_EQ(lines[1].GetBeginMilliSecond(), 39);
    EXPECT_EQ(lines[1].GetEndMilliSecond(), 40);
}

TEST_F(ResumeRecordTest, VideoWithoutAnOverlayComesBackWithOneOfTypeMinusOne)
{
    DeterminantDownloadParam param;
    ReadFull(param);
    const auto& overlay = param.vs_file_param_.vec_video_download[1].video.ptr_info_overlay;
    ASSERT_NE(overlay, nullptr);
    EXPECT_EQ(overlay->GetInfoOverlayType(), -1);
    EXPECT_EQ(overlay->GetInfoOverlayLineArrayType(), -1);
    EXPECT_TRUE(overlay->GetInfoOverlayLineArrayVec().empty());
}

TEST_F(ResumeRecordTest, CamerasOfASiteAreGatheredAgainFromTheVideos)
{
    DeterminantDownloadParam param;
    ReadFull(param);
    EXPECT_EQ(param.vs_file_param_.map_site_camera, (std::map<int, std::vector<int>>{{7, {11, 11}}}));
}

TEST_F(ResumeRecordTest, StoredObjectsAndDeviceLogsComeBack)
{
    DeterminantDownloadParam param;
    ReadFull(param);
    const auto& objects = param.vs_file_param_.vec_short_video;
    ASSERT_EQ(objects.size(), 2U);
    EXPECT_TRUE(objects[0].is_has_download);
    EXPECT_EQ(objects[0].clip.file_name, "clip.mp4");
    EXPECT_EQ(objects[0].clip.save_path, "D:/Exports/Alarms/");
    EXPECT_EQ(objects[0].clip.str_shortvideo_url, "/storage/clips/3");
    EXPECT_EQ(objects[0].clip.EnumUpLoadType, 2);
    EXPECT_EQ(objects[0].clip.EnumStoragePlace, 0);
    EXPECT_FALSE(objects[1].is_has_download);
    using Logs = std::map<int, std::pair<int, std::string>>;
    EXPECT_EQ(param.vs_file_param_.map_device_log, (Logs{{5, {3, "early.log"}}, {9, {4, "late.log"}}}));
}

TEST_F(ResumeRecordTest, ArchiveEvidenceAndTheChoiceToGoOnAreNotKept)
{
    DeterminantDownloadParam param;
    ReadFull(param);
    EXPECT_FALSE(param.vs_file_param_.is_need_compress_zip);
    EXPECT_EQ(param.vs_file_param_.str_zip_password, "");
    EXPECT_EQ(param.str_evidence_param, "");
    // Written nowhere, so read as true: a resumed export goes on after a failed item.
    EXPECT_TRUE(param.vs_file_param_.is_continue_dowinloading);
}

TEST_F(ResumeRecordTest, SecondResumeOfAPasswordCheckHasLostTheCondition)
{
    DeterminantDownloadParam first;
    ASSERT_TRUE(Read(Golden("resume-password.xml"), first));
    EXPECT_TRUE(first.vs_file_param_.check_password_request);
    EXPECT_TRUE(first.GetIsExportSensitiveInfo());
    EXPECT_EQ(first.vs_file_param_.str_request_condition, R"({"PageIndex":1,"PageSize":100})");
    EXPECT_EQ(first.vs_file_param_.str_received_condition, "");
    DeterminantDownloadParam second;
    ASSERT_TRUE(Read(Written(first), second));
    EXPECT_EQ(second.vs_file_param_.str_request_condition, "");
}

TEST_F(ResumeRecordTest, RecordInAnotherOrderOfElementsReadsTheSame)
{
    DeterminantDownloadParam written;
    DeterminantDownloadParam by_hand;
    ReadFull(written);
    ASSERT_TRUE(Read(Golden("resume-by-hand.xml"), by_hand));
    EXPECT_EQ(Written(by_hand), Written(written));
}

TEST_F(ResumeRecordTest, RecordWithNothingInItIsMinusOneAndTrue)
{
    const auto param = ReadBack("");
    const VsFileParam& file = param->vs_file_param_;
    for (const int number :
         {file.file_operate_type, file.export_file_type, file.pdf_page_orintation, file.request_site_id,
          file.password_type, file.web_login_model, file.file_current_page, param->GetVal_error_().iFirstCode,
          param->GetVal_error_().iSecondCode})
        EXPECT_EQ(number, -1);
    EXPECT_EQ(file.pdf_page_size + file.str_request_method + file.str_request_api +
                  file.str_request_condition + file.str_export_file_name + file.str_export_file_path,
              "");
    EXPECT_FALSE(file.check_password_request);
    EXPECT_TRUE(file.is_resumed);
    EXPECT_TRUE(file.file_total_page_is_finished);
    EXPECT_TRUE(file.restart_is_need_download);
    EXPECT_TRUE(file.is_server_data_to_write);
    EXPECT_TRUE(file.is_continue_dowinloading);
    EXPECT_TRUE(file.vec_image_download.empty());
    EXPECT_TRUE(file.vec_video_download.empty());
    EXPECT_TRUE(file.vec_short_video.empty());
    EXPECT_TRUE(file.map_device_log.empty());
    EXPECT_TRUE(file.map_site_camera.empty());
}

TEST_F(ResumeRecordTest, EntryWithoutItsFlagCountsAsDone)
{
    const auto param = ReadBack(
        "<ImageDownloadList><OneImage/></ImageDownloadList>"
        "<VideoDownloadList><OneVideo/></VideoDownloadList>"
        "<ShortVideoExportParam><ShortVideo/></ShortVideoExportParam>");
    EXPECT_TRUE(param->vs_file_param_.vec_image_download.at(0).is_has_download);
    EXPECT_TRUE(param->vs_file_param_.vec_video_download.at(0).is_has_download);
    EXPECT_TRUE(param->vs_file_param_.vec_video_download.at(0).video.download_info.is_snap);
    EXPECT_TRUE(param->vs_file_param_.vec_short_video.at(0).is_has_download);
}

TEST_F(ResumeRecordTest, FlagsAreTrueUnlessTheyAreZeroButThePasswordCheckOnlyForOne)
{
    EXPECT_TRUE(
        ReadBack("<TotalPageIsFinished>5</TotalPageIsFinished>")->vs_file_param_.file_total_page_is_finished);
    EXPECT_FALSE(
        ReadBack("<TotalPageIsFinished>0</TotalPageIsFinished>")->vs_file_param_.file_total_page_is_finished);
    EXPECT_FALSE(ReadBack("<IsContinueDowinloading>0</IsContinueDowinloading>")
                     ->vs_file_param_.is_continue_dowinloading);
    EXPECT_TRUE(
        ReadBack("<CheckPasswordRequest>1</CheckPasswordRequest>")->vs_file_param_.check_password_request);
    EXPECT_FALSE(
        ReadBack("<CheckPasswordRequest>2</CheckPasswordRequest>")->vs_file_param_.check_password_request);
}

TEST_F(ResumeRecordTest, SecondDeviceLogOfAFileIdIsDropped)
{
    const auto param = ReadBack(
        "<HandDevideLogExportParam>"
        "<DevideLog><FileId>5</FileId><DeviceId>1</DeviceId><FileName>a</FileName></DevideLog>"
        "<DevideLog><FileId>5</FileId><DeviceId>2</DeviceId><FileName>b</FileName></DevideLog>"
        "</HandDevideLogExportParam>");
    EXPECT_EQ(param->vs_file_param_.map_device_log.at(5), (std::pair<int, std::string>{1, "a"}));
}

TEST_F(ResumeRecordTest, ReadingAddsToTheListsThatAreThere)
{
    DeterminantDownloadParam param;
    ReadFull(param);
    ReadFull(param);
    EXPECT_EQ(param.vs_file_param_.vec_image_download.size(), 4U);
    EXPECT_EQ(param.vs_file_param_.vec_video_download.size(), 4U);
    EXPECT_EQ(param.vs_file_param_.vec_short_video.size(), 4U);
    EXPECT_EQ(param.vs_file_param_.map_site_camera.at(7), (std::vector<int>{11, 11, 11, 11}));
}

TEST_F(ResumeRecordTest, RecordThatCannotBeReadTouchesNothing)
{
    DeterminantDownloadParam param;
    FillSettings(param);
    const std::string before = Written(param);
    for (const std::string& text : {std::string(), Encoded("no xml"), Encoded("<FileExportParams>"),
                                    Encoded("{\"a\":1}"), std::string("*** no Base64 ***")}) {
        param.SetVal_str_resume_xml(text);
        EXPECT_FALSE(param.ResumeParamFromXml()) << text;
    }
    EXPECT_EQ(Written(param), before);
    EXPECT_FALSE(param.vs_file_param_.is_resumed);
}

TEST_F(ResumeRecordTest, NamesOfElementsCountLetterByLetter)
{
    EXPECT_EQ(ReadBack("<currentpage>3</currentpage><CurrentPage>4</CurrentPage>")
                  ->vs_file_param_.file_current_page,
              4);
    EXPECT_EQ(ReadBack("<currentpage>3</currentpage>")->vs_file_param_.file_current_page, -1);
}

}  // namespace
}  // namespace contract
