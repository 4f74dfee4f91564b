#include "ZellNetLinkHost/HttpClient.h"

#include "HttpWorker.h"
#include "ZellBaseHost/ProcessExit.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <utility>

namespace ZellNetLink {
namespace {

using Zell::Base::Error::ErrorCode;

// Where a calling thread waits for its answer.
struct Waiter
{
    std::mutex mutex;
    std::condition_variable arrived;
    bool is_there = false;
    HttpResponse response;
};

void WaitFor(Waiter& waiter)
{
    const Zell::Base::details::CBlockedMark blocked;
    std::unique_lock<std::mutex> lock(waiter.mutex);
    waiter.arrived.wait(lock, [&waiter] { return waiter.is_there; });
}

}  // namespace

struct HttpClient::Core
{
    HttpWorker worker;
};

HttpClient& HttpClient::Instance()
{
    static auto* client = new HttpClient;
    return *client;
}

HttpClient::HttpClient() : core_(new Core) {}

HttpResponse HttpClient::Perform(HttpRequest request)
{
    // The client's own thread would wait for itself.
    if (core_->worker.IsOwnThread()) {
        HttpResponse refused;
        refused.error = ErrorCode(2, kModuleAnswer, NotStarted);
        return refused;
    }
    const auto waiter = std::make_shared<Waiter>();
    const auto deliver = [waiter](HttpResponse&& response) {
        const std::lock_guard<std::mutex> lock(waiter->mutex);
        waiter->response = std::move(response);
        waiter->is_there = true;
        waiter->arrived.notify_one();
    };
    core_->worker.Submit(std::move(request), deliver, true);
    WaitFor(*waiter);
    return std::move(waiter->response);
}

std::uint64_t HttpClient::Start(HttpRequest request, Done done)
{
    const bool somebody_waits = request.urgent;
    return core_->worker.Submit(std::move(request), std::move(done), somebody_waits);
}

void HttpClient::Cancel(std::uint64_t id)
{
    core_->worker.Cancel(id);
}

}  // namespace ZellNetLink
