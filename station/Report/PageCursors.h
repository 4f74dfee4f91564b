#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

namespace Station {

// The last event of a page, so that the next page is found without counting through all rows before it.
struct PageCursor
{
    std::int64_t time = 0;
    std::int64_t id = 0;
};

// Remembers cursors by filter and page. Any thread.
class PageCursors
{
public:
    void Remember(const std::string& filter, std::int64_t page, const PageCursor& cursor);
    std::optional<PageCursor> Find(const std::string& filter, std::int64_t page) const;

private:
    mutable std::mutex mutex_;
    std::unordered_map<std::string, PageCursor> cursors_;
};

}  // namespace Station
