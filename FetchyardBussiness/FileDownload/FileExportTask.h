#pragma once

#include "FetchyardBussiness/FileDownload/FileExportParam.h"
#include "ZellTaskKit/DownloadTaskBase.h"

#include <atomic>
#include <string>

namespace FetchyardBussiness {

// Fetches the files of a FileExportParam over HTTP, one after the other. Runs under the engine, or inside a
// composite task, which calls Exec itself with notifying switched off and asks for the result.
class CFileExportTask : public ZellTaskKit::CDownloadTaskBase
{
public:
    // States: 1, then 4, 5 or 6. A stop is seen before each file (6) and once its body has arrived (5).
    void Exec() override;
    bool Stop() override;
    ZellTaskKit::CDownloadProgress GetProgress() override;
    bool Suspend() override;  // like Stop

    // False: Exec reports no state and keeps its outcome for GetExecResult.
    void SetNotifyState(bool notify);
    bool GetExecResult() const;

private:
    void Report(ZellTaskKit::DownloadState state);
    // Where these return false, the end has been reported.
    bool ExportItem(const FileExportParam& param, const FileExportItem& item);
    bool Fetch(const FileExportItem& item, std::string& body);
    bool MakeFolder(const std::string& folder);
    bool Write(const FileExportParam& param, const std::string& path, const std::string& body);
    void ReportStopped(const FileExportParam& param, ZellTaskKit::DownloadState state);

    std::atomic<bool> stop_flag{false};
    std::atomic<bool> notify_flag{true};
    std::atomic<bool> result_flag{true};
};

}  // namespace FetchyardBussiness
