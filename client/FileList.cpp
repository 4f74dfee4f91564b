#include "FileList.h"

#include "FetchyardBussiness/FileDownload/FileExportParam.h"
#include "FetchyardBussiness/ImageDownload/ImageParam.h"
#include "FetchyardBussiness/ShortVideo/ShortVideoDownloadParam.h"
#include "FetchyardBussiness/VideoDownload/VideoTaskParam.h"
#include "ZellBase/FileSystem.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <set>
#include <utility>

namespace FetchyardClient {

namespace {

using FetchyardBussiness::FileExportItem;
using FetchyardBussiness::FileExportParam;
using FetchyardBussiness::ImageItem;
using FetchyardBussiness::ImageParam;
using FetchyardBussiness::ShortVideoDownloadParam;
using FetchyardBussiness::ShortVideoItem;
using FetchyardBussiness::VideoTaskParam;
using nlohmann::json;
using ZellTaskKit::CDownloadTaskParam;

constexpr char kList[] = "FileRequestList";
constexpr char kOwner[] = "fetchyard.c";

enum RequestType : int {
    kPicture = 0,
    kServerFile = 1,
    kVideo = 2,
    kClip = 3,
};

std::string FolderOf(const json& request, const std::string& save_folder)
{
    const QDir base(QString::fromStdString(save_folder));
    const QString folder = base.filePath(QString::fromStdString(request.value("SavePath", "")));
    return (QDir::cleanPath(folder) + "/").toStdString();
}

// What the engine and its lists want of every record.
void FillBase(CDownloadTaskParam& record, ZellTaskKit::DownloadFileType type, const std::string& name,
              const std::string& folder)
{
    record.SetVal_file_type(type);
    record.SetVal_state(ZellTaskKit::Downloading);
    record.SetVal_str_name(name);
    record.SetVal_str_file_path(folder);
    record.SetVal_str_plugin_id(kOwner);
    record.SetVal_open_type(ZellTaskKit::OpenFolder);
    record.SetVal_operate_time(QDateTime::currentSecsSinceEpoch());
    record.SetVal_b_enable_size(true);
}

// Gathers the records of one list.
class Plan
{
public:
    Plan(std::string save_folder, std::vector<Violation>& violations)
        : save_folder_(std::move(save_folder)), violations_(violations)
    {
    }

    void Add(const json& request, const std::string& pointer)
    {
        switch (request.at("FileType").get<int>()) {
            case kPicture:
                AddPicture(request, pointer);
                break;
            case kServerFile:
                AddServerFile(request, pointer);
                break;
            case kVideo:
                videos_.push_back(request.at("VideoParam").at("VideoDownloadParam"));
                break;
            default:
                AddClip(request, pointer);
        }
    }

    std::vector<PlannedTask> Take()
    {
        TakeServerFiles();
        TakeVideos();
        TakeClips();
        return std::move(tasks_);
    }

private:
    std::string MakeFolder(const json& request, const std::string& pointer)
    {
        std::string folder = FolderOf(request, save_folder_);
        if (Zell::Base::FileSystem::MakeFullDir(folder.c_str()) != 0)
            violations_.push_back({pointer + "/SavePath", "the folder " + folder + " can't be made"});
        return folder;
    }

    void AddPicture(const json& request, const std::string& pointer)
    {
        const json param = request.value("ImageParam", json::object());
        ImageItem item;
        item.image_url = request.at("RequestUrl");
        item.save_cache = param.value("SaveCache", item.save_cache);
        item.workstation_id = param.value("WorkstationID", item.workstation_id);
        item.access_type = param.value("AccessType", item.access_type);
        item.image_type = param.value("ImageType", item.image_type);
        item.person_id = param.value("PersonID", item.person_id);
        const std::string folder = MakeFolder(request, pointer);
        const std::string name = request.at("FileName");
        auto record = std::make_shared<ImageParam>();
        FillBase(*record, ZellTaskKit::ImageFile, name, folder);
        record->image_items.push_back(std::move(item));
        tasks_.push_back({record, {{folder + name, true, "", ExpectedFile::Content::kPicture}}});
    }

    void AddServerFile(const json& request, const std::string& pointer)
    {
        const json param = request.value("FileParam", json::object());
        FileExportItem item;
        item.file_name = request.at("FileName");
        item.save_path = MakeFolder(request, pointer);
        item.request_url = request.at("RequestUrl");
        item.request_data = param.value("RequestData", "");
        item.send_data = param.value("SendData", "");
        item.request_method = param.value("RequestMethod", item.request_method);
        for (const json& entry : param.value("RequestQueryParams", json::array()))
            item.query_params[entry.at("QueryParam").at("key")] = entry.at("QueryParam").at("value");
        item.request_pattern = param.value("RequestPattern", item.request_pattern);
        const std::string path = item.save_path + item.file_name;
        if (!server_paths_.insert(path).second)
            violations_.push_back({pointer + "/FileName", path + " stands in the list twice"});
        else if (QFileInfo::exists(QString::fromStdString(path)))
            violations_.push_back({pointer + "/FileName", path + " is there already and would be added to"});
        files_.push_back(std::move(item));
    }

    void AddClip(const json& request, const std::string& pointer)
    {
        const json param = request.value("ShortVideoParam", json::object());
        ShortVideoItem item;
        item.file_name = request.at("FileName");
        item.save_path = MakeFolder(request, pointer);
        item.str_shortvideo_url = request.at("RequestUrl");
        item.EnumUpLoadType = param.value("DownloadType", item.EnumUpLoadType);
        item.EnumStoragePlace = param.value("StoragePlace", item.EnumStoragePlace);
        clips_.push_back(std::move(item));
    }

    static std::string NameOf(const std::string& first, std::size_t count)
    {
        return count == 1 ? first : first + " and " + std::to_string(count - 1) + " more";
    }

    template <typename Item>
    static std::vector<ExpectedFile> FilesOf(const std::vector<Item>& items)
    {
        std::vector<ExpectedFile> files;
        files.reserve(items.size());
        for (const Item& item : items)
            files.push_back({item.save_path + item.file_name, true, "", ExpectedFile::Content::kAny});
        return files;
    }

    void TakeServerFiles()
    {
        if (files_.empty())
            return;
        auto record = std::make_shared<FileExportParam>();
        FillBase(*record, ZellTaskKit::ServerFile, NameOf(files_.front().file_name, files_.size()),
                 files_.front().save_path);
        std::vector<ExpectedFile> expected = FilesOf(files_);
        record->file_items = std::move(files_);
        tasks_.push_back({record, std::move(expected)});
    }

    void TakeVideos()
    {
        if (videos_.empty())
            return;
        auto record = std::make_shared<VideoTaskParam>();
        FillBase(*record, ZellTaskKit::VideoFile, NameOf("video request", videos_.size()), save_folder_);
        record->video_requests = std::move(videos_);
        tasks_.push_back({record, {}});
    }

    void TakeClips()
    {
        if (clips_.empty())
            return;
        auto record = std::make_shared<ShortVideoDownloadParam>();
        FillBase(*record, ZellTaskKit::ShortVideoFile, NameOf(clips_.front().file_name, clips_.size()),
                 clips_.front().save_path);
        std::vector<ExpectedFile> expected = FilesOf(clips_);
        record->clips = std::move(clips_);
        tasks_.push_back({record, std::move(expected)});
    }

    const std::string save_folder_;
    std::vector<Violation>& violations_;
    std::vector<PlannedTask> tasks_;
    std::set<std::string> server_paths_;
    std::vector<FileExportItem> files_;
    std::vector<std::string> videos_;
    std::vector<ShortVideoItem> clips_;
};

}  // namespace

bool IsFileList(const json& request)
{
    return request.is_object() && request.contains(kList);
}

std::vector<PlannedTask> PlanTasks(const json& request, const std::string& save_folder,
                                   std::vector<Violation>& violations)
{
    Plan plan(save_folder, violations);
    int index = 0;
    for (const json& entry : request.at(kList))
        plan.Add(entry.at("FileRequest"),
                 "/" + std::string(kList) + "/" + std::to_string(index++) + "/FileRequest");
    return plan.Take();
}

}  // namespace FetchyardClient
