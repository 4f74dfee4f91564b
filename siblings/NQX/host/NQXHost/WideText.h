#pragma once

#include "NQX/Export.h"

#include <string>

// UTF-8 to the text of the system's wide calls and back. Windows only.
NQX_API std::wstring NQX_WideText(const std::string& utf8);
NQX_API std::string NQX_NarrowText(const std::wstring& wide);
