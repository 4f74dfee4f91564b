#include "Store/TaskStore.h"

#include "Store/DiskStore.h"
#include "Store/Journal.h"
#include "Store/SetAside.h"
#include "Store/TaskTable.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace fs = std::filesystem;

namespace FetchyardLogical::details {

namespace {

// The store can't be used, in words for a person.
class Refusal : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

void Say(std::string& message, const std::string& words)
{
    message += (message.empty() ? "" : " ") + words;
}

bool IsThere(const std::string& path)
{
    std::error_code error;
    return fs::exists(fs::u8path(path), error);
}

// What a table would hold with the changes in it, by place.
std::vector<StoredTask> Merged(std::vector<StoredTask> tasks, const LastChanges& changes)
{
    std::map<std::uint64_t, StoredTask> by_place;
    const auto& by_guid = changes.ByGuid();
    std::set<std::string> known;
    for (StoredTask& task : tasks) {
        known.insert(task.guid);
        if (by_guid.find(task.guid) == by_guid.end())
            by_place[task.place] = std::move(task);
    }
    for (const auto& [guid, change] : by_guid) {
        const bool is_update = change.kind == Change::Kind::Update && known.count(guid) > 0;
        if (change.kind == Change::Kind::Put || is_update)
            by_place[change.task.place] = change.task;
    }
    std::vector<StoredTask> merged;
    merged.reserve(by_place.size());
    for (auto& placed : by_place)
        merged.push_back(std::move(placed.second));
    return merged;
}

// Opens one store for one process, step by step.
class Opener
{
public:
    explicit Opener(const std::string& path) : path_(path) {}

    TaskStore::Opening Open()
    {
        TaskStore::Opening opening;
        try {
            TakeLock();
            frames_ = Journal::Read(path_);
            OpenTable();
            std::string reason;
            Journal journal(path_);
            if (!journal.Open(reason))
                throw Refusal(Unwritable(reason));
            opening.tasks = std::move(tasks_);
            opening.store = std::make_shared<DiskStore>(path_, std::move(lock_), std::move(table_),
                                                        std::move(journal), complete_);
        } catch (const Refusal& refusal) {
            Say(message_, refusal.what());
        } catch (const SqliteFailure& failure) {
            Say(message_, Unwritable(failure.what()));
        }
        opening.message = std::move(message_);
        return opening;
    }

private:
    std::string Unwritable(const std::string& reason) const
    {
        return "The task store " + path_ + " can't be written: " + reason + "; tasks are in memory only.";
    }

    void TakeLock()
    {
        bool in_use = false;
        std::string reason;
        lock_ = StoreLock::Take(path_ + ".lock", in_use, reason);
        if (in_use)
            throw Refusal("Another client has the task store " + path_ +
                          " open; the tasks of this one are in memory only.");
        if (!lock_)
            throw Refusal(Unwritable(reason));
    }

    // Once with what is there, and if that is damaged once more with a new file.
    void OpenTable()
    {
        try {
            UseTable();
        } catch (const SqliteFailure& failure) {
            if (!failure.IsDamage())
                throw;
            table_.reset();
            tasks_.clear();
            const std::string aside = SetStoreAside(path_);
            if (aside.empty())
                throw Refusal(
                    Unwritable("it is damaged (" + std::string(failure.what()) + ") and can't be set aside"));
            salvaged_ = SalvageFrom(aside);
            Say(message_, "The task store " + path_ + " was damaged (" + failure.what() +
                              ") and is set aside as " + aside + "; a new one is begun with the " +
                              std::to_string(salvaged_.ByGuid().size()) + " tasks that can be read.");
            UseTable();
        }
    }

    static LastChanges SalvageFrom(const std::string& aside)
    {
        try {
            return TaskTable(aside, Sqlite::Use::Read).Salvage();
        } catch (const SqliteFailure&) {
            return {};  // it is no database at all
        }
    }

    void UseTable()
    {
        table_ = std::make_unique<TaskTable>(path_, Sqlite::Use::Write);
        switch (table_->Look()) {
            case TaskTable::Fit::Newer:
                throw Refusal("The task store " + path_ +
                              " is of a newer version and left as it is; tasks are in memory only.");
            case TaskTable::Fit::Foreign:
                throw Refusal("The file " + path_ +
                              " is no task store and left as it is; tasks are in memory only.");
            case TaskTable::Fit::Ready:
                break;
        }
        if (IsSuspect(path_))
            table_->CheckPages();
        table_->Migrate();
        ReplayJournal();
        LoadTasks();
        ClearSuspect(path_);
    }

    void ReplayJournal()
    {
        complete_ = std::max(table_->Complete(), Journal::CompleteTo(frames_));
        if (Journal::HasGap(frames_, complete_)) {
            const std::string aside = CopyJournalAside(path_);
            Say(message_, "What was kept last in the task store " + path_ +
                              " is damaged and copied aside as " + aside + "; what could be read is kept.");
        }
        LastChanges changes = std::move(salvaged_);
        for (const Journal::Frame& frame : frames_) {
            if (frame.number <= complete_)
                continue;
            for (const Change& change : frame.changes)
                changes.Add(change);
        }
        if (!frames_.empty())
            complete_ = std::max(complete_, frames_.back().number);
        if (!changes.IsEmpty())
            table_->Write(changes, complete_);
    }

    void LoadTasks()
    {
        std::size_t damaged = 0;
        tasks_ = table_->Load(damaged);
        if (damaged == 0)
            return;
        table_->SetDamagedAside();
        Say(message_, std::to_string(damaged) + (damaged == 1 ? " record" : " records") +
                          " of the task store " + path_ + (damaged == 1 ? " was" : " were") +
                          " damaged and set aside in its table damaged_task; the rest is there.");
    }

    const std::string path_;
    std::string message_;
    std::unique_ptr<StoreLock> lock_;
    std::vector<Journal::Frame> frames_;
    LastChanges salvaged_;
    std::unique_ptr<TaskTable> table_;
    std::vector<StoredTask> tasks_;
    std::uint64_t complete_ = 0;
};

}  // namespace

TaskStore::Opening TaskStore::Open(const std::string& path)
{
    return Opener(path).Open();
}

bool TaskStore::Read(const std::string& path, std::vector<StoredTask>& tasks, std::string& message)
{
    if (!IsThere(path)) {
        message = "There is no task store " + path + ".";
        return false;
    }
    try {
        // The journal first: what is written over in it meanwhile is in the database by then.
        const std::vector<Journal::Frame> frames = Journal::Read(path);
        TaskTable table(path, Sqlite::Use::Read);
        if (table.Look() != TaskTable::Fit::Ready) {
            message = "The file " + path + " is no task store of this version.";
            return false;
        }
        LastChanges changes;
        table.HoldView();
        const std::uint64_t complete = table.Complete();
        for (const Journal::Frame& frame : frames) {
            for (std::size_t i = 0; frame.number > complete && i < frame.changes.size(); ++i)
                changes.Add(frame.changes[i]);
        }
        std::size_t damaged = 0;
        tasks = Merged(table.Load(damaged), changes);
        return true;
    } catch (const SqliteFailure& failure) {
        message = "The task store " + path + " can't be read: " + failure.what() + ".";
        return false;
    }
}

}  // namespace FetchyardLogical::details
