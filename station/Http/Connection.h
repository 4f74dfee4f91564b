#pragma once

#include "station/Http/RequestCounts.h"
#include "station/Platform/Platform.h"

#include <httplib.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <string>

namespace Station {

// One client's connection: reads in blocks, counts what leaves, and can be told to break off. It belongs to
// the thread that serves it, where Current() finds it.
class Connection final : public httplib::Stream
{
public:
    Connection(Platform::Socket socket, const std::atomic<bool>& is_stopping, RequestCounts* counts);
    ~Connection() override;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    static Connection* Current();

    // Waits for the first byte of a request; false if none comes. should_yield is asked now and then.
    bool WaitForRequest(int timeout_ms, const std::function<bool()>& should_yield);
    void BeginRequest();
    void EndRequest();
    // The request in work; its bytes are counted under this path.
    void SetPath(const std::string& path);
    // The body ends early, whatever its announced length.
    void CutBodyAt(std::uint64_t bytes) { cut_at_ = bytes; }
    // The body leaves in small pieces; pause waits for so many milliseconds between them.
    void SlowDown(std::int64_t bytes_per_second, std::function<void(std::int64_t)> pause);
    // A part of a body is announced as another one.
    void LieAboutRange() { is_lying_ = true; }
    bool LiesAboutRange() const { return is_lying_; }
    // Nothing of the answer leaves; the other side sees a reset.
    void ResetInsteadOfAnswer() { is_reset_ = true; }
    // No further request is read after this one.
    void MakeLast() { is_last_ = true; }
    // The other side has closed the connection; what it sent before may still wait to be read.
    bool IsGone() const;
    bool IsBroken() const { return is_broken_ || is_last_; }

    bool is_readable() const override;
    bool is_writable() const override;
    ssize_t read(char* data, size_t size) override;
    ssize_t write(const char* data, size_t size) override;
    void get_remote_ip_and_port(std::string& ip, int& port) const override;
    void get_local_ip_and_port(std::string& ip, int& port) const override;
    socket_t socket() const override { return socket_; }

private:
    bool SendAll(const char* data, std::size_t size);
    bool SendSlowly(const char* data, std::size_t size);
    bool SendBody(const char* data, std::size_t size);
    // The number of bytes at the start of data that belong to the head of the answer.
    std::size_t PassHead(const char* data, std::size_t size);

    const Platform::Socket socket_;
    const std::atomic<bool>& is_stopping_;
    RequestCounts* const counts_;
    std::array<char, 16384> buffer_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    std::string path_;
    bool is_counted_ = false;
    bool is_head_sent_ = false;
    std::uint64_t body_sent_ = 0;
    std::uint64_t cut_at_ = UINT64_MAX;
    std::size_t slow_piece_ = 0;  // bytes that leave between two pauses; 0: no pauses
    std::function<void(std::int64_t)> pause_;
    bool is_lying_ = false;
    bool is_reset_ = false;
    bool is_last_ = false;
    bool is_broken_ = false;
};

}  // namespace Station
