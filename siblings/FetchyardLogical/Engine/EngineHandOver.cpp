// How tasks come into the engine: admitted, looked at, kept, queued.
#include "Engine/Engine.h"
#include "Engine/ResumeRecord.h"
#include "Log.h"

#include <algorithm>
#include <set>
#include <utility>

using Zell::Base::Error::ErrorCode;
using namespace ZellTaskKit;

namespace FetchyardLogical::details {

namespace {

bool MayOwnFolder(RecordKind kind)
{
    return kind == RecordKind::Export || kind == RecordKind::PersonPictures;
}

void TakeIfThere(std::string& kept, const std::string& said)
{
    if (!said.empty())
        kept = said;
}

}  // namespace

bool Engine::Add(const std::vector<TaskPtr>& tasks)
{
    return HandOver(tasks, nullptr);
}

bool Engine::AddInPlaceOf(const std::string& stored_guid, const TaskPtr& task)
{
    return HandOver({task}, &stored_guid);
}

bool Engine::HandOver(const std::vector<TaskPtr>& tasks, const std::string* stored_guid)
{
    Batch batch;
    if (!Admit(tasks, stored_guid, batch))
        return false;
    batch.looks.reserve(batch.entries.size());
    for (const EntryPtr& entry : batch.entries) {
        entry->task->SetTaskHost(entry.get());
        batch.looks.push_back(LookAt(*entry));
    }
    // Kept before anybody can run it: what it reports then is about a task that the store knows.
    Keep(Register(batch));
    const bool enough = Enqueue(batch);
    work_.notify_all();
    settled_.notify_all();
    if (!enough)
        FETCHYARD_LOGICAL_LOG(5, "FetchyardLogical::details::Engine::HandOver",
                              "no further thread could be started, %zu tasks queued", tasks.size());
    return true;
}

// All of a batch or nothing. A task that is still in the queue or running can't be handed over again. From
// here to Enqueue the engine does not go down.
bool Engine::Admit(const std::vector<TaskPtr>& tasks, const std::string* stored_guid, Batch& batch)
{
    std::set<const CDownloadTaskBase*> distinct;
    std::vector<std::string> guids;
    guids.reserve(tasks.size());
    for (const TaskPtr& task : tasks) {
        if (!task || !distinct.insert(task.get()).second)
            return false;
        guids.push_back(task->GetGuid());
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    if (life_ != Life::Up || tasks.empty())
        return false;
    const bool busy = std::any_of(tasks.begin(), tasks.end(), [&](const TaskPtr& task) {
        const auto known = by_task_.find(task.get());
        return known != by_task_.end() && (stored_guid != nullptr || known->second->phase != Phase::Ended);
    });
    if (busy)
        return false;
    batch.replaced.resize(tasks.size());
    for (std::size_t i = 0; i < tasks.size(); ++i) {
        if (!FindReplaced(guids[i], batch.replaced[i]))
            return false;
    }
    if (stored_guid != nullptr) {
        EntryPtr& replaced = batch.replaced.front();
        if (replaced || !FindReplaced(*stored_guid, replaced) || !replaced)
            return false;
    }
    for (const EntryPtr& replaced : batch.replaced) {
        if (replaced)
            replaced->phase = Phase::Going;
    }
    batch.entries.reserve(tasks.size());
    for (std::size_t i = 0; i < tasks.size(); ++i)
        batch.entries.push_back(AdmitOne(tasks[i], std::move(guids[i])));
    ++entering_;
    return true;
}

// The lock is held. The stored task of that guid, which a task may have left itself when the engine went
// down. False if it is on its way out of the list.
bool Engine::FindReplaced(const std::string& guid, EntryPtr& replaced)
{
    const auto stored = by_guid_.find(guid);
    if (stored == by_guid_.end() || stored->second->task)
        return true;
    if (stored->second->phase != Phase::Ended)
        return false;
    replaced = stored->second;
    return true;
}

EntryPtr Engine::AdmitOne(const TaskPtr& task, std::string guid)
{
    EntryPtr& entry = by_task_[task.get()];
    if (!entry) {
        StoredTask known;
        known.guid = std::move(guid);
        entry = std::make_shared<TaskEntry>(*this, task, std::move(known));
    }
    entry->phase = Phase::Entering;
    entry->pages = 0;
    ChangeState(*entry, Unstarted, ErrorCode());
    return entry;
}

Engine::Look Engine::LookAt(TaskEntry& entry)
{
    Look look;
    entry.asked = std::chrono::steady_clock::now();
    const auto record = entry.task->GetDownloadTaskParam<CDownloadTaskParam>();
    if (!record)
        return look;
    look.resume_text = AskResumeText(*entry.task);
    if (look.resume_text)
        look.facts.record_kind = KindOfRecord(*look.resume_text);
    look.facts.plugin_id = record->GetVal_str_plugin_id();
    look.facts.name = record->GetVal_str_name();
    look.facts.folder = record->GetVal_str_file_path();
    look.folder_is_empty =
        MayOwnFolder(look.facts.record_kind) && !look.facts.folder.empty() && HoldsNoFile(look.facts.folder);
    return look;
}

Changes Engine::Register(const Batch& batch)
{
    Changes changes;
    for (const EntryPtr& replaced : batch.replaced) {
        if (replaced)
            changes.push_back({Change::Kind::Remove, replaced->kept, nullptr});
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    for (std::size_t i = 0; i < batch.entries.size(); ++i) {
        TaskEntry& entry = *batch.entries[i];
        RegisterOne(entry, batch.looks[i], batch.replaced[i].get());
        changes.push_back({Change::Kind::Put, entry.kept, entry.resume_text});
    }
    return changes;
}

// The lock is held.
void Engine::RegisterOne(TaskEntry& entry, const Look& look, const TaskEntry* replaced)
{
    StoredTask& kept = entry.kept;
    const bool is_new = entry.number == 0;
    if (replaced != nullptr) {
        kept.place = replaced->kept.place;
        kept.name = replaced->kept.name;
        kept.folder = replaced->kept.folder;
        kept.plugin_id = replaced->kept.plugin_id;
        kept.owns_folder = replaced->kept.owns_folder;
        if (replaced->HasClaim())
            claims_.Drop(replaced->kept.folder);
    } else if (is_new) {
        kept.place = ++last_place_;
    }
    if (is_new)
        entry.number = ++last_number_;
    else
        claims_.Drop(kept.folder);
    const std::string former_folder = kept.folder;
    TakeIfThere(kept.name, look.facts.name);
    TakeIfThere(kept.folder, look.facts.folder);
    TakeIfThere(kept.plugin_id, look.facts.plugin_id);
    if (NormalFolder(kept.folder) != NormalFolder(former_folder))
        kept.owns_folder = look.folder_is_empty && claims_.IsFree(kept.folder, 0);
    claims_.Add(kept.folder);
    kept.record_kind = look.facts.record_kind;
    kept.queue_order = ++last_order_;
    kept.error_text.clear();
    kept.handed_over = WallClock();
    kept.started = 0;
    kept.ended = 0;
    kept.remove_folder = false;
    if (look.resume_text)
        entry.resume_text = look.resume_text;
}

// A task can be found from the moment at which it can be stopped.
void Engine::MakeKnown(const EntryPtr& entry)
{
    if (!living_.emplace(entry->number, entry).second)
        return;
    list_[entry->kept.place] = entry;
    by_guid_[entry->guid] = entry;
    snapshot_.reset();
}

bool Engine::Enqueue(const Batch& batch)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    for (const EntryPtr& replaced : batch.replaced) {
        if (replaced)
            by_guid_.erase(replaced->guid);
    }
    for (const EntryPtr& entry : batch.entries) {
        MakeKnown(entry);
        entry->phase = Phase::Waiting;
        waiting_.emplace(entry->kept.queue_order, entry);
    }
    --entering_;
    return StartWorkers();
}

}  // namespace FetchyardLogical::details
