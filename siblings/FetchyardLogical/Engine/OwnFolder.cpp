#include "Engine/OwnFolder.h"

#include "Log.h"
#include "NQXHost/Path.h"
#include "ZellBase/FileSystem.h"
#include "ZellTaskKit/ClientServices.h"

#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace FetchyardLogical::details {

namespace {

// Whether there is nothing to do, as with nearly all: the work below takes its time over a long list.
bool IsNormal(const std::string& folder)
{
    return folder.back() == '/' && folder.find("//") == std::string::npos &&
           folder.find("/.") == std::string::npos && folder.find('\\') == std::string::npos &&
           folder[0] != '.';
}

}  // namespace

std::string NormalFolder(const std::string& folder)
{
    if (folder.empty() || IsNormal(folder))
        return folder;
    std::string normal = fs::u8path(folder).lexically_normal().generic_u8string();
    if (normal.back() != '/')
        normal += '/';
    return normal;
}

bool HoldsNoFile(const std::string& folder)
{
    std::error_code error;
    const fs::path path = NQX_Path(folder);
    if (!fs::exists(path, error))
        return !error;
    fs::recursive_directory_iterator entry(path, error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        // A link counts as a file: where it leads is none of the task's.
        if (entry->is_symlink(error) || !entry->is_directory(error))
            return false;
    }
    return !error;
}

bool IsOrHolds(const std::string& folder, const std::string& other)
{
    return !folder.empty() && other.compare(0, folder.size(), folder) == 0;
}

namespace {

// No task has a root, a client's data folder or what lies above one for its own, whatever its record says.
bool IsSomebodys(const std::string& normal)
{
    auto& folders = ZellTaskKit::CFrameSystemConfigMgr::Instance();
    return normal.empty() || fs::u8path(normal).relative_path().empty() ||
           IsOrHolds(normal, NormalFolder(folders.GetClientDataPath())) ||
           IsOrHolds(normal, NormalFolder(folders.GetClientDataPublicPath()));
}

}  // namespace

bool RemoveOwnFolder(const std::string& folder)
{
    if (IsSomebodys(NormalFolder(folder))) {
        FETCHYARD_LOGICAL_LOG(4, "FetchyardLogical::details::RemoveOwnFolder",
                              "folder %s stays: it is no task's own", folder.c_str());
        return false;
    }
    if (Zell::Base::FileSystem::DirectoryExists(folder.c_str()) != 0 ||
        Zell::Base::FileSystem::RemoveDirRecursively(folder.c_str()) == 0)
        return true;
    FETCHYARD_LOGICAL_LOG(4, "FetchyardLogical::details::RemoveOwnFolder", "folder %s can't be removed",
                          folder.c_str());
    return false;
}

void FolderClaims::Add(const std::string& folder)
{
    if (!folder.empty())
        ++claims_[NormalFolder(folder)];
}

void FolderClaims::Drop(const std::string& folder)
{
    const auto claim = claims_.find(NormalFolder(folder));
    if (claim != claims_.end() && --claim->second == 0)
        claims_.erase(claim);
}

bool FolderClaims::IsFree(const std::string& folder, std::size_t own) const
{
    const std::string normal = NormalFolder(folder);
    std::size_t found = 0;
    for (auto claim = claims_.lower_bound(normal); claim != claims_.end() && IsOrHolds(normal, claim->first);
         ++claim) {
        found += claim->second;
        if (found > own)
            return false;
    }
    return true;
}

}  // namespace FetchyardLogical::details
