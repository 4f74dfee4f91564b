#include "ZellNetLink/ClientInfo.h"

#include <utility>

namespace ZellNetLink {

CClientSendInfo::CClientSendInfo() = default;
CClientSendInfo::CClientSendInfo(const CClientSendInfo&) = default;
CClientSendInfo& CClientSendInfo::operator=(const CClientSendInfo&) = default;
CClientSendInfo::~CClientSendInfo() = default;

void CClientSendInfo::SetVal_Method(const std::string& method)
{
    method_ = method;
}

std::string CClientSendInfo::GetVal_Method() const
{
    return method_;
}

void CClientSendInfo::SetVal_URL(const std::string& url)
{
    url_ = url;
}

std::string CClientSendInfo::GetVal_URL() const
{
    return url_;
}

void CClientSendInfo::SetVal_Request_Data(const std::string& data)
{
    request_data_ = data;
}

std::string CClientSendInfo::GetVal_Request_Data() const
{
    return request_data_;
}

void CClientSendInfo::SetVal_send_data(const std::string& data)
{
    send_data_ = data;
}

std::string CClientSendInfo::GetVal_send_data() const
{
    return send_data_;
}

void CClientSendInfo::SetVal_Pattern(NetlibWrapper::RequestPattern pattern)
{
    pattern_ = pattern;
}

NetlibWrapper::RequestPattern CClientSendInfo::GetVal_Pattern() const
{
    return pattern_;
}

void CClientSendInfo::SetVal_Timeout(unsigned long milliseconds)
{
    timeout_ = milliseconds;
}

unsigned long CClientSendInfo::GetVal_Timeout() const
{
    return timeout_;
}

CClientSendContentTypeInfo::CClientSendContentTypeInfo() = default;
CClientSendContentTypeInfo::CClientSendContentTypeInfo(const CClientSendContentTypeInfo&) = default;
CClientSendContentTypeInfo& CClientSendContentTypeInfo::operator=(const CClientSendContentTypeInfo&) =
    default;
CClientSendContentTypeInfo::~CClientSendContentTypeInfo() = default;

void CClientSendContentTypeInfo::SetVal_Query_Params(const std::map<std::string, std::string>& params)
{
    query_params_ = params;
}

std::map<std::string, std::string> CClientSendContentTypeInfo::GetVal_Query_Params() const
{
    return query_params_;
}

CClientRecvInfo::CClientRecvInfo() = default;
CClientRecvInfo::~CClientRecvInfo() = default;

void CClientRecvInfo::SetVal_Receive_Data(std::string data)
{
    receive_data_ = std::move(data);
}

std::string CClientRecvInfo::GetVal_Receive_Data() const
{
    return receive_data_;
}

void CClientRecvInfo::SetVal_Error_code(const Zell::Base::Error::ErrorCode& error)
{
    error_code_ = error;
}

Zell::Base::Error::ErrorCode CClientRecvInfo::GetVal_Error_code() const
{
    return error_code_;
}

}  // namespace ZellNetLink
