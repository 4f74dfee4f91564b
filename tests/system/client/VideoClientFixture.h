#pragma once

#include "ClientFixture.h"
#include "Tools.h"

#include <QDeadlineTimer>

#include <filesystem>
#include <thread>

namespace SystemTest {

// A client that works on videos.
class VideoClientFixture : public ClientFixture
{
protected:
    // Where videos come into being before they get their names.
    std::string Stamping() const { return client_.Path("data/video-work"); }
    std::string Fetching() const { return client_.Path("data/Downloads"); }

    void UseWatermark(const nlohmann::json& watermark) const
    {
        std::filesystem::create_directories(client_.Path("data"));
        WriteBytes(client_.Path("data/watermark.json"), watermark.dump());
    }
    template <typename Condition>
    static void WaitUntil(const Condition& is_so)
    {
        const QDeadlineTimer end(300000);
        while (!is_so()) {
            ASSERT_FALSE(end.hasExpired());
            std::this_thread::yield();
        }
    }
    // Until something lies in the folder.
    static void WaitForWorkIn(const std::string& folder)
    {
        WaitUntil([&folder] { return !NamesIn(folder).empty(); });
    }
    // Nothing but these lies in the export folder, and nothing half done anywhere.
    void ExpectFiles(const std::vector<std::string>& names) const
    {
        EXPECT_EQ(FilesBelow(client_.ExportFolder()), names);
        EXPECT_EQ(NamesIn(Stamping()), std::vector<std::string>{});
        EXPECT_EQ(NamesIn(Fetching()), std::vector<std::string>{});
    }
};

}  // namespace SystemTest
