#include "Words.h"

#include "ZellBase/Util.h"

#include <array>
#include <utility>

namespace FetchyardClient {

using ZellTaskKit::DownloadState;

namespace {

constexpr std::array<std::pair<DownloadState, const char*>, 12> kStateWords = {{
    {ZellTaskKit::Unstarted, "waiting"},
    {ZellTaskKit::Downloading, "running"},
    {ZellTaskKit::Finished, "finished"},
    {ZellTaskKit::Failed, "failed"},
    {ZellTaskKit::Stopped, "stopped"},
    {ZellTaskKit::Uploading, "running"},
    {ZellTaskKit::UploadFinished, "finished"},
    {ZellTaskKit::UploadFailed, "failed"},
    {ZellTaskKit::UploadStopped, "stopped"},
    {ZellTaskKit::TranscodingBegin, "converting"},
    {ZellTaskKit::TranscodingEnd, "converted"},
    {ZellTaskKit::Deleted, "deleted"},
}};

}  // namespace

std::string StateWords(DownloadState state)
{
    for (const auto& [value, words] : kStateWords) {
        if (value == state)
            return words;
    }
    return "state " + std::to_string(state);
}

bool IsSuccess(DownloadState state)
{
    return state == ZellTaskKit::Finished || state == ZellTaskKit::UploadFinished;
}

bool IsFailure(DownloadState state)
{
    return state == ZellTaskKit::Failed || state == ZellTaskKit::UploadFailed;
}

bool IsStopped(DownloadState state)
{
    return state == ZellTaskKit::Stopped || state == ZellTaskKit::UploadStopped;
}

std::string GroupedNumber(unsigned long long number)
{
    std::string text = std::to_string(number);
    for (auto position = static_cast<int>(text.size()) - 3; position > 0; position -= 3)
        text.insert(static_cast<std::size_t>(position), ",");
    return text;
}

std::string SizeWords(unsigned long long bytes)
{
    constexpr std::array<const char*, 5> kUnits = {"bytes", "KiB", "MiB", "GiB", "TiB"};
    if (bytes < 1024)
        return std::to_string(bytes) + " bytes";
    auto value = static_cast<double>(bytes);
    std::size_t unit = 0;
    while (value >= 1024.0 && unit + 1 < kUnits.size()) {
        value /= 1024.0;
        ++unit;
    }
    return Zell::Base::StringUtil::str_fmt("%.1f %s", value, kUnits[unit]);
}

std::string DurationWords(std::chrono::milliseconds duration)
{
    const auto seconds = static_cast<long>(duration.count() / 1000);
    if (seconds < 3600)
        return Zell::Base::StringUtil::str_fmt("%02ld:%02ld", seconds / 60, seconds % 60);
    return Zell::Base::StringUtil::str_fmt("%ld:%02ld:%02ld", seconds / 3600, seconds / 60 % 60,
                                           seconds % 60);
}

std::string RemainingLoginWords(const std::string& count, const std::string& type)
{
    const std::string plural = count == "1" ? "" : "s";
    if (count.empty())
        return {};
    if (type == "1")
        return count + " wrong password" + plural + " more and the account is closed for a while";
    if (type == "2")
        return "the account is open again in " + count + " minute" + plural;
    return "the server says of the account: " + count + " left";
}

}  // namespace FetchyardClient
