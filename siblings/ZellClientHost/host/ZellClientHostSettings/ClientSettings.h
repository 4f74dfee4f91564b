#pragma once

#include "ZellClientHost/Export.h"

#include <map>
#include <string>

// The client's settings, for the program that hosts the libraries and for other siblings.
namespace ZellClientHost {

struct ClientSettings
{
    int client_type = 0;           // see ZellTaskKit::eClientType
    std::string data_path;         // UTF-8, with a final "/"; the user's own
    std::string public_data_path;  // the same, shared by all users
    std::string save_path;         // where exports go; the data folder's "Exports/" if empty
    std::string user_name;
    std::string password;  // in clear, in memory and in a file of mode 0600 only
    int password_type = 0;
    int login_model = 1;
    std::string client_guid;
    std::string hardware_code;
    std::map<unsigned int, std::string>
        sites;  // address of each site as "http://host:port"; 0 is the client's own
};

// Reads settings from a JSON file that a person can edit; members that are absent keep the defaults above.
// False, with the reason in words, if the file can't be read or is wrong.
ZELLCLIENTHOST_API bool LoadClientSettings(const std::string& path, ClientSettings& settings,
                                           std::string& reason);
ZELLCLIENTHOST_API bool SaveClientSettings(const std::string& path, const ClientSettings& settings,
                                           std::string& reason);

// The settings in force. Any thread; before the first call they hold the folders of the user's platform.
ZELLCLIENTHOST_API void SetClientSettings(const ClientSettings& settings);
ZELLCLIENTHOST_API ClientSettings GetClientSettings();
// The address of a site, without a final "/"; false if the settings do not name it.
ZELLCLIENTHOST_API bool GetSiteUrl(unsigned int site, std::string& url);

// The address of the site to which an absolute url leads: the site's address, and then a path, a query or
// nothing. "http://site.example" is no site of "http://site.example.org/" or "http://site.example@other/".
// The longest one, if several fit; false if it leads to none of the settings'.
ZELLCLIENTHOST_API bool FindSiteOfUrl(const std::string& url, std::string& site_url);
// The account of the settings, if the url leads to one of their sites: it goes nowhere else.
ZELLCLIENTHOST_API bool FindAccountOfUrl(const std::string& url, std::string& user, std::string& password);

// Makes a loaded module known under its plug-in id; a null handle forgets it.
ZELLCLIENTHOST_API void SetPluginHandle(const std::string& plugin_id, void* handle);

}  // namespace ZellClientHost
