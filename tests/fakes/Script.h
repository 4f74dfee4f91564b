#pragma once

#include "fakes/Export.h"
#include "FetchyardLogical/CmsGetPersonPicFileData.h"
#include "FetchyardLogical/ProtocalFactory.h"
#include "FetchyardLogical/ReportData.h"
#include "ZellBase/Error.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace ZellTaskKit {
class CDownloadTaskBase;
}

namespace fakes {

// What one page call gives back.
struct PageAnswer
{
    bool ok = true;
    Zell::Base::Error::ErrorCode error;  // of a failed call
    bool is_rowcolumn_data = true;
    bool is_last = false;
    std::vector<FetchyardLogical::ExportSheet> sheets;
    FetchyardLogical::ServerGenerateNode server;
};

// What one page call of a person search gives back.
struct PersonPageAnswer
{
    bool ok = true;
    bool is_last = false;
    std::vector<FetchyardLogical::PersonPicture> pictures;
    // Of a failed call:
    Zell::Base::Error::ErrorCode error;
    std::string remaining_login_count;
    std::string remaining_login_type;
};

// How the video plug-in's start ends.
struct VideoAnswer
{
    bool ok = true;
    std::string response;
    bool writes = true;  // a good one leaves its file; one that was stopped leaves none
    bool throws = false;
};

// What one question about the files that a server makes gives back: not yet, by default.
struct PollAnswer
{
    bool is_ready = false;
    bool failed = false;
    std::list<std::string> urls;            // of gathered logs
    FetchyardLogical::RequstData download;  // of a generated report
    FetchyardLogical::RequstData delete_cache;
};

// What the picture loader gives back for one address: an error, or bytes.
struct PictureAnswer
{
    Zell::Base::Error::ErrorCode error;
    std::string bytes;
};

// The client's watermark.
struct WatermarkConfig
{
    bool is_enabled = true;
    bool is_adapting = false;
    bool has_user_name = true;
    bool has_time = false;  // of the run itself, so it differs from run to run
    bool has_custom_content = true;
    std::string custom_content = "confidential";
    int red = 10;
    int green = 20;
    int blue = 30;
    int font_size = 40;
    int transparency = 50;
    int rotation_angle = 60;
    int space = 70;
    int bench_width = 1280;
    int bench_height = 720;
};

// The answers of the fakes. Set by the test before the work begins, or inside an action bound to a call on
// the thread that does the work; the fakes take no lock.
struct Script
{
    // NQX
    int access_result = 0;
    int system_error = 13;  // of a file operation that a test lets fail

    // ZellBase
    bool show_log_heads = false;  // the name of the function in front of each log text
    std::string local_mark;       // put in front of every text that is turned into the code page
    std::string utf8_mark;        // the other way
    std::string exe_path = "/opt/client/";
    bool every_folder_exists = false;  // for DirectoryExists
    std::string short_datetime = "20260131_235959";

    // ZellErrorText: texts by module and code; without one "text of module/code"
    std::map<std::pair<int, int>, std::string> error_texts;

    // ZellClientHost
    std::string client_config;
    int password_type = 3;
    int login_model = 4;
    std::string client_guid = "client-guid";
    std::string hardware_code = "hardware-code";
    std::map<std::string, void*> plugins;  // loaded modules by their ids

    // ZellTaskKit
    int client_type = 0;
    std::string user_name = "operator";
    std::string password = "secret";
    std::string data_path = "/data/own/";
    std::string public_data_path = "/data/public/";
    std::string evidence_answer;  // of a request to another plug-in

    // ZellPictureLoader: by address; without one the loader writes "picture"
    std::map<std::string, PictureAnswer> pictures;

    // MultimediaComm and ZellPlayback: results in order, 0 when there is none left. Success writes the
    // target, which says what was done to which content ("stamped ...", "translated ...", "watermarked ...").
    std::deque<int> stamp_results;
    std::deque<int> translate_results;
    std::deque<int> watermark_results;
    Zell::Base::Error::ErrorCode watermark_error = {20, 3};  // the last error behind such a result but 0
    unsigned long video_length = 60000;                      // milliseconds
    std::string captured_picture = "jpeg";

    std::deque<VideoAnswer> videos;  // of the video plug-in, in order; good ones when there is none left

    // ZellAssetBook
    WatermarkConfig watermark;

    // FetchyardLogical: one answer a call, in order, or as many as are asked for
    std::deque<PageAnswer> pages;
    std::function<PageAnswer()> page_source;
    std::deque<PersonPageAnswer> person_pages;
    std::deque<PollAnswer> polls;  // one a question, in order, and then "not yet"
    std::string force_log_guid = "gathering-1";
    Zell::Base::Error::ErrorCode force_log_error;  // of a call that fails
    std::vector<std::string> transcoding_names;    // of a transcoding request, like the three below
    bool transcoding_tip = true;
    std::string transcoding_task = "Stamping";
    std::vector<FetchyardLogical::TrasncodingFile> transcoding_files;
    std::string configured_save_path;  // of the engine's own configuration
    std::map<unsigned int, std::shared_ptr<ZellTaskKit::CDownloadTaskBase>> engine_tasks;
    std::vector<std::shared_ptr<ZellTaskKit::CDownloadTaskBase>> handed_over;  // by AddTransferTask

    // ZellOfficeKit: -1 leaves GetUsedRowsCount to what was written
    int used_rows = -1;
};

FAKES_API Script& TheScript();

}  // namespace fakes
