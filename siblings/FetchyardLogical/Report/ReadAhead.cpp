#include "Report/ReadAhead.h"

#include "ZellBaseHost/PerThread.h"
#include "ZellBaseHost/ProcessExit.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <utility>

namespace FetchyardLogical::details {

namespace {

// Shared with the transfer, which may end after it has been dropped.
struct Arrival
{
    std::mutex mutex;
    std::condition_variable arrived;
    bool is_there = false;
    ZellNetLink::HttpResponse answer;
};

struct OnItsWay
{
    RequstData request;
    std::uint64_t transfer = 0;
    std::shared_ptr<Arrival> arrival;

    ~OnItsWay()
    {
        if (arrival)
            ZellNetLink::HttpClient::Instance().Cancel(transfer);
    }
};

std::unique_ptr<OnItsWay>& OfThisThread()
{
    static const auto& on_its_way = *new Zell::Base::details::CPerThread<std::unique_ptr<OnItsWay>>();
    return on_its_way.Value();
}

bool IsSame(const RequstData& left, const RequstData& right)
{
    return left.str_method == right.str_method && left.str_quern == right.str_quern &&
           left.str_request == right.str_request && left.site_id == right.site_id;
}

}  // namespace

void BeginReadAhead(const RequstData& request, ZellNetLink::HttpRequest call)
{
    auto on_its_way = std::make_unique<OnItsWay>();
    const auto arrival = std::make_shared<Arrival>();
    on_its_way->request = request;
    on_its_way->arrival = arrival;
    // Somebody waits for it soon: it does not stand behind the pictures of the page in hand.
    call.urgent = true;
    on_its_way->transfer = ZellNetLink::HttpClient::Instance().Start(
        std::move(call), [arrival](ZellNetLink::HttpResponse&& answer) {
            const std::lock_guard<std::mutex> lock(arrival->mutex);
            arrival->answer = std::move(answer);
            arrival->is_there = true;
            arrival->arrived.notify_all();
        });
    OfThisThread() = std::move(on_its_way);
}

bool TakeReadAhead(const RequstData& request, ZellNetLink::HttpResponse& answer)
{
    const std::unique_ptr<OnItsWay> on_its_way = std::move(OfThisThread());
    if (!on_its_way || !IsSame(on_its_way->request, request))
        return false;
    Arrival& arrival = *on_its_way->arrival;
    const Zell::Base::details::CBlockedMark blocked;
    std::unique_lock<std::mutex> lock(arrival.mutex);
    arrival.arrived.wait(lock, [&arrival] { return arrival.is_there; });
    answer = std::move(arrival.answer);
    lock.unlock();
    return true;
}

void DropReadAhead()
{
    OfThisThread() = nullptr;
}

}  // namespace FetchyardLogical::details
