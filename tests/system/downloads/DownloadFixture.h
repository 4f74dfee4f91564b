#pragma once

#include "tests/unit/TempFolder.h"
#include "ZellBase/Error.h"
#include "ZellClientHostSettings/ClientSettings.h"
#include "ZellErrorText/ErrorInfoMgr.h"
#include "ZellTaskKit/FileDownloader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace SystemTest {

// A client without a program: its settings, a data folder, and a folder to fetch into.
class DownloadFixture : public testing::Test
{
protected:
    DownloadFixture()
    {
        settings_.data_path = folder_.File("data/");
        settings_.public_data_path = folder_.File("public/");
        settings_.save_path = folder_.File("out/");
        std::filesystem::create_directories(settings_.save_path);
        Use();
    }
    ~DownloadFixture() override { ZellClientHost::SetClientSettings(former_); }

    void Use() { ZellClientHost::SetClientSettings(settings_); }

    void UseSite(const std::string& address)
    {
        settings_.sites[0] = address;
        Use();
    }

    std::string Target(const std::string& name) const { return settings_.save_path + name; }

    // As CFileDownloader::DownloadFile of the platform's local storage.
    bool Fetch(const std::string& url, const std::string& name)
    {
        return downloader_.DownloadFile(url, Target(name), {}, nullptr, 0);
    }

    static std::string Content(const std::string& path)
    {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    // The names of all files that lie where files are fetched to, and where they lie until they are whole.
    std::vector<std::string> FilesLeft() const
    {
        std::vector<std::string> names;
        for (const std::string& each : {settings_.save_path, settings_.data_path + "Downloads/"}) {
            std::error_code missing;
            for (const auto& entry : std::filesystem::directory_iterator(each, missing))
                names.push_back(entry.path().filename().u8string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    // The last failure of this thread, which must have words of its own and no file left behind it.
    void ExpectFailure(int module, int code) const
    {
        const auto error = Zell::Base::Error::GetLastError();
        EXPECT_EQ(error.iFirstCode, module);
        EXPECT_EQ(error.iSecondCode, code);
        const std::string words = ZellErrorText::CErrorInfoMgr::UiInstance()
                                      .GetErrorInfoByModuleAndCode(module, code)
                                      .toStdString();
        EXPECT_GT(words.size(), 15u);
        EXPECT_EQ(words.find("(module "), std::string::npos) << words;
        EXPECT_EQ(FilesLeft(), std::vector<std::string>{});
    }

    const ZellClientHost::ClientSettings former_ = ZellClientHost::GetClientSettings();
    TempFolder folder_;
    ZellClientHost::ClientSettings settings_;
    ZellTaskKit::CFileDownloader downloader_;
};

}  // namespace SystemTest
