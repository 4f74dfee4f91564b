#include "Platform/SystemErrors.h"

#include <windows.h>

const int SystemErrors::kNotThere = ERROR_FILE_NOT_FOUND;
const int SystemErrors::kNoPath = ERROR_PATH_NOT_FOUND;
const int SystemErrors::kExists = ERROR_ALREADY_EXISTS;
const int SystemErrors::kNoFolder = ERROR_DIRECTORY;
const int SystemErrors::kTooSmall = ERROR_INSUFFICIENT_BUFFER;
