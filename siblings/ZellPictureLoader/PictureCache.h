#pragma once

#include "Picture.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace ZellPictureLoader {

// Which pictures are kept, and which give way. Those that somebody has asked for go first, the longest unused
// one before the others; one that was fetched ahead keeps its place until it is asked for or too old. Not
// locked: its owner does that. What leaves the cache is handed out, so that files are removed outside the
// lock.
class CPictureCache
{
public:
    using Clock = std::chrono::steady_clock;
    using Picture = std::shared_ptr<CPicture>;

    CPictureCache(std::uint64_t max_bytes, std::size_t max_files, std::chrono::milliseconds keep_unasked);

    bool Holds(const std::string& key) const { return index_.count(key) != 0; }
    // Null if it is not there. The picture counts as asked for from now on.
    Picture Ask(const std::string& key);
    // Whether as many more pictures of usual size will fit once those that may go are gone.
    bool HasRoomFor(std::size_t pictures, Clock::time_point now);
    // Makes room for one picture; false if it can't have it.
    bool MakeRoom(std::uint64_t size, Clock::time_point now, std::vector<Picture>& removed);
    // Room must have been made; the key must not be there.
    void Insert(const std::string& key, Picture picture, bool asked, Clock::time_point now);
    void Clear(std::vector<Picture>& removed);

    std::uint64_t bytes() const { return bytes_; }
    std::size_t files() const { return index_.size(); }
    std::uint64_t evictions() const { return evictions_; }

private:
    struct Entry
    {
        std::string key;
        Picture picture;
        Clock::time_point arrived;
        bool asked = false;
    };
    using List = std::list<Entry>;

    void MarkAsked(List::iterator entry, List::iterator position);
    void GiveUpOnOldOnes(Clock::time_point now);
    std::uint64_t UsualSize() const;

    const std::uint64_t max_bytes_;
    const std::size_t max_files_;
    const std::chrono::milliseconds keep_unasked_;
    List asked_;    // the latest use first
    List unasked_;  // the first to arrive first
    std::unordered_map<std::string, List::iterator> index_;
    std::uint64_t bytes_ = 0;
    std::uint64_t unasked_bytes_ = 0;
    std::uint64_t evictions_ = 0;
};

}  // namespace ZellPictureLoader
