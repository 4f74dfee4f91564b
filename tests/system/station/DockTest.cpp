#include "ServedFolder.h"
#include "StationFixture.h"

#include <QImage>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>

using nlohmann::json;
using namespace SystemTest;
namespace fs = std::filesystem;

namespace {

class StationDock : public StationFixture
{
protected:
    httplib::Result Get(const std::string& path, const httplib::Headers& headers = {})
    {
        return station_.Connect()->Get(path, headers);
    }
    static json Files(httplib::Client& client)
    {
        return json::parse(client.Get("/api/v1/dock/files")->body)["Files"];
    }
};

}  // namespace

TEST_F(StationDock, ListTellsWhatCanBeFetched)
{
    const json files = Files(*station_.Connect());
    ASSERT_EQ(files.size(), 8u);
    EXPECT_EQ(files[0]["Device"], 1);
    EXPECT_EQ(files[0]["Id"], 1001);
    EXPECT_EQ(files[0]["Name"], "patrol-1-20260131-223000.jpg");
    EXPECT_EQ(files[0]["Time"], "2026-01-31T22:30:00Z");
    EXPECT_EQ(files[7]["Device"], 2);
    EXPECT_EQ(files[7]["Id"], 2004);
    for (const json& file : files) {
        const auto answer = Get("/dock/" + file["Device"].dump() + "/files/" + file["Id"].dump());
        EXPECT_EQ(answer->status, 200) << file;
        EXPECT_EQ(answer->body.size(), file["Bytes"]) << file;
    }
}

TEST_F(StationDock, FilesAreWhatTheirNamesSay)
{
    const auto picture = Get("/dock/1/files/1001");
    EXPECT_EQ(picture->get_header_value("Content-Type"), "image/jpeg");
    EXPECT_EQ(QImage::fromData(QByteArray::fromStdString(picture->body)).width(), 1280);
    const auto video = Get("/dock/1/files/1002");
    EXPECT_EQ(video->get_header_value("Content-Type"), "video/x-motion-jpeg");
    EXPECT_EQ(video->body.substr(0, 3), "\xFF\xD8\xFF");
    const auto sound = Get("/dock/1/files/1003");
    EXPECT_EQ(sound->get_header_value("Content-Type"), "audio/wav");
    EXPECT_EQ(sound->body.substr(0, 4), "RIFF");
    EXPECT_EQ(sound->body.size(), 44u + 4u * 8000u * 2u);
    const auto times = Get("/dock/1/files/1004");
    EXPECT_EQ(times->get_header_value("Content-Type"), "text/plain; charset=utf-8");
    EXPECT_EQ(times->body,
              "2026-01-31 22:30:00  patrol-1-20260131-223000.jpg\n"
              "2026-01-31 22:37:00  patrol-1-20260131-223700.mjpeg\n"
              "2026-01-31 22:44:00  patrol-1-20260131-224400.wav\n");
}

TEST_F(StationDock, DevicesHaveFilesOfTheirOwn)
{
    EXPECT_NE(Get("/dock/1/files/1001")->body, Get("/dock/2/files/2001")->body);
    EXPECT_EQ(Get("/dock/1/files/2001")->status, 404);
    EXPECT_EQ(Get("/dock/2/files/1001")->status, 404);
}

TEST_F(StationDock, PartOfAFileCanBeAskedFor)
{
    const auto part = Get("/dock/1/files/1003", {{"Range", "bytes=0-3"}});
    EXPECT_EQ(part->status, 206);
    EXPECT_EQ(part->body, "RIFF");
}

TEST_F(StationDock, WhatIsNotThereIsTold)
{
    for (const char* path :
         {"/dock/3/files/1001", "/dock/0/files/0", "/dock/1/files/1005", "/dock/1/files/-1001",
          "/dock/1/files/+1001", "/dock/1/files/1001.jpg", "/dock/1/files/0x3e9", "/dock/x/files/1001",
          "/dock/1/files/18446744073709551616", "/dock/1/files/99999999999999999999999", "/dock/1/files/..",
          "/dock/%2e%2e/files/station.db", "/dock/1/files/%201001", "/dock/1/files/", "/dock//files/1001",
          "/dock/1/1001"}) {
        const auto answer = Get(path);
        ASSERT_TRUE(answer) << path;
        EXPECT_EQ(answer->status, 404) << path;
        EXPECT_EQ(json::parse(answer->body)["ErrorModule"], 24) << path;
        EXPECT_EQ(json::parse(answer->body)["ErrorCode"], 4) << path;
    }
}

TEST_F(StationDock, FileThatIsGoneFromTheDiskIsNotListed)
{
    fs::remove(station_.DataFolder() + "/dock/1/1002");
    EXPECT_EQ(Files(*station_.Connect()).size(), 7u);
    EXPECT_EQ(Get("/dock/1/files/1002")->status, 404);
}

TEST(StationDockSeed, SameSeedGivesTheSameFilesAndAnotherOneOthers)
{
    const QTemporaryDir folder;
    const auto seed = [&folder](const char* name, const char* number) {
        const QString data = folder.filePath(name);
        EXPECT_EQ(RunStation({"seed", "--data", data, "--events", "1", "--minutes", "0", "--seed", number,
                              "--end", "2026-02-01T00:00:00Z", "--replace"})
                      .exit_code,
                  0);
        std::map<std::string, std::string> all;
        for (const auto& entry : fs::recursive_directory_iterator(data.toStdString() + "/dock"))
            if (entry.is_regular_file()) {
                std::ifstream file(entry.path(), std::ios::binary);
                all[entry.path().filename().string()] = {std::istreambuf_iterator<char>(file), {}};
            }
        return all;
    };
    const auto first = seed("one", "5");
    EXPECT_EQ(first.size(), 8u);
    EXPECT_TRUE(first == seed("two", "5"));
    EXPECT_FALSE(first == seed("one", "6"));
}
