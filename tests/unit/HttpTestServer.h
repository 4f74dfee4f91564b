#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

// A server on loopback that answers with whatever bytes a test wants, also wrong ones.
struct TestRequest
{
    std::string method;
    std::string target;
    std::map<std::string, std::string> headers;  // names in lower case
    std::string body;
};

struct TestReply
{
    std::string bytes;   // the whole answer, head and body
    bool close = false;  // end the connection behind it
};

// A whole answer with its Content-Length. More header lines come with "\r\n" at each one's end.
TestReply Answer(int status, const std::string& body, const std::string& headers = {});

class HttpTestServer
{
public:
    using Handler = std::function<TestReply(const TestRequest&)>;

    explicit HttpTestServer(Handler handler);
    HttpTestServer(const HttpTestServer&) = delete;
    HttpTestServer& operator=(const HttpTestServer&) = delete;
    ~HttpTestServer();

    // "http://127.0.0.1:PORT" and the target behind it.
    std::string Url(const std::string& target) const;
    std::vector<TestRequest> Requests();
    void WaitForRequests(std::size_t count);
    int Connections();

private:
    void Accept();
    void Serve(int connection);
    bool ReadRequest(int connection, std::string& buffer, TestRequest& request);

    Handler handler_;
    int listener_ = -1;
    std::uint16_t port_ = 0;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<TestRequest> requests_;
    std::set<int> open_;
    int connections_ = 0;
    bool ending_ = false;
    std::vector<std::thread> threads_;
    std::thread acceptor_;
};
