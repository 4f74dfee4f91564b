#pragma once

#include "FetchyardBussiness/TranscodingTask/TranscodingParam.h"
#include "ZellTaskKit/DownloadTaskBase.h"

#include <atomic>
#include <mutex>
#include <string>
#include <vector>

namespace FetchyardBussiness {

// Stamps the platform's watermark on the videos of a TranscodingParam, one after the other.
class CTranscodingTask : public ZellTaskKit::CDownloadTaskBase
{
public:
    // States: 1, 13, then 5, or 6, or 14 and 4. The first video that fails ends the task; what is done stays.
    void Exec() override;
    // Ends the work on the video in hand. Returns at once: true.
    bool Stop() override;
    // Kilobytes of the results on disk, each rounded up.
    ZellTaskKit::CDownloadProgress GetProgress() override;
    bool Suspend() override;  // does nothing: true

private:
    enum class Outcome { Done, Stopped, Failed };

    void Begin();
    Outcome TranscodeFile(const FetchyardLogical::TrasncodingFile& file);
    void FinishFile(const FetchyardLogical::TrasncodingFile& file);
    // Saves a picture of a video.
    bool CaptureImage(const std::string& image_path, const std::string& video_path);
    bool GrabPicture(const std::string& video_path, std::string& data);

    std::atomic<bool> stop_flag{false};
    std::mutex files_mutex;
    std::vector<std::string> working_files;  // sources begun in this run
};

}  // namespace FetchyardBussiness
