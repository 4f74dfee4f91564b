#pragma once

#include "ZellBase/Export.h"

#include <cstdint>
#include <string>

// The functions that others find in this module by their names. Any thread; none lets an exception out.
#define CLIPVAULT_FUNCTION extern "C" ZELL_SYMBOL_EXPORT

// For the host: begins to serve, and ends it. StopPlugin stops all downloads and returns when none is left
// that came through an interface path. One that was started by the function below returns soon after.
CLIPVAULT_FUNCTION bool StartPlugin();
CLIPVAULT_FUNCTION void StopPlugin();

// Carries out the download that the JSON request describes and returns when it has ended. True: all files are
// there, or somebody stopped it, and then none is. False: it failed. The response says how it went in any
// case; see the plug-in's document for both texts. The first argument is not used.
CLIPVAULT_FUNCTION bool StartDownloadVideoFile(const std::string& first, const std::string& request,
                                               std::string& response);
// Bytes that have arrived for the download of that GUID; 0 for one that is not known.
CLIPVAULT_FUNCTION std::int64_t GetVideoDownloadedSize(const std::string& guid);
// Makes the start of that GUID return, within 200 ms; only signals, and returns at once. One that has not
// begun ends as soon as it does.
CLIPVAULT_FUNCTION void StopDownloadVideoFile(const std::string& guid);
// Forgets what is known of the GUID.
CLIPVAULT_FUNCTION void RemoveDownloader(const std::string& guid);
