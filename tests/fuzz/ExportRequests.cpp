#include "fakes/Journal.h"
#include "fakes/Script.h"
#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "FuzzTarget.h"

#include <stdexcept>
#include <vector>

namespace {

using FetchyardBussiness::DeterminantDownloadParam;

// What a task was made of survives as a resume record.
void Resume(ZellTaskKit::CDownloadTaskBase& task)
{
    const auto record = task.GetDownloadTaskParam<DeterminantDownloadParam>();
    if (!record)
        return;
    DeterminantDownloadParam resumed;
    resumed.SetVal_str_resume_xml(record->CreateResumeXml());
    fuzz::Expect(resumed.ResumeParamFromXml(), "a record that was written can be read");
    fuzz::Expect(
        resumed.vs_file_param_.vec_image_download.size() == record->vs_file_param_.vec_image_download.size(),
        "every picture comes back");
}

}  // namespace

// Report exports as JSON. No folder is made: the driver's mkdir refuses.
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
