#include "Platform/Module.h"
#include "ZellClientHost/FrameworkManagerInterface.h"
#include "ZellClientHostSettings/Plugins.h"

#include <gtest/gtest.h>
#include <QByteArray>

#include <string>
#include <thread>
#include <vector>

namespace {

using ZellClientHost::LoadPlugin;
using ZellClientHost::StopPlugin;

constexpr char kId[] = "counting.c";

void* HandleOf(const std::string& id)
{
    void* handle = nullptr;
    ZellClientFrameWork::CFrameworkManagerInterface::Instance().GetPluginHandle(handle, id);
    return handle;
}

// The module stays loaded from test to test, so its counts are compared, not taken as they are.
int Count(const char* function)
{
    std::string reason;
    void* const module = ZellClientHost::LoadModule(COUNTING_PLUGIN, reason);
    return reinterpret_cast<int (*)()>(ZellClientHost::FindFunction(module, function))();
}

class Plugins : public testing::Test
{
protected:
    void TearDown() override
    {
        qunsetenv("FETCHYARD_TEST_PLUGIN");
        StopPlugin(kId);
    }

    std::string reason_;
    const int starts_ = Count("StartCount");
    const int stops_ = Count("StopCount");
};

TEST_F(Plugins, ALoadedPluginIsStartedAndFoundByItsId)
{
    EXPECT_TRUE(LoadPlugin(kId, COUNTING_PLUGIN, reason_)) << reason_;
    EXPECT_NE(HandleOf(kId), nullptr);
    EXPECT_EQ(Count("StartCount"), starts_ + 1);
    EXPECT_NE(ZellClientHost::FindFunction(HandleOf(kId), "StopCount"), nullptr);
    EXPECT_EQ(ZellClientHost::FindFunction(HandleOf(kId), "NoSuchFunction"), nullptr);
}

TEST_F(Plugins, AnIdIsLoadedOnce)
{
    EXPECT_TRUE(LoadPlugin(kId, COUNTING_PLUGIN, reason_));
    EXPECT_TRUE(LoadPlugin(kId, COUNTING_PLUGIN, reason_));
    EXPECT_TRUE(LoadPlugin(kId, "/nowhere/other.so", reason_));
    EXPECT_EQ(Count("StartCount"), starts_ + 1);
}

TEST_F(Plugins, ManyThreadsThatLoadAPluginStartItOnce)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([] {
            std::string reason;
            EXPECT_TRUE(LoadPlugin(kId, COUNTING_PLUGIN, reason));
            EXPECT_NE(HandleOf(kId), nullptr);
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(Count("StartCount"), starts_ + 1);
}

TEST_F(Plugins, AStoppedPluginIsForgottenAndCanStartAgain)
{
    ASSERT_TRUE(LoadPlugin(kId, COUNTING_PLUGIN, reason_));
    EXPECT_TRUE(StopPlugin(kId));
    EXPECT_EQ(HandleOf(kId), nullptr);
    EXPECT_EQ(Count("StopCount"), stops_ + 1);
    EXPECT_TRUE(LoadPlugin(kId, COUNTING_PLUGIN, reason_));
    EXPECT_EQ(Count("StartCount"), starts_ + 2);
}

TEST_F(Plugins, AnUnknownIdCannotBeStopped)
{
    EXPECT_FALSE(StopPlugin(kId));
    EXPECT_EQ(Count("StopCount"), stops_);
}

TEST_F(Plugins, AModuleThatIsNotThereIsToldInWords)
{
    EXPECT_FALSE(LoadPlugin(kId, "/nowhere/counting.so", reason_));
    EXPECT_NE(reason_.find("/nowhere/counting.so"), std::string::npos) << reason_;
    EXPECT_EQ(HandleOf(kId), nullptr);
}

TEST_F(Plugins, APluginThatRefusesToStartIsNotKnown)
{
    qputenv("FETCHYARD_TEST_PLUGIN", "refuses");
    EXPECT_FALSE(LoadPlugin(kId, COUNTING_PLUGIN, reason_));
    EXPECT_EQ(reason_, "the plug-in did not start");
    EXPECT_EQ(HandleOf(kId), nullptr);
}

TEST_F(Plugins, AnExceptionAtTheStartIsToldInWords)
{
    qputenv("FETCHYARD_TEST_PLUGIN", "throws");
    EXPECT_FALSE(LoadPlugin(kId, COUNTING_PLUGIN, reason_));
    EXPECT_EQ(reason_, "the plug-in did not start: a bad day");
    EXPECT_EQ(HandleOf(kId), nullptr);
}

}  // namespace
