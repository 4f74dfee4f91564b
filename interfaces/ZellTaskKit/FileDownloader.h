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
// leaves what was there before. With an empty callback the three calls are synchronous, true means that the
// file is on disk, and the reason of a failure is the calling thread's last error. With a callback they
// return at once, and the callback comes on a thread of the downloader.
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
