#include "station/Dock/DockSeeder.h"

#include "station/Clock.h"
#include "station/Dock/BodyCamera.h"
#include "station/Dock/DockFiles.h"

#include <fstream>
#include <system_error>
#include <vector>

namespace Station {
namespace {

constexpr int kDevices = 2;
constexpr std::int64_t kIdsOfDevice = 1000;
constexpr std::int64_t kMinute = 60;

struct Recorded
{
    const char* suffix;
    std::string (*record)(std::uint64_t seed);
};
constexpr Recorded kRecorded[] = {
    {".jpg", BodyCameraPicture}, {".mjpeg", BodyCameraVideo}, {".wav", BodyCameraSound}};

void Keep(Database& database, const std::filesystem::path& data, const DockFile& file,
          const std::string& bytes)
{
    const std::filesystem::path path = PathOf(data, file);
    std::error_code error;
    std::filesystem::create_directories(path.parent_path(), error);
    std::ofstream out(path, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out)
        throw StoreError("The file " + path.u8string() + " can't be written.");
    AddDockFile(database, file);
}

void SeedDevice(Database& database, const std::filesystem::path& data, std::int64_t device,
                std::uint64_t seed, std::int64_t time)
{
    const std::string wearer = "patrol-" + std::to_string(device);
    DockFile file{device, device * kIdsOfDevice, "", time};
    std::string times;
    for (const Recorded& recorded : kRecorded) {
        ++file.id;
        file.name = wearer + "-" + FormatTimeForFile(file.time) + recorded.suffix;
        Keep(database, data, file, recorded.record(seed + static_cast<std::uint64_t>(file.id)));
        times += FormatTime(file.time) + "  " + file.name + "\n";
        file.time += 7 * kMinute;
    }
    ++file.id;
    file.name = wearer + "-times.txt";
    Keep(database, data, file, times);
}

}  // namespace

void SeedDock(Database& database, const std::filesystem::path& data, std::uint64_t seed, std::int64_t end)
{
    EnsureDockFiles(database);
    for (std::int64_t device = 1; device <= kDevices; ++device)
        SeedDevice(database, data, device, seed, end - (device * 90 * kMinute));
}

}  // namespace Station
