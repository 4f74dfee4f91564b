#include "FetchyardBussiness/DeterminantWriteFile/PictureScale.h"

#include "FetchyardBussiness/Platform/DisplayScale.h"

namespace FetchyardBussiness {

namespace {

constexpr unsigned int kPlainDotsPerInch = 96;
constexpr double kLowResolution = 72.0;  // dots per inch

// Tuned values, for rows of default height: they follow no formula, and an x of 0 is meant.
constexpr PictureScale kStartingScale = {0.75, 0.3};
constexpr PictureScale kLowResolutionScale = {0.75, 0.28};

struct ScaleRow
{
    unsigned int percentage;
    PictureScale wide;
    PictureScale tall;
};

constexpr ScaleRow kScales[] = {
    {100, {1.0, 0.4}, {0.0, 0.2}},  // the y of a wide picture depends on its shape
    {125, {1.28, 0.5}, {1.28, 0.25}},
    {150, {1.5, 0.6}, {1.5, 0.3}},
    {175, {1.75, 0.65}, {1.8, 0.35}},
};

// The y of a wide picture at 100 per cent: for ratios strictly between the bounds.
struct RatioRow
{
    double above;
    double below;
    double y;
};

constexpr RatioRow kRatios[] = {{1.2, 1.3, 0.25}, {1.3, 1.7, 0.3}};

PictureScale WideScale(const PictureShape& picture, const ScaleRow& row)
{
    if (picture.dots_per_inch < kLowResolution)
        return kLowResolutionScale;
    PictureScale scale = row.wide;
    if (row.percentage != 100)
        return scale;
    const double ratio = static_cast<double>(picture.width) / picture.height;
    for (const RatioRow& range : kRatios) {
        if (ratio > range.above && ratio < range.below)
            scale.y = range.y;
    }
    return scale;
}

}  // namespace

unsigned int DisplayScalePercentage()
{
    const Platform::DisplayDpi dpi = Platform::PrimaryDisplayDpi();
    const unsigned int horizontal = dpi.x * 100 / kPlainDotsPerInch;
    const unsigned int vertical = dpi.y * 100 / kPlainDotsPerInch;
    return (horizontal + vertical) / 2;
}

PictureScale ScaleOfPicture(const PictureShape& picture, unsigned int display_percentage)
{
    for (const ScaleRow& row : kScales) {
        if (row.percentage == display_percentage)
            return picture.width > picture.height ? WideScale(picture, row) : row.tall;
    }
    return kStartingScale;
}

}  // namespace FetchyardBussiness
