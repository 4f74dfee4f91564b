#include "FetchyardBussiness/DeterminantWriteFile/PageRequest.h"

namespace FetchyardBussiness {

std::string RewritePage(const std::string& text, int page)
{
    const std::size_t key = text.find(kPageIndexKey);
    if (key == std::string::npos)
        return {};
    const std::size_t end = text.find(',', key);
    if (end == std::string::npos)
        return {};
    return text.substr(0, key) + kPageIndexKey + std::to_string(page) + text.substr(end);
}

}  // namespace FetchyardBussiness
