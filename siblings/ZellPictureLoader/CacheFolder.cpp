#include "CacheFolder.h"

#include "NQX/NQX.h"
#include "ZellBase/FileSystem.h"
#include "ZellBase/Util.h"

#include <cerrno>
#include <filesystem>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

namespace ZellPictureLoader {
namespace {

namespace FileSystem = Zell::Base::FileSystem;
using Zell::Base::Error::ErrorCode;

constexpr std::string_view kLockSuffix = ".lock";
constexpr int kLockAttempts = 8;  // a sweep of another client can get in between

std::string WithFinalSlash(std::string folder)
{
    if (folder.empty() || (folder.back() != '/' && folder.back() != '\\'))
        folder += '/';
    return folder;
}

// Only names of our own making are ever removed: the root may be a folder that others use too.
bool IsGuid(std::string_view name)
{
    constexpr std::string_view kPattern = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
    if (name.size() != kPattern.size())
        return false;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const bool hex = (name[i] >= '0' && name[i] <= '9') || (name[i] >= 'a' && name[i] <= 'f');
        if (kPattern[i] == '-' ? name[i] != '-' : !hex)
            return false;
    }
    return true;
}

std::set<std::string> FindFolderNames(const std::string& root)
{
    std::set<std::string> names;
    std::error_code problem;
    std::filesystem::directory_iterator entry(std::filesystem::u8path(root), problem);
    for (; !problem && entry != std::filesystem::directory_iterator(); entry.increment(problem)) {
        std::string name = entry->path().filename().u8string();
        if (name.size() > kLockSuffix.size() &&
            std::string_view(name).substr(name.size() - kLockSuffix.size()) == kLockSuffix)
            name.resize(name.size() - kLockSuffix.size());
        if (IsGuid(name))
            names.insert(std::move(name));
    }
    return names;
}

// An owner takes its lock before it makes its folder, so a lock that can be had belongs to nobody alive.
void RemoveFoldersWithoutOwner(const std::string& root)
{
    for (const std::string& name : FindFolderNames(root)) {
        const std::unique_ptr<CFolderLock> lock = CFolderLock::Take(root + name + std::string(kLockSuffix));
        if (lock != nullptr && FileSystem::DirectoryExists((root + name).c_str()) == 0)
            FileSystem::RemoveDirRecursively((root + name).c_str());
    }
}

}  // namespace

std::shared_ptr<CCacheFolder> CCacheFolder::Make(const std::string& root_text, ErrorCode& error)
{
    const std::string root = WithFinalSlash(root_text);
    if (FileSystem::MakeFullDir(root.c_str()) != 0) {
        error = ErrorCode(0, NQX_GetLastError());
        return nullptr;
    }
    RemoveFoldersWithoutOwner(root);
    for (int attempt = 0; attempt < kLockAttempts; ++attempt) {
        const std::string path = root + Zell::Base::GuidUtil::CreateGuid();
        std::unique_ptr<CFolderLock> lock = CFolderLock::Take(path + std::string(kLockSuffix));
        if (lock == nullptr)
            continue;
        if (FileSystem::MakeFullDir(path.c_str()) != 0) {
            error = ErrorCode(0, NQX_GetLastError());
            return nullptr;
        }
        return std::shared_ptr<CCacheFolder>(new CCacheFolder(path + "/", std::move(lock)));
    }
    error = ErrorCode(0, EACCES);
    return nullptr;
}

CCacheFolder::CCacheFolder(std::string path, std::unique_ptr<CFolderLock> lock)
    : path_(std::move(path)), lock_(std::move(lock))
{
}

CCacheFolder::~CCacheFolder()
{
    FileSystem::RemoveDirRecursively(path_.c_str());
    lock_ = nullptr;
    gone_.set_value();
}

std::string CCacheFolder::NewFile()
{
    return path_ + std::to_string(next_file_.fetch_add(1, std::memory_order_relaxed));
}

}  // namespace ZellPictureLoader
