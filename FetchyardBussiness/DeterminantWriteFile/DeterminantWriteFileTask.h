#pragma once

#include "FetchyardBussiness/DeterminantWriteFile/DeterminantDownloadParam.h"
#include "FetchyardBussiness/DeterminantWriteFile/ReportExportObject.h"
#include "FetchyardBussiness/DeterminantWriteFile/ServerSideView.h"
#include "FetchyardLogical/CmsGetExportFileData.h"
#include "ZellPictureLoader/PictureLoader.h"
#include "ZellTaskKit/DownloadTaskBase.h"
#include "ZellTaskKit/FileDownloader.h"

#include <QProcess>

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace FetchyardBussiness {

// The composite export: fetches the pictures, videos and stored objects of a DeterminantDownloadParam, pages
// through the server's rows into one report, packs the folder and registers the result as evidence, each if
// the record asks for it.
//
// Exec runs on one engine thread and may run again on the same object; the other slots come from any thread.
// States: 1, then 4, 5, 6 or 200; for an evidence export 7, then 10, 11, 12 or 200. The sources are named
// after the phases: ExportRun (order of the phases), ExportPictures, ExportVideos (with ExportVideoRequest
// and ExportVideoOverlay), ExportStoredObjects, ExportDockStation, ExportForceLogs, ExportPolling,
// ExportPages, ExportServerFile, ExportEnd, ExportArchive, ExportEvidence, ExportFailures, ExportAccount and
// ExportControl (stop, delete, progress).
class CDeterminantWriteFileTask : public ZellTaskKit::CDownloadTaskBase
{
public:
    CDeterminantWriteFileTask();
    ~CDeterminantWriteFileTask() override;

    void Exec() override;
    bool SetCommonData(const std::string& text) override;  // keeps the text; always false
    std::string GetCommData() override;
    // Raises the stop flag and tells whoever works at the moment. Told once; true also at a further call.
    // False, with state 5, without a record.
    bool Stop() override;
    // Kilobytes on disk below the export folder.
    ZellTaskKit::CDownloadProgress GetProgress() override;
    bool Suspend() override;  // does nothing: true
    // Raises the delete flag: the run ends with state 200. Removes nothing from the disk.
    bool Delete() override;
    void RelatedCameraList(std::map<int, std::vector<int>>& cameras,
                           Zell::Base::Error::ErrorCode& error) override;
    // Puts the present account into the stored request. False without a record. To be called before Exec.
    bool SetAccountInforToRequest() override;

    // Whether a video of the export is to be stamped.
    bool HasInfoOverlayVideo();

    // Phases, on the thread of Exec.
    bool DownloadPictures();      // false only without a record
    bool DownloadAllTypeVideo();  // false: the export has failed, and that has been reported
    // Fetches the videos through the video plug-in and stamps them. False: a function of the plug-in is
    // missing, or one has failed and the export does not go on after that; error says why. The flag is not
    // written.
    bool DownloadVideoFile(Zell::Base::Error::ErrorCode& error, std::vector<VideoDownloadEntry>& videos,
                           bool* ignored_flag, bool is_continue);
    // The plug-in's request for one video, JSON; the guid in it is the one that a stop is meant for.
    std::string CreateVideoDownloadParm(const VideoTaskParam& video);
    // What the plug-in says of a video: true if a resource arrived. Otherwise error, and the entry of the
    // failed files under file_name, say why; an answer that names no resource makes no entry.
    bool AnalyzeVideoDownloadResult(Zell::Base::Error::ErrorCode& error, std::string file_name,
                                    const std::string& response);
    // Burns lines and watermark into a video that is there, under the same name. False: it is unusable, and
    // its files are deleted.
    bool VideoInfoOverlayStart(VideoTaskParam& video);
    // Makes a stamping return, whichever video it works on. Any thread.
    void VideoInfoOverlayStop(std::vector<VideoDownloadEntry>& videos);
    bool WriteDataToFile(ExportDataNode& excel_data);
    std::string GetPdfExePath();  // folder of the program; empty if it can't be found
    // Packs the export folder into an archive that takes its place. The result says nothing: always false.
    bool DoCompressWork(const std::string& name, const std::string& path, const std::string& password);
    // Fetches the report that the server has generated, lets the server drop it, and turns HTML into the PDF
    // that was asked for. False: that has been reported, except for a scratch folder that can't be made.
    bool DownloadFileFromServer();
    using EnumStoragePlace = ZellTaskKit::CFileDownloader::StoragePlace;
    // Fetches a stored object into a file; on false the last error is that of the kind. A kind that is not
    // known is not fetched: true.
    bool DonloadFileFromOXTLocalStorage(int upload_type, std::string save_path, std::string url,
                                        EnumStoragePlace place);
    // True if the evidence service accepted.
    bool UploadFilesToEvidence(const std::string& evidence_param, std::string& search_xml);
    // Publishes the list of files that failed: for hosts, for the task list, in the record.
    void SetErrorCodeJsonToUp();

private:
    using ErrorCode = Zell::Base::Error::ErrorCode;
    using RequstData = FetchyardLogical::RequstData;

    // What one run of Exec works on.
    struct Run
    {
        std::shared_ptr<DeterminantDownloadParam> param;
        RequstData requset;  // the page in hand is rewritten here only
        bool is_evidence = false;

        VsFileParam& Settings() const { return param->vs_file_param_; }
    };

    // The phases that belong to Exec alone. Where they return bool, false means that the run is over and its
    // end has been reported.
    void Reset();
    bool Begin(Run& run);
    bool MakeExportFolder(const Run& run);
    void FillRequest(Run& run);
    bool ExportReport(Run& run);
    bool FetchItems(Run& run);
    bool MoveOnFromLastRun(Run& run);
    void EndFinishedReport(Run& run);
    bool ExportPages(Run& run);
    bool WritePage(Run& run);
    void AdvancePage(Run& run);
    void EndAfterFailedCall(Run& run);
    bool FetchGeneratedFile(Run& run);
    bool AwaitGeneratedFile(Run& run);
    // False: polling is pointless, and that has been reported. ask gives whether the files are there.
    bool PollServer(int most_polls, const std::function<bool(bool& failed)>& ask, bool& ready);
    bool EndsAfterPolling(Run& run, bool ready);
    bool FetchServerFile(DeterminantDownloadParam& param, const std::string& file_name);
    void DropServerFile(const std::string& file_name);
    bool TurnHtmlIntoPdf(const std::string& folder, const std::string& html_name);
    void FetchDockStationFiles(Run& run);
    void FetchForceLogs(Run& run);
    void FetchLogFiles();
    void End(Run& run);
    bool EndByRequest(Run& run);
    void PackFolder(Run& run);
    bool EndWithCollectedFailures(Run& run);
    bool RegisterEvidence(Run& run);

    void Notify(const Run& run, ZellTaskKit::DownloadState state);
    // Keeps a failed item, if the export goes on after one.
    void RecordFailure(const VsFileParam& settings, const std::string& name, const ErrorCode& error);
    void InsertFailure(const std::string& name, const std::string& reason, const ErrorCode& error);
    static std::string ReasonText(const ErrorCode& error);

    bool FetchPicture(DeterminantDownloadParam& param, ImageDownloadEntry& entry);
    void FetchDockStationFile(const Run& run, int file_id, const std::pair<int, std::string>& file);
    bool FetchVideos(DeterminantDownloadParam& param, bool is_evidence);
    void* ResolveVideoPlugin();  // the plug-in's start function; null if one of its functions is missing
    bool FetchVideo(void* start, VideoDownloadEntry& entry, ErrorCode& error, bool is_continue);
    void ReportFailedVideo(const VideoTaskParam& video, const std::string& response, ErrorCode& error);
    void DeleteVideoFiles(const VideoTaskParam& video);
    bool PlaceStamped(const VideoTaskParam& video, const std::string& source, const std::string& stamped);
    bool TurnStampedIntoAvi(const VideoTaskParam& video, const std::string& source,
                            const std::string& stamped);
    void DeleteInVideoPhase();
    bool HasVideoDownload();
    bool FetchStoredObjects(DeterminantDownloadParam& param, bool is_evidence);
    bool FetchStoredObject(DeterminantDownloadParam& param, ShortVideoEntry& entry, bool is_evidence);
    bool EndsWithStoredObject(DeterminantDownloadParam& param, const ShortVideoItem& clip,
                              const ErrorCode& error, bool is_evidence);

    using VideoGuidFunction = void (*)(const std::string& guid);
    void TellVideoPlugin(const VideoGuidFunction& function);
    bool TellServer(int operate_type);
    bool IsStopped() const { return b_stop_.load(std::memory_order_relaxed); }
    bool IsDeleted() const { return b_delete_.load(std::memory_order_relaxed); }

    // One writer for each format, kept across pages and runs; null for a format without one.
    std::map<int, std::unique_ptr<CExportReportDataToFileObject>> writer_map;
    FetchyardLogical::CmsGetExportFileData data_condition_;  // touched by Exec only; see server_side_
    std::atomic<bool> b_stop_{false};
    std::atomic<bool> b_delete_{false};
    std::atomic<bool> b_downloading_video_{false};
    std::shared_ptr<ZellPictureLoader::CImageMultiSyncLoader> image_loader;
    std::shared_ptr<ZellTaskKit::CFileDownloader> file_downloader;
    QProcess process_;  // part of the task, used by no phase
    std::atomic<CExportReportDataToFileObject*> current_writer{nullptr};
    std::mutex comm_data_mutex_;
    std::string comm_data;
    std::map<std::string, std::string> error_file_map;  // file name to reason
    std::map<int, int> error_code_map;                  // iSecondCode to iFirstCode
    std::mutex video_guid_mutex;
    void* video_size_func = nullptr;  // of the video plug-in, like the two below; guarded, like all four
    VideoGuidFunction video_stop_func = nullptr;
    VideoGuidFunction video_remove_func = nullptr;
    std::string video_download_guid;
    std::map<int, std::vector<int>> related_camera_map;
    ServerSideView server_side_;
};

}  // namespace FetchyardBussiness
