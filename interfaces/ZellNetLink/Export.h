#pragma once

#include "ZellBase/Export.h"

#if defined(ZELLNETLINK_BUILD)
#define ZELLNETLINK_API ZELL_SYMBOL_EXPORT
#else
#define ZELLNETLINK_API ZELL_SYMBOL_IMPORT
#endif
