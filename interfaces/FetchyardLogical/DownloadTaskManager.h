#pragma once

#include "FetchyardLogical/Export.h"
#include "ZellBase/Error.h"
#include "ZellBase/Observer.h"
#include "ZellBase/Singleton.h"
#include "ZellTaskKit/DownloadTaskBase.h"
#include "ZellTaskKit/TaskCallbackParam.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace FetchyardLogical {

// Who wants to hear of the states of tasks. Called on the thread that runs the task, for one task in order.
// It must not register, unregister, or stop a task from inside the call: the list is locked meanwhile.
class CDownloadTaskManagerObserver : public Zell::Base::IBaseObserver
{
public:
    using Param = std::vector<ZellTaskKit::CTaskCallbackParam>;

    virtual void UpdateDownloadTaskManagerState(const Param& reports) = 0;

protected:
    CDownloadTaskManagerObserver() = default;
    ~CDownloadTaskManagerObserver() = default;
};

// The queue engine: runs tasks on threads of its own, as many at once as the limit says, in the order in
// which they were handed over. All operations may be called from any thread.
class FETCHYARDLOGICAL_API CDownloadTaskManager
    : public Zell::Base::CSingleton<CDownloadTaskManager>,
      public Zell::Base::CObserverableWrap<CDownloadTaskManager, CDownloadTaskManagerObserver>
{
public:
    ~CDownloadTaskManager();

    // Starts the engine; true also if it runs. False means that it could not start.
    bool Init();
    // Stops the engine: waiting tasks are taken out of the queue and reported as stopped, running ones are
    // stopped and waited for. The engine then knows no task any more, and Init works again. False if it does
    // not run, on a thread that runs a task, or while the process leaves.
    bool Unit();
    // Keeps the callback with which an error is turned into text, for the log and for hosts.
    void SetTransCallback(std::function<std::string(const Zell::Base::Error::ErrorCode&)> callback);
    // How many tasks may run at once from now on, 1 or more. Before the first call the limit is 5. A lower
    // limit ends no task that runs.
    void SetMaxParallelDownloadNum(const int& count);
    // Queues the tasks, all or none: false if the engine does not run, the list is empty, an entry is null or
    // stands in it twice, or a task still waits or runs. A task that has ended may be handed over again.
    bool AddTransferTask(const std::vector<std::shared_ptr<ZellTaskKit::CDownloadTaskBase>>& tasks);
    // Every task that the engine knows, finished ones included, by number in the order of hand-over: a
    // snapshot that nobody changes. The reference is for the calling thread, and good until that thread's
    // next call, its end, or its Unit.
    const std::map<unsigned int, std::shared_ptr<ZellTaskKit::CDownloadTaskBase>>& GetAllTask();
    // Gives an account to the tasks that wait for one: the text is JSON with "UserName" and the ciphered
    // "PassWord"; the login is stored, and each task held whose record is marked as sensitive gets a call of
    // SetAccountInforToRequest before its next run. False if the text is not of that form.
    bool SetSensitiveInfoToTask(const std::string& text);

private:
    friend class Zell::Base::CSingleton<CDownloadTaskManager>;
    CDownloadTaskManager();

    struct Core;
    std::shared_ptr<Core> core_;
};

}  // namespace FetchyardLogical

ZELL_SINGLETON_DECLARE(FetchyardLogical::CDownloadTaskManager)
