#pragma once

#include "MultimediaComm/Export.h"

#include <string>
#include <vector>

namespace Zell::MultimediaComm {

// The watermark of a video: lines of text, tiled over the whole picture. A plain value.
class MULTIMEDIACOMM_API CWaterMarkParam
{
public:
    CWaterMarkParam();
    CWaterMarkParam(const CWaterMarkParam&);
    CWaterMarkParam(CWaterMarkParam&&) noexcept;
    CWaterMarkParam& operator=(const CWaterMarkParam&);
    CWaterMarkParam& operator=(CWaterMarkParam&&) noexcept;
    virtual ~CWaterMarkParam();

    // Without it nothing is drawn.
    void SetVal_b_enable(const bool& value);
    bool GetVal_b_enable() const;
    // Light or dark by the picture below each copy, in place of the colour.
    void SetVal_b_auto_adapt(const bool& value);
    bool GetVal_b_auto_adapt() const;
    // The lines of one copy, from top to bottom; UTF-8. Empty ones are passed over.
    void SetVal_water_mark_contents(const std::vector<std::string>& value);
    std::vector<std::string> GetVal_water_mark_contents() const;
    // The colour, 0 to 255 each, cut to that range.
    void SetVal_r(const int& value);
    int GetVal_r() const;
    void SetVal_g(const int& value);
    int GetVal_g() const;
    void SetVal_b(const int& value);
    int GetVal_b() const;
    // Height of a line in pixels of a picture of the bench size; 0 or less: a thirtieth of its height.
    void SetVal_font_size(const int& value);
    int GetVal_font_size() const;
    // 0 opaque to 100 invisible, cut to that range.
    void SetVal_transparency(const int& value);
    int GetVal_transparency() const;
    // Degrees, any number; against the clock.
    void SetVal_rotation_angle(const int& value);
    int GetVal_rotation_angle() const;
    // Gap between copies, both ways, in pixels of a picture of the bench size; a negative one is 0.
    void SetVal_space(const int& value);
    int GetVal_space() const;
    // The size of picture that the sizes above are meant for; 0 or less: 1920 by 1080. A smaller picture gets
    // a smaller watermark, by the smaller of the two ratios.
    void SetVal_bench_width(const int& value);
    int GetVal_bench_width() const;
    void SetVal_bench_height(const int& value);
    int GetVal_bench_height() const;

private:
    bool b_enable_ = false;
    bool b_auto_adapt_ = false;
    std::vector<std::string> water_mark_contents_;
    int r_ = 255;
    int g_ = 255;
    int b_ = 255;
    int font_size_ = 0;
    int transparency_ = 0;
    int rotation_angle_ = 0;
    int space_ = 0;
    int bench_width_ = 1920;
    int bench_height_ = 1080;
};

}  // namespace Zell::MultimediaComm
