#include "NQX/NQX.h"
#include "NQXHost/ProgramSearch.h"
#include "NQXHost/SystemText.h"

#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

constexpr std::string_view kProgramSuffix = ".exe";

bool IsPlainName(const std::string& name)
{
    return !name.empty() && name.find('/') == std::string::npos;
}

bool HasProgramSuffix(const std::string& name)
{
    if (name.size() <= kProgramSuffix.size())
        return false;
    const std::size_t stem = name.size() - kProgramSuffix.size();
    return strncasecmp(name.c_str() + stem, kProgramSuffix.data(), kProgramSuffix.size()) == 0;
}

bool IsProgram(const std::string& path)
{
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && access(path.c_str(), X_OK) == 0;
}

std::string SearchPath(const std::string& name)
{
    const char* variable = std::getenv("PATH");
    std::string_view folders = variable != nullptr ? variable : "/usr/local/bin:/usr/bin:/bin";
    for (bool more = true; more;) {
        const std::size_t colon = folders.find(':');
        const std::string_view folder = folders.substr(0, colon);
        std::string candidate = folder.empty() ? "." : std::string(folder);
        candidate += "/" + name;
        if (IsProgram(candidate))
            return candidate;
        more = colon != std::string_view::npos;
        if (more)
            folders.remove_prefix(colon + 1);
    }
    return {};
}

}  // namespace

std::string NQX_FindProgram(const std::string& name)
{
    if (!IsPlainName(name))
        return name;
    std::string in_working_directory = "./" + name;
    if (access(in_working_directory.c_str(), F_OK) == 0)
        return in_working_directory;
    if (HasProgramSuffix(name))
        return SearchPath(name.substr(0, name.size() - kProgramSuffix.size()));
    return SearchPath(name);
}

int NQX_AccessFile(const char* path, int mode)
{
    std::string file = NQX_PathText(path);
    if (IsPlainName(file) && HasProgramSuffix(file))
        file = NQX_FindProgram(file);
    int wanted = F_OK;
    if ((mode & 2) != 0)
        wanted |= W_OK;
    if ((mode & 4) != 0)
        wanted |= R_OK;
    if (access(file.c_str(), wanted) == 0)
        return 0;
    NQX_SetLastError(errno);
    return -1;
}
