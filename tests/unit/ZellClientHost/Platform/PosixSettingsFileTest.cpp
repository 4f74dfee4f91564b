#include "tests/unit/TempFolder.h"
#include "ZellClientHostSettings/ClientSettings.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace fs = std::filesystem;

TEST(SettingsFileRights, AreItsOwnersOnly)
{
    const TempFolder folder;
    const std::string path = folder.File("settings.json");
    std::ofstream(path) << "{}";
    fs::permissions(path, fs::perms::all);
    std::string reason;
    ASSERT_TRUE(ZellClientHost::SaveClientSettings(path, {}, reason)) << reason;
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), fs::directory_iterator()), 1);
}
