#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace Station {

// The data can't be read or written; what() says which file and why.
class StoreError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// A prepared statement in use; it goes back to its database when it ends.
class Statement
{
public:
    Statement(sqlite3* database, sqlite3_stmt* statement, std::string file);
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    // Values from 1 on, in the order of the question marks.
    Statement& Bind(int index, std::int64_t value);
    Statement& Bind(int index, std::string_view text);
    // The next value in order.
    template <typename T>
    Statement& Add(const T& value)
    {
        return Bind(++last_index_, value);
    }
    // True if there is a row.
    bool Step();
    void Run();  // to the end, then ready to be bound again

    std::int64_t Int(int column) const;
    // Valid until the next step.
    std::string_view Text(int column) const;

private:
    [[noreturn]] void Fail() const;

    sqlite3* const database_;
    sqlite3_stmt* const statement_;
    const std::string file_;
    int last_index_ = 0;
};

// One connection to an SQLite file; one thread at a time.
class Database
{
public:
    enum class Mode { Read, ReadWrite, Create };

    Database(const std::filesystem::path& file, Mode mode);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    void Run(const std::string& sql);
    // A statement is prepared once for each text; two of one text must not be in use at once.
    Statement Prepare(const std::string& sql);
    std::int64_t LastInsertId() const;
    // Forgets statements if there are many; none may be in use.
    void Tidy();

private:
    [[noreturn]] void Fail(const std::string& what) const;

    const std::string file_;
    sqlite3* database_ = nullptr;
    std::map<std::string, sqlite3_stmt*> statements_;
};

// The words for an SQLite result code about a file.
std::string DescribeStoreFailure(const std::string& file, int code, const std::string& detail);

}  // namespace Station
