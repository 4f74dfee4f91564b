#pragma once

#include "ZellBase/Error.h"
#include "ZellNetLink/Export.h"

#include <map>
#include <string>

namespace ZellNetLink {

namespace NetlibWrapper {
// How the client addresses a request: 0 as the url stands, 1 (and any other value) to a site, where a url
// without scheme is joined to the site's address.
using RequestPattern = int;
}  // namespace NetlibWrapper

// A request: what is sent.
class ZELLNETLINK_API CClientSendInfo
{
public:
    CClientSendInfo();
    CClientSendInfo(const CClientSendInfo&);
    CClientSendInfo& operator=(const CClientSendInfo&);
    virtual ~CClientSendInfo();

    void SetVal_Method(const std::string& method);  // HTTP method; empty counts as "GET"
    std::string GetVal_Method() const;
    void SetVal_URL(const std::string& url);  // absolute, or a path on the site
    std::string GetVal_URL() const;
    void SetVal_Request_Data(const std::string& data);  // body; sent when send data is empty
    std::string GetVal_Request_Data() const;
    void SetVal_send_data(const std::string& data);  // body
    std::string GetVal_send_data() const;
    void SetVal_Pattern(NetlibWrapper::RequestPattern pattern);
    NetlibWrapper::RequestPattern GetVal_Pattern() const;
    void SetVal_Timeout(unsigned long milliseconds);  // of the whole request; 0 is the default of a minute
    unsigned long GetVal_Timeout() const;

private:
    std::string method_;
    std::string url_;
    std::string request_data_;
    std::string send_data_;
    NetlibWrapper::RequestPattern pattern_ = 0;
    unsigned long timeout_ = 0;
};

// A request with query parameters, percent-encoded and added to the url in key order.
class ZELLNETLINK_API CClientSendContentTypeInfo : public CClientSendInfo
{
public:
    CClientSendContentTypeInfo();
    CClientSendContentTypeInfo(const CClientSendContentTypeInfo&);
    CClientSendContentTypeInfo& operator=(const CClientSendContentTypeInfo&);
    ~CClientSendContentTypeInfo() override;

    void SetVal_Query_Params(const std::map<std::string, std::string>& params);
    std::map<std::string, std::string> GetVal_Query_Params() const;

private:
    std::map<std::string, std::string> query_params_;
};

// An answer: the body, or the error.
class ZELLNETLINK_API CClientRecvInfo
{
public:
    CClientRecvInfo();
    virtual ~CClientRecvInfo();

    void SetVal_Receive_Data(std::string data);
    std::string GetVal_Receive_Data() const;
    void SetVal_Error_code(const Zell::Base::Error::ErrorCode& error);
    Zell::Base::Error::ErrorCode GetVal_Error_code() const;

private:
    std::string receive_data_;
    Zell::Base::Error::ErrorCode error_code_;
};

}  // namespace ZellNetLink
