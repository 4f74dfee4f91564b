#pragma once

#include "ZellOfficeKit/ExcelControllor.h"

#include <xlsxwriter.h>

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <tuple>

namespace ZellOfficeKit {

// The colour of "#RRGGBB", "RRGGBB" or a name that libxlsxwriter knows, in any case; LXW_COLOR_UNSET for all
// other texts.
lxw_color_t ParseColor(const std::string& text);

// The formats of one workbook. The library keeps each one until the workbook is closed, and callers come with
// a new record for each cell: equal ones share one.
class CCellFormats
{
public:
    explicit CCellFormats(lxw_workbook* workbook) : workbook_(workbook) {}

    // The library's format of the record; null for none, or if the format's limit of styles is reached.
    lxw_format* Get(const Clxw_format_* record);

private:
    // What a record comes to: background, text colour, size, bold, location, wrap.
    using Look = std::tuple<lxw_color_t, lxw_color_t, int, bool, int, bool>;
    struct Recent
    {
        Clxw_format_ record;
        lxw_format* format = nullptr;
    };

    lxw_format* Find(const Clxw_format_& record);
    lxw_format* Make(const Look& look);

    lxw_workbook* workbook_;
    std::map<Look, lxw_format*> formats_;
    // A report has a handful of formats, one or a few a column.
    std::array<Recent, 8> recent_;
    std::size_t hit_ = 0;
    std::size_t next_ = 0;
    bool limit_was_told_ = false;
};

}  // namespace ZellOfficeKit
