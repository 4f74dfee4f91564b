#pragma once

#include "MultimediaComm/Export.h"

#include <array>
#include <string>
#include <vector>

namespace Zell::MultimediaComm {

// -1 means no overlay; any other value that the video is to be stamped.
using InfoOverlayType = int;
// Kind of the line list.
using InfoOverLineArrayType = int;

// One line of text to burn into a video. A plain value; all numbers are 0 and the text empty at first.
class MULTIMEDIACOMM_API InfoOverlayLineArray
{
public:
    InfoOverlayLineArray();
    InfoOverlayLineArray(const InfoOverlayLineArray&);
    InfoOverlayLineArray(InfoOverlayLineArray&&) noexcept;
    InfoOverlayLineArray& operator=(const InfoOverlayLineArray&);
    InfoOverlayLineArray& operator=(InfoOverlayLineArray&&) noexcept;
    virtual ~InfoOverlayLineArray();

    void SetFontSize(const int& size);
    int GetFontSize() const;
    void SetColorRGB(const std::array<int, 3>& color);  // red, green, blue, 0 to 255 each
    std::array<int, 3> GetColorRGB() const;
    void SetTransparencyNum(const int& transparency);
    int GetTransparencyNum() const;
    void SetContentStr(const std::string& text);
    std::string GetContentStr() const;
    void SetPosXType(const int& type);
    int GetPosXType() const;
    void SetPosX(const int& position);
    int GetPosX() const;
    void SetPosYType(const int& type);
    int GetPosYType() const;
    void SetPosY(const int& position);
    int GetPosY() const;
    void SetBeginMilliSecond(const int& milliseconds);
    int GetBeginMilliSecond() const;
    void SetEndMilliSecond(const int& milliseconds);
    int GetEndMilliSecond() const;

private:
    int font_size_ = 0;
    std::array<int, 3> color_rgb_ = {0, 0, 0};
    int transparency_ = 0;
    std::string content_;
    int pos_x_type_ = 0;
    int pos_x_ = 0;
    int pos_y_type_ = 0;
    int pos_y_ = 0;
    int begin_millisecond_ = 0;
    int end_millisecond_ = 0;
};

// What to burn into one video. The type is -1 at first.
class MULTIMEDIACOMM_API InfoOverlay
{
public:
    InfoOverlay();
    InfoOverlay(const InfoOverlay&) = delete;
    InfoOverlay& operator=(const InfoOverlay&) = delete;
    virtual ~InfoOverlay();

    void SetInfoOverlayType(const InfoOverlayType& type);
    InfoOverlayType GetInfoOverlayType() const;
    void SetInfoOverlayLineArrayType(const InfoOverLineArrayType& type);
    InfoOverLineArrayType GetInfoOverlayLineArrayType() const;
    void SetInfoOverlayLineArrayVec(const std::vector<InfoOverlayLineArray>& lines);
    std::vector<InfoOverlayLineArray> GetInfoOverlayLineArrayVec() const;

private:
    InfoOverlayType type_ = -1;
    InfoOverLineArrayType line_array_type_ = -1;
    std::vector<InfoOverlayLineArray> lines_;
};

}  // namespace Zell::MultimediaComm
