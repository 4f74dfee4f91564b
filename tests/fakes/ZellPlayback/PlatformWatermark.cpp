#include "ZellPlayback/PlatformWatermark.h"

#include "fakes/Journal.h"
#include "fakes/Script.h"
#include "fakes/VideoFiles.h"

namespace {

constexpr int kFailed = 5;

}  // namespace

int AddPlatformWatermarkToVideoFile(const std::string& source, const std::string& text, const int& kind,
                                    const std::string& target)
{
    const bool succeeds = fakes::Call("AddPlatformWatermarkToVideoFile",
                                      source + " \"" + text + "\" " + std::to_string(kind) + " " + target);
    const int scripted = fakes::NextResult(fakes::TheScript().watermark_results);
    const int result = succeeds ? scripted : kFailed;
    if (result == 0)
        fakes::WriteVideo("watermarked", source, target);
    else
        Zell::Base::Error::SetLastError(fakes::TheScript().watermark_error);
    return result;
}

void StopPlatformWatermarkToVideoFile(std::string source)
{
    fakes::Call("StopPlatformWatermarkToVideoFile", source);
}
