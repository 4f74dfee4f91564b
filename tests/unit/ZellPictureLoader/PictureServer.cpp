#include "PictureServer.h"

#include "ZellBase/Export.h"

#include <algorithm>
#include <chrono>

// The library of the server is not built with the sanitizer, which therefore does not see how it makes its
// constants known to its threads.
extern "C" ZELL_SYMBOL_EXPORT const char*
__tsan_default_suppressions();                        // NOLINT(bugprone-reserved-identifier)
extern "C" const char* __tsan_default_suppressions()  // NOLINT(bugprone-reserved-identifier)
{
    return "race:libcpp-httplib.so\n";
}

namespace picture_test {
namespace {

constexpr std::size_t kThreads = 48;
constexpr std::size_t kLargeBody = 100000;
constexpr std::chrono::seconds kPatience{10};

}  // namespace

std::string PictureOf(const std::string& path, std::size_t size)
{
    std::string bytes = "picture of " + path + "\n";
    while (bytes.size() < size)
        bytes += static_cast<char>('A' + bytes.size() * 31 % 57);
    return bytes;
}

PictureServer::PictureServer()
{
    server_.new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
    server_.set_keep_alive_max_count(100000);
    server_.set_tcp_nodelay(true);
    server_.Get(".*", [this](const httplib::Request& request, httplib::Response& response) {
        Answer(request, response);
    });
    port_ = server_.bind_to_any_port("127.0.0.1");
    thread_ = std::thread([this] { server_.listen_after_bind(); });
    while (!server_.is_running())
        std::this_thread::yield();
}

PictureServer& PictureServer::Instance()
{
    static auto* server = new PictureServer;
    return *server;
}

void PictureServer::Reset()
{
    std::unique_lock<std::mutex> lock(mutex_);
    held_.clear();
    changed_.notify_all();
    changed_.wait(lock, [this] { return now_ == 0; });
    failures_.clear();
    cut_.clear();
    bodies_.clear();
    targets_.clear();
    last_headers_.clear();
    most_ = 0;
}

void PictureServer::Hold(const std::string& path)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    held_.insert(path);
}

void PictureServer::LetGo(const std::string& path)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    held_.erase(path);
    changed_.notify_all();
}

void PictureServer::Fail(const std::string& path, int status, int count)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    failures_[path] = {status, count};
}

void PictureServer::Cut(const std::string& path)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    cut_.insert(path);
}

void PictureServer::SetBody(const std::string& path, const std::string& body)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    bodies_[path] = body;
}

std::vector<std::string> PictureServer::Targets()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return targets_;
}

std::size_t PictureServer::Count(const std::string& target)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return static_cast<std::size_t>(std::count(targets_.begin(), targets_.end(), target));
}

std::size_t PictureServer::Total()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return targets_.size();
}

std::size_t PictureServer::MostAtATime()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return most_;
}

std::string PictureServer::LastHeader(const std::string& name)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = last_headers_.find(name);
    return found == last_headers_.end() ? std::string() : found->second;
}

bool PictureServer::WaitForTotal(std::size_t requests)
{
    std::unique_lock<std::mutex> lock(mutex_);
    return changed_.wait_for(lock, kPatience, [&] { return targets_.size() >= requests; });
}

bool PictureServer::WaitForTarget(const std::string& target)
{
    std::unique_lock<std::mutex> lock(mutex_);
    return changed_.wait_for(lock, kPatience, [&] {
        return std::find(targets_.begin(), targets_.end(), target) != targets_.end();
    });
}

bool PictureServer::IsHeld(const std::string& path) const
{
    return held_.count(path) != 0 || held_.count("") != 0;
}

void PictureServer::WaitUntilLetGo(const std::string& path)
{
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [&] { return !IsHeld(path); });
}

void PictureServer::Answer(const httplib::Request& request, httplib::Response& response)
{
    std::string body;
    int status = 200;
    bool cut = false;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        targets_.push_back(request.target);
        last_headers_ = request.headers;
        most_ = std::max(most_, ++now_);
        const auto own = bodies_.find(request.path);
        body = own == bodies_.end() ? PictureOf(request.path) : own->second;
        cut = cut_.count(request.path) != 0;
        const auto failure = failures_.find(request.path);
        if (failure != failures_.end() && failure->second.second-- > 0)
            status = failure->second.first;
        changed_.notify_all();
    }
    if (body.size() < kLargeBody)
        WaitUntilLetGo(request.path);
    response.status = status;
    if (status == 200)
        AnswerWith(request.path, cut, body, response);
    const std::lock_guard<std::mutex> lock(mutex_);
    --now_;
    changed_.notify_all();
}

void PictureServer::AnswerWith(const std::string& path, bool cut, const std::string& body,
                               httplib::Response& response)
{
    if (!cut && body.size() < kLargeBody) {
        response.set_content(body, "image/jpeg");
        return;
    }
    response.set_content_provider(
        body.size(), "image/jpeg",
        [this, path, cut, body](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
            const std::size_t half = body.size() / 2;
            if (offset < half)
                return sink.write(body.data() + offset, std::min(length, half - offset));
            WaitUntilLetGo(path);
            return !cut && sink.write(body.data() + offset, length);
        });
}

}  // namespace picture_test
