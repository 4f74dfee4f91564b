#include "station/Seeding/FileSeeder.h"

#include "station/Clock.h"
#include "station/Random.h"

#include <fstream>
#include <string>

namespace Station {
namespace {

constexpr int kLoggingCameras = 12;
constexpr std::size_t kFirmwareBytes = 3u << 20;

void WriteFile(const std::filesystem::path& path, const std::string& content)
{
    std::ofstream file(path, std::ios::binary);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    file.close();
    if (!file)
        throw StoreError("The file " + path.u8string() + " can't be written.");
}

std::string LogOf(Database& database, int camera)
{
    Statement query =
        database.Prepare("SELECT time, type, level, confidence FROM events WHERE camera = ? ORDER BY id");
    query.Add(std::int64_t{camera});
    std::string log;
    while (query.Step())
        log += FormatTime(query.Int(0)) + " " + std::string(query.Text(1)) + ", level " +
               std::to_string(query.Int(2)) + ", " + std::to_string(query.Int(3)) + " %\n";
    return log;
}

std::string Firmware()
{
    std::string bytes = "FIRMWARE 2.4.1\n";
    Random random(241);
    while (bytes.size() < kFirmwareBytes)
        bytes += static_cast<char>(random.Next() & 0xFF);
    return bytes;
}

}  // namespace

void SeedFiles(Database& database, const std::filesystem::path& data)
{
    const std::filesystem::path folder = FileFolder(data);
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    for (int camera = 1; camera <= kLoggingCameras; ++camera) {
        const std::string log = LogOf(database, camera);
        if (!log.empty())
            WriteFile(folder / ("camera-" + std::to_string(camera) + ".log"), log);
    }
    WriteFile(folder / "firmware-2.4.1.bin", Firmware());
}

}  // namespace Station
