#pragma once

#include "ZellTaskKit/Export.h"

#include <functional>
#include <memory>
#include <string>

namespace ZellTaskKit {

// What a callback of CFileDownloader gets.
struct CDownloadResultParam
{
    bool success = false;
    std::string url;
    std::string save_path;
    void* user = nullptr;
};

// Fetches objects of a store into files. The file appears under its name when it is whole; a failed fetch
// leaves what was there before. Until then it lies in "Downloads/" of the client's data folder. The folder of
// save_path must exist.
//
// With an empty callback the three calls are synchronous, true means that the file is on disk, and the reason
// of a failure is the calling thread's last error. With a callback they return at once, true if the fetch was
// taken on, and the callback comes once, on a thread of the downloader and with the reason of a failure as
// that thread's last error; one callback at a time for each downloader. After a downloader has been destroyed
// none of its callbacks comes any more.
//
// The url is an absolute http or https one, or a path on the client's own site; it is fetched as it stands. A
// site path that begins with "/storage/" gets the kind and the place as query parameters: kind=file&place=1,
// kind=picture&place=1, or kind=platform_picture alone. A fetch may take as long as bytes keep coming.
// A body that is cut is asked for again from where it broke, if the server gave it an ETag, up to nine times;
// a part that is another than the one asked for, or of another version, ends the fetch with (23, 1).
class ZELLTASKKIT_API CFileDownloader
{
public:
    using Callback = std::function<void(const std::shared_ptr<CDownloadResultParam>&)>;
    // Which store holds the object: 0 the platform's local storage, 1 the object storage, -1 unknown.
    using StoragePlace = int;

    CFileDownloader();
    CFileDownloader(const CFileDownloader&) = delete;
    CFileDownloader& operator=(const CFileDownloader&) = delete;
    virtual ~CFileDownloader();

    bool DownloadFile(const std::string& url, const std::string& save_path, Callback callback, void* user,
                      const StoragePlace& place);
    bool DownloadFileByPic(const std::string& url, const std::string& save_path, Callback callback,
                           void* user, const StoragePlace& place);
    bool DownloadFileByPicInOXT(const std::string& url, const std::string& save_path, Callback callback,
                                void* user);

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace ZellTaskKit
