#include "tests/unit/HttpTestServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <sstream>
#include <stdexcept>

namespace {

bool SendAll(int connection, const std::string& bytes)
{
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const ssize_t now = ::send(connection, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (now <= 0)
            return false;
        sent += static_cast<std::size_t>(now);
    }
    return true;
}

bool ReceiveMore(int connection, std::string& buffer)
{
    std::array<char, 65536> piece{};
    const ssize_t bytes = ::recv(connection, piece.data(), piece.size(), 0);
    if (bytes <= 0)
        return false;
    buffer.append(piece.data(), static_cast<std::size_t>(bytes));
    return true;
}

std::string LowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

void ParseHead(const std::string& head, TestRequest& request)
{
    std::istringstream lines(head);
    lines >> request.method >> request.target;
    std::string line;
    std::getline(lines, line);
    while (std::getline(lines, line)) {
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos)
            continue;
        std::string value = line.substr(colon + 1);
        value.erase(0, value.find_first_not_of(' '));
        value.erase(value.find_last_not_of("\r ") + 1);
        request.headers[LowerCase(line.substr(0, colon))] = value;
    }
}

}  // namespace

TestReply Answer(int status, const std::string& body, const std::string& headers)
{
    return {"HTTP/1.1 " + std::to_string(status) + " Some Reason\r\nContent-Length: " +
                std::to_string(body.size()) + "\r\n" + headers + "\r\n" + body,
            false};
}

HttpTestServer::HttpTestServer(Handler handler) : handler_(std::move(handler))
{
    listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (listener_ < 0 || ::bind(listener_, generic, size) != 0 || ::listen(listener_, 128) != 0 ||
        ::getsockname(listener_, generic, &size) != 0)
        throw std::runtime_error("no listening socket");
    port_ = ntohs(address.sin_port);
    acceptor_ = std::thread([this] { Accept(); });
}

HttpTestServer::~HttpTestServer()
{
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        ending_ = true;
        ::shutdown(listener_, SHUT_RDWR);
        for (const int connection : open_)
            ::shutdown(connection, SHUT_RDWR);
    }
    acceptor_.join();
    for (std::thread& thread : threads_)
        thread.join();
    ::close(listener_);
}

std::string HttpTestServer::Url(const std::string& target) const
{
    return "http://127.0.0.1:" + std::to_string(port_) + target;
}

std::vector<TestRequest> HttpTestServer::Requests()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return requests_;
}

void HttpTestServer::WaitForRequests(std::size_t count)
{
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [&] { return requests_.size() >= count; });
}

int HttpTestServer::Connections()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return connections_;
}

void HttpTestServer::Accept()
{
    for (;;) {
        const int connection = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        const std::lock_guard<std::mutex> lock(mutex_);
        if (ending_ || connection < 0) {
            if (connection >= 0)
                ::close(connection);
            return;
        }
        ++connections_;
        open_.insert(connection);
        threads_.emplace_back([this, connection] { Serve(connection); });
    }
}

void HttpTestServer::Serve(int connection)
{
    std::string buffer;
    TestRequest request;
    while (ReadRequest(connection, buffer, request)) {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            requests_.push_back(request);
            changed_.notify_all();
        }
        const TestReply reply = handler_(request);
        if (!SendAll(connection, reply.bytes) || reply.close)
            break;
        request = {};
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    open_.erase(connection);
    ::shutdown(connection, SHUT_RDWR);
    ::close(connection);
}

bool HttpTestServer::ReadRequest(int connection, std::string& buffer, TestRequest& request)
{
    std::size_t end = std::string::npos;
    while ((end = buffer.find("\r\n\r\n")) == std::string::npos) {
        if (!ReceiveMore(connection, buffer))
            return false;
    }
    ParseHead(buffer.substr(0, end), request);
    buffer.erase(0, end + 4);
    const auto length = request.headers.find("content-length");
    const std::size_t size = length == request.headers.end() ? 0 : std::stoul(length->second);
    while (buffer.size() < size) {
        if (!ReceiveMore(connection, buffer))
            return false;
    }
    request.body = buffer.substr(0, size);
    buffer.erase(0, size);
    return true;
}
