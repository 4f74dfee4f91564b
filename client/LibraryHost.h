#pragma once

#include "ScratchFolder.h"
#include "ZellClientHostSettings/ClientSettings.h"

#include <map>
#include <string>
#include <vector>

namespace FetchyardClient {

// What the command line says of the client as a whole.
struct HostOptions
{
    std::string data_folder;  // empty: the user's data folder of the platform
    std::string save_folder;  // empty: what the settings file says
    std::string station;      // address of site 0
    std::map<unsigned int, std::string> sites;
    std::string user;  // its password comes from the environment variable FETCHYARD_PASSWORD
    std::map<std::string, std::string> plugins;  // modules to load, by plug-in id, beside the client's own
    bool own_plugins = true;                     // load the plug-ins that come with the client
    std::string log_file;
    bool verbose = false;
};

// Works out the settings: the platform's defaults, then <data folder>/client.json, then the options. False
// with the reason if the settings file is wrong or the folders can't be made.
bool MakeSettings(const HostOptions& options, ZellClientHost::ClientSettings& settings, std::string& reason);

// MakeSettings, and puts them in force.
bool UseSettings(const HostOptions& options, std::string& reason);

// Where the tasks of all runs are kept, once the settings are in force.
std::string TaskStoreFile();
// Where the log goes, once the settings are in force.
std::string LogFile(const HostOptions& options);

// Hosts the library for the life of the object: settings, log, task store, start; and stops it again.
class LibraryHost
{
public:
    LibraryHost() = default;
    LibraryHost(const LibraryHost&) = delete;
    LibraryHost& operator=(const LibraryHost&) = delete;
    ~LibraryHost();

    // False with the reason in words if the library can't be started.
    bool Start(const HostOptions& options, std::string& reason);
    // Whether tasks outlive the process. If not, StoreMessage says why; it may also say what was set aside.
    bool KeepsTasks() const { return keeps_tasks_; }
    const std::string& StoreMessage() const { return store_message_; }
    // Prints that message, if there is one.
    void TellStore() const;

private:
    bool LoadPlugins(const HostOptions& options, std::string& reason);

    ScratchFolder scratch_;
    std::vector<std::string> plugins_;
    std::string store_message_;
    bool keeps_tasks_ = false;
    bool started_ = false;
};

}  // namespace FetchyardClient
