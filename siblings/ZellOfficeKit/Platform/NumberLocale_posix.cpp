#include "Platform/NumberLocale.h"

#include <locale.h>

namespace ZellOfficeKit {
namespace {

locale_t AsLocale(void* handle)
{
    return static_cast<locale_t>(handle);
}

}  // namespace

CNumberLocale::CNumberLocale()
{
    // The thread's own locale with another decimal point: texts keep their encoding.
    const locale_t own = newlocale(LC_NUMERIC_MASK, "C", duplocale(uselocale(nullptr)));
    if (own == nullptr)
        return;
    own_ = own;
    previous_ = uselocale(own);
}

CNumberLocale::~CNumberLocale()
{
    if (own_ == nullptr)
        return;
    uselocale(AsLocale(previous_));
    freelocale(AsLocale(own_));
}

}  // namespace ZellOfficeKit
