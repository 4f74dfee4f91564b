#pragma once

#include "FetchyardLogical/CmsGetExportFileData.h"
#include "tests/unit/TempFolder.h"
#include "ZellClientHostSettings/ClientSettings.h"

#include <gtest/gtest.h>
#include <httplib.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// What the server was asked.
struct Asked
{
    std::string method;
    std::string path;
    std::string body;
    std::string account;
};

// A server on loopback that gives one answer to everything, and a client whose site 0 and 3 it is.
class ServerCallFixture : public ::testing::Test
{
protected:
    ServerCallFixture()
    {
        const auto handler = [this](const httplib::Request& request, httplib::Response& response) {
            const std::lock_guard<std::mutex> lock(mutex_);
            asked_.push_back(
                {request.method, request.path, request.body, request.get_header_value("Authorization")});
            changed_.notify_all();
            response.status = status_;
            response.set_content(answer_, "application/json");
        };
        server_.Post(".*", handler).Get(".*", handler).Put(".*", handler);
        server_.set_keep_alive_max_count(1);  // or stopping waits for the client's idle connection
        port_ = server_.bind_to_any_port("127.0.0.1");
        thread_ = std::thread([this] { server_.listen_after_bind(); });
        while (!server_.is_running())
            std::this_thread::yield();
        settings_.data_path = settings_.public_data_path = folder_.Text();
        settings_.sites = {{0, Site()}, {3, Site()}};
        ZellClientHost::SetClientSettings(settings_);
    }

    ~ServerCallFixture() override
    {
        server_.stop();
        thread_.join();
    }

    std::string Site() const { return "http://127.0.0.1:" + std::to_string(port_); }

    void Answer(const std::string& text, int status = 200)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        answer_ = text;
        status_ = status;
    }

    Asked LastAsked()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        return asked_.empty() ? Asked() : asked_.back();
    }

    // False after a minute.
    bool WaitForPath(const std::string& path)
    {
        std::unique_lock<std::mutex> lock(mutex_);
        return changed_.wait_for(lock, std::chrono::minutes(1),
                                 [&] { return !asked_.empty() && asked_.back().path == path; });
    }

    std::vector<Asked> AllAsked()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        return asked_;
    }

    TempFolder folder_;
    ZellClientHost::ClientSettings settings_;

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::string answer_;
    int status_ = 200;
    std::vector<Asked> asked_;
    httplib::Server server_;
    int port_ = 0;
    std::thread thread_;
};
