// The video plug-in of contract tests: a module whose exports write to the journal. One of them may be left
// out, by the definition that the build gives.
#include "fakes/Journal.h"
#include "fakes/Script.h"
#include "ZellBase/Export.h"
#include "ZellNetLink/RapidJsonProto.h"

#include <fstream>
#include <stdexcept>

#define EXPORTED extern "C" ZELL_SYMBOL_EXPORT

namespace {

[[maybe_unused]] fakes::VideoAnswer NextAnswer()
{
    auto& answers = fakes::TheScript().videos;
    if (answers.empty())
        return {};
    fakes::VideoAnswer answer = answers.front();
    answers.pop_front();
    return answer;
}

// The file that a good download leaves.
[[maybe_unused]] void WriteFile(const std::string& request)
{
    ZellNetLink::CRapidJsonProto json;
    json.set_str(request);
    const std::string path = "/DownloadVideoFileRequest/";
    const int format = json.get_int_v(path + "DownloadParam/VideoFormat", 0);
    const std::string stem = json.get_v(path + "DownloadParam/CustomFilePath", std::string()) +
                             json.get_v(path + "ResourceParam[1]/CustomFileName", std::string());
    std::ofstream(stem + (format == 2 ? ".mp4" : format == 1 ? ".avi" : "")) << "video";
    if (json.get_bool_v(path + "DownloadParam/IsSnap", false))
        std::ofstream(stem + ".jpg") << "picture";
}

}  // namespace

#ifndef WITHOUT_START
EXPORTED bool StartDownloadVideoFile(const std::string& first, const std::string& request,
                                     std::string& response)
{
    fakes::Call("StartDownloadVideoFile", "\"" + first + "\" " + request);
    const fakes::VideoAnswer answer = NextAnswer();
    if (answer.throws)
        throw std::runtime_error("a bad day");
    response = answer.response;
    if (answer.ok && answer.writes)
        WriteFile(request);
    return answer.ok;
}
#endif

#ifndef WITHOUT_SIZE
EXPORTED long long GetVideoDownloadedSize(const std::string& guid)
{
    fakes::Call("GetVideoDownloadedSize", guid);
    return 0;
}
#endif

#ifndef WITHOUT_STOP
EXPORTED void StopDownloadVideoFile(const std::string& guid)
{
    fakes::Call("StopDownloadVideoFile", guid);
}
#endif

#ifndef WITHOUT_REMOVE
EXPORTED void RemoveDownloader(const std::string& guid)
{
    fakes::Call("RemoveDownloader", guid);
}
#endif
