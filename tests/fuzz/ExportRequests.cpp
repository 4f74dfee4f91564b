#include "fakes/Journal.h"
#include "fakes/Script.h"
#include "FetchyardBussiness/DeterminantWriteFile/DeterminantDownloadParam.h"
#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "FuzzTarget.h"

#include <memory>
#include <stdexcept>
#include <vector>

namespace {

using FetchyardBussiness::DeterminantDownloadParam;

// What a task was made of survives as a resume record.
void Resume(ZellTaskKit::CDownloadTaskBase& task)
{
    const auto record = task.GetDownloadTaskParam<ZellTaskKit::CDownloadTaskParam>();
    std::shared_ptr<ZellTaskKit::CDownloadTaskBase> resumed;
    fuzz::Expect(FetchyardBussiness::CDownloadBussinessManager::Instance().ResumeDownloadTask(
                     resumed, record->CreateResumeXml()) &&
                     resumed != nullptr,
                 "a record that was written gives a task");
    const auto before = task.GetDownloadTaskParam<DeterminantDownloadParam>();
    const auto after = resumed->GetDownloadTaskParam<DeterminantDownloadParam>();
    fuzz::Expect((before == nullptr) == (after == nullptr), "the task is of the same kind");
    if (before)
        fuzz::Expect(before->vs_file_param_.vec_image_download.size() ==
                         after->vs_file_param_.vec_image_download.size(),
                     "every picture comes back");
}

}  // namespace

// Exports of reports and of person pictures as JSON. No folder is made: the driver's mkdir refuses.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fakes::Reset();
    std::vector<std::string> guids;
    try {
        FetchyardBussiness::CDownloadBussinessManager::Instance().AddDownloadCommTask(
            guids, {fuzz::Text(data, size)});
    } catch (const std::out_of_range&) {
        // The one that the contract lets out: a path that can't be shortened.
        return 0;
    }
    for (const auto& task : fakes::TheScript().handed_over)
        Resume(*task);
    return 0;
}
