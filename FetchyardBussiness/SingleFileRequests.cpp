#include "FetchyardBussiness/SingleFileRequests.h"

#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "FetchyardBussiness/ErrorText.h"
#include "FetchyardBussiness/FileDownload/FileExportTask.h"
#include "FetchyardBussiness/ImageDownload/ImageDownloadTask.h"
#include "FetchyardBussiness/Log.h"
#include "FetchyardBussiness/RequestReader.h"
#include "FetchyardBussiness/ShortVideo/ShortVideoExportTask.h"
#include "FetchyardBussiness/TaskDispatch.h"
#include "FetchyardBussiness/VideoDownload/VideoDownloadTask.h"

namespace FetchyardBussiness {

using ZellTaskKit::CDownloadTaskBase;
using ZellTaskKit::CDownloadTaskParam;

namespace details {

namespace {

// Kinds of file in a request; the numbers are not those of ZellTaskKit::DownloadFileType.
enum RequestFileType : int {
    kRequestPicture = 0,
    kRequestServerFile = 1,
    kRequestVideo = 2,
    kRequestShortVideo = 3,
};

// The records that one request fills.
struct SingleFileRecords
{
    ImageParam pictures;
    FileExportParam files;
    VideoTaskParam videos;
    ShortVideoDownloadParam clips;
};

bool ParseNode(ZellNetLink::CRapidJsonProto& document, const std::string& node)
{
    if (document.set_str(node))
        return true;
    LogError("Input image param failed. node json: %s.", node.c_str());
    return false;
}

bool ReadPictureEntry(const RequestReader& entry, const std::string& url, SingleFileRecords& records)
{
    ImageItem item;
    if (!ParseImageParam(item, entry.Node("ImageParam")))
        return false;
    item.image_url = url;
    records.pictures.image_items.push_back(std::move(item));
    return true;
}

bool ReadFileEntry(const RequestReader& entry, const std::string& save_path, const std::string& file_name,
                   const std::string& url, SingleFileRecords& records)
{
    FileExportItem item;
    if (!ParseFileParam(item, entry.Node("FileParam")))
        return false;
    item.file_name = file_name;
    item.save_path = save_path;
    item.request_url = url;
    records.files.file_items.push_back(std::move(item));
    return true;
}

bool ReadClipEntry(const RequestReader& entry, const std::string& save_path, const std::string& file_name,
                   const std::string& url, SingleFileRecords& records)
{
    ShortVideoItem item;
    if (!ParseShortVideoParam(item, entry.Node("ShortVideoParam")))
        return false;
    item.file_name = file_name;
    item.save_path = save_path;
    item.str_shortvideo_url = url;
    records.clips.clips.push_back(std::move(item));
    return true;
}

// False if the node of the entry's kind is no JSON. An entry of an unknown kind is passed over.
bool ReadEntry(const RequestReader& entry, const std::string& request, SingleFileRecords& records)
{
    const int type = entry.Number("FileType");
    const std::string save_path = entry.Text("SavePath");
    const std::string file_name = entry.Text("FileName");
    const std::string url = entry.Text("RequestUrl");
    switch (type) {
        case kRequestPicture:
            return ReadPictureEntry(entry, url, records);
        case kRequestServerFile:
            return ReadFileEntry(entry, save_path, file_name, url, records);
        case kRequestVideo:
            return ParseVideoParam(records.videos, entry.Node("VideoParam"));
        case kRequestShortVideo:
            return ReadClipEntry(entry, save_path, file_name, url, records);
        default:
            LogError("Input file type error. type = %d, json: %s", type, request.c_str());
            return true;
    }
}

bool ReadRequest(const std::string& request, SingleFileRecords& records)
{
    ZellNetLink::CRapidJsonProto document;
    bool understood = document.set_str(request);
    const RequestReader root(document, "/");
    const int count = understood ? root.Count("FileRequestList") : 0;
    for (int number = 1; number <= count && understood; ++number)
        understood =
            ReadEntry(root.Element("FileRequestList", number).Below("FileRequest"), request, records);
    if (understood)
        return true;
    LogError("Input json error. json = %s", request.c_str());
    Zell::Base::Error::SetLastError(OwnError(kErrorBadInput));
    return false;
}

// The task gets the base part of the record alone, so that it finds no record of its own kind and fails at
// its first step. That is required of this overload: the lists travel with the other one.
template <typename Task>
std::shared_ptr<CDownloadTaskBase> TaskWithBasePart(const CDownloadTaskParam& record)
{
    auto task = std::make_shared<Task>();
    task->SetDownloadTaskParam(std::make_shared<CDownloadTaskParam>(record), false);
    return task;
}

// One task for each request: what it holds of further kinds is dropped.
std::shared_ptr<CDownloadTaskBase> MakeTask(const SingleFileRecords& records)
{
    if (!records.pictures.image_items.empty())
        return TaskWithBasePart<CImageDownloadTask>(records.pictures);
    if (!records.files.file_items.empty())
        return TaskWithBasePart<CFileExportTask>(records.files);
    if (!records.videos.video_requests.empty())
        return TaskWithBasePart<CVideoDownloadTask>(records.videos);
    if (!records.clips.clips.empty())
        return TaskWithBasePart<CShortVideoExportTask>(records.clips);
    LogError("Cannot get download params.");
    return nullptr;
}

// Null, with a log line, if the record is not of the kind that its file type names.
template <typename Task, typename Record>
std::shared_ptr<CDownloadTaskBase> TaskWithRecord(const std::shared_ptr<CDownloadTaskParam>& record)
{
    const auto typed = std::dynamic_pointer_cast<Record>(record);
    if (!typed) {
        LogError("Convert ptr failed.");
        return nullptr;
    }
    auto task = std::make_shared<Task>();
    task->SetDownloadTaskParam(typed, false);
    return task;
}

bool IsKnown(ZellTaskKit::DownloadFileType type)
{
    return type >= ZellTaskKit::VideoFile && type <= ZellTaskKit::ShortVideoFile;
}

std::shared_ptr<CDownloadTaskBase> MakeTask(const std::shared_ptr<CDownloadTaskParam>& record)
{
    switch (record->GetVal_file_type()) {
        case ZellTaskKit::VideoFile:
            return TaskWithRecord<CVideoDownloadTask, VideoTaskParam>(record);
        case ZellTaskKit::ImageFile:
            return TaskWithRecord<CImageDownloadTask, ImageParam>(record);
        case ZellTaskKit::ServerFile:
            return TaskWithRecord<CFileExportTask, FileExportParam>(record);
        default:
            return TaskWithRecord<CShortVideoExportTask, ShortVideoDownloadParam>(record);
    }
}

}  // namespace

bool ParseImageParam(ImageItem& item, std::string node)
{
    ZellNetLink::CRapidJsonProto document;
    if (!ParseNode(document, node))
        return false;
    item.save_cache = document.get_bool_v("/SaveCache", false);
    item.workstation_id = document.get_int_v("/WorkstationID", -1);
    item.access_type = document.get_int_v("/AccessType", -1);
    item.image_type = document.get_int_v("/ImageType", -1);
    item.person_id = document.get_int_v("/PersonID", -1);
    return true;
}

bool ParseFileParam(FileExportItem& item, std::string node)
{
    ZellNetLink::CRapidJsonProto document;
    if (!ParseNode(document, node))
        return false;
    item.request_data = document.get_v("/RequestData", "");
    item.send_data = document.get_v("/SendData", "");
    item.request_method = document.get_v("/RequestMethod", "");
    const RequestReader root(document, "/");
    const int count = root.Count("RequestQueryParams");
    for (int number = 1; number <= count; ++number) {
        const RequestReader pair = root.Element("RequestQueryParams", number).Below("QueryParam");
        const std::string key = pair.Text("key");
        item.query_params[key] = pair.Text("value");
    }
    item.request_pattern = document.get_int_v("/RequestPattern", -1);
    return true;
}

bool ParseVideoParam(VideoTaskParam& param, std::string node)
{
    ZellNetLink::CRapidJsonProto document;
    if (!ParseNode(document, node))
        return false;
    param.video_requests.push_back(document.get_v("/VideoDownloadParam", ""));
    return true;
}

bool ParseShortVideoParam(ShortVideoItem& item, std::string node)
{
    ZellNetLink::CRapidJsonProto document;
    if (!ParseNode(document, node))
        return false;
    item.EnumStoragePlace = document.get_int_v("/StoragePlace", -1);
    item.EnumUpLoadType = document.get_int_v("/DownloadType", -1);
    return true;
}

}  // namespace details

bool CDownloadBussinessManager::AddFileDownloadTask(std::vector<std::string>& task_guids,
                                                    const std::vector<std::string>& requests)
{
    std::vector<std::shared_ptr<CDownloadTaskBase>> batch;
    for (const std::string& request : requests) {
        details::SingleFileRecords records;
        if (!details::ReadRequest(request, records))
            return false;
        const std::shared_ptr<CDownloadTaskBase> task = details::MakeTask(records);
        if (!task)
            continue;
        task_guids.push_back(task->GetGuid());
        batch.push_back(task);
    }
    // Both lines name another operation; readers of the log know them so.
    if (batch.empty()) {
        LogError(" CDownloadBussinessManager::AddDownloadCommTask  process task failed!");
        return false;
    }
    LogError(" CDownloadBussinessManager::AddDownloadCommTask  begin process task!");
    return details::DispatchTasks(batch);
}

bool CDownloadBussinessManager::AddFileDownloadTask(
    std::vector<std::string>& task_guids, const std::vector<std::shared_ptr<CDownloadTaskParam>>& records)
{
    std::vector<std::shared_ptr<CDownloadTaskBase>> batch;
    for (const std::shared_ptr<CDownloadTaskParam>& record : records) {
        if (!record) {
            LogError("Input download file ptr is nullptr.");
            continue;
        }
        if (!details::IsKnown(record->GetVal_file_type()))
            continue;
        const std::shared_ptr<CDownloadTaskBase> task = details::MakeTask(record);
        if (!task)
            return false;
        task_guids.push_back(task->GetGuid());
        batch.push_back(task);
    }
    return !batch.empty() && details::DispatchTasks(batch);
}

}  // namespace FetchyardBussiness
