// Letters of many scripts, drawn without any application object.
#include "Drawing/TextRenderer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using Zell::MultimediaComm::Canvas;
using Zell::MultimediaComm::TextItem;
using Zell::MultimediaComm::TextRenderer;

namespace {

TextItem Item(const std::string& text)
{
    TextItem item;
    item.text = text;
    item.line_height = 60;
    return item;
}

std::vector<int> Shape(TextRenderer& renderer, const std::string& text)
{
    const Canvas canvas = renderer.Draw({Item(text)});
    std::vector<int> shape;
    for (int y = 0; y < canvas.Height(); ++y) {
        for (int x = 0; x < canvas.Width(); ++x)
            shape.push_back(canvas.At(x, y).cover);
    }
    return shape;
}

}  // namespace

TEST(Text, ShowsChineseLettersAndNotBoxes)
{
    TextRenderer renderer(400, 100);
    // Boxes would look alike.
    EXPECT_NE(Shape(renderer, "\xE4\xB8\xAD"), Shape(renderer, "\xE6\x96\x87"));
    EXPECT_TRUE(renderer.MissingLetters().empty());
}

TEST(Text, JoinsArabicLetters)
{
    TextRenderer renderer(400, 100);
    const std::string seen = "\xD8\xB3";
    const std::string lam = "\xD9\x84";
    const std::string not_joined = "\xE2\x80\x8C";
    EXPECT_NE(Shape(renderer, seen + lam), Shape(renderer, seen + not_joined + lam));
    EXPECT_LT(renderer.WidthOf(seen + lam, 60), renderer.WidthOf(seen + not_joined + lam, 60));
    EXPECT_NE(Shape(renderer, seen), Shape(renderer, lam));
    EXPECT_TRUE(renderer.MissingLetters().empty());
}

TEST(Text, WritesArabicFromTheRight)
{
    TextRenderer renderer(400, 100);
    // Alef is a narrow stroke, seen is wide: the first letter stands on the right.
    const Canvas canvas = renderer.Draw({Item("\xD8\xA7\xD8\xB3")});
    int right = 0;
    int left = canvas.Width();
    for (int y = 0; y < canvas.Height(); ++y) {
        for (int x = 0; x < canvas.Width(); ++x) {
            if (canvas.At(x, y).cover > 0) {
                right = std::max(right, x);
                left = std::min(left, x);
            }
        }
    }
    int highest_right = canvas.Height();
    int highest_left = canvas.Height();
    for (int y = canvas.Height() - 1; y >= 0; --y) {
        for (int x = right - 8; x <= right; ++x)
            highest_right = canvas.At(x, y).cover > 0 ? y : highest_right;
        for (int x = left; x <= left + 8; ++x)
            highest_left = canvas.At(x, y).cover > 0 ? y : highest_left;
    }
    EXPECT_LT(highest_right, highest_left);
}

TEST(Text, TellsWhichLettersNoFontHas)
{
    TextRenderer renderer(400, 100);
    renderer.Draw({Item("a\xF4\x8F\xBF\xBD")});
    EXPECT_EQ(renderer.MissingLetters(), std::set<std::string>{"U+10FFFD"});
}

TEST(Text, TakesBytesThatAreNoUtf8)
{
    TextRenderer renderer(400, 100);
    EXPECT_FALSE(renderer.Draw({Item("caf\xE9 \xFF\xFE")}).IsClear());
}

TEST(Text, CutsATextWithoutEnd)
{
    TextRenderer renderer(400, 100);
    std::string text;
    for (int i = 0; i < 100'000; ++i)
        text += "\xE4\xB8\xAD";
    EXPECT_FALSE(renderer.Draw({Item(text)}).IsClear());
}

TEST(Text, DrawsNothingForNothing)
{
    TextRenderer renderer(400, 100);
    EXPECT_TRUE(renderer.Draw({}).IsClear());
    EXPECT_TRUE(renderer.Draw({Item("")}).IsClear());
    EXPECT_TRUE(renderer.HasFont());
}
