#include "FetchyardBussiness/DeterminantWriteFile/DownloadPersonPicTask.h"
#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "support/ContractTest.h"

#include <QDateTime>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace contract {
namespace {

using FetchyardBussiness::CDownloadBussinessManager;
using FetchyardBussiness::CDownloadPersonPicTask;
using FetchyardBussiness::DownloadPersonPicTaskParam;
using FetchyardBussiness::PersonVsFileParam;

// The parts of a request that differ from test to test; each is the inside of a JSON object.
struct Request
{
    std::string type = R"("FileExportType":2,)";
    std::string server =
        R"("RequestMethod":"POST","RequestAPI":"/persons","RequestCondition":"{\"PageIndex\":1,\"PageSize\":2}")";
    std::string archive = R"(,"ZipEncodingPassword":"secret","ZipName":"Anna")";
    std::string root;  // further members of the root, a comma in front
};

class PersonRequestsTest : public ContractTest
{
protected:
    PersonRequestsTest() { fakes::TheScript().public_data_path = Folder(); }

    static std::string Text(const Request& request)
    {
        return R"({"FileExportRequest":{)" + request.type +
               R"("PersonExportPicNode":{"PicDownloadRequestNode":{)" + request.server + "}" +
               request.archive + "}}" + request.root + "}";
    }

    static bool Add(const std::vector<std::string>& requests, std::vector<std::string>& guids)
    {
        return CDownloadBussinessManager::Instance().AddDownloadCommTask(guids, requests);
    }

    // The record of the only task that comes of the request, which is a person picture task.
    static std::shared_ptr<DownloadPersonPicTaskParam> Parse(const Request& request)
    {
        fakes::TheScript().handed_over.clear();
        std::vector<std::string> guids;
        EXPECT_TRUE(Add({Text(request)}, guids));
        const auto& tasks = fakes::TheScript().handed_over;
        if (tasks.size() != 1 || !std::dynamic_pointer_cast<CDownloadPersonPicTask>(tasks[0]))
            throw std::runtime_error("one person picture task expected");
        return tasks[0]->GetDownloadTaskParam<DownloadPersonPicTaskParam>();
    }

    static PersonVsFileParam WithArchive(const std::string& archive)
    {
        Request request;
        request.archive = archive;
        return Parse(request)->vs_file_param_;
    }

    static PersonVsFileParam WithServer(const std::string& server)
    {
        Request request;
        request.server = server;
        return Parse(request)->vs_file_param_;
    }
};

constexpr char kCheckPassword[] =
    R"("RequestCondition":"{\"PageIndex\":1,\"PageSize\":2}","CheckPasswordRequest":{"PassWord":"ciphered",)"
    R"("UserName":"user","PasswordType":2,"LoginModel":9})";

TEST_F(PersonRequestsTest, RequestGivesOneTaskAndTheseCallsAndLines)
{
    std::vector<std::string> guids = {"before"};
    EXPECT_TRUE(Add({Text({})}, guids));
    EXPECT_EQ(guids, (std::vector<std::string>{"before", "task-1"}));
    EXPECT_EQ(Trace(), R"(
log3  CDownloadBussinessManager::AddDownloadCommTask  save_path =    folder_name = Anna
GetClientConfig 2
log3  CDownloadBussinessManager::AddDownloadCommTask dir.mkpath state = 1, save_path = <tmp>/Anna/··
SetDownloadTaskParam
log5  CDownloadBussinessManager::AddDownloadCommTask  begin process task!
GetAllTask
SetMaxParallelDownloadNum 5
AddTransferTask task-1
)");
    EXPECT_TRUE(Exists("Anna"));
}

TEST_F(PersonRequestsTest, KeysGoToTheirMembers)
{
    const PersonVsFileParam settings = Parse({})->vs_file_param_;
    EXPECT_EQ(settings.str_request_method, "POST");
    EXPECT_EQ(settings.str_request_api, "/persons");
    EXPECT_EQ(settings.str_request_condition, R"({"PageIndex":1,"PageSize":2})");
    EXPECT_EQ(settings.str_zip_encoding_password, "secret");
    EXPECT_EQ(settings.str_zip_name, "Anna");
    EXPECT_EQ(settings.str_save_path.Get(), Folder() + "Anna/");
    EXPECT_EQ(settings.file_current_page, 1);
    EXPECT_FALSE(settings.file_total_page_is_finished);
    EXPECT_FALSE(settings.check_password_request);
    EXPECT_EQ(settings.str_received_condition, "");
    EXPECT_FALSE(settings.is_resumed);
    EXPECT_EQ(settings.web_login_model, 1);
}

TEST_F(PersonRequestsTest, AbsentKeysReadAsEmpty)
{
    const PersonVsFileParam settings = WithServer("");
    EXPECT_EQ(settings.str_request_method + settings.str_request_api + settings.str_request_condition, "");
}

TEST_F(PersonRequestsTest, TaskListShowsAFreshDownload)
{
    const std::int64_t before = QDateTime::currentSecsSinceEpoch();
    const auto record = Parse({});
    EXPECT_EQ(record->GetVal_state(), ZellTaskKit::Downloading);
    EXPECT_EQ(record->GetVal_str_name(), "Anna");
    EXPECT_EQ(record->GetVal_str_file_path(), Folder() + "Anna/");
    EXPECT_EQ(record->GetVal_str_resume_xml(), "");
    EXPECT_EQ(static_cast<int>(record->GetVal_open_type()), 1);
    EXPECT_EQ(record->GetVal_str_plugin_id(), "fetchyard.c");
    EXPECT_GE(record->GetVal_operate_time(), before);
    EXPECT_LE(record->GetVal_operate_time(), QDateTime::currentSecsSinceEpoch());
    EXPECT_EQ(record->GetVal_file_size(), 0U);
    EXPECT_FALSE(record->GetVal_b_enable_percent());
    EXPECT_FALSE(record->GetVal_b_enable_speed());
    EXPECT_FALSE(record->GetVal_b_enable_remain_time());
    EXPECT_TRUE(record->GetVal_b_enable_size());
    EXPECT_FALSE(record->GetVal_b_show_tip());
    EXPECT_FALSE(record->GetIsExportSensitiveInfo());
    EXPECT_EQ(record->str_evidence_param, "");
}

TEST_F(PersonRequestsTest, ArchivePasswordDecidesWhateverTheTypeSays)
{
    for (const char* const type :
         {"", R"("FileExportType":3,)", R"("FileExportType":0,)", R"("FileExportType":77,)"}) {
        Request request;
        request.type = type;
        EXPECT_NE(Parse(request), nullptr) << type;
    }
}

TEST_F(PersonRequestsTest, TypeTwoNeedsNoPassword)
{
    EXPECT_EQ(WithArchive(R"(,"ZipName":"Anna")").str_zip_encoding_password, "");
}

TEST_F(PersonRequestsTest, EvidenceRequestStartsInSevenAndKeepsItsTarget)
{
    Request request;
    request.root = R"(,"FileExportPurpose":1,"EvidenceParam":{"Case":7})";
    const auto record = Parse(request);
    EXPECT_EQ(record->GetVal_state(), ZellTaskKit::Uploading);
    EXPECT_EQ(record->str_evidence_param, R"({"Case":7})");
}

TEST_F(PersonRequestsTest, TargetOfAnotherPurposeIsNotRead)
{
    Request request;
    request.root = R"(,"FileExportPurpose":2,"EvidenceParam":{"Case":7})";
    const auto record = Parse(request);
    EXPECT_EQ(record->GetVal_state(), ZellTaskKit::Downloading);
    EXPECT_EQ(record->str_evidence_param, "");
}

TEST_F(PersonRequestsTest, EmptyNameIsGeneratedAndNamesTheFolderToo)
{
    const auto record = Parse([] {
        Request request;
        request.archive = R"(,"ZipEncodingPassword":"secret")";
        return request;
    }());
    EXPECT_EQ(record->vs_file_param_.str_zip_name, "ExportFile_20260131_235959");
    EXPECT_EQ(record->GetVal_str_name(), "ExportFile_20260131_235959");
    EXPECT_EQ(record->vs_file_param_.str_save_path.Get(), Folder() + "ExportFile_20260131_235959/");
    EXPECT_TRUE(Exists("ExportFile_20260131_235959"));
    EXPECT_EQ(Lines(Trace(), "log3  CDownloadBussinessManager::AddDownloadCommTask  save_path"),
              "\nlog3  CDownloadBussinessManager::AddDownloadCommTask  save_path =    folder_name =·\n");
}

TEST_F(PersonRequestsTest, BackslashesOfTheConfiguredPathBecomeSlashes)
{
    fakes::TheScript().client_config = InFolder(R"({"SysConfig":{"FileSavePath":"<tmp>/Exports\\All\\"}})");
    const PersonVsFileParam settings = Parse({})->vs_file_param_;
    EXPECT_EQ(settings.str_save_path.Get(), Folder() + "Exports/All/Anna/");
    EXPECT_TRUE(Exists("Exports/All/Anna"));
}

TEST_F(PersonRequestsTest, BackslashesOfTheNameBecomeSlashesInTheFolderOnly)
{
    const PersonVsFileParam settings = WithArchive(R"(,"ZipName":"Anna\\Berg")");
    EXPECT_EQ(settings.str_zip_name, "Anna\\Berg");
    EXPECT_EQ(settings.str_save_path.Get(), Folder() + "Anna/Berg/");
}

TEST_F(PersonRequestsTest, FolderThatIsThereIsLeftAsItIs)
{
    std::filesystem::create_directory(Folder() + "Anna");
    Parse({});
    EXPECT_EQ(Trace().find("dir.mkpath"), std::string::npos);
}

TEST_F(PersonRequestsTest, FolderThatCannotBeMadeIsLeftToTheTask)
{
    fakes::TheScript().public_data_path = "/proc/nothing/";
    const auto record = Parse({});
    EXPECT_EQ(record->vs_file_param_.str_save_path.Get(), "/proc/nothing/Anna/");
    EXPECT_NE(Trace().find("dir.mkpath state = 0, save_path = /proc/nothing/Anna/"), std::string::npos);
}

TEST_F(PersonRequestsTest, LongNameIsNotShortened)
{
    const std::string name(250, 'n');
    EXPECT_EQ(WithArchive(R"(,"ZipName":")" + name + "\"").str_save_path.Get(), Folder() + name + "/");
}

TEST_F(PersonRequestsTest, SaveFolderOfAReportRequestIsNotRead)
{
    Request request;
    request.archive +=
        R"(,"SaveFilePathDir":"/x/","FolderName":"y"},"RequestData":{"WriteFileCondition":{"SaveFilePathDir":"/x/"})";
    EXPECT_EQ(Parse(request)->vs_file_param_.str_save_path.Get(), Folder() + "Anna/");
}

TEST_F(PersonRequestsTest, PasswordCheckMergesTheAccountAndKeepsTheConditionAsReceived)
{
    Request request;
    request.server = kCheckPassword;
    const auto record = Parse(request);
    const PersonVsFileParam& settings = record->vs_file_param_;
    EXPECT_EQ(
        settings.str_request_condition,
        R"({"PageIndex":1,"PageSize":2,"CheckPasswordRequest":{"UserName":"user","PassWord":"ciphered",)"
        R"("PasswordType":2,"LoginModel":4,"ClientGuid":"client-guid","ClientHardwareCode":"hardware-code"}})");
    EXPECT_EQ(settings.str_received_condition, R"({"PageIndex":1,"PageSize":2})");
    EXPECT_TRUE(settings.check_password_request);
    EXPECT_EQ(settings.password_type, 2);
    EXPECT_EQ(settings.web_login_model, 9);
    EXPECT_TRUE(record->GetIsExportSensitiveInfo());
    std::vector<std::string> calls = fakes::Take();
    calls.resize(4);
    EXPECT_EQ(calls, (std::vector<std::string>{"AESDecryptForSensitiveInfor ciphered 0 false",
                                               "SetUserInfo user plain-of-ciphered", "GetUserInfoEx",
                                               "GetClientInfo"}));
}

TEST_F(PersonRequestsTest, PasswordCheckOfAWebClientHasAnEmptyIdentityAndTheRequestsLoginModel)
{
    fakes::TheScript().client_type = 1;
    EXPECT_EQ(
        WithServer(kCheckPassword).str_request_condition,
        R"({"PageIndex":1,"PageSize":2,"CheckPasswordRequest":{"UserName":"user","PassWord":"ciphered",)"
        R"("PasswordType":2,"LoginModel":9,"ClientGuid":"","ClientHardwareCode":""}})");
}

TEST_F(PersonRequestsTest, PasswordCheckAtThePlaceOfAReportRequestIsNotRead)
{
    Request request;
    request.archive += R"(},"RequestData":{"ExportFileParam":{"CheckPasswordRequest":{"UserName":"user"}})";
    EXPECT_FALSE(Parse(request)->vs_file_param_.check_password_request);
}

TEST_F(PersonRequestsTest, BadRequestOfABatchIsPassedOver)
{
    std::vector<std::string> guids;
    Request second;
    second.archive = R"(,"ZipEncodingPassword":"secret","ZipName":"Berta")";
    EXPECT_TRUE(Add({"no json", Text({}), Text(second)}, guids));
    EXPECT_EQ(guids.size(), 2U);
    EXPECT_EQ(fakes::TheScript().handed_over.size(), 2U);
}

}  // namespace
}  // namespace contract
