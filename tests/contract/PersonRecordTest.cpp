#include "FetchyardBussiness/DeterminantWriteFile/DownloadPersonPicTaskParam.h"
#include "support/ContractTest.h"
#include "support/ResumeRecords.h"

#include <string>

namespace contract {
namespace {

using FetchyardBussiness::DownloadPersonPicTaskParam;
using FetchyardBussiness::PersonVsFileParam;

void Fill(DownloadPersonPicTaskParam& param)
{
    PersonVsFileParam& settings = param.vs_file_param_;
    settings.str_request_method = "POST";
    settings.str_request_api = "/api/v1/persons/report";
    settings.str_request_condition = R"({"PageIndex":1,"PageSize":100,"Text":"<Ä> & \"B\""})";
    settings.str_zip_encoding_password = "zip & <secret>";
    settings.str_zip_name = "Anna 大门";
    settings.str_save_path = "D:/Exports/Anna/";
    settings.file_current_page = 4;
    settings.file_total_page_is_finished = true;
    settings.password_type = 3;
    settings.web_login_model = 2;
    param.str_evidence_param = R"({"Case":7})";
}

class PersonRecordTest : public ContractTest
{
protected:
    static std::string Written(DownloadPersonPicTaskParam& param) { return Decoded(param.CreateResumeXml()); }

    static bool Read(const std::string& xml, DownloadPersonPicTaskParam& param)
    {
        param.SetVal_str_resume_xml(Encoded(xml));
        return param.ResumeParamFromXml();
    }
};

TEST_F(PersonRecordTest, FreshRecordHasItsDefaults)
{
    const DownloadPersonPicTaskParam param;
    const PersonVsFileParam& settings = param.vs_file_param_;
    EXPECT_EQ(settings.str_request_method + settings.str_request_api + settings.str_request_condition +
                  settings.str_zip_encoding_password + settings.str_zip_name + settings.str_save_path.Get() +
                  settings.str_received_condition + param.str_evidence_param,
              "");
    EXPECT_EQ(settings.file_current_page, 1);
    EXPECT_FALSE(settings.file_total_page_is_finished);
    EXPECT_FALSE(settings.check_password_request);
    EXPECT_FALSE(settings.is_resumed);
    EXPECT_EQ(settings.web_login_model, 1);
}

TEST_F(PersonRecordTest, CopyHasEveryMember)
{
    DownloadPersonPicTaskParam param;
    Fill(param);
    param.SetVal_str_name("Anna");
    DownloadPersonPicTaskParam copy(param);
    EXPECT_EQ(Written(copy), Written(param));
    EXPECT_EQ(copy.vs_file_param_.str_save_path.Get(), "D:/Exports/Anna/");
    EXPECT_EQ(copy.vs_file_param_.file_current_page, 4);
    EXPECT_EQ(copy.str_evidence_param, param.str_evidence_param);
    EXPECT_EQ(copy.GetVal_str_name(), "Anna");
    DownloadPersonPicTaskParam assigned;
    assigned = param;
    EXPECT_EQ(Written(assigned), Written(param));
    EXPECT_EQ(assigned.vs_file_param_.str_save_path.Get(), "D:/Exports/Anna/");
}

TEST_F(PersonRecordTest, RecordIsWrittenAsTheGoldenOneAndLogsNothing)
{
    DownloadPersonPicTaskParam param;
    Fill(param);
    EXPECT_EQ(Written(param), Golden("resume-person.xml"));
    DownloadPersonPicTaskParam read;
    EXPECT_TRUE(Read(Golden("resume-person.xml"), read));
    EXPECT_EQ(Trace(), "\n");
}

TEST_F(PersonRecordTest, PasswordCheckKeepsTheConditionAsReceived)
{
    DownloadPersonPicTaskParam param;
    Fill(param);
    param.vs_file_param_.check_password_request = true;
    param.vs_file_param_.str_received_condition = R"({"PageIndex":1,"PageSize":100})";
    param.vs_file_param_.str_request_condition = R"({"CheckPasswordRequest":{"PassWord":"ciphered"}})";
    EXPECT_EQ(Written(param), Golden("resume-person-password.xml"));
}

TEST_F(PersonRecordTest, RequestAndArchiveComeBackAndNothingElse)
{
    DownloadPersonPicTaskParam param;
    ASSERT_TRUE(Read(Golden("resume-person.xml"), param));
    const PersonVsFileParam& settings = param.vs_file_param_;
    EXPECT_EQ(settings.str_request_method, "POST");
    EXPECT_EQ(settings.str_request_api, "/api/v1/persons/report");
    EXPECT_EQ(settings.str_request_condition, R"({"PageIndex":1,"PageSize":100,"Text":"<Ä> & \"B\""})");
    EXPECT_EQ(settings.str_zip_encoding_password, "zip & <secret>");
    EXPECT_EQ(settings.str_zip_name, "Anna 大门");
    EXPECT_EQ(settings.password_type, 3);
    EXPECT_EQ(settings.web_login_model, 2);
    EXPECT_TRUE(settings.is_resumed);
    EXPECT_FALSE(settings.check_password_request);
    EXPECT_FALSE(param.GetIsExportSensitiveInfo());
    // A resumed export starts over, in the folder of the present configuration, as a plain one.
    EXPECT_EQ(settings.str_save_path.Get(), "");
    EXPECT_EQ(settings.file_current_page, 1);
    EXPECT_FALSE(settings.file_total_page_is_finished);
    EXPECT_EQ(param.str_evidence_param, "");
}

TEST_F(PersonRecordTest, SecondResumeOfAPasswordCheckHasLostTheCondition)
{
    DownloadPersonPicTaskParam first;
    ASSERT_TRUE(Read(Golden("resume-person-password.xml"), first));
    EXPECT_TRUE(first.vs_file_param_.check_password_request);
    EXPECT_TRUE(first.GetIsExportSensitiveInfo());
    EXPECT_EQ(first.vs_file_param_.str_request_condition, R"({"PageIndex":1,"PageSize":100})");
    EXPECT_EQ(first.vs_file_param_.str_received_condition, "");
    DownloadPersonPicTaskParam second;
    ASSERT_TRUE(Read(Written(first), second));
    EXPECT_EQ(second.vs_file_param_.str_request_condition, "");
}

TEST_F(PersonRecordTest, RecordWithNothingInItIsMinusOneAndEmpty)
{
    DownloadPersonPicTaskParam param;
    Fill(param);
    ASSERT_TRUE(Read("<FileExportParams/>", param));
    const PersonVsFileParam& settings = param.vs_file_param_;
    EXPECT_EQ(settings.str_request_method + settings.str_request_api + settings.str_request_condition +
                  settings.str_zip_encoding_password + settings.str_zip_name,
              "");
    EXPECT_FALSE(settings.check_password_request);
    EXPECT_EQ(settings.password_type, -1);
    EXPECT_EQ(settings.web_login_model, -1);
    EXPECT_TRUE(settings.is_resumed);
}

TEST_F(PersonRecordTest, PasswordCheckIsOnForOneOnly)
{
    for (const char* const value : {"0", "2", "-1", "true", ""}) {
        DownloadPersonPicTaskParam param;
        param.SetIsExportSensitiveInfo(true);
        ASSERT_TRUE(Read(std::string("<FileExportParams><CheckPasswordRequest>") + value +
                             "</CheckPasswordRequest></FileExportParams>",
                         param));
        EXPECT_FALSE(param.vs_file_param_.check_password_request) << value;
        EXPECT_FALSE(param.GetIsExportSensitiveInfo()) << value;
    }
}

TEST_F(PersonRecordTest, RecordThatCannotBeReadTouchesNothing)
{
    DownloadPersonPicTaskParam param;
    Fill(param);
    const std::string before = Written(param);
    for (const std::string& text : {std::string(), Encoded("no xml"), Encoded("<FileExportParams>"),
                                    Encoded("{\"a\":1}"), std::string("*** no Base64 ***")}) {
        param.SetVal_str_resume_xml(text);
        EXPECT_FALSE(param.ResumeParamFromXml()) << text;
    }
    EXPECT_EQ(Written(param), before);
    EXPECT_FALSE(param.vs_file_param_.is_resumed);
    EXPECT_EQ(Trace(), "\n");
}

}  // namespace
}  // namespace contract
