#pragma once

#include "ZellBase/Export.h"

#if defined(ZELLCLIENTHOST_BUILD)
#define ZELLCLIENTHOST_API ZELL_SYMBOL_EXPORT
#else
#define ZELLCLIENTHOST_API ZELL_SYMBOL_IMPORT
#endif
