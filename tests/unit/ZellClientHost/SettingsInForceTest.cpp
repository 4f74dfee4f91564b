#include "ZellClientHostSettings/ClientSettings.h"

#include <gmock/gmock.h>

#include <string>
#include <thread>
#include <vector>

using ZellClientHost::ClientSettings;
using ZellClientHost::GetClientSettings;
using ZellClientHost::GetSiteUrl;
using ZellClientHost::SetClientSettings;

TEST(SettingsInForce, HoldThePlatformsFoldersForEmptyOnes)
{
    SetClientSettings(ClientSettings());
    const ClientSettings settings = GetClientSettings();
    EXPECT_THAT(settings.data_path, ::testing::EndsWith("/fetchyard-client/"));
    EXPECT_THAT(settings.data_path, ::testing::Not(::testing::StartsWith("/fetchyard-client")));
    EXPECT_EQ(settings.public_data_path, settings.data_path + "public/");
    EXPECT_EQ(settings.save_path, "");
    EXPECT_EQ(settings.login_model, 1);
}

TEST(SettingsInForce, AreThoseLastSet)
{
    ClientSettings settings;
    settings.data_path = "/data";
    settings.public_data_path = "/public/";
    settings.client_type = 1;
    SetClientSettings(settings);
    EXPECT_EQ(GetClientSettings().data_path, "/data/");
    EXPECT_EQ(GetClientSettings().public_data_path, "/public/");
    EXPECT_EQ(GetClientSettings().client_type, 1);
}

TEST(SettingsInForce, NameTheSites)
{
    ClientSettings settings;
    settings.sites = {{0, "http://own:1/"}, {4294967295u, "http://last:2"}};
    SetClientSettings(settings);
    std::string url = "unchanged";
    EXPECT_FALSE(GetSiteUrl(7, url));
    EXPECT_EQ(url, "unchanged");
    EXPECT_TRUE(GetSiteUrl(0, url));
    EXPECT_EQ(url, "http://own:1");
    EXPECT_TRUE(GetSiteUrl(4294967295u, url));
    EXPECT_EQ(url, "http://last:2");
}

TEST(SettingsInForce, MayBeReadWhileTheyChange)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([i] {
            for (int n = 0; n < 200; ++n) {
                ClientSettings settings = GetClientSettings();
                settings.user_name = "user " + std::to_string(i);
                settings.hardware_code = settings.user_name;
                SetClientSettings(settings);
            }
        });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(GetClientSettings().user_name, GetClientSettings().hardware_code);
}
