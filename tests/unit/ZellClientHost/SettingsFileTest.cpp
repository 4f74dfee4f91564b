#include "tests/unit/TempFolder.h"
#include "ZellClientHostSettings/ClientSettings.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

using ZellClientHost::ClientSettings;

namespace fs = std::filesystem;

namespace {

ClientSettings FullSettings()
{
    ClientSettings settings;
    settings.client_type = 1;
    settings.data_path = "/data/\xE6\x8A\xA5/";
    settings.public_data_path = "/public/";
    settings.save_path = "/exports/";
    settings.user_name = "operator \"one\"";
    settings.password = "p\\w\n";
    settings.password_type = 2;
    settings.login_model = 3;
    settings.client_guid = "guid";
    settings.hardware_code = "code";
    settings.sites = {{0, "http://127.0.0.1:8080"}, {7, "https://site.example"}};
    return settings;
}

class SettingsFile : public ::testing::Test
{
protected:
    bool Load(const std::string& text)
    {
        std::ofstream(path_, std::ios::binary) << text;
        return ZellClientHost::LoadClientSettings(path_, settings_, reason_);
    }

    const TempFolder folder_;
    const std::string path_ = folder_.File("settings.json");
    ClientSettings settings_;
    std::string reason_;
};

}  // namespace

TEST_F(SettingsFile, ComesBackAsItWasSaved)
{
    const ClientSettings saved = FullSettings();
    ASSERT_TRUE(ZellClientHost::SaveClientSettings(path_, saved, reason_)) << reason_;
    ASSERT_TRUE(ZellClientHost::LoadClientSettings(path_, settings_, reason_)) << reason_;
    EXPECT_EQ(settings_.client_type, saved.client_type);
    EXPECT_EQ(settings_.data_path, saved.data_path);
    EXPECT_EQ(settings_.public_data_path, saved.public_data_path);
    EXPECT_EQ(settings_.save_path, saved.save_path);
    EXPECT_EQ(settings_.user_name, saved.user_name);
    EXPECT_EQ(settings_.password, saved.password);
    EXPECT_EQ(settings_.password_type, saved.password_type);
    EXPECT_EQ(settings_.login_model, saved.login_model);
    EXPECT_EQ(settings_.client_guid, saved.client_guid);
    EXPECT_EQ(settings_.hardware_code, saved.hardware_code);
    EXPECT_EQ(settings_.sites, saved.sites);
}

TEST_F(SettingsFile, CannotBeSavedInAFolderThatIsNotThere)
{
    EXPECT_FALSE(
        ZellClientHost::SaveClientSettings(folder_.File("missing/settings.json"), FullSettings(), reason_));
    EXPECT_THAT(reason_, ::testing::HasSubstr("missing/settings.json: "));
}

TEST_F(SettingsFile, KeepsTheDefaultsOfAbsentMembers)
{
    settings_.login_model = 9;
    ASSERT_TRUE(Load(R"({"user_name":"operator"})")) << reason_;
    EXPECT_EQ(settings_.user_name, "operator");
    EXPECT_EQ(settings_.client_type, 0);
    EXPECT_EQ(settings_.login_model, 1);
    EXPECT_EQ(settings_.save_path, "");
    EXPECT_THAT(settings_.data_path, ::testing::EndsWith("/fetchyard-client/"));
    EXPECT_EQ(settings_.public_data_path, settings_.data_path + "public/");
    EXPECT_TRUE(settings_.sites.empty());
}

TEST_F(SettingsFile, EndsFoldersInASlashAndSitesInNone)
{
    ASSERT_TRUE(Load(R"({"data_path":"/data","public_data_path":"/public/","save_path":"C:\\exports\\",
                         "sites":{"0":"http://host:1/"}})"))
        << reason_;
    EXPECT_EQ(settings_.data_path, "/data/");
    EXPECT_EQ(settings_.public_data_path, "/public/");
    EXPECT_EQ(settings_.save_path, "C:\\exports\\");
    EXPECT_EQ(settings_.sites.at(0), "http://host:1");
}

TEST_F(SettingsFile, MayBeginWithAByteOrderMark)
{
    EXPECT_TRUE(Load("\xEF\xBB\xBF{\"client_type\":1}")) << reason_;
    EXPECT_EQ(settings_.client_type, 1);
}

TEST_F(SettingsFile, ThatIsNotThereIsAnErrorWithItsName)
{
    EXPECT_FALSE(ZellClientHost::LoadClientSettings(path_, settings_, reason_));
    EXPECT_THAT(reason_, ::testing::StartsWith(path_ + ": "));
    EXPECT_FALSE(ZellClientHost::LoadClientSettings(folder_.Text(), settings_, reason_));
}

TEST_F(SettingsFile, ThatIsNoJsonNamesTheLine)
{
    EXPECT_FALSE(Load("{\n\"client_type\": 1,\n oops\n}"));
    EXPECT_THAT(reason_, ::testing::StartsWith(path_ + ": not JSON, line 3: "));
    EXPECT_FALSE(Load(""));
    EXPECT_THAT(reason_, ::testing::HasSubstr("not JSON"));
}

TEST_F(SettingsFile, ThatIsWrongNamesTheMemberAndChangesNothing)
{
    const struct
    {
        const char* text;
        const char* reason;
    } table[] = {
        {"[]", "the settings must be a JSON object"},
        {R"({"user":1})", "unknown member \"user\""},
        {R"({"client_type":"1"})", "member \"client_type\" must be a whole number"},
        {R"({"client_type":1.5})", "member \"client_type\" must be a whole number"},
        {R"({"login_model":3000000000})", "member \"login_model\" must be a whole number"},
        {R"({"user_name":7})", "member \"user_name\" must be a text"},
        {R"({"save_path":null})", "member \"save_path\" must be a text"},
        {R"({"sites":"http://host"})", "member \"sites\" must be an object of site numbers and addresses"},
        {R"({"sites":{"one":"http://host"}})", "member \"sites\": \"one\" is not a site number"},
        {R"({"sites":{"-1":"http://host"}})", "member \"sites\": \"-1\" is not a site number"},
        {R"({"sites":{"1":"host:80"}})",
         "member \"sites\": the address of site \"1\" must be like \"http://host:port\""},
        {R"({"sites":{"1":"ftp://host"}})",
         "member \"sites\": the address of site \"1\" must be like \"http://host:port\""},
        {R"({"sites":{"1":5}})",
         "member \"sites\": the address of site \"1\" must be like \"http://host:port\""},
    };
    for (const auto& row : table) {
        settings_ = FullSettings();
        EXPECT_FALSE(Load(row.text)) << row.text;
        EXPECT_EQ(reason_, path_ + ": " + row.reason);
        EXPECT_EQ(settings_.client_type, 1);
        EXPECT_EQ(settings_.sites.size(), 2u);
    }
}
