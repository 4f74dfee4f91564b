#pragma once

#include "station/Http/Faults.h"
#include "station/Http/RequestCounts.h"
#include "station/Http/Routes.h"
#include "station/Platform/Platform.h"

#include <httplib.h>

#include <atomic>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace Station {

struct Services;

// The HTTP side of the station: connections, faults, accounts, and the way to the endpoints.
class Server final : private httplib::Server
{
public:
    explicit Server(Services& services);

    // Port 0 takes a free one. False if the address can't be had.
    bool Bind(const std::string& host, int port);
    int Port() const { return port_; }
    // Serves on the calling thread until Stop; false if it could not.
    bool Serve();
    // From another thread, while Serve runs or is about to: lets answers under way finish, then Serve
    // returns.
    void Stop();

private:
    bool process_and_close_socket(socket_t socket) override;
    void KeepTrack(Platform::Socket socket, bool is_open);
    // What the faults in force do to the request; true if nothing else is to be done.
    bool Suffer(const std::string& path, httplib::Response& response);

    Services& services_;
    const std::vector<Route> routes_;
    int port_ = 0;
    std::atomic<bool> is_over_{false};
    std::atomic<bool> is_stopping_{false};
    std::atomic<bool> is_crowded_{false};
    std::mutex sockets_mutex_;
    std::set<Platform::Socket> sockets_;
};

}  // namespace Station
