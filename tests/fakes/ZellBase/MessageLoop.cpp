#include "ZellBase/MessageLoop.h"

#include "fakes/Journal.h"
#include "fakes/ZellBase/FakeMessageLoop.h"

#include <mutex>
#include <utility>

ZELL_SINGLETON_DEFINE(Zell::Base::CMessageLoopForNotify)

namespace fakes {
namespace {

struct Posted
{
    std::mutex mutex;
    std::vector<std::unique_ptr<Zell::Base::CTask>> tasks;
};

Posted& ThePosted()
{
    static auto* posted = new Posted;
    return *posted;
}

}  // namespace

std::vector<std::unique_ptr<Zell::Base::CTask>> TakePosted()
{
    const std::lock_guard<std::mutex> lock(ThePosted().mutex);
    return std::exchange(ThePosted().tasks, {});
}

void RunPosted()
{
    for (const auto& task : TakePosted())
        task->Exec();
}

}  // namespace fakes

namespace Zell::Base {

CTask::~CTask() = default;
CCancelableTask::~CCancelableTask() = default;

struct CMessageLoopBase::Core
{
};

CMessageLoopBase::CMessageLoopBase() = default;
CMessageLoopBase::~CMessageLoopBase() = default;

void CMessageLoopBase::PostTask(CTask* task)
{
    fakes::Call("PostTask", "");
    const std::lock_guard<std::mutex> lock(fakes::ThePosted().mutex);
    fakes::ThePosted().tasks.emplace_back(task);
}

}  // namespace Zell::Base
