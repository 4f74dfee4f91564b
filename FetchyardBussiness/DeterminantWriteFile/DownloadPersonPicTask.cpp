#include "FetchyardBussiness/DeterminantWriteFile/DownloadPersonPicTask.h"

#include "FetchyardBussiness/AccountRequest.h"
#include "FetchyardBussiness/Config/BussinessConfigMananger.h"
#include "FetchyardBussiness/DeterminantWriteFile/Compress.h"
#include "FetchyardBussiness/DeterminantWriteFile/FolderProgress.h"
#include "FetchyardBussiness/DeterminantWriteFile/PageRequest.h"
#include "FetchyardBussiness/ErrorText.h"
#include "FetchyardBussiness/EvidenceExport.h"
#include "FetchyardBussiness/Folders.h"
#include "FetchyardBussiness/ImageDownload/PictureRequest.h"
#include "FetchyardBussiness/Log.h"
#include "ZellBase/FileSystem.h"
#include "ZellBase/Util.h"

#include <map>

namespace FetchyardBussiness {

namespace FileSystem = Zell::Base::FileSystem;
using FetchyardLogical::CmsGetPersonPicFileData;
using FetchyardLogical::PersonPicture;
using Zell::Base::Error::ErrorCode;
using Zell::Base::Error::SetLastError;

CDownloadPersonPicTask::CDownloadPersonPicTask() = default;
CDownloadPersonPicTask::~CDownloadPersonPicTask() = default;

void CDownloadPersonPicTask::Exec()
{
    Run run;
    if (!Begin(run))
        return;
    FillRequest(run);
    if (!MakeScratchFolder(run) || !FetchPages(run))
        return;
    // The way of a stop leaves the scratch folder behind.
    if (!run.Settings().file_total_page_is_finished)
        LogInfo(" file  not finished= %s", run.Settings().str_save_path.Get().c_str());
    else if (!DeliverArchive(run))
        return;
    End(run);
}

// The start is reported as that of a plain export, also where the result goes to evidence.
bool CDownloadPersonPicTask::Begin(Run& run)
{
    b_stop_.store(false, std::memory_order_relaxed);
    b_delete_.store(false, std::memory_order_relaxed);
    NotifyTaskState(ZellTaskKit::Downloading);
    LogInfo("Start export.");
    run.param = GetDownloadTaskParam<DownloadPersonPicTaskParam>();
    if (!run.param) {
        NotifyTaskState(ZellTaskKit::Failed);
        LogError("Export param failed ");
        return false;
    }
    run.is_evidence = !run.param->str_evidence_param.empty();
    const std::string save_path = run.Settings().str_save_path;
    if (!EnsureFolder(save_path)) {
        SetLastError(OwnError(kErrorFolder));
        Notify(run, ZellTaskKit::Failed);
        LogError(" create file path =%s  failed.  task failed", save_path.c_str());
        return false;
    }
    LogInfo("Start export , file name: %s, file guid: %s, file save path: %s.",
            run.param->GetVal_str_name().c_str(), run.param->GetVal_str_guid().c_str(),
            run.param->GetVal_str_file_path().c_str());
    return true;
}

// The page is rewritten in the request only; the record keeps the condition that it came with.
void CDownloadPersonPicTask::FillRequest(const Run& run)
{
    const PersonVsFileParam& settings = run.Settings();
    data_condition_.str_method = settings.str_request_method;
    data_condition_.str_quern = settings.str_request_api;
    data_condition_.str_request = settings.str_request_condition;
}

bool CDownloadPersonPicTask::MakeScratchFolder(Run& run)
{
    run.guid = Zell::Base::GuidUtil::CreateGuid();
    const std::string save_path = CBussinessConfigMananger::Instance().GetSavePath();
    run.scratch_folder = save_path + run.guid + "/";
    run.scratch_archive = save_path + run.guid + ".zip";
    if (EnsureFolder(run.scratch_folder))
        return true;
    SetLastError(OwnError(kErrorFolder));
    Notify(run, ZellTaskKit::Failed);
    LogError(" create file pic_down_path_dir =%s  failed.  task failed", run.scratch_folder.c_str());
    return false;
}

// A stop takes effect between two pages: the pictures of the page in hand are all fetched first.
bool CDownloadPersonPicTask::FetchPages(Run& run)
{
    if (!image_loader)
        image_loader = std::make_shared<ZellPictureLoader::CImageMultiSyncLoader>();
    LogInfo(" begin Start export.");
    PersonVsFileParam& settings = run.Settings();
    while (!settings.file_total_page_is_finished && !IsStopped() && !IsDeleted()) {
        data_condition_.picture_list.clear();
        if (!CmsGetPersonPicFileData::GetExportPicDataList(data_condition_)) {
            EndAfterFailedCall(run);
            return false;
        }
        LogInfo(
            "CDownloadPersonPicTask::Exec()GetExportFileDataList, file name: %s, file guid: %s, file save "
            "path: %s.",
            run.param->GetVal_str_name().c_str(), run.param->GetVal_str_guid().c_str(),
            run.param->GetVal_str_file_path().c_str());
        // The line shows what the page before said.
        LogInfo("CDownloadPersonPicTask::Exec()  is_all_finished = %d", settings.file_total_page_is_finished);
        settings.file_total_page_is_finished = data_condition_.is_all_finished;
        FetchPictures(run);
        if (settings.file_total_page_is_finished)
            LogInfo("all data has download finished. file = %s", settings.str_save_path.Get().c_str());
        else
            AdvancePage(run);
    }
    return true;
}

void CDownloadPersonPicTask::FetchPictures(const Run& run)
{
    for (const PersonPicture& picture : data_condition_.picture_list) {
        FetchPicture(run, picture);
        // One flag alone does not end the walk.
        if (IsStopped() && IsDeleted()) {
            LogInfo("download image b_stop_ = %d, b_delete_ = %d", IsStopped(), IsDeleted());
            return;
        }
    }
}

// A lost picture is simply missing from the archive.
void CDownloadPersonPicTask::FetchPicture(const Run& run, const PersonPicture& picture)
{
    const auto key = MakePictureKey(picture.url);
    const std::string target = run.scratch_folder + picture.file_stem + ".jpeg";
    LogInfo("Start image download :sync_load_param.save_full_name =  %s", target.c_str());
    ErrorCode error;
    if (FetchPictureToFile(image_loader, key, target, error))
        return;
    LogError(
        "CDownloadPersonPicTask::Exec()  image download filed  , ptr_img_url_key->strImageUrl = : %s  "
        "error_code.iFirstCode =%d, error_code.iSecondCode =%d",
        key->GetValstrImageUrl().c_str(), error.iFirstCode, error.iSecondCode);
}

void CDownloadPersonPicTask::AdvancePage(Run& run)
{
    PersonVsFileParam& settings = run.Settings();
    LogInfo("CDownloadPersonPicTask::Exec()  ptr_person_control_param->vs_file_param_.file_current_page = %d",
            settings.file_current_page);
    ++settings.file_current_page;
    data_condition_.str_request = RewritePage(data_condition_.str_request, settings.file_current_page);
}

void CDownloadPersonPicTask::EndAfterFailedCall(const Run& run)
{
    const int delete_result = FileSystem::RemoveDirRecursively(run.scratch_folder.c_str());
    LogError("CDownloadPersonPicTask::Exec() ret = %d  delete_result =%d ", 0, delete_result);
    SetLastError(data_condition_.error_code);
    SetTaskErrorCode(data_condition_.error_code);
    SetErrorParamState(true);
    SetErrorParam({{"RemainingLoginNumber", data_condition_.remaining_login_count},
                   {"RemainingLoginType", data_condition_.remaining_login_type},
                   {"ErrorCode", std::to_string(data_condition_.error_code.iSecondCode)}});
    Notify(run, ZellTaskKit::Failed);
}

// A failed archive does not fail the export: its scratch folder stays, and the run ends as if all had gone
// well.
bool CDownloadPersonPicTask::DeliverArchive(Run& run)
{
    if (!PackPictures(run))
        return true;
    if (!MakeArchiveFolder(run))
        return false;
    MoveArchive(run);
    return true;
}

// False if there is no archive.
bool CDownloadPersonPicTask::PackPictures(Run& run)
{
    SharedText& save_path = run.Settings().str_save_path;
    if (!Zell::Base::IsUtf8(save_path)) {
        save_path = Zell::Base::LocalToUTF8(save_path);
        LogInfo(" file name is utf8  file = %s.", save_path.Get().c_str());
    }
    const int result = Compress::CompressFolder(run.scratch_archive, run.scratch_folder,
                                                run.Settings().str_zip_encoding_password);
    if (result != Compress::kDone) {
        LogInfo("  Compressd failed!. file = %s  result = %d", run.scratch_archive.c_str(), result);
        return false;
    }
    LogInfo("Compressd  successfully. file =%s", run.scratch_archive.c_str());
    FileSystem::RemoveDirRecursively(Zell::Base::UTF8ToLocal(run.scratch_folder).c_str());
    return true;
}

// Failed is reported as for a plain export, also where the result goes to evidence.
bool CDownloadPersonPicTask::MakeArchiveFolder(const Run& run)
{
    const std::string save_path = run.Settings().str_save_path;
    if (EnsureFolder(save_path))
        return true;
    SetLastError(OwnError(kErrorFolder));
    NotifyTaskState(ZellTaskKit::Failed);
    LogError(" create file path =%s  failed.  task failed", save_path.c_str());
    return false;
}

// The archive gets its name in its own folder, so that no half of it ever has that name.
void CDownloadPersonPicTask::MoveArchive(const Run& run)
{
    const std::string copy = run.ArchivePath(run.guid);
    const std::string archive = run.ArchivePath(run.Settings().str_zip_name);
    if (FileSystem::CopyFileW(run.scratch_archive.c_str(), copy.c_str(), 0) != 0)
        LogError("copy html failed. html_path_new =%s", copy.c_str());
    const int rename_result = FileSystem::RenameFile(copy.c_str(), archive.c_str());
    FileSystem::DeleteFileW(run.scratch_archive.c_str());
    LogInfo("all data has download Compressd. file = %s   rename_resule = %d", archive.c_str(),
            rename_result);
}

void CDownloadPersonPicTask::End(const Run& run)
{
    if (EndByRequest(run))
        return;
    if (run.is_evidence && !UploadFilesToEvidence(run.param->str_evidence_param)) {
        NotifyTaskState(ZellTaskKit::UploadFailed);
        LogError("upload files to evidence failed.");
        return;
    }
    LogInfo("CDownloadPersonPicTask::Exec() success ");
    Notify(run, ZellTaskKit::Finished);
    LogInfo("Download export result, file name: %s, file guid: %s, file save path: %s.",
            run.param->GetVal_str_name().c_str(), run.param->GetVal_str_guid().c_str(),
            run.param->GetVal_str_file_path().c_str());
}

// A delete wins over a stop. True if the run has ended.
bool CDownloadPersonPicTask::EndByRequest(const Run& run)
{
    const std::string name = run.param->GetVal_str_name();
    const std::string guid = run.param->GetVal_str_guid();
    const std::string path = run.param->GetVal_str_file_path();
    if (IsDeleted()) {
        LogInfo("Download delete success, file name: %s, file guid: %s, file save path: %s.", name.c_str(),
                guid.c_str(), path.c_str());
        NotifyTaskState(ZellTaskKit::Deleted);
        return true;
    }
    if (IsStopped()) {
        Notify(run, ZellTaskKit::Stopped);
        LogInfo("Download stop success, file name: %s, file guid: %s, file save path: %s.", name.c_str(),
                guid.c_str(), path.c_str());
        return true;
    }
    return false;
}

void CDownloadPersonPicTask::Notify(const Run& run, ZellTaskKit::DownloadState state)
{
    NotifyTaskState(StateOfExport(run.is_evidence, state));
}

bool CDownloadPersonPicTask::UploadFilesToEvidence(const std::string& evidence_param)
{
    ZellNetLink::CRapidJsonProto answer;
    if (!AskEvidenceService(evidence_param, answer))
        return false;
    const int error_module = answer.get_int_v("/Response/ErrorModule", 0);
    const int error_code = answer.get_int_v("/Response/ErrorCode", 0);
    return error_module != 0 && error_code != 0;
}

bool CDownloadPersonPicTask::Stop()
{
    LogInfo("CDownloadPersonPicTask::Exec() start to stop task.");
    if (b_stop_.exchange(true, std::memory_order_relaxed))
        LogInfo(" CDownloadPersonPicTask::Exec() has already stop.");
    return true;
}

bool CDownloadPersonPicTask::Suspend()
{
    return true;
}

ZellTaskKit::CDownloadProgress CDownloadPersonPicTask::GetProgress()
{
    ZellTaskKit::CDownloadProgress progress;
    const auto param = GetDownloadTaskParam<DownloadPersonPicTaskParam>();
    if (!param) {
        LogError("CDownloadPersonPicTask::GetProgress() nullptr == ptr_ftp_param");
        return progress;
    }
    LogInfo("CDownloadPersonPicTask::GetProgress() , file name: %s, file guid: %s, file save path: %s.",
            param->GetVal_str_name().c_str(), param->GetVal_str_guid().c_str(),
            param->GetVal_str_file_path().c_str());
    if (!AddFolderProgress(param->vs_file_param_.str_save_path, progress))
        LogInfo("dir is not exists.%s", param->GetVal_str_file_path().c_str());
    return progress;
}

bool CDownloadPersonPicTask::SetAccountInforToRequest()
{
    const auto param = GetDownloadTaskParam<DownloadPersonPicTaskParam>();
    if (!param) {
        // The line names GetProgress in both operations.
        LogError("CDownloadPersonPicTask::GetProgress() nullptr == ptr_ftp_param");
        return false;
    }
    RenewAccount(CheckPasswordOf(param->vs_file_param_));
    SetDownloadTaskParam(param, false);
    return true;
}

}  // namespace FetchyardBussiness
