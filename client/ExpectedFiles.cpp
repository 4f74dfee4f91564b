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

// The library numbers the second and later pictures of one name in one folder.
void AddPictures(const json& downloads, const std::string& folder, std::vector<ExpectedFile>& files)
{
    std::map<std::string, int> names;
    int number = 0;
    for (const json& image : Member(downloads, "ImageDownload")) {
        ++number;
        const std::string below = Text(image, "FolderName");
        std::string name = Text(image, "ImageName");
        if (name.empty())
            name = std::to_string(number);
        std::string path = folder + (below.empty() ? "" : below + "/") + name;
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

}  // namespace

std::vector<ExpectedFile> ExpectedFiles(const json& request, const std::string& name,
                                        const std::string& folder)
{
    std::vector<ExpectedFile> files;
    const json& data = Member(Member(request, "FileExportRequest"), "RequestData");
    const json& write = Member(data, "WriteFileCondition");
    const json& pack = Member(write, "IsNeedCompressZip");
    if (pack.is_boolean() && pack.get<bool>()) {
        files.push_back({folder + name + ".zip", true, Text(write, "ZipPassword")});
        return files;
    }
    AddReport(data, folder + name, files);
    AddPictures(Member(data, "DownloadFiles"), folder, files);
    AddStoredObjects(Member(data, "DownloadFiles"), folder, files);
    return files;
}

}  // namespace FetchyardClient
