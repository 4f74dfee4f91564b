#include "Window/RequestDesk.h"

#include "Window/TaskRow.h"

#include <utility>

namespace FetchyardClient {

bool RequestDesk::IsArchiveBusy(const Job& job)
{
    const std::optional<std::string> archive = ArchiveName(job.request);
    const auto maker = archive ? makers_.find(*archive) : makers_.end();
    FetchyardLogical::TaskView view;
    return maker != makers_.end() && FetchyardLogical::FindTask(maker->second, view) && IsBusy(view);
}

Submission RequestDesk::Hand(Job& job)
{
    Submission submission;
    submission.label = job.source.label;
    if (!HandOver(job, submission.reason))
        return submission;
    submission.guids = job.guids;
    if (const std::optional<std::string> archive = ArchiveName(job.request))
        makers_[*archive] = job.guids.back();
    return submission;
}

Submission RequestDesk::Submit(const RequestSource& source)
{
    Submission submission;
    submission.label = source.label;
    Job job;
    submission.violations = Accept(source, job);
    if (submission.violations.empty())
        submission.violations = Prepare(false, job);
    if (!submission.violations.empty())
        return submission;
    if (!IsArchiveBusy(job))
        return Hand(job);
    submission.is_held_back = true;
    held_back_.push_back(std::move(job));
    return submission;
}

std::vector<Submission> RequestDesk::HandOverReady()
{
    std::vector<Submission> submissions;
    std::vector<Job> still;
    for (Job& job : held_back_) {
        if (IsArchiveBusy(job))
            still.push_back(std::move(job));
        else
            submissions.push_back(Hand(job));
    }
    held_back_ = std::move(still);
    return submissions;
}

}  // namespace FetchyardClient
