#pragma once

#include "ZellBase/Export.h"

#if defined(ZELLOFFICEKIT_BUILD)
#define ZELLOFFICEKIT_API ZELL_SYMBOL_EXPORT
#else
#define ZELLOFFICEKIT_API ZELL_SYMBOL_IMPORT
#endif
