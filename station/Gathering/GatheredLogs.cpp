#include "station/Gathering/GatheredLogs.h"

#include "station/Clock.h"
#include "station/Generated/OutputFile.h"
#include "station/Making/Polls.h"
#include "station/Report/EventQuery.h"
#include "station/Report/JsonText.h"
#include "station/Services.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <system_error>

namespace Station {
namespace {

// A log has one line for each event, whatever its texts hold.
std::string OneLine(const std::string& text)
{
    std::string line = ToValidUtf8(text);
    std::replace_if(
        line.begin(), line.end(), [](char letter) { return static_cast<unsigned char>(letter) < 0x20; }, ' ');
    return line;
}

std::string RangeOf(const GatherRequest& request)
{
    return (request.begin ? FormatTime(*request.begin) : "the first event") + " until " +
           (request.end ? FormatTime(*request.end) : "the last one");
}

std::string LineOf(const Event& event)
{
    std::string line = FormatTime(event.time) + "  event " + std::to_string(event.id) + ": " +
                       OneLine(event.type) + ", level " + std::to_string(event.level) + ", " +
                       std::to_string(event.confidence) + " %";
    if (!event.person.empty())
        line += ", person " + OneLine(event.person);
    if (!event.plate.empty())
        line += ", plate " + OneLine(event.plate);
    return line + ", " + OneLine(event.text) + "\n";
}

// The number of lines of events.
std::int64_t WriteCameraLog(Database& database, const Camera& camera, const GatherRequest& request,
                            const std::filesystem::path& path, WorkProgress& progress)
{
    OutputFile file(path);
    file.Add("Camera " + std::to_string(camera.id) + ", " + OneLine(camera.name) + ", " +
             OneLine(camera.place) + ", from " + RangeOf(request) + ", times in UTC\n");
    ReportCondition condition;
    condition.camera_ids = {camera.id};
    condition.begin = request.begin;
    condition.end = request.end;
    std::int64_t lines = 0;
    ReadEvents(database, condition, [&](const Event& event) {
        file.Add(LineOf(event));
        ++lines;
        ++progress.rows;
        return !progress.is_unwanted;
    });
    file.Close();
    return lines;
}

void Gather(Store& store, const std::vector<Camera>& cameras, const GatherRequest& request,
            const std::filesystem::path& folder, WorkProgress& progress)
{
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        throw StoreError("The folder for the logs can't be made: " + error.message() + ".");
    const Store::Loan database = store.Borrow();
    OutputFile station(folder / "station.log");
    station.Add("Logs of " + std::to_string(cameras.size()) + " cameras, from " + RangeOf(request) +
                ", times in UTC\n");
    std::vector<std::string> names;
    for (const Camera& camera : cameras) {
        if (progress.is_unwanted)
            return;
        names.push_back("camera-" + std::to_string(camera.id) + ".log");
        const std::int64_t lines =
            WriteCameraLog(*database, camera, request, folder / names.back(), progress);
        station.Add(names.back() + "  " + OneLine(camera.name) + ": " + std::to_string(lines) + " events\n");
    }
    station.Close();
    names.push_back("station.log");
    progress.names = names;
}

}  // namespace

bool ReadGatherRequest(const nlohmann::json& json, GatherRequest& request, std::string& reason)
{
    if (!json.is_object()) {
        reason = "The condition must be an object.";
        return false;
    }
    return ReadNumbers(json, "CameraIds", request.camera_ids, reason) &&
           ReadPointInTime(json, "BeginTime", request.begin, reason) &&
           ReadPointInTime(json, "EndTime", request.end, reason) &&
           ReadPasswordCheck(json, request.password_check, reason) &&
           ReadText(json, "FileGuid", request.guid, reason) && ReadPolls(json, request.order, reason);
}

std::optional<WorkOrder> OrderOf(const GatherRequest& request, Services& services)
{
    std::vector<Camera> cameras;
    for (const Camera& camera : services.store.Cameras())
        if (request.camera_ids.empty() || std::find(request.camera_ids.begin(), request.camera_ids.end(),
                                                    camera.id) != request.camera_ids.end())
            cameras.push_back(camera);
    if (cameras.empty())
        return std::nullopt;
    WorkOrder order = request.order;
    order.make = [request, cameras, &store = services.store](const std::filesystem::path& folder,
                                                             WorkProgress& progress) {
        Gather(store, cameras, request, folder, progress);
    };
    return order;
}

}  // namespace Station
