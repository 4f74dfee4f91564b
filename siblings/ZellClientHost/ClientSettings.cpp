#include "ZellClientHostSettings/ClientSettings.h"

#include "UsableSettings.h"
#include "ZellWidgets/ZellWidgets.h"

#include <QStandardPaths>

#include <algorithm>
#include <mutex>
#include <string_view>

namespace ZellClientHost {
namespace {

void EndInSlash(std::string& folder)
{
    if (!folder.empty() && folder.back() != '/' && folder.back() != '\\')
        folder += '/';
}

// The settings in force. Never destroyed: siblings ask while the process is leaving.
struct InForce
{
    std::mutex mutex;
    ClientSettings settings;

    InForce() { MakeUsable(settings); }

    static InForce& Instance()
    {
        static auto* const in_force = new InForce;
        return *in_force;
    }
};

char LowerCase(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
}

bool LeadsTo(std::string_view url, std::string_view site)
{
    const auto same = [](char left, char right) { return LowerCase(left) == LowerCase(right); };
    if (site.empty() || url.size() < site.size() || !std::equal(site.begin(), site.end(), url.begin(), same))
        return false;
    url.remove_prefix(site.size());
    return url.empty() || url.front() == '/' || url.front() == '?' || url.front() == '#';
}

// The lock is held.
const std::string* SiteOfUrl(const ClientSettings& settings, const std::string& url)
{
    const std::string* longest = nullptr;
    for (const auto& [number, site] : settings.sites) {
        if (LeadsTo(url, site) && (longest == nullptr || site.size() > longest->size()))
            longest = &site;
    }
    return longest;
}

}  // namespace

void MakeUsable(ClientSettings& settings)
{
    if (settings.data_path.empty()) {
        const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
        settings.data_path = ZellWidgets::QStringToString(folder, nullptr) + "/fetchyard-client/";
    }
    EndInSlash(settings.data_path);
    // No platform gives all users a folder that each may write, so the default lies in the user's own.
    if (settings.public_data_path.empty())
        settings.public_data_path = settings.data_path + "public/";
    EndInSlash(settings.public_data_path);
    EndInSlash(settings.save_path);
    for (auto& [site, url] : settings.sites) {
        while (!url.empty() && url.back() == '/')
            url.pop_back();
    }
}

void SetClientSettings(const ClientSettings& settings)
{
    ClientSettings usable = settings;
    MakeUsable(usable);
    InForce& in_force = InForce::Instance();
    const std::lock_guard<std::mutex> lock(in_force.mutex);
    std::swap(in_force.settings, usable);
}

ClientSettings GetClientSettings()
{
    InForce& in_force = InForce::Instance();
    const std::lock_guard<std::mutex> lock(in_force.mutex);
    return in_force.settings;
}

bool GetSiteUrl(unsigned int site, std::string& url)
{
    InForce& in_force = InForce::Instance();
    const std::lock_guard<std::mutex> lock(in_force.mutex);
    const auto found = in_force.settings.sites.find(site);
    if (found == in_force.settings.sites.end())
        return false;
    url = found->second;
    return true;
}

bool FindSiteOfUrl(const std::string& url, std::string& site_url)
{
    InForce& in_force = InForce::Instance();
    const std::lock_guard<std::mutex> lock(in_force.mutex);
    const std::string* site = SiteOfUrl(in_force.settings, url);
    if (site == nullptr)
        return false;
    site_url = *site;
    return true;
}

bool FindAccountOfUrl(const std::string& url, std::string& user, std::string& password)
{
    InForce& in_force = InForce::Instance();
    const std::lock_guard<std::mutex> lock(in_force.mutex);
    if (SiteOfUrl(in_force.settings, url) == nullptr)
        return false;
    user = in_force.settings.user_name;
    password = in_force.settings.password;
    return true;
}

}  // namespace ZellClientHost
