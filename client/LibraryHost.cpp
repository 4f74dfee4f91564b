#include "LibraryHost.h"

#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "FetchyardLogicalHost/EngineHost.h"
#include "ZellBase/FileSystem.h"
#include "ZellBase/Log.h"
#include "ZellBase/Util.h"
#include "ZellBaseHost/LogHost.h"
#include "ZellClientHostSettings/Plugins.h"
#include "ZellOfficeKitHost/OfficeFolders.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibrary>

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace FetchyardClient {

using FetchyardBussiness::CDownloadBussinessManager;

namespace {

// Where the archive step and the PDF tool put what is not finished yet.
constexpr char kScratchFolder[] = "Fetchyard/";
constexpr char kTaskStore[] = "tasks.db";

// Tools that the library starts work in folders of their own, so a path must not depend on this one's.
std::string AbsoluteFolder(const std::string& given)
{
    std::string folder =
        QDir::cleanPath(QDir().absoluteFilePath(QString::fromStdString(given))).toStdString();
    for (char& letter : folder) {
        if (letter == '\\')
            letter = '/';
    }
    if (!folder.empty() && folder.back() != '/')
        folder += '/';
    return folder;
}

bool MakeFolder(const std::string& folder, std::string& reason)
{
    if (Zell::Base::FileSystem::MakeFullDir(folder.c_str()) == 0)
        return true;
    reason = "the folder " + folder + " can't be made";
    return false;
}

void ApplyOptions(const HostOptions& options, ZellClientHost::ClientSettings& settings)
{
    if (!options.save_folder.empty())
        settings.save_path = AbsoluteFolder(options.save_folder);
    if (settings.save_path.empty())
        settings.save_path = settings.data_path + "Exports/";
    if (!options.station.empty())
        settings.sites[0] = options.station;
    for (const auto& [site, address] : options.sites)
        settings.sites[site] = address;
    if (!options.user.empty()) {
        const char* password = std::getenv("FETCHYARD_PASSWORD");
        settings.user_name = options.user;
        settings.password = password != nullptr ? password : "";
    }
}

// The plug-ins that come with the client, as far as they are there: below the folder of the libraries, be it
// the build's, the installation's, or that of the program itself.
std::map<std::string, std::string> OwnPlugins()
{
    constexpr std::pair<const char*, const char*> kOwn[] = {{"clipvault.c", "clipvault"},
                                                            {"evidence.c", "evidence"}};
    const QString programs = QCoreApplication::applicationDirPath();
    std::map<std::string, std::string> found;
    for (const char* folder : {"/../lib/plugins", INSTALLED_PLUGINS, "/plugins"}) {
        for (const QFileInfo& file : QDir(programs + folder).entryInfoList(QDir::Files)) {
            for (const auto& [id, name] : kOwn) {
                if (file.completeBaseName() == name && QLibrary::isLibrary(file.fileName()))
                    found.emplace(id, file.absoluteFilePath().toStdString());
            }
        }
    }
    return found;
}

}  // namespace

bool MakeSettings(const HostOptions& options, ZellClientHost::ClientSettings& settings, std::string& reason)
{
    settings = ZellClientHost::GetClientSettings();
    if (!options.data_folder.empty()) {
        settings.data_path = AbsoluteFolder(options.data_folder);
        settings.public_data_path = settings.data_path + "Public/";
    }
    if (!MakeFolder(settings.data_path, reason))
        return false;
    const std::string file = settings.data_path + "client.json";
    Zell::Base::FileSystem::SearchFileParam search{settings.data_path, false, false};
    std::vector<Zell::Base::FileSystem::FileInfo> files;
    Zell::Base::FileSystem::GetFilesInDir(search, files);
    for (const auto& entry : files) {
        if (entry.name == "client.json" && !ZellClientHost::LoadClientSettings(file, settings, reason))
            return false;
    }
    ApplyOptions(options, settings);
    if (settings.client_guid.empty()) {
        settings.client_guid = Zell::Base::GuidUtil::CreateGuid();
    }
    return MakeFolder(settings.save_path, reason);
}

bool UseSettings(const HostOptions& options, std::string& reason)
{
    ZellClientHost::ClientSettings settings;
    if (!MakeSettings(options, settings, reason))
        return false;
    ZellClientHost::SetClientSettings(settings);
    return true;
}

std::string TaskStoreFile()
{
    return ZellClientHost::GetClientSettings().data_path + kTaskStore;
}

std::string LogFile(const HostOptions& options)
{
    return options.log_file.empty() ? ZellClientHost::GetClientSettings().data_path + "fetchyard.log"
                                    : options.log_file;
}

// Those that the command line names go before the client's own.
bool LibraryHost::LoadPlugins(const HostOptions& options, std::string& reason)
{
    std::map<std::string, std::string> modules = options.plugins;
    if (options.own_plugins)
        modules.merge(OwnPlugins());
    for (const auto& [id, module] : modules) {
        if (!ZellClientHost::LoadPlugin(id, module, reason)) {
            reason.insert(0, "the plug-in " + id + " can't be loaded: ");
            return false;
        }
        plugins_.push_back(id);
    }
    return true;
}

bool LibraryHost::Start(const HostOptions& options, std::string& reason)
{
    if (!UseSettings(options, reason))
        return false;
    const ZellClientHost::ClientSettings settings = ZellClientHost::GetClientSettings();
    if (!scratch_.Open(settings.public_data_path + kScratchFolder, reason))
        return false;
    ZellOfficeKit::SetWorkFolder(settings.data_path + "Office/");
    const std::string log = LogFile(options);
    const int level = options.verbose ? Zell::Base::details::kLogInfo : Zell::Base::details::kLogError;
    if (!Zell::Base::details::SetLogFile(log, level)) {
        reason = "the log " + log + " can't be written";
        return false;
    }
    if (!LoadPlugins(options, reason))
        return false;
    keeps_tasks_ = FetchyardLogical::OpenTaskStore(TaskStoreFile(), store_message_);
    started_ = CDownloadBussinessManager::Instance().Init();
    if (!started_)
        reason = "the download engine can't be started";
    return started_;
}

void LibraryHost::TellStore() const
{
    if (!store_message_.empty())
        std::fprintf(stderr, "%s\n", store_message_.c_str());
}

LibraryHost::~LibraryHost()
{
    if (started_)
        CDownloadBussinessManager::Instance().Unit();
    if (keeps_tasks_)
        FetchyardLogical::CloseTaskStore();
    // No task is left that could call into one.
    for (const std::string& id : plugins_)
        ZellClientHost::StopPlugin(id);
    Zell::Base::details::FlushLog();
}

}  // namespace FetchyardClient
