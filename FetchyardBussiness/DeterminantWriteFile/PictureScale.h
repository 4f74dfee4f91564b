#pragma once

namespace FetchyardBussiness {

// A picture in a workbook, for which a scale is wanted.
struct PictureShape
{
    int width = 0;  // pixels
    int height = 0;
    double dots_per_inch = 0.0;
};

struct PictureScale
{
    double x = 0.0;
    double y = 0.0;
};

// Scale of the primary display in per cent; 0 if it is not known.
unsigned int DisplayScalePercentage();

// The scale that makes an embedded picture fill its cell on a display of that scale.
PictureScale ScaleOfPicture(const PictureShape& picture, unsigned int display_percentage);

}  // namespace FetchyardBussiness
