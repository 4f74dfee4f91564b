#include "Platform/NumberLocale.h"

#include <locale.h>
#include <stdlib.h>
#include <string.h>

namespace ZellOfficeKit {

CNumberLocale::CNumberLocale()
{
    previous_ = _configthreadlocale(_ENABLE_PER_THREAD_LOCALE) == _ENABLE_PER_THREAD_LOCALE ? this : nullptr;
    const char* now = setlocale(LC_NUMERIC, nullptr);
    own_ = now == nullptr ? nullptr : _strdup(now);
    setlocale(LC_NUMERIC, "C");
}

CNumberLocale::~CNumberLocale()
{
    if (own_ != nullptr)
        setlocale(LC_NUMERIC, static_cast<char*>(own_));
    free(own_);
    // Not null: the thread had a locale of its own before.
    if (previous_ == nullptr)
        _configthreadlocale(_DISABLE_PER_THREAD_LOCALE);
}

}  // namespace ZellOfficeKit
