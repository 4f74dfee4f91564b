#include "DownloadFixture.h"
#include "tests/system/StationProcess.h"

#include <future>
#include <string>
#include <vector>

using namespace SystemTest;

namespace {

constexpr char kFirmware[] = "/files/firmware-2.4.1.bin";
constexpr char kLog[] = "/storage/camera-1.log";
constexpr char kPicture[] = "/storage/event-5.jpg";
constexpr char kClip[] = "/storage/clip-5.mjpeg";
constexpr int kLocalStorage = 0;
constexpr int kObjectStorage = 1;

class StationDownloads : public DownloadFixture
{
protected:
    StationDownloads() { UseSite(station_.Address()); }

    std::string Firmware() const { return Content(station_.DataFolder() + kFirmware); }

    StationProcess station_;
};

}  // namespace

TEST_F(StationDownloads, WholeFileIsTheStationsByteForByte)
{
    ASSERT_TRUE(Fetch(kFirmware, "firmware.bin"));
    EXPECT_TRUE(Content(Target("firmware.bin")) == Firmware());
    EXPECT_EQ(FilesLeft(), std::vector<std::string>{"firmware.bin"});
    EXPECT_EQ(station_.RequestCount(kFirmware), 1);
}

TEST_F(StationDownloads, FileThatIsThereIsReplaced)
{
    std::ofstream(Target("firmware.bin")) << "an older one";
    ASSERT_TRUE(Fetch(kFirmware, "firmware.bin"));
    EXPECT_TRUE(Content(Target("firmware.bin")) == Firmware());
}

TEST_F(StationDownloads, EmptyFileArrivesEmpty)
{
    ASSERT_TRUE(Fetch("/synthetic/files/0.bin", "empty"));
    EXPECT_EQ(Content(Target("empty")), "");
    EXPECT_EQ(FilesLeft(), std::vector<std::string>{"empty"});
}

TEST_F(StationDownloads, ObjectOfEachKindAndPlaceArrives)
{
    ASSERT_TRUE(downloader_.DownloadFile(kLog, Target("log"), {}, nullptr, kLocalStorage));
    EXPECT_NE(Content(Target("log")).find(", level "), std::string::npos);
    ASSERT_TRUE(downloader_.DownloadFile(kClip, Target("clip"), {}, nullptr, kObjectStorage));
    ASSERT_TRUE(downloader_.DownloadFileByPic(kPicture, Target("local"), {}, nullptr, kLocalStorage));
    ASSERT_TRUE(downloader_.DownloadFileByPic(kPicture, Target("object"), {}, nullptr, kObjectStorage));
    ASSERT_TRUE(downloader_.DownloadFileByPicInOXT(kPicture, Target("platform"), {}, nullptr));
    for (const char* name : {"clip", "local", "object", "platform"})
        EXPECT_EQ(Content(Target(name)).substr(0, 3), "\xFF\xD8\xFF") << name;
    EXPECT_EQ(Content(Target("local")), Content(Target("platform")));
}

TEST_F(StationDownloads, ObjectOfAnotherKindOrPlaceIsNotThere)
{
    EXPECT_FALSE(downloader_.DownloadFile(kLog, Target("a"), {}, nullptr, kObjectStorage));
    ExpectFailure(21, 404);
    EXPECT_FALSE(downloader_.DownloadFile(kClip, Target("a"), {}, nullptr, kLocalStorage));
    ExpectFailure(21, 404);
    EXPECT_FALSE(downloader_.DownloadFileByPic(kPicture, Target("a"), {}, nullptr, -1));
    ExpectFailure(21, 404);
    EXPECT_FALSE(downloader_.DownloadFileByPicInOXT(kLog, Target("a"), {}, nullptr));
    ExpectFailure(21, 404);
}

TEST_F(StationDownloads, MissingFileLeavesNothingAndHasWords)
{
    EXPECT_FALSE(Fetch("/files/none.bin", "a"));
    ExpectFailure(21, 404);
}

TEST_F(StationDownloads, SlowFileArrivesWhole)
{
    station_.SetFault({{"Path", "/synthetic/files/"}, {"Kind", "slow"}, {"BytesPerSecond", 200000}});
    ASSERT_TRUE(Fetch("/synthetic/files/30000.bin", "slow"));
    station_.ClearFaults();
    ASSERT_TRUE(Fetch("/synthetic/files/30000.bin", "fast"));
    EXPECT_EQ(Content(Target("slow")).size(), 30000u);
    EXPECT_EQ(Content(Target("slow")), Content(Target("fast")));
}

TEST_F(StationDownloads, FileThatIsAlwaysCutLeavesNoHalfAndTheSecondTrySucceeds)
{
    station_.SetFault({{"Path", kFirmware}, {"Kind", "cut"}, {"CutAt", 1000}});
    EXPECT_FALSE(Fetch(kFirmware, "firmware.bin"));
    ExpectFailure(22, 18);
    station_.ClearFaults();
    ASSERT_TRUE(Fetch(kFirmware, "firmware.bin"));
    EXPECT_TRUE(Content(Target("firmware.bin")) == Firmware());
}

TEST_F(StationDownloads, FileThatIsCutOnceIsFetchedInTwoParts)
{
    station_.SetFault({{"Path", kFirmware}, {"Kind", "cut"}, {"CutAt", 1234567}, {"Count", 1}});
    ASSERT_TRUE(Fetch(kFirmware, "firmware.bin"));
    EXPECT_TRUE(Content(Target("firmware.bin")) == Firmware());
    EXPECT_EQ(station_.Requests()["Paths"][kFirmware]["Count"], 2);
    EXPECT_EQ(station_.Requests()["Paths"][kFirmware]["Bytes"], 3 << 20);
}

// An answer of other bytes than a part is the whole of another version, as far as HTTP can tell.
TEST_F(StationDownloads, WholeAnswerBehindACutStartsTheFileOver)
{
    station_.SetFault({{"Path", kFirmware}, {"Kind", "cut"}, {"CutAt", 1000000}, {"Count", 1}});
    station_.SetFault({{"Path", kFirmware}, {"Kind", "garbage"}, {"After", 1}});
    ASSERT_TRUE(Fetch(kFirmware, "firmware.bin"));
    EXPECT_EQ(Content(Target("firmware.bin")).size(), 777u);
    EXPECT_NE(Content(Target("firmware.bin")).substr(0, 8), "FIRMWARE");
}

TEST_F(StationDownloads, FailingStationBehindACutEndsTheFetch)
{
    station_.SetFault({{"Path", kFirmware}, {"Kind", "cut"}, {"CutAt", 1000000}, {"Count", 1}});
    station_.SetFault({{"Path", kFirmware}, {"Kind", "status"}, {"Status", 503}});
    EXPECT_FALSE(Fetch(kFirmware, "firmware.bin"));
    ExpectFailure(21, 503);
}

TEST_F(StationDownloads, PartThatLiesAboutItsPlaceIsNotTaken)
{
    station_.SetFault({{"Path", kFirmware}, {"Kind", "cut"}, {"CutAt", 1000000}, {"Count", 1}});
    station_.SetFault({{"Path", kFirmware}, {"Kind", "range"}});
    EXPECT_FALSE(Fetch(kFirmware, "firmware.bin"));
    ExpectFailure(23, 1);
}

TEST_F(StationDownloads, ConnectionThatIsResetLeavesNothing)
{
    station_.SetFault({{"Path", kFirmware}, {"Kind", "reset"}});
    EXPECT_FALSE(Fetch(kFirmware, "firmware.bin"));
    EXPECT_EQ(Zell::Base::Error::GetLastError().iFirstCode, 22);
    EXPECT_EQ(FilesLeft(), std::vector<std::string>{});
}

TEST_F(StationDownloads, StationThatIsGoneCannotBeReached)
{
    station_.Stop();
    EXPECT_FALSE(Fetch(kFirmware, "firmware.bin"));
    ExpectFailure(22, 7);
}

TEST_F(StationDownloads, ManyThreadsFetchAtOnce)
{
    std::vector<std::future<bool>> fetches;
    for (int i = 0; i < 24; ++i)
        fetches.push_back(std::async(std::launch::async, [this, i] {
            return Fetch("/synthetic/files/" + std::to_string(100000 + i) + ".bin", std::to_string(i));
        }));
    for (auto& fetch : fetches)
        EXPECT_TRUE(fetch.get());
    for (int i = 0; i < 24; ++i)
        EXPECT_EQ(std::filesystem::file_size(Target(std::to_string(i))), 100000u + static_cast<unsigned>(i));
    EXPECT_EQ(FilesLeft().size(), 24u);
}

TEST_F(DownloadFixture, StationThatWantsAnAccountGetsTheClients)
{
    const StationProcess station(StationProcess::kEvents, {"--require-account"});
    UseSite(station.Address());
    EXPECT_FALSE(Fetch(kFirmware, "firmware.bin"));
    ExpectFailure(21, 401);
    settings_.user_name = "operator";
    settings_.password = "fetchyard";
    Use();
    EXPECT_TRUE(Fetch(kFirmware, "firmware.bin"));
}
