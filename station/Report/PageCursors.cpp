#include "station/Report/PageCursors.h"

namespace Station {
namespace {

constexpr std::size_t kMost = 4096;

std::string KeyOf(const std::string& filter, std::int64_t page)
{
    return std::to_string(page) + "|" + filter;
}

}  // namespace

void PageCursors::Remember(const std::string& filter, std::int64_t page, const PageCursor& cursor)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (cursors_.size() >= kMost)
        cursors_.clear();
    cursors_[KeyOf(filter, page)] = cursor;
}

std::optional<PageCursor> PageCursors::Find(const std::string& filter, std::int64_t page) const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = cursors_.find(KeyOf(filter, page));
    if (found == cursors_.end())
        return std::nullopt;
    return found->second;
}

}  // namespace Station
