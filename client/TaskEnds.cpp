#include "TaskEnds.h"

#include "OpenCheck.h"
#include "Words.h"

#include <QFileInfo>

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace FetchyardClient {

using FetchyardLogical::TaskView;

namespace {

constexpr std::chrono::milliseconds kTick(200);

volatile std::sig_atomic_t interrupts = 0;

void OnInterrupt(int /*signal*/)
{
    interrupts = interrupts + 1;
    if (interrupts > 1)
        std::_Exit(130);
}

bool TellFiles(const TaskView& task, const std::vector<ExpectedFile>& files)
{
    bool all_there = true;
    std::size_t beside = 0;
    unsigned long long bytes_beside = 0;
    for (const ExpectedFile& file : files) {
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
        std::printf("  %s failed: %s\n", name.empty() ? "what has no name" : name.c_str(), reason.c_str());
}

void TellRemainingLogins(const TaskView& task)
{
    const std::string words = RemainingLoginWords(task.remaining_login_count, task.remaining_login_type);
    if (!words.empty())
        std::printf("  %s\n", words.c_str());
}

// What a stop has interrupted may have failed for that; whoever stopped it need not hear of it.
void TellWhyNot(const TaskView& task, const std::string& log_file)
{
    if (!IsFailure(task.state)) {
        std::printf("\n");
        return;
    }
    const std::string& text = task.error_text;
    std::printf(": %s\n", text.empty() ? (log_file + " tells why").c_str() : text.c_str());
    TellFailedFiles(task);
    TellRemainingLogins(task);
}

}  // namespace

void CatchInterrupts()
{
    std::signal(SIGINT, OnInterrupt);
}

bool IsInterrupted()
{
    return interrupts > 0;
}

void WatchUntilIdle(const std::vector<std::string>& guids, const std::function<void()>& ask_for_ends,
                    ProgressView& view, Trouble& trouble)
{
    bool ending = false;
    bool idle = false;
    while (!idle) {
        idle = FetchyardLogical::WaitUntilIdle(kTick);
        for (const std::string& words : trouble.Take())
            view.Say("trouble: " + words);
        view.Show(guids, ProgressView::Clock::now());
        if (IsInterrupted() && !ending) {
            ending = true;
            ask_for_ends();
        }
    }
}

bool TellEnd(const TaskView& task, const std::vector<ExpectedFile>& files, const std::string& log_file)
{
    std::printf("%s: %s", task.name.c_str(), StateWords(task.state).c_str());
    if (IsSuccess(task.state)) {
        std::printf("\n");
        return TellFiles(task, files);
    }
    TellWhyNot(task, log_file);
    return false;
}

}  // namespace FetchyardClient
