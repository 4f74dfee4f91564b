#pragma once

#include "ZellBase/Export.h"

#if defined(NQX_BUILD)
#define NQX_API ZELL_SYMBOL_EXPORT
#else
#define NQX_API ZELL_SYMBOL_IMPORT
#endif
