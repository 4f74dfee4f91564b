#pragma once

#include "ZellBase/Export.h"

#if defined(FAKE_JOURNAL_BUILD)
#define FAKES_API ZELL_SYMBOL_EXPORT
#else
#define FAKES_API ZELL_SYMBOL_IMPORT
#endif
