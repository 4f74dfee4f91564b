#pragma once

#include <string>
#include <vector>

// What differs between systems in the file layer. Paths are UTF-8. 0 or the system's error number, except
// where said.
namespace Zell::Base::details {

struct FileFacts
{
    bool is_folder = false;
    bool is_link = false;  // a symbolic link; the other facts are those of its target
    long long size = 0;
    long long time = 0;  // last change, seconds since 1970
};

int ReadFileFacts(const std::string& path, FileFacts& facts);
// handle is not touched on failure.
int OpenForWriting(const std::string& path, bool truncate, unsigned int attributes, void*& handle);
int WriteWhole(void* handle, const char* data, unsigned int size, unsigned int& written);
int CloseHandleOf(void* handle);
int RemoveFile(const std::string& path);
int CopyWhole(const std::string& source, const std::string& target, bool fail_if_exists);
// sets is_other_system if the two lie on different file systems.
int Rename(const std::string& source, const std::string& target, bool& is_other_system);
// The names in a folder but for "." and "..", in no order; what was read before an error stays in names.
int ListNames(const std::string& folder, std::vector<std::string>& names);
// With all that is in it. Links go, and not what they point to.
int RemoveWholeFolder(const std::string& folder);
// Full path of the running program; empty if the system does not tell.
std::string ProgramPath();

// The system's numbers for what the common code finds wrong itself.
extern const int kErrorNotThere;
extern const int kErrorNoFolder;
extern const int kErrorBadArgument;
extern const int kErrorTooSmall;

}  // namespace Zell::Base::details
