#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

// Streams over files, with paths in UTF-8 and places beyond 2 GB.
namespace Zell::MultimediaComm {

struct StreamCloser
{
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, StreamCloser>;

// All three empty on failure, with the reason in LastSystemError. A folder can't be opened.
Stream OpenToRead(const std::string& path);
Stream OpenToWrite(const std::string& path);  // creates the file, or empties the one that is there
// A new file, open for both. A fleeting one is the user's own and goes with the stream, however the process
// ends; on POSIX it has no name any more.
Stream CreateWorkStream(const std::string& path, bool is_fleeting);

bool SeekTo(std::FILE* stream, std::int64_t place);
// Bytes of the file; -1 if that can't be told.
std::int64_t SizeOf(std::FILE* stream);
// Closes; false if the last bytes did not reach the file.
bool Close(Stream stream);

// Of the calling thread's last call that failed: a number for an error pair of module 0.
int LastSystemError();
// The words of such a number.
std::string SystemErrorText(int error);

// True if the entry has the name now; otherwise is_other_system says whether a copy would help.
bool RenameEntry(const std::string& source, const std::string& target, bool& is_other_system);

}  // namespace Zell::MultimediaComm
