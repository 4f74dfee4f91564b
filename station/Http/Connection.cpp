#include "station/Http/Connection.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <string_view>

namespace Station {
namespace {

constexpr int kReadTimeoutMs = 30000;
constexpr int kWriteTimeoutMs = 60000;
constexpr int kWriteGraceMs = 2000;  // for an answer under way when the station stops
constexpr int kSliceMs = 100;
constexpr std::int64_t kSlowPauseMs = 20;

Connection*& CurrentSlot()
{
    thread_local Connection* current = nullptr;
    return current;
}

}  // namespace

Connection::Connection(Platform::Socket socket, const std::atomic<bool>& is_stopping, RequestCounts* counts)
    : socket_(socket), is_stopping_(is_stopping), counts_(counts)
{
    CurrentSlot() = this;
    Platform::DisableDelay(socket_);
    if (counts_ != nullptr)
        counts_->ConnectionOpened();
}

Connection::~Connection()
{
    CurrentSlot() = nullptr;
    if (is_reset_)
        Platform::CloseWithReset(socket_);
    else
        Platform::Close(socket_);
}

Connection* Connection::Current()
{
    return CurrentSlot();
}

bool Connection::WaitForRequest(int timeout_ms, const std::function<bool()>& should_yield)
{
    if (begin_ < end_)
        return true;
    for (int waited = 0; waited < timeout_ms; waited += kSliceMs) {
        if (Platform::WaitReadable(socket_, kSliceMs))
            return !is_stopping_;
        if (is_stopping_ || should_yield())
            return false;
    }
    return false;
}

void Connection::BeginRequest()
{
    path_.clear();
    is_counted_ = false;
    is_head_sent_ = false;
    body_sent_ = 0;
    cut_at_ = UINT64_MAX;
    slow_piece_ = 0;
    is_lying_ = false;
}

void Connection::SlowDown(std::int64_t bytes_per_second, std::function<void(std::int64_t)> pause)
{
    constexpr std::int64_t kPausesPerSecond = 1000 / kSlowPauseMs;
    slow_piece_ = static_cast<std::size_t>(std::max<std::int64_t>(bytes_per_second / kPausesPerSecond, 1));
    pause_ = std::move(pause);
}

void Connection::EndRequest()
{
    if (is_counted_)
        counts_->RequestEnded();
    is_counted_ = false;
}

void Connection::SetPath(const std::string& path)
{
    path_ = path;
    if (counts_ == nullptr)
        return;
    counts_->RequestBegan(path_);
    is_counted_ = true;
}

bool Connection::IsGone() const
{
    return Platform::HasLeft(socket_);
}

bool Connection::is_readable() const
{
    return begin_ < end_ || Platform::WaitReadable(socket_, kReadTimeoutMs);
}

bool Connection::is_writable() const
{
    return !is_broken_ && Platform::WaitWritable(socket_, kWriteTimeoutMs);
}

ssize_t Connection::read(char* data, size_t size)
{
    if (begin_ == end_) {
        if (!Platform::WaitReadable(socket_, kReadTimeoutMs))
            return -1;
        // What does not fit the buffer anyway goes straight to its place.
        if (size >= buffer_.size())
            return Platform::Receive(socket_, data, size);
        const long got = Platform::Receive(socket_, buffer_.data(), buffer_.size());
        if (got <= 0)
            return got;
        begin_ = 0;
        end_ = static_cast<std::size_t>(got);
    }
    const std::size_t part = std::min(size, end_ - begin_);
    std::memcpy(data, buffer_.data() + begin_, part);
    begin_ += part;
    return static_cast<ssize_t>(part);
}

ssize_t Connection::write(const char* data, size_t size)
{
    if (is_broken_)
        return -1;
    if (is_reset_) {
        is_broken_ = true;
        return -1;
    }
    const std::size_t head = is_head_sent_ ? 0 : PassHead(data, size);
    if (!SendAll(data, head) || !SendBody(data + head, size - head)) {
        is_broken_ = true;
        return -1;
    }
    return static_cast<ssize_t>(size);
}

std::size_t Connection::PassHead(const char* data, std::size_t size)
{
    const std::string_view text(data, size);
    const std::size_t end = text.find("\r\n\r\n");
    if (end == std::string_view::npos)
        return size;
    // An interim answer is followed by the real one.
    is_head_sent_ = text.compare(0, 12, "HTTP/1.1 100") != 0;
    return end + 4;
}

bool Connection::SendBody(const char* data, std::size_t size)
{
    const auto part = static_cast<std::size_t>(std::min<std::uint64_t>(size, cut_at_ - body_sent_));
    if (is_counted_ && part > 0)
        counts_->BytesLeave(path_, part);
    body_sent_ += part;
    const bool is_sent = slow_piece_ > 0 ? SendSlowly(data, part) : SendAll(data, part);
    return is_sent && part == size;
}

bool Connection::SendSlowly(const char* data, std::size_t size)
{
    while (size > 0) {
        const std::size_t piece = std::min(size, slow_piece_);
        if (!SendAll(data, piece))
            return false;
        data += piece;
        size -= piece;
        pause_(kSlowPauseMs);
    }
    return true;
}

bool Connection::SendAll(const char* data, std::size_t size)
{
    using Clock = std::chrono::steady_clock;
    const auto begin = Clock::now();
    while (size > 0) {
        if (!Platform::WaitWritable(socket_, kSliceMs)) {
            const auto limit = std::chrono::milliseconds(is_stopping_ ? kWriteGraceMs : kWriteTimeoutMs);
            if (Clock::now() - begin > limit)
                return false;
            continue;
        }
        const long sent = Platform::Send(socket_, data, size);
        if (sent <= 0)
            return false;
        data += sent;
        size -= static_cast<std::size_t>(sent);
    }
    return true;
}

void Connection::get_remote_ip_and_port(std::string& ip, int& port) const
{
    ip.clear();
    port = 0;
}

void Connection::get_local_ip_and_port(std::string& ip, int& port) const
{
    ip.clear();
    port = 0;
}

}  // namespace Station
