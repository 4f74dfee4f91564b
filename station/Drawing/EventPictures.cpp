#include "station/Drawing/EventPictures.h"

#include "station/Clock.h"
#include "station/Drawing/Jpeg.h"
#include "station/Drawing/Overlay.h"
#include "station/Drawing/Scenes.h"
#include "station/Random.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <system_error>

namespace Station {
namespace {

constexpr std::size_t kMostScenes = 32;
constexpr std::uint64_t kMostKeptBytes = 2ull << 30;

bool ReadFile(const std::filesystem::path& path, std::string& bytes)
{
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    if (!file)
        return false;
    const auto size = file.tellg();
    if (size <= 0)
        return false;
    bytes.resize(static_cast<std::size_t>(size));
    file.seekg(0);
    return static_cast<bool>(file.read(bytes.data(), size));
}

std::uint64_t BytesIn(const std::filesystem::path& folder)
{
    std::uint64_t bytes = 0;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        std::error_code of_entry;
        const auto size = entry.file_size(of_entry);
        bytes += of_entry ? 0 : size;
    }
    return bytes;
}

}  // namespace

std::filesystem::path DrawnPictureFolder(const std::filesystem::path& data)
{
    return data / "drawn";
}

EventPictures::EventPictures(const std::filesystem::path& data)
    : stored_(PictureFolder(data)), drawn_(DrawnPictureFolder(data))
{
    std::error_code error;
    std::filesystem::create_directories(drawn_, error);
    kept_bytes_ = BytesIn(drawn_);
}

bool EventPictures::Get(const Event& event, std::string& bytes, std::string& reason)
{
    if (!event.picture.empty()) {
        if (ReadFile(stored_ / std::filesystem::u8path(event.picture), bytes))
            return true;
        reason = "The photograph " + event.picture + " is missing from the data folder.";
        return false;
    }
    const std::filesystem::path file = drawn_ / ("event-" + std::to_string(event.id) + ".jpg");
    if (ReadFile(file, bytes))
        return true;
    bytes = Draw(event);
    Keep(file, bytes);
    return true;
}

void EventPictures::Keep(const std::filesystem::path& file, const std::string& bytes)
{
    if (kept_bytes_ + bytes.size() > kMostKeptBytes)
        return;
    // Under another name first: a reader never meets half a picture. A full disk only costs the drawing next
    // time.
    const std::filesystem::path temporary = drawn_ / ("new-" + std::to_string(++next_name_));
    std::error_code error;
    {
        std::ofstream out(temporary, std::ios::binary);
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        out.close();
        if (!out) {
            std::filesystem::remove(temporary, error);
            return;
        }
    }
    std::filesystem::rename(temporary, file, error);
    kept_bytes_ += bytes.size();
}

const QImage& EventPictures::SceneOf(const Event& event)
{
    const Scene& scene = FindScene(event.scene);
    const Light light = LightAt(scene, ToCalendar(event.time).hour);
    const std::string key = std::to_string(event.camera_id) + "-" + std::to_string(static_cast<int>(light));
    const auto known = std::find_if(scenes_.begin(), scenes_.end(),
                                    [&key](const EmptyScene& one) { return one.key == key; });
    if (known != scenes_.end()) {
        scenes_.splice(scenes_.begin(), scenes_, known);
        return scenes_.front().image;
    }
    const auto seed = static_cast<std::uint64_t>(event.camera_id) * 7919u;
    scenes_.push_front({key, DrawScene(scene, seed, light)});
    if (scenes_.size() > kMostScenes)
        scenes_.pop_back();
    return scenes_.front().image;
}

std::string EventPictures::Draw(const Event& event)
{
    QImage image;
    {
        const std::lock_guard<std::mutex> lock(drawing_);
        image = SceneOf(event).copy();
        DrawOverlay(image, FindScene(event.scene), event);
    }
    return ToJpeg(image);
}

const std::string& EventPictures::Synthetic()
{
    std::call_once(synthetic_once_, [this] {
        Event event;
        event.id = 1;
        event.time = 1769850000;
        event.camera_id = 1;
        event.camera = "Synthetic camera";
        event.scene = "street";
        event.type = "Vehicle";
        event.plate = "FY 1234";
        event.confidence = 90;
        synthetic_ = Draw(event);
    });
    return synthetic_;
}

}  // namespace Station
