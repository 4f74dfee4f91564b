#pragma once

#include "station/Data/Database.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace Station {

struct Camera
{
    std::int64_t id = 0;
    std::string name;
    std::string place;
    std::string scene;  // what its pictures show, see Drawing/Scenes.h; empty for imported photographs
};

struct Event
{
    std::int64_t id = 0;
    std::int64_t time = 0;  // seconds since 1970, UTC
    std::int64_t camera_id = 0;
    std::string camera;
    std::string place;
    std::string scene;
    std::string type;
    int level = 1;  // 1 to 5
    std::string person;
    std::string plate;
    int confidence = 0;  // percent
    std::string text;
    std::string picture;  // name of a stored file; empty if the picture is drawn
};

// The data folder. Connections are lent, so that many threads read at once.
class Store
{
public:
    class Loan
    {
    public:
        Loan(Store& store, std::unique_ptr<Database> database);
        ~Loan();
        Loan(const Loan&) = delete;
        Loan& operator=(const Loan&) = delete;
        Database* operator->() const { return database_.get(); }
        Database& operator*() const { return *database_; }

    private:
        Store& store_;
        std::unique_ptr<Database> database_;
    };

    // Throws StoreError if the folder holds no data, or damaged data.
    explicit Store(const std::filesystem::path& folder);

    const std::filesystem::path& Folder() const { return folder_; }
    Loan Borrow();

    std::vector<Camera> Cameras();
    std::optional<Event> FindEvent(std::int64_t id);
    // Key of the cipher that clients share; empty if there is none.
    std::string CipherKey() const;

private:
    const std::filesystem::path folder_;
    std::mutex mutex_;
    std::vector<std::unique_ptr<Database>> idle_;
};

std::filesystem::path DatabaseFile(const std::filesystem::path& folder);
std::filesystem::path PictureFolder(const std::filesystem::path& folder);
// Logs and other files that the station serves as they are; a person may add some.
std::filesystem::path FileFolder(const std::filesystem::path& folder);
// Reports that wait to be fetched.
std::filesystem::path GeneratedFolder(const std::filesystem::path& folder);
// Logs that wait to be fetched.
std::filesystem::path GatheredFolder(const std::filesystem::path& folder);
std::filesystem::path CipherKeyFile(const std::filesystem::path& folder);

// Opens the folder's data for writing; makes the folder and the tables if they are not there. Throws
// StoreError.
std::unique_ptr<Database> OpenForWriting(const std::filesystem::path& folder);

// The columns that ReadEvent reads, for a query over EventTables.
inline constexpr char kEventColumns[] =
    "e.id, e.time, e.camera, c.name, c.place, c.scene, e.type, e.level, e.person, e.plate, e.confidence, "
    "e.text, "
    "e.picture";
inline constexpr char kEventTables[] = "events e JOIN cameras c ON c.id = e.camera";
Event ReadEvent(const Statement& statement);

std::int64_t AddCamera(Database& database, const Camera& camera);
// The event's id is given by the store.
std::int64_t AddEvent(Database& database, const Event& event);

}  // namespace Station
