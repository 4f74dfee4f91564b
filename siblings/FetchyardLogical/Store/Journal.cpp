#include "Store/Journal.h"

#include "Store/ChangeText.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>
#include <utility>

namespace FetchyardLogical::details {

namespace {

constexpr std::string_view kMark = "FYF1";
// Mark, size of the bytes (4), number (8), complete (8), checksum of all but itself (4).
constexpr std::size_t kSizeAt = 4;
constexpr std::size_t kNumberAt = 8;
constexpr std::size_t kCompleteAt = 16;
constexpr std::size_t kCheckAt = 24;
constexpr std::size_t kHeader = 28;
// A file that one long resume text has made big is cut before it is written over.
constexpr std::uint64_t kLongestKept = 4U << 20;

std::string ReadWhole(const std::string& path)
{
    std::ifstream file(std::filesystem::u8path(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// The size of the frame at the head of the bytes; 0 if there is none.
std::size_t TakeFrame(std::string_view bytes, Journal::Frame& frame)
{
    if (bytes.size() < kHeader || bytes.substr(0, kMark.size()) != kMark)
        return 0;
    const auto size = static_cast<std::size_t>(NumberAt(bytes, kSizeAt, 4));
    if (size > bytes.size() - kHeader)
        return 0;
    const std::string_view content = bytes.substr(kHeader, size);
    if (NumberAt(bytes, kCheckAt, 4) != CheckOf(content, CheckOf(bytes.substr(0, kCheckAt))))
        return 0;
    frame.number = NumberAt(bytes, kNumberAt, 8);
    frame.complete = NumberAt(bytes, kCompleteAt, 8);
    return ReadChanges(content, frame.changes) ? kHeader + size : 0;
}

void ReadFrames(std::string_view bytes, std::vector<Journal::Frame>& frames)
{
    while (!bytes.empty()) {
        Journal::Frame frame;
        const std::size_t size = TakeFrame(bytes, frame);
        if (size > 0) {
            bytes.remove_prefix(size);
            frames.push_back(std::move(frame));
            continue;
        }
        // Left over, or damaged: on from whatever looks like a frame.
        const std::size_t next = bytes.find(kMark, 1);
        bytes.remove_prefix(std::min(next, bytes.size()));
    }
}

}  // namespace

std::string Journal::FileOf(const std::string& store, int file)
{
    return store + ".recent-" + std::to_string(file);
}

std::vector<Journal::Frame> Journal::Read(const std::string& store)
{
    std::vector<Frame> frames;
    for (int file = 0; file < 2; ++file)
        ReadFrames(ReadWhole(FileOf(store, file)), frames);
    std::sort(frames.begin(), frames.end(),
              [](const Frame& left, const Frame& right) { return left.number < right.number; });
    return frames;
}

std::uint64_t Journal::CompleteTo(const std::vector<Frame>& frames)
{
    std::uint64_t complete = 0;
    for (const Frame& frame : frames)
        complete = std::max(complete, frame.complete);
    return complete;
}

bool Journal::HasGap(const std::vector<Frame>& frames, std::uint64_t complete)
{
    std::uint64_t next = complete + 1;
    for (const Frame& frame : frames) {
        if (frame.number > next)
            return true;
        if (frame.number == next)
            ++next;
    }
    return false;
}

bool Journal::Open(std::string& reason)
{
    for (std::size_t i = 0; i < files_.size(); ++i) {
        files_[i].file = StoreFile::Open(FileOf(store_, static_cast<int>(i)), reason);
        if (!files_[i].file)
            return false;
    }
    Clear();
    return true;
}

void Journal::Clear()
{
    for (File& file : files_) {
        file.file->Cut(0);
        file.end = 0;
    }
}

bool Journal::Append(std::uint64_t number, std::uint64_t complete, const std::string& bytes,
                     std::string& reason)
{
    std::string frame(kMark);
    frame.reserve(kHeader + bytes.size());
    AppendNumber(frame, bytes.size(), 4);
    AppendNumber(frame, number, 8);
    AppendNumber(frame, complete, 8);
    AppendNumber(frame, CheckOf(bytes, CheckOf(frame)), 4);
    frame += bytes;
    File& current = files_[current_];
    if (!current.file->WriteAt(current.end, frame, reason))
        return false;
    current.last_number = number;
    current.end += frame.size();
    return true;
}

void Journal::TakeTurns(std::uint64_t complete)
{
    File& other = files_[1 - current_];
    if (other.last_number > complete)
        return;
    if (other.end > kLongestKept)
        other.file->Cut(0);
    other.end = 0;
    current_ = 1 - current_;
}

}  // namespace FetchyardLogical::details
