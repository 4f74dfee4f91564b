#pragma once

#include "FetchyardBussiness/ImageDownload/ImageParam.h"
#include "FetchyardBussiness/ShortVideo/ShortVideoDownloadParam.h"
#include "FetchyardBussiness/VideoDownload/VideoTaskParam.h"
#include "ZellTaskKit/DownloadTaskParam.h"

#include <atomic>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace FetchyardBussiness {

// A flag of a record that a running task and a stop share. Copies like a bool.
class SharedFlag
{
public:
    SharedFlag(bool value) : value_(value) {}
    SharedFlag(const SharedFlag& other) : value_(other) {}
    SharedFlag& operator=(const SharedFlag& other)
    {
        value_.store(other, std::memory_order_relaxed);
        return *this;
    }
    ~SharedFlag() = default;
    operator bool() const { return value_.load(std::memory_order_relaxed); }

private:
    std::atomic<bool> value_;
};

// What an export fetches beside its report, each with whether that is done.
struct ImageDownloadEntry
{
    bool is_has_download = false;
    ImageParam image;  // with one item
};

struct VideoDownloadEntry
{
    bool is_has_download = false;
    VideoTaskParam video;
};

struct ShortVideoEntry
{
    bool is_has_download = false;
    ShortVideoItem clip;
};

// Kinds of export. Any other number fetches nothing.
enum FileOperateType : int {
    kReportExport = 0,
    kPersonPictureExport = 2,  // a task of its own
    kForceLogExport = 3,
    kDockStationExport = 4,
};

// Formats of a report.
enum ExportFileType : int {
    kExcelReport = 0,
    kCsvReport = 1,
    kPdfReport = 2,
    kTxtReport = 3,
    kHtmlReport = 4,  // only what a server generates for a PDF
};

// Settings and progress of an export.
struct VsFileParam
{
    int file_operate_type = kReportExport;
    std::string str_request_method;
    std::string str_request_api;  // path of the interface that delivers the pages; empty for no report
    std::string str_request_condition;
    int request_site_id = 0;
    std::string str_export_file_name;  // without suffix
    std::string str_export_file_path;  // with forward slashes and a final one; unchanged once a task has it
    int export_file_type = kExcelReport;
    bool is_need_compress_zip = false;
    std::string str_zip_password;
    std::string pdf_page_size = "A4";
    int pdf_page_orintation = 0;
    // The next run must move on from the page in hand before it asks the server again.
    SharedFlag restart_is_need_download = false;
    // The server delivers rows to write here; otherwise it generates the file itself.
    bool is_server_data_to_write = true;
    int file_current_page = 1;
    bool file_total_page_is_finished = false;
    std::vector<ImageDownloadEntry> vec_image_download;
    std::vector<VideoDownloadEntry> vec_video_download;
    std::vector<ShortVideoEntry> vec_short_video;
    // A failed item is collected and the export goes on.
    bool is_continue_dowinloading = false;
    std::map<int, std::vector<int>> map_site_camera;
    bool check_password_request = false;
    // The condition as the caller sent it, without account data; only with check_password_request.
    std::string str_received_condition;
    bool is_resumed = false;
    int password_type = 0;
    int web_login_model = 1;
    std::map<int, std::pair<int, std::string>> map_device_log;  // FileId to DeviceId and FileName
};

// Record of a composite export. Once a task has it, only that task changes it.
struct DeterminantDownloadParam : public ZellTaskKit::CDownloadTaskParam
{
    DeterminantDownloadParam();
    DeterminantDownloadParam(const DeterminantDownloadParam& other);
    DeterminantDownloadParam& operator=(const DeterminantDownloadParam& other);
    ~DeterminantDownloadParam() override;

    // Reads the resume record that str_resume_xml holds. False, with nothing read, if that is no such text.
    bool ResumeParamFromXml() override;
    // The resume record: settings and progress, without passwords and account data.
    std::string CreateResumeXml() override;

    VsFileParam vs_file_param_;
    std::string str_evidence_param;  // JSON; not empty for an export whose result is registered as evidence
};

}  // namespace FetchyardBussiness
