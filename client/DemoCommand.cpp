#include "DemoCommand.h"

#include "RunCommand.h"
#include "StationProgram.h"
#include "Words.h"

#include <QDir>
#include <QDirIterator>

#include <cstdio>

namespace FetchyardClient {

namespace {

using nlohmann::json;

constexpr int kSeededEvents = 4000;
constexpr int kExportedEvents = 2000;
constexpr char kPassword[] = "fetchyard";

json PageRequest(const std::string& folder, const char* name, int type, const char* pictures)
{
    // The page number comes first, with a comma behind it: the library rewrites it in the text.
    const std::string condition = R"({"PageIndex":1,"PageSize":100,"Limit":)" +
                                  std::to_string(kExportedEvents) + R"(,"Pictures":")" + pictures + R"("})";
    json data;
    data["ExportFileParam"] = {
        {"RequestMethod", "POST"}, {"RequestAPI", "/api/v1/events/report"}, {"RequestCondition", condition}};
    data["WriteFileCondition"] = {
        {"SaveFilePathDir", folder}, {"ExportFileName", name}, {"ExportFileType", type}};
    return {{"FileExportRequest", {{"FileExportType", 0}, {"RequestData", data}}}};
}

std::vector<RequestSource> DemoRequests(const std::string& folder)
{
    json workbook = PageRequest(folder, "Alarms with pictures", 0, "embedded");
    json& condition = workbook["FileExportRequest"]["RequestData"]["WriteFileCondition"];
    condition["IsNeedCompressZip"] = true;
    condition["ZipPassword"] = kPassword;
    const json table = PageRequest(folder, "Alarms as CSV", 1, "linked");
    return {{"Excel report, packed", workbook.dump()}, {"CSV report", table.dump()}};
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
        std::printf("  %10s  %s pictures that the CSV report names\n", SizeWords(picture_bytes).c_str(),
                    GroupedNumber(pictures).c_str());
}

void TellHowToOpen(const std::string& folder)
{
    std::printf(
        "\nTo open them:\n"
        "  the archive   7za x -p%s \"%sAlarms with pictures/Alarms with pictures.zip\"\n"
        "  the workbook  any office program; the pictures stand in its cells\n"
        "  the CSV       any office program, as UTF-8 with commas\n",
        kPassword, folder.c_str());
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
    std::printf("exporting %s events from %s\n", GroupedNumber(kExportedEvents).c_str(),
                station.Address().c_str());
    RunOptions run;
    run.host = options;
    run.host.station = station.Address();
    run.host.save_folder = folder;
    const int code = RunRequests(run, DemoRequests(folder));
    ListFolder(folder);
    if (code == kAllWell)
        TellHowToOpen(folder);
    return code;
}

}  // namespace FetchyardClient
