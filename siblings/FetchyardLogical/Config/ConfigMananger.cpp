#include "FetchyardLogical/ConfigMananger.h"

#include "Log.h"
#include "ZellBase/FileSystem.h"
#include "ZellBase/Util.h"
#include "ZellNetLink/RapidJsonProto.h"
#include "ZellTaskKit/ClientServices.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>

ZELL_SINGLETON_DEFINE(FetchyardLogical::CConfigMananger)

namespace FetchyardLogical {

namespace {

namespace FileSystem = Zell::Base::FileSystem;

constexpr char kFileName[] = "fetchyard.json";
constexpr char kSavePath[] = "/SavePath";

// Updates read the file, change it and replace it: one at a time. Not every system lets a file be replaced
// while somebody reads it, so readers wait, too.
std::mutex& FileMutex()
{
    static auto* const mutex = new std::mutex;
    return *mutex;
}

std::string FilePath()
{
    return ZellTaskKit::CFrameSystemConfigMgr::Instance().GetClientDataPath() + kFileName;
}

// False if the file is not there, can't be read or is no JSON.
bool ReadConfiguration(const std::string& path, ZellNetLink::CRapidJsonProto& json)
{
    std::ifstream file(std::filesystem::u8path(path), std::ios::binary);
    if (!file)
        return false;
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    return !file.bad() && json.set_str(text);
}

bool WriteWhole(const std::string& path, std::string text)
{
    void* const handle =
        FileSystem::OpenFile(path.c_str(), FileSystem::kOpenTruncate, FileSystem::kAttributesPlain);
    if (reinterpret_cast<std::intptr_t>(handle) == -1)
        return false;
    unsigned int written = 0;
    const bool is_written =
        FileSystem::WriteFile(handle, text.data(), static_cast<unsigned int>(text.size()), &written) == 0;
    return FileSystem::CloseFile(handle) == 0 && is_written;
}

// The file under its name is always whole: the text is written beside it and takes its place by a rename.
bool ReplaceConfiguration(const std::string& path, const std::string& text)
{
    const std::string scratch = path + "." + Zell::Base::GuidUtil::CreateGuid();
    if (WriteWhole(scratch, text) && FileSystem::RenameFile(scratch.c_str(), path.c_str()) == 0)
        return true;
    FileSystem::DeleteFileW(scratch.c_str());
    return false;
}

}  // namespace

bool CConfigMananger::GetConfigurationInfo(ConfigurationInfo& info)
{
    ZellNetLink::CRapidJsonProto json;
    {
        const std::lock_guard<std::mutex> lock(FileMutex());
        if (!ReadConfiguration(FilePath(), json))
            return false;
    }
    const std::string path = json.get_v(kSavePath, std::string());
    if (path.empty())
        return false;
    info.save_path = path;
    return true;
}

bool CConfigMananger::UpdateConfiguration(ConfigurationInfo& info, ConfigurationType type)
{
    if (type != SavePathConfiguration)
        return false;
    const std::lock_guard<std::mutex> lock(FileMutex());
    const std::string path = FilePath();
    ZellNetLink::CRapidJsonProto json;
    // What is no configuration is written anew; members of other versions stay.
    if (!ReadConfiguration(path, json) || !json.set_v(kSavePath, info.save_path))
        json.clear();
    const std::string folder = ZellTaskKit::CFrameSystemConfigMgr::Instance().GetClientDataPath();
    if (json.set_v(kSavePath, info.save_path) && FileSystem::MakeFullDir(folder.c_str()) == 0 &&
        ReplaceConfiguration(path, json.get_str(0)))
        return true;
    FETCHYARD_LOGICAL_LOG(5, "FetchyardLogical::CConfigMananger::UpdateConfiguration", "%s can't be written",
                          path.c_str());
    return false;
}

}  // namespace FetchyardLogical
