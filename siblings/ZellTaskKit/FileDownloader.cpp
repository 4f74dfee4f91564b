#include "ZellTaskKit/FileDownloader.h"

#include "FetchQueue.h"
#include "FileFetch.h"
#include "SiteRequest.h"
#include "ZellBase/Error.h"
#include "ZellBase/WeakReference.h"

#include <map>
#include <utility>

namespace ZellTaskKit {
namespace {

using Zell::Base::Error::ErrorCode;
using QueryParams = std::map<std::string, std::string>;

std::string WithStoreQuery(const std::string& url, const QueryParams& params)
{
    constexpr const char* kStoreRoot = "/storage/";
    return url.rfind(kStoreRoot, 0) == 0 ? WithQuery(url, params) : url;
}

// What fits the result, seen from the thread that gets it.
bool Outcome(const ErrorCode& error)
{
    if (error.iFirstCode == 0 && error.iSecondCode == 0)
        return true;
    Zell::Base::Error::SetLastError(error);
    return false;
}

}  // namespace

struct CFileDownloader::Impl
{
    bool Fetch(const std::string& address, const std::shared_ptr<CDownloadResultParam>& result,
               Callback callback)
    {
        if (!callback)
            return Outcome(FetchFile(address, result->save_path));
        RunOnFetchThread([reference = owner.GetRef(), address, result, callback = std::move(callback)] {
            // A downloader that is gone wants nothing any more; one that goes now waits for the callback.
            bool wanted = false;
            reference->IfValid([&wanted] { wanted = true; });
            if (!wanted)
                return;
            const ErrorCode error = FetchFile(address, result->save_path);
            reference->IfValid([&] {
                result->success = Outcome(error);
                callback(result);
            });
        });
        return true;
    }

    Zell::Base::details::CWeakReferenceOwner owner;
};

namespace {

std::shared_ptr<CDownloadResultParam> MakeResult(const std::string& url, const std::string& save_path,
                                                 void* user)
{
    auto result = std::make_shared<CDownloadResultParam>();
    result->url = url;
    result->save_path = save_path;
    result->user = user;
    return result;
}

}  // namespace

CFileDownloader::CFileDownloader() : impl_(std::make_unique<Impl>()) {}

CFileDownloader::~CFileDownloader() = default;

bool CFileDownloader::DownloadFile(const std::string& url, const std::string& save_path, Callback callback,
                                   void* user, const StoragePlace& place)
{
    const QueryParams params = {{"kind", "file"}, {"place", std::to_string(place)}};
    return impl_->Fetch(WithStoreQuery(url, params), MakeResult(url, save_path, user), std::move(callback));
}

bool CFileDownloader::DownloadFileByPic(const std::string& url, const std::string& save_path,
                                        Callback callback, void* user, const StoragePlace& place)
{
    const QueryParams params = {{"kind", "picture"}, {"place", std::to_string(place)}};
    return impl_->Fetch(WithStoreQuery(url, params), MakeResult(url, save_path, user), std::move(callback));
}

bool CFileDownloader::DownloadFileByPicInOXT(const std::string& url, const std::string& save_path,
                                             Callback callback, void* user)
{
    const QueryParams params = {{"kind", "platform_picture"}};
    return impl_->Fetch(WithStoreQuery(url, params), MakeResult(url, save_path, user), std::move(callback));
}

}  // namespace ZellTaskKit
