#include "ClipvaultFixture.h"
#include "MultimediaCommHost/Protection.h"

using nlohmann::json;
using namespace SystemTest;

namespace {

using ClipvaultPassword = ClipvaultFixture;

constexpr char kPassword[] = "Gate 7 \"quoted\" ключ";

ToolResult Decipher(const std::string& file, const char* password, const std::string& target)
{
    return RunTool("openssl",
                   {"enc", "-d", "-aes-256-cbc", "-pbkdf2", "-iter", "600000", "-in",
                    QString::fromStdString(file), "-out", QString::fromStdString(target), "-pass", "stdin"},
                   QByteArray(password) + "\n");
}

}  // namespace

TEST_F(ClipvaultPassword, RightOneOpensTheSameVideo)
{
    EXPECT_TRUE(Start(Request("plain")));
    json request = Request("gate");
    Param(request)["Password"] = kPassword;
    EXPECT_TRUE(Start(request));
    ExpectFiles({"gate.mp4", "plain.mp4"});
    EXPECT_EQ(ReadBytes(Target("gate.mp4")).substr(0, 8), "Salted__");
    const ToolResult result = Decipher(Target("gate.mp4"), kPassword, folder_.File("opened.mp4"));
    EXPECT_TRUE(result.is_good) << result.output;
    EXPECT_TRUE(ReadBytes(folder_.File("opened.mp4")) == ReadBytes(Target("plain.mp4")));
}

TEST_F(ClipvaultPassword, WrongOneOpensNothing)
{
    EXPECT_TRUE(Start(Request("plain")));
    json request = Request("gate");
    Param(request)["Password"] = kPassword;
    EXPECT_TRUE(Start(request));
    for (const char* const wrong : {"Gate 7", "", "gate 7 \"quoted\" ключ"}) {
        Decipher(Target("gate.mp4"), wrong, folder_.File("opened.mp4"));
        EXPECT_FALSE(ReadBytes(folder_.File("opened.mp4")) == ReadBytes(Target("plain.mp4"))) << wrong;
    }
}

TEST_F(ClipvaultPassword, PlainBytesAreNeverOnDisk)
{
    json request = Request();
    Param(request)["Password"] = kPassword;
    station_.SetFault({{"Path", "/api/v1/recordings/1/clip"}, {"Kind", "slow"}, {"BytesPerSecond", 40000}});
    std::thread under_way([this, &request] { Start(request); });
    std::string part;
    while (part.size() < 4096) {
        std::this_thread::yield();
        const auto names = NamesIn(Scratch());
        part = names.empty() ? "" : ReadBytes(Scratch() + "/" + names[0]);
    }
    Stop("guid-gate");
    under_way.join();
    EXPECT_EQ(part.substr(0, 8), "Salted__");
    for (const char* const mark : {"ftyp", "moov", "avcC"})
        EXPECT_EQ(part.find(mark), std::string::npos) << mark;
    ExpectFiles({});
}

TEST_F(ClipvaultPassword, BrokenConnectionLeavesNoSeamInAProtectedVideo)
{
    EXPECT_TRUE(Start(Request("plain")));
    station_.SetFault(
        {{"Path", "/api/v1/recordings/1/clip"}, {"Kind", "cut"}, {"CutAt", 33333}, {"Count", 3}});
    json request = Request("gate");
    Param(request)["Password"] = kPassword;
    EXPECT_TRUE(Start(request));
    EXPECT_TRUE(Decipher(Target("gate.mp4"), kPassword, folder_.File("opened.mp4")).is_good);
    EXPECT_TRUE(ReadBytes(folder_.File("opened.mp4")) == ReadBytes(Target("plain.mp4")));
}

TEST_F(ClipvaultPassword, VideoThatIsStampedNextIsPlainAndItsPasswordPassedOn)
{
    json request = Request();
    Param(request)["Password"] = kPassword;
    Param(request)["IsNeedPlatformWatermark"] = false;
    EXPECT_TRUE(Start(request));
    EXPECT_EQ(VideoLook(Target("gate.mp4")).frames.size(), 250u);
}

TEST_F(ClipvaultPassword, SnapshotIsAPlainPicture)
{
    json request = Request();
    Param(request)["Password"] = kPassword;
    Param(request)["IsSnap"] = true;
    EXPECT_TRUE(Start(request));
    EXPECT_EQ(ReadTime(QImage(QString::fromStdString(Target("gate.jpg")))).second, kMinute + 11);
}
