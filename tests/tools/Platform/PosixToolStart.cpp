#include "Platform/ToolStart.h"

#include <cstdlib>
#include <filesystem>

namespace tools {

void WriteStart(std::ostream& out, int count, char** arguments)
{
    for (int i = 1; i < count; ++i)
        out << "argument " << arguments[i] << '\n';
    out << "folder " << std::filesystem::current_path().u8string() << '\n';
}

std::string Variable(const char* name)
{
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

}  // namespace tools
