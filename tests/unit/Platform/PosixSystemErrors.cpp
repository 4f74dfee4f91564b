#include "Platform/SystemErrors.h"

#include <cerrno>

const int SystemErrors::kNotThere = ENOENT;
const int SystemErrors::kNoPath = ENOENT;
const int SystemErrors::kExists = EEXIST;
const int SystemErrors::kNoFolder = ENOTDIR;
const int SystemErrors::kTooSmall = ERANGE;
