#include "station/Making/Workshop.h"

#include "station/Data/Database.h"
#include "station/Guid.h"

#include <algorithm>
#include <exception>
#include <system_error>
#include <utility>

namespace Station {
namespace {

constexpr std::size_t kMostWaiting = 64;
constexpr std::size_t kMostHeld = 256;

std::filesystem::path Unfinished(std::filesystem::path path)
{
    path += ".part";
    return path;
}

void Remove(const std::filesystem::path& path)
{
    // What can't be removed now is removed when the next process starts.
    std::error_code error;
    std::filesystem::remove_all(path, error);
}

}  // namespace

Workshop::Workshop(const std::filesystem::path& folder) : folder_(folder)
{
    Remove(folder_);
    std::error_code error;
    std::filesystem::create_directories(folder_, error);
    if (error)
        throw StoreError("The folder " + folder_.u8string() + " can't be made: " + error.message() + ".");
    thread_ = std::thread([this] { Serve(); });
}

Workshop::~Workshop()
{
    Close();
    thread_.join();
}

void Workshop::Close()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    is_closed_ = true;
    waiting_.clear();
    if (making_)
        making_->progress.is_unwanted = true;
    changed_.notify_all();
}

std::string Workshop::Take(WorkOrder order)
{
    const auto work = std::make_shared<Work>();
    std::string guid = NewGuid();
    work->path = folder_ / (guid + order.suffix);
    work->order = std::move(order);
    const std::lock_guard<std::mutex> lock(mutex_);
    if (is_closed_ || waiting_.size() >= kMostWaiting)
        return {};
    MakeRoom();
    work->number = ++taken_;
    works_[guid] = work;
    if (!work->order.fail_after_polls)
        waiting_.push_back(work);
    changed_.notify_all();
    return guid;
}

void Workshop::WaitUntilDone(const std::string& guid)
{
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [this, &guid] {
        const WorkPointer work = FindWork(guid);
        return !work || is_closed_ || work->order.fail_after_polls || work->state != WorkState::Working;
    });
}

std::optional<WorkReport> Workshop::Poll(const std::string& guid)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const WorkPointer work = FindWork(guid);
    if (!work)
        return std::nullopt;
    WorkReport report;
    report.state = StateOf(*work);
    report.rows = work->progress.rows;
    report.note = work->order.note;
    ++work->polls;
    if (report.state == WorkState::Failed)
        report.failure = work->order.fail_after_polls ? "The order asked for a failure." : work->failure;
    if (report.state == WorkState::Ready)
        report.names = work->progress.names;
    return report;
}

bool Workshop::Stop(const std::string& guid)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const WorkPointer work = FindWork(guid);
    if (!work)
        return false;
    if (StateOf(*work) != WorkState::Failed)
        End(*work);
    return true;
}

bool Workshop::Drop(const std::string& guid)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const WorkPointer work = FindWork(guid);
    if (!work)
        return false;
    End(*work);
    works_.erase(guid);
    return true;
}

std::optional<std::filesystem::path> Workshop::Find(const std::string& guid) const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const WorkPointer work = FindWork(guid);
    if (!work || StateOf(*work) != WorkState::Ready)
        return std::nullopt;
    return work->path;
}

WorkState Workshop::StateOf(const Work& work) const
{
    if (work.state == WorkState::Working && work.order.fail_after_polls)
        return work.polls < *work.order.fail_after_polls ? WorkState::Working : WorkState::Failed;
    if (work.state == WorkState::Ready && work.polls < work.order.ready_after_polls)
        return WorkState::Working;
    return work.state;
}

Workshop::WorkPointer Workshop::FindWork(const std::string& guid) const
{
    const auto found = works_.find(guid);
    return found == works_.end() ? nullptr : found->second;
}

void Workshop::End(Work& work)
{
    if (work.state == WorkState::Ready)
        Remove(work.path);
    work.progress.is_unwanted = true;
    work.state = WorkState::Stopped;
    waiting_.erase(std::remove_if(waiting_.begin(), waiting_.end(),
                                  [&work](const WorkPointer& one) { return one.get() == &work; }),
                   waiting_.end());
    changed_.notify_all();
}

void Workshop::MakeRoom()
{
    while (works_.size() >= kMostHeld) {
        auto oldest = works_.end();
        for (auto work = works_.begin(); work != works_.end(); ++work) {
            const bool is_busy =
                work->second->state == WorkState::Working && !work->second->order.fail_after_polls;
            if (!is_busy && (oldest == works_.end() || work->second->number < oldest->second->number))
                oldest = work;
        }
        if (oldest == works_.end())
            return;
        End(*oldest->second);
        works_.erase(oldest);
    }
}

void Workshop::Serve()
{
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return is_closed_ || !waiting_.empty(); });
        if (is_closed_)
            return;
        making_ = waiting_.front();
        waiting_.pop_front();
        const WorkPointer work = making_;
        lock.unlock();
        Make(*work);
        lock.lock();
        making_ = nullptr;
    }
}

void Workshop::Make(Work& work)
{
    const std::filesystem::path unfinished = Unfinished(work.path);
    std::string failure;
    try {
        work.order.make(unfinished, work.progress);
    } catch (const std::exception& error) {
        failure = error.what();
    }
    work.order.make = nullptr;  // with the condition that it holds, which may be large
    const std::lock_guard<std::mutex> lock(mutex_);
    if (work.progress.is_unwanted) {
        Remove(unfinished);
        return;
    }
    std::error_code error;
    if (failure.empty())
        std::filesystem::rename(unfinished, work.path, error);
    if (error)
        failure = "The file " + work.path.filename().u8string() + " can't be kept: " + error.message() + ".";
    if (!failure.empty())
        Remove(unfinished);
    work.failure = failure;
    work.state = failure.empty() ? WorkState::Ready : WorkState::Failed;
    changed_.notify_all();
}

}  // namespace Station
