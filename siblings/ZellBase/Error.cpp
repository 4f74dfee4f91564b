#include "ZellBase/Error.h"

namespace Zell::Base::Error {
namespace {

thread_local ErrorCode last_error;

}  // namespace

void SetLastError(const ErrorCode& error)
{
    last_error = error;
}

ErrorCode GetLastError()
{
    return last_error;
}

}  // namespace Zell::Base::Error
