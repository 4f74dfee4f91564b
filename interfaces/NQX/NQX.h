#pragma once

#include "NQX/Export.h"

// The portable runtime below ZellBase.

// The system error of the calling thread's last failed call of NQX or Zell::Base::FileSystem (errno on
// POSIX, GetLastError on Windows); 0 if there was none.
NQX_API int NQX_GetLastError();
// Sets that value; for ZellBase.
NQX_API void NQX_SetLastError(int error);

// Whether a file may be reached: mode 0 it exists, 2 it can be written, 4 it can be read. 0 yes, -1 no.
// A plain name that ends in ".exe" and does not exist in the working directory is, on POSIX, looked for
// without that suffix in the program search path, so that the answer agrees with what a start would find.
NQX_API int NQX_AccessFile(const char* path, int mode);
