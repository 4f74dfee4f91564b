#include "FetchyardBussiness/PluginNames.h"
#include "FetchyardBussiness/VideoDownload/VideoTaskParam.h"
#include "Platform/Module.h"
#include "support/ContractTest.h"

namespace contract {
namespace {

using FetchyardBussiness::CToolFunc;
using FetchyardBussiness::video_plugin::kId;

class ToolFuncTest : public ContractTest
{
protected:
    static void* Module()
    {
        std::string reason;
        void* const module = ZellClientHost::LoadModule(COUNTING_PLUGIN, reason);
        EXPECT_NE(module, nullptr) << reason;
        return module;
    }
};

TEST_F(ToolFuncTest, FunctionOfALoadedPluginIsFoundByName)
{
    fakes::TheScript().plugins[kId] = Module();
    void* const function = CToolFunc::GetPluginTaskFunc(kId, "StartCount");
    ASSERT_NE(function, nullptr);
    EXPECT_GE(reinterpret_cast<int (*)()>(function)(), 0);
    EXPECT_EQ(fakes::TakeText(), "GetPluginHandle clipvault.c\n");
}

TEST_F(ToolFuncTest, PluginThatTheHostDoesNotKnowLogsTwoLines)
{
    EXPECT_EQ(CToolFunc::GetPluginTaskFunc("other.c", "StartCount"), nullptr);
    EXPECT_EQ("\n" + fakes::TakeText(), R"(
GetPluginHandle other.c
log5 Get plugin failed. plugin id: other.c
log5 Get plugin handle failed.
)");
}

TEST_F(ToolFuncTest, FunctionThatThePluginLacksLogsOneLine)
{
    fakes::TheScript().plugins[kId] = Module();
    EXPECT_EQ(CToolFunc::GetPluginTaskFunc(kId, "NoSuchFunction"), nullptr);
    EXPECT_EQ("\n" + fakes::TakeText(), R"(
GetPluginHandle clipvault.c
log5 Get task_func handle failed.
)");
}

TEST_F(ToolFuncTest, KnownPluginWithoutAModuleCountsAsUnknown)
{
    fakes::TheScript().plugins[kId] = nullptr;
    EXPECT_EQ(CToolFunc::GetPluginHandleImpl(kId), nullptr);
    EXPECT_EQ("\n" + fakes::TakeText(), R"(
GetPluginHandle clipvault.c
log5 Get plugin failed. plugin id: clipvault.c
)");
}

TEST_F(ToolFuncTest, HandleOfARefusedCallIsGivenBackAllTheSame)
{
    int module = 0;
    fakes::TheScript().plugins[kId] = &module;
    fakes::FailCalls("GetPluginHandle", 1, 1);
    EXPECT_EQ(CToolFunc::GetPluginHandleImpl(kId), &module);
    EXPECT_EQ("\n" + fakes::TakeText(), R"(
GetPluginHandle clipvault.c -> fails
log5 Get plugin failed. plugin id: clipvault.c
)");
}

}  // namespace
}  // namespace contract
