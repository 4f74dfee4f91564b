#include "Drawing/OverlayScene.h"

#include <algorithm>
#include <cmath>

namespace Zell::MultimediaComm {
namespace {

constexpr double kDegree = 3.14159265358979323846 / 180;
constexpr int kLinesOfPicture = 20;
constexpr int kLinesOfBench = 30;
constexpr int kBenchWidth = 1920;
constexpr int kBenchHeight = 1080;
constexpr double kSmallestLine = 4;
// A gap that is too small for the letters would take ages to draw and show nothing but the colour.
constexpr std::size_t kMostTiles = 1000;
// How often adapting letters look at the picture, and how clear the case must be for a change.
constexpr std::int64_t kLookEvery = 1000;
constexpr int kMiddle = 128;
constexpr int kDoubt = 16;

bool IsBlankText(const std::string& text)
{
    return text.find_first_not_of(" \t\r\n") == std::string::npos;
}

int OpacityOf(int transparency)
{
    return 255 - static_cast<int>(std::lround(std::clamp(transparency, 0, 100) * 2.55));
}

// A member that a request leaves out is -1.
int ColourValue(int value)
{
    return value == -1 ? 255 : std::clamp(value, 0, 255);
}

int LinesIn(const std::string& text)
{
    return static_cast<int>(std::count(text.begin(), text.end(), '\n')) + 1;
}

// Where an anchor is, and which edge of the text it is: 0 the near one, 1 the middle, 2 the far one.
struct Anchor
{
    double place;
    int edge;
};

Anchor AnchorOf(int type, int position, int extent)
{
    const bool is_part = type >= 10 && type <= 12;
    const int edge = is_part ? type - 10 : (type == 1 || type == 2 ? type : 0);
    const double offset = is_part ? static_cast<double>(position) * extent / 10000 : position;
    if (edge == 2)
        return {extent / 2.0 + offset, 1};
    const double inside = std::max(0.0, offset);
    return edge == 1 ? Anchor{extent - inside, 2} : Anchor{inside, 0};
}

std::string JoinedLines(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines) {
        if (!IsBlankText(line))
            text += (text.empty() ? "" : "\n") + line;
    }
    return text;
}

// Empty if there is nothing to see of the watermark.
std::string TileText(const CWaterMarkParam& watermark)
{
    if (!watermark.GetVal_b_enable() || OpacityOf(watermark.GetVal_transparency()) == 0)
        return {};
    return JoinedLines(watermark.GetVal_water_mark_contents());
}

}  // namespace

bool IsBlank(const OverlayContent& content)
{
    const auto is_seen = [](const InfoOverlayLineArray& line) {
        return !IsBlankText(line.GetContentStr()) && OpacityOf(line.GetTransparencyNum()) > 0;
    };
    return TileText(content.watermark).empty() &&
           std::none_of(content.lines.begin(), content.lines.end(), is_seen);
}

OverlayScene::OverlayScene(const OverlayContent& content, int width, int height, TextRenderer& renderer)
    : content_(content), width_(width), height_(height)
{
    tile_text_ = TileText(content_.watermark);
    if (!tile_text_.empty())
        PlanTiles(renderer);
    for (const InfoOverlayLineArray& line : content_.lines)
        line_items_.push_back(FittedItem(line, renderer));
}

// A text too wide for the room beside its position gets smaller: all of it is to be read.
TextItem OverlayScene::FittedItem(const InfoOverlayLineArray& line, TextRenderer& renderer) const
{
    TextItem item = LineItem(line);
    const double left = item.x;
    const double right = width_ - item.x;
    const double room = item.column == 0 ? right : item.column == 2 ? left : 2 * std::min(left, right);
    const double width = renderer.WidthOf(item.text, item.line_height);
    if (room > 0 && width > room)
        item.line_height = std::max(kSmallestLine, item.line_height * room / width);
    return item;
}

void OverlayScene::PlanTiles(TextRenderer& renderer)
{
    const CWaterMarkParam& watermark = content_.watermark;
    const int bench_width = watermark.GetVal_bench_width() > 0 ? watermark.GetVal_bench_width() : kBenchWidth;
    const int bench_height =
        watermark.GetVal_bench_height() > 0 ? watermark.GetVal_bench_height() : kBenchHeight;
    const double scale =
        std::min(static_cast<double>(width_) / bench_width, static_cast<double>(height_) / bench_height);
    const double bench_line = watermark.GetVal_font_size() > 0
                                  ? watermark.GetVal_font_size()
                                  : static_cast<double>(bench_height) / kLinesOfBench;
    tile_line_height_ =
        std::clamp(bench_line * scale, kSmallestLine, std::max<double>(kSmallestLine, height_));
    tile_width_ = std::max(renderer.WidthOf(tile_text_, tile_line_height_), tile_line_height_);
    tile_height_ = tile_line_height_ * LinesIn(tile_text_);

    const double space = std::max(0, watermark.GetVal_space()) * scale;
    const double across = std::hypot(width_, height_);
    const double least_area = across * across / kMostTiles;
    double step_x = tile_width_ + space;
    double step_y = tile_height_ + space;
    const double stretch = std::sqrt(least_area / (step_x * step_y));
    if (stretch > 1) {
        step_x *= stretch;
        step_y *= stretch;
    }
    const double turn = std::fmod(watermark.GetVal_rotation_angle(), 360.0) * kDegree;
    const double reach = (across + std::hypot(tile_width_, tile_height_)) / 2;
    const double margin = std::hypot(tile_width_, tile_height_) / 2;
    const int rows = static_cast<int>(reach / step_y) + 1;
    const int columns = static_cast<int>(reach / step_x) + 1;
    for (int row = -rows; row <= rows; ++row) {
        for (int column = -columns; column <= columns; ++column) {
            // Each second row is shifted, so that no upright stripe of the picture stays free.
            const double along = (column + (row % 2 != 0 ? 0.5 : 0)) * step_x;
            const double down = row * step_y;
            const double x = width_ / 2.0 + along * std::cos(turn) + down * std::sin(turn);
            const double y = height_ / 2.0 - along * std::sin(turn) + down * std::cos(turn);
            if (x > -margin && y > -margin && x < width_ + margin && y < height_ + margin)
                tiles_.push_back({x, y, false});
        }
    }
}

bool OverlayScene::GoTo(std::int64_t milliseconds, const Brightness& brightness)
{
    bool is_other = FindVisibleLines(milliseconds);
    if (!tiles_.empty() && content_.watermark.GetVal_b_auto_adapt() && milliseconds >= next_look_) {
        next_look_ = milliseconds + kLookEvery;
        is_other = AdaptTiles(brightness) || is_other;
    }
    is_other = is_other || !is_begun_;
    is_begun_ = true;
    return is_other;
}

bool OverlayScene::FindVisibleLines(std::int64_t milliseconds)
{
    std::vector<std::size_t> visible;
    for (std::size_t i = 0; i < content_.lines.size(); ++i) {
        const InfoOverlayLineArray& line = content_.lines[i];
        const bool has_begun = milliseconds >= line.GetBeginMilliSecond();
        const bool has_ended = line.GetEndMilliSecond() > 0 && milliseconds >= line.GetEndMilliSecond();
        if (has_begun && !has_ended && !line.GetContentStr().empty())
            visible.push_back(i);
    }
    if (visible == visible_)
        return false;
    visible_ = std::move(visible);
    return true;
}

bool OverlayScene::AdaptTiles(const Brightness& brightness)
{
    bool is_other = false;
    for (Tile& tile : tiles_) {
        const int below = BrightnessBelow(tile, brightness);
        const int doubt = is_begun_ ? kDoubt : 0;
        const bool is_dark = tile.is_dark ? below >= kMiddle - doubt : below > kMiddle + doubt;
        is_other = is_other || is_dark != tile.is_dark;
        tile.is_dark = is_dark;
    }
    return is_other;
}

// The mean of points spread over the tile.
int OverlayScene::BrightnessBelow(const Tile& tile, const Brightness& brightness) const
{
    constexpr int kAlong = 24;
    constexpr int kDown = 8;
    const double turn = content_.watermark.GetVal_rotation_angle() * kDegree;
    long sum = 0;
    long count = 0;
    for (int point = 0; point < kAlong * kDown; ++point) {
        const int column = point % kAlong;
        const int row = point / kAlong;
        const double along = ((column + 0.5) / kAlong - 0.5) * tile_width_;
        const double down = ((row + 0.5) / kDown - 0.5) * tile_height_;
        const double x = tile.x + along * std::cos(turn) + down * std::sin(turn);
        const double y = tile.y - along * std::sin(turn) + down * std::cos(turn);
        if (x < 0 || y < 0 || x >= width_ || y >= height_)
            continue;
        sum += brightness(static_cast<int>(x), static_cast<int>(y));
        ++count;
    }
    return count == 0 ? 0 : static_cast<int>(sum / count);
}

TextItem OverlayScene::LineItem(const InfoOverlayLineArray& line) const
{
    TextItem item;
    const Anchor x = AnchorOf(line.GetPosXType(), line.GetPosX(), width_);
    const Anchor y = AnchorOf(line.GetPosYType(), line.GetPosY(), height_);
    const std::array<int, 3> colour = line.GetColorRGB();
    item.text = line.GetContentStr();
    item.x = x.place;
    item.column = x.edge;
    item.y = y.place;
    item.row = y.edge;
    item.line_height = line.GetFontSize() > 0
                           ? std::min(line.GetFontSize(), height_)
                           : std::max(kSmallestLine, static_cast<double>(height_) / kLinesOfPicture);
    item.colour = {ColourValue(colour[0]), ColourValue(colour[1]), ColourValue(colour[2])};
    item.opacity = OpacityOf(line.GetTransparencyNum());
    item.has_rim = true;
    return item;
}

// The lines below each other; the first one's anchor is that of all of them together.
void OverlayScene::AddBlock(std::vector<TextItem>& items) const
{
    std::vector<TextItem> block;
    double height = 0;
    for (const std::size_t index : visible_) {
        block.push_back(line_items_[index]);
        height += block.back().line_height * LinesIn(block.back().text);
    }
    if (block.empty())
        return;
    const TextItem first = block.front();
    double top = first.y - height * first.row / 2;
    for (TextItem& item : block) {
        item.x = first.x;
        item.column = first.column;
        item.y = top;
        item.row = 0;
        top += item.line_height * LinesIn(item.text);
        items.push_back(item);
    }
}

std::vector<TextItem> OverlayScene::Items() const
{
    std::vector<TextItem> items;
    const CWaterMarkParam& watermark = content_.watermark;
    for (const Tile& tile : tiles_) {
        TextItem item;
        item.text = tile_text_;
        item.x = tile.x;
        item.y = tile.y;
        item.column = 1;
        item.row = 1;
        item.line_height = tile_line_height_;
        item.opacity = OpacityOf(watermark.GetVal_transparency());
        item.angle = watermark.GetVal_rotation_angle() % 360;
        item.colour = {ColourValue(watermark.GetVal_r()), ColourValue(watermark.GetVal_g()),
                       ColourValue(watermark.GetVal_b())};
        if (watermark.GetVal_b_auto_adapt())
            item.colour = tile.is_dark ? Colour{0, 0, 0} : Colour{255, 255, 255};
        items.push_back(item);
    }
    if (content_.line_array_type == 1) {
        AddBlock(items);
        return items;
    }
    for (const std::size_t index : visible_)
        items.push_back(line_items_[index]);
    return items;
}

}  // namespace Zell::MultimediaComm
