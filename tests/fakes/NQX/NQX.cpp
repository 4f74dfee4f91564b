#include "NQX/NQX.h"

#include "fakes/Journal.h"
#include "fakes/Script.h"

namespace {

thread_local int last_error = 0;

}

int NQX_GetLastError()
{
    return last_error;
}

void NQX_SetLastError(int error)
{
    last_error = error;
}

int NQX_AccessFile(const char* path, int mode)
{
    const bool succeeds = fakes::Call("NQX_AccessFile", std::string(path) + " " + std::to_string(mode));
    return succeeds ? fakes::TheScript().access_result : -1;
}
