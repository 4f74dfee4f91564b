#include "Log/LogWriter.h"

#include "ProcessExit.h"
#include "ZellBase/Log.h"
#include "ZellBase/Util.h"

#include <spdlog/sinks/rotating_file_sink.h>
#include <spdlog/sinks/stdout_sinks.h>

#include <exception>
#include <limits>
#include <system_error>
#include <thread>
#include <utility>

namespace Zell::Base::details {
namespace {

constexpr char kPattern[] = "%Y-%m-%d %H:%M:%S.%e %L %n %v";
constexpr std::size_t kFileSize = std::size_t{10} * 1024 * 1024;
constexpr std::size_t kOldFiles = 3;
constexpr std::size_t kQueueLines = std::size_t{16} * 1024;
constexpr std::size_t kQueueBytes = std::size_t{16} * 1024 * 1024;
constexpr int kNoLevel = std::numeric_limits<int>::max();

spdlog::level::level_enum SpdlogLevel(int level)
{
    if (level < kLogInfo)
        return spdlog::level::debug;
    if (level == kLogInfo)
        return spdlog::level::info;
    return level == kLogWarning ? spdlog::level::warn : spdlog::level::err;
}

std::unique_ptr<spdlog::sinks::sink> OpenFileSink(const std::string& path)
{
    auto sink =
        std::make_unique<spdlog::sinks::rotating_file_sink_st>(UTF8ToLocal(path), kFileSize, kOldFiles);
    sink->set_pattern(kPattern);
    return sink;
}

}  // namespace

LogWriter& LogWriter::Instance()
{
    static auto* const writer = new LogWriter;
    return *writer;
}

LogWriter::LogWriter() : level_(kLogError), sink_(std::make_unique<spdlog::sinks::stderr_sink_st>())
{
    sink_->set_pattern(kPattern);
}

void LogWriter::Post(LogLine line)
{
    const std::size_t size = line.text.size();
    {
        const std::lock_guard<std::mutex> lock(queue_mutex_);
        while (!queue_.empty() && (queue_.size() >= kQueueLines || queue_bytes_ + size > kQueueBytes)) {
            queue_bytes_ -= queue_.front().text.size();
            queue_.pop_front();
            ++dropped_;
        }
        queue_.push_back(std::move(line));
        queue_bytes_ += size;
        ++posted_count_;
        if (!has_thread_)
            StartThread();
    }
    posted_.notify_one();
    // The handler's own flush is over; there may be no further chance for this line.
    if (IsProcessLeaving())
        Flush(std::chrono::seconds(1));
}

bool LogWriter::SetFile(const std::string& path, int level)
{
    std::unique_ptr<spdlog::sinks::sink> sink;
    try {
        if (!path.empty())
            sink = OpenFileSink(path);
    } catch (const std::exception&) {
        return false;
    }
    Flush(std::chrono::seconds(10));
    level_.store(path.empty() ? kNoLevel : level, std::memory_order_relaxed);
    const std::lock_guard<std::mutex> lock(sink_mutex_);
    sink_.swap(sink);
    return true;
}

bool LogWriter::Flush(std::chrono::milliseconds timeout)
{
    std::unique_lock<std::mutex> lock(queue_mutex_);
    const std::uint64_t wanted = posted_count_;
    return written_.wait_for(lock, timeout, [this, wanted] { return written_count_ >= wanted; });
}

void LogWriter::StartThread()
{
    WatchProcessExit();
    try {
        std::thread([this] { WriteForever(); }).detach();
        has_thread_ = true;
    } catch (const std::system_error&) {
        // The lines wait in the queue; the next one tries again.
        has_thread_ = false;
    }
}

void LogWriter::WriteForever()
{
    for (;;) {
        std::deque<LogLine> lines;
        std::unique_lock<std::mutex> lock(queue_mutex_);
        posted_.wait(lock, [this] { return !queue_.empty(); });
        lines.swap(queue_);
        queue_bytes_ = 0;
        const std::uint64_t dropped = std::exchange(dropped_, 0);
        const std::uint64_t count = posted_count_;
        lock.unlock();
        WriteBatch(lines, dropped);
        lock.lock();
        written_count_ = count;
        written_.notify_all();
    }
}

void LogWriter::WriteBatch(const std::deque<LogLine>& lines, std::uint64_t dropped)
{
    const std::lock_guard<std::mutex> lock(sink_mutex_);
    if (!sink_)
        return;
    if (dropped > 0)
        WriteLine({lines.front().time, kLogError, "ZellBase",
                   std::to_string(dropped) + " log lines were dropped, the disk is too slow"});
    for (const LogLine& line : lines)
        WriteLine(line);
    try {
        sink_->flush();
    } catch (const std::exception&) {
        // A full disk: nobody could be told, and the next batch tries again.
    }
}

void LogWriter::WriteLine(const LogLine& line)
{
    try {
        sink_->log(spdlog::details::log_msg(line.time, spdlog::source_loc(), line.module,
                                            SpdlogLevel(line.level), line.text));
    } catch (const std::exception&) {
        // As above.
    }
}

}  // namespace Zell::Base::details
