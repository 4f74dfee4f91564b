#include "SettingsJson.h"
#include "UsableSettings.h"
#include "ZellClientHostSettings/ClientSettings.h"
#include "ZellWidgets/ZellWidgets.h"

#include <QFile>
#include <QSaveFile>

namespace ZellClientHost {
namespace {

std::string Reason(const std::string& path, const QString& error)
{
    return path + ": " + ZellWidgets::QStringToString(error, nullptr);
}

}  // namespace

bool LoadClientSettings(const std::string& path, ClientSettings& settings, std::string& reason)
{
    reason.clear();
    QFile file(ZellWidgets::StringToQString(path, nullptr));
    if (!file.open(QIODevice::ReadOnly)) {
        reason = Reason(path, file.errorString());
        return false;
    }
    const QByteArray text = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        reason = Reason(path, file.errorString());
        return false;
    }
    ClientSettings read;
    if (!SettingsFromJson(text, read, reason)) {
        reason.insert(0, path + ": ");
        return false;
    }
    MakeUsable(read);
    settings = std::move(read);
    return true;
}

bool SaveClientSettings(const std::string& path, const ClientSettings& settings, std::string& reason)
{
    reason.clear();
    QSaveFile file(ZellWidgets::StringToQString(path, nullptr));
    const QByteArray text = SettingsToJson(settings);
    // The password goes in, so nobody else may read the file, not even while it is written.
    const bool good = file.open(QIODevice::WriteOnly) &&
                      file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner) &&
                      file.write(text) == text.size() && file.commit();
    if (!good)
        reason = Reason(path, file.errorString());
    return good;
}

}  // namespace ZellClientHost
