#include "FetchyardBussiness/Config/BussinessConfigMananger.h"
#include "support/ContractTest.h"

namespace contract {
namespace {

using FetchyardBussiness::CBussinessConfigMananger;
using FetchyardLogical::ConfigurationInfo;

class ConfigFacadeTest : public ContractTest
{
protected:
    static CBussinessConfigMananger& Config() { return CBussinessConfigMananger::Instance(); }
};

TEST_F(ConfigFacadeTest, DesktopClientGivesItsConfiguredPathWithForwardSlashes)
{
    fakes::TheScript().client_config = R"({"SysConfig":{"FileSavePath":"D:\\Exports\\Alarms\\"}})";
    EXPECT_EQ(Config().GetSavePath(), "D:/Exports/Alarms/");
    EXPECT_EQ(Trace(), "\nGetClientConfig 2\n");
}

TEST_F(ConfigFacadeTest, DesktopClientWithoutConfigurationSavesInThePublicFolder)
{
    fakes::TheScript().public_data_path = "C:\\Public\\";
    EXPECT_EQ(Config().GetSavePath(), "C:/Public/");
}

TEST_F(ConfigFacadeTest, DesktopConfigurationWithoutTheKeyGivesAnEmptyPath)
{
    ConfigurationInfo info{"before"};
    for (const std::string text : {R"({"SysConfig":{}})", "{}", "no json"}) {
        fakes::TheScript().client_config = text;
        EXPECT_TRUE(Config().GetConfigurationInfo(info));
        EXPECT_EQ(info.save_path, "") << text;
    }
}

TEST_F(ConfigFacadeTest, WebClientGivesTheEnginesPath)
{
    fakes::TheScript().client_type = 1;
    fakes::TheScript().configured_save_path = "E:\\Web/";
    EXPECT_EQ(Config().GetSavePath(), "E:/Web/");
    EXPECT_EQ(Trace(), "\nGetConfigurationInfo\n");
}

TEST_F(ConfigFacadeTest, WebClientWithAnEmptyPathFallsBackToTheDataFolder)
{
    fakes::TheScript().client_type = 1;
    EXPECT_EQ(Config().GetSavePath(), "/data/own/Fetchyard/");
}

TEST_F(ConfigFacadeTest, WebClientWhoseConfigurationIsUnreadableLogsAndFallsBack)
{
    fakes::TheScript().client_type = 1;
    fakes::FailCalls("GetConfigurationInfo", 1, -1);
    ConfigurationInfo info;
    EXPECT_TRUE(Config().GetConfigurationInfo(info));
    EXPECT_EQ(info.save_path, "/data/own/Fetchyard/");
    EXPECT_EQ(Trace(), R"(
GetConfigurationInfo -> fails
log5 Get Fetchyard Configuration faild
)");
}

TEST_F(ConfigFacadeTest, WebClientWhoseConfigurationIsUnreadableKeepsAPathThatWasThere)
{
    fakes::TheScript().client_type = 1;
    fakes::FailCalls("GetConfigurationInfo", 1, -1);
    ConfigurationInfo info{"E:\\Before/"};
    EXPECT_TRUE(Config().GetConfigurationInfo(info));
    EXPECT_EQ(info.save_path, "E:/Before/");
}

TEST_F(ConfigFacadeTest, AnyOtherClientIsRefusedAndKeepsTheArgument)
{
    for (const int type : {2, 3, -1}) {
        fakes::TheScript().client_type = type;
        ConfigurationInfo info{"D:\\before"};
        EXPECT_FALSE(Config().GetConfigurationInfo(info));
        EXPECT_EQ(info.save_path, "D:\\before");
        EXPECT_EQ(Config().GetSavePath(), "");
    }
    EXPECT_EQ(fakes::Take().at(0),
              "log5 "
              "Get Fetchyard Configuration faild");
}

TEST_F(ConfigFacadeTest, UpdateGoesToTheEngineWhateverTheClient)
{
    fakes::TheScript().client_type = 2;
    ConfigurationInfo info{"D:\\x"};
    EXPECT_TRUE(Config().UpdateConfiguration(info, FetchyardLogical::SavePathConfiguration));
    fakes::FailCalls("UpdateConfiguration", 2, 1);
    EXPECT_FALSE(Config().UpdateConfiguration(info, FetchyardLogical::SavePathConfiguration));
    EXPECT_EQ(Trace(), "\nUpdateConfiguration D:\\x 0\nUpdateConfiguration D:\\x 0 -> fails\n");
}

}  // namespace
}  // namespace contract
