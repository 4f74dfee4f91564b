#include "MultimediaComm/InfoOverlay.h"

namespace Zell::MultimediaComm {

InfoOverlay::InfoOverlay() = default;
InfoOverlay::~InfoOverlay() = default;

void InfoOverlay::SetInfoOverlayType(const InfoOverlayType& type)
{
    type_ = type;
}

InfoOverlayType InfoOverlay::GetInfoOverlayType() const
{
    return type_;
}

void InfoOverlay::SetInfoOverlayLineArrayType(const InfoOverLineArrayType& type)
{
    line_array_type_ = type;
}

InfoOverLineArrayType InfoOverlay::GetInfoOverlayLineArrayType() const
{
    return line_array_type_;
}

void InfoOverlay::SetInfoOverlayLineArrayVec(const std::vector<InfoOverlayLineArray>& lines)
{
    lines_ = lines;
}

std::vector<InfoOverlayLineArray> InfoOverlay::GetInfoOverlayLineArrayVec() const
{
    return lines_;
}

}  // namespace Zell::MultimediaComm
