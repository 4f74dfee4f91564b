#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "support/ContractTest.h"

#include <QDateTime>

#include <filesystem>
#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

// Memory of this size is refused to whoever asks without exceptions; 0 refuses none.
std::size_t refused_size = 0;

}  // namespace

// NOLINTNEXTLINE(misc-new-delete-overloads): what it gives is freed like all other memory
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    if (size == refused_size)
        return nullptr;
    try {
        return ::operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

namespace contract {
namespace {

using namespace FetchyardBussiness;
using Zell::MultimediaComm::InfoOverlayLineArray;

// The parts of a request that differ from test to test; each is the inside of a JSON object.
struct Request
{
    std::string type = R"("FileExportType":0)";
    std::string file = R"("ExportFileName":"A")";  // WriteFileCondition, behind the save folder
    std::string server;                            // ExportFileParam
    std::string downloads;                         // DownloadFiles
    std::string data;                              // further members of RequestData, a comma in front
    std::string root;                              // further members of the root, a comma in front
    std::string save_folder = "<tmp>/";
};

class RequestsTest : public ContractTest
{
protected:
    std::string Text(const Request& request) const
    {
        return InFolder(R"({"FileExportRequest":{)" + request.type +
                        R"(,"RequestData":{"ExportFileParam":{)" + request.server +
                        R"(},"WriteFileCondition":{"SaveFilePathDir":")" + request.save_folder + "\"," +
                        request.file + R"(},"DownloadFiles":{)" + request.downloads + "}" + request.data +
                        "}}" + request.root + "}");
    }

    static bool Add(const std::vector<std::string>& requests)
    {
        guids().clear();
        return CDownloadBussinessManager::Instance().AddDownloadCommTask(guids(), requests);
    }

    static std::vector<std::string>& guids()
    {
        static auto* list = new std::vector<std::string>;
        return *list;
    }

    // The record of the only task that comes of the request.
    std::shared_ptr<DeterminantDownloadParam> Parse(const Request& request)
    {
        fakes::TheScript().handed_over.clear();
        EXPECT_TRUE(Add({Text(request)}));
        const auto& tasks = fakes::TheScript().handed_over;
        if (tasks.size() != 1)
            throw std::runtime_error("one task expected");
        return tasks[0]->GetDownloadTaskParam<DeterminantDownloadParam>();
    }

    VsFileParam Settings(const Request& request) { return Parse(request)->vs_file_param_; }

    VsFileParam WithServer(const std::string& server)
    {
        Request request;
        request.server = server;
        return Settings(request);
    }

    VsFileParam WithFile(const std::string& file)
    {
        Request request;
        request.file = file;
        return Settings(request);
    }

    std::vector<ImageDownloadEntry> Pictures(const std::string& elements)
    {
        Request request;
        request.downloads = "\"ImageDownload\":[" + elements + "]";
        return Settings(request).vec_image_download;
    }

    VsFileParam WithVideos(const std::string& elements)
    {
        Request request;
        request.downloads = "\"VideoDownload\":[" + elements + "]";
        return Settings(request);
    }

    std::vector<ShortVideoEntry> Objects(const std::string& elements)
    {
        Request request;
        request.downloads = "\"ObjectStorageDownload\":[" + elements + "]";
        return Settings(request).vec_short_video;
    }
};

TEST_F(RequestsTest, SmallestReportRequestGivesOneTaskAndTheseCallsAndLines)
{
    EXPECT_TRUE(Add({Text({})}));
    EXPECT_EQ(guids(), std::vector<std::string>{"task-1"});
    EXPECT_EQ(Trace(), R"(
log3  CDownloadBussinessManager::AddDownloadCommTask  RequestData/IsContinueDowinloading = 0  export_file_type =-1,pdf_page_size =,pdf_page_orintation=-1
log3  CDownloadBussinessManager::AddDownloadCommTask  save_path = <tmp>/   folder_name =·
log3  CDownloadBussinessManager::AddDownloadCommTask dir.mkpath state = 1, save_path = <tmp>/A/··
SetDownloadTaskParam
log5  CDownloadBussinessManager::AddDownloadCommTask  begin process task!
GetAllTask
SetMaxParallelDownloadNum 5
AddTransferTask task-1
)");
    EXPECT_TRUE(Exists("A"));
}

TEST_F(RequestsTest, TextThatIsNoJsonIsLoggedWholeAndTheNextRequestGoesOn)
{
    EXPECT_TRUE(Add({"no {json", Text({})}));
    EXPECT_EQ(fakes::Take().at(0),
              "log5  CDownloadBussinessManager::AddDownloadCommTask json failed. json = no {json");
    EXPECT_EQ(guids(), std::vector<std::string>{"task-1"});
}

TEST_F(RequestsTest, RecordThatCannotBeMadeIsLoggedAndTheNextRequestGoesOn)
{
    Request logs;
    logs.type = R"("FileExportType":3)";
    refused_size = sizeof(DeterminantDownloadParam);
    EXPECT_FALSE(Add({Text({}), Text(logs)}));
    refused_size = 0;
    EXPECT_EQ(Trace(), R"(
log5 Convert DeterminantDownloadParam ptr failed.
log5 Convert DeterminantDownloadParam ptr failed.
log5  CDownloadBussinessManager::AddDownloadCommTask  process task failed!
)");
    EXPECT_TRUE(Add({Text({})}));
    EXPECT_FALSE(guids().empty());
}

TEST_F(RequestsTest, BatchWithoutATaskIsFalseWithOneLine)
{
    EXPECT_FALSE(Add({}));
    EXPECT_EQ(Trace(), "\nlog5  CDownloadBussinessManager::AddDownloadCommTask  process task failed!\n");
}

TEST_F(RequestsTest, OtherTypesAreSkippedSilently)
{
    const std::vector<std::string> types = {R"("FileExportType":1)", R"("FileExportType":5)",
                                            R"("FileExportType":-1)", R"("Nothing":0)",
                                            R"("FileExportType":"0")"};
    for (const std::string& type : types) {
        Request request;
        request.type = type;
        EXPECT_FALSE(Add({Text(request)})) << type;
        EXPECT_EQ(Trace(), "\nlog5  CDownloadBussinessManager::AddDownloadCommTask  process task failed!\n")
            << type;
    }
    EXPECT_FALSE(Exists("A"));
}

TEST_F(RequestsTest, EmptyDocumentsGiveNoTask)
{
    EXPECT_FALSE(Add({"{}", "[]", "null", "7", ""}));
    EXPECT_TRUE(guids().empty());
}

TEST_F(RequestsTest, ZipEncodingPasswordMakesAPersonPictureRequestWhateverTheType)
{
    for (const int type : {0, 1, 3, 4}) {
        Request request;
        request.type = "\"FileExportType\":" + std::to_string(type) +
                       R"(,"PersonExportPicNode":{"ZipEncodingPassword":"p"})";
        fakes::TheScript().handed_over.clear();
        Add({Text(request)});
        for (const auto& task : fakes::TheScript().handed_over)
            EXPECT_EQ(std::dynamic_pointer_cast<CDeterminantWriteFileTask>(task), nullptr) << type;
    }
}

TEST_F(RequestsTest, EmptyZipEncodingPasswordChangesNothing)
{
    Request request;
    request.type = R"("FileExportType":0,"PersonExportPicNode":{"ZipEncodingPassword":""})";
    EXPECT_EQ(Settings(request).file_operate_type, 0);
}

TEST_F(RequestsTest, TypesZeroThreeAndFourAreKept)
{
    for (const int type : {0, 3, 4}) {
        Request request;
        request.type = "\"FileExportType\":" + std::to_string(type);
        EXPECT_EQ(Settings(request).file_operate_type, type);
    }
}

TEST_F(RequestsTest, BatchIsHandedOverAtOnceInOrderAndTheGuidsAreAppended)
{
    guids() = {"before"};
    Request second;
    second.file = R"("ExportFileName":"B")";
    EXPECT_TRUE(CDownloadBussinessManager::Instance().AddDownloadCommTask(
        guids(), {Text({}), R"({"FileExportRequest":{}})", Text(second)}));
    EXPECT_EQ(guids(), (std::vector<std::string>{"before", "task-1", "task-2"}));
    EXPECT_EQ(fakes::Take().back(), "AddTransferTask task-1 task-2");
}

TEST_F(RequestsTest, BaseFieldsOfTheRecord)
{
    // By the clock that the library reads: std::time lags behind it by a tick at the turn of a second.
    const long long earliest = QDateTime::currentSecsSinceEpoch();
    const auto record = Parse({});
    const long long latest = QDateTime::currentSecsSinceEpoch();
    EXPECT_EQ(record->GetVal_state(), 1);
    EXPECT_EQ(record->GetVal_str_name(), "A");
    EXPECT_EQ(record->GetVal_str_file_path(), Folder() + "A/");
    EXPECT_EQ(record->GetVal_str_resume_xml(), "");
    EXPECT_EQ(record->GetVal_open_type(), 1);
    EXPECT_EQ(record->GetVal_str_plugin_id(), "fetchyard.c");
    EXPECT_GE(record->GetVal_operate_time(), earliest);
    EXPECT_LE(record->GetVal_operate_time(), latest);
    EXPECT_EQ(record->GetVal_file_size(), 0U);
    EXPECT_FALSE(record->GetVal_b_enable_percent());
    EXPECT_FALSE(record->GetVal_b_enable_speed());
    EXPECT_FALSE(record->GetVal_b_enable_remain_time());
    EXPECT_TRUE(record->GetVal_b_enable_size());
    EXPECT_FALSE(record->GetVal_b_show_tip());
    EXPECT_FALSE(record->GetIsExportSensitiveInfo());
    EXPECT_EQ(record->str_evidence_param, "");
    EXPECT_EQ(record->vs_file_param_.file_current_page, 1);
    EXPECT_TRUE(record->vs_file_param_.is_server_data_to_write);
    EXPECT_FALSE(record->vs_file_param_.restart_is_need_download);
}

TEST_F(RequestsTest, PurposeOneIsAnEvidenceExport)
{
    Request request;
    request.root = R"(,"FileExportPurpose":1,"EvidenceParam":{"Case": 7,"Name":"x"})";
    const auto record = Parse(request);
    EXPECT_EQ(record->GetVal_state(), 7);
    EXPECT_EQ(record->str_evidence_param, R"({"Case":7,"Name":"x"})");
}

TEST_F(RequestsTest, EvidenceExportWithoutAnEvidenceNodeHasNone)
{
    Request request;
    request.root = R"(,"FileExportPurpose":1)";
    const auto record = Parse(request);
    EXPECT_EQ(record->GetVal_state(), 7);
    EXPECT_EQ(record->str_evidence_param, "");
}

TEST_F(RequestsTest, AnyOtherPurposeLeavesTheEvidenceUnread)
{
    for (const int purpose : {0, 2, -1}) {
        Request request;
        request.root = ",\"FileExportPurpose\":" + std::to_string(purpose) + R"(,"EvidenceParam":{"Case":7})";
        const auto record = Parse(request);
        EXPECT_EQ(record->GetVal_state(), 1);
        EXPECT_EQ(record->str_evidence_param, "");
    }
}

TEST_F(RequestsTest, ServerRequestIsTakenAsItStands)
{
    const VsFileParam settings = WithServer(
        R"("RequestMethod":"POST","RequestAPI":"/api/x","RequestCondition":"{\"PageIndex\": 1}","SiteID":12)");
    EXPECT_EQ(settings.str_request_method, "POST");
    EXPECT_EQ(settings.str_request_api, "/api/x");
    EXPECT_EQ(settings.str_request_condition, "{\"PageIndex\": 1}");
    EXPECT_EQ(settings.request_site_id, 12);
    EXPECT_FALSE(settings.check_password_request);
    EXPECT_EQ(settings.str_received_condition, "");
}

TEST_F(RequestsTest, AbsentServerRequestIsEmpty)
{
    const VsFileParam settings = WithServer("");
    EXPECT_EQ(settings.str_request_method + settings.str_request_api + settings.str_request_condition, "");
    EXPECT_EQ(settings.request_site_id, 0);
    EXPECT_TRUE(settings.map_device_log.empty());
    EXPECT_EQ(settings.password_type, 0);
    EXPECT_EQ(settings.web_login_model, 1);
}

TEST_F(RequestsTest, NegativeSiteBecomesZero)
{
    EXPECT_EQ(WithServer(R"("SiteID":-5)").request_site_id, 0);
    EXPECT_EQ(WithServer(R"("SiteID":-1)").request_site_id, 0);
    EXPECT_EQ(WithServer(R"("SiteID":0)").request_site_id, 0);
}

TEST_F(RequestsTest, DeviceFilesAreKeyedByFileAndTheFirstOfAKeyStays)
{
    const auto files = WithServer(R"("DeviceIdList":[{"DeviceId":3,"FileID":9,"FileName":"a.log"},
        {"DeviceId":4,"FileID":9,"FileName":"b.log"},{"DeviceId":5,"FileID":2,"FileName":"c.log"},{}])")
                           .map_device_log;
    ASSERT_EQ(files.size(), 3U);
    EXPECT_EQ(files.at(9), std::make_pair(3, std::string("a.log")));
    EXPECT_EQ(files.at(2), std::make_pair(5, std::string("c.log")));
    EXPECT_EQ(files.at(-1), std::make_pair(-1, std::string()));
}

TEST_F(RequestsTest, ReportFileKeysAreTaken)
{
    Request request;
    request.file = R"("ExportFileName":"Alarm","ExportFileType":2,"PdfPageSize":"A3","PdfPageOrientaion":1,
        "IsNeedCompressZip":true,"ZipPassword":"zip \"word\"","FolderName":"F")";
    request.data = R"(,"IsContinueDowinloading":true)";
    const VsFileParam settings = Settings(request);
    EXPECT_EQ(settings.str_export_file_name, "Alarm");
    EXPECT_EQ(settings.str_export_file_path, Folder() + "F/");
    EXPECT_EQ(settings.export_file_type, 2);
    EXPECT_EQ(settings.pdf_page_size, "A3");
    EXPECT_EQ(settings.pdf_page_orintation, 1);
    EXPECT_TRUE(settings.is_need_compress_zip);
    EXPECT_EQ(settings.str_zip_password, "zip \"word\"");
    EXPECT_TRUE(settings.is_continue_dowinloading);
    EXPECT_EQ(fakes::Take().at(0),
              "log3  CDownloadBussinessManager::AddDownloadCommTask  RequestData/IsContinueDowinloading = 1  "
              "export_file_type =2,pdf_page_size =A3,pdf_page_orintation=1");
}

TEST_F(RequestsTest, AbsentReportFileKeysHaveTheirDefaults)
{
    const VsFileParam settings = WithFile(R"("ExportFileName":"A")");
    EXPECT_EQ(settings.export_file_type, 0);
    EXPECT_EQ(settings.pdf_page_size, "");
    EXPECT_EQ(settings.pdf_page_orintation, -1);
    EXPECT_FALSE(settings.is_need_compress_zip);
    EXPECT_EQ(settings.str_zip_password, "");
    EXPECT_FALSE(settings.is_continue_dowinloading);
}

TEST_F(RequestsTest, FileTypeMinusOneIsExcelAndOneAboveFiveGoesThrough)
{
    EXPECT_EQ(WithFile(R"("ExportFileName":"A","ExportFileType":-1)").export_file_type, 0);
    EXPECT_EQ(WithFile(R"("ExportFileName":"A","ExportFileType":6)").export_file_type, 6);
}

TEST_F(RequestsTest, ReportWithoutANameIsCalledAfterTheTime)
{
    const VsFileParam settings = WithFile(R"("FolderName":"")");
    EXPECT_EQ(settings.str_export_file_name, "ExportFile_20260131_235959");
    EXPECT_EQ(settings.str_export_file_path, Folder() + "ExportFile_20260131_235959/");
}

TEST_F(RequestsTest, NameThatIsThereAsksForNoTime)
{
    WithFile(R"("ExportFileName":"A")");
    EXPECT_EQ(fakes::CountOf("TimeT2StrShortDatetime"), 0);
}

TEST_F(RequestsTest, RequestWithoutASaveFolderGoesToTheConfiguredPath)
{
    fakes::TheScript().client_config = InFolder(R"({"SysConfig":{"FileSavePath":"<tmp>/configured/"}})");
    Request request;
    request.save_folder = "";
    EXPECT_EQ(Settings(request).str_export_file_path, Folder() + "configured/A/");
    EXPECT_TRUE(Exists("configured/A"));
}

TEST_F(RequestsTest, SaveFolderWithoutItsSlashRunsIntoTheFolderName)
{
    Request request;
    request.save_folder = "<tmp>/x";
    EXPECT_EQ(Settings(request).str_export_file_path, Folder() + "xA/");
}

TEST_F(RequestsTest, BackslashesOfTheExportFolderBecomeSlashesAfterItWasMade)
{
    Request request;
    request.save_folder = R"(<tmp>/one\\two\\)";
    request.downloads = R"("ImageDownload":[{}])";
    const VsFileParam settings = Settings(request);
    EXPECT_EQ(settings.str_export_file_path, Folder() + "one/two/A/");
    EXPECT_EQ(settings.vec_image_download.at(0).image.GetVal_str_file_path(), Folder() + "one/two/A/");
}

TEST_F(RequestsTest, NamesAreNotCleaned)
{
    Request request;
    request.file = R"("ExportFileName":"a b'$\"x","FolderName":"f*?")";
    const VsFileParam settings = Settings(request);
    EXPECT_EQ(settings.str_export_file_name, "a b'$\"x");
    EXPECT_EQ(settings.str_export_file_path, Folder() + "f*?/");
}

// The report's own name is then a path, whose folder nobody makes: the task meets it.
TEST_F(RequestsTest, SlashInANameMakesAFolderOfItsHead)
{
    const VsFileParam settings = WithFile(R"("ExportFileName":"a/b")");
    EXPECT_EQ(settings.str_export_file_name, "a/b");
    EXPECT_EQ(settings.str_export_file_path, Folder() + "a/b/");
    EXPECT_TRUE(Exists("a/b"));
}

TEST_F(RequestsTest, NameThatIsNotUtf8MakesTheWholeTextNoJson)
{
    Request request;
    request.file = "\"ExportFileName\":\"a\xFF\"";
    EXPECT_FALSE(Add({Text(request)}));
    EXPECT_EQ(Lines(Trace(), "log5"),
              "\nlog5  CDownloadBussinessManager::AddDownloadCommTask json failed. json = "
              R"({"FileExportRequest":{"FileExportType":0,"RequestData":{"ExportFileParam":{},)"
              R"("WriteFileCondition":{"SaveFilePathDir":"<tmp>/","ExportFileName":"a)"
              "\xFF"
              R"("},"DownloadFiles":{}}}})"
              "\nlog5  CDownloadBussinessManager::AddDownloadCommTask  process task failed!\n");
    EXPECT_FALSE(Exists("a\xFF"));
}

TEST_F(RequestsTest, FolderThatIsThereIsNotMadeAndNotLogged)
{
    std::filesystem::create_directory(Folder() + "A");
    Settings({});
    EXPECT_EQ(Trace().find("dir.mkpath"), std::string::npos);
}

TEST_F(RequestsTest, FolderThatCannotBeMadeIsOnlyLogged)
{
    Request request;
    request.save_folder = "/proc/none/";
    EXPECT_EQ(Settings(request).str_export_file_path, "/proc/none/A/");
    EXPECT_NE(Trace().find("\nlog3  CDownloadBussinessManager::AddDownloadCommTask dir.mkpath state = 0, "
                           "save_path = /proc/none/A/··\n"),
              std::string::npos);
}

// Long paths: a name of n bytes, its last 23 of the letter z.
std::string LongName(std::size_t n)
{
    return std::string(n - 23, 'a') + std::string(23, 'z');
}

TEST_F(RequestsTest, PathOfExactly259BytesIsNotShortened)
{
    const std::string name = LongName(259 - Folder().size() - 2 - 4);
    const VsFileParam settings =
        WithFile(R"("ExportFileName":")" + name + R"(","FolderName":"F","ExportFileType":1)");
    EXPECT_EQ(settings.str_export_file_name, name);
    EXPECT_EQ(settings.str_export_file_path, Folder() + "F/");
}

// A number above five has no suffix that would count.
TEST_F(RequestsTest, PathOfAnUnknownFileTypeCountsWithoutASuffix)
{
    const std::string name = LongName(259 - Folder().size() - 2);
    const std::string file = R"("ExportFileName":")" + name + R"(","FolderName":"F","ExportFileType":)";
    EXPECT_EQ(WithFile(file + "6").str_export_file_name, name);
    EXPECT_NE(WithFile(file + "1").str_export_file_name, name);
}

TEST_F(RequestsTest, PathOf260BytesIsShortenedAndTheFolderTakesTheShortName)
{
    const std::string name = LongName(260 - Folder().size() - 2 - 4);
    const VsFileParam settings =
        WithFile(R"("ExportFileName":")" + name + R"(","FolderName":"F","ExportFileType":1)");
    const std::string shortened =
        std::string((259 - Folder().size() - 23 - 4) / 2, 'a') + std::string(23, 'z');
    EXPECT_EQ(settings.str_export_file_name, shortened);
    EXPECT_EQ(settings.str_export_file_path, Folder() + shortened + "/");
}

TEST_F(RequestsTest, ShortenedPathIsNotLookedAtAgain)
{
    const std::string name = LongName(240);
    const VsFileParam settings = WithFile(R"("ExportFileName":")" + name + R"(","ExportFileType":1)");
    const std::size_t length = settings.str_export_file_path.size() + settings.str_export_file_name.size() +
                               std::string(".csv").size();
    EXPECT_GT(length, 259U);
    EXPECT_LE(length, 259U + 24U);
}

TEST_F(RequestsTest, NameShorterThanItsHeadStandsWholeWithItsTailAgain)
{
    const std::string name = "head-" + std::string(23, 'z');
    const VsFileParam settings =
        WithFile(R"("ExportFileName":")" + name + R"(","ExportFileType":1,"FolderName":")" +
                 std::string(240, 'f') + "\"");
    EXPECT_EQ(settings.str_export_file_name, name + std::string(23, 'z'));
    EXPECT_EQ(settings.str_export_file_path, Folder() + name + std::string(23, 'z') + "/");
}

TEST_F(RequestsTest, SaveFolderWithoutRoomWrapsSoThatTheHeadIsTheWholeName)
{
    Request request;
    request.save_folder = "<tmp>/" + std::string(120, 'p') + "/" + std::string(120, 'q') + "/";
    const std::string name = "head-" + std::string(23, 'z');
    request.file = R"("ExportFileName":")" + name + R"(","ExportFileType":1)";
    EXPECT_EQ(Settings(request).str_export_file_name, name + std::string(23, 'z'));
}

TEST_F(RequestsTest, NameOfExactly23BytesIsItsOwnTail)
{
    const std::string name(23, 'z');
    EXPECT_EQ(WithFile(R"("ExportFileName":")" + name + R"(","ExportFileType":1,"FolderName":")" +
                       std::string(240, 'f') + "\"")
                  .str_export_file_name,
              name + name);
}

TEST_F(RequestsTest, NameShorterThan23BytesThrowsOutOfTheOperation)
{
    Request request;
    request.file = R"("ExportFileName":"short","FolderName":")" + std::string(250, 'f') + "\"";
    const std::string text = Text(request);
    EXPECT_THROW(Add({Text({}), text}), std::out_of_range);
    EXPECT_EQ(guids().size(), 1U) << "that of the request in front of it";
    EXPECT_TRUE(fakes::TheScript().handed_over.empty());
}

TEST_F(RequestsTest, CutMayFallInsideALetter)
{
    std::string name;
    while (name.size() < 236)
        name += "\xC3\xA4";
    const std::size_t head = (259 - Folder().size() - 23 - 5) / 2;
    EXPECT_EQ(WithFile(R"("ExportFileName":")" + name + "\"").str_export_file_name,
              name.substr(0, head) + name.substr(name.size() - 23));
}

TEST_F(RequestsTest, PicturesTakeTheirKeys)
{
    const auto entries = Pictures(R"({"GetFromCache":0,"Imageurl":"/p/1.jpg","WorkStation":2,"AccessType":3,
        "Type":4,"PersonId":5,"FolderName":"Sub","ImageName":"a"})");
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_FALSE(entries[0].is_has_download);
    const ImageParam& picture = entries[0].image;
    EXPECT_EQ(picture.GetVal_str_name(), "a.jpg");
    EXPECT_EQ(picture.GetVal_str_file_path(), Folder() + "A/Sub/");
    ASSERT_EQ(picture.image_items.size(), 1U);
    EXPECT_FALSE(picture.image_items[0].save_cache);
    EXPECT_EQ(picture.image_items[0].image_url, "/p/1.jpg");
    EXPECT_EQ(picture.image_items[0].workstation_id, 2);
    EXPECT_EQ(picture.image_items[0].access_type, 3);
    EXPECT_EQ(picture.image_items[0].image_type, 4);
    EXPECT_EQ(picture.image_items[0].person_id, 5);
    EXPECT_TRUE(Exists("A/Sub"));
}

TEST_F(RequestsTest, AbsentPictureKeysHaveTheirDefaults)
{
    const auto entries = Pictures("{}");
    const ImageItem& item = entries.at(0).image.image_items.at(0);
    EXPECT_TRUE(item.save_cache);
    EXPECT_EQ(item.image_url, "");
    EXPECT_EQ(item.workstation_id, -1);
    EXPECT_EQ(item.access_type, -1);
    EXPECT_EQ(item.image_type, -1);
    EXPECT_EQ(item.person_id, -1);
    EXPECT_EQ(entries[0].image.GetVal_str_file_path(), Folder() + "A/");
    EXPECT_EQ(entries[0].image.GetVal_str_name(), "1.jpg");
}

TEST_F(RequestsTest, OnlyZeroTurnsTheCacheOff)
{
    for (const auto& [value, expected] :
         std::vector<std::pair<int, bool>>{{0, false}, {-1, true}, {1, true}, {7, true}}) {
        const auto entries = Pictures("{\"GetFromCache\":" + std::to_string(value) + "}");
        EXPECT_EQ(entries.at(0).image.image_items.at(0).save_cache, expected) << value;
    }
}

TEST_F(RequestsTest, PictureNames)
{
    struct Row
    {
        const char* elements;
        std::vector<std::string> names;
    };
    const std::vector<Row> rows = {
        {R"({"ImageName":"a"},{"ImageName":"a"},{"ImageName":"a"})", {"a.jpg", "a(2).jpg", "a(3).jpg"}},
        {R"({"ImageName":"a","FolderName":"F"},{"ImageName":"a","FolderName":"G"})", {"a.jpg", "a.jpg"}},
        {R"({"ImageName":"x"},{"ImageName":"y"},{})", {"x.jpg", "y.jpg", "3.jpg"}},
        {R"-({"ImageName":"a"},{"ImageName":"a"},{"ImageName":"a(2)"})-", {"a.jpg", "a(2).jpg", "a(2).jpg"}},
        {R"({"ImageName":"a"},{"ImageName":"A"})", {"a.jpg", "A.jpg"}},
        {R"({},{"ImageName":"1"})", {"1.jpg", "1(2).jpg"}},
        {R"({"ImageName":"a.png"})", {"a.png.jpg"}},
    };
    for (const Row& row : rows) {
        std::vector<std::string> names;
        for (const ImageDownloadEntry& entry : Pictures(row.elements))
            names.push_back(entry.image.GetVal_str_name());
        EXPECT_EQ(names, row.names) << row.elements;
    }
}

TEST_F(RequestsTest, PictureNamesOfOneRequestDoNotReachTheNext)
{
    EXPECT_EQ(Pictures(R"({"ImageName":"a"})").at(0).image.GetVal_str_name(), "a.jpg");
    EXPECT_EQ(Pictures(R"({"ImageName":"a"})").at(0).image.GetVal_str_name(), "a.jpg");
}

TEST_F(RequestsTest, PictureFolderIsLoggedWhenItIsMade)
{
    Pictures(R"({"FolderName":"Sub"},{"FolderName":"Sub"})");
    const std::string trace = Trace();
    const std::string line =
        "\nlog3  CDownloadBussinessManager::AddDownloadCommTask dir.mkpath state = 1, "
        "image.str_file_path = <tmp>/A/Sub/··\n";
    const auto first = trace.find(line);
    ASSERT_NE(first, std::string::npos) << trace;
    EXPECT_EQ(trace.find(line, first + 1), std::string::npos);
}

TEST_F(RequestsTest, PictureFolderThatCannotBeMadeStaysTheFolder)
{
    std::filesystem::create_directory(Folder() + "A");
    std::filesystem::copy_file("/proc/self/cmdline", Folder() + "A/file");
    const auto entries = Pictures(R"({"FolderName":"file/below"})");
    EXPECT_EQ(entries.at(0).image.GetVal_str_file_path(), Folder() + "A/file/below/");
    EXPECT_NE(Trace().find("dir.mkpath state = 0, image.str_file_path = <tmp>/A/file/below/"),
              std::string::npos);
}

TEST_F(RequestsTest, VideosTakeTheirKeys)
{
    const VsFileParam settings = WithVideos(R"({"VideoFormat":1,"FileFormat":3,"VideoPassword":"v","IsSnap":0,
        "ExportFileName":"clip","CameraID":11,"WorkstationID":12,"DeviceID":13,"DeviceType":14,
        "BeginTime":"2026-01-01T00:00:00Z","EndTime":"2026-01-01T00:01:00Z","FolderName":"V"})");
    const VideoDownloadEntry& entry = settings.vec_video_download.at(0);
    EXPECT_FALSE(entry.is_has_download);
    const VideoDownloadInfo& info = entry.video.download_info;
    EXPECT_EQ(info.video_format, 1);
    EXPECT_EQ(info.file_format, 3);
    EXPECT_EQ(info.str_video_password, "v");
    EXPECT_FALSE(info.is_snap);
    EXPECT_EQ(info.str_video_save_name, "clip");
    EXPECT_EQ(info.str_video_save_path, Folder() + "A/V/");
    EXPECT_EQ(info.str_video_save_path_current, Folder() + "A/V/");
    EXPECT_EQ(entry.video.GetVal_str_file_path(), Folder() + "A/V/");
    const VideoCameraInfo& camera = entry.video.camera_info;
    EXPECT_EQ(camera.camera_id, 11);
    EXPECT_EQ(camera.site_id, 12);
    EXPECT_EQ(camera.device_id, 13);
    EXPECT_EQ(camera.device_type, 14);
    EXPECT_EQ(camera.begin_time, 1767225600);
    EXPECT_EQ(camera.end_time, 1767225660);
    EXPECT_EQ(settings.map_site_camera.at(12), std::vector<int>{11});
    EXPECT_TRUE(Exists("A/V"));
}

TEST_F(RequestsTest, AbsentVideoKeysHaveTheirDefaults)
{
    const VsFileParam settings = WithVideos("{}");
    const VideoTaskParam& video = settings.vec_video_download.at(0).video;
    EXPECT_EQ(video.download_info.video_format, 2);
    EXPECT_EQ(video.download_info.file_format, 2);
    EXPECT_EQ(video.download_info.str_video_password + video.download_info.str_video_save_name, "");
    EXPECT_TRUE(video.download_info.is_snap);
    EXPECT_EQ(video.camera_info.camera_id, -1);
    EXPECT_EQ(video.camera_info.site_id, -1);
    EXPECT_EQ(video.camera_info.device_id, -1);
    EXPECT_EQ(video.camera_info.device_type, -1);
    EXPECT_EQ(video.camera_info.begin_time, 0);
    EXPECT_EQ(video.camera_info.end_time, 0);
    EXPECT_EQ(video.download_info.str_video_save_path, Folder() + "A/");
    ASSERT_NE(video.ptr_info_overlay, nullptr);
    EXPECT_EQ(video.ptr_info_overlay->GetInfoOverlayType(), -1);
    EXPECT_EQ(video.ptr_info_overlay->GetInfoOverlayLineArrayType(), -1);
    EXPECT_TRUE(video.ptr_info_overlay->GetInfoOverlayLineArrayVec().empty());
}

TEST_F(RequestsTest, VideoNumbersThatStandForAbsent)
{
    const VsFileParam settings = WithVideos(
        R"({"VideoFormat":-1,"FileFormat":-1,"IsSnap":-1},{"VideoFormat":0,"FileFormat":0,"IsSnap":5})");
    EXPECT_EQ(settings.vec_video_download.at(0).video.download_info.video_format, 2);
    EXPECT_EQ(settings.vec_video_download.at(0).video.download_info.file_format, 2);
    EXPECT_TRUE(settings.vec_video_download.at(0).video.download_info.is_snap);
    EXPECT_EQ(settings.vec_video_download.at(1).video.download_info.video_format, 0);
    EXPECT_EQ(settings.vec_video_download.at(1).video.download_info.file_format, 0);
    EXPECT_TRUE(settings.vec_video_download.at(1).video.download_info.is_snap);
}

TEST_F(RequestsTest, VideosOfOneNameKeepItAndTheirCamerasAreListedBySite)
{
    const VsFileParam settings = WithVideos(R"({"ExportFileName":"v","CameraID":1,"WorkstationID":9},
        {"ExportFileName":"v","CameraID":2,"WorkstationID":8},{"CameraID":1,"WorkstationID":9})");
    EXPECT_EQ(settings.vec_video_download.at(0).video.download_info.str_video_save_name, "v");
    EXPECT_EQ(settings.vec_video_download.at(1).video.download_info.str_video_save_name, "v");
    EXPECT_EQ(settings.map_site_camera, (std::map<int, std::vector<int>>{{8, {2}}, {9, {1, 1}}}));
}

TEST_F(RequestsTest, VideoFolderThatCannotBeMadeFallsBackToTheExportFolder)
{
    std::filesystem::create_directory(Folder() + "A");
    std::filesystem::copy_file("/proc/self/cmdline", Folder() + "A/file");
    const VsFileParam settings = WithVideos(R"({"FolderName":"file/below"})");
    EXPECT_EQ(settings.vec_video_download.at(0).video.download_info.str_video_save_path, Folder() + "A/");
    EXPECT_NE(
        Trace().find("\nlog3  CDownloadBussinessManager::AddDownloadCommTask dir.mkpath state = 0, path = "
                     "<tmp>/A/file/below/··\n"
                     "log3  CDownloadBussinessManager::AddDownloadCommTask dir.mkpath two failed , path = "
                     "<tmp>/A/file/below/··\n"),
        std::string::npos);
}

TEST_F(RequestsTest, OverlayLinesAreReadFromNumberZeroOn)
{
    const VsFileParam settings =
        WithVideos(R"({"InfoOverlay":{"OverlayType":2,"OverlayLineArray":{"LineArrayType":3,
        "ContentLine":[
        {"FontSettings":{"Size":20,"Color":{"Red":1,"Green":2,"Blue":3},"Transparency":4},"Content":"first",
         "PosXType":5,"PosX":6,"PosYType":7,"PosY":8,"BeginMilliSecond":9,"EndMilliSecond":10},
        {"Content":"second"},{}]}}})");
    const auto overlay = settings.vec_video_download.at(0).video.ptr_info_overlay;
    EXPECT_EQ(overlay->GetInfoOverlayType(), 2);
    EXPECT_EQ(overlay->GetInfoOverlayLineArrayType(), 3);
    const std::vector<InfoOverlayLineArray> lines = overlay->GetInfoOverlayLineArrayVec();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0].GetFontSize(), 20);
    EXPECT_EQ(lines[0].GetColorRGB(), (std::array<int, 3>{1, 2, 3}));
    EXPECT_EQ(lines[0].GetTransparencyNum(), 4);
    EXPECT_EQ(lines[0].GetContentStr(), "first");
    EXPECT_EQ(lines[0].GetPosXType(), 5);
    EXPECT_EQ(lines[0].GetPosX(), 6);
    EXPECT_EQ(lines[0].GetPosYType(), 7);
    EXPECT_EQ(lines[0].GetPosY(), 8);
    EXPECT_EQ(lines[0].GetBeginMilliSecond(), 9);
    EXPECT_EQ(lines[0].GetEndMilliSecond(), 10);
    EXPECT_EQ(lines[1].GetContentStr(), "second");
    EXPECT_EQ(lines[2].GetContentStr(), "");
    EXPECT_EQ(lines[2].GetFontSize(), -1);
    EXPECT_EQ(lines[2].GetColorRGB(), (std::array<int, 3>{-1, -1, -1}));
    EXPECT_EQ(lines[2].GetEndMilliSecond(), -1);
}

TEST_F(RequestsTest, StoredObjectsTakeTheirKeys)
{
    const auto entries =
        Objects(R"({"StoragePlace":0,"FileUrl":"/o/1","FileName":"o.bin","UploadType":2},{})");
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_FALSE(entries[0].is_has_download);
    EXPECT_EQ(entries[0].clip.EnumStoragePlace, 0);
    EXPECT_EQ(entries[0].clip.str_shortvideo_url, "/o/1");
    EXPECT_EQ(entries[0].clip.file_name, "o.bin");
    EXPECT_EQ(entries[0].clip.EnumUpLoadType, 2);
    EXPECT_EQ(entries[0].clip.save_path, Folder() + "A/");
    EXPECT_EQ(entries[1].clip.EnumStoragePlace, -1);
    EXPECT_EQ(entries[1].clip.EnumUpLoadType, -1);
    EXPECT_EQ(entries[1].clip.str_shortvideo_url + entries[1].clip.file_name, "");
}

TEST_F(RequestsTest, StoredObjectFolders)
{
    const auto entries = Objects(InFolder(R"({"FolderName":"O"},{"SavePath":"<tmp>/other"},
        {"SavePath":"<tmp>/other","FolderName":"P"})"));
    EXPECT_EQ(entries.at(0).clip.save_path, Folder() + "A//O/");
    EXPECT_EQ(entries.at(1).clip.save_path, Folder() + "other");
    EXPECT_EQ(entries.at(2).clip.save_path, Folder() + "other/P/");
    EXPECT_TRUE(Exists("A/O"));
    EXPECT_TRUE(Exists("other/P"));
    EXPECT_NE(Trace().find(
                  "\nlog3  CDownloadBussinessManager::AddDownloadCommTask ShortVideoExportParam   dir.mkpath "
                  "state = 1, save_path = <tmp>/A//O/··\n"),
              std::string::npos);
}

constexpr char kCheckPassword[] =
    R"("RequestCondition":"{\"PageIndex\":1,\"PageSize\":2}","CheckPasswordRequest":{"UserName":"user",
       "PassWord":"ciphered","PasswordType":2,"LoginModel":9})";

TEST_F(RequestsTest, PasswordCheckOfADesktopClientCarriesTheClientsIdentity)
{
    const VsFileParam settings = WithServer(kCheckPassword);
    EXPECT_EQ(
        settings.str_request_condition,
        R"({"PageIndex":1,"PageSize":2,"CheckPasswordRequest":{"UserName":"user","PassWord":"ciphered",)"
        R"("PasswordType":2,"LoginModel":4,"ClientGuid":"client-guid","ClientHardwareCode":"hardware-code"}})");
    EXPECT_EQ(settings.str_received_condition, R"({"PageIndex":1,"PageSize":2})");
    EXPECT_TRUE(settings.check_password_request);
    EXPECT_EQ(settings.password_type, 2);
    EXPECT_EQ(settings.web_login_model, 9);
    std::vector<std::string> calls = fakes::Take();
    calls.resize(4);
    EXPECT_EQ(calls, (std::vector<std::string>{"AESDecryptForSensitiveInfor ciphered 0 false",
                                               "SetUserInfo user plain-of-ciphered", "GetUserInfoEx",
                                               "GetClientInfo"}));
}

TEST_F(RequestsTest, PasswordCheckOfAWebClientHasAnEmptyIdentityAndTheRequestsLoginModel)
{
    fakes::TheScript().client_type = 1;
    const VsFileParam settings = WithServer(kCheckPassword);
    EXPECT_EQ(
        settings.str_request_condition,
        R"({"PageIndex":1,"PageSize":2,"CheckPasswordRequest":{"UserName":"user","PassWord":"ciphered",)"
        R"("PasswordType":2,"LoginModel":9,"ClientGuid":"","ClientHardwareCode":""}})");
    EXPECT_EQ(fakes::CountOf("GetUserInfoEx"), 0);
    EXPECT_EQ(fakes::CountOf("GetClientInfo"), 0);
}

TEST_F(RequestsTest, AnyClientThatIsNotAWebClientCarriesItsIdentity)
{
    fakes::TheScript().client_type = 2;
    WithServer(kCheckPassword);
    EXPECT_EQ(fakes::CountOf("GetUserInfoEx"), 1);
    EXPECT_EQ(fakes::CountOf("GetClientInfo"), 1);
}

TEST_F(RequestsTest, PasswordCheckMarksTheRecordAsSensitive)
{
    Request request;
    request.server = kCheckPassword;
    EXPECT_TRUE(Parse(request)->GetIsExportSensitiveInfo());
}

TEST_F(RequestsTest, AbsentAccountKeysAreMinusOneAndEmpty)
{
    fakes::TheScript().client_type = 1;
    const VsFileParam settings = WithServer(R"("RequestCondition":"{}","CheckPasswordRequest":{"X":1})");
    EXPECT_EQ(settings.str_request_condition,
              R"({"CheckPasswordRequest":{"UserName":"","PassWord":"","PasswordType":-1,"LoginModel":-1,)"
              R"("ClientGuid":"","ClientHardwareCode":""}})");
    EXPECT_EQ(settings.password_type, -1);
    EXPECT_EQ(settings.web_login_model, -1);
}

TEST_F(RequestsTest, ConditionThatIsNoJsonBecomesTheAccountFieldsAlone)
{
    fakes::TheScript().client_type = 1;
    const VsFileParam settings =
        WithServer(R"("RequestCondition":"no json","CheckPasswordRequest":{"UserName":"u","PassWord":"c"})");
    EXPECT_EQ(settings.str_received_condition, "no json");
    EXPECT_EQ(settings.str_request_condition,
              R"({"CheckPasswordRequest":{"UserName":"u","PassWord":"c","PasswordType":-1,"LoginModel":-1,)"
              R"("ClientGuid":"","ClientHardwareCode":""}})");
}

TEST_F(RequestsTest, FailedDecipheringIsNotLookedAt)
{
    fakes::FailCalls("AESDecryptForSensitiveInfor", 1, -1);
    EXPECT_TRUE(WithServer(kCheckPassword).check_password_request);
    EXPECT_NE(Trace().find("\nSetUserInfo user·\n"), std::string::npos);
}

TEST_F(RequestsTest, LastAccountOfABatchIsTheStoredOne)
{
    Request first;
    first.server = R"("CheckPasswordRequest":{"UserName":"one","PassWord":"1"})";
    Request second;
    second.server = R"("CheckPasswordRequest":{"UserName":"two","PassWord":"2"})";
    second.file = R"("ExportFileName":"B")";
    Add({Text(first), Text(second)});
    std::vector<std::string> stored;
    for (const std::string& line : fakes::Take()) {
        if (line.rfind("SetUserInfo", 0) == 0)
            stored.push_back(line);
    }
    EXPECT_EQ(stored, (std::vector<std::string>{"SetUserInfo one plain-of-1", "SetUserInfo two plain-of-2"}));
}

}  // namespace
}  // namespace contract
