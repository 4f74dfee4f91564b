#include "support/ExportTest.h"

namespace contract {
namespace {

class AccountDataTest : public ExportTest
{
protected:
    AccountDataTest()
    {
        task_->SetDownloadTaskParam(record_, false);
        fakes::Take();
    }
};

TEST_F(AccountDataTest, DesktopClientWritesItsOwnIdentityAndKeepsItsPasswordType)
{
    Settings().password_type = 8;
    Settings().web_login_model = 9;
    EXPECT_TRUE(task_->SetAccountInforToRequest());
    EXPECT_EQ(Settings().str_request_condition,
              R"({"PageIndex":1,"PageSize":2,"CheckPasswordRequest":{"UserName":"operator",)"
              R"("PassWord":"cipher-of-secret","PasswordType":3,"LoginModel":4,"ClientGuid":"client-guid",)"
              R"("ClientHardwareCode":"hardware-code"}})");
    EXPECT_EQ(Settings().password_type, 3);
    EXPECT_EQ(Settings().web_login_model, 9);
    EXPECT_EQ(Trace(), R"(
GetUserInfo
AESEncryptForSensitiveInfor secret
GetUserInfoEx
GetClientInfo
SetDownloadTaskParam
)");
}

TEST_F(AccountDataTest, WebClientWritesAnEmptyIdentityAndTheValuesOfTheRecord)
{
    fakes::TheScript().client_type = 1;
    Settings().password_type = 8;
    Settings().web_login_model = 9;
    EXPECT_TRUE(task_->SetAccountInforToRequest());
    EXPECT_EQ(Settings().str_request_condition,
              R"({"PageIndex":1,"PageSize":2,"CheckPasswordRequest":{"UserName":"operator",)"
              R"("PassWord":"cipher-of-secret","PasswordType":8,"LoginModel":9,"ClientGuid":"",)"
              R"("ClientHardwareCode":""}})");
    EXPECT_EQ(Settings().password_type, 8);
    EXPECT_EQ(Trace(), R"(
GetUserInfo
AESEncryptForSensitiveInfor secret
SetDownloadTaskParam
)");
}

TEST_F(AccountDataTest, SecondCallOverwritesTheSameMembers)
{
    task_->SetAccountInforToRequest();
    const std::size_t size = Settings().str_request_condition.size();
    fakes::TheScript().user_name = "attendee";
    EXPECT_TRUE(task_->SetAccountInforToRequest());
    EXPECT_EQ(Settings().str_request_condition.size(), size);
    EXPECT_NE(Settings().str_request_condition.find(R"("UserName":"attendee")"), std::string::npos);
}

TEST_F(AccountDataTest, UnknownAccountGoesOutEmpty)
{
    for (const char* const operation : {"GetUserInfo", "GetUserInfoEx", "GetClientInfo"})
        fakes::FailCalls(operation, 1, -1);
    EXPECT_TRUE(task_->SetAccountInforToRequest());
    EXPECT_NE(Settings().str_request_condition.find(
                  R"("UserName":"","PassWord":"cipher-of-","PasswordType":0,"LoginModel":0,"ClientGuid":"",)"
                  R"("ClientHardwareCode":"")"),
              std::string::npos)
        << Settings().str_request_condition;
}

TEST_F(AccountDataTest, ConditionThatIsNoJsonBecomesTheAccountAlone)
{
    fakes::TheScript().client_type = 1;
    Settings().str_request_condition = "no json";
    EXPECT_TRUE(task_->SetAccountInforToRequest());
    EXPECT_EQ(Settings().str_request_condition.substr(0, 50),
              R"({"CheckPasswordRequest":{"UserName":"operator","Pa)");
}

TEST_F(AccountDataTest, ReceivedConditionIsLeftAsTheCallerSentIt)
{
    Settings().str_received_condition = "as received";
    task_->SetAccountInforToRequest();
    EXPECT_EQ(Settings().str_received_condition, "as received");
}

TEST_F(AccountDataTest, NextRunSendsTheRenewedAccount)
{
    fakes::TheScript().client_type = 1;
    task_->SetAccountInforToRequest();
    fakes::TheScript().pages = {Page(Sheet(1, {}), true)};
    EXPECT_NE(
        Run().find(R"(GetExportFileDataList POST /api {"PageIndex":1,"PageSize":2,"CheckPasswordRequest":)"),
        std::string::npos);
}

TEST_F(AccountDataTest, TaskWithoutARecordIsRefused)
{
    FetchyardBussiness::CDeterminantWriteFileTask task;
    EXPECT_FALSE(task.SetAccountInforToRequest());
    EXPECT_EQ(Trace(), "\nlog5 CDeterminantWriteFileTask::SetAccountInforToRequest() failed·\n");
}

TEST_F(AccountDataTest, FailedFilesOfNobodyAreAnEmptyList)
{
    task_->SetErrorCodeJsonToUp();
    EXPECT_EQ(Trace(), R"(
SetErrorParamState true
SetErrorParam
SetDownloadTaskParam
)");
    EXPECT_TRUE(task_->GetErrorParamState());
    EXPECT_TRUE(task_->GetErrorParam().empty());
    EXPECT_EQ(record_->GetVal_reserve_data(), task_->GetCommData());
}

TEST_F(AccountDataTest, FailedFilesStandInTheOrderOfTheirNames)
{
    Settings().is_continue_dowinloading = true;
    Settings().str_request_api = "";
    for (const char* const name : {"z.jpg", "a.jpg", "m \"n\".jpg"})
        AddPicture(name, "/bad");
    fakes::TheScript().pictures["/bad"] = {{21, 404}, ""};
    Run();
    EXPECT_EQ(task_->GetCommData(), R"({"ArrayList":[{"FileName":"a.jpg","ErrorReason":"text of 21/404"},)"
                                    R"({"FileName":"m \"n\".jpg","ErrorReason":"text of 21/404"},)"
                                    R"({"FileName":"z.jpg","ErrorReason":"text of 21/404"}]})");
    EXPECT_EQ(task_->GetErrorParam(), (std::map<std::string, std::string>{
                                          {"ArrayList[1]/FileName", "a.jpg"},
                                          {"ArrayList[1]/ErrorReason", "text of 21/404"},
                                          {"ArrayList[2]/FileName", "m \"n\".jpg"},
                                          {"ArrayList[2]/ErrorReason", "text of 21/404"},
                                          {"ArrayList[3]/FileName", "z.jpg"},
                                          {"ArrayList[3]/ErrorReason", "text of 21/404"},
                                      }));
    EXPECT_EQ(record_->GetVal_reserve_data(), task_->GetCommData());
}

TEST_F(AccountDataTest, FailedFilesWithoutARecordStillReachTheTask)
{
    FetchyardBussiness::CDeterminantWriteFileTask task;
    task.SetErrorCodeJsonToUp();
    EXPECT_EQ(Trace(), R"(
SetErrorParamState true
SetErrorParam
log5 CDeterminantWriteFileTask::SetErrorCodeJsonToUp() param failed·
)");
}

}  // namespace
}  // namespace contract
