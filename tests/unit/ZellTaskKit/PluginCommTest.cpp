#include "ZellTaskKit/PluginComm.h"
#include "ZellTaskKitHost/PluginHost.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <stdexcept>
#include <thread>

namespace {

using ZellTaskKit::CPluginCommData;
using ZellTaskKit::CPluginCommManager;
using ZellTaskKit::RegisterInterface;
using ZellTaskKit::UnregisterInterface;

using Data = std::shared_ptr<CPluginCommData>;

constexpr char kPath[] = "/API/Test/V0/Do";

Data Text(const std::string& json)
{
    return std::make_shared<CPluginCommData>(json, nullptr);
}

std::string JsonOf(const Data& data)
{
    std::string json;
    data->JsonTxt(json);
    return json;
}

bool Send(Data& response, const std::string& json)
{
    return CPluginCommManager::Instance().DoRequest(response, kPath, Text(json));
}

class PluginComm : public testing::Test
{
protected:
    void TearDown() override { UnregisterInterface(kPath); }
};

TEST(PluginCommData, HoldsTextPointerAndCallback)
{
    int object = 0;
    CPluginCommData data("{}", &object);
    EXPECT_EQ(data.GetPtr(), &object);
    EXPECT_EQ(data.GetCallBackFuc(), nullptr);
    const CPluginCommData::CallBackFuc callback = [](const std::string&, void*) {};
    data.SetCallBackFuc(callback);
    EXPECT_EQ(data.GetCallBackFuc(), callback);
    std::string text = "replaced";
    data.JsonTxt(text);
    EXPECT_EQ(text, "{}");
}

TEST_F(PluginComm, ARequestReachesWhoServesThePath)
{
    EXPECT_TRUE(RegisterInterface(kPath, [](Data& response, const Data& request) {
        response = Text("answer to " + JsonOf(request));
        return true;
    }));
    Data response;
    EXPECT_TRUE(Send(response, "{\"a\":1}"));
    EXPECT_EQ(JsonOf(response), "answer to {\"a\":1}");
}

TEST_F(PluginComm, APathThatNobodyServesFails)
{
    Data response = Text("old");
    EXPECT_FALSE(Send(response, "{}"));
    EXPECT_EQ(response, nullptr);
}

TEST_F(PluginComm, AFailedRequestHasNoResponse)
{
    EXPECT_TRUE(RegisterInterface(kPath, [](Data& response, const Data&) {
        response = Text("half");
        return false;
    }));
    Data response;
    EXPECT_FALSE(Send(response, "{}"));
    EXPECT_EQ(response, nullptr);
}

TEST_F(PluginComm, AnAnswerWithoutTextIsAnEmptyOne)
{
    EXPECT_TRUE(RegisterInterface(kPath, [](Data&, const Data&) { return true; }));
    Data response;
    ASSERT_TRUE(Send(response, "{}"));
    ASSERT_NE(response, nullptr);
    EXPECT_EQ(JsonOf(response), "");
}

TEST_F(PluginComm, AnExceptionOfAPlugInIsAFailure)
{
    EXPECT_TRUE(
        RegisterInterface(kPath, [](Data&, const Data&) -> bool { throw std::runtime_error("plug-in"); }));
    Data response;
    EXPECT_FALSE(Send(response, "{}"));
    EXPECT_TRUE(UnregisterInterface(kPath));
}

TEST_F(PluginComm, APathHasOneServerAtATime)
{
    const auto handler = [](Data&, const Data&) { return true; };
    EXPECT_FALSE(RegisterInterface("", handler));
    EXPECT_FALSE(RegisterInterface(kPath, nullptr));
    EXPECT_TRUE(RegisterInterface(kPath, handler));
    EXPECT_FALSE(RegisterInterface(kPath, handler));
    EXPECT_TRUE(UnregisterInterface(kPath));
    EXPECT_FALSE(UnregisterInterface(kPath));
    EXPECT_TRUE(RegisterInterface(kPath, handler));
}

TEST_F(PluginComm, AHandlerMayEndItsOwnRoute)
{
    EXPECT_TRUE(RegisterInterface(kPath, [](Data&, const Data&) { return UnregisterInterface(kPath); }));
    Data response;
    EXPECT_TRUE(Send(response, "{}"));
    EXPECT_FALSE(Send(response, "{}"));
}

TEST_F(PluginComm, UnregisteringWaitsForARequestInProgress)
{
    std::promise<void> entered;
    std::promise<void> release;
    std::atomic<bool> left{false};
    EXPECT_TRUE(RegisterInterface(kPath, [&](Data&, const Data&) {
        entered.set_value();
        release.get_future().wait();
        left = true;
        return true;
    }));
    std::thread caller([] {
        Data response;
        EXPECT_TRUE(Send(response, "{}"));
    });
    entered.get_future().wait();
    auto ended = std::async(std::launch::async, [&left] {
        UnregisterInterface(kPath);
        return left.load();
    });
    EXPECT_EQ(ended.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    release.set_value();
    EXPECT_TRUE(ended.get());
    caller.join();
}

}  // namespace
