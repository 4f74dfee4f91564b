// The list of the tasks, living and stored, and the store behind it.
#include "Engine/Engine.h"
#include "Engine/TaskStates.h"
#include "Log.h"

#include <algorithm>
#include <utility>

using namespace ZellTaskKit;

namespace FetchyardLogical::details {

namespace {

// How much of the list is read under one hold of the lock: a report must not wait for a long list.
constexpr std::size_t kViewsAtOnce = 256;

bool IsBusy(Phase phase)
{
    return phase == Phase::Starting || phase == Phase::Running;
}

bool IsDone(DownloadState state)
{
    return state == Finished || state == UploadFinished || state == Deleted;
}

// "ArrayList[1]/FileName" and "ArrayList[1]/ErrorReason" and so on, as the tasks name them.
std::map<std::string, std::string> FailedFiles(const std::map<std::string, std::string>& values)
{
    std::map<std::string, std::string> files;
    const std::string end = "/FileName";
    for (const auto& [name, file] : values) {
        if (name.size() <= end.size() || name.compare(name.size() - end.size(), end.size(), end) != 0)
            continue;
        const auto reason = values.find(name.substr(0, name.size() - end.size()) + "/ErrorReason");
        files.emplace(file, reason == values.end() ? std::string() : reason->second);
    }
    return files;
}

// The lock is held.
TaskView ViewOf(const TaskEntry& entry)
{
    TaskView view = ViewOf(entry.kept);
    view.number = entry.number;
    view.is_waiting = entry.phase == Phase::Waiting;
    view.is_running = IsBusy(entry.phase);
    view.is_stored_only = !entry.task;
    view.is_interrupted = view.is_stored_only && !IsEndState(entry.kept.state);
    view.pages = entry.pages;
    return view;
}

void FillFromRecord(CDownloadTaskBase& task, TaskView& view)
{
    if (task.GetErrorParamState()) {
        std::map<std::string, std::string> values = task.GetErrorParam();
        view.failed_files = FailedFiles(values);
        view.remaining_login_count = values["RemainingLoginNumber"];
        view.remaining_login_type = values["RemainingLoginType"];
    }
    const auto record = task.GetDownloadTaskParam<CDownloadTaskParam>();
    if (!record)
        return;
    const std::string name = record->GetVal_str_name();
    const std::string folder = record->GetVal_str_file_path();
    if (!name.empty())
        view.name = name;
    if (!folder.empty())
        view.folder = folder;
}

}  // namespace

TaskView ViewOf(const StoredTask& task)
{
    TaskView view;
    view.guid = task.guid;
    view.plugin_id = task.plugin_id;
    view.name = task.name;
    view.folder = task.folder;
    view.state = task.state;
    view.error = task.error;
    view.error_text = task.error_text;
    view.record_kind = task.record_kind;
    view.queue_order = task.queue_order;
    view.handed_over = task.handed_over;
    view.started = task.started;
    view.ended = task.ended;
    view.is_stored_only = true;
    view.is_interrupted = !IsEndState(task.state);
    return view;
}

bool Engine::OpenStore(const std::string& path, std::string& message)
{
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (life_ != Life::Down || store_) {
            message = store_ ? "A task store is open already." : "The engine runs already.";
            return false;
        }
    }
    TaskStore::Opening opening = TaskStore::Open(path);
    message = opening.message;
    if (!message.empty())
        FETCHYARD_LOGICAL_LOG(5, "FetchyardLogical::details::Engine::OpenStore", "%s", message.c_str());
    if (!opening.store)
        return false;
    std::vector<EntryPtr> unfinished;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (life_ != Life::Down || store_) {
            message = "The engine was started, or another store opened, at that moment.";
            return false;
        }
        store_ = opening.store;
        by_guid_.reserve(opening.tasks.size());
        for (StoredTask& task : opening.tasks)
            AddStored(std::move(task));
        for (const auto& placed : list_) {
            if (placed.second->kept.remove_folder)
                unfinished.push_back(placed.second);
        }
    }
    for (const EntryPtr& entry : unfinished)
        DropDeletedFolder(*entry);
    return true;
}

// The lock is held.
void Engine::AddStored(StoredTask task)
{
    const std::uint64_t place = task.place;
    last_place_ = std::max(last_place_, place);
    last_order_ = std::max(last_order_, task.queue_order);
    auto entry = std::make_shared<TaskEntry>(*this, nullptr, std::move(task));
    entry->phase = Phase::Ended;
    if (entry->HasClaim())
        claims_.Add(entry->kept.folder);
    by_guid_[entry->guid] = entry;
    list_.insert_or_assign(list_.end(), place, std::move(entry));
}

bool Engine::CloseStore()
{
    std::shared_ptr<TaskStore> store;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (life_ != Life::Down)
            return false;
        store.swap(store_);
        list_.clear();
        by_guid_.clear();
        claims_.Clear();
    }
    if (store)
        store->Flush();
    return true;
}

std::string Engine::StoreTrouble()
{
    const std::shared_ptr<TaskStore> store = Store();
    return store ? store->Trouble() : std::string();
}

std::vector<TaskView> Engine::List()
{
    std::vector<TaskView> views;
    std::uint64_t next_place = 0;
    while (ListSome(next_place, views)) {
    }
    return views;
}

// Appends the tasks from the place on. False at the end of the list.
bool Engine::ListSome(std::uint64_t& next_place, std::vector<TaskView>& views)
{
    std::vector<std::pair<std::size_t, TaskPtr>> living;
    bool more = false;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        views.reserve(list_.size());
        auto placed = list_.lower_bound(next_place);
        for (std::size_t read = 0; placed != list_.end() && read < kViewsAtOnce; ++placed, ++read) {
            if (placed->second->task)
                living.emplace_back(views.size(), placed->second->task);
            views.push_back(ViewOf(*placed->second));
            next_place = placed->first + 1;
        }
        more = placed != list_.end();
    }
    for (const auto& [position, task] : living)
        FillFromRecord(*task, views[position]);
    return more;
}

bool Engine::Find(const std::string& guid, TaskView& view)
{
    TaskPtr task;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        const auto found = by_guid_.find(guid);
        if (found == by_guid_.end())
            return false;
        task = found->second->task;
        view = ViewOf(*found->second);
    }
    if (task)
        FillFromRecord(*task, view);
    return true;
}

std::string Engine::ResumeText(const std::string& guid)
{
    std::shared_ptr<TaskStore> store;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        const auto found = by_guid_.find(guid);
        if (found == by_guid_.end())
            return {};
        if (found->second->task)
            return found->second->resume_text ? *found->second->resume_text : std::string();
        store = store_;
    }
    return store ? store->ResumeText(guid) : std::string();
}

bool Engine::StartAgain(const std::string& guid)
{
    TaskPtr task;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        const auto found = by_guid_.find(guid);
        if (found == by_guid_.end() || !found->second->task || found->second->kept.state == Deleted)
            return false;
        task = found->second->task;
    }
    return Add({task});
}

bool Engine::Remove(const std::string& guid)
{
    EntryPtr entry;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        const auto found = by_guid_.find(guid);
        if (found == by_guid_.end() || found->second->phase != Phase::Ended)
            return false;
        entry = found->second;
        entry->phase = Phase::Going;
    }
    RemoveEntries({entry});
    return true;
}

std::size_t Engine::ClearFinished()
{
    std::vector<EntryPtr> going;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        for (const auto& placed : list_) {
            if (placed.second->phase != Phase::Ended || !IsDone(placed.second->kept.state))
                continue;
            placed.second->phase = Phase::Going;
            going.push_back(placed.second);
        }
    }
    RemoveEntries(going);
    return going.size();
}

// All are in Going, so nobody hands them over again meanwhile.
void Engine::RemoveEntries(const std::vector<EntryPtr>& going)
{
    Changes changes;
    changes.reserve(going.size());
    for (const EntryPtr& entry : going) {
        if (entry->task)
            entry->task->SetTaskHost(nullptr);
        Change change;
        change.kind = Change::Kind::Remove;
        change.task.guid = entry->guid;
        changes.push_back(std::move(change));
    }
    if (!changes.empty())
        Keep(std::move(changes));
    const std::lock_guard<std::mutex> lock(mutex_);
    for (const EntryPtr& entry : going)
        Forget(entry);
}

// The lock is held.
void Engine::Forget(const EntryPtr& entry)
{
    list_.erase(entry->kept.place);
    by_guid_.erase(entry->guid);
    if (entry->HasClaim())
        claims_.Drop(entry->kept.folder);
    if (!entry->task)
        return;
    living_.erase(entry->number);
    by_task_.erase(entry->task.get());
    snapshot_.reset();
}

}  // namespace FetchyardLogical::details
