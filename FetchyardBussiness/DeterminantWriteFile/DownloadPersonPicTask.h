#pragma once

#include "FetchyardBussiness/DeterminantWriteFile/DownloadPersonPicTaskParam.h"
#include "FetchyardLogical/CmsGetPersonPicFileData.h"
#include "ZellPictureLoader/PictureLoader.h"
#include "ZellTaskKit/DownloadTaskBase.h"

#include <atomic>
#include <memory>
#include <string>

namespace FetchyardBussiness {

// Fetches the pictures of a person search page by page into a scratch folder below the client's save path,
// packs that folder into an archive with a password, puts the archive into the folder of its
// DownloadPersonPicTaskParam and registers it as evidence, if the record asks for it.
//
// Exec runs on one engine thread and may run again on the same object; the other slots come from any thread.
// States: 1, then 4, 5, 6 or 200; with an evidence target 1 as well, then 10, 11, 12 or 200.
class CDownloadPersonPicTask : public ZellTaskKit::CDownloadTaskBase
{
public:
    CDownloadPersonPicTask();
    ~CDownloadPersonPicTask() override;

    void Exec() override;
    // Raises the stop flag, which the run looks at between two pages: true. Nobody else is told.
    bool Stop() override;
    // Kilobytes on disk below the record's folder, so 0 until the archive is there.
    ZellTaskKit::CDownloadProgress GetProgress() override;
    bool Suspend() override;  // does nothing: true
    // Puts the present account into the stored request. False without a record. To be called before Exec.
    bool SetAccountInforToRequest() override;

    // On the thread of Exec. True only if the service answers with two codes that are not 0: the test is that
    // of the contract, which a clean answer does not pass.
    bool UploadFilesToEvidence(const std::string& evidence_param);

protected:
    // Raised by no code of this class; a run whose flag is raised all the same ends as deleted.
    std::atomic<bool> b_delete_{false};

private:
    // What one run of Exec works on.
    struct Run
    {
        std::shared_ptr<DownloadPersonPicTaskParam> param;
        bool is_evidence = false;
        // A new guid for each run names the folder of the pictures and the archive made of it, both directly
        // below the client's save path.
        std::string guid;
        std::string scratch_folder;
        std::string scratch_archive;

        PersonVsFileParam& Settings() const { return param->vs_file_param_; }
        std::string ArchivePath(const std::string& stem) const
        {
            return Settings().str_save_path.Get() + stem + ".zip";
        }
    };

    // The steps of Exec. Where they return bool, false means that the run is over and its end has been
    // reported.
    bool Begin(Run& run);
    void FillRequest(const Run& run);
    bool MakeScratchFolder(Run& run);
    bool FetchPages(Run& run);
    void FetchPictures(const Run& run);
    void FetchPicture(const Run& run, const FetchyardLogical::PersonPicture& picture);
    void AdvancePage(Run& run);
    void EndAfterFailedCall(const Run& run);
    bool DeliverArchive(Run& run);
    static bool PackPictures(Run& run);
    bool MakeArchiveFolder(const Run& run);
    static void MoveArchive(const Run& run);
    void End(const Run& run);
    bool EndByRequest(const Run& run);

    void Notify(const Run& run, ZellTaskKit::DownloadState state);
    bool IsStopped() const { return b_stop_.load(std::memory_order_relaxed); }
    bool IsDeleted() const { return b_delete_.load(std::memory_order_relaxed); }

    FetchyardLogical::CmsGetPersonPicFileData data_condition_;  // touched by Exec only
    std::atomic<bool> b_stop_{false};
    std::shared_ptr<ZellPictureLoader::CImageMultiSyncLoader> image_loader;
};

}  // namespace FetchyardBussiness
