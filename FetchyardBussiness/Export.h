#pragma once

#include "ZellBase/Export.h"

#if defined(FETCHYARDBUSSINESS_BUILD)
#define FETCHYARD_API ZELL_SYMBOL_EXPORT
#else
#define FETCHYARD_API ZELL_SYMBOL_IMPORT
#endif
