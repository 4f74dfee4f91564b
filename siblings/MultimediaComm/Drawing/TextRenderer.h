#pragma once

#include "Drawing/Canvas.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace Zell::MultimediaComm {

// A piece of text and where it stands.
struct TextItem
{
    std::string text;  // UTF-8, line feeds begin new lines
    double x = 0;      // of the anchor, in pixels
    double y = 0;
    int column = 0;  // what x is of the text: 0 left edge, 1 middle, 2 right edge
    int row = 0;     // what y is: 0 top, 1 middle, 2 bottom
    double line_height = 0;
    Colour colour;
    int opacity = 255;
    double angle = 0;      // degrees against the clock, around the anchor
    bool has_rim = false;  // thin, dark around a light colour and light around a dark one
};

// Draws text in any script with the machine's fonts: letters are joined and ordered as their script asks, and
// a letter that the chosen font lacks comes from one that has it. One thread.
//
// The text is laid out by libass, since Qt draws text only where the program has made a QGuiApplication,
// which is no library's to make.
class TextRenderer
{
public:
    // For sheets of this size. Throws VideoFailure if the library fails.
    TextRenderer(int width, int height);
    TextRenderer(const TextRenderer&) = delete;
    TextRenderer& operator=(const TextRenderer&) = delete;
    ~TextRenderer();

    Canvas Draw(const std::vector<TextItem>& items);
    // Width of the text in pixels, unturned.
    double WidthOf(const std::string& text, double line_height);
    // Whether there is any font.
    bool HasFont();
    // Letters drawn so far that no font has, as "U+4E2D"; they show as boxes.
    const std::set<std::string>& MissingLetters() const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace Zell::MultimediaComm
