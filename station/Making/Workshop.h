#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace Station {

// What the maker of a piece of work tells while it works, and is told.
struct WorkProgress
{
    std::atomic<std::int64_t> rows{0};     // written so far
    std::atomic<bool> is_unwanted{false};  // nobody waits any more: the maker may return at once
    std::vector<std::string> names;        // files of a folder that was made; set by the maker at its end
};

// A piece of work that a client orders.
struct WorkOrder
{
    // Makes a file or a folder at the path. Throws std::exception if it can't; what() is told to the client.
    std::function<void(const std::filesystem::path& path, WorkProgress& progress)> make;
    std::string suffix;  // of the made file, such as ".csv"; empty for a folder
    // So many polls answer Working before it is Ready: for tests of clients, which then need no clock.
    std::int64_t ready_after_polls = 0;
    // Nothing is made, so many polls answer Working, and the next ones Failed.
    std::optional<std::int64_t> fail_after_polls;
    std::string note;  // handed back by polls
};

enum class WorkState { Working, Ready, Failed, Stopped };

struct WorkReport
{
    WorkState state = WorkState::Working;
    std::int64_t rows = 0;
    std::string failure;             // why it failed, in words
    std::vector<std::string> names;  // of a folder that is Ready
    std::string note;                // of the order
};

// Makes what clients order, one piece after the other on a thread of its own, and holds it in a folder until
// they say that they have it. A piece gets its name when it is whole. All operations may be called from any
// thread.
class Workshop
{
public:
    // Removes what an earlier process left in the folder. Throws StoreError if the folder can't be made.
    explicit Workshop(const std::filesystem::path& folder);
    ~Workshop();
    Workshop(const Workshop&) = delete;
    Workshop& operator=(const Workshop&) = delete;

    // The guid of the new piece; empty if too many wait. Old ones that are done give way to it, if there are
    // many.
    std::string Take(WorkOrder order);
    // Waits until the piece is made, or never will be.
    void WaitUntilDone(const std::string& guid);
    // Counts as a poll; nothing if there is no such piece.
    std::optional<WorkReport> Poll(const std::string& guid);
    // Ends the making and removes what is there; the piece stays as Stopped, or as Failed if it was. False if
    // there is no such piece.
    bool Stop(const std::string& guid);
    // The same, and the piece is forgotten.
    bool Drop(const std::string& guid);
    // Where a piece that is Ready lies; nothing in any other state.
    std::optional<std::filesystem::path> Find(const std::string& guid) const;
    // Ends all making, and every wait for it; new orders are refused. For the end of the process.
    void Close();

private:
    struct Work
    {
        WorkOrder order;
        std::filesystem::path path;
        std::uint64_t number = 0;  // of all that were taken
        WorkProgress progress;
        // The rest is under the lock.
        WorkState state = WorkState::Working;  // Ready once it is made
        std::int64_t polls = 0;
        std::string failure;
    };
    using WorkPointer = std::shared_ptr<Work>;

    void Serve();
    void Make(Work& work);
    // Under the lock.
    WorkState StateOf(const Work& work) const;
    WorkPointer FindWork(const std::string& guid) const;
    void End(Work& work);
    void MakeRoom();

    const std::filesystem::path folder_;
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::map<std::string, WorkPointer> works_;
    std::deque<WorkPointer> waiting_;
    WorkPointer making_;
    std::uint64_t taken_ = 0;
    bool is_closed_ = false;
    std::thread thread_;
};

}  // namespace Station
