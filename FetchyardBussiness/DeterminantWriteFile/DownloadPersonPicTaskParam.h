#pragma once

#include "FetchyardBussiness/SharedText.h"
#include "ZellTaskKit/DownloadTaskParam.h"

#include <string>

namespace FetchyardBussiness {

// Settings and progress of an export of person pictures.
struct PersonVsFileParam
{
    std::string str_request_method;
    std::string str_request_api;  // path of the interface that delivers the pages
    std::string str_request_condition;
    std::string str_zip_encoding_password;  // of the archive, in clear; empty for none
    std::string str_zip_name;               // without suffix
    SharedText str_save_path;               // with forward slashes and a final one
    int file_current_page = 1;              // of the next request
    bool file_total_page_is_finished = false;
    bool check_password_request = false;
    // The condition as the caller sent it, without account data; only with check_password_request.
    std::string str_received_condition;
    bool is_resumed = false;
    int password_type = 0;  // says something only with check_password_request
    int web_login_model = 1;
};

// Record of an export of person pictures. Once a task has it, only that task changes it.
struct DownloadPersonPicTaskParam : public ZellTaskKit::CDownloadTaskParam
{
    DownloadPersonPicTaskParam();
    DownloadPersonPicTaskParam(const DownloadPersonPicTaskParam& other);
    DownloadPersonPicTaskParam& operator=(const DownloadPersonPicTaskParam& other);
    ~DownloadPersonPicTaskParam() override;

    // Reads the resume record that str_resume_xml holds. False, with nothing read, if that is no such text.
    bool ResumeParamFromXml() override;
    // The resume record: the request without account data, and the archive's name and password, which lies in
    // it in clear. It holds no progress, no folder and no evidence target: a resumed export starts over, as a
    // plain one.
    std::string CreateResumeXml() override;

    PersonVsFileParam vs_file_param_;
    std::string str_evidence_param;  // JSON; not empty for an export whose result is registered as evidence
};

}  // namespace FetchyardBussiness
