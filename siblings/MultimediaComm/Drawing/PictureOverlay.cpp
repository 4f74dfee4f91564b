#include "Drawing/PictureOverlay.h"

#include "Video/PictureFitter.h"
#include "Video/Rotation.h"

#include <algorithm>
#include <cmath>

namespace Zell::MultimediaComm {
namespace {

// From this height on players take a picture that says nothing for one of high definition.
constexpr int kHighDefinition = 720;
// A shorter gap between two stretches costs more than blending it.
constexpr int kGap = 16;

// What red, green and blue give for brightness and the two colour differences, for values of 0 to 255.
struct Matrix
{
    double red;
    double blue;
    double luma_scale;
    double luma_zero;
    double chroma_scale;
};

Matrix MatrixOf(const PictureColours& colours, int height)
{
    const bool is_full = colours.range == AVCOL_RANGE_JPEG;
    AVColorSpace space = colours.space;
    if (space == AVCOL_SPC_UNSPECIFIED)
        space = height >= kHighDefinition ? AVCOL_SPC_BT709 : AVCOL_SPC_SMPTE170M;
    Matrix matrix = {0.299, 0.114, 1, 0, 1};
    if (space == AVCOL_SPC_BT709)
        matrix = {0.2126, 0.0722, 1, 0, 1};
    else if (space == AVCOL_SPC_BT2020_NCL || space == AVCOL_SPC_BT2020_CL)
        matrix = {0.2627, 0.0593, 1, 0, 1};
    if (!is_full) {
        matrix.luma_scale = 219.0 / 255;
        matrix.luma_zero = 16;
        matrix.chroma_scale = 224.0 / 255;
    }
    return matrix;
}

struct Sum
{
    double red = 0;
    double green = 0;
    double blue = 0;
    double cover = 0;

    void Add(const Canvas::Pixel& pixel)
    {
        red += pixel.red;
        green += pixel.green;
        blue += pixel.blue;
        cover += pixel.cover;
    }
    void Add(const Sum& other)
    {
        red += other.red;
        green += other.green;
        blue += other.blue;
        cover += other.cover;
    }
};

std::uint8_t Rounded(double value)
{
    return static_cast<std::uint8_t>(std::clamp(std::lround(value), 0L, 255L));
}

double Luma(const Matrix& matrix, const Sum& sum)
{
    return matrix.red * sum.red + (1 - matrix.red - matrix.blue) * sum.green + matrix.blue * sum.blue;
}

// The canvas as the pictures have it before a player turns them.
class TurnedCanvas
{
public:
    TurnedCanvas(const Canvas& canvas, int quarter_turns, int width, int height)
        : canvas_(canvas), turns_(quarter_turns), width_(width), height_(height)
    {
    }

    // The canvas may lack the row and column that an odd picture grew by.
    Canvas::Pixel At(int x, int y) const
    {
        const auto [shown_x, shown_y] = TurnedPlace(x, y, turns_, width_, height_);
        if (shown_x < 0 || shown_y < 0 || shown_x >= canvas_.Width() || shown_y >= canvas_.Height())
            return {};
        return canvas_.At(shown_x, shown_y);
    }

private:
    const Canvas& canvas_;
    int turns_;
    int width_;
    int height_;
};

// Laid out for the compiler to do many at a time.
void Blend(std::uint8_t* picture, const std::uint8_t* added, const std::uint8_t* kept, int count)
{
    for (int i = 0; i < count; ++i) {
        const auto part = static_cast<std::uint16_t>(picture[i] * kept[i] + 128);
        picture[i] =
            static_cast<std::uint8_t>(static_cast<std::uint16_t>(part + (part >> 8)) >> 8) + added[i];
    }
}

}  // namespace

PictureOverlay::PictureOverlay(const Canvas& canvas, int quarter_turns, int width, int height,
                               const PictureColours& colours)
{
    const Matrix matrix = MatrixOf(colours, height);
    const TurnedCanvas turned(canvas, quarter_turns, width, height);
    Values luma(width, height);
    Values blue(width / 2, height / 2);
    Values red(width / 2, height / 2);
    for (int y = 0; y < height; y += 2) {
        for (int x = 0; x < width; x += 2) {
            Sum four;
            for (int corner = 0; corner < 4; ++corner) {
                Sum one;
                one.Add(turned.At(x + corner % 2, y + corner / 2));
                four.Add(one);
                luma.Set(x + corner % 2, y + corner / 2,
                         Luma(matrix, one) * matrix.luma_scale + matrix.luma_zero * one.cover / 255,
                         one.cover);
            }
            const double grey = Luma(matrix, four);
            const double blue_part = (four.blue - grey) / (2 * (1 - matrix.blue)) * matrix.chroma_scale;
            const double red_part = (four.red - grey) / (2 * (1 - matrix.red)) * matrix.chroma_scale;
            blue.Set(x / 2, y / 2, (blue_part + 128 * four.cover / 255) / 4, four.cover / 4);
            red.Set(x / 2, y / 2, (red_part + 128 * four.cover / 255) / 4, four.cover / 4);
        }
    }
    planes_ = {Pack(luma), Pack(blue), Pack(red)};
}

PictureOverlay::Values::Values(int of_width, int of_height)
    : width(of_width),
      height(of_height),
      added(static_cast<std::size_t>(of_width) * static_cast<std::size_t>(of_height)),
      cover(added.size())
{
}

void PictureOverlay::Values::Set(int x, int y, double value, double of_cover)
{
    const auto place =
        static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    cover[place] = Rounded(of_cover);
    // What is added never exceeds what is taken away: the sum stays a byte.
    added[place] = std::min(Rounded(value), cover[place]);
}

PictureOverlay::Plane PictureOverlay::Pack(const Values& values)
{
    Plane plane;
    const int width = values.width;
    for (int row = 0; row < values.height; ++row) {
        const std::uint8_t* const cover = values.cover.data() + static_cast<std::ptrdiff_t>(row) * width;
        const std::uint8_t* const added = values.added.data() + static_cast<std::ptrdiff_t>(row) * width;
        const auto is_covered = [cover](int column) { return cover[column] != 0; };
        for (int begin = 0; begin < width;) {
            if (!is_covered(begin)) {
                ++begin;
                continue;
            }
            int end = begin + 1;
            for (int column = end; column < width && column - end <= kGap; ++column) {
                if (is_covered(column))
                    end = column + 1;
            }
            plane.stretches.push_back({row, begin, plane.added.size(), end - begin});
            plane.added.insert(plane.added.end(), added + begin, added + end);
            for (int column = begin; column < end; ++column)
                plane.kept.push_back(static_cast<std::uint8_t>(255 - cover[column]));
            begin = end;
        }
    }
    return plane;
}

void PictureOverlay::LayOn(AVFrame& picture) const
{
    for (std::size_t index = 0; index < planes_.size(); ++index) {
        const Plane& plane = planes_[index];
        for (const Stretch& stretch : plane.stretches) {
            std::uint8_t* const row =
                picture.data[index] + static_cast<std::ptrdiff_t>(stretch.row) * picture.linesize[index];
            Blend(row + stretch.begin, plane.added.data() + stretch.first, plane.kept.data() + stretch.first,
                  stretch.count);
        }
    }
}

}  // namespace Zell::MultimediaComm
