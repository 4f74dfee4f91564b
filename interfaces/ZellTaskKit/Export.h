#pragma once

#include "ZellBase/Export.h"

#if defined(ZELLTASKKIT_BUILD)
#define ZELLTASKKIT_API ZELL_SYMBOL_EXPORT
#else
#define ZELLTASKKIT_API ZELL_SYMBOL_IMPORT
#endif
