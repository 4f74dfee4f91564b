#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace ClipVault {

// A download under way, shared by the thread that carries it out and those that ask about it.
struct Download
{
    std::atomic<bool> is_stopped{false};
    std::atomic<std::int64_t> bytes{0};  // that have arrived
};

// The downloads by their GUIDs: those under way, the last that ended, and stops for some that have not begun.
// Any thread.
class Downloads
{
public:
    // Never destroyed: exports are called while the process leaves.
    static Downloads& Instance();

    // Null if the plug-in is not started or a download of that GUID is under way. It is stopped already if
    // somebody stopped that GUID before.
    std::shared_ptr<Download> Begin(const std::string& guid);
    void End(const std::string& guid);
    // Only signals. A GUID that is not known is remembered for Begin, the newest 256 are; one that has ended
    // is left alone.
    void Stop(const std::string& guid);
    // Forgets what is known of the GUID; one that is under way goes on.
    void Remove(const std::string& guid);
    // Bytes that arrived for a GUID under way or, of the newest 256, one that has ended; otherwise 0.
    std::int64_t Size(const std::string& guid);

    bool IsOpen();
    // The plug-in is started, and stopped: then all downloads are, none begins, and the
    // rest is forgotten.
    void Open();
    void Close();

private:
    Downloads() = default;

    static constexpr std::size_t kMostRemembered = 256;

    std::mutex mutex_;
    bool is_open_ = false;
    std::map<std::string, std::shared_ptr<Download>> under_way_;
    std::deque<std::pair<std::string, std::int64_t>> ended_;  // with their bytes
    std::deque<std::string> stopped_before_;
};

}  // namespace ClipVault
