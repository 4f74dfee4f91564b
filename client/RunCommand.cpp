#include "RunCommand.h"

#include "ExpectedFiles.h"
#include "FetchyardLogicalHost/EngineHost.h"
#include "Job.h"
#include "Platform/Terminal.h"
#include "ProgressView.h"
#include "RequestCheck.h"
#include "TaskEnds.h"
#include "Transcoding.h"
#include "Trouble.h"
#include "UnfinishedTasks.h"

#include <QFile>

#include <cstdio>
#include <map>
#include <optional>

namespace FetchyardClient {

using FetchyardLogical::FolderFate;
using FetchyardLogical::TaskView;
using nlohmann::json;

namespace {

bool IsAccepted(const RequestSource& source, Job& job)
{
    const std::vector<Violation> violations = Accept(source, job);
    PrintViolations(stderr, source.label, violations);
    return violations.empty();
}

std::vector<std::string> GuidsOf(const std::vector<Job>& jobs)
{
    std::vector<std::string> guids;
    for (const Job& job : jobs)
        guids.insert(guids.end(), job.guids.begin(), job.guids.end());
    return guids;
}

// An export has a folder of its own, which can go. What other tasks have made lies among files of the user,
// and they know nothing of being deleted.
bool CanBeDeleted(const Job& job)
{
    return !IsFileList(job.request) && !IsTranscoding(job.request);
}

void EndAll(const std::vector<Job>& jobs, bool discard, ProgressView& view)
{
    view.Say(std::string(discard ? "deleting" : "stopping") + "; interrupt once more to leave at once");
    for (const Job& job : jobs) {
        const bool deletes = discard && CanBeDeleted(job);
        for (const std::string& guid : job.guids)
            deletes ? FetchyardLogical::DeleteTask(guid, FolderFate::Remove)
                    : FetchyardLogical::StopTask(guid);
    }
}

// What the task was to leave: planned with its record, or read from the report's request.
std::vector<ExpectedFile> FilesOf(const Job& job, const TaskView& task)
{
    for (std::size_t i = 0; i < job.planned.size(); ++i) {
        if (job.guids[i] == task.guid)
            return job.planned[i].files;
    }
    return IsTranscoding(job.request) ? job.expected_files
                                      : ExpectedFiles(job.request, task.name, task.folder);
}

bool TellEndOf(const Job& job, const std::string& log_file)
{
    // An interrupt came before its turn, or the library refused it.
    if (job.guids.empty()) {
        std::printf("%s: not begun\n", job.source.label.c_str());
        return false;
    }
    bool all_well = true;
    for (const std::string& guid : job.guids) {
        TaskView task;
        all_well =
            FetchyardLogical::FindTask(guid, task) && TellEnd(task, FilesOf(job, task), log_file) && all_well;
    }
    return all_well;
}

// Archives are made in one folder under the report's name alone, so two of one name must not be made at once.
std::vector<std::vector<Job*>> Rounds(std::vector<Job>& jobs)
{
    std::vector<std::vector<Job*>> rounds(1);
    std::map<std::string, std::size_t> rounds_of_name;
    for (Job& job : jobs) {
        const std::optional<std::string> archive = ArchiveName(job.request);
        const std::size_t round = archive ? rounds_of_name[*archive]++ : 0;
        if (round == rounds.size())
            rounds.emplace_back();
        rounds[round].push_back(&job);
    }
    return rounds;
}

bool PrepareJobs(const RunOptions& options, std::vector<Job>& jobs)
{
    for (Job& job : jobs) {
        const std::vector<Violation> violations = Prepare(options.encipher_passwords, job);
        PrintViolations(stderr, job.source.label, violations);
        if (!violations.empty())
            return false;
    }
    return true;
}

bool HandOverOrTell(Job& job)
{
    std::string reason;
    if (HandOver(job, reason))
        return true;
    std::fprintf(stderr, "%s: %s\n", job.source.label.c_str(), reason.c_str());
    return false;
}

// Watches them to their ends, too.
bool HandOverAll(const RunOptions& options, std::vector<Job>& jobs, ProgressView& view, Trouble& trouble)
{
    bool all_well = true;
    for (std::vector<Job*>& round : Rounds(jobs)) {
        for (Job* job : round) {
            if (IsInterrupted())
                break;
            all_well = HandOverOrTell(*job) && all_well;
        }
        WatchUntilIdle(
            GuidsOf(jobs), [&] { EndAll(jobs, options.discard_at_interrupt, view); }, view, trouble);
    }
    return all_well;
}

}  // namespace

bool ReadRequests(const std::vector<std::string>& paths, std::vector<RequestSource>& requests)
{
    for (const std::string& path : paths) {
        QFile file(QString::fromStdString(path));
        if (!file.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "%s: %s\n", path.c_str(), file.errorString().toStdString().c_str());
            return false;
        }
        requests.push_back({path, file.readAll().toStdString()});
    }
    return true;
}

int RunRequests(const RunOptions& options, const std::vector<RequestSource>& requests)
{
    std::vector<Job> jobs(requests.size());
    bool acceptable = true;
    for (std::size_t i = 0; i < requests.size(); ++i)
        acceptable = IsAccepted(requests[i], jobs[i]) && acceptable;
    if (!acceptable)
        return kBadInput;

    LibraryHost host;
    std::string reason;
    if (!host.Start(options.host, reason)) {
        std::fprintf(stderr, "%s\n", reason.c_str());
        return kSomethingFailed;
    }
    if (!PrepareJobs(options, jobs))
        return kBadInput;
    host.TellStore();
    TellEarlierTasks(options.host);
    CatchInterrupts();
    Trouble trouble;
    ProgressView view(IsTerminal());
    bool all_well = HandOverAll(options, jobs, view, trouble);
    for (const Job& job : jobs)
        all_well = TellEndOf(job, LogFile(options.host)) && all_well;
    if (IsInterrupted() && host.KeepsTasks())
        TellHowToGoOn(options.host, GuidsOf(jobs));
    return all_well ? kAllWell : kSomethingFailed;
}

}  // namespace FetchyardClient
