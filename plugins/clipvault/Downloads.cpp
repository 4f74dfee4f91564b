#include "plugins/clipvault/Downloads.h"

#include <algorithm>

namespace ClipVault {
namespace {

auto FindEnded(std::deque<std::pair<std::string, std::int64_t>>& ended, const std::string& guid)
{
    return std::find_if(ended.begin(), ended.end(), [&guid](const auto& each) { return each.first == guid; });
}

template <typename Entry>
void Bound(std::deque<Entry>& entries, std::size_t most)
{
    while (entries.size() > most)
        entries.pop_front();
}

}  // namespace

Downloads& Downloads::Instance()
{
    static auto* const downloads = new Downloads;
    return *downloads;
}

std::shared_ptr<Download> Downloads::Begin(const std::string& guid)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    if (!is_open_ || under_way_.count(guid) > 0)
        return nullptr;
    auto download = std::make_shared<Download>();
    const auto stop = std::find(stopped_before_.begin(), stopped_before_.end(), guid);
    if (stop != stopped_before_.end()) {
        download->is_stopped = true;
        stopped_before_.erase(stop);
    }
    const auto ended = FindEnded(ended_, guid);
    if (ended != ended_.end())
        ended_.erase(ended);
    under_way_[guid] = download;
    return download;
}

void Downloads::End(const std::string& guid)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = under_way_.find(guid);
    if (found == under_way_.end())
        return;
    ended_.emplace_back(guid, found->second->bytes);
    under_way_.erase(found);
    Bound(ended_, kMostRemembered);
}

void Downloads::Stop(const std::string& guid)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = under_way_.find(guid);
    if (found != under_way_.end()) {
        found->second->is_stopped = true;
        return;
    }
    const bool is_remembered =
        std::find(stopped_before_.begin(), stopped_before_.end(), guid) != stopped_before_.end();
    if (guid.empty() || is_remembered || FindEnded(ended_, guid) != ended_.end())
        return;
    stopped_before_.push_back(guid);
    Bound(stopped_before_, kMostRemembered);
}

void Downloads::Remove(const std::string& guid)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto ended = FindEnded(ended_, guid);
    if (ended != ended_.end())
        ended_.erase(ended);
    const auto stop = std::find(stopped_before_.begin(), stopped_before_.end(), guid);
    if (stop != stopped_before_.end())
        stopped_before_.erase(stop);
}

std::int64_t Downloads::Size(const std::string& guid)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = under_way_.find(guid);
    if (found != under_way_.end())
        return found->second->bytes;
    const auto ended = FindEnded(ended_, guid);
    return ended == ended_.end() ? 0 : ended->second;
}

bool Downloads::IsOpen()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return is_open_;
}

void Downloads::Open()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    is_open_ = true;
}

void Downloads::Close()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    is_open_ = false;
    ended_.clear();
    stopped_before_.clear();
    for (const auto& [guid, download] : under_way_)
        download->is_stopped = true;
}

}  // namespace ClipVault
