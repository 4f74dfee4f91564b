#pragma once

#include "Address.h"
#include "CacheFolder.h"
#include "Picture.h"
#include "PictureCache.h"
#include "ZellBase/Error.h"
#include "ZellNetLinkHost/HttpClient.h"
#include "ZellPictureLoaderHost/LoaderHost.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace ZellPictureLoader {

// What to fetch and within which limits.
struct PictureRequest
{
    Address address;
    bool cacheable = false;
    std::size_t max_bytes = 0;
    unsigned long timeout_ms = 0;
};

// One run of the library, from its first start to its last stop: who waits for what, what is fetched ahead,
// and the cache. A picture that may be cached is fetched once however many ask for it. Any thread; the mutex
// is never held across a call into another library.
class CSession : public std::enable_shared_from_this<CSession>
{
public:
    // Null with the system's error if the cache's folder can't be made.
    static std::shared_ptr<CSession> Start(const std::string& root, const LoaderBounds& bounds,
                                           Zell::Base::Error::ErrorCode& error);

    CSession(const CSession&) = delete;
    CSession& operator=(const CSession&) = delete;
    ~CSession() = default;

    // Ends all transfers; whoever waits gets Cancelled. Called once.
    void Stop();

    // Waits for the picture. Null: error says why.
    std::shared_ptr<CPicture> Fetch(const PictureRequest& request, Zell::Base::Error::ErrorCode& error);
    // Returns at once.
    void Warm(const std::vector<PictureRequest>& requests);

    LoaderStatistics Statistics();
    bool WaitUntilQuiet(std::chrono::milliseconds timeout);
    const std::shared_ptr<CCacheFolder>& folder() const { return folder_; }

private:
    enum class State { Queued, Running, Ended };
    // One picture on its way: waiting for the warm-up, under way, or arrived and not yet in the cache.
    struct Transfer
    {
        PictureRequest request;
        std::string key;  // empty if it is not to be cached
        State state = State::Queued;
        bool begun_by_warm_up = false;
        bool asked = false;
        std::chrono::steady_clock::time_point queued_at;
        std::uint64_t id = 0;  // of the client
        std::shared_ptr<CPictureReceiver> receiver;
        std::shared_ptr<CPicture> picture;
        Zell::Base::Error::ErrorCode error;
        std::condition_variable ended;
    };
    using TransferPtr = std::shared_ptr<Transfer>;
    using TransferList = std::vector<TransferPtr>;

    CSession(std::shared_ptr<CCacheFolder> folder, const LoaderBounds& bounds);

    // Under the lock. What they add to begin is launched when the lock is given up.
    TransferPtr FindOrBegin(const PictureRequest& request, std::shared_ptr<CPicture>& cached,
                            TransferList& begin);
    TransferPtr BeginAsked(const PictureRequest& request, const std::string& key, TransferList& begin);
    void Begin(const TransferPtr& transfer, TransferList& begin);
    void BeginWarm(TransferList& begin);
    bool TakeIn(const PictureRequest& request);
    void End(const TransferPtr& transfer, std::shared_ptr<CPicture> picture,
             const Zell::Base::Error::ErrorCode& error);
    void ForgetQueue();
    bool HasMemory() const;
    bool IsQuiet() const;

    // Without the lock.
    void Launch(const TransferList& begin);
    void LaunchOne(const TransferPtr& transfer);
    void WaitForEnd(Transfer& transfer);
    void OnDone(const TransferPtr& transfer, const ZellNetLink::HttpResponse& answer);
    void RunStore();
    TransferPtr NextToStore();
    void Store(const TransferPtr& transfer);
    std::shared_ptr<CPicture> MakeFile(const TransferPtr& transfer);

    const LoaderBounds bounds_;
    const std::shared_ptr<CCacheFolder> folder_;

    std::mutex mutex_;
    bool stopping_ = false;
    CPictureCache cache_;
    std::unordered_map<std::string, TransferPtr> by_key_;  // the cacheable ones that are not in the cache yet
    std::deque<TransferPtr> queue_;                        // those begun meanwhile are passed over
    std::size_t queued_ = 0;
    std::unordered_set<TransferPtr> running_;
    std::size_t warm_running_ = 0;
    std::deque<TransferPtr> to_store_;  // the first one is being stored
    std::size_t memory_to_store_ = 0;   // bytes
    std::condition_variable store_work_;
    std::condition_variable quiet_;
    LoaderStatistics statistics_;
    std::thread store_;
};

}  // namespace ZellPictureLoader
