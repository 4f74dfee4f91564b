#include "Drawing/AssText.h"

#include "ZellBase/Util.h"

#include <algorithm>
#include <string_view>

namespace Zell::MultimediaComm {
namespace {

// Longer texts fill no picture better, and laying them out can't be stopped.
constexpr std::size_t kMostBytes = 4096;
constexpr double kLinesOfRim = 18;

// No letter, takes no room, keeps what stands before and behind apart.
constexpr std::string_view kNothing = "\xE2\x81\xA0";

std::string Cut(const std::string& text)
{
    if (text.size() <= kMostBytes)
        return text;
    std::size_t end = kMostBytes;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
        --end;
    return text.substr(0, end);
}

// The text with what the script gives a meaning of its own taken as letters.
std::string Escaped(const std::string& text)
{
    std::string escaped;
    for (const char letter : Cut(Base::IsUtf8(text) ? text : Base::LocalToUTF8(text))) {
        if (letter == '\n')
            escaped += "\\N";
        else if (letter == '{' || letter == '}')
            escaped += std::string("\\") + letter;
        else if (letter == '\\')
            escaped += std::string("\\").append(kNothing);
        else if (static_cast<unsigned char>(letter) >= ' ' && letter != '\x7F')
            escaped += letter;
        else if (letter != '\r')
            escaped += ' ';
    }
    return escaped;
}

// Numbers with a point in every locale.
std::string Number(double value)
{
    const auto hundredths = static_cast<long long>(value * 100 + (value < 0 ? -0.5 : 0.5));
    const long long whole = hundredths < 0 ? -hundredths : hundredths;
    const std::string part = std::to_string(whole % 100);
    return (hundredths < 0 ? "-" : "") + std::to_string(whole / 100) + "." + (part.size() < 2 ? "0" : "") +
           part;
}

std::string ColourTag(int which, Colour colour, int opacity)
{
    const auto cut = [](int value) { return std::clamp(value, 0, 255); };
    return Base::StringUtil::str_fmt("\\%dc&H%02X%02X%02X&\\%da&H%02X&", which, cut(colour.blue),
                                     cut(colour.green), cut(colour.red), which, 255 - cut(opacity));
}

Colour RimOf(Colour colour)
{
    const bool is_light = colour.red * 299 + colour.green * 587 + colour.blue * 114 >= 128'000;
    return is_light ? Colour{0, 0, 0} : Colour{255, 255, 255};
}

std::string Tags(const TextItem& item)
{
    const int anchor = 7 - 3 * item.row + item.column;
    std::string tags = "{\\an" + std::to_string(anchor) + "\\pos(" + Number(item.x) + "," + Number(item.y) +
                       ")\\fs" + Number(item.line_height) + ColourTag(1, item.colour, item.opacity);
    if (item.has_rim)
        tags += "\\bord" + Number(std::max(1.0, item.line_height / kLinesOfRim)) +
                ColourTag(3, RimOf(item.colour), item.opacity);
    if (item.angle != 0)
        tags += "\\frz" + Number(item.angle);
    return tags + "}";
}

}  // namespace

std::string AssScript(const std::vector<TextItem>& items, int width, int height)
{
    std::string script =
        "[Script Info]\nScriptType: v4.00+\nWrapStyle: 2\nScaledBorderAndShadow: yes\nPlayResX: " +
        std::to_string(width) + "\nPlayResY: " + std::to_string(height) +
        "\n\n[V4+ Styles]\nFormat: Name, Fontname, Fontsize, PrimaryColour, SecondaryColour, OutlineColour, "
        "BackColour, "
        "Bold, Italic, Underline, StrikeOut, ScaleX, ScaleY, Spacing, Angle, BorderStyle, Outline, Shadow, "
        "Alignment, "
        "MarginL, MarginR, MarginV, Encoding\n"
        // The last number lets each text say for itself in which direction it runs.
        "Style: "
        "Default,sans-serif,20,&H00FFFFFF,&H00FFFFFF,&H00000000,&H00000000,0,0,0,0,100,100,0,0,1,0,0,7,0,0,0,"
        "-1\n"
        "\n[Events]\nFormat: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text\n";
    for (const TextItem& item : items)
        script +=
            "Dialogue: 0,0:00:00.00,0:00:01.00,Default,,0,0,0,," + Tags(item) + Escaped(item.text) + "\n";
    return script;
}

}  // namespace Zell::MultimediaComm
