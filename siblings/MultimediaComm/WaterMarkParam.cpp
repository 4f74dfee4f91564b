#include "MultimediaComm/WaterMarkParam.h"

namespace Zell::MultimediaComm {

CWaterMarkParam::CWaterMarkParam() = default;
CWaterMarkParam::CWaterMarkParam(const CWaterMarkParam&) = default;
CWaterMarkParam::CWaterMarkParam(CWaterMarkParam&&) noexcept = default;
CWaterMarkParam& CWaterMarkParam::operator=(const CWaterMarkParam&) = default;
CWaterMarkParam& CWaterMarkParam::operator=(CWaterMarkParam&&) noexcept = default;
CWaterMarkParam::~CWaterMarkParam() = default;

void CWaterMarkParam::SetVal_b_enable(const bool& value)
{
    b_enable_ = value;
}

bool CWaterMarkParam::GetVal_b_enable() const
{
    return b_enable_;
}

void CWaterMarkParam::SetVal_b_auto_adapt(const bool& value)
{
    b_auto_adapt_ = value;
}

bool CWaterMarkParam::GetVal_b_auto_adapt() const
{
    return b_auto_adapt_;
}

void CWaterMarkParam::SetVal_water_mark_contents(const std::vector<std::string>& value)
{
    water_mark_contents_ = value;
}

std::vector<std::string> CWaterMarkParam::GetVal_water_mark_contents() const
{
    return water_mark_contents_;
}

void CWaterMarkParam::SetVal_r(const int& value)
{
    r_ = value;
}

int CWaterMarkParam::GetVal_r() const
{
    return r_;
}

void CWaterMarkParam::SetVal_g(const int& value)
{
    g_ = value;
}

int CWaterMarkParam::GetVal_g() const
{
    return g_;
}

void CWaterMarkParam::SetVal_b(const int& value)
{
    b_ = value;
}

int CWaterMarkParam::GetVal_b() const
{
    return b_;
}

void CWaterMarkParam::SetVal_font_size(const int& value)
{
    font_size_ = value;
}

int CWaterMarkParam::GetVal_font_size() const
{
    return font_size_;
}

void CWaterMarkParam::SetVal_transparency(const int& value)
{
    transparency_ = value;
}

int CWaterMarkParam::GetVal_transparency() const
{
    return transparency_;
}

void CWaterMarkParam::SetVal_rotation_angle(const int& value)
{
    rotation_angle_ = value;
}

int CWaterMarkParam::GetVal_rotation_angle() const
{
    return rotation_angle_;
}

void CWaterMarkParam::SetVal_space(const int& value)
{
    space_ = value;
}

int CWaterMarkParam::GetVal_space() const
{
    return space_;
}

void CWaterMarkParam::SetVal_bench_width(const int& value)
{
    bench_width_ = value;
}

int CWaterMarkParam::GetVal_bench_width() const
{
    return bench_width_;
}

void CWaterMarkParam::SetVal_bench_height(const int& value)
{
    bench_height_ = value;
}

int CWaterMarkParam::GetVal_bench_height() const
{
    return bench_height_;
}

}  // namespace Zell::MultimediaComm
