#include "ZellOfficeKitHost/OfficeFolders.h"

#include "NQXHost/Path.h"
#include "OfficeFiles.h"
#include "ZellBase/FileSystem.h"
#include "ZellBase/Util.h"

#include <QDir>

#include <filesystem>
#include <fstream>
#include <mutex>

namespace ZellOfficeKit {
namespace {

namespace fs = std::filesystem;

struct Shared
{
    std::mutex mutex;
    std::string folder;
};

// Never destroyed: threads may still work while the process leaves.
Shared& SharedFolder()
{
    static auto* shared = new Shared;
    return *shared;
}

std::string DefaultFolder()
{
    const QString user = QDir::home().dirName();
    return (QDir::tempPath() + "/fetchyard-office-" + user).toStdString();
}

bool MakeOwnFolder(const fs::path& folder)
{
    std::error_code error;
    if (fs::is_directory(folder, error))
        return true;
    fs::create_directories(folder, error);
    if (error)
        return false;
    // Reports may hold what only this user is meant to see.
    fs::permissions(folder, fs::perms::owner_all, error);
    return true;
}

bool TryFile(const fs::path& path)
{
    const bool opened = std::ofstream(path, std::ios::binary).is_open();
    std::error_code error;
    return opened && fs::remove(path, error);
}

}  // namespace

void SetWorkFolder(const std::string& folder)
{
    std::string own = folder;
    while (own.size() > 1 && (own.back() == '/' || own.back() == '\\'))
        own.pop_back();
    Shared& shared = SharedFolder();
    const std::lock_guard lock(shared.mutex);
    shared.folder = std::move(own);
}

std::string WorkFolder()
{
    Shared& shared = SharedFolder();
    const std::lock_guard lock(shared.mutex);
    return shared.folder.empty() ? DefaultFolder() : shared.folder;
}

std::string SetAsideFolder()
{
    return WorkFolder() + "/set-aside";
}

std::string PrepareWorkFolder()
{
    std::string folder = WorkFolder();
    const fs::path path = fs::u8path(folder);
    if (!MakeOwnFolder(path) || !TryFile(path / Zell::Base::GuidUtil::CreateGuid()))
        return {};
    return folder;
}

bool MoveIntoPlace(const std::string& source, const std::string& target)
{
    std::error_code error;
    fs::rename(NQX_Path(source), NQX_Path(target), error);
    if (!error)
        return true;
    const fs::path beside = NQX_Path(target).parent_path() / ("." + Zell::Base::GuidUtil::CreateGuid());
    if (Zell::Base::FileSystem::CopyFileW(source.c_str(), beside.u8string().c_str(), 0) != 0) {
        fs::remove(beside, error);
        return false;
    }
    fs::rename(beside, NQX_Path(target), error);
    if (error) {
        std::error_code ignored;
        fs::remove(beside, ignored);
        return false;
    }
    fs::remove(NQX_Path(source), error);
    return true;
}

std::string MoveAside(const std::string& path, const std::string& name, const std::string& what)
{
    std::error_code error;
    const fs::file_status status = fs::status(NQX_Path(path), error);
    if (!fs::exists(status))
        return {};
    if (!fs::is_regular_file(status))
        return what + " is no plain file and stays";
    const std::string folder = SetAsideFolder();
    const fs::path own = fs::u8path(name);
    const std::string target = folder + "/" + own.stem().u8string() + "-" +
                               Zell::Base::GuidUtil::CreateGuid() + own.extension().u8string();
    if (MakeOwnFolder(fs::u8path(folder)) && MoveIntoPlace(path, target))
        return what + " is now " + target;
    const bool is_removed = fs::remove(NQX_Path(path), error);
    return what + (is_removed ? " was removed" : " can't be removed");
}

bool CanBeCreated(const std::string& path)
{
    const fs::path target = NQX_Path(path);
    std::error_code error;
    const fs::file_status status = fs::status(target, error);
    if (!fs::exists(status))
        return TryFile(target);
    // The workbook replaces what is there, so the folder must take a new entry.
    return fs::is_regular_file(status) &&
           TryFile(target.parent_path() / ("." + Zell::Base::GuidUtil::CreateGuid()));
}

std::string NameOfPath(const std::string& path)
{
    return fs::u8path(path).filename().u8string();
}

}  // namespace ZellOfficeKit
