#include "Job.h"

#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "Transcoding.h"
#include "ZellClientHostSettings/ClientSettings.h"
#include "ZellTaskKit/ClientServices.h"

#include <exception>
#include <memory>

namespace FetchyardClient {

using FetchyardBussiness::CDownloadBussinessManager;
using nlohmann::json;

namespace {

bool EncipherPassword(Job& job)
{
    const json::json_pointer pointer(std::string(ServerRequestOf(job.request)) +
                                     "/CheckPasswordRequest/PassWord");
    if (!job.request.contains(pointer))
        return true;
    std::string ciphered;
    if (!ZellTaskKit::PrivateEncrypt::AESEncryptForSensitiveInfor(ciphered, job.request[pointer]))
        return false;
    job.request[pointer] = ciphered;
    job.source.text = job.request.dump();
    return true;
}

bool HandOverRecords(Job& job)
{
    std::vector<std::shared_ptr<ZellTaskKit::CDownloadTaskParam>> records;
    for (const PlannedTask& task : job.planned)
        records.push_back(task.record);
    return CDownloadBussinessManager::Instance().AddFileDownloadTask(job.guids, records);
}

bool HandOverTranscoding(Job& job)
{
    std::string guid;
    if (!CDownloadBussinessManager::Instance().AddTranscodingTask(guid, job.source.text))
        return false;
    job.guids = {guid};
    return true;
}

bool HandOverByKind(Job& job)
{
    if (IsTranscoding(job.request))
        return HandOverTranscoding(job);
    return job.planned.empty()
               ? CDownloadBussinessManager::Instance().AddDownloadCommTask(job.guids, {job.source.text})
               : HandOverRecords(job);
}

}  // namespace

std::vector<Violation> Accept(const RequestSource& source, Job& job)
{
    std::vector<Violation> violations;
    job.source = source;
    if (ParseRequest(source.text, job.request, violations))
        violations = CheckRequest(job.request);
    return violations;
}

std::vector<Violation> Prepare(bool encipher_passwords, Job& job)
{
    std::vector<Violation> violations;
    const std::string save_folder = ZellClientHost::GetClientSettings().save_path;
    if (IsFileList(job.request)) {
        job.planned = PlanTasks(job.request, save_folder, violations);
    } else if (IsTranscoding(job.request)) {
        job.expected_files = PlanTranscoding(job.request, save_folder, violations);
        job.source.text = job.request.dump();
    }
    if (violations.empty() && encipher_passwords && !EncipherPassword(job))
        violations.push_back({"", "the password can't be ciphered; look at the key in the data folder"});
    return violations;
}

bool HandOver(Job& job, std::string& reason)
{
    try {
        if (HandOverByKind(job))
            return true;
        reason = "the library made no task of it";
    } catch (const std::exception& error) {
        reason =
            "the library can't shorten its path, which is over 259 bytes: use a shorter folder or a longer "
            "name (" +
            std::string(error.what()) + ")";
    }
    return false;
}

std::optional<std::string> ArchiveName(const json& request)
{
    const json::json_pointer write("/FileExportRequest/RequestData/WriteFileCondition");
    if (!request.contains(write) || !request[write].value("IsNeedCompressZip", false))
        return std::nullopt;
    return request[write].value("ExportFileName", std::string());
}

}  // namespace FetchyardClient
