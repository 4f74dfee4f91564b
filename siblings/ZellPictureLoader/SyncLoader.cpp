#include "Address.h"
#include "Library.h"
#include "ZellPictureLoader/PictureLoader.h"
#include "ZellPictureLoaderHost/WarmUp.h"

#include <utility>

namespace ZellPictureLoader {
namespace {

using Zell::Base::Error::ErrorCode;

constexpr std::size_t kLargestFetchedAhead = 64u << 20;
constexpr std::size_t kLargestIntoMemory = 256u << 20;
// A dock station's file may be hours of film: only a transfer that stands still is given up.
constexpr std::uint64_t kLargestFile = std::uint64_t{1} << 40;
constexpr unsigned long kPictureTimeoutMs = 60000;
constexpr unsigned long kDockFileTimeoutMs = 0;

bool MakeRequest(const CImgUrlKey* key, std::uint64_t max_bytes, PictureRequest& request, ErrorCode& error)
{
    if (key == nullptr) {
        error = ErrorCode(ZellNetLink::kModuleTransport, kMalformedAddress);
        return false;
    }
    request.cacheable = key->GetValb_save_cache();
    request.max_bytes = static_cast<std::size_t>(max_bytes);
    request.timeout_ms =
        key->GetValurl_type() == kUrlTypeDockStation ? kDockFileTimeoutMs : kPictureTimeoutMs;
    return BuildAddress(*key, request.address, error);
}

// A picture in the cache is copied; one that nobody else has is given away.
ErrorCode PlaceFile(CPicture& picture, bool shared, CCacheFolder& folder, const std::string& path)
{
    return shared || !picture.is_file() ? PlaceCopy(picture, folder, path) : picture.MoveTo(path);
}

bool IsSuccess(const ErrorCode& error)
{
    return error.iFirstCode == 0 && error.iSecondCode == 0;
}

std::shared_ptr<CSession> RunningSession(ErrorCode& error)
{
    std::shared_ptr<CSession> session = CurrentSession();
    if (session == nullptr)
        error = ErrorCode(ZellNetLink::kModuleAnswer, ZellNetLink::NotStarted);
    return session;
}

}  // namespace

CImageMultiSyncLoader::CImageMultiSyncLoader() = default;
CImageMultiSyncLoader::~CImageMultiSyncLoader() = default;

bool CImageMultiSyncLoader::SyncLoadImage(ErrorCode& error, const std::shared_ptr<CImageSyncParam>& param)
{
    error = ErrorCode();
    const std::shared_ptr<CSession> session = RunningSession(error);
    const CImgUrlKey* key = param == nullptr ? nullptr : param->image_param.get();
    PictureRequest request;
    if (session == nullptr || !MakeRequest(key, kLargestFile, request, error))
        return false;
    const std::shared_ptr<CPicture> picture = session->Fetch(request, error);
    if (picture == nullptr)
        return false;
    error = PlaceFile(*picture, request.cacheable, *session->folder(), param->save_full_name);
    return IsSuccess(error);
}

bool CImageMultiSyncLoader::SyncLoadImage(ErrorCode& error, std::string& data,
                                          const std::shared_ptr<CImgUrlKey>& key)
{
    error = ErrorCode();
    const std::shared_ptr<CSession> session = RunningSession(error);
    PictureRequest request;
    if (session == nullptr || !MakeRequest(key.get(), kLargestIntoMemory, request, error))
        return false;
    const std::shared_ptr<CPicture> picture = session->Fetch(request, error);
    if (picture == nullptr)
        return false;
    error = picture->ReadInto(data);
    return IsSuccess(error);
}

void WarmPictures(const std::vector<std::shared_ptr<CImgUrlKey>>& keys)
{
    const std::shared_ptr<CSession> session = CurrentSession();
    if (session == nullptr)
        return;
    std::vector<PictureRequest> requests;
    requests.reserve(keys.size());
    for (const std::shared_ptr<CImgUrlKey>& key : keys) {
        PictureRequest request;
        ErrorCode ignored;
        if (key != nullptr && key->GetValb_save_cache() &&
            MakeRequest(key.get(), kLargestFetchedAhead, request, ignored))
            requests.push_back(std::move(request));
    }
    session->Warm(requests);
}

}  // namespace ZellPictureLoader
