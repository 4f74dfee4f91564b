#pragma once

#include "fakes/Export.h"

#include <functional>
#include <string>
#include <vector>

// What all fakes write to, and how a test makes their calls fail or comes in between. Any thread, except
// Reset, which belongs between two tests.
namespace fakes {

// For the fakes. Adds one line to the journal.
FAKES_API void Append(const std::string& line);
// For the fakes: a call of an operation. Adds "operation arguments", counts the call, runs what a test has
// bound to it (on the calling thread, no lock held) and returns whether the call is to succeed. A call that
// is to fail has " -> fails" behind its line.
FAKES_API bool Call(const std::string& operation, const std::string& arguments);

// For the fakes: the next number of a series, 1 first; without a line.
FAKES_API int NextNumber(const std::string& series);

// The lines since the last Take.
FAKES_API std::vector<std::string> Take();
// The same as one text, with a line feed behind each line.
FAKES_API std::string TakeText();
// Without recording the journal stays empty; calls are counted all the same.
FAKES_API void SetRecording(bool on);
// From now on the text shows as the alias in every line: folders that differ from run to run.
FAKES_API void SetAlias(const std::string& text, const std::string& alias);

// How often the operation was called since Reset.
FAKES_API int CountOf(const std::string& operation);
// Lets the first-th call of the operation since Reset (1 is the first) and those behind it fail, count in
// all; -1 is for good.
FAKES_API void FailCalls(const std::string& operation, int first, int count);
// Runs the action inside the number-th call of the operation since Reset.
FAKES_API void OnCall(const std::string& operation, int number, std::function<void()> action);

// Everything as at the start of the process, the script included.
FAKES_API void Reset();

}  // namespace fakes
