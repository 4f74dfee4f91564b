#pragma once

#include "FetchyardBussiness/Export.h"
#include "ZellTaskKit/DownloadTaskParam.h"

#include <map>
#include <string>
#include <vector>

namespace FetchyardBussiness {

// One file to fetch over HTTP.
struct FileExportItem
{
    std::string file_name;
    std::string save_path;
    std::string request_url;
    std::string request_data;
    std::string send_data;
    std::string request_method = "GET";
    std::map<std::string, std::string> query_params;
    int request_pattern = 0;  // ZellNetLink::NetlibWrapper::RequestPattern
};

// Record of a download of server files.
struct FETCHYARD_API FileExportParam : public ZellTaskKit::CDownloadTaskParam
{
    FileExportParam();
    FileExportParam(const FileExportParam& other);
    FileExportParam& operator=(const FileExportParam& other);
    ~FileExportParam() override;

    std::vector<FileExportItem> file_items;
};

}  // namespace FetchyardBussiness
