#include "ResumeCommand.h"

#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "FetchyardLogicalHost/EngineHost.h"
#include "Platform/Terminal.h"
#include "ProgressView.h"
#include "ResumeRecord.h"
#include "RunCommand.h"
#include "TaskChoice.h"
#include "TaskEnds.h"
#include "Trouble.h"
#include "UnfinishedTasks.h"
#include "Words.h"

#include <algorithm>
#include <cstdio>
#include <memory>

namespace FetchyardClient {

using FetchyardBussiness::CDownloadBussinessManager;
using FetchyardLogical::TaskView;

namespace {

// A task that was brought back.
struct Resumed
{
    std::string guid;
    std::vector<ExpectedFile> files;
};

bool WasEvidence(const TaskView& task)
{
    return task.state == ZellTaskKit::Uploading ||
           (task.state >= ZellTaskKit::UploadFinished && task.state <= ZellTaskKit::UploadStopped);
}

// In the order in which they waited.
bool Choose(const std::vector<std::string>& words, bool all, std::vector<TaskView>& chosen)
{
    const std::vector<TaskView> tasks = FetchyardLogical::ListTasks();
    bool good = ChooseTasks(tasks, words, chosen);
    for (const TaskView& task : chosen) {
        if (IsUnfinished(task) || IsFailure(task.state))
            continue;
        std::fprintf(stderr, "%s is %s: there is nothing to go on with\n", task.name.c_str(),
                     StateWords(task.state).c_str());
        good = false;
    }
    for (const TaskView& task : tasks) {
        const bool is_new = std::none_of(chosen.begin(), chosen.end(),
                                         [&](const TaskView& known) { return known.guid == task.guid; });
        if (all && is_new && IsUnfinished(task))
            chosen.push_back(task);
    }
    std::sort(chosen.begin(), chosen.end(),
              [](const TaskView& a, const TaskView& b) { return a.queue_order < b.queue_order; });
    return good;
}

// The new task has taken nothing yet of what the list shows; a person export may go to another folder now.
void FillListFields(ZellTaskKit::CDownloadTaskBase& task, const TaskView& stored, const std::string& folder)
{
    const auto record = task.GetDownloadTaskParam<ZellTaskKit::CDownloadTaskParam>();
    if (!record)
        return;
    if (record->GetVal_str_name().empty())
        record->SetVal_str_name(stored.name);
    if (record->GetVal_str_file_path().empty() && !folder.empty())
        record->SetVal_str_file_path(folder);
}

// False, with the reason in words, if no task comes of the stored one.
bool BringBack(const TaskView& stored, Resumed& resumed, std::string& reason)
{
    if (!HasRecord(stored)) {
        reason = std::string(IsFailure(stored.state) ? "failed" : "interrupted") +
                 "; single files leave no record to go on from: run the request again";
        return false;
    }
    const std::string text = FetchyardLogical::ResumeText(stored.guid);
    std::shared_ptr<ZellTaskKit::CDownloadTaskBase> task;
    if (text.empty() || !CDownloadBussinessManager::Instance().ResumeDownloadTask(task, text)) {
        reason = "its record is damaged: run the request again";
        return false;
    }
    if (!task) {
        reason = "its record is of a kind that came after this version";
        return false;
    }
    ResumeRecord record = ReadResumeRecord(
        text, stored.record_kind, ZellClientHost::GetClientSettings().save_path, WasEvidence(stored));
    FillListFields(*task, stored, record.folder);
    if (!FetchyardLogical::HandOverInPlaceOf(stored.guid, task)) {
        reason = "the engine does not take it";
        return false;
    }
    std::printf("%s: brought back\n", stored.name.c_str());
    for (const std::string& words : record.losses)
        std::printf("  %s\n", words.c_str());
    resumed = {task->GetGuid(), std::move(record.files)};
    return true;
}

bool BringAllBack(const std::vector<TaskView>& chosen, std::vector<Resumed>& resumed)
{
    bool all_well = true;
    for (const TaskView& stored : chosen) {
        Resumed one;
        std::string reason;
        if (BringBack(stored, one, reason)) {
            resumed.push_back(std::move(one));
            continue;
        }
        std::printf("%s: %s\n", stored.name.c_str(), reason.c_str());
        all_well = false;
    }
    std::fflush(stdout);
    return all_well;
}

bool WatchAndTell(const HostOptions& options, const std::vector<Resumed>& resumed)
{
    std::vector<std::string> guids;
    guids.reserve(resumed.size());
    for (const Resumed& task : resumed)
        guids.push_back(task.guid);
    Trouble trouble;
    ProgressView view(IsTerminal());
    const auto stop_all = [&] {
        view.Say("stopping; interrupt once more to leave at once");
        for (const std::string& guid : guids)
            FetchyardLogical::StopTask(guid);
    };
    WatchUntilIdle(guids, stop_all, view, trouble);
    bool all_well = true;
    for (const Resumed& task : resumed) {
        TaskView view_of_task;
        all_well = FetchyardLogical::FindTask(task.guid, view_of_task) &&
                   TellEnd(view_of_task, task.files, LogFile(options)) && all_well;
    }
    if (IsInterrupted())
        TellHowToGoOn(options, guids);
    return all_well;
}

}  // namespace

int ResumeTasks(const HostOptions& options, const std::vector<std::string>& words, bool all)
{
    LibraryHost host;
    std::string reason;
    if (!host.Start(options, reason)) {
        std::fprintf(stderr, "%s\n", reason.c_str());
        return kSomethingFailed;
    }
    host.TellStore();
    if (!host.KeepsTasks())
        return kSomethingFailed;
    std::vector<TaskView> chosen;
    if (!Choose(words, all, chosen))
        return kBadInput;
    if (chosen.empty()) {
        std::printf("no unfinished tasks\n");
        return kAllWell;
    }
    CatchInterrupts();
    std::vector<Resumed> resumed;
    bool all_well = BringAllBack(chosen, resumed);
    all_well = WatchAndTell(options, resumed) && all_well;
    return all_well ? kAllWell : kSomethingFailed;
}

}  // namespace FetchyardClient
