#pragma once

#include "ZellClientHostSettings/ClientSettings.h"

#include <QByteArray>

#include <string>

namespace ZellClientHost {

// The settings as JSON text for a person to edit.
QByteArray SettingsToJson(const ClientSettings& settings);
// False, with the reason in words, if the text is not JSON or a member is unknown or wrong; settings is then
// as before.
bool SettingsFromJson(const QByteArray& text, ClientSettings& settings, std::string& reason);

}  // namespace ZellClientHost
