#include "ZellNetLink/ClientInfo.h"

#include <gtest/gtest.h>

namespace {

TEST(ClientInfo, ACopyHoldsAllFieldsOfTheRequest)
{
    ZellNetLink::CClientSendContentTypeInfo send;
    send.SetVal_Method("POST");
    send.SetVal_URL("/a");
    send.SetVal_Request_Data("one");
    send.SetVal_send_data("two");
    send.SetVal_Pattern(3);
    send.SetVal_Timeout(600000);
    send.SetVal_Query_Params({{"k", "v"}});
    const ZellNetLink::CClientSendContentTypeInfo copy(send);
    EXPECT_EQ(copy.GetVal_Method(), "POST");
    EXPECT_EQ(copy.GetVal_URL(), "/a");
    EXPECT_EQ(copy.GetVal_Request_Data(), "one");
    EXPECT_EQ(copy.GetVal_send_data(), "two");
    EXPECT_EQ(copy.GetVal_Pattern(), 3);
    EXPECT_EQ(copy.GetVal_Timeout(), 600000U);
    EXPECT_EQ(copy.GetVal_Query_Params().at("k"), "v");
}

TEST(ClientInfo, AnAnswerHoldsBodyAndError)
{
    ZellNetLink::CClientRecvInfo recv;
    EXPECT_EQ(recv.GetVal_Receive_Data(), "");
    EXPECT_EQ(recv.GetVal_Error_code().iSecondCode, 0);
    recv.SetVal_Receive_Data("body");
    recv.SetVal_Error_code(Zell::Base::Error::ErrorCode(2, 21, 404));
    EXPECT_EQ(recv.GetVal_Receive_Data(), "body");
    EXPECT_EQ(recv.GetVal_Error_code().iFirstCode, 21);
    EXPECT_EQ(recv.GetVal_Error_code().iSecondCode, 404);
}

}  // namespace
