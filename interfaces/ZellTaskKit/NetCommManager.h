#pragma once

#include "ZellBase/Singleton.h"
#include "ZellNetLink/ClientInfo.h"
#include "ZellTaskKit/Export.h"

#include <memory>

namespace ZellTaskKit {

// The client's HTTP layer: adds the account, resolves sites, keeps connections. The account of the client's
// settings goes only to the sites that the settings name. A body is sent as application/json.
class ZELLTASKKIT_API CNetCommManager : public Zell::Base::CSingleton<CNetCommManager>
{
public:
    // Sends the request and waits for the answer, on the calling thread. True for an HTTP status of 200 to
    // 299; recv then holds the body. False otherwise; recv holds the error. recv may come in empty and is
    // then made. Without a request the error is (20, 3). The last argument is the site, 0 for the client's
    // own.
    bool ClientSynSend(std::shared_ptr<ZellNetLink::CClientRecvInfo>& recv,
                       std::shared_ptr<ZellNetLink::CClientSendContentTypeInfo> send, unsigned int site);

private:
    friend class Zell::Base::CSingleton<CNetCommManager>;
    CNetCommManager() = default;
};

}  // namespace ZellTaskKit

ZELL_SINGLETON_DECLARE(ZellTaskKit::CNetCommManager)
