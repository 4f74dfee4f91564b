#include "fakes/Journal.h"
#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "FetchyardBussiness/SingleFileRequests.h"
#include "FuzzTarget.h"

#include <vector>

// Lists of single files as JSON, and the node of each kind.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace FetchyardBussiness;
    const std::string text = fuzz::Text(data, size);
    fakes::Reset();
    std::vector<std::string> guids;
    const bool taken = CDownloadBussinessManager::Instance().AddFileDownloadTask(guids, {text});
    fuzz::Expect(taken == (guids.size() == 1), "a request makes one task or none");
    ImageItem picture;
    FileExportItem file;
    VideoTaskParam video;
    ShortVideoItem clip;
    const bool is_json = details::ParseImageParam(picture, text);
    fuzz::Expect(details::ParseFileParam(file, text) == is_json, "all readers take the same texts");
    fuzz::Expect(details::ParseVideoParam(video, text) == is_json, "all readers take the same texts");
    fuzz::Expect(details::ParseShortVideoParam(clip, text) == is_json, "all readers take the same texts");
    return 0;
}
