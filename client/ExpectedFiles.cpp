#include "ExpectedFiles.h"

#include <array>
#include <map>

namespace FetchyardClient {

namespace {

using nlohmann::json;

constexpr std::array<const char*, 4> kReportSuffix = {".xlsx", ".csv", ".pdf", ".txt"};

const json& Member(const json& node, const char* name)
{
    static const json* const nothing = new json();
    const auto found = node.is_object() ? node.find(name) : node.end();
    return node.is_object() && found != node.end() ? *found : *nothing;
}

std::string Text(const json& node, const char* name)
{
    const json& member = Member(node, name);
    return member.is_string() ? member.get<std::string>() : std::string();
}

int Number(const json& node, const char* name, int fallback)
{
    const json& member = Member(node, name);
    return member.is_number_integer() ? member.get<int>() : fallback;
}

void AddReport(const json& data, const std::string& stem, std::vector<ExpectedFile>& files)
{
    if (Text(Member(data, "ExportFileParam"), "RequestAPI").empty())
        return;
    const int type = Number(Member(data, "WriteFileCondition"), "ExportFileType", 0);
    if (type >= 0 && type < static_cast<int>(kReportSuffix.size()))
        files.push_back({stem + kReportSuffix[static_cast<std::size_t>(type)], true, ""});
}

void AddDockStationFiles(const json& data, const std::string& folder, std::vector<ExpectedFile>& files)
{
    for (const json& file : Member(Member(data, "ExportFileParam"), "DeviceIdList"))
        files.push_back({folder + Text(file, "FileName"), false, "", ExpectedFile::Content::kAny});
}

// A file of that name in the folder, or in one below it if that has a name.
std::string PathIn(const std::string& folder, const std::string& below, const std::string& name)
{
    return below.empty() ? folder + name : folder + below + "/" + name;
}

// The library numbers the second and later pictures of one name in one folder.
void AddPictures(const json& downloads, const std::string& folder, std::vector<ExpectedFile>& files)
{
    std::map<std::string, int> names;
    int number = 0;
    for (const json& image : Member(downloads, "ImageDownload")) {
        ++number;
        std::string name = Text(image, "ImageName");
        if (name.empty())
            name = std::to_string(number);
        std::string path = PathIn(folder, Text(image, "FolderName"), name);
        const int count = ++names[path];
        if (count > 1)
            path += "(" + std::to_string(count) + ")";
        files.push_back({path + ".jpg", false, ""});
    }
}

void AddStoredObjects(const json& downloads, const std::string& folder, std::vector<ExpectedFile>& files)
{
    for (const json& object : Member(downloads, "ObjectStorageDownload")) {
        const std::string base = Text(object, "SavePath");
        const std::string below = Text(object, "FolderName");
        std::string path = base.empty() ? folder : base;
        if (!below.empty())
            path += "/" + below + "/";
        files.push_back({path + Text(object, "FileName"), false, ""});
    }
}

void AddVideos(const json& downloads, const std::string& folder, std::vector<ExpectedFile>& files)
{
    constexpr int avi = 1;
    for (const json& video : Member(downloads, "VideoDownload")) {
        const char* suffix = Number(video, "VideoFormat", 2) == avi ? ".avi" : ".mp4";
        const std::string stem = PathIn(folder, Text(video, "FolderName"), Text(video, "ExportFileName"));
        files.push_back({stem + suffix, false, Text(video, "VideoPassword"), ExpectedFile::Content::kVideo});
        // The library takes a snapshot unless the request says 0.
        if (Number(video, "IsSnap", 1) != 0)
            files.push_back({stem + ".jpg", false, "", ExpectedFile::Content::kPicture});
    }
}

}  // namespace

std::vector<ExpectedFile> ExpectedFiles(const json& request, const std::string& name,
                                        const std::string& folder)
{
    constexpr int logs = 3;
    constexpr int dock_station_files = 4;
    std::vector<ExpectedFile> files;
    const json& person = Member(Member(request, "FileExportRequest"), "PersonExportPicNode");
    if (person.is_object()) {
        files.push_back({folder + name + ".zip", true, Text(person, "ZipEncodingPassword")});
        return files;
    }
    const json& data = Member(Member(request, "FileExportRequest"), "RequestData");
    const int type = Number(Member(request, "FileExportRequest"), "FileExportType", 0);
    const json& write = Member(data, "WriteFileCondition");
    // Which logs there are is for the server to say, and they are not packed.
    if (type == logs)
        return files;
    const json& pack = Member(write, "IsNeedCompressZip");
    if (pack.is_boolean() && pack.get<bool>()) {
        files.push_back({folder + name + ".zip", true, Text(write, "ZipPassword")});
        return files;
    }
    if (type == dock_station_files) {
        AddDockStationFiles(data, folder, files);
        return files;
    }
    AddReport(data, folder + name, files);
    AddPictures(Member(data, "DownloadFiles"), folder, files);
    AddVideos(Member(data, "DownloadFiles"), folder, files);
    AddStoredObjects(Member(data, "DownloadFiles"), folder, files);
    return files;
}

}  // namespace FetchyardClient
