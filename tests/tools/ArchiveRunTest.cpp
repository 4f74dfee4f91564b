#include "FetchyardBussiness/DeterminantWriteFile/Compress.h"
#include "ToolPlace.h"
#include "ZellBase/Util.h"

#include <gtest/gtest.h>

// The start of the archiver by the archive step, over the real file and process layer.
namespace {

// The line goes through the code page: a letter that it lacks arrives as "?".
std::string Shown(const std::string& text)
{
    return Zell::Base::LocalToUTF8(Zell::Base::UTF8ToLocal(text));
}

class ArchiveRun : public testing::Test
{
protected:
    std::string Zip() const { return place_.Folder() + "r ü 门 'z'.zip"; }
    std::string Source() const { return place_.Folder() + "a b 门"; }

    tools::ToolPlace place_;
};

TEST_F(ArchiveRun, WordsReachTheArchiverWhole)
{
    EXPECT_EQ(Compress::CompressFolder(Zip(), Source(), ""), 1);
    EXPECT_EQ(place_.Told("argument"), Shown("a\n-tzip\n<tmp>/r ü 门 'z'.zip\n<tmp>/a b 门/*\n"));
}

TEST_F(ArchiveRun, PasswordIsOneWordWithItsBlanks)
{
    EXPECT_EQ(Compress::CompressFolder(Zip(), Source(), "s e ü $cret"), 1);
    EXPECT_EQ(place_.Told("argument"),
              Shown("a\n-tzip\n-ps e ü $cret\n<tmp>/r ü 门 'z'.zip\n<tmp>/a b 门/*\n"));
}

// Nothing is escaped: the quotes are gone, and the blank between them breaks the word in two.
TEST_F(ArchiveRun, QuoteInThePasswordBreaksTheLine)
{
    EXPECT_EQ(Compress::CompressFolder(Zip(), Source(), "a\"b c\"d"), 1);
    EXPECT_EQ(place_.Told("argument"), Shown("a\n-tzip\n-pab\ncd\n<tmp>/r ü 门 'z'.zip\n<tmp>/a b 门/*\n"));
}

TEST_F(ArchiveRun, QuoteInTheNameOfTheArchiveIsLost)
{
    EXPECT_EQ(Compress::CompressFolder(place_.Folder() + "x\"y\"z.zip", Source(), ""), 1);
    EXPECT_EQ(place_.Told("argument"), Shown("a\n-tzip\n<tmp>/xyz.zip\n<tmp>/a b 门/*\n"));
}

TEST_F(ArchiveRun, CodeOfTheArchiverIsTheResult)
{
    for (const int code : {1, 2, 255}) {
        tools::ToolPlace::EndWith(code);
        EXPECT_EQ(Compress::CompressFolder(Zip(), Source(), ""), 4) << code;
    }
    tools::ToolPlace::EndWith(0);
    EXPECT_EQ(Compress::CompressFolder(Zip(), Source(), ""), 1);
}

}  // namespace
