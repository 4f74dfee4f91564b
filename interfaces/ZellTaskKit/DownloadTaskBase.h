#pragma once

#include "ZellBase/Error.h"
#include "ZellBase/Task.h"
#include "ZellTaskKit/DownloadProgress.h"
#include "ZellTaskKit/DownloadTaskParam.h"
#include "ZellTaskKit/DownloadTypes.h"
#include "ZellTaskKit/Export.h"
#include "ZellTaskKit/TaskCallbackParam.h"

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace ZellTaskKit {

// What runs a task and hears of it; the engine implements it. Calls come on the thread that runs the task.
class ITaskHost
{
public:
    // The task reported a state.
    virtual void OnTaskState(const CTaskCallbackParam& report) = 0;
    // The task handed its record back, which is then the current one.
    virtual void OnTaskParamChanged(const std::string& guid) = 0;

protected:
    ITaskHost() = default;
    ~ITaskHost() = default;
};

// A unit of work of the queue engine, paired with a parameter record.
class ZELLTASKKIT_API CDownloadTaskBase : public Zell::Base::CTask
{
public:
    CDownloadTaskBase();
    ~CDownloadTaskBase() override;

    // The whole of the task's work, on one engine thread. Reports through NotifyTaskState and throws nothing.
    void Exec() override = 0;
    // Free text of a host; the base keeps none: false, and an empty text.
    virtual bool SetCommonData(const std::string& text);
    virtual std::string GetCommData();
    // The four below come from other threads while Exec runs, or before, or after it.
    virtual bool Stop() = 0;
    virtual CDownloadProgress GetProgress() = 0;
    virtual bool Suspend() = 0;
    virtual bool Delete();  // the base has nothing to delete: true
    // The cameras of the task by site; the base has none and sets both codes to 0.
    virtual void RelatedCameraList(std::map<int, std::vector<int>>& cameras,
                                   Zell::Base::Error::ErrorCode& error);
    // Puts the present account into the stored request; the base has none: true.
    virtual bool SetAccountInforToRequest();

    // Stores the record. A record without a guid gets the task's, which is made at the first call and kept.
    void SetDownloadTaskParam(std::shared_ptr<CDownloadTaskParam> param, bool reserved);
    // The task's guid, empty before the first SetDownloadTaskParam.
    std::string GetGuid();
    // The last state given to NotifyTaskState, or that of the record before the first.
    DownloadState GetDownloadState();
    // Records the state and sends it, with the calling thread's last error, to the host, if there is one.
    void NotifyTaskState(const DownloadState& state);
    // An error, and named values that go with it, for the task list.
    void SetTaskErrorCode(Zell::Base::Error::ErrorCode error);
    Zell::Base::Error::ErrorCode GetTaskErrorCode();
    void SetErrorParam(const std::map<std::string, std::string>& values);
    std::map<std::string, std::string> GetErrorParam();
    void SetErrorParamState(bool in_use);
    bool GetErrorParamState();

    // The record, if it is of class T; empty otherwise. Any thread.
    template <typename T>
    std::shared_ptr<T> GetDownloadTaskParam()
    {
        return std::dynamic_pointer_cast<T>(GetParam());
    }

    // For the host: sets where reports go, null to end them. When it returns, no report to the former host is
    // in progress on another thread, so it must not be called under a lock that those reports take.
    void SetTaskHost(ITaskHost* host);

private:
    std::shared_ptr<CDownloadTaskParam> GetParam();

    std::mutex param_mutex_;
    std::shared_ptr<CDownloadTaskParam> param_;
    std::string guid_;
    bool state_reported_ = false;
    DownloadState state_ = Unstarted;
    Zell::Base::Error::ErrorCode task_error_;
    std::map<std::string, std::string> error_values_;
    bool error_values_in_use_ = false;
    std::recursive_mutex host_mutex_;
    ITaskHost* host_ = nullptr;
};

}  // namespace ZellTaskKit
