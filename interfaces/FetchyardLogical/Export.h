#pragma once

#include "ZellBase/Export.h"

#if defined(FETCHYARDLOGICAL_BUILD)
#define FETCHYARDLOGICAL_API ZELL_SYMBOL_EXPORT
#else
#define FETCHYARDLOGICAL_API ZELL_SYMBOL_IMPORT
#endif
