#pragma once

#include <httplib.h>

#include <condition_variable>
#include <cstddef>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace picture_test {

// The bytes that the server gives for a path, different for each.
std::string PictureOf(const std::string& path, std::size_t size = 2000);

// A web server on loopback that gives every path a picture, writes down what it was asked for, and can be
// told to hold an answer back, to fail or to cut it.
class PictureServer
{
public:
    // The one of the process: it ends with it, since a server takes seconds to end the connections of a
    // client that keeps them.
    static PictureServer& Instance();

    PictureServer(const PictureServer&) = delete;
    PictureServer& operator=(const PictureServer&) = delete;

    // Lets everything go, forgets what it was told and asked, once no answer is being given.
    void Reset();

    std::string url() const { return "http://127.0.0.1:" + std::to_string(port_); }
    std::string local_name_url() const { return "http://localhost:" + std::to_string(port_); }

    // Answers to these paths ("" for all) wait until they are let go; of a large picture the first half is
    // sent.
    void Hold(const std::string& path);
    void LetGo(const std::string& path);
    // The next count requests for the path get this status.
    void Fail(const std::string& path, int status, int count);
    // The connection ends in the middle of the body.
    void Cut(const std::string& path);
    void SetBody(const std::string& path, const std::string& body);

    // Requests so far, as they stood in the request line, in the order in which they came.
    std::vector<std::string> Targets();
    std::size_t Count(const std::string& target);
    std::size_t Total();
    std::size_t MostAtATime();
    std::string LastHeader(const std::string& name);

    // Each waits ten seconds at most; false then.
    bool WaitForTotal(std::size_t requests);
    bool WaitForTarget(const std::string& target);

private:
    PictureServer();
    ~PictureServer() = default;
    void Answer(const httplib::Request& request, httplib::Response& response);
    void AnswerWith(const std::string& path, bool cut, const std::string& body, httplib::Response& response);
    bool IsHeld(const std::string& path) const;
    void WaitUntilLetGo(const std::string& path);

    httplib::Server server_;
    int port_ = 0;
    std::thread thread_;

    std::mutex mutex_;
    std::condition_variable changed_;
    std::set<std::string> held_;
    std::map<std::string, std::pair<int, int>> failures_;  // status and how many more
    std::set<std::string> cut_;
    std::map<std::string, std::string> bodies_;
    std::vector<std::string> targets_;
    httplib::Headers last_headers_;
    std::size_t now_ = 0;
    std::size_t most_ = 0;
};

}  // namespace picture_test
