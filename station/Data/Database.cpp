#include "station/Data/Database.h"

#include <sqlite3.h>

namespace Station {
namespace {

constexpr int kBusyMs = 10000;
constexpr std::size_t kMostStatements = 100;

}  // namespace

std::string DescribeStoreFailure(const std::string& file, int code, const std::string& detail)
{
    switch (code & 0xFF) {
        case SQLITE_NOTADB:
        case SQLITE_CORRUPT:
            return "The data file " + file + " is damaged: " + detail + ".";
        case SQLITE_CANTOPEN:
            return "The data file " + file + " can't be opened: " + detail + ".";
        case SQLITE_FULL:
            return "No room is left for the data file " + file + ".";
        default:
            return "The data file " + file + " can't be used: " + detail + ".";
    }
}

Statement::Statement(sqlite3* database, sqlite3_stmt* statement, std::string file)
    : database_(database), statement_(statement), file_(std::move(file))
{
}

Statement::~Statement()
{
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
}

void Statement::Fail() const
{
    throw StoreError(
        DescribeStoreFailure(file_, sqlite3_extended_errcode(database_), sqlite3_errmsg(database_)));
}

Statement& Statement::Bind(int index, std::int64_t value)
{
    last_index_ = index;
    if (sqlite3_bind_int64(statement_, index, value) != SQLITE_OK)
        Fail();
    return *this;
}

Statement& Statement::Bind(int index, std::string_view text)
{
    last_index_ = index;
    if (sqlite3_bind_text64(statement_, index, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8) !=
        SQLITE_OK)
        Fail();
    return *this;
}

bool Statement::Step()
{
    const int code = sqlite3_step(statement_);
    if (code == SQLITE_ROW)
        return true;
    if (code != SQLITE_DONE)
        Fail();
    return false;
}

void Statement::Run()
{
    while (Step()) {
    }
    sqlite3_reset(statement_);
    last_index_ = 0;
}

std::int64_t Statement::Int(int column) const
{
    return sqlite3_column_int64(statement_, column);
}

std::string_view Statement::Text(int column) const
{
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
    return text == nullptr
               ? std::string_view()
               : std::string_view(text, static_cast<std::size_t>(sqlite3_column_bytes(statement_, column)));
}

Database::Database(const std::filesystem::path& file, Mode mode) : file_(file.u8string())
{
    int flags = SQLITE_OPEN_NOMUTEX;
    flags |= mode == Mode::Read ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
    if (mode == Mode::Create)
        flags |= SQLITE_OPEN_CREATE;
    const int code = sqlite3_open_v2(file_.c_str(), &database_, flags, nullptr);
    if (code != SQLITE_OK) {
        const std::string text = DescribeStoreFailure(file_, code, sqlite3_errmsg(database_));
        sqlite3_close(database_);
        throw StoreError(text);
    }
    sqlite3_busy_timeout(database_, kBusyMs);
}

Database::~Database()
{
    for (const auto& entry : statements_)
        sqlite3_finalize(entry.second);
    sqlite3_close(database_);
}

void Database::Tidy()
{
    if (statements_.size() <= kMostStatements)
        return;
    for (const auto& entry : statements_)
        sqlite3_finalize(entry.second);
    statements_.clear();
}

void Database::Fail(const std::string& what) const
{
    throw StoreError(DescribeStoreFailure(file_, sqlite3_extended_errcode(database_), what));
}

void Database::Run(const std::string& sql)
{
    if (sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        Fail(sqlite3_errmsg(database_));
}

Statement Database::Prepare(const std::string& sql)
{
    const auto known = statements_.find(sql);
    if (known != statements_.end())
        return Statement(database_, known->second, file_);
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK)
        Fail(sqlite3_errmsg(database_));
    statements_.emplace(sql, statement);
    return Statement(database_, statement, file_);
}

std::int64_t Database::LastInsertId() const
{
    return sqlite3_last_insert_rowid(database_);
}

}  // namespace Station
