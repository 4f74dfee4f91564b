#pragma once

#include "ZellBase/Export.h"

namespace Zell::Base::Error {

// An error as a pair of numbers: the module it comes from and the code within that module. (0, 0) is none.
struct ErrorCode
{
    int iFirstCode = 0;
    int iSecondCode = 0;

    constexpr ErrorCode() = default;
    // A system error is ErrorCode(0, NQX_GetLastError()).
    constexpr ErrorCode(int first, int second) : iFirstCode(first), iSecondCode(second) {}
    // The kind is not kept.
    constexpr ErrorCode(int /*kind*/, int module, int code) : iFirstCode(module), iSecondCode(code) {}
};

// The last error of the calling thread; (0, 0) on a new thread. Only the engine clears it, before each run.
ZELLBASE_API void SetLastError(const ErrorCode& error);
ZELLBASE_API ErrorCode GetLastError();

}  // namespace Zell::Base::Error
