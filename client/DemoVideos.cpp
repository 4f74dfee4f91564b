#include "DemoVideos.h"

#include "ZellNetLinkHost/HttpClient.h"

#include <QDateTime>

#include <utility>

namespace FetchyardClient {

using nlohmann::json;

namespace {

constexpr int kSecondsIn = 30;  // from the begin of the recording
constexpr int kSeconds = 10;

// When the camera's first recording begins; not valid if there is none.
QDateTime RecordedFrom(const std::string& station, int camera)
{
    ZellNetLink::HttpRequest request;
    request.url = station + "/api/v1/recordings?camera=" + std::to_string(camera);
    const ZellNetLink::HttpResponse response =
        ZellNetLink::HttpClient::Instance().Perform(std::move(request));
    const json answer = json::parse(response.body, nullptr, false);
    if (!answer.is_object() || !answer.contains("Recordings") || answer["Recordings"].empty())
        return {};
    const std::string begin = answer["Recordings"][0].value("BeginTime", "");
    return QDateTime::fromString(QString::fromStdString(begin), Qt::ISODateWithMs);
}

std::string IsoTime(const QDateTime& time)
{
    return time.toUTC().toString(Qt::ISODate).toStdString();
}

// A line below the station's clock and one at the bottom, in three scripts.
json Lines()
{
    const auto line = [](const char* content, int edge, int distance) {
        return json{
            {"Content", content},
            {"FontSettings",
             {{"Size", 32}, {"Color", {{"Red", 255}, {"Green", 255}, {"Blue", 255}}}, {"Transparency", 0}}},
            {"PosXType", 0},
            {"PosX", 24},
            {"PosYType", edge},
            {"PosY", distance},
            {"BeginMilliSecond", 0},
            {"EndMilliSecond", 0}};
    };
    return {
        {"OverlayType", 1},
        {"OverlayLineArray",
         {{"LineArrayType", 0},
          {"ContentLine", {line("Fetchyard: Gate South", 0, 80), line("出口 · المخرج الجنوبي", 1, 24)}}}}};
}

}  // namespace

json DemoVideos(const std::string& station)
{
    const std::pair<const char*, int> kinds[] = {{"plain", 2}, {"stamped", 2}, {"as avi", 1}};
    json videos = json::array();
    int camera = 0;
    for (const auto& [name, format] : kinds) {
        const QDateTime begin = RecordedFrom(station, ++camera).addSecs(kSecondsIn);
        if (!begin.isValid())
            continue;
        json video = {{"ExportFileName", std::string("camera ") + std::to_string(camera) + " " + name},
                      {"VideoFormat", format},
                      {"CameraID", camera},
                      {"WorkstationID", 0},
                      {"BeginTime", IsoTime(begin)},
                      {"EndTime", IsoTime(begin.addSecs(kSeconds))}};
        if (std::string(name) == "stamped")
            video["InfoOverlay"] = Lines();
        videos.push_back(video);
    }
    return videos;
}

}  // namespace FetchyardClient
