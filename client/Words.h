#pragma once

#include "ZellTaskKit/DownloadTypes.h"

#include <chrono>
#include <string>

// How the client says things to a person.
namespace FetchyardClient {

// A task's state in a word or two: "running", "finished", "stopped" ...
std::string StateWords(ZellTaskKit::DownloadState state);
// 4 or 10: all done.
bool IsSuccess(ZellTaskKit::DownloadState state);
// 5 or 11: given up.
bool IsFailure(ZellTaskKit::DownloadState state);
// 6 or 12: ended because it was asked to.
bool IsStopped(ZellTaskKit::DownloadState state);
// "1,234,567"
std::string GroupedNumber(unsigned long long number);
// Bytes in binary units, as "12.3 MiB".
std::string SizeWords(unsigned long long bytes);
// "01:02", "1:02:03"
std::string DurationWords(std::chrono::milliseconds duration);
// What an account has left after a refused password, of the two texts that the server gave; empty if it gave
// none.
std::string RemainingLoginWords(const std::string& count, const std::string& type);

}  // namespace FetchyardClient
