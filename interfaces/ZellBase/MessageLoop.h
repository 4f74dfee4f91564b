#pragma once

#include "ZellBase/Singleton.h"
#include "ZellBase/Task.h"

#include <memory>

namespace Zell::Base {

// A queue of tasks and the one thread that runs them in the order in which they were posted.
class ZELLBASE_API CMessageLoopBase
{
public:
    CMessageLoopBase();
    CMessageLoopBase(const CMessageLoopBase&) = delete;
    CMessageLoopBase& operator=(const CMessageLoopBase&) = delete;
    virtual ~CMessageLoopBase();

    // Takes over the task, runs it on the loop's thread and deletes it there. Any thread; never blocks on a
    // running task. The thread starts with the first task. An exception out of a task is logged at level 5.
    // After the loop has been destroyed with the process's statics, a task is deleted without being run.
    void PostTask(CTask* task);

private:
    struct Core;
    std::shared_ptr<Core> core_;
};

// The loop on which observers are told.
class ZELLBASE_API CMessageLoopForNotify : public CSingleton<CMessageLoopForNotify>, public CMessageLoopBase
{
private:
    friend class CSingleton<CMessageLoopForNotify>;
    CMessageLoopForNotify() = default;
};

}  // namespace Zell::Base

ZELL_SINGLETON_DECLARE(Zell::Base::CMessageLoopForNotify)
