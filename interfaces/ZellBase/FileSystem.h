#pragma once

#include "ZellBase/Export.h"

#include <string>
#include <vector>

// Files and folders. Paths are UTF-8. Every operation returns 0 on success and another number on failure,
// with the reason in NQX_GetLastError of the calling thread, except where said. Any thread.
namespace Zell::Base::FileSystem {

// Opens for writing at the end of the file, which is created if it is missing; the folder must be there.
inline constexpr unsigned int kOpenAppend = 15;
// Creates the file, or empties the one that is there.
inline constexpr unsigned int kOpenTruncate = 22;
// The attributes that every caller passes: a plain file, not to be indexed by the desktop.
inline constexpr unsigned int kAttributesPlain = 8192;

// Where GetFilesInDir looks.
struct SearchFileParam
{
    std::string folder;         // with or without a final separator
    bool recursive = true;      // go into folders below
    bool with_folders = false;  // also list the folders themselves
};

// One file that GetFilesInDir found.
struct FileInfo
{
    std::string name;    // last part of the path
    std::string path;    // folder as given, "/" if it had no separator at its end, and the way below it
    long long size = 0;  // bytes, as they stand on disk now
    long long time = 0;  // last change, seconds since 1970
};

// 0 if the folder exists, another number if it does not or is no folder.
ZELLBASE_API int DirectoryExists(const char* path);
// Creates the folder and its parents; 0 also if it was there.
ZELLBASE_API int MakeFullDir(const char* path);
// What OpenFile returns when it fails.
inline void* NoFile()
{
    return reinterpret_cast<void*>(-1);  // NOLINT(performance-no-int-to-ptr): how the file layer says no
}
// Returns a handle, or NoFile(). flags is kOpenAppend or kOpenTruncate.
ZELLBASE_API void* OpenFile(const char* path, unsigned int flags, unsigned int attributes);
// Writes size bytes (0 to 4 GiB - 1) whole or fails; written, if not null, gets the number of bytes that
// reached the file.
ZELLBASE_API int WriteFile(void* handle, void* data, unsigned int size, unsigned int* written);
ZELLBASE_API int CloseFile(void* handle);
ZELLBASE_API int DeleteFileW(const char* path);
// Copies a file. With 0 as the third argument an existing target is replaced, otherwise the copy fails. A
// failed copy leaves no half target behind.
ZELLBASE_API int CopyFileW(const char* source, const char* target, int fail_if_exists);
// Renames within one file system, or copies and deletes across two. An existing target is replaced.
ZELLBASE_API int RenameFile(const char* source, const char* target);
// Removes the folder with all its content; symbolic links are removed, not followed.
ZELLBASE_API int RemoveDirRecursively(const char* path);
// Writes the folder of the running program with a final "/" and a terminating zero into the buffer; fails if
// size bytes are too few.
ZELLBASE_API int GetCurExePath(char* buffer, int size);
// Appends the files found to the list, in no particular order. Fails if the folder does not exist; a file
// that goes away during the walk is left out.
ZELLBASE_API int GetFilesInDir(const SearchFileParam& search, std::vector<FileInfo>& files);

}  // namespace Zell::Base::FileSystem
