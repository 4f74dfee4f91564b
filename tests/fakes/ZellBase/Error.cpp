#include "ZellBase/Error.h"

#include "fakes/Journal.h"

#include <string>

namespace Zell::Base::Error {
namespace {

thread_local ErrorCode last_error;

}

void SetLastError(const ErrorCode& error)
{
    fakes::Append("SetLastError (" + std::to_string(error.iFirstCode) + "," +
                  std::to_string(error.iSecondCode) + ")");
    last_error = error;
}

ErrorCode GetLastError()
{
    return last_error;
}

}  // namespace Zell::Base::Error
