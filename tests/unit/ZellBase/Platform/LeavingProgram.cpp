// Leaves main in the ways that a host can leave while work is going on. The first argument names the way.
#include "ZellBase/Log.h"
#include "ZellBase/MessageLoop.h"
#include "ZellBase/Observer.h"
#include "ZellBaseHost/LogHost.h"
#include "ZellBaseHost/ProcessExit.h"

#include <unistd.h>

#include <atomic>
#include <condition_variable>
#include <cstdlib>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

namespace {

using Zell::Base::details::IOXTFormatLog;

std::atomic<unsigned long> rounds{0};

// Ends the process with 9 if a worker still runs when this static goes.
class LastStatic
{
public:
    ~LastStatic()
    {
        const unsigned long before = rounds;
        for (int i = 0; i < 10000; ++i) {
            std::this_thread::yield();
            if (rounds != before)
                _exit(9);
        }
    }

    std::string text = std::string(100, 'x');
};
LastStatic last_static;

class FunctionTask : public Zell::Base::CTask
{
public:
    explicit FunctionTask(std::function<void()> work) : work_(std::move(work)) {}
    void Exec() override { work_(); }

private:
    std::function<void()> work_;
};

void LogForever()
{
    for (;;) {
        ++rounds;
        IOXTFormatLog(3, "leaving", "%s", last_static.text.c_str());
    }
}

void WaitForever()
{
    static auto* const mutex = new std::mutex;
    static auto* const never = new std::condition_variable;
    std::unique_lock<std::mutex> lock(*mutex);
    for (;;)
        never->wait(lock);
}

// Returns when the worker is at work.
void StartWorker(const std::function<void()>& work)
{
    static auto* const started = new std::promise<void>;
    std::thread([work] {
        const Zell::Base::details::CWorkerMark mark;
        started->set_value();
        work();
    }).detach();
    started->get_future().wait();
}

void WaitForRounds()
{
    while (rounds < 100)
        std::this_thread::yield();
}

int LeaveALoggingWorker()
{
    StartWorker(LogForever);
    WaitForRounds();
    return 0;
}

int LeaveABlockedWorker()
{
    StartWorker([] {
        const Zell::Base::details::CBlockedMark blocked;
        WaitForever();
    });
    return 0;
}

int LeaveAWorkerThatBlocksInTurns()
{
    StartWorker([] {
        for (;;) {
            ++rounds;
            {
                const Zell::Base::details::CBlockedMark blocked;
                std::this_thread::yield();
            }
            if (last_static.text.empty())
                _exit(8);
        }
    });
    WaitForRounds();
    return 0;
}

// Never comes to a park point: the process leaves after the longest wait.
int LeaveABusyWorker()
{
    StartWorker([] {
        for (;;)
            std::this_thread::yield();
    });
    return 0;
}

int LeaveFromAWorker()
{
    StartWorker([] {
        IOXTFormatLog(3, "leaving", "the last line");
        std::exit(0);
    });
    for (;;)
        pause();
}

// A task that runs, others behind it, and one more from a static that goes.
int LeaveTheLoop()
{
    static auto* const started = new std::promise<void>;
    auto& loop = Zell::Base::CMessageLoopForNotify::Instance();
    loop.PostTask(new FunctionTask([] {
        started->set_value();
        LogForever();
    }));
    loop.PostTask(new FunctionTask([] { _exit(7); }));
    started->get_future().wait();
    std::atexit(
        [] { Zell::Base::CMessageLoopForNotify::Instance().PostTask(new FunctionTask([] { _exit(6); })); });
    WaitForRounds();
    return 0;
}

class Listener : public Zell::Base::IBaseObserver
{
public:
    explicit Listener(std::function<void()> work) : work_(std::move(work)) {}
    void Hear(const int& /*number*/) { work_(); }

private:
    std::function<void()> work_;
};

class Subject : public Zell::Base::CObserverableWrap<Subject, Listener>
{
public:
    void Post()
    {
        Zell::Base::CMessageLoopForNotify::Instance().PostTask(
            MethodFactory().NewRunnableMethod(&Subject::Tell, 1));
    }

private:
    void Tell(const int& number) { NotifyObservers(&Listener::Hear, number); }
};

// The subject goes with the statics while its observer is in the middle of a call.
int LeaveAnObserver(const std::function<void()>& work)
{
    static Subject subject;
    static auto* const started = new std::promise<void>;
    subject.RegisterObserver(new Listener([work] {
        started->set_value();
        work();
    }));
    subject.Post();
    started->get_future().wait();
    return 0;
}

int LeaveFromAnObserver()
{
    LeaveAnObserver([] { std::exit(0); });
    for (;;)
        pause();
}

int LeaveLinesBehind(const char* path)
{
    if (!Zell::Base::details::SetLogFile(path, 3))
        return 5;
    for (int i = 0; i < 5000; ++i)
        IOXTFormatLog(3, "leaving", "line %d", i);
    return 0;
}

}  // namespace

int main(int count, char** arguments)
{
    const std::string way = count > 1 ? arguments[1] : "";
    if (way == "lines" && count > 2)
        return LeaveLinesBehind(arguments[2]);
    if (count > 2 && !Zell::Base::details::SetLogFile(arguments[2], 3))
        return 5;
    if (way == "logging")
        return LeaveALoggingWorker();
    if (way == "blocked")
        return LeaveABlockedWorker();
    if (way == "turns")
        return LeaveAWorkerThatBlocksInTurns();
    if (way == "busy")
        return LeaveABusyWorker();
    if (way == "worker")
        return LeaveFromAWorker();
    if (way == "loop")
        return LeaveTheLoop();
    if (way == "observer that logs")
        return LeaveAnObserver(LogForever);
    if (way == "observer that waits")
        return LeaveAnObserver(WaitForever);
    if (way == "observer that exits")
        return LeaveFromAnObserver();
    return 4;
}
