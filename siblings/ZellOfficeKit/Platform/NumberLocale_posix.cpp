#include "Platform/NumberLocale.h"

#include <locale.h>

namespace ZellOfficeKit {
namespace {

locale_t AsLocale(std::intptr_t handle)
{
    return reinterpret_cast<locale_t>(handle);
}

}  // namespace

CNumberLocale::CNumberLocale()
{
    // The thread's own locale with another decimal point: texts keep their encoding.
    const locale_t own = newlocale(LC_NUMERIC_MASK, "C", duplocale(uselocale(nullptr)));
    if (own == nullptr)
        return;
    own_ = reinterpret_cast<std::intptr_t>(own);
    previous_ = reinterpret_cast<std::intptr_t>(uselocale(own));
}

CNumberLocale::~CNumberLocale()
{
    if (own_ == 0)
        return;
    uselocale(AsLocale(previous_));
    freelocale(AsLocale(own_));
}

}  // namespace ZellOfficeKit
