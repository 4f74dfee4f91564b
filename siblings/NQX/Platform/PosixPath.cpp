#include "NQXHost/Path.h"

std::filesystem::path NQX_Path(const std::string& utf8)
{
    return std::filesystem::u8path(utf8);
}
