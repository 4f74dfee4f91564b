#include "LoaderFixture.h"
#include "tests/unit/Platform/SystemErrors.h"

#include <future>

namespace picture_test {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLarge = 3u << 20;

class PictureLoad : public LoaderTest
{
protected:
    PictureLoad() { Start(); }

    // What the loader keeps beside the lock and the folder of its run.
    std::size_t FilesOfTheRun() { return CountEntries(CacheRoot()) - 2; }
};

TEST_F(PictureLoad, FileHoldsTheWholePicture)
{
    EXPECT_EQ(Load(OrdinaryKey("/pictures/a.jpg")), "0/0");
    EXPECT_EQ(ReadFile(Target("out.jpg")), PictureOf("/pictures/a.jpg"));
    EXPECT_EQ(CountEntries(exports_), 1u);
}

TEST_F(PictureLoad, FileThatIsThereIsReplacedWhole)
{
    WriteFile(Target("out.jpg"), std::string(100000, 'x'));
    EXPECT_EQ(Load(OrdinaryKey("/pictures/a.jpg")), "0/0");
    EXPECT_EQ(ReadFile(Target("out.jpg")), PictureOf("/pictures/a.jpg"));
}

TEST_F(PictureLoad, MemoryHoldsTheWholePicture)
{
    std::string data = "older";
    EXPECT_EQ(LoadIntoMemory(OrdinaryKey("/pictures/a.jpg"), data), "0/0");
    EXPECT_EQ(data, PictureOf("/pictures/a.jpg"));
    EXPECT_EQ(LoadIntoMemory(OrdinaryKey("/pictures/a.jpg"), data), "0/0");
    EXPECT_EQ(data, PictureOf("/pictures/a.jpg"));
}

TEST_F(PictureLoad, AnswerThatIsNoPictureIsHandedOverAsItIs)
{
    server_.SetBody("/pictures/a.jpg", "<html>not here</html>");
    EXPECT_EQ(Load(OrdinaryKey("/pictures/a.jpg")), "0/0");
    EXPECT_EQ(ReadFile(Target("out.jpg")), "<html>not here</html>");
}

TEST_F(PictureLoad, LargePicturesComeWholeByFileAndByMemory)
{
    const std::string body = PictureOf("/large", kLarge);
    server_.SetBody("/large", body);
    std::string data;
    EXPECT_EQ(Load(DeviceKey("/large", "QUERN"), "device.jpg"), "0/0");
    EXPECT_EQ(LoadIntoMemory(DeviceKey("/large", "QUERN"), data), "0/0");
    EXPECT_TRUE(ReadFile(Target("device.jpg")) == body);
    EXPECT_TRUE(data == body);
    EXPECT_EQ(FilesOfTheRun(), 0u);
}

TEST_F(PictureLoad, LargePictureIsCachedApartFromWhatWasHandedOut)
{
    const std::string body = PictureOf("/large", kLarge);
    server_.SetBody("/large", body);
    EXPECT_EQ(Load(OrdinaryKey("/large"), "first.jpg"), "0/0");
    ASSERT_TRUE(Quiet());
    WriteFile(Target("first.jpg"), "rescaled");
    EXPECT_EQ(Load(OrdinaryKey("/large"), "second.jpg"), "0/0");
    EXPECT_TRUE(ReadFile(Target("second.jpg")) == body);
    EXPECT_EQ(server_.Total(), 1u);
}

TEST_F(PictureLoad, RefusalByTheServerLeavesTheTargetAsItWas)
{
    server_.Fail("/pictures/a.jpg", 404, 2);
    WriteFile(Target("out.jpg"), "as it was");
    std::string data = "as it was";
    EXPECT_EQ(Load(OrdinaryKey("/pictures/a.jpg")), "21/404");
    EXPECT_EQ(LoadIntoMemory(OrdinaryKey("/pictures/a.jpg"), data), "21/404");
    EXPECT_EQ(ReadFile(Target("out.jpg")), "as it was");
    EXPECT_EQ(data, "as it was");
}

TEST_F(PictureLoad, FailureIsNotCached)
{
    server_.Fail("/pictures/a.jpg", 500, 1);
    EXPECT_EQ(Load(OrdinaryKey("/pictures/a.jpg")), "21/500");
    EXPECT_EQ(Load(OrdinaryKey("/pictures/a.jpg")), "0/0");
}

TEST_F(PictureLoad, CutConnectionLeavesNoFileAnywhere)
{
    for (const char* path : {"/pictures/small.jpg", "/large"})
        server_.Cut(path);
    server_.SetBody("/large", PictureOf("/large", kLarge));
    EXPECT_EQ(Load(OrdinaryKey("/pictures/small.jpg")), "22/18");
    EXPECT_EQ(Load(OrdinaryKey("/large")), "22/18");
    EXPECT_EQ(Load(DeviceKey("/large", "QUERN")), "22/18");
    EXPECT_EQ(CountEntries(exports_), 0u);
    ASSERT_TRUE(Quiet());
    EXPECT_EQ(FilesOfTheRun(), 0u);
}

TEST_F(PictureLoad, EmptyAnswerIsAFailure)
{
    server_.SetBody("/pictures/a.jpg", "");
    EXPECT_EQ(Load(OrdinaryKey("/pictures/a.jpg")), "23/1");
    EXPECT_EQ(CountEntries(exports_), 0u);
}

TEST_F(PictureLoad, ServerThatIsDownIsAnError)
{
    EXPECT_EQ(Load(OrdinaryKey("http://127.0.0.1:1/a.jpg")), "22/7");
}

TEST_F(PictureLoad, MissingFolderIsAnErrorAndIsNotMade)
{
    EXPECT_EQ(Load(OrdinaryKey("/pictures/a.jpg"), "missing/out.jpg"),
              "0/" + std::to_string(SystemErrors::kNoPath));
    EXPECT_EQ(CountEntries(exports_), 0u);
    ASSERT_TRUE(Quiet());
    EXPECT_EQ(FilesOfTheRun(), 1u);  // the cached one
}

TEST_F(PictureLoad, NothingOfAHalfPictureIsInTheExportFolder)
{
    server_.SetBody("/large", PictureOf("/large", kLarge));
    server_.Hold("/large");
    auto load = std::async(std::launch::async, [this] { return Load(OrdinaryKey("/large")); });
    ASSERT_TRUE(server_.WaitForTarget("/large"));
    // The half that was sent is large enough to lie on disk.
    while (FilesOfTheRun() == 0)
        std::this_thread::yield();
    EXPECT_EQ(CountEntries(exports_), 0u);
    server_.LetGo("/large");
    EXPECT_EQ(load.get(), "0/0");
    EXPECT_EQ(fs::file_size(Target("out.jpg")), kLarge);
}

}  // namespace
}  // namespace picture_test
