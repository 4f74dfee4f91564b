#include "ZellNetLinkHost/HttpClient.h"

#include "HttpLanes.h"
#include "HttpWorker.h"

#include <utility>

namespace ZellNetLink {
namespace {

using Zell::Base::Error::ErrorCode;

}  // namespace

struct HttpClient::Core
{
    HttpWorker worker;
    HttpLanes lanes;
};

HttpClient& HttpClient::Instance()
{
    static auto* client = new HttpClient;
    return *client;
}

HttpClient::HttpClient() : core_(new Core) {}

HttpResponse HttpClient::Perform(HttpRequest request)
{
    // The client's own thread moves the others' transfers.
    if (core_->worker.IsOwnThread()) {
        HttpResponse refused;
        refused.error = ErrorCode(2, kModuleAnswer, NotStarted);
        return refused;
    }
    HttpResponse response;
    HttpTransfer transfer(
        0, std::move(request), [&response](HttpResponse&& answer) { response = std::move(answer); }, true);
    core_->lanes.Run(transfer);
    return response;
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
