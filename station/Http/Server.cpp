#include "station/Http/Server.h"

#include "station/Data/Database.h"
#include "station/Endpoints/Endpoints.h"
#include "station/Http/Connection.h"
#include "station/Http/ConnectionThreads.h"
#include "station/Services.h"

#include <exception>
#include <iostream>
#include <thread>

namespace Station {
namespace {

constexpr std::size_t kMostThreads = 256;
constexpr std::size_t kLargestBody = 64u << 20;  // bytes
constexpr std::size_t kMostRequestsOfConnection = 1000000;
constexpr int kIdleMs = 15000;
constexpr std::size_t kGarbageBytes = 777;

// The tests' own requests are neither counted nor made to fail.
bool IsControl(const std::string& path)
{
    return path.compare(0, 9, "/control/") == 0;
}

// "Basic <name:password in Base64>" to its two parts.
bool ReadBasic(const httplib::Request& request, std::string& user, std::string& password)
{
    const std::string header = request.get_header_value("Authorization");
    constexpr std::string_view kScheme = "Basic ";
    std::string pair;
    if (header.compare(0, kScheme.size(), kScheme) != 0 || !DecodeBase64(header.substr(kScheme.size()), pair))
        return false;
    const std::size_t colon = pair.find(':');
    if (colon == std::string::npos)
        return false;
    user = pair.substr(0, colon);
    password = pair.substr(colon + 1);
    return true;
}

bool HasAccount(Services& services, const httplib::Request& request, httplib::Response& response)
{
    std::string user;
    std::string password;
    if (ReadBasic(request, user, password) && services.accounts.IsRight(user, password))
        return true;
    response.set_header("WWW-Authenticate", "Basic realm=\"station\", charset=\"UTF-8\"");
    AnswerError(response, 401, StationWrongAccount, "A user name and the right password are needed.");
    return false;
}

std::string Garbage()
{
    std::string bytes;
    unsigned state = 12345;
    for (std::size_t i = 0; i < kGarbageBytes; ++i) {
        state = state * 1664525u + 1013904223u;
        bytes += static_cast<char>(state >> 24);
    }
    return bytes;
}

void Dispatch(Services& services, const std::vector<Route>& routes, const httplib::Request& request,
              httplib::Response& response)
{
    const std::string_view method = request.method == "HEAD" ? "GET" : std::string_view(request.method);
    const FoundRoute found = FindRoute(routes, method, request.path);
    const Route* const route = found.route;
    const bool is_hidden = route != nullptr && route->is_control && !services.has_control;
    if (found.match == RouteMatch::None || is_hidden) {
        AnswerError(response, 404, StationNoSuchObject, "There is nothing at " + request.path + ".");
        return;
    }
    if (route == nullptr) {
        AnswerError(response, 405, StationNoSuchObject, request.method + " is not for " + request.path + ".");
        return;
    }
    if (services.require_account && !route->is_open && !HasAccount(services, request, response))
        return;
    Call call{services, request, response, found.name, found.second_name};
    route->handle(call);
}

void AnswerException(httplib::Response& response, const std::exception_ptr& error)
{
    std::string text = "The station could not do that.";
    try {
        std::rethrow_exception(error);
    } catch (const std::exception& exception) {
        text = exception.what();
    } catch (...) {
    }
    std::cerr << "station: " << text << std::endl;
    AnswerError(response, 500, StationStoreFailed, text);
}

// The HTTP library does not look at the size of what it cuts ranges from; the endpoints do that.
void TakeRangeFromLibrary(httplib::Request& request)
{
    request.ranges.clear();
}

}  // namespace

Server::Server(Services& services) : services_(services), routes_(StationRoutes())
{
    const auto handle = [this](const httplib::Request& request, httplib::Response& response) {
        if (!Suffer(request.path, response))
            Dispatch(services_, routes_, request, response);
    };
    Get(".*", handle).Post(".*", handle).Put(".*", handle).Patch(".*", handle);
    Delete(".*", handle).Options(".*", handle);
    set_pre_routing_handler([](const httplib::Request& request, httplib::Response&) {
        if (!IsControl(request.path))
            Connection::Current()->SetPath(request.path);
        return HandlerResponse::Unhandled;
    });
    set_error_handler(HandlerWithResponse([](const httplib::Request&, httplib::Response& response) {
        // An answer without a text comes from the HTTP library, which may have left a body unread.
        if (response.body.empty()) {
            AnswerError(response, response.status, StationBadCondition, "The request can't be read.");
            response.set_header("Connection", "close");
            Connection::Current()->MakeLast();
        }
        return HandlerResponse::Unhandled;
    }));
    set_exception_handler([](const httplib::Request&, httplib::Response& response, std::exception_ptr error) {
        AnswerException(response, error);
    });
    set_payload_max_length(kLargestBody);
    set_keep_alive_max_count(kMostRequestsOfConnection);
    set_idle_interval(0);
    set_socket_options(Platform::PrepareListener);
    new_task_queue = [this] { return new ConnectionThreads(kMostThreads, is_crowded_); };
}

bool Server::Bind(const std::string& host, int port)
{
    if (port == 0) {
        port_ = bind_to_any_port(host);
    } else {
        port_ = bind_to_port(host, port) ? port : -1;
    }
    if (port_ <= 0)
        return false;
    Platform::WidenBacklog(svr_sock_);
    return true;
}

bool Server::Serve()
{
    return listen_after_bind();
}

void Server::Stop()
{
    is_stopping_ = true;
    services_.faults.EndWaits();
    services_.reports.Close();
    services_.logs.Close();
    // The library takes no notice of a stop that comes before it has begun.
    while (!is_running() && !is_over_)
        std::this_thread::yield();
    stop();
    const std::lock_guard<std::mutex> lock(sockets_mutex_);
    for (const Platform::Socket socket : sockets_)
        Platform::EndReading(socket);
}

void Server::KeepTrack(Platform::Socket socket, bool is_open)
{
    const std::lock_guard<std::mutex> lock(sockets_mutex_);
    if (!is_open) {
        sockets_.erase(socket);
        return;
    }
    sockets_.insert(socket);
    // One that was accepted just before the stop must not wait for a request.
    if (is_stopping_)
        Platform::EndReading(socket);
}

bool Server::process_and_close_socket(socket_t socket)
{
    Connection connection(socket, is_stopping_, services_.has_control ? &services_.counts : nullptr);
    KeepTrack(socket, true);
    std::size_t left = keep_alive_max_count_;
    const auto should_yield = [this] { return is_crowded_.load(); };
    while (left > 0 && connection.WaitForRequest(kIdleMs, should_yield)) {
        --left;
        bool is_closed = false;
        connection.BeginRequest();
        const bool is_good =
            process_request(connection, left == 0 || is_stopping_, is_closed, TakeRangeFromLibrary);
        connection.EndRequest();
        if (!is_good || is_closed || connection.IsBroken())
            break;
    }
    KeepTrack(socket, false);
    return true;
}

bool Server::Suffer(const std::string& path, httplib::Response& response)
{
    if (!services_.has_control || IsControl(path))
        return false;
    const FaultPlan::Verdict verdict = services_.faults.Judge(path);
    services_.faults.WaitOut(verdict.delay_ms);
    if (!verdict.is_hit)
        return false;
    switch (verdict.fault.kind) {
        case FaultKind::Status:
            response.status = verdict.fault.status;
            response.set_content("The station was told to fail.\n", "text/plain");
            return true;
        case FaultKind::Garbage:
            response.set_content(Garbage(), kJson);
            return true;
        case FaultKind::Reset:
            Connection::Current()->ResetInsteadOfAnswer();
            return true;
        case FaultKind::Cut:
            Connection::Current()->CutBodyAt(verdict.fault.cut_at);
            return false;
        case FaultKind::Slow:
            Connection::Current()->SlowDown(verdict.fault.bytes_per_second,
                                            [this](std::int64_t ms) { services_.faults.WaitOut(ms); });
            return false;
        case FaultKind::Range:
            Connection::Current()->LieAboutRange();
            return false;
        case FaultKind::Delay:
            break;
    }
    return false;
}

}  // namespace Station
