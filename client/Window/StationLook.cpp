#include "Window/StationLook.h"

#include "ZellErrorText/ErrorInfoMgr.h"
#include "ZellNetLinkHost/HttpClient.h"
#include "ZellWidgets/ZellWidgets.h"

#include <QMetaObject>

#include <mutex>
#include <utility>

namespace FetchyardClient {

namespace {

constexpr int kAgainMilliseconds = 3000;
constexpr unsigned long kTimeoutMilliseconds = 4000;

}  // namespace

struct StationLook::Link
{
    std::mutex mutex;
    StationLook* look = nullptr;
};

StationLook::StationLook(QObject* parent) : QObject(parent), link_(std::make_shared<Link>())
{
    link_->look = this;
    again_.setSingleShot(true);
    again_.setInterval(kAgainMilliseconds);
    connect(&again_, &QTimer::timeout, this, &StationLook::Ask);
}

StationLook::~StationLook()
{
    const std::lock_guard<std::mutex> lock(link_->mutex);
    link_->look = nullptr;
}

void StationLook::LookAt(const std::string& address)
{
    address_ = address;
    ++round_;
    again_.stop();
    if (!address_.empty())
        Ask();
}

void StationLook::Ask()
{
    ZellNetLink::HttpRequest request;
    request.url = address_ + "/health";
    request.timeout_ms = kTimeoutMilliseconds;
    request.urgent = true;
    const std::uint64_t round = round_;
    const auto done = [link = link_, round](ZellNetLink::HttpResponse&& response) {
        // A station that wants an account answers too.
        constexpr int unauthorized = 401;
        const bool answers = response.status == unauthorized;
        const int module = answers ? 0 : response.error.iFirstCode;
        const int code = answers ? 0 : response.error.iSecondCode;
        const std::lock_guard<std::mutex> lock(link->mutex);
        if (StationLook* look = link->look)
            QMetaObject::invokeMethod(
                look, [look, round, module, code] { look->Hear(round, module, code); }, Qt::QueuedConnection);
    };
    ZellNetLink::HttpClient::Instance().Start(std::move(request), done);
}

void StationLook::Hear(std::uint64_t round, int module, int code)
{
    if (round != round_)
        return;
    again_.start();
    if (module == 0 && code == 0)
        emit Seen(true, {});
    else
        emit Seen(
            false,
            ZellWidgets::CUiSingleton<ZellErrorText::CErrorInfoMgr>::Instance().GetErrorInfoByModuleAndCode(
                module, code));
}

}  // namespace FetchyardClient
