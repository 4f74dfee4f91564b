#include "ZellAssetBook/WaterMark.h"

namespace ZellAssetBook {

CWaterMark::CWaterMark() = default;
CWaterMark::CWaterMark(const CWaterMark&) = default;
CWaterMark::CWaterMark(CWaterMark&&) noexcept = default;
CWaterMark& CWaterMark::operator=(const CWaterMark&) = default;
CWaterMark& CWaterMark::operator=(CWaterMark&&) noexcept = default;
CWaterMark::~CWaterMark() = default;

void CWaterMark::SetVal_b_enable(const bool& value)
{
    b_enable_ = value;
}

bool CWaterMark::GetVal_b_enable() const
{
    return b_enable_;
}

void CWaterMark::SetVal_b_enable_autoadaptcolor(const bool& value)
{
    b_enable_autoadaptcolor_ = value;
}

bool CWaterMark::GetVal_b_enable_autoadaptcolor() const
{
    return b_enable_autoadaptcolor_;
}

void CWaterMark::SetVal_b_enable_username(const bool& value)
{
    b_enable_username_ = value;
}

bool CWaterMark::GetVal_b_enable_username() const
{
    return b_enable_username_;
}

void CWaterMark::SetVal_b_enable_datatime(const bool& value)
{
    b_enable_datatime_ = value;
}

bool CWaterMark::GetVal_b_enable_datatime() const
{
    return b_enable_datatime_;
}

void CWaterMark::SetVal_b_enable_custom_content(const bool& value)
{
    b_enable_custom_content_ = value;
}

bool CWaterMark::GetVal_b_enable_custom_content() const
{
    return b_enable_custom_content_;
}

void CWaterMark::SetVal_custom_content(const std::string& value)
{
    custom_content_ = value;
}

std::string CWaterMark::GetVal_custom_content() const
{
    return custom_content_;
}

void CWaterMark::SetVal_font_size(const int& value)
{
    font_size_ = value;
}

int CWaterMark::GetVal_font_size() const
{
    return font_size_;
}

void CWaterMark::SetVal_transparency(const int& value)
{
    transparency_ = value;
}

int CWaterMark::GetVal_transparency() const
{
    return transparency_;
}

void CWaterMark::SetVal_rotation_angle(const int& value)
{
    rotation_angle_ = value;
}

int CWaterMark::GetVal_rotation_angle() const
{
    return rotation_angle_;
}

void CWaterMark::SetVal_space(const int& value)
{
    space_ = value;
}

int CWaterMark::GetVal_space() const
{
    return space_;
}

void CWaterMark::SetVal_bench_width(const int& value)
{
    bench_width_ = value;
}

int CWaterMark::GetVal_bench_width() const
{
    return bench_width_;
}

void CWaterMark::SetVal_bench_height(const int& value)
{
    bench_height_ = value;
}

int CWaterMark::GetVal_bench_height() const
{
    return bench_height_;
}

void CWaterMark::SetVal_color(const int& r, const int& g, const int& b)
{
    r_ = r;
    g_ = g;
    b_ = b;
}

void CWaterMark::GetVal_color(int& r, int& g, int& b) const
{
    r = r_;
    g = g_;
    b = b_;
}

}  // namespace ZellAssetBook
