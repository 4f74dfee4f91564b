#include "FetchyardBussiness/DeterminantWriteFile/Compress.h"
#include "ToolPlace.h"
#include "ZellBase/Util.h"

#include <gtest/gtest.h>

// What only a process on Windows sees of its start: the line as one text, and the window.
namespace {

TEST(ArchiverStart, LineArrivesLetterForLetter)
{
    const tools::ToolPlace place;
    const std::string zip = place.Folder() + "r ü 门.zip";
    const std::string folder = place.Folder() + "a \"b";
    EXPECT_EQ(Compress::CompressFolder(zip, folder, ""), 1);
    EXPECT_EQ(place.Told("line"), Zell::Base::LocalToUTF8(Zell::Base::UTF8ToLocal(
                                      "7za.exe a -tzip \"<tmp>/r ü 门.zip\" \"<tmp>/a \"b/*\"\n")));
    EXPECT_EQ(Compress::CompressFolder(zip, folder, R"(p "w\" 1)"), 1);
    EXPECT_EQ(place.Told("line"), Zell::Base::LocalToUTF8(Zell::Base::UTF8ToLocal(
                                      R"(7za.exe a -tzip -p"p "w\" 1" "<tmp>/r ü 门.zip" "<tmp>/a "b/*")"
                                      "\n")));
}

// STARTF_USESTDHANDLES beside STARTF_USESHOWWINDOW with SW_HIDE; the priority is the client's own.
TEST(ArchiverStart, ArchiverIsHidden)
{
    const tools::ToolPlace place;
    EXPECT_EQ(Compress::CompressFolder(place.Folder() + "z.zip", place.Folder() + "a", ""), 1);
    EXPECT_EQ(place.Told("start flags"), "257 show 0\n");
    EXPECT_EQ(place.Told("priority"), "32\n");
    EXPECT_EQ(place.Told("console"), "hidden\n");
}

}  // namespace
