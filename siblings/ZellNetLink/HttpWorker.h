#pragma once

#include "HttpTransfer.h"

#include <atomic>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace ZellNetLink {

// The one thread that moves all transfers, and its connections. Never destroyed: a process may leave while
// transfers run, so nothing of this may go with the statics, and nothing joins the thread.
class HttpWorker
{
public:
    HttpWorker();
    HttpWorker(const HttpWorker&) = delete;
    HttpWorker& operator=(const HttpWorker&) = delete;
    ~HttpWorker() = default;

    // Transfers that somebody waits for begin at once, since their number is bounded by the threads that
    // wait. The others take turns, kMaxWaitless at a time for each server, so that a long list of them holds
    // up nobody.
    std::uint64_t Submit(HttpRequest request, HttpClient::Done done, bool somebody_waits);
    void Cancel(std::uint64_t id);
    bool IsOwnThread() const { return std::this_thread::get_id() == thread_id_.load(); }

private:
    using TransferPtr = std::unique_ptr<HttpTransfer>;

    static constexpr int kMaxWaitless = 16;
    static constexpr std::size_t kMaxIdleHandles = 16;

    struct Server
    {
        int running = 0;  // of those that nobody waits for
        std::deque<TransferPtr> waiting;
    };

    void Run();
    void TakeOrders();
    void Admit(TransferPtr transfer);
    bool Begin(TransferPtr transfer);
    void BeginWaiting(const std::string& origin);
    void Ended(const HttpTransfer& transfer);
    void Collect();
    void CancelNow(std::uint64_t id);
    TransferPtr TakeWaiting(std::uint64_t id);
    TransferPtr Release(CURL* easy);
    CURL* TakeHandle();
    void KeepHandle(CURL* easy);
    void Pause();

    CURLM* multi_ = nullptr;
    std::atomic<std::thread::id> thread_id_;

    std::mutex mutex_;
    std::vector<TransferPtr> submitted_;
    std::vector<std::uint64_t> cancelled_;
    std::uint64_t last_id_ = 0;

    // Of the thread alone.
    std::map<CURL*, TransferPtr> running_;
    std::map<std::string, Server> servers_;
    std::vector<CURL*> idle_handles_;
};

}  // namespace ZellNetLink
