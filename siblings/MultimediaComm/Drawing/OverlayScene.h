#pragma once

#include "Drawing/TextRenderer.h"
#include "MultimediaComm/InfoOverlay.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace Zell::MultimediaComm {

// What is to be burnt into a video.
struct OverlayContent
{
    InfoOverLineArrayType line_array_type = 0;
    std::vector<InfoOverlayLineArray> lines;
    CWaterMarkParam watermark;
};

// Whether nothing of it is ever to be seen.
bool IsBlank(const OverlayContent& content);

// Says for each moment what stands where in a picture. One thread.
class OverlayScene
{
public:
    // Brightness of the picture there, 0 to 255, at a place of the picture as a viewer sees it.
    using Brightness = std::function<int(int x, int y)>;

    OverlayScene(const OverlayContent& content, int width, int height, TextRenderer& renderer);

    // Goes to that time. True if the picture's overlay is another now; the first time always.
    bool GoTo(std::int64_t milliseconds, const Brightness& brightness);
    std::vector<TextItem> Items() const;

private:
    struct Tile
    {
        double x;
        double y;
        bool is_dark;  // letters, where they adapt
    };

    void PlanTiles(TextRenderer& renderer);
    bool FindVisibleLines(std::int64_t milliseconds);
    bool AdaptTiles(const Brightness& brightness);
    int BrightnessBelow(const Tile& tile, const Brightness& brightness) const;
    TextItem LineItem(const InfoOverlayLineArray& line) const;
    TextItem FittedItem(const InfoOverlayLineArray& line, TextRenderer& renderer) const;
    void AddBlock(std::vector<TextItem>& items) const;

    OverlayContent content_;
    int width_;
    int height_;
    std::string tile_text_;
    double tile_line_height_ = 0;
    double tile_width_ = 0;
    double tile_height_ = 0;
    std::vector<Tile> tiles_;
    std::vector<TextItem> line_items_;  // one for each line of the content
    std::vector<std::size_t> visible_;
    bool is_begun_ = false;
    std::int64_t next_look_ = 0;
};

}  // namespace Zell::MultimediaComm
