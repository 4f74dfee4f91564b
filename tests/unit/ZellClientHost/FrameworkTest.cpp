#include "ZellClientHost/FrameworkManagerInterface.h"
#include "ZellClientHostSettings/ClientSettings.h"

#include <gtest/gtest.h>

#include <string>

using ZellClientHost::ClientSettings;
using ZellClientHost::SetClientSettings;

namespace {

ZellClientFrameWork::CFrameworkManagerInterface& Framework()
{
    return ZellClientFrameWork::CFrameworkManagerInterface::Instance();
}

}  // namespace

TEST(Framework, KnowsThePluginsThatWereMadeKnown)
{
    int module = 0;
    void* handle = nullptr;
    EXPECT_FALSE(Framework().GetPluginHandle(handle, "clipvault.c"));
    ZellClientHost::SetPluginHandle("clipvault.c", &module);
    EXPECT_TRUE(Framework().GetPluginHandle(handle, "clipvault.c"));
    EXPECT_EQ(handle, &module);
    ZellClientHost::SetPluginHandle("clipvault.c", nullptr);
    EXPECT_FALSE(Framework().GetPluginHandle(handle, "clipvault.c"));
}

TEST(Framework, GivesTheSavePathAsJsonOfKind2)
{
    ClientSettings settings;
    settings.save_path = "D:\\exports\\\xE6\x8A\xA5\\";
    SetClientSettings(settings);
    std::string text;
    EXPECT_TRUE(Framework().GetClientConfig(text, 2));
    EXPECT_EQ(text, "{\"SysConfig\":{\"FileSavePath\":\"D:\\\\exports\\\\\xE6\x8A\xA5\\\\\"}}");
}

TEST(Framework, GivesAnEmptyTextWithoutASavePathOrForAnotherKind)
{
    SetClientSettings(ClientSettings());
    std::string text = "left over";
    EXPECT_FALSE(Framework().GetClientConfig(text, 2));
    EXPECT_EQ(text, "");
    ClientSettings settings;
    settings.save_path = "/exports/";
    SetClientSettings(settings);
    text = "left over";
    EXPECT_FALSE(Framework().GetClientConfig(text, 1));
    EXPECT_EQ(text, "");
}

TEST(Framework, TellsTheUserAndTheClient)
{
    ClientSettings settings;
    settings.password_type = 2;
    settings.login_model = 3;
    settings.client_guid = "guid";
    settings.hardware_code = "code";
    SetClientSettings(settings);
    int password_type = 0;
    int login_model = 0;
    EXPECT_TRUE(Framework().GetUserInfoEx(password_type, login_model));
    EXPECT_EQ(password_type, 2);
    EXPECT_EQ(login_model, 3);
    std::string guid;
    std::string hardware;
    EXPECT_TRUE(Framework().GetClientInfo(guid, hardware));
    EXPECT_EQ(guid, "guid");
    EXPECT_EQ(hardware, "code");
}
