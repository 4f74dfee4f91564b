#include "HttpWorker.h"

#include "ZellBaseHost/ProcessExit.h"

#include <openssl/crypto.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace ZellNetLink {
namespace {

constexpr long kMaxIdleConnections = 64;
constexpr int kPollMs = 60000;

}  // namespace

HttpWorker::HttpWorker()
{
    // The cipher library would otherwise clean up in an exit handler, under the feet of this thread.
    OPENSSL_init_crypto(OPENSSL_INIT_NO_ATEXIT, nullptr);
    if (curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK)
        multi_ = curl_multi_init();
    if (multi_ != nullptr)
        curl_multi_setopt(multi_, CURLMOPT_MAXCONNECTS, kMaxIdleConnections);
    std::thread([this] { Run(); }).detach();
}

std::uint64_t HttpWorker::Submit(HttpRequest request, HttpClient::Done done, bool somebody_waits)
{
    std::uint64_t id = 0;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        id = ++last_id_;
        submitted_.push_back(
            std::make_unique<HttpTransfer>(id, std::move(request), std::move(done), somebody_waits));
    }
    curl_multi_wakeup(multi_);
    return id;
}

void HttpWorker::Cancel(std::uint64_t id)
{
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        cancelled_.push_back(id);
    }
    curl_multi_wakeup(multi_);
}

void HttpWorker::Run()
{
    const Zell::Base::details::CWorkerMark mark;
    thread_id_.store(std::this_thread::get_id());
    for (;;) {
        TakeOrders();
        int running = 0;
        const CURLMcode moved = curl_multi_perform(multi_, &running);
        Collect();
        Pause();
        if (moved != CURLM_OK)  // out of memory: not in a tight loop
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

void HttpWorker::Pause()
{
    const Zell::Base::details::CBlockedMark blocked;
    curl_multi_poll(multi_, nullptr, 0, kPollMs, nullptr);
}

void HttpWorker::TakeOrders()
{
    std::vector<TransferPtr> submitted;
    std::vector<std::uint64_t> cancelled;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        submitted.swap(submitted_);
        cancelled.swap(cancelled_);
    }
    for (TransferPtr& transfer : submitted)
        Admit(std::move(transfer));
    for (const std::uint64_t id : cancelled)
        CancelNow(id);
}

void HttpWorker::Admit(TransferPtr transfer)
{
    if (transfer->SomebodyWaits()) {
        Begin(std::move(transfer));
        return;
    }
    const std::string origin = transfer->Origin();
    servers_[origin].waiting.push_back(std::move(transfer));
    BeginWaiting(origin);
}

// False, with the failure delivered, if the transfer could not begin.
bool HttpWorker::Begin(TransferPtr transfer)
{
    CURL* easy = TakeHandle();
    CURLcode result = transfer->Prepare(easy);
    if (result == CURLE_OK && curl_multi_add_handle(multi_, easy) != CURLM_OK)
        result = CURLE_FAILED_INIT;
    if (result == CURLE_OK) {
        running_.emplace(easy, std::move(transfer));
        return true;
    }
    transfer->Finish(result);
    curl_easy_cleanup(easy);
    return false;
}

void HttpWorker::BeginWaiting(const std::string& origin)
{
    const auto found = servers_.find(origin);
    if (found == servers_.end())
        return;
    Server& server = found->second;
    while (server.running < kMaxWaitless && !server.waiting.empty()) {
        TransferPtr next = std::move(server.waiting.front());
        server.waiting.pop_front();
        if (Begin(std::move(next)))
            ++server.running;
    }
    if (server.running == 0)
        servers_.erase(found);
}

void HttpWorker::Ended(const HttpTransfer& transfer)
{
    if (transfer.SomebodyWaits())
        return;
    --servers_[transfer.Origin()].running;
    BeginWaiting(transfer.Origin());
}

void HttpWorker::Collect()
{
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(multi_, &left)) {
        if (message->msg != CURLMSG_DONE)
            continue;
        const CURLcode code = message->data.result;
        CURL* easy = message->easy_handle;
        const TransferPtr transfer = Release(easy);
        transfer->Finish(code);
        // A handle that failed early still has its buffer and takes no other size for it.
        if (code == CURLE_OK)
            KeepHandle(easy);
        else
            curl_easy_cleanup(easy);
        Ended(*transfer);
    }
}

void HttpWorker::CancelNow(std::uint64_t id)
{
    if (const TransferPtr waiting = TakeWaiting(id)) {
        waiting->FinishCancelled();
        return;
    }
    const auto found = std::find_if(running_.begin(), running_.end(),
                                    [id](const auto& entry) { return entry.second->Id() == id; });
    if (found == running_.end())
        return;
    CURL* easy = found->first;
    const TransferPtr transfer = Release(easy);
    transfer->FinishCancelled();
    curl_easy_cleanup(easy);
    Ended(*transfer);
}

HttpWorker::TransferPtr HttpWorker::TakeWaiting(std::uint64_t id)
{
    for (auto& entry : servers_) {
        std::deque<TransferPtr>& waiting = entry.second.waiting;
        const auto found = std::find_if(waiting.begin(), waiting.end(),
                                        [id](const TransferPtr& transfer) { return transfer->Id() == id; });
        if (found == waiting.end())
            continue;
        TransferPtr transfer = std::move(*found);
        waiting.erase(found);
        return transfer;
    }
    return nullptr;
}

HttpWorker::TransferPtr HttpWorker::Release(CURL* easy)
{
    const auto found = running_.find(easy);
    TransferPtr transfer = std::move(found->second);
    running_.erase(found);
    curl_multi_remove_handle(multi_, easy);
    return transfer;
}

CURL* HttpWorker::TakeHandle()
{
    if (idle_handles_.empty())
        return curl_easy_init();
    CURL* easy = idle_handles_.back();
    idle_handles_.pop_back();
    return easy;
}

void HttpWorker::KeepHandle(CURL* easy)
{
    if (idle_handles_.size() >= kMaxIdleHandles) {
        curl_easy_cleanup(easy);
        return;
    }
    curl_easy_reset(easy);
    idle_handles_.push_back(easy);
}

}  // namespace ZellNetLink
