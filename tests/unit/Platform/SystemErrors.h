#pragma once

// The system's own numbers for why a file operation failed.
namespace SystemErrors {

extern const int kNotThere;  // no file of that name
extern const int kNoPath;    // a folder on the way to it is missing
extern const int kExists;
extern const int kNoFolder;  // it is something else
extern const int kTooSmall;  // what is to hold the answer

}  // namespace SystemErrors
