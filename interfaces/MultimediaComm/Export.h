#pragma once

#include "ZellBase/Export.h"

#if defined(MULTIMEDIACOMM_BUILD)
#define MULTIMEDIACOMM_API ZELL_SYMBOL_EXPORT
#else
#define MULTIMEDIACOMM_API ZELL_SYMBOL_IMPORT
#endif
