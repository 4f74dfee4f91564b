#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>

namespace spdlog::sinks {
class sink;
}

namespace Zell::Base::details {

struct LogLine
{
    std::chrono::system_clock::time_point time;
    int level = 0;
    std::string module;
    std::string text;
};

// Lines on their way to the disk: a bounded queue and one thread that empties it. Whoever writes a line never
// waits for the disk; when the queue is full, the oldest line gives way, and their number is told in a line
// of its own. Any thread. Never destroyed.
class LogWriter
{
public:
    static LogWriter& Instance();

    bool IsWanted(int level) const { return level >= level_.load(std::memory_order_relaxed); }
    void Post(LogLine line);
    // An empty path means nowhere. False if the file can't be opened; the lines then go on as before.
    bool SetFile(const std::string& path, int level);
    // Until all lines so far are written or the time is over.
    bool Flush(std::chrono::milliseconds timeout);

private:
    LogWriter();

    void StartThread();
    void WriteForever();
    void WriteBatch(const std::deque<LogLine>& lines, std::uint64_t dropped);
    void WriteLine(const LogLine& line);

    std::atomic<int> level_;

    std::mutex queue_mutex_;
    std::condition_variable posted_;
    std::condition_variable written_;
    std::deque<LogLine> queue_;
    std::size_t queue_bytes_ = 0;
    std::uint64_t dropped_ = 0;
    std::uint64_t posted_count_ = 0;   // lines ever posted
    std::uint64_t written_count_ = 0;  // how many of them, in order, are written or given up
    bool has_thread_ = false;

    std::mutex sink_mutex_;
    std::unique_ptr<spdlog::sinks::sink> sink_;
};

}  // namespace Zell::Base::details
