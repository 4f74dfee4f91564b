#pragma once

#include "ZellAssetBook/Export.h"

#include <string>

namespace ZellAssetBook {

// The platform's watermark as the client configures it. A plain value.
class ZELLASSETBOOK_API CWaterMark
{
public:
    CWaterMark();
    CWaterMark(const CWaterMark&);
    CWaterMark(CWaterMark&&) noexcept;
    CWaterMark& operator=(const CWaterMark&);
    CWaterMark& operator=(CWaterMark&&) noexcept;
    virtual ~CWaterMark();

    // Whether videos get the watermark.
    void SetVal_b_enable(const bool& value);
    bool GetVal_b_enable() const;
    // Light or dark by the picture below, in place of the colour.
    void SetVal_b_enable_autoadaptcolor(const bool& value);
    bool GetVal_b_enable_autoadaptcolor() const;
    // What the watermark says, in this order: the user, the local time of the stamping, a text of one's own.
    void SetVal_b_enable_username(const bool& value);
    bool GetVal_b_enable_username() const;
    void SetVal_b_enable_datatime(const bool& value);
    bool GetVal_b_enable_datatime() const;
    void SetVal_b_enable_custom_content(const bool& value);
    bool GetVal_b_enable_custom_content() const;
    void SetVal_custom_content(const std::string& value);
    std::string GetVal_custom_content() const;
    // Pixels of a picture of the bench size.
    void SetVal_font_size(const int& value);
    int GetVal_font_size() const;
    // 0 opaque to 100 invisible.
    void SetVal_transparency(const int& value);
    int GetVal_transparency() const;
    // Degrees, against the clock.
    void SetVal_rotation_angle(const int& value);
    int GetVal_rotation_angle() const;
    // Gap between copies, pixels of a picture of the bench size.
    void SetVal_space(const int& value);
    int GetVal_space() const;
    // The size of picture that the sizes above are meant for.
    void SetVal_bench_width(const int& value);
    int GetVal_bench_width() const;
    void SetVal_bench_height(const int& value);
    int GetVal_bench_height() const;
    // Red, green, blue, 0 to 255 each.
    void SetVal_color(const int& r, const int& g, const int& b);
    void GetVal_color(int& r, int& g, int& b) const;

private:
    bool b_enable_ = true;
    bool b_enable_autoadaptcolor_ = false;
    bool b_enable_username_ = true;
    bool b_enable_datatime_ = true;
    bool b_enable_custom_content_ = false;
    std::string custom_content_;
    int font_size_ = 30;
    int transparency_ = 70;
    int rotation_angle_ = 20;
    int space_ = 200;
    int bench_width_ = 1920;
    int bench_height_ = 1080;
    int r_ = 255;
    int g_ = 255;
    int b_ = 255;
};

}  // namespace ZellAssetBook
