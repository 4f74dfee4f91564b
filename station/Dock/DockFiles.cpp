#include "station/Dock/DockFiles.h"

#include <array>
#include <utility>

namespace Station {
namespace {

constexpr char kTable[] =
    "CREATE TABLE IF NOT EXISTS dock_files(id INTEGER PRIMARY KEY, device INTEGER NOT NULL, name TEXT NOT "
    "NULL, "
    "time INTEGER NOT NULL)";
constexpr char kSelect[] = "SELECT device, id, name, time FROM dock_files";

DockFile ReadDockFile(const Statement& query)
{
    return {query.Int(0), query.Int(1), std::string(query.Text(2)), query.Int(3)};
}

}  // namespace

void EnsureDockFiles(Database& database)
{
    database.Run(kTable);
}

void AddDockFile(Database& database, const DockFile& file)
{
    Statement insert = database.Prepare("INSERT INTO dock_files(device, id, name, time) VALUES(?, ?, ?, ?)");
    insert.Add(file.device).Add(file.id).Add(std::string_view(file.name)).Add(file.time);
    insert.Run();
}

std::vector<DockFile> AllDockFiles(Database& database)
{
    Statement query = database.Prepare(std::string(kSelect) + " ORDER BY device, id");
    std::vector<DockFile> files;
    while (query.Step())
        files.push_back(ReadDockFile(query));
    return files;
}

std::optional<DockFile> FindDockFile(Database& database, std::int64_t device, std::int64_t id)
{
    Statement query = database.Prepare(std::string(kSelect) + " WHERE device = ? AND id = ?");
    query.Add(device).Add(id);
    if (!query.Step())
        return std::nullopt;
    return ReadDockFile(query);
}

std::filesystem::path DockFolder(const std::filesystem::path& data)
{
    return data / "dock";
}

std::filesystem::path PathOf(const std::filesystem::path& data, const DockFile& file)
{
    return DockFolder(data) / std::to_string(file.device) / std::to_string(file.id);
}

std::string ContentTypeOf(const DockFile& file)
{
    constexpr std::array<std::pair<std::string_view, std::string_view>, 4> kTypes = {
        {{".jpg", "image/jpeg"},
         {".mjpeg", "video/x-motion-jpeg"},
         {".wav", "audio/wav"},
         {".txt", "text/plain; charset=utf-8"}}};
    const std::string suffix = std::filesystem::u8path(file.name).extension().u8string();
    for (const auto& [known, type] : kTypes)
        if (known == suffix)
            return std::string(type);
    return "application/octet-stream";
}

}  // namespace Station
