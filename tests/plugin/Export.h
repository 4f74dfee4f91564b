#pragma once

#include "ZellBase/Export.h"

// A function that a plug-in of the tests offers under its plain name.
#define PLUGIN_FUNCTION extern "C" ZELL_SYMBOL_EXPORT
