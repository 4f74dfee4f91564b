#include "HttpLanes.h"

#include "ZellBaseHost/ProcessExit.h"

#include <algorithm>
#include <utility>

namespace ZellNetLink {
namespace {

constexpr long kMaxIdleConnections = 8;
constexpr int kPollMs = 60000;
constexpr int kCancelPollMs = 40;  // how long a transfer may move on after it was cancelled
constexpr std::size_t kMaxFreeLanes = 64;

void Pause(CURLM* multi, int milliseconds)
{
    const Zell::Base::details::CBlockedMark blocked;
    curl_multi_poll(multi, nullptr, 0, milliseconds, nullptr);
}

// To the end of the one transfer that was added; false if it was cancelled.
bool Move(CURLM* multi, const HttpTransfer& transfer, CURLcode& result)
{
    while (!transfer.IsCancelled()) {
        int running = 0;
        if (curl_multi_perform(multi, &running) != CURLM_OK) {
            result = CURLE_OUT_OF_MEMORY;
            return true;
        }
        int left = 0;
        const CURLMsg* message = curl_multi_info_read(multi, &left);
        if (message != nullptr && message->msg == CURLMSG_DONE) {
            result = message->data.result;
            return true;
        }
        Pause(multi, transfer.CanBeCancelled() ? kCancelPollMs : kPollMs);
    }
    return false;
}

}  // namespace

void HttpLanes::Run(HttpTransfer& transfer)
{
    Lane lane = Take(transfer.Origin());
    CURLcode result = lane.multi == nullptr ? CURLE_FAILED_INIT : transfer.Prepare(lane.easy);
    if (result == CURLE_OK && curl_multi_add_handle(lane.multi, lane.easy) != CURLM_OK)
        result = CURLE_FAILED_INIT;
    bool is_over = true;
    if (result == CURLE_OK) {
        is_over = Move(lane.multi, transfer, result);
        curl_multi_remove_handle(lane.multi, lane.easy);
    }
    if (is_over)
        transfer.Finish(result);
    else
        transfer.FinishCancelled();
    if (result == CURLE_OK) {
        curl_easy_reset(lane.easy);
    } else {
        // A handle that failed early still has its buffer and takes no other size for it.
        curl_easy_cleanup(lane.easy);
        lane.easy = nullptr;
    }
    GiveBack(std::move(lane));
}

HttpLanes::Lane HttpLanes::Take(const std::string& origin)
{
    Lane lane;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        auto found = std::find_if(free_.rbegin(), free_.rend(),
                                  [&origin](const Lane& each) { return each.origin == origin; });
        if (found == free_.rend())
            found = free_.rbegin();
        if (found != free_.rend()) {
            lane = std::move(*found);
            free_.erase(std::next(found).base());
        }
    }
    lane.origin = origin;
    if (lane.multi == nullptr) {
        lane.multi = curl_multi_init();
        if (lane.multi != nullptr)
            curl_multi_setopt(lane.multi, CURLMOPT_MAXCONNECTS, kMaxIdleConnections);
    }
    if (lane.easy == nullptr)
        lane.easy = curl_easy_init();
    return lane;
}

void HttpLanes::GiveBack(Lane lane)
{
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (lane.multi != nullptr && free_.size() < kMaxFreeLanes) {
            free_.push_back(std::move(lane));
            return;
        }
    }
    curl_easy_cleanup(lane.easy);
    curl_multi_cleanup(lane.multi);
}

}  // namespace ZellNetLink
