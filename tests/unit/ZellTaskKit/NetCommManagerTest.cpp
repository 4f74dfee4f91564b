#include "tests/unit/HttpTestServer.h"
#include "tests/unit/ZellTaskKit/ClientInUse.h"
#include "ZellTaskKit/NetCommManager.h"

namespace {

using ZellNetLink::CClientRecvInfo;
using ZellNetLink::CClientSendContentTypeInfo;
using ZellTaskKit::CNetCommManager;

using Send = std::shared_ptr<CClientSendContentTypeInfo>;
using Recv = std::shared_ptr<CClientRecvInfo>;

TestReply Echo(const TestRequest& request)
{
    return Answer(request.target == "/fail" ? 503 : 200,
                  request.method + " " + request.target + " " + request.body);
}

class NetComm : public ClientInUse
{
protected:
    NetComm()
    {
        settings_.sites[0] = server_.Url("");
        settings_.sites[7] = other_.Url("/base");
        Use();
    }

    static Send Request(const std::string& url, int pattern = 1)
    {
        auto send = std::make_shared<CClientSendContentTypeInfo>();
        send->SetVal_URL(url);
        send->SetVal_Pattern(pattern);
        return send;
    }

    static std::string Body(const Send& send, unsigned int site = 0)
    {
        Recv recv;
        const bool sent = CNetCommManager::Instance().ClientSynSend(recv, send, site);
        const auto error = recv->GetVal_Error_code();
        return sent ? recv->GetVal_Receive_Data()
                    : "error " + std::to_string(error.iFirstCode) + "," + std::to_string(error.iSecondCode) +
                          recv->GetVal_Receive_Data();
    }

    HttpTestServer server_{Echo};
    HttpTestServer other_{Echo};
};

TEST_F(NetComm, APathIsJoinedToItsSite)
{
    EXPECT_EQ(Body(Request("/a")), "GET /a ");
    EXPECT_EQ(Body(Request("a/b")), "GET /a/b ");
    EXPECT_EQ(Body(Request("/a"), 7), "GET /base/a ");
    EXPECT_EQ(Body(Request("/a", 0)), "GET /a ");
}

TEST_F(NetComm, AnAbsoluteUrlStays)
{
    EXPECT_EQ(Body(Request(other_.Url("/x")), 0), "GET /x ");
    EXPECT_EQ(Body(Request(other_.Url("/x").substr(7), 0)), "GET /x ");
    EXPECT_EQ(other_.Requests().size(), 2U);
}

TEST_F(NetComm, AnUnknownSiteIsAnError)
{
    EXPECT_EQ(Body(Request("/a"), 99), "error 23,4");
}

TEST_F(NetComm, ParametersAreEncodedAndAddedInKeyOrder)
{
    const Send send = Request("/a");
    send->SetVal_Query_Params({{"z", "1"}, {"a b", "x&y=\xC3\xA9/"}});
    EXPECT_EQ(Body(send), "GET /a?a%20b=x%26y%3D%C3%A9%2F&z=1 ");
    send->SetVal_URL("/a?q=1");
    send->SetVal_Query_Params({{"z", ""}});
    EXPECT_EQ(Body(send), "GET /a?q=1&z= ");
    send->SetVal_URL("/a?#part");
    EXPECT_EQ(Body(send), "GET /a?z= ");
}

TEST_F(NetComm, TheMethodIsInCapitalsAndGetIfEmpty)
{
    const Send send = Request("/a");
    send->SetVal_Method("delete");
    EXPECT_EQ(Body(send), "DELETE /a ");
    send->SetVal_Method("");
    EXPECT_EQ(Body(send), "GET /a ");
}

TEST_F(NetComm, SendDataPrecedesRequestDataAsBody)
{
    const Send send = Request("/a");
    send->SetVal_Method("post");
    send->SetVal_Request_Data("{\"request\":1}");
    EXPECT_EQ(Body(send), "POST /a {\"request\":1}");
    send->SetVal_send_data("{\"send\":1}");
    EXPECT_EQ(Body(send), "POST /a {\"send\":1}");
    EXPECT_EQ(server_.Requests().at(0).headers.at("content-type"), "application/json");
}

TEST_F(NetComm, TheAccountGoesToTheClientsSitesOnly)
{
    settings_.user_name = "kim";
    settings_.password = "pw";
    settings_.sites.erase(7);
    Use();
    Body(Request("/a"));
    Body(Request(other_.Url("/a")));
    EXPECT_EQ(server_.Requests().at(0).headers.at("authorization"), "Basic a2ltOnB3");
    EXPECT_EQ(other_.Requests().at(0).headers.count("authorization"), 0U);
    settings_.sites[3] = other_.Url("");
    Use();
    Body(Request(other_.Url("?x")));
    EXPECT_EQ(other_.Requests().at(1).headers.count("authorization"), 1U);
    settings_.sites[3] = other_.Url("").substr(0, other_.Url("").size() - 1);  // another port
    Use();
    Body(Request(other_.Url("/a")));
    EXPECT_EQ(other_.Requests().at(2).headers.count("authorization"), 0U);
}

TEST_F(NetComm, AFailureIsInTheAnswer)
{
    EXPECT_EQ(Body(Request("/fail")), "error 21,503");
    EXPECT_EQ(Body(nullptr), "error 20,3");
}

TEST_F(NetComm, AnAnswerThatComesInIsUsedAgain)
{
    const auto mine = std::make_shared<CClientRecvInfo>();
    Recv recv = mine;
    EXPECT_FALSE(CNetCommManager::Instance().ClientSynSend(recv, Request("/fail"), 0));
    EXPECT_TRUE(CNetCommManager::Instance().ClientSynSend(recv, Request("/a"), 0));
    EXPECT_EQ(recv, mine);
    EXPECT_EQ(recv->GetVal_Error_code().iFirstCode, 0);
    EXPECT_EQ(recv->GetVal_Receive_Data(), "GET /a ");
}

}  // namespace
