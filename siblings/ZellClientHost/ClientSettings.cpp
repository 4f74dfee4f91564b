#include "ZellClientHostSettings/ClientSettings.h"

#include "UsableSettings.h"
#include "ZellWidgets/ZellWidgets.h"

#include <QStandardPaths>

#include <mutex>

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

}  // namespace ZellClientHost
