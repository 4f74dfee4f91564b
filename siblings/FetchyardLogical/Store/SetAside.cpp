#include "Store/SetAside.h"

#include "Store/Journal.h"

#include <filesystem>
#include <fstream>
#include <system_error>

namespace fs = std::filesystem;

namespace FetchyardLogical::details {

namespace {

bool IsThere(const std::string& path)
{
    std::error_code error;
    return fs::exists(fs::u8path(path), error) || error;
}

std::string MarkOf(const std::string& store)
{
    return store + ".suspect";
}

std::string FreeName(const std::string& path)
{
    int number = 1;
    while (IsThere(path + ".damaged-" + std::to_string(number)))
        ++number;
    return path + ".damaged-" + std::to_string(number);
}

}  // namespace

std::string SetStoreAside(const std::string& store)
{
    std::string aside = FreeName(store);
    std::error_code error;
    fs::rename(fs::u8path(store), fs::u8path(aside), error);
    if (error)
        return {};
    for (const char* part : {"-wal", "-shm"}) {
        if (IsThere(store + part))
            fs::rename(fs::u8path(store + part), fs::u8path(aside + part), error);
        if (error)
            return {};
    }
    return aside;
}

std::string CopyJournalAside(const std::string& store)
{
    std::string first;
    for (int file = 0; file < 2; ++file) {
        const std::string name = Journal::FileOf(store, file);
        const std::string aside = FreeName(name);
        std::error_code error;
        if (!fs::copy_file(fs::u8path(name), fs::u8path(aside), error) || error)
            continue;
        if (first.empty())
            first = aside;
    }
    return first;
}

void MarkSuspect(const std::string& store)
{
    const std::ofstream mark(fs::u8path(MarkOf(store)));
}

bool IsSuspect(const std::string& store)
{
    return IsThere(MarkOf(store));
}

void ClearSuspect(const std::string& store)
{
    std::error_code ignored;
    fs::remove(fs::u8path(MarkOf(store)), ignored);
}

}  // namespace FetchyardLogical::details
