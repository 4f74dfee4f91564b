#include "Platform/NumberLocale.h"

#include <locale.h>
#include <stdlib.h>
#include <string.h>

namespace ZellOfficeKit {

CNumberLocale::CNumberLocale()
{
    previous_ = _configthreadlocale(_ENABLE_PER_THREAD_LOCALE);
    const char* now = setlocale(LC_NUMERIC, nullptr);
    own_ = reinterpret_cast<std::intptr_t>(now == nullptr ? nullptr : _strdup(now));
    setlocale(LC_NUMERIC, "C");
}

CNumberLocale::~CNumberLocale()
{
    char* name = reinterpret_cast<char*>(own_);
    if (name != nullptr)
        setlocale(LC_NUMERIC, name);
    free(name);
    _configthreadlocale(static_cast<int>(previous_));
}

}  // namespace ZellOfficeKit
