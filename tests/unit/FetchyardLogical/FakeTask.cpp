#include "FakeTask.h"

using Zell::Base::Error::ErrorCode;
using ZellTaskKit::CTaskCallbackParam;

namespace FetchyardLogical::testing {

FakeTask::FakeTask(Body body) : body_(std::move(body)) {}

void FakeTask::Exec()
{
    ++runs;
    body_(*this);
}

bool FakeTask::Stop()
{
    ++stops;
    if (on_stop)
        on_stop(*this);
    return true;
}

bool FakeTask::Delete()
{
    ++deletes;
    if (on_delete)
        on_delete(*this);
    return true;
}

ZellTaskKit::CDownloadProgress FakeTask::GetProgress()
{
    return {};
}

bool FakeTask::Suspend()
{
    return true;
}

bool FakeTask::SetAccountInforToRequest()
{
    ++accounts;
    if (on_account)
        on_account(*this);
    return true;
}

std::shared_ptr<FakeTask> MakeTask(FakeTask::Body body, ZellTaskKit::DownloadState record_state)
{
    auto task = std::make_shared<FakeTask>(std::move(body));
    auto record = std::make_shared<ZellTaskKit::CDownloadTaskParam>();
    record->SetVal_state(record_state);
    task->SetDownloadTaskParam(record, false);
    return task;
}

std::shared_ptr<FakeTask> MakeQuickTask()
{
    return MakeTask([](FakeTask& task) {
        task.Report(ZellTaskKit::Downloading);
        task.Report(ZellTaskKit::Finished);
    });
}

void ReportLog::OnReports(const details::Reports& reports)
{
    for (const CTaskCallbackParam& report : reports) {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            by_guid_[report.GetVal_task_guid()].push_back(reports_.size());
            reports_.push_back(report);
        }
        if (on_report)
            on_report(report);
    }
}

std::vector<int> ReportLog::StatesOf(ZellTaskKit::CDownloadTaskBase& task) const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    std::vector<int> states;
    const auto found = by_guid_.find(task.GetGuid());
    if (found != by_guid_.end())
        for (const std::size_t position : found->second)
            states.push_back(reports_[position].GetVal_state());
    return states;
}

std::pair<int, int> ReportLog::LastErrorOf(ZellTaskKit::CDownloadTaskBase& task) const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = by_guid_.find(task.GetGuid());
    if (found == by_guid_.end())
        return {-1, -1};
    const ErrorCode error = reports_[found->second.back()].GetVal_error_code();
    return {error.iFirstCode, error.iSecondCode};
}

std::vector<std::string> ReportLog::GuidsWithState(int state) const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    std::vector<std::string> guids;
    for (const CTaskCallbackParam& report : reports_)
        if (report.GetVal_state() == state)
            guids.push_back(report.GetVal_task_guid());
    return guids;
}

std::size_t ReportLog::Count() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return reports_.size();
}

EngineRig::EngineRig() : engine_(std::make_shared<details::Engine>()), log_(std::make_shared<ReportLog>())
{
    engine_->SetSink(log_);
    engine_->Init();
}

EngineRig::EngineRig(const std::string& store, std::string& message)
    : engine_(std::make_shared<details::Engine>()), log_(std::make_shared<ReportLog>())
{
    engine_->SetSink(log_);
    engine_->OpenStore(store, message);
    engine_->Init();
}

EngineRig::~EngineRig()
{
    engine_->Unit();
    engine_->CloseStore();
}

bool EngineRig::Add(const std::vector<std::shared_ptr<FakeTask>>& tasks)
{
    return engine_->Add({tasks.begin(), tasks.end()});
}

bool EngineRig::Settle()
{
    return engine_->WaitUntilIdle(std::chrono::minutes(1));
}

TaskView EngineRig::ViewOf(const std::shared_ptr<FakeTask>& task)
{
    const std::string guid = task->GetGuid();
    for (const TaskView& view : engine_->List())
        if (view.guid == guid)
            return view;
    return {};
}

}  // namespace FetchyardLogical::testing
