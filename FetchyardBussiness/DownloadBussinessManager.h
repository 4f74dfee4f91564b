#pragma once

#include "FetchyardBussiness/Export.h"
#include "FetchyardLogical/DownloadTaskManager.h"
#include "ZellBase/Error.h"
#include "ZellBase/Observer.h"
#include "ZellBase/Singleton.h"
#include "ZellTaskKit/DownloadTaskParam.h"
#include "ZellTaskKit/DownloadTypes.h"

#include <memory>
#include <string>
#include <vector>

namespace FetchyardBussiness {

// Who wants to hear of the states of tasks. Called on the notification thread, in the order in which the
// engine reported. An observer must not register or unregister from inside its callback, and must unregister
// before it goes.
class FETCHYARD_API CDownloadBussinessManagerObserver
{
public:
    struct Param
    {
        std::string task_guid;
        ZellTaskKit::DownloadState state = ZellTaskKit::Unstarted;
        Zell::Base::Error::ErrorCode error_code;
    };

    virtual void UpdateDownloadBussinessManagerState(const Param& param) = 0;

protected:
    CDownloadBussinessManagerObserver() = default;
    ~CDownloadBussinessManagerObserver() = default;
};

// The one object through which downloads and exports are requested and watched. Order of use: Instance, Init,
// RegisterObserver, any number of add operations, SyncUnregisterObserver, Unit.
//
// The add operations run on the caller's thread, append the guid of each task made to their first argument
// and hand the tasks to the queue engine as one batch. They return false if no task came of the batch or the
// engine did not take it. What becomes of a task is told through its states.
class FETCHYARD_API CDownloadBussinessManager final
    : public Zell::Base::CSingleton<CDownloadBussinessManager>,
      public Zell::Base::CObserverableWrap<CDownloadBussinessManager, CDownloadBussinessManagerObserver>,
      public FetchyardLogical::CDownloadTaskManagerObserver
{
public:
    ~CDownloadBussinessManager();

    // Starts the engine and the picture loader. False, with nothing set up, if the engine can't start.
    bool Init();
    // Stops both. False, with everything as it was, if the engine can't stop.
    bool Unit();

    // Single files, one JSON text for each task. False, with the thread's last error, at the first text that
    // can't be used. The tasks get the base part of their records only and fail at their first step:
    // downloads that are to succeed are asked for with records.
    bool AddFileDownloadTask(std::vector<std::string>& task_guids, const std::vector<std::string>& requests);
    // Single files, one record for each task: a VideoTaskParam, ImageParam, FileExportParam or
    // ShortVideoDownloadParam, as its file type says. False at the first record whose class is another.
    bool AddFileDownloadTask(std::vector<std::string>& task_guids,
                             const std::vector<std::shared_ptr<ZellTaskKit::CDownloadTaskParam>>& records);

    // Exports of reports and of person pictures, one JSON text each. A text that can't be used is logged and
    // skipped. Throws std::out_of_range for a report name of under 23 bytes whose path is longer than 259.
    bool AddDownloadCommTask(std::vector<std::string>& task_guids, const std::vector<std::string>& requests);

    // Makes the task anew that an unfinished one's resume record tells of, ready to be handed to the engine,
    // which is left to the caller: nothing is queued here, and no folder is made. False, with the argument as
    // it was, if the text is no such record. A record of a kind that is not known gives true and leaves the
    // argument as it was, too, so the caller looks at the pointer. A record with a password check lacks its
    // account until the engine has put the present one in.
    bool ResumeDownloadTask(std::shared_ptr<ZellTaskKit::CDownloadTaskBase>& task,
                            const std::string& resume_xml);

    // A request to stamp videos, JSON as CProtocalFactory reads it. False, with task_guid as it was, if the
    // text can't be used or names no file.
    bool AddTranscodingTask(std::string& task_guid, const std::string& request);

    // Passes account data on to the tasks that wait for it.
    bool SetSensitiveInfoToTask(const std::string& text);

    // Calls every observer; runs on the notification thread.
    void NotifyObserversEIT(const CDownloadBussinessManagerObserver::Param& param);

    // From the engine, on whatever thread it reports from; only queues.
    void UpdateDownloadTaskManagerState(
        const FetchyardLogical::CDownloadTaskManagerObserver::Param& reports) override;

protected:
    void AddToNotifyQueue(const CDownloadBussinessManagerObserver::Param& param);

private:
    friend class Zell::Base::CSingleton<CDownloadBussinessManager>;
    CDownloadBussinessManager();
};

}  // namespace FetchyardBussiness

ZELL_SINGLETON_DECLARE(FetchyardBussiness::CDownloadBussinessManager)
