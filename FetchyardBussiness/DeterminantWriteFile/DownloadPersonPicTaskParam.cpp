#include "FetchyardBussiness/DeterminantWriteFile/DownloadPersonPicTaskParam.h"

#include "FetchyardBussiness/DeterminantWriteFile/ResumeDocument.h"

namespace FetchyardBussiness {

DownloadPersonPicTaskParam::DownloadPersonPicTaskParam() = default;
DownloadPersonPicTaskParam::DownloadPersonPicTaskParam(const DownloadPersonPicTaskParam& other) = default;
DownloadPersonPicTaskParam& DownloadPersonPicTaskParam::operator=(const DownloadPersonPicTaskParam& other) =
    default;
DownloadPersonPicTaskParam::~DownloadPersonPicTaskParam() = default;

std::string DownloadPersonPicTaskParam::CreateResumeXml()
{
    const PersonVsFileParam& settings = vs_file_param_;
    // The reader fills the condition alone, so a resumed export with a password check has none in its next
    // record.
    const std::string& condition =
        settings.check_password_request ? settings.str_received_condition : settings.str_request_condition;
    ResumeElement root(kResumeRoot);
    root.Number("TaskParamType", kPersonPictureRecord)
        .Text("RequestMethod", settings.str_request_method)
        .Text("RequestAPI", settings.str_request_api)
        .Text("RequestCondition", condition)
        .Text("ZipEncodingPassword", settings.str_zip_encoding_password)
        .Text("ZipName", settings.str_zip_name)
        .Flag("CheckPasswordRequest", settings.check_password_request)
        .Number("PasswordType", settings.password_type)
        .Number("WebLoginModel", settings.web_login_model);
    return root.Record();
}

bool DownloadPersonPicTaskParam::ResumeParamFromXml()
{
    ZellNetLink::CXmlProto document;
    if (!OpenResumeRecord(GetVal_str_resume_xml(), document))
        return false;
    const ResumeReader root(document, kResumePrefix);
    PersonVsFileParam& settings = vs_file_param_;
    settings.str_request_method = root.Text("RequestMethod");
    settings.str_request_api = root.Text("RequestAPI");
    settings.str_request_condition = root.Text("RequestCondition");
    settings.str_zip_encoding_password = root.Text("ZipEncodingPassword");
    settings.str_zip_name = root.Text("ZipName");
    settings.check_password_request = root.Number("CheckPasswordRequest") == 1;
    settings.password_type = root.Number("PasswordType");
    settings.web_login_model = root.Number("WebLoginModel");
    settings.is_resumed = true;
    SetIsExportSensitiveInfo(settings.check_password_request);
    return true;
}

}  // namespace FetchyardBussiness
