#include "MultimediaCommHost/Protection.h"
#include "VideoTest.h"

#include <cstdlib>
#include <filesystem>
#include <thread>

using namespace Zell::MultimediaComm;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

constexpr char kPassword[] = "geheim \xE5\xAF\x86\xE7\xA0\x81";

class Protection : public VideoTest
{
protected:
    std::string Write(const std::string& name, const std::string& plain)
    {
        ProtectedWriter writer;
        std::string reason;
        EXPECT_TRUE(writer.Open(File(name), kPassword, reason)) << reason;
        // In pieces of growing size, across the ends of blocks.
        std::size_t size = 1;
        for (std::size_t place = 0; place < plain.size(); place += size, ++size)
            EXPECT_TRUE(writer.Write(plain.data() + place, std::min(size, plain.size() - place), reason))
                << reason;
        EXPECT_TRUE(writer.Finish(reason)) << reason;
        return File(name);
    }

    // By the openssl tool.
    bool OpenWithTool(const std::string& name, const std::string& target, const std::string& password)
    {
        clips::WriteFile(File("password"), password);
        const std::string command = "openssl enc -d -aes-256-cbc -pbkdf2 -iter 600000 -in \"" + File(name) +
                                    "\" -out \"" + File(target) + "\" -pass \"file:" + File("password") +
                                    "\" 2> \"" + File("errors") + "\"";
        return std::system(command.c_str()) == 0;
    }

    static std::string Sample(std::size_t size)
    {
        std::string text(size, '\0');
        for (std::size_t i = 0; i < size; ++i)
            text[i] = static_cast<char>(i * 7 + i / 251);
        return text;
    }

    std::string Plain(const std::string& name, const std::string& password = kPassword)
    {
        std::string reason;
        EXPECT_TRUE(Unprotect(File(name), password, File("plain"), reason)) << reason;
        return clips::ReadFile(File("plain"));
    }
};

}  // namespace

TEST_F(Protection, OpensWithTheOpensslTool)
{
    const std::string plain = Sample(300'001);
    Write("file", plain);
    EXPECT_EQ(clips::ReadFile(File("file")).substr(0, 8), "Salted__");
    EXPECT_THAT(clips::ReadFile(File("file")), Not(HasSubstr(plain.substr(1000, 64))));
    ASSERT_TRUE(OpenWithTool("file", "opened", kPassword)) << clips::ReadFile(File("errors"));
    EXPECT_EQ(clips::ReadFile(File("opened")), plain);
}

TEST_F(Protection, OpensWhatTheOpensslToolMade)
{
    const std::string plain = Sample(70'000);
    clips::WriteFile(File("in"), plain);
    clips::WriteFile(File("password"), kPassword);
    const std::string command = "openssl enc -aes-256-cbc -pbkdf2 -iter 600000 -salt -in \"" + File("in") +
                                "\" -out \"" + File("file") + "\" -pass \"file:" + File("password") + "\"";
    ASSERT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(Plain("file"), plain);
}

TEST_F(Protection, KeepsContentsOfEachLengthAroundABlock)
{
    for (const std::size_t size : {0u, 15u, 16u, 65'537u}) {
        Write("file", Sample(size));
        EXPECT_EQ(Plain("file"), Sample(size)) << size;
        EXPECT_EQ(std::filesystem::file_size(File("file")) % 16, 0u);
    }
}

TEST_F(Protection, UsesAnotherKeyForEachFile)
{
    Write("one", Sample(100));
    Write("two", Sample(100));
    EXPECT_NE(clips::ReadFile(File("one")), clips::ReadFile(File("two")));
}

TEST_F(Protection, ReadsFromAnyPlace)
{
    const std::string plain = Sample(200'003);
    Write("file", plain);
    ProtectedReader reader;
    std::string reason;
    ASSERT_TRUE(reader.Open(File("file"), kPassword, reason)) << reason;
    EXPECT_EQ(reader.Size(), 200'003);
    for (const std::int64_t place : {199'990, 0, 65'530, 65'536, 131'071, 200'002, 17}) {
        std::string part(100, '\0');
        const std::int64_t count = reader.Read(place, part.data(), part.size());
        ASSERT_GT(count, 0);
        EXPECT_EQ(part.substr(0, static_cast<std::size_t>(count)),
                  plain.substr(static_cast<std::size_t>(place), static_cast<std::size_t>(count)));
    }
    char byte = 0;
    EXPECT_EQ(reader.Read(200'003, &byte, 1), 0);
    EXPECT_EQ(reader.Read(-1, &byte, 1), -1);
}

TEST_F(Protection, RefusesWhatIsNoProtectedFile)
{
    std::string reason;
    clips::WriteFile(File("file"), "Salted__1234567812345");
    EXPECT_FALSE(Unprotect(File("file"), kPassword, File("plain"), reason));
    EXPECT_THAT(reason, HasSubstr("no protected file"));
    clips::WriteFile(File("file"), Sample(1000));
    EXPECT_FALSE(Unprotect(File("file"), kPassword, File("plain"), reason));
    EXPECT_FALSE(Unprotect(File("missing"), kPassword, File("plain"), reason));
    EXPECT_THAT(reason, HasSubstr("missing"));
    EXPECT_FALSE(std::filesystem::exists(File("plain")));
    EXPECT_THAT(HiddenFiles(), IsEmpty());
}

TEST_F(Protection, RefusesAWrongPasswordAndAnEmptyOne)
{
    // One wrong password in 256 can't be told; this file was made so that this one can.
    clips::WriteFile(File("in"), "content");
    clips::WriteFile(File("password"), "right");
    const std::string command = "openssl enc -aes-256-cbc -pbkdf2 -iter 600000 -S 0102030405060708 -in \"" +
                                File("in") + "\" -out \"" + File("body") +
                                "\" -pass \"file:" + File("password") + "\"";
    ASSERT_EQ(std::system(command.c_str()), 0);
    clips::WriteFile(File("file"),
                     "Salted__\x01\x02\x03\x04\x05\x06\x07\x08" + clips::ReadFile(File("body")));
    std::string reason;
    EXPECT_TRUE(Unprotect(File("file"), "right", File("plain"), reason)) << reason;
    EXPECT_FALSE(Unprotect(File("file"), "wrong", File("other"), reason));
    EXPECT_THAT(reason, HasSubstr("another password"));
    EXPECT_FALSE(std::filesystem::exists(File("other")));
    ProtectedWriter writer;
    EXPECT_FALSE(writer.Open(File("new"), "", reason));
    EXPECT_FALSE(std::filesystem::exists(File("new")));
}

TEST_F(Protection, LeavesNoFileThatWasNotFinished)
{
    std::string reason;
    {
        ProtectedWriter writer;
        ASSERT_TRUE(writer.Open(File("file"), kPassword, reason));
        ASSERT_TRUE(writer.Write("abc", 3, reason));
    }
    EXPECT_FALSE(std::filesystem::exists(File("file")));
    ProtectedWriter unopened;
    EXPECT_FALSE(unopened.Write("abc", 3, reason));
    EXPECT_FALSE(unopened.Finish(reason));
    EXPECT_FALSE(ProtectedWriter().Open(File("no/folder/file"), kPassword, reason));
    EXPECT_THAT(reason, HasSubstr("no/folder/file"));
}

TEST_F(Protection, StopsWhileItMakesTheKey)
{
    std::string reason;
    int looks = 0;
    ProtectedWriter writer;
    EXPECT_FALSE(writer.Open(File("file"), kPassword, reason, [&looks] { return ++looks == 3; }));
    EXPECT_EQ(looks, 3);
    EXPECT_EQ(reason, "stopped");
    EXPECT_FALSE(std::filesystem::exists(File("file")));
}

TEST_F(Protection, EndsReadingWhenTheReceiverSaysSo)
{
    Write("file", Sample(3'000'000));
    std::string reason;
    int parts = 0;
    EXPECT_FALSE(ReadProtected(
        File("file"), kPassword, [&parts](const char*, std::size_t) { return ++parts < 2; }, reason));
    EXPECT_EQ(parts, 2);
}

TEST_F(Protection, OfAWholeFileKeepsThePlainOne)
{
    const std::string plain = Sample(2'500'000);
    clips::WriteFile(File("in"), plain);
    std::string reason;
    ASSERT_TRUE(Protect(File("in"), kPassword, File("file"), reason)) << reason;
    EXPECT_EQ(Plain("file"), plain);
    EXPECT_EQ(clips::ReadFile(File("in")), plain);
    EXPECT_FALSE(Protect(File("missing"), kPassword, File("other"), reason));
    EXPECT_FALSE(std::filesystem::exists(File("other")));
    EXPECT_THAT(HiddenFiles(), IsEmpty());
}

TEST_F(Protection, OfAStampedVideoComesLastAndGoesOnIntoTheAvi)
{
    clips::MakeMoving(File("in.mp4"), 1);
    ProtectStamped(File("in.mp4"), kPassword);
    lines_ = {Line("Gate")};
    ASSERT_EQ(Stamp(File("in.mp4"), File("out.mp4")), InfoOverlayDone);
    EXPECT_EQ(clips::ReadFile(File("out.mp4")).substr(0, 8), "Salted__");
    EXPECT_THAT(WorkFiles(), IsEmpty());
    ASSERT_TRUE(OpenWithTool("out.mp4", "opened.mp4", kPassword));
    const std::vector<clips::Picture> pictures = clips::Pictures(File("opened.mp4"));
    ASSERT_EQ(pictures.size(), 25u);
    EXPECT_GT(clips::DistanceOutside(clips::Pictures(File("in.mp4"))[5], pictures[5], {150, 0, 319, 239}),
              1.0);

    std::string avi = File("out.avi");
    // The same file by another text of its path.
    ASSERT_EQ(CVideoFormatTransfer().Translate(avi, File("./out.mp4"), 0, ""), 0);
    ASSERT_TRUE(OpenWithTool("out.avi", "opened.avi", kPassword));
    EXPECT_EQ(clips::Look(File("opened.avi")).form, "avi");
    EXPECT_EQ(clips::Pictures(File("opened.avi")).size(), 25u);
    EXPECT_THAT(WorkFiles(), IsEmpty());
    for (const std::string& line : LogLines())
        EXPECT_THAT(line, Not(HasSubstr("geheim")));
}

TEST_F(Protection, IsRememberedUntilAStampSucceeds)
{
    ProtectStamped(File("in.mp4"), kPassword);
    EXPECT_EQ(Stamp(File("in.mp4"), File("out.mp4")), InfoOverlaySourceUnreadable);
    clips::MakeMoving(File("in.mp4"), 1);
    ASSERT_EQ(Stamp(File("in.mp4"), File("out.mp4")), InfoOverlayDone);
    EXPECT_EQ(clips::ReadFile(File("out.mp4")).substr(0, 8), "Salted__");
    ASSERT_EQ(Stamp(File("in.mp4"), File("again.mp4")), InfoOverlayDone);
    EXPECT_EQ(clips::Pictures(File("again.mp4")).size(), 25u);
}

TEST_F(Protection, IsForgottenWithAnEmptyPassword)
{
    clips::MakeMoving(File("in.mp4"), 1);
    ProtectStamped(File("in.mp4"), kPassword);
    ProtectStamped(File("in.mp4"), "");
    ASSERT_EQ(Stamp(File("in.mp4"), File("out.mp4")), InfoOverlayDone);
    EXPECT_EQ(clips::Pictures(File("out.mp4")).size(), 25u);
}

TEST_F(Protection, IsRememberedForTheNewestFilesOfManyThreads)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([this, i] {
            for (int file = 0; file < 100; ++file)
                ProtectStamped(File(std::to_string(i) + "-" + std::to_string(file)), kPassword);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    clips::MakeMoving(File("in.mp4"), 1);
    ProtectStamped(File("in.mp4"), kPassword);
    ASSERT_EQ(Stamp(File("in.mp4"), File("out.mp4")), InfoOverlayDone);
    EXPECT_EQ(clips::ReadFile(File("out.mp4")).substr(0, 8), "Salted__");
}

TEST_F(Protection, LeavesNothingOfAStoppedStamp)
{
    clips::MakeMoving(File("in.mp4"), 1);
    ProtectStamped(File("in.mp4"), kPassword);
    InfoOverlay overlay;
    overlay.SetInfoOverlayType(0);
    overlay.SetInfoOverlayLineArrayVec({Line("Gate")});
    overlay.SetSrcFilePathStr(File("in.mp4"));
    overlay.SetDstFilePathStr(File("out.mp4"));
    std::atomic<bool> has_ended{false};
    InfoOverlayErr result = InfoOverlayDone;
    std::thread worker([&] {
        result = overlay.StartCovert();
        has_ended = true;
    });
    while (!has_ended) {
        overlay.StopCovert();
        std::this_thread::yield();
    }
    worker.join();
    EXPECT_EQ(result, InfoOverlayStopped);
    EXPECT_FALSE(std::filesystem::exists(File("out.mp4")));
    EXPECT_THAT(WorkFiles(), IsEmpty());
}
