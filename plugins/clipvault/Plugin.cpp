#include "plugins/clipvault/Plugin.h"

#include "plugins/clipvault/Downloader.h"
#include "ZellBase/Log.h"
#include "ZellBase/Util.h"
#include "ZellNetLinkHost/HttpClient.h"
#include "ZellTaskKitHost/PluginHost.h"

#include <exception>
#include <memory>

namespace ClipVault {
namespace {

using Zell::Base::Error::ErrorCode;
using ZellTaskKit::CPluginCommData;

constexpr char kPath[] = "/API/ClipVault/V0/DownloadVideoFiles";
constexpr ErrorCode kWrongInput(2, 20, 3);
constexpr ErrorCode kNotStarted(2, ZellNetLink::kModuleAnswer, ZellNetLink::NotStarted);
constexpr ErrorCode kNotFetched(2, 20, 3605);

void Log(const char* what, const std::string& reason)
{
    Zell::Base::details::IOXTFormatLog(Zell::Base::details::kLogError, "clipvault", "%s: %s", what,
                                       reason.c_str());
}

// A download is known by its GUID from here to its end.
class Known
{
public:
    explicit Known(const std::string& guid) : guid_(guid), download_(Downloads::Instance().Begin(guid)) {}
    Known(const Known&) = delete;
    Known& operator=(const Known&) = delete;
    ~Known()
    {
        if (download_)
            Downloads::Instance().End(guid_);
    }

    Download* Get() const { return download_.get(); }

private:
    const std::string guid_;
    const std::shared_ptr<Download> download_;
};

bool Answer(const ClipOutcome& outcome, std::string& response)
{
    response = WriteResponse(outcome);
    return outcome.state != ClipState::Failed;
}

bool Refuse(const ErrorCode& error, std::string& response)
{
    ClipOutcome outcome;
    outcome.error = error;
    return Answer(outcome, response);
}

bool Run(const std::string& json, std::string& response)
{
    ClipRequest request;
    std::string reason;
    if (!ReadRequest(json, request, reason)) {
        Log("A request for video is refused", reason);
        return Refuse(kWrongInput, response);
    }
    if (request.guid.empty())
        request.guid = Zell::Base::GuidUtil::CreateGuid();
    const Known known(request.guid);
    if (known.Get() == nullptr)
        return Refuse(Downloads::Instance().IsOpen() ? kWrongInput : kNotStarted, response);
    return Answer(CarryOut(request, *known.Get()), response);
}

bool RunGuarded(const std::string& json, std::string& response) noexcept
{
    try {
        return Run(json, response);
    } catch (const std::exception& failure) {
        Log("A download of video ended with an exception", failure.what());
    } catch (...) {
        Log("A download of video ended with an exception", "of no known kind");
    }
    try {
        Refuse(kNotFetched, response);
    } catch (...) {
        response.clear();
    }
    return false;
}

// Nobody is told of the failure of a signal; there is nothing in it that fails but memory.
template <typename Action>
void Guarded(const Action& action) noexcept
{
    try {
        action();
    } catch (const std::exception& failure) {
        Zell::Base::details::IOXTFormatLog(Zell::Base::details::kLogError, "clipvault", "%s", failure.what());
    }
}

bool Serve(std::shared_ptr<CPluginCommData>& response, const std::shared_ptr<CPluginCommData>& request)
{
    std::string json;
    std::string answer;
    if (request)
        request->JsonTxt(json);
    const bool is_good = RunGuarded(json, answer);
    response = std::make_shared<CPluginCommData>(answer, nullptr);
    return is_good;
}

}  // namespace
}  // namespace ClipVault

bool StartPlugin()
{
    ClipVault::Downloads::Instance().Open();
    return ZellTaskKit::RegisterInterface(ClipVault::kPath, ClipVault::Serve);
}

void StopPlugin()
{
    ClipVault::Downloads::Instance().Close();
    ZellTaskKit::UnregisterInterface(ClipVault::kPath);
}

bool StartDownloadVideoFile(const std::string& /*first*/, const std::string& request, std::string& response)
{
    return ClipVault::RunGuarded(request, response);
}

std::int64_t GetVideoDownloadedSize(const std::string& guid)
{
    std::int64_t bytes = 0;
    ClipVault::Guarded([&] { bytes = ClipVault::Downloads::Instance().Size(guid); });
    return bytes;
}

void StopDownloadVideoFile(const std::string& guid)
{
    ClipVault::Guarded([&] { ClipVault::Downloads::Instance().Stop(guid); });
}

void RemoveDownloader(const std::string& guid)
{
    ClipVault::Guarded([&] { ClipVault::Downloads::Instance().Remove(guid); });
}
