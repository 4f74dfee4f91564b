#include "station/Data/Store.h"

#include <fstream>
#include <system_error>

namespace Station {
namespace {

// Tells the station's own files from other people's.
constexpr std::int64_t kApplicationId = 0x46595354;
constexpr std::int64_t kLayout = 1;

constexpr char kTables[] = R"(
CREATE TABLE IF NOT EXISTS cameras(
  id INTEGER PRIMARY KEY, name TEXT NOT NULL, place TEXT NOT NULL, scene TEXT NOT NULL);
CREATE TABLE IF NOT EXISTS events(
  id INTEGER PRIMARY KEY, time INTEGER NOT NULL, camera INTEGER NOT NULL REFERENCES cameras(id), type TEXT NOT NULL,
  level INTEGER NOT NULL, person TEXT NOT NULL, plate TEXT NOT NULL, confidence INTEGER NOT NULL, text TEXT NOT NULL,
  picture TEXT NOT NULL);
CREATE INDEX IF NOT EXISTS events_by_time ON events(time, id);
CREATE TABLE IF NOT EXISTS photographs(digest TEXT PRIMARY KEY, event INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS accounts(
  name TEXT PRIMARY KEY, salt TEXT NOT NULL, hash TEXT NOT NULL, rounds INTEGER NOT NULL);
)";

std::int64_t ReadPragma(Database& database, const std::string& name)
{
    Statement statement = database.Prepare("PRAGMA " + name);
    return statement.Step() ? statement.Int(0) : 0;
}

void CheckIdentity(Database& database, const std::string& file)
{
    if (ReadPragma(database, "application_id") != kApplicationId)
        throw StoreError("The data file " + file + " is not one of a station.");
    if (ReadPragma(database, "user_version") != kLayout)
        throw StoreError("The data file " + file + " was made by another version of the station.");
}

void CheckHealth(Database& database, const std::string& file)
{
    Statement check = database.Prepare("PRAGMA quick_check(1)");
    const bool has_answer = check.Step();
    if (!has_answer || check.Text(0) != "ok")
        throw StoreError("The data file " + file +
                         " is damaged: " + std::string(has_answer ? check.Text(0) : "") + ".");
}

}  // namespace

std::filesystem::path DatabaseFile(const std::filesystem::path& folder)
{
    return folder / "station.db";
}
std::filesystem::path PictureFolder(const std::filesystem::path& folder)
{
    return folder / "pictures";
}
std::filesystem::path FileFolder(const std::filesystem::path& folder)
{
    return folder / "files";
}

std::filesystem::path GeneratedFolder(const std::filesystem::path& folder)
{
    return folder / "generated";
}

std::filesystem::path GatheredFolder(const std::filesystem::path& folder)
{
    return folder / "gathered";
}

std::filesystem::path CipherKeyFile(const std::filesystem::path& folder)
{
    return folder / "sensitive.key";
}

std::unique_ptr<Database> OpenForWriting(const std::filesystem::path& folder)
{
    std::error_code error;
    std::filesystem::create_directories(PictureFolder(folder), error);
    if (error)
        throw StoreError("The folder " + PictureFolder(folder).u8string() +
                         " can't be made: " + error.message() + ".");
    const std::filesystem::path file = DatabaseFile(folder);
    auto database = std::make_unique<Database>(file, Database::Mode::Create);
    const bool is_new = ReadPragma(*database, "schema_version") == 0;
    if (!is_new)
        CheckIdentity(*database, file.u8string());
    database->Run("PRAGMA journal_mode=WAL");
    database->Run("PRAGMA synchronous=NORMAL");
    if (is_new) {
        database->Run("BEGIN");
        database->Run(kTables);
        database->Run("PRAGMA application_id=" + std::to_string(kApplicationId));
        database->Run("PRAGMA user_version=" + std::to_string(kLayout));
        database->Run("COMMIT");
    }
    return database;
}

Store::Store(const std::filesystem::path& folder) : folder_(folder)
{
    const std::filesystem::path file = DatabaseFile(folder_);
    std::error_code error;
    if (!std::filesystem::exists(file, error))
        throw StoreError("There is no station in " + folder_.u8string() +
                         "; make one with: fetchyard-station seed --data " + folder_.u8string());
    const Loan database = Borrow();
    CheckIdentity(*database, file.u8string());
    CheckHealth(*database, file.u8string());
}

Store::Loan::Loan(Store& store, std::unique_ptr<Database> database)
    : store_(store), database_(std::move(database))
{
}

Store::Loan::~Loan()
{
    database_->Tidy();
    const std::lock_guard<std::mutex> lock(store_.mutex_);
    store_.idle_.push_back(std::move(database_));
}

Store::Loan Store::Borrow()
{
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (!idle_.empty()) {
            auto database = std::move(idle_.back());
            idle_.pop_back();
            return Loan(*this, std::move(database));
        }
    }
    return Loan(*this, std::make_unique<Database>(DatabaseFile(folder_), Database::Mode::ReadWrite));
}

std::vector<Camera> Store::Cameras()
{
    const Loan database = Borrow();
    Statement query = database->Prepare("SELECT id, name, place, scene FROM cameras ORDER BY id");
    std::vector<Camera> cameras;
    while (query.Step())
        cameras.push_back({query.Int(0), std::string(query.Text(1)), std::string(query.Text(2)),
                           std::string(query.Text(3))});
    return cameras;
}

std::optional<Event> Store::FindEvent(std::int64_t id)
{
    const Loan database = Borrow();
    Statement query = database->Prepare(std::string("SELECT ") + kEventColumns + " FROM " + kEventTables +
                                        " WHERE e.id = ?");
    query.Add(id);
    if (!query.Step())
        return std::nullopt;
    return ReadEvent(query);
}

std::string Store::CipherKey() const
{
    std::ifstream file(CipherKeyFile(folder_));
    std::string digits;
    file >> digits;
    return digits;
}

Event ReadEvent(const Statement& statement)
{
    Event event;
    event.id = statement.Int(0);
    event.time = statement.Int(1);
    event.camera_id = statement.Int(2);
    event.camera = statement.Text(3);
    event.place = statement.Text(4);
    event.scene = statement.Text(5);
    event.type = statement.Text(6);
    event.level = static_cast<int>(statement.Int(7));
    event.person = statement.Text(8);
    event.plate = statement.Text(9);
    event.confidence = static_cast<int>(statement.Int(10));
    event.text = statement.Text(11);
    event.picture = statement.Text(12);
    return event;
}

std::int64_t AddCamera(Database& database, const Camera& camera)
{
    Statement insert = database.Prepare("INSERT INTO cameras(name, place, scene) VALUES(?, ?, ?)");
    insert.Add(std::string_view(camera.name))
        .Add(std::string_view(camera.place))
        .Add(std::string_view(camera.scene));
    insert.Run();
    return database.LastInsertId();
}

std::int64_t AddEvent(Database& database, const Event& event)
{
    Statement insert = database.Prepare(
        "INSERT INTO events(time, camera, type, level, person, plate, confidence, text, picture) "
        "VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?)");
    insert.Add(event.time)
        .Add(event.camera_id)
        .Add(std::string_view(event.type))
        .Add(std::int64_t{event.level});
    insert.Add(std::string_view(event.person)).Add(std::string_view(event.plate));
    insert.Add(std::int64_t{event.confidence});
    insert.Add(std::string_view(event.text)).Add(std::string_view(event.picture));
    insert.Run();
    return database.LastInsertId();
}

}  // namespace Station
