#pragma once

#include "ZellBase/Error.h"

#include <QString>

namespace FetchyardBussiness {

// Module of this library's own error codes, and the codes.
inline constexpr int kErrorModule = 20;
enum FetchyardError : int {
    kErrorBadInput = 3,
    kErrorLocalStoragePicture = 2316,
    kErrorPicture = 2330,
    kErrorServerGenerate = 3201,
    kErrorStopped = 3209,
    kErrorFolder = 3215,
    kErrorExportData = 3219,
    kErrorFetch = 3605,
    kErrorUnreachable = 3606,
};

constexpr Zell::Base::Error::ErrorCode OwnError(FetchyardError code)
{
    return Zell::Base::Error::ErrorCode(2, kErrorModule, code);
}

// The message text of an error, for a report cell.
QString ErrorMessage(const Zell::Base::Error::ErrorCode& error);

}  // namespace FetchyardBussiness
