#include "MultimediaComm/InfoOverlay.h"

namespace Zell::MultimediaComm {

InfoOverlayLineArray::InfoOverlayLineArray() = default;
InfoOverlayLineArray::InfoOverlayLineArray(const InfoOverlayLineArray&) = default;
InfoOverlayLineArray::InfoOverlayLineArray(InfoOverlayLineArray&&) noexcept = default;
InfoOverlayLineArray& InfoOverlayLineArray::operator=(const InfoOverlayLineArray&) = default;
InfoOverlayLineArray& InfoOverlayLineArray::operator=(InfoOverlayLineArray&&) noexcept = default;
InfoOverlayLineArray::~InfoOverlayLineArray() = default;

void InfoOverlayLineArray::SetFontSize(const int& size)
{
    font_size_ = size;
}

int InfoOverlayLineArray::GetFontSize() const
{
    return font_size_;
}

void InfoOverlayLineArray::SetColorRGB(const std::array<int, 3>& color)
{
    color_rgb_ = color;
}

std::array<int, 3> InfoOverlayLineArray::GetColorRGB() const
{
    return color_rgb_;
}

void InfoOverlayLineArray::SetTransparencyNum(const int& transparency)
{
    transparency_ = transparency;
}

int InfoOverlayLineArray::GetTransparencyNum() const
{
    return transparency_;
}

void InfoOverlayLineArray::SetContentStr(const std::string& text)
{
    content_ = text;
}

std::string InfoOverlayLineArray::GetContentStr() const
{
    return content_;
}

void InfoOverlayLineArray::SetPosXType(const int& type)
{
    pos_x_type_ = type;
}

int InfoOverlayLineArray::GetPosXType() const
{
    return pos_x_type_;
}

void InfoOverlayLineArray::SetPosX(const int& position)
{
    pos_x_ = position;
}

int InfoOverlayLineArray::GetPosX() const
{
    return pos_x_;
}

void InfoOverlayLineArray::SetPosYType(const int& type)
{
    pos_y_type_ = type;
}

int InfoOverlayLineArray::GetPosYType() const
{
    return pos_y_type_;
}

void InfoOverlayLineArray::SetPosY(const int& position)
{
    pos_y_ = position;
}

int InfoOverlayLineArray::GetPosY() const
{
    return pos_y_;
}

void InfoOverlayLineArray::SetBeginMilliSecond(const int& milliseconds)
{
    begin_millisecond_ = milliseconds;
}

int InfoOverlayLineArray::GetBeginMilliSecond() const
{
    return begin_millisecond_;
}

void InfoOverlayLineArray::SetEndMilliSecond(const int& milliseconds)
{
    end_millisecond_ = milliseconds;
}

int InfoOverlayLineArray::GetEndMilliSecond() const
{
    return end_millisecond_;
}

}  // namespace Zell::MultimediaComm
