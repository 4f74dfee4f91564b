#include "ZellBase/MessageLoop.h"

#include "ProcessExit.h"
#include "ZellBase/Log.h"
#include "ZellBaseHost/ProcessExit.h"

#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace Zell::Base {

// Shared by the loop and its thread, so that neither has to wait for the other's end.
struct CMessageLoopBase::Core
{
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::unique_ptr<CTask>> tasks;
    bool has_thread = false;
    bool closed = false;

    std::unique_ptr<CTask> Take();
    static void Run(const std::shared_ptr<Core>& core);
};

namespace {

void ExecTask(CTask& task)
{
    try {
        task.Exec();
    } catch (const std::exception& error) {
        details::IOXTFormatLog(details::kLogError, "ZellBase", "[%s]a task threw: %s[%s(%d)]",
                               "Zell::Base::CMessageLoopBase::PostTask", error.what(), __FILE__, __LINE__);
    } catch (...) {
        details::IOXTFormatLog(details::kLogError, "ZellBase", "[%s]a task threw[%s(%d)]",
                               "Zell::Base::CMessageLoopBase::PostTask", __FILE__, __LINE__);
    }
}

// False if the system has no thread to give; the next task asks again.
template <typename Run>
bool StartThread(Run run)
{
    try {
        std::thread(std::move(run)).detach();
        return true;
    } catch (const std::system_error& error) {
        details::IOXTFormatLog(details::kLogError, "ZellBase", "[%s]no thread: %s[%s(%d)]",
                               "Zell::Base::CMessageLoopBase::PostTask", error.what(), __FILE__, __LINE__);
        return false;
    }
}

}  // namespace

// Null when the loop has gone. The mark stands before the lock: a thread that parks must not hold the mutex.
std::unique_ptr<CTask> CMessageLoopBase::Core::Take()
{
    const details::CBlockedMark blocked;
    std::unique_lock<std::mutex> lock(mutex);
    changed.wait(lock, [this] { return closed || !tasks.empty(); });
    if (closed)
        return nullptr;
    std::unique_ptr<CTask> task = std::move(tasks.front());
    tasks.pop_front();
    return task;
}

void CMessageLoopBase::Core::Run(const std::shared_ptr<Core>& core)
{
    const details::CWorkerMark mark;
    while (const std::unique_ptr<CTask> task = core->Take())
        ExecTask(*task);
}

CMessageLoopBase::CMessageLoopBase() : core_(std::make_shared<Core>())
{
    details::WatchProcessExit();
    // Somebody who asks for the loop after the statics have gone gets a new one.
    core_->closed = details::IsProcessLeaving();
}

CMessageLoopBase::~CMessageLoopBase()
{
    std::deque<std::unique_ptr<CTask>> left;
    {
        const std::lock_guard<std::mutex> lock(core_->mutex);
        core_->closed = true;
        left.swap(core_->tasks);
    }
    core_->changed.notify_all();
}

void CMessageLoopBase::PostTask(CTask* task)
{
    std::unique_ptr<CTask> owned(task);
    if (!owned)
        return;
    const std::lock_guard<std::mutex> lock(core_->mutex);
    if (core_->closed)
        return;
    core_->tasks.push_back(std::move(owned));
    core_->changed.notify_one();
    if (!core_->has_thread)
        core_->has_thread = StartThread([core = core_] { Core::Run(core); });
}

}  // namespace Zell::Base

ZELL_SINGLETON_DEFINE(Zell::Base::CMessageLoopForNotify)
