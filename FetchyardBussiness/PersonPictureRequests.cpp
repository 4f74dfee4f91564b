#include "FetchyardBussiness/AccountRequest.h"
#include "FetchyardBussiness/Config/BussinessConfigMananger.h"
#include "FetchyardBussiness/DeterminantWriteFile/DownloadPersonPicTask.h"
#include "FetchyardBussiness/Log.h"
#include "FetchyardBussiness/ReportExportRequests.h"

#include <new>

namespace FetchyardBussiness::details {

namespace {

void ReadPersonRequest(const RequestReader& node, PersonVsFileParam& settings)
{
    const RequestReader request = node.Below("PicDownloadRequestNode");
    settings.str_request_method = request.Text("RequestMethod");
    settings.str_request_api = request.Text("RequestAPI");
    settings.str_request_condition = request.Text("RequestCondition");
    ReadCheckPassword(request, CheckPasswordOf(settings));
    settings.str_zip_encoding_password = node.Text("ZipEncodingPassword");
    settings.str_zip_name = node.Text("ZipName");
}

// The archive's name decides the folder below the configured save path. Nothing is cleaned or shortened.
void SettleArchiveFolder(PersonVsFileParam& settings)
{
    std::string save_path;
    std::string folder = settings.str_zip_name;
    if (settings.str_zip_name.empty())
        settings.str_zip_name = GeneratedName();
    LogInfo(" CDownloadBussinessManager::AddDownloadCommTask  save_path = %s   folder_name = %s",
            save_path.c_str(), folder.c_str());
    if (folder.empty())
        folder = settings.str_zip_name;
    save_path = CBussinessConfigMananger::Instance().GetSavePath() + folder + "/";
    MakeTaskFolder(save_path);
    settings.str_save_path = save_path;
}

}  // namespace

std::shared_ptr<ZellTaskKit::CDownloadTaskBase> MakePersonPictureTask(int purpose,
                                                                      const RequestReader& request,
                                                                      ZellNetLink::CRapidJsonProto& document)
{
    const std::shared_ptr<DownloadPersonPicTaskParam> record(new (std::nothrow) DownloadPersonPicTaskParam);
    if (!record) {
        LogError("Convert DownloadPersonPicTaskParam ptr failed.");
        return nullptr;
    }
    PersonVsFileParam& settings = record->vs_file_param_;
    ReadPersonRequest(request.Below("PersonExportPicNode"), settings);
    SettleArchiveFolder(settings);
    FillTaskFields(purpose, settings.str_zip_name, settings.str_save_path, *record);
    record->SetIsExportSensitiveInfo(settings.check_password_request);
    if (purpose == kEvidencePurpose)
        record->str_evidence_param = document.get_node_str("/EvidenceParam", 0);
    auto task = std::make_shared<CDownloadPersonPicTask>();
    task->SetDownloadTaskParam(record, false);
    return task;
}

}  // namespace FetchyardBussiness::details
