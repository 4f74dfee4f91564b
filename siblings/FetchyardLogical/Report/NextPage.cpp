#include "Report/NextPage.h"

#include <cstdlib>
#include <limits>
#include <string_view>

namespace FetchyardLogical::details {

namespace {

constexpr std::string_view kKey = "\"PageIndex\":";

}

long PageInRequest(const std::string& request)
{
    const std::size_t key = request.find(kKey);
    return key == std::string::npos ? 0 : std::strtol(request.c_str() + key + kKey.size(), nullptr, 10);
}

std::string RequestOfNextPage(const std::string& request)
{
    const long page = PageInRequest(request);
    if (page < 1 || page >= std::numeric_limits<int>::max())
        return {};
    const std::size_t number = request.find(kKey) + kKey.size();
    const std::size_t end = request.find(',', number);
    if (end == std::string::npos)
        return {};
    return request.substr(0, number) + std::to_string(page + 1) + request.substr(end);
}

}  // namespace FetchyardLogical::details
