#include "tests/unit/ZellTaskKit/ClientInUse.h"

#include <chrono>

namespace {

using ZellTaskKit::CFrameSystemConfigMgr;
using ZellTaskKit::CUserCommonManager;

class ClientServices : public ClientInUse
{
};

TEST_F(ClientServices, NobodyIsLoggedInAtFirst)
{
    int number = 9;
    std::string name = "as it was";
    std::string password = "as well";
    EXPECT_FALSE(CUserCommonManager::Instance().GetUserInfo(number, name, password));
    EXPECT_EQ(number, 0);
    EXPECT_EQ(name, "as it was");
    EXPECT_EQ(password, "as well");
}

TEST_F(ClientServices, TheStoredLoginPrecedesThatOfTheSettings)
{
    settings_.user_name = "settings";
    settings_.password = "one";
    Use();
    int number = 9;
    std::string name;
    std::string password;
    EXPECT_TRUE(CUserCommonManager::Instance().GetUserInfo(number, name, password));
    EXPECT_EQ(name + ":" + password, "settings:one");
    EXPECT_TRUE(CUserCommonManager::Instance().SetUserInfo("stored", "two"));
    EXPECT_TRUE(CUserCommonManager::Instance().GetUserInfo(number, name, password));
    EXPECT_EQ(name + ":" + password, "stored:two");
    EXPECT_TRUE(CUserCommonManager::Instance().SetUserInfo("", ""));
    EXPECT_TRUE(CUserCommonManager::Instance().GetUserInfo(number, name, password));
    EXPECT_EQ(name, "settings");
}

TEST_F(ClientServices, TheClientTypeIsThatOfTheSettings)
{
    for (const int type : {0, 1, 2}) {
        settings_.client_type = type;
        Use();
        EXPECT_EQ(CUserCommonManager::Instance().GetClientType(), type);
    }
}

TEST_F(ClientServices, FoldersEndInASlash)
{
    EXPECT_EQ(CFrameSystemConfigMgr::Instance().GetClientDataPath(), folder_.File("data/"));
    EXPECT_EQ(CFrameSystemConfigMgr::Instance().GetClientDataPublicPath(), folder_.File("public/"));
}

TEST(Sleep, LastsAsLongAsAskedFor)
{
    const auto begin = std::chrono::steady_clock::now();
    ZellTaskKit::ZC_Sleep(20);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(20));
}

}  // namespace
