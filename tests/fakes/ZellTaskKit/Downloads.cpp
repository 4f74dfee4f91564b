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

// The body is "body of" and the address, and of "/nothing" empty; a call that fails gives (21,500).
bool CNetCommManager::ClientSynSend(std::shared_ptr<ZellNetLink::CClientRecvInfo>& recv,
                                    std::shared_ptr<ZellNetLink::CClientSendContentTypeInfo> send,
                                    unsigned int site)
{
    std::string line = send->GetVal_Method() + " " + send->GetVal_URL();
    for (const auto& [key, value] : send->GetVal_Query_Params())
        line += " " + key + "=" + value;
    line += " request=" + send->GetVal_Request_Data() + " send=" + send->GetVal_send_data();
    line += " pattern=" + std::to_string(send->GetVal_Pattern());
    line += " timeout=" + std::to_string(send->GetVal_Timeout()) + " site=" + std::to_string(site);
    if (!fakes::Call("ClientSynSend", line)) {
        recv->SetVal_Error_code(Zell::Base::Error::ErrorCode(21, 500));
        return false;
    }
    recv->SetVal_Receive_Data(send->GetVal_URL() == "/nothing" ? "" : "body of " + send->GetVal_URL());
    return true;
}

}  // namespace ZellTaskKit
