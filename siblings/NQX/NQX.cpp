#include "NQX/NQX.h"

namespace {

thread_local int last_error = 0;

}  // namespace

int NQX_GetLastError()
{
    return last_error;
}

void NQX_SetLastError(int error)
{
    last_error = error;
}
