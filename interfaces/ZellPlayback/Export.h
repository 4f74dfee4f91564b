#pragma once

#include "ZellBase/Export.h"

#if defined(ZELLPLAYBACK_BUILD)
#define ZELLPLAYBACK_API ZELL_SYMBOL_EXPORT
#else
#define ZELLPLAYBACK_API ZELL_SYMBOL_IMPORT
#endif
