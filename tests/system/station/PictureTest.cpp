#include "StationFixture.h"

#include <QByteArray>
#include <QImage>

#include <atomic>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

using nlohmann::json;
using namespace SystemTest;

namespace {

class StationPictures : public StationFixture
{
protected:
    httplib::Result Get(const std::string& path) { return station_.Connect()->Get(path); }
    std::string Bytes(const std::string& path)
    {
        const auto answer = Get(path);
        EXPECT_TRUE(answer && answer->status == 200) << path;
        return answer ? answer->body : "";
    }
    int Status(const std::string& path)
    {
        const auto answer = Get(path);
        return answer ? answer->status : -1;
    }
    static QImage Decode(const std::string& bytes)
    {
        return QImage::fromData(QByteArray::fromStdString(bytes), "JPG");
    }
    // Number of the camera of an event.
    std::int64_t CameraOf(int event)
    {
        const json row = station_.Post("/api/v1/events/report",
                                       {{"PageIndex", event}, {"PageSize", 1}})["Sheets"][0]["Rows"][0];
        const json cameras = json::parse(Bytes("/api/v1/cameras"))["Cameras"];
        for (const json& camera : cameras)
            if (camera["Name"] == row[2])
                return camera["Id"];
        return 0;
    }
    std::string DeviceAddress(std::int64_t camera, int event)
    {
        return "/device/picture?QUERN&camera=" + std::to_string(camera) + "&event=" + std::to_string(event);
    }
};

}  // namespace

TEST_F(StationPictures, PictureIsAJpegOfTheCamerasSize)
{
    const auto answer = Get("/pictures/event-1.jpg");
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->get_header_value("Content-Type"), "image/jpeg");
    EXPECT_EQ(Decode(answer->body).size(), QSize(1280, 720));
    EXPECT_GT(answer->body.size(), 20000u);
    EXPECT_LT(answer->body.size(), 200000u);
}

TEST_F(StationPictures, EventsHavePicturesOfTheirOwn)
{
    EXPECT_FALSE(Bytes("/pictures/event-1.jpg") == Bytes("/pictures/event-2.jpg"));
}

TEST_F(StationPictures, SameEventGivesTheSamePictureInEveryStation)
{
    const StationProcess other;
    const auto answer = other.Connect()->Get("/pictures/event-5.jpg");
    ASSERT_TRUE(answer);
    EXPECT_TRUE(Bytes("/pictures/event-5.jpg") == answer->body);
}

TEST_F(StationPictures, DrawnPictureIsKeptOnDisk)
{
    const std::string first = Bytes("/pictures/event-3.jpg");
    const auto kept = std::filesystem::path(station_.DataFolder()) / "drawn/event-3.jpg";
    ASSERT_TRUE(std::filesystem::exists(kept));
    EXPECT_EQ(std::filesystem::file_size(kept), first.size());
    EXPECT_TRUE(Bytes("/pictures/event-3.jpg") == first);
}

TEST_F(StationPictures, DeviceAddressGivesTheSamePicture)
{
    EXPECT_TRUE(Bytes(DeviceAddress(CameraOf(9), 9)) == Bytes("/pictures/event-9.jpg"));
}

TEST_F(StationPictures, DeviceKnowsOnlyItsOwnEvents)
{
    EXPECT_EQ(Status(DeviceAddress(CameraOf(9) % 12 + 1, 9)), 404);
    EXPECT_EQ(Status(DeviceAddress(1, 999999)), 404);
}

TEST_F(StationPictures, DeviceRefusesAQueryThatIsNotItsOwn)
{
    EXPECT_EQ(Status("/device/picture"), 400);
    EXPECT_EQ(Status("/device/picture?camera=1&event=1"), 400);
    EXPECT_EQ(Status("/device/picture?QUERN&camera=1"), 400);
    EXPECT_EQ(Status("/device/picture?QUERN&camera=x&event=1"), 400);
}

TEST_F(StationPictures, NamesOfNoPictureAreNotFound)
{
    for (const char* name :
         {"event-0.jpg", "event-401.jpg", "event--1.jpg", "event-1.jpeg", "event-1.png", "event-.jpg",
          "event-1.jpg.jpg", "event-99999999999999999999.jpg", "event-01.jpg", "Event-1.jpg", "1.jpg", "..",
          "..%2Fstation.db", "%2e%2e%2fstation.db", "....//station.db", "event-1.jpg%00",
          "event-1%2F..%2F..%2Fstation.db", "C:%5Cstation.db"})
        EXPECT_EQ(Status(std::string("/pictures/") + name), 404) << name;
    EXPECT_EQ(Status("/pictures/../station.db"), 404);
    EXPECT_EQ(Status("/pictures/"), 404);
}

TEST_F(StationPictures, ManyClientsGetWholePicturesAtOnce)
{
    constexpr int kClients = 8;
    constexpr int kPictures = 6;
    std::atomic<int> good{0};
    std::vector<std::thread> clients;
    for (int i = 0; i < kClients; ++i)
        clients.emplace_back([this, i, &good] {
            const auto client = station_.Connect();
            for (int n = 1; n <= kPictures; ++n) {
                const auto answer = client->Get("/pictures/event-" + std::to_string(n + i % 3) + ".jpg");
                if (answer && answer->status == 200 && !Decode(answer->body).isNull())
                    ++good;
            }
        });
    for (std::thread& client : clients)
        client.join();
    EXPECT_EQ(good, kClients * kPictures);
    // One connection each: it is kept between pictures.
    EXPECT_EQ(station_.Requests()["Connections"], kClients + 1);
}
