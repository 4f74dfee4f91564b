#include "DemoCommand.h"

#include "DemoVideos.h"
#include "RunCommand.h"
#include "StationProgram.h"
#include "Words.h"

#include <QDir>
#include <QDirIterator>

#include <cstdio>
#include <utility>

namespace FetchyardClient {

namespace {

using nlohmann::json;

constexpr int kSeededEvents = 4000;
constexpr int kRows = 2000;
constexpr int kRowsOfPdf = 200;
constexpr char kPassword[] = "fetchyard";

// Numbers of the request's formats and kinds of export.
enum FileType : int { kWorkbook = 0, kCsv = 1, kPdf = 2, kText = 3 };
constexpr int kLogs = 3;
constexpr int kDockStation = 4;

// What an export asks a station for, and where it goes.
struct Order
{
    const char* name = "";
    int file_type = kWorkbook;
    const char* api = "/api/v1/events/report";
    json condition;
};

// The page number comes first, with a comma behind it: the library rewrites it in the text.
json PageCondition(const char* pictures, int limit)
{
    return {{"PageIndex", 1}, {"PageSize", 100}, {"Limit", limit}, {"Pictures", pictures}};
}

json ExportRequest(const std::string& folder, const Order& order, int operate_type = 0)
{
    json data;
    const std::string condition = order.condition.is_null() ? std::string() : order.condition.dump();
    data["ExportFileParam"] = {
        {"RequestMethod", "POST"}, {"RequestAPI", order.api}, {"RequestCondition", condition}};
    data["WriteFileCondition"] = {
        {"SaveFilePathDir", folder}, {"ExportFileName", order.name}, {"ExportFileType", order.file_type}};
    return {{"FileExportRequest", {{"FileExportType", operate_type}, {"RequestData", data}}}};
}

json PackedWorkbook(const std::string& folder)
{
    json request = ExportRequest(folder, {"Alarms with pictures", kWorkbook, "/api/v1/events/report",
                                          PageCondition("embedded", kRows)});
    json& write = request["FileExportRequest"]["RequestData"]["WriteFileCondition"];
    write["IsNeedCompressZip"] = true;
    write["ZipPassword"] = kPassword;
    return request;
}

// The station makes the page of it, and the client the PDF.
json GeneratedPdf(const std::string& folder)
{
    json condition = PageCondition("embedded", kRowsOfPdf);
    condition["FileType"] = 2;
    condition["PdfPageSize"] = "A4";
    condition["PdfPageOrientation"] = 0;
    return ExportRequest(folder,
                         {"Alarms by the station", kPdf, "/api/v1/events/generated-report", condition});
}

json Evidence(const std::string& folder)
{
    const char* name = "Evidence of the gate";
    json request =
        ExportRequest(folder, {name, kText, "/api/v1/events/report", PageCondition("none", kRowsOfPdf)});
    request["FileExportPurpose"] = 1;
    request["EvidenceParam"] = {{"CaseNumber", "2026-0117"},
                                {"Title", "Alarms at the gate"},
                                {"Remark", "made by the demonstration"},
                                {"Folder", folder + name + "/"}};
    return request;
}

json GatheredLogs(const std::string& folder)
{
    return ExportRequest(
        folder, {"Logs of the cameras", kText, "/api/v1/logs/gather", {{"CameraIds", {1, 2, 3}}}}, kLogs);
}

json DockStationFiles(const std::string& folder)
{
    json request = ExportRequest(folder, {"Files of a body camera", kText, "", json()}, kDockStation);
    json& files = request["FileExportRequest"]["RequestData"]["ExportFileParam"]["DeviceIdList"];
    const std::pair<int, const char*> taken[] = {
        {1001, "patrol.jpg"}, {1002, "patrol.mjpeg"}, {1003, "patrol.wav"}, {1004, "times.txt"}};
    for (const auto& [id, name] : taken)
        files.push_back({{"DeviceId", 1}, {"FileID", id}, {"FileName", name}});
    return request;
}

json PicturesAlone(const std::string& folder)
{
    json request = ExportRequest(folder, {"Pictures and a clip", kText, "", json()});
    json& files = request["FileExportRequest"]["RequestData"]["DownloadFiles"];
    for (const int event : {1, 2, 3})
        files["ImageDownload"].push_back({{"Imageurl", "/pictures/event-" + std::to_string(event) + ".jpg"},
                                          {"ImageName", "alarm " + std::to_string(event)}});
    files["ObjectStorageDownload"] = {{{"FileUrl", "/storage/clip-1.mjpeg"},
                                       {"FileName", "alarm 1.mjpeg"},
                                       {"UploadType", 1},
                                       {"StoragePlace", 1}}};
    return request;
}

// The archive lies below the client's save folder, which is that of the demonstration.
json PersonPictures()
{
    json search;
    search["RequestMethod"] = "POST";
    search["RequestAPI"] = "/api/v1/persons/report";
    search["RequestCondition"] = json({{"PageIndex", 1}, {"PageSize", 50}, {"PicturesOfPerson", 5}}).dump();
    const json node = {
        {"PicDownloadRequestNode", search}, {"ZipEncodingPassword", kPassword}, {"ZipName", "Persons"}};
    return {{"FileExportRequest", {{"FileExportType", 2}, {"PersonExportPicNode", node}}}};
}

json Videos(const std::string& folder, const std::string& station)
{
    json request = ExportRequest(folder, {"Videos of the gates", kText, "", json()});
    request["FileExportRequest"]["RequestData"]["DownloadFiles"]["VideoDownload"] = DemoVideos(station);
    return request;
}

std::vector<RequestSource> DemoRequests(const std::string& folder, const std::string& station)
{
    const json table = ExportRequest(
        folder, {"Alarms as CSV", kCsv, "/api/v1/events/report", PageCondition("linked", kRows)});
    return {{"Excel report, packed", PackedWorkbook(folder).dump()},
            {"CSV report", table.dump()},
            {"PDF that the station generates", GeneratedPdf(folder).dump()},
            {"evidence", Evidence(folder).dump()},
            {"logs that the station gathers", GatheredLogs(folder).dump()},
            {"files of a dock station", DockStationFiles(folder).dump()},
            {"pictures and a clip", PicturesAlone(folder).dump()},
            {"videos", Videos(folder, station).dump()},
            {"pictures of persons", PersonPictures().dump()}};
}

void ListFolder(const std::string& folder)
{
    std::printf("\n%s holds\n", folder.c_str());
    QDirIterator walk(QString::fromStdString(folder), QDir::Files, QDirIterator::Subdirectories);
    unsigned long long pictures = 0;
    unsigned long long picture_bytes = 0;
    while (walk.hasNext()) {
        walk.next();
        const auto size = static_cast<unsigned long long>(walk.fileInfo().size());
        if (walk.fileName().endsWith(".jpg")) {
            ++pictures;
            picture_bytes += size;
            continue;
        }
        const QString path = QDir(QString::fromStdString(folder)).relativeFilePath(walk.filePath());
        std::printf("  %10s  %s\n", SizeWords(size).c_str(), path.toStdString().c_str());
    }
    if (pictures > 0)
        std::printf("  %10s  %s pictures\n", SizeWords(picture_bytes).c_str(),
                    GroupedNumber(pictures).c_str());
}

void TellHowToOpen(const std::string& folder)
{
    std::printf(
        "\nTo open them:\n"
        "  the archive   7za x -p%s \"%sAlarms with pictures/Alarms with pictures.zip\"\n"
        "  the persons   7za x -p%s \"%sPersons/Persons.zip\"\n"
        "  the workbook  any office program; the pictures stand in its cells\n"
        "  the CSV       any office program, as UTF-8 with commas\n",
        kPassword, folder.c_str(), kPassword, folder.c_str());
}

}  // namespace

int DemoCommand(const HostOptions& options, const std::string& out_folder)
{
    const QString out = QDir().absoluteFilePath(QString::fromStdString(out_folder));
    if (!QDir().mkpath(out)) {
        std::fprintf(stderr, "the folder %s can't be made\n", out.toStdString().c_str());
        return kSomethingFailed;
    }
    const std::string folder = out.toStdString() + "/";
    ZellClientHost::ClientSettings settings;
    std::string reason;
    StationProgram station;
    std::printf("preparing a station with %s events\n", GroupedNumber(kSeededEvents).c_str());
    std::fflush(stdout);
    if (!MakeSettings(options, settings, reason) ||
        !station.Start(settings.data_path + "DemoStation", kSeededEvents, reason)) {
        std::fprintf(stderr, "%s\n", reason.c_str());
        return kSomethingFailed;
    }
    std::printf("exporting %s events from %s\n", GroupedNumber(kRows).c_str(), station.Address().c_str());
    RunOptions run;
    run.host = options;
    run.host.station = station.Address();
    run.host.save_folder = folder;
    const int code = RunRequests(run, DemoRequests(folder, station.Address()));
    ListFolder(folder);
    if (code == kAllWell)
        TellHowToOpen(folder);
    return code;
}

}  // namespace FetchyardClient
