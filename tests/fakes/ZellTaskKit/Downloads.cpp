#include "fakes/Journal.h"
#include "ZellTaskKit/FileDownloader.h"
#include "ZellTaskKit/NetCommManager.h"

ZELL_SINGLETON_DEFINE(ZellTaskKit::CNetCommManager)

namespace ZellTaskKit {

struct CFileDownloader::Impl
{
};

CFileDownloader::CFileDownloader() = default;
CFileDownloader::~CFileDownloader() = default;

bool CFileDownloader::DownloadFile(const std::string& url, const std::string& save_path, Callback callback,
                                   void*, const StoragePlace& place)
{
    return fakes::Call("DownloadFile",
                       url + " " + save_path + " " + std::to_string(place) + (callback ? " callback" : ""));
}

bool CFileDownloader::DownloadFileByPic(const std::string& url, const std::string& save_path,
                                        Callback callback, void*, const StoragePlace& place)
{
    return fakes::Call("DownloadFileByPic",
                       url + " " + save_path + " " + std::to_string(place) + (callback ? " callback" : ""));
}

bool CFileDownloader::DownloadFileByPicInOXT(const std::string& url, const std::string& save_path,
                                             Callback callback, void*)
{
    return fakes::Call("DownloadFileByPicInOXT", url + " " + save_path + (callback ? " callback" : ""));
}

bool CNetCommManager::ClientSynSend(std::shared_ptr<ZellNetLink::CClientRecvInfo>&,
                                    std::shared_ptr<ZellNetLink::CClientSendContentTypeInfo>,
                                    unsigned int site)
{
    return fakes::Call("ClientSynSend", std::to_string(site));
}

}  // namespace ZellTaskKit
