#include "Store/Sqlite.h"

#include <sqlite3.h>

namespace FetchyardLogical::details {

namespace {

// Somebody looks into the file with a tool of his own.
constexpr int kBusyMs = 500;

static_assert(SqliteFailure::kDamage == SQLITE_CORRUPT);

[[noreturn]] void Fail(sqlite3* database)
{
    throw SqliteFailure(sqlite3_extended_errcode(database), sqlite3_errmsg(database));
}

}  // namespace

SqliteFailure::SqliteFailure(int code, const std::string& words) : std::runtime_error(words), code_(code) {}

bool SqliteFailure::IsDamage() const
{
    const int kind = code_ & 0xFF;
    return kind == SQLITE_CORRUPT || kind == SQLITE_NOTADB;
}

void Sqlite::Closer::operator()(sqlite3* database) const
{
    sqlite3_close_v2(database);
}

Sqlite::Sqlite(const std::string& path, Use use)
{
    const int flags = SQLITE_OPEN_NOMUTEX |
                      (use == Use::Read ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    sqlite3* opened = nullptr;
    const int code = sqlite3_open_v2(path.c_str(), &opened, flags, nullptr);
    database_.reset(opened);
    if (opened == nullptr)
        throw SqliteFailure(code, sqlite3_errstr(code));
    if (code != SQLITE_OK)
        Fail(opened);
    sqlite3_busy_timeout(opened, kBusyMs);
}

void Sqlite::Run(const char* sql)
{
    if (sqlite3_exec(Raw(), sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        Fail(Raw());
}

std::int64_t Sqlite::Number(const char* sql)
{
    Statement statement(*this, sql);
    return statement.Step() ? statement.Number(0) : 0;
}

std::string Sqlite::Text(const char* sql)
{
    Statement statement(*this, sql);
    return statement.Step() ? statement.Text(0) : std::string();
}

int Sqlite::ChangedRows() const
{
    return sqlite3_changes(Raw());
}

bool Sqlite::IsReadOnly() const
{
    return sqlite3_db_readonly(Raw(), "main") == 1;
}

void Statement::Closer::operator()(sqlite3_stmt* statement) const
{
    sqlite3_finalize(statement);
}

Statement::Statement(const Sqlite& database, const char* sql) : database_(database.Raw())
{
    sqlite3_stmt* prepared = nullptr;
    if (sqlite3_prepare_v3(database_, sql, -1, SQLITE_PREPARE_PERSISTENT, &prepared, nullptr) != SQLITE_OK)
        Fail(database_);
    statement_.reset(prepared);
}

Statement& Statement::Add(std::int64_t value)
{
    if (sqlite3_bind_int64(statement_.get(), ++bound_, value) != SQLITE_OK)
        Fail(database_);
    return *this;
}

Statement& Statement::Add(std::string_view text)
{
    if (sqlite3_bind_text64(statement_.get(), ++bound_, text.data(), text.size(), SQLITE_TRANSIENT,
                            SQLITE_UTF8) != SQLITE_OK)
        Fail(database_);
    return *this;
}

bool Statement::Step()
{
    const int code = sqlite3_step(statement_.get());
    if (code != SQLITE_ROW && code != SQLITE_DONE) {
        const SqliteFailure failure(sqlite3_extended_errcode(database_), sqlite3_errmsg(database_));
        Reset();
        throw failure;
    }
    return code == SQLITE_ROW;
}

void Statement::Run()
{
    while (Step()) {
    }
    Reset();
}

void Statement::Reset()
{
    sqlite3_reset(statement_.get());
    sqlite3_clear_bindings(statement_.get());
    bound_ = 0;
}

std::int64_t Statement::Number(int column) const
{
    return sqlite3_column_int64(statement_.get(), column);
}

std::string Statement::Text(int column) const
{
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_.get(), column));
    if (text == nullptr)
        return {};
    return {text, static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column))};
}

}  // namespace FetchyardLogical::details
