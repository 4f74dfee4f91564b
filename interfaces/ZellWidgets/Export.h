#pragma once

#include "ZellBase/Export.h"

#if defined(ZELLWIDGETS_BUILD)
#define ZELLWIDGETS_API ZELL_SYMBOL_EXPORT
#else
#define ZELLWIDGETS_API ZELL_SYMBOL_IMPORT
#endif
