#include "RunCommand.h"

#include "ExpectedFiles.h"
#include "FetchyardLogicalHost/EngineHost.h"
#include "Job.h"
#include "OpenCheck.h"
#include "Platform/Terminal.h"
#include "ProgressView.h"
#include "RequestCheck.h"
#include "Trouble.h"
#include "Words.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <optional>

namespace FetchyardClient {

using FetchyardLogical::TaskView;
using nlohmann::json;

namespace {

constexpr std::chrono::milliseconds kTick(200);

volatile std::sig_atomic_t interrupts = 0;

void OnInterrupt(int /*signal*/)
{
    interrupts = interrupts + 1;
    if (interrupts > 1)
        std::_Exit(130);
}

bool IsAccepted(const RequestSource& source, Job& job)
{
    const std::vector<Violation> violations = Accept(source, job);
    PrintViolations(stderr, source.label, violations);
    return violations.empty();
}

void EndAll(const std::vector<std::string>& guids, bool discard, ProgressView& view)
{
    view.Say(std::string(discard ? "deleting" : "stopping") + "; interrupt once more to leave at once");
    for (const std::string& guid : guids)
        discard ? FetchyardLogical::DeleteTask(guid) : FetchyardLogical::StopTask(guid);
}

void WatchUntilIdle(const std::vector<std::string>& guids, bool discard, ProgressView& view, Trouble& trouble)
{
    bool ending = false;
    bool idle = false;
    while (!idle) {
        idle = FetchyardLogical::WaitUntilIdle(kTick);
        for (const std::string& words : trouble.Take())
            view.Say("trouble: " + words);
        view.Show(guids, ProgressView::Clock::now());
        if (interrupts > 0 && !ending) {
            ending = true;
            EndAll(guids, discard, view);
        }
    }
}

// What the task was to leave: planned with its record, or read from the report's request.
std::vector<ExpectedFile> FilesOf(const Job& job, const TaskView& task)
{
    for (std::size_t i = 0; i < job.planned.size(); ++i) {
        if (job.guids[i] == task.guid)
            return job.planned[i].files;
    }
    return ExpectedFiles(job.request, task.name, task.folder);
}

bool TellFiles(const Job& job, const TaskView& task)
{
    bool all_there = true;
    std::size_t beside = 0;
    unsigned long long bytes_beside = 0;
    for (const ExpectedFile& file : FilesOf(job, task)) {
        const std::string wrong = WhyItDoesNotOpen(file);
        const auto size =
            static_cast<unsigned long long>(QFileInfo(QString::fromStdString(file.path)).size());
        if (!wrong.empty()) {
            std::printf("  %s %s\n", file.path.c_str(), wrong.c_str());
            all_there = false;
        } else if (file.is_report) {
            std::printf("  wrote %s (%s)\n", file.path.c_str(), SizeWords(size).c_str());
        } else {
            ++beside;
            bytes_beside += size;
        }
    }
    if (beside > 0)
        std::printf("  and %zu files of the request below %s (%s)\n", beside, task.folder.c_str(),
                    SizeWords(bytes_beside).c_str());
    return all_there;
}

void TellFailedFiles(const TaskView& task)
{
    for (const auto& [name, reason] : task.failed_files)
        std::printf("  %s failed: %s\n", name.c_str(), reason.c_str());
}

void TellRemainingLogins(const TaskView& task)
{
    const std::string words = RemainingLoginWords(task.remaining_login_count, task.remaining_login_type);
    if (!words.empty())
        std::printf("  %s\n", words.c_str());
}

// A deleted export leaves its folder to whoever runs the engine; its task does not look at it any more.
void RemoveDeleted(const std::vector<TaskView>& tasks)
{
    for (const TaskView& task : tasks) {
        if (task.state == ZellTaskKit::Deleted && !task.is_running && !task.folder.empty())
            QDir(QString::fromStdString(task.folder)).removeRecursively();
    }
}

bool TellEnd(const Job& job, const std::vector<TaskView>& tasks, const std::string& log_file)
{
    bool all_well = !job.guids.empty();
    for (const std::string& guid : job.guids) {
        const auto task =
            std::find_if(tasks.begin(), tasks.end(), [&](const TaskView& t) { return t.guid == guid; });
        if (task == tasks.end())
            return false;
        std::printf("%s: %s", task->name.c_str(), StateWords(task->state).c_str());
        if (!IsSuccess(task->state)) {
            const std::string& text = task->error_text;
            std::printf(": %s\n", text.empty() ? (log_file + " tells why").c_str() : text.c_str());
            if (task->state == ZellTaskKit::Failed || task->state == ZellTaskKit::UploadFailed) {
                TellFailedFiles(*task);
                TellRemainingLogins(*task);
            }
            all_well = false;
            continue;
        }
        std::printf("\n");
        all_well = TellFiles(job, *task) && all_well;
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
    std::signal(SIGINT, OnInterrupt);
    Trouble trouble;
    ProgressView view(IsTerminal());
    std::vector<std::string> guids;
    bool all_well = true;
    for (std::vector<Job*>& round : Rounds(jobs)) {
        for (Job* job : round) {
            if (interrupts > 0)
                break;
            all_well = HandOverOrTell(*job) && all_well;
            guids.insert(guids.end(), job->guids.begin(), job->guids.end());
        }
        WatchUntilIdle(guids, options.discard_at_interrupt, view, trouble);
    }
    const std::vector<TaskView> tasks = FetchyardLogical::ListTasks();
    RemoveDeleted(tasks);
    for (const Job& job : jobs)
        all_well = TellEnd(job, tasks, LogFile(options.host)) && all_well;
    return all_well ? kAllWell : kSomethingFailed;
}

}  // namespace FetchyardClient
