#include "NQX/NQX.h"
#include "NQXHost/Path.h"
#include "NQXHost/ProgramSearch.h"
#include "NQXHost/SystemText.h"

#include <io.h>
#include <windows.h>

std::string NQX_FindProgram(const std::string& name)
{
    return name;
}

int NQX_AccessFile(const char* path, int mode)
{
    if (_waccess(NQX_Path(NQX_PathText(path)).c_str(), mode) == 0)
        return 0;
    NQX_SetLastError(static_cast<int>(GetLastError()));
    return -1;
}
