#include "Engine/TaskStates.h"

#include <algorithm>
#include <array>

using namespace ZellTaskKit;

namespace FetchyardLogical::details {

namespace {

struct Transition
{
    DownloadState before;
    DownloadState next;
};

// All that the contract of tasks can produce within one run, which begins in Unstarted.
constexpr std::array kTransitions = {
    // The head of Exec: a start state, or a failure of a task without a record.
    Transition{Unstarted, Downloading},
    Transition{Unstarted, Uploading},
    Transition{Unstarted, Failed},
    // The engine, for a task that it takes out of the queue; its own report of an exception before the start.
    Transition{Unstarted, Stopped},
    Transition{Unstarted, UploadStopped},
    Transition{Unstarted, Deleted},
    Transition{Unstarted, UploadFailed},
    // An ordinary run.
    Transition{Downloading, Finished},
    Transition{Downloading, Failed},
    Transition{Downloading, Stopped},
    Transition{Downloading, Deleted},
    Transition{Downloading, TranscodingBegin},
    // A run with an evidence target. Some of its ends are reported with the plain number: a log fetch ends in
    // 4 or 5, and what leaves a poll without a result or finds no record ends in 5.
    Transition{Uploading, UploadFinished},
    Transition{Uploading, UploadFailed},
    Transition{Uploading, UploadStopped},
    Transition{Uploading, Deleted},
    Transition{Uploading, Finished},
    Transition{Uploading, Failed},
    Transition{Uploading, TranscodingBegin},
    // Transcoding or overlay work. A failure and a stop may leave its end unreported.
    Transition{TranscodingBegin, TranscodingEnd},
    Transition{TranscodingBegin, Stopped},
    Transition{TranscodingBegin, Failed},
    Transition{TranscodingBegin, UploadFailed},
    Transition{TranscodingEnd, TranscodingBegin},
    Transition{TranscodingEnd, Finished},
    Transition{TranscodingEnd, Failed},
    Transition{TranscodingEnd, Stopped},
    Transition{TranscodingEnd, UploadFinished},
    Transition{TranscodingEnd, UploadFailed},
    Transition{TranscodingEnd, UploadStopped},
    Transition{TranscodingEnd, Deleted},
    // A failure that a step has reported is reported once more by the step above it.
    Transition{Failed, Failed},
    Transition{UploadFailed, UploadFailed},
};

constexpr std::array kEndStates = {Finished,     Failed,        Stopped, UploadFinished,
                                   UploadFailed, UploadStopped, Deleted};

}  // namespace

bool IsStartState(DownloadState state)
{
    return state == Downloading || state == Uploading;
}

bool IsEndState(DownloadState state)
{
    return std::find(kEndStates.begin(), kEndStates.end(), state) != kEndStates.end();
}

bool CanFollow(DownloadState before, DownloadState next)
{
    return std::any_of(kTransitions.begin(), kTransitions.end(), [before, next](const Transition& known) {
        return known.before == before && known.next == next;
    });
}

}  // namespace FetchyardLogical::details
