#include "FetchyardBussiness/Folders.h"

#include "ZellBase/FileSystem.h"

namespace FetchyardBussiness {

namespace FileSystem = Zell::Base::FileSystem;

bool EnsureFolder(const std::string& folder)
{
    return FileSystem::DirectoryExists(folder.c_str()) == 0 || FileSystem::MakeFullDir(folder.c_str()) == 0;
}

}  // namespace FetchyardBussiness
