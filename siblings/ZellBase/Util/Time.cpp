#include "Platform/Process.h"
#include "ZellBase/Util.h"

namespace Zell::Base::TimeUtil {

std::string TimeT2StrShortDatetime(std::int64_t time)
{
    std::tm date = {};
    // It names folders, so a time beyond the calendar still gives a text that can be one.
    if (!details::LocalTime(time, date))
        return std::to_string(time);
    return StringUtil::str_fmt("%04d%02d%02d_%02d%02d%02d", date.tm_year + 1900, date.tm_mon + 1,
                               date.tm_mday, date.tm_hour, date.tm_min, date.tm_sec);
}

}  // namespace Zell::Base::TimeUtil
