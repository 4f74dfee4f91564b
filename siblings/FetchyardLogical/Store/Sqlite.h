#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace FetchyardLogical::details {

// The database did not do what was asked; what() is its words.
class SqliteFailure : public std::runtime_error
{
public:
    static constexpr int kDamage = 11;  // the database's number for a damaged file

    SqliteFailure(int code, const std::string& words);
    // The file is no database, or one with bad pages.
    bool IsDamage() const;

private:
    const int code_;
};

// One connection to a database file; one thread at a time. Everything throws SqliteFailure.
class Sqlite
{
public:
    enum class Use { Write, Read };

    Sqlite(const std::string& path, Use use);

    void Run(const char* sql);
    std::int64_t Number(const char* sql);  // the only value of the answer
    std::string Text(const char* sql);
    int ChangedRows() const;  // of the last statement
    bool IsReadOnly() const;
    sqlite3* Raw() const { return database_.get(); }

private:
    struct Closer
    {
        void operator()(sqlite3* database) const;
    };
    std::unique_ptr<sqlite3, Closer> database_;
};

// A prepared statement, used as often as one likes.
class Statement
{
public:
    Statement(const Sqlite& database, const char* sql);

    // The values in the order of the question marks, from the first one on after each Run and Reset.
    Statement& Add(std::int64_t value);
    Statement& Add(std::string_view text);
    // True if there is a row.
    bool Step();
    // To the end, ready to be used again.
    void Run();
    void Reset();

    std::int64_t Number(int column) const;
    std::string Text(int column) const;

private:
    struct Closer
    {
        void operator()(sqlite3_stmt* statement) const;
    };
    sqlite3* const database_;
    std::unique_ptr<sqlite3_stmt, Closer> statement_;
    int bound_ = 0;
};

}  // namespace FetchyardLogical::details
