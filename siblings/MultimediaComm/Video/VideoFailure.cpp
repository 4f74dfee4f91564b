#include "Video/VideoFailure.h"

#include "Video/VideoLog.h"

namespace Zell::MultimediaComm {
namespace {

constexpr int kOwnErrors = 20;
constexpr int kWrongInput = 3;
constexpr int kStopped = 3209;

Base::Error::ErrorCode ErrorOf(InfoOverlayErr result, int system_error)
{
    if (result == InfoOverlayStopped)
        return {2, kOwnErrors, kStopped};
    if (system_error != 0)
        return {0, system_error};
    return {2, kOwnErrors, kWrongInput};
}

}  // namespace

VideoFailure::VideoFailure(InfoOverlayErr result, const std::string& reason, int system_error)
    : std::runtime_error(reason), result_(result), error_(ErrorOf(result, system_error))
{
}

InfoOverlayErr EndOf(const char* function, const VideoFailure& failure)
{
    const int level =
        failure.Result() == InfoOverlayStopped ? Base::details::kLogWarning : Base::details::kLogError;
    WriteVideoLog(level, function, failure.what());
    Base::Error::SetLastError(failure.Error());
    return failure.Result();
}

}  // namespace Zell::MultimediaComm
