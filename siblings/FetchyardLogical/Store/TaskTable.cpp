#include "Store/TaskTable.h"

#include "Log.h"
#include "Store/ChangeText.h"

#include <array>
#include <utility>

using Zell::Base::Error::ErrorCode;

namespace FetchyardLogical::details {

namespace {

constexpr std::int64_t kApplication = 0x46594A31;  // in the file's header: this is a task store

// What leads from one version of the tables to the next; the first makes them.
constexpr std::array kMigrations = {
    "CREATE TABLE task("
    "  place INTEGER PRIMARY KEY, guid TEXT NOT NULL UNIQUE, plugin_id TEXT NOT NULL, name TEXT NOT NULL,"
    "  folder TEXT NOT NULL, queue_order INTEGER NOT NULL, record_kind INTEGER NOT NULL,"
    "  state INTEGER NOT NULL, error_module INTEGER NOT NULL, error_code INTEGER NOT NULL,"
    "  error_text TEXT NOT NULL, handed_over INTEGER NOT NULL, started INTEGER NOT NULL,"
    "  ended INTEGER NOT NULL, owns_folder INTEGER NOT NULL, remove_folder INTEGER NOT NULL,"
    "  checksum INTEGER NOT NULL);"
    // Apart from the tasks, so that a list does not read through the texts.
    "CREATE TABLE resume(guid TEXT PRIMARY KEY, record TEXT NOT NULL, checksum INTEGER NOT NULL);"
    "CREATE TABLE damaged_task(found TEXT NOT NULL, columns TEXT NOT NULL);"
    "CREATE TABLE complete(number INTEGER NOT NULL);"
    "INSERT INTO complete VALUES(0);",
};
constexpr auto kVersion = static_cast<std::int64_t>(kMigrations.size());

constexpr char kLoad[] =
    "SELECT guid, plugin_id, name, folder, place, queue_order, record_kind, state, error_module, error_code,"
    " error_text, handed_over, started, ended, owns_folder, remove_folder, checksum FROM task";
constexpr char kPut[] =
    "INSERT OR REPLACE INTO task VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)";
constexpr char kUpdate[] =
    "UPDATE task SET place = ?, guid = ?, plugin_id = ?, name = ?, folder = ?, queue_order = ?,"
    " record_kind = ?, state = ?, error_module = ?, error_code = ?, error_text = ?, handed_over = ?,"
    " started = ?, ended = ?, owns_folder = ?, remove_folder = ?, checksum = ? WHERE guid = ?";

// As literals of SQL, whatever has become of them.
constexpr char kSetAside[] =
    "INSERT INTO damaged_task SELECT datetime('now'), quote(place) || ',' || quote(guid) || ',' ||"
    " quote(plugin_id) || ',' || quote(name) || ',' || quote(folder) || ',' || quote(queue_order) || ',' ||"
    " quote(record_kind) || ',' || quote(state) || ',' || quote(error_module) || ',' || quote(error_code) ||"
    " ',' || quote(error_text) || ',' || quote(handed_over) || ',' || quote(started) || ',' || quote(ended) "
    "||"
    " ',' || quote(owns_folder) || ',' || quote(remove_folder) || ',' || quote(checksum) || ',' ||"
    " quote((SELECT record FROM resume WHERE resume.guid = task.guid)) FROM task WHERE place = ?";

// In the order of the table's columns.
Statement& AddTask(Statement& statement, const StoredTask& task)
{
    return statement.Add(static_cast<std::int64_t>(task.place))
        .Add(task.guid)
        .Add(task.plugin_id)
        .Add(task.name)
        .Add(task.folder)
        .Add(static_cast<std::int64_t>(task.queue_order))
        .Add(static_cast<std::int64_t>(task.record_kind))
        .Add(static_cast<std::int64_t>(task.state))
        .Add(static_cast<std::int64_t>(task.error.iFirstCode))
        .Add(static_cast<std::int64_t>(task.error.iSecondCode))
        .Add(task.error_text)
        .Add(static_cast<std::int64_t>(task.handed_over))
        .Add(static_cast<std::int64_t>(task.started))
        .Add(static_cast<std::int64_t>(task.ended))
        .Add(static_cast<std::int64_t>(task.owns_folder))
        .Add(static_cast<std::int64_t>(task.remove_folder))
        .Add(static_cast<std::int64_t>(CheckOf(task)));
}

StoredTask TaskOf(const Statement& row)
{
    StoredTask task;
    task.guid = row.Text(0);
    task.plugin_id = row.Text(1);
    task.name = row.Text(2);
    task.folder = row.Text(3);
    task.place = static_cast<std::uint64_t>(row.Number(4));
    task.queue_order = static_cast<std::uint64_t>(row.Number(5));
    task.record_kind = static_cast<RecordKind>(row.Number(6));
    task.state = static_cast<ZellTaskKit::DownloadState>(row.Number(7));
    task.error = ErrorCode(static_cast<int>(row.Number(8)), static_cast<int>(row.Number(9)));
    task.error_text = row.Text(10);
    task.handed_over = row.Number(11);
    task.started = row.Number(12);
    task.ended = row.Number(13);
    task.owns_folder = row.Number(14) != 0;
    task.remove_folder = row.Number(15) != 0;
    return task;
}

bool IsAsWritten(const StoredTask& task, const Statement& row)
{
    return !task.guid.empty() && row.Number(16) == static_cast<std::int64_t>(CheckOf(task));
}

// With the guid: an index gone wrong leads to the text of another task.
std::int64_t CheckOfText(const std::string& guid, const std::string& text)
{
    return static_cast<std::int64_t>(CheckOf(text, CheckOf(std::string_view(guid))));
}

// Ends what was begun, whichever way it goes.
class Transaction
{
public:
    explicit Transaction(Sqlite& database) : database_(database) { database_.Run("BEGIN IMMEDIATE"); }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction()
    {
        if (is_done_)
            return;
        try {
            database_.Run("ROLLBACK");
        } catch (const SqliteFailure&) {  // NOLINT(bugprone-empty-catch): some failures have done it already
        }
    }
    void Commit()
    {
        database_.Run("COMMIT");
        is_done_ = true;
    }

private:
    Sqlite& database_;
    bool is_done_ = false;
};

}  // namespace

// What a group of changes is written with.
struct TaskTable::Statements
{
    explicit Statements(const Sqlite& database)
        : put(database, kPut),
          update(database, kUpdate),
          remove(database, "DELETE FROM task WHERE guid = ?"),
          put_text(database, "INSERT OR REPLACE INTO resume VALUES(?, ?, ?)"),
          remove_text(database, "DELETE FROM resume WHERE guid = ?")
    {
    }

    Statement put;
    Statement update;
    Statement remove;
    Statement put_text;
    Statement remove_text;
};

TaskTable::TaskTable(const std::string& path, Sqlite::Use use) : database_(path, use) {}

TaskTable::Fit TaskTable::Look()
{
    const std::int64_t application = database_.Number("PRAGMA application_id");
    const bool is_empty = database_.Number("SELECT count(*) FROM sqlite_master") == 0;
    if (application != kApplication && !(application == 0 && is_empty))
        return Fit::Foreign;
    return database_.Number("PRAGMA user_version") > kVersion ? Fit::Newer : Fit::Ready;
}

// FULL, not NORMAL: each group goes to the disk with one flush of the write-ahead log, on the store's own
// thread where nobody waits for it. NORMAL would flush at checkpoints only, and a loss of power could take
// many groups.
void TaskTable::Migrate()
{
    if (database_.IsReadOnly())
        throw SqliteFailure(0, "it may only be read");
    database_.Run("PRAGMA journal_mode = WAL");
    database_.Run("PRAGMA synchronous = FULL");
    database_.Run("PRAGMA journal_size_limit = 4194304");
    std::int64_t version = database_.Number("PRAGMA user_version");
    if (version == kVersion)
        return;
    Transaction transaction(database_);
    for (; version < kVersion; ++version)
        database_.Run(kMigrations[static_cast<std::size_t>(version)]);
    database_.Run(("PRAGMA user_version = " + std::to_string(kVersion)).c_str());
    database_.Run(("PRAGMA application_id = " + std::to_string(kApplication)).c_str());
    transaction.Commit();
}

void TaskTable::CheckPages()
{
    const std::string found = database_.Text("PRAGMA quick_check(1)");
    if (found != "ok")
        throw SqliteFailure(SqliteFailure::kDamage, found);
}

void TaskTable::HoldView()
{
    database_.Run("BEGIN");
}

std::uint64_t TaskTable::Complete()
{
    return static_cast<std::uint64_t>(database_.Number("SELECT number FROM complete"));
}

void TaskTable::SetComplete(std::uint64_t number)
{
    Statement set(database_, "UPDATE complete SET number = ?");
    set.Add(static_cast<std::int64_t>(number)).Run();
}

void TaskTable::Write(const LastChanges& changes, std::uint64_t number)
{
    Transaction transaction(database_);
    Statements statements(database_);
    for (const bool removals : {true, false}) {
        for (const auto& entry : changes.ByGuid()) {
            if ((entry.second.kind == Change::Kind::Remove) == removals)
                Write(entry.second, statements);
        }
    }
    SetComplete(number);
    transaction.Commit();
}

void TaskTable::Write(const Change& change, Statements& statements)
{
    const StoredTask& task = change.task;
    bool is_there = true;
    switch (change.kind) {
        case Change::Kind::Remove:
            statements.remove.Add(task.guid).Run();
            statements.remove_text.Add(task.guid).Run();
            return;
        case Change::Kind::Put:
            AddTask(statements.put, task).Run();
            statements.remove_text.Add(task.guid).Run();
            break;
        case Change::Kind::Update:
            AddTask(statements.update, task).Add(task.guid).Run();
            is_there = database_.ChangedRows() > 0;
            break;
    }
    if (is_there && change.resume_text && !change.resume_text->empty())
        statements.put_text.Add(task.guid)
            .Add(*change.resume_text)
            .Add(CheckOfText(task.guid, *change.resume_text))
            .Run();
}

std::vector<StoredTask> TaskTable::Load(std::size_t& damaged)
{
    std::vector<StoredTask> tasks;
    damaged = 0;
    Statement rows(database_, (std::string(kLoad) + " ORDER BY place").c_str());
    while (rows.Step()) {
        StoredTask task = TaskOf(rows);
        if (IsAsWritten(task, rows))
            tasks.push_back(std::move(task));
        else
            ++damaged;
    }
    // Counted by the index: pages that are missing from the table itself would not show otherwise.
    if (static_cast<std::size_t>(database_.Number("SELECT count(*) FROM task")) != tasks.size() + damaged)
        throw SqliteFailure(SqliteFailure::kDamage, "tasks are missing");
    return tasks;
}

void TaskTable::SetDamagedAside()
{
    Transaction transaction(database_);
    std::vector<std::int64_t> places;
    {
        Statement rows(database_, kLoad);
        while (rows.Step()) {
            if (!IsAsWritten(TaskOf(rows), rows))
                places.push_back(rows.Number(4));
        }
    }
    Statement keep(database_, kSetAside);
    Statement remove_text(database_,
                          "DELETE FROM resume WHERE guid = (SELECT guid FROM task WHERE place = ?)");
    Statement remove(database_, "DELETE FROM task WHERE place = ?");
    for (const std::int64_t place : places) {
        for (Statement* statement : {&keep, &remove_text, &remove})
            statement->Add(place).Run();
    }
    transaction.Commit();
}

// From both ends, up to what can't be read.
LastChanges TaskTable::Salvage()
{
    LastChanges found;
    for (const char* order : {" ORDER BY place", " ORDER BY place DESC"}) {
        try {
            Statement rows(database_, (std::string(kLoad) + order).c_str());
            while (rows.Step()) {
                Change change;
                change.task = TaskOf(rows);
                if (IsAsWritten(change.task, rows))
                    found.Add(std::move(change));
            }
        } catch (const SqliteFailure&) {  // NOLINT(bugprone-empty-catch): that was as far as it goes
        }
    }
    LastChanges with_texts;
    for (const auto& entry : found.ByGuid()) {
        Change change = entry.second;
        try {
            change.resume_text = std::make_shared<const std::string>(ResumeText(entry.first));
        } catch (const SqliteFailure&) {  // NOLINT(bugprone-empty-catch): the task comes without it
        }
        with_texts.Add(std::move(change));
    }
    return with_texts;
}

std::string TaskTable::ResumeText(const std::string& guid)
{
    Statement row(database_, "SELECT record, checksum FROM resume WHERE guid = ?");
    if (!row.Add(guid).Step())
        return {};
    std::string text = row.Text(0);
    if (row.Number(1) == CheckOfText(guid, text))
        return text;
    FETCHYARD_LOGICAL_LOG(5, "FetchyardLogical::details::TaskTable::ResumeText",
                          "the resume record of task %s is damaged", guid.c_str());
    return {};
}

}  // namespace FetchyardLogical::details
