#include "CellFormats.h"

#include "OfficeLog.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <utility>

namespace ZellOfficeKit {
namespace {

constexpr int kMostFontSize = 409;
// The format takes 65,490 styles; a few are the library's own.
constexpr std::size_t kMostFormats = 65000;

struct NamedColor
{
    const char* name;
    lxw_color_t color;
};

constexpr NamedColor kNamedColors[] = {
    {"black", LXW_COLOR_BLACK},   {"blue", LXW_COLOR_BLUE},       {"brown", LXW_COLOR_BROWN},
    {"cyan", LXW_COLOR_CYAN},     {"gray", LXW_COLOR_GRAY},       {"green", LXW_COLOR_GREEN},
    {"lime", LXW_COLOR_LIME},     {"magenta", LXW_COLOR_MAGENTA}, {"navy", LXW_COLOR_NAVY},
    {"orange", LXW_COLOR_ORANGE}, {"pink", LXW_COLOR_PINK},       {"purple", LXW_COLOR_PURPLE},
    {"red", LXW_COLOR_RED},       {"silver", LXW_COLOR_SILVER},   {"white", LXW_COLOR_WHITE},
    {"yellow", LXW_COLOR_YELLOW},
};

int HexDigit(char letter)
{
    if (letter >= '0' && letter <= '9')
        return letter - '0';
    const int lower = std::tolower(static_cast<unsigned char>(letter));
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

// -1 if the six letters are no number.
long HexColor(const char* digits)
{
    long value = 0;
    for (int i = 0; i < 6; ++i) {
        const int digit = HexDigit(digits[i]);
        if (digit < 0)
            return -1;
        value = value * 16 + digit;
    }
    return value;
}

bool EqualsName(const std::string& text, const char* name)
{
    return text.size() == std::strlen(name) && std::equal(text.begin(), text.end(), name, [](char a, char b) {
               return std::tolower(static_cast<unsigned char>(a)) == b;
           });
}

bool IsSame(const Clxw_format_& a, const Clxw_format_& b)
{
    return a.GetVal_font_size() == b.GetVal_font_size() && a.GetVal_is_blod() == b.GetVal_is_blod() &&
           a.GetVal_text_location() == b.GetVal_text_location() &&
           a.GetVal_is_need_wrap() == b.GetVal_is_need_wrap() &&
           a.GetVal_background_color() == b.GetVal_background_color() &&
           a.GetVal_text_color() == b.GetVal_text_color();
}

}  // namespace

lxw_color_t ParseColor(const std::string& text)
{
    const std::size_t from = !text.empty() && text[0] == '#' ? 1 : 0;
    if (text.size() == from + 6) {
        const long value = HexColor(text.c_str() + from);
        // The library's 0 means no colour at all.
        if (value >= 0)
            return value == 0 ? static_cast<lxw_color_t>(LXW_COLOR_BLACK) : static_cast<lxw_color_t>(value);
    }
    for (const NamedColor& named : kNamedColors) {
        if (EqualsName(text, named.name))
            return named.color;
    }
    return LXW_COLOR_UNSET;
}

lxw_format* CCellFormats::Get(const Clxw_format_* record)
{
    if (record == nullptr)
        return nullptr;
    if (recent_[hit_].format != nullptr && IsSame(recent_[hit_].record, *record))
        return recent_[hit_].format;
    for (std::size_t i = 0; i < recent_.size(); ++i) {
        if (recent_[i].format != nullptr && IsSame(recent_[i].record, *record)) {
            hit_ = i;
            return recent_[i].format;
        }
    }
    lxw_format* format = Find(*record);
    if (format != nullptr) {
        recent_[next_] = {*record, format};
        hit_ = next_;
        next_ = (next_ + 1) % recent_.size();
    }
    return format;
}

lxw_format* CCellFormats::Find(const Clxw_format_& record)
{
    const int location = record.GetVal_text_location();
    const Look look(ParseColor(record.GetVal_background_color()), ParseColor(record.GetVal_text_color()),
                    std::clamp(record.GetVal_font_size(), 0, kMostFontSize), record.GetVal_is_blod(),
                    location >= 0 && location <= 2 ? location : -1, record.GetVal_is_need_wrap());
    const auto found = formats_.find(look);
    if (found != formats_.end())
        return found->second;
    if (formats_.size() < kMostFormats) {
        lxw_format* format = Make(look);
        formats_.emplace(look, format);
        return format;
    }
    if (!std::exchange(limit_was_told_, true))
        OFFICE_LOG_ERROR("CCellFormats::Find", "no more formats fit into a workbook, cells go without");
    return nullptr;
}

lxw_format* CCellFormats::Make(const Look& look)
{
    const auto& [background, text, size, bold, location, wrap] = look;
    lxw_format* format = workbook_add_format(workbook_);
    if (format == nullptr)
        return nullptr;
    if (background != LXW_COLOR_UNSET) {
        format_set_pattern(format, LXW_PATTERN_SOLID);
        // For a solid pattern the library swaps the two colours only if both are set.
        format_set_fg_color(format, background);
    }
    if (text != LXW_COLOR_UNSET)
        format_set_font_color(format, text);
    if (size > 0)
        format_set_font_size(format, size);
    if (bold)
        format_set_bold(format);
    if (location >= 0) {
        constexpr std::uint8_t kAlign[] = {LXW_ALIGN_LEFT, LXW_ALIGN_CENTER, LXW_ALIGN_RIGHT};
        format_set_align(format, kAlign[location]);
    }
    if (wrap)
        format_set_text_wrap(format);
    return format;
}

}  // namespace ZellOfficeKit
