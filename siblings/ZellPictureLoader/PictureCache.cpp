#include "PictureCache.h"

#include <utility>

namespace ZellPictureLoader {
namespace {

constexpr std::uint64_t kSizeOfUnknown = 64u << 10;  // until the first picture is there

}  // namespace

CPictureCache::CPictureCache(std::uint64_t max_bytes, std::size_t max_files,
                             std::chrono::milliseconds keep_unasked)
    : max_bytes_(max_bytes), max_files_(max_files), keep_unasked_(keep_unasked)
{
}

CPictureCache::Picture CPictureCache::Ask(const std::string& key)
{
    const auto found = index_.find(key);
    if (found == index_.end())
        return nullptr;
    MarkAsked(found->second, asked_.begin());
    return found->second->picture;
}

bool CPictureCache::HasRoomFor(std::size_t pictures, Clock::time_point now)
{
    GiveUpOnOldOnes(now);
    return unasked_.size() + pictures <= max_files_ && unasked_bytes_ + pictures * UsualSize() <= max_bytes_;
}

bool CPictureCache::MakeRoom(std::uint64_t size, Clock::time_point now, std::vector<Picture>& removed)
{
    GiveUpOnOldOnes(now);
    if (unasked_.size() + 1 > max_files_ || unasked_bytes_ + size > max_bytes_)
        return false;
    while (bytes_ + size > max_bytes_ || index_.size() + 1 > max_files_) {
        Entry& last = asked_.back();
        bytes_ -= last.picture->size();
        index_.erase(last.key);
        removed.push_back(std::move(last.picture));
        asked_.pop_back();
        ++evictions_;
    }
    return true;
}

void CPictureCache::Insert(const std::string& key, Picture picture, bool asked, Clock::time_point now)
{
    const std::uint64_t size = picture->size();
    List& list = asked ? asked_ : unasked_;
    const auto position = asked ? list.begin() : list.end();
    index_[key] = list.insert(position, Entry{key, std::move(picture), now, asked});
    bytes_ += size;
    if (!asked)
        unasked_bytes_ += size;
}

void CPictureCache::Clear(std::vector<Picture>& removed)
{
    for (List* list : {&asked_, &unasked_}) {
        for (Entry& entry : *list)
            removed.push_back(std::move(entry.picture));
        list->clear();
    }
    index_.clear();
    bytes_ = 0;
    unasked_bytes_ = 0;
}

void CPictureCache::MarkAsked(List::iterator entry, List::iterator position)
{
    if (!entry->asked)
        unasked_bytes_ -= entry->picture->size();
    asked_.splice(position, entry->asked ? asked_ : unasked_, entry);
    entry->asked = true;
}

void CPictureCache::GiveUpOnOldOnes(Clock::time_point now)
{
    while (!unasked_.empty() && now - unasked_.front().arrived >= keep_unasked_)
        MarkAsked(unasked_.begin(), asked_.end());
}

std::uint64_t CPictureCache::UsualSize() const
{
    return index_.empty() ? kSizeOfUnknown : bytes_ / index_.size();
}

}  // namespace ZellPictureLoader
