#pragma once

namespace ZellTaskKit {

// State of a task, as observers see it.
enum DownloadState : int {
    Unstarted = 0,
    Downloading = 1,
    Finished = 4,
    Failed = 5,
    Stopped = 6,
    Uploading = 7,  // 7, 10, 11, 12: 1, 4, 5, 6 of a task with an evidence target
    UploadFinished = 10,
    UploadFailed = 11,
    UploadStopped = 12,
    TranscodingBegin = 13,  // 13 and 14: bounds of transcoding or overlay work
    TranscodingEnd = 14,
    Deleted = 200,
};

// Which record a simple task has.
enum DownloadFileType : int {
    VideoFile = 0,
    ImageFile = 1,
    ServerFile = 2,
    ShortVideoFile = 3,
};

// How a task list opens the result.
enum OpenFileType : int {
    OpenNothing = 0,
    OpenFolder = 1,
};

}  // namespace ZellTaskKit
