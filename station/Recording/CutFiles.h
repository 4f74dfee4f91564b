#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>

namespace Station {

// Names for videos that are there only while they are served. Any thread.
class CutFiles
{
public:
    // Takes away what an earlier station left.
    explicit CutFiles(const std::filesystem::path& data);

    std::filesystem::path NewFile();

private:
    const std::filesystem::path folder_;
    std::atomic<std::uint64_t> next_{0};
};

}  // namespace Station
