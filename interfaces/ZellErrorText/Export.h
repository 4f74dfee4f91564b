#pragma once

#include "ZellBase/Export.h"

#if defined(ZELLERRORTEXT_BUILD)
#define ZELLERRORTEXT_API ZELL_SYMBOL_EXPORT
#else
#define ZELLERRORTEXT_API ZELL_SYMBOL_IMPORT
#endif
