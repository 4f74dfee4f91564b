#pragma once

#include "ZellBase/Export.h"

#if defined(ZELLASSETBOOK_BUILD)
#define ZELLASSETBOOK_API ZELL_SYMBOL_EXPORT
#else
#define ZELLASSETBOOK_API ZELL_SYMBOL_IMPORT
#endif
