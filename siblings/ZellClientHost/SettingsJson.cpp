#include "SettingsJson.h"

#include "ZellWidgets/ZellWidgets.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

#include <cmath>
#include <limits>

namespace ZellClientHost {
namespace {

constexpr char kSites[] = "sites";
constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";

struct NumberMember
{
    const char* name;
    int ClientSettings::*value;
};
constexpr NumberMember kNumbers[] = {
    {"client_type", &ClientSettings::client_type},
    {"password_type", &ClientSettings::password_type},
    {"login_model", &ClientSettings::login_model},
};

struct TextMember
{
    const char* name;
    std::string ClientSettings::*value;
};
constexpr TextMember kTexts[] = {
    {"data_path", &ClientSettings::data_path},
    {"public_data_path", &ClientSettings::public_data_path},
    {"save_path", &ClientSettings::save_path},
    {"user_name", &ClientSettings::user_name},
    {"password", &ClientSettings::password},
    {"client_guid", &ClientSettings::client_guid},
    {"hardware_code", &ClientSettings::hardware_code},
};

std::string ToText(const QString& text)
{
    return ZellWidgets::QStringToString(text, nullptr);
}

QString FromText(const std::string& text)
{
    return ZellWidgets::StringToQString(text, nullptr);
}

std::string Quoted(const QString& name)
{
    return "\"" + ToText(name) + "\"";
}

// Throws nothing; the reason is empty while all is well.
class Reader
{
public:
    explicit Reader(ClientSettings& settings) : settings_(settings) {}

    std::string Read(const QJsonObject& object)
    {
        for (auto it = object.begin(); it != object.end() && reason_.empty(); ++it)
            ReadMember(it.key(), it.value());
        return reason_;
    }

private:
    void ReadMember(const QString& name, const QJsonValue& value)
    {
        for (const NumberMember& member : kNumbers) {
            if (name == QLatin1String(member.name))
                return ReadNumber(name, value, settings_.*member.value);
        }
        for (const TextMember& member : kTexts) {
            if (name == QLatin1String(member.name))
                return ReadText(name, value, settings_.*member.value);
        }
        if (name == QLatin1String(kSites))
            return ReadSites(value);
        reason_ = "unknown member " + Quoted(name);
    }

    void ReadNumber(const QString& name, const QJsonValue& value, int& target)
    {
        const double number = value.toDouble(std::numeric_limits<double>::quiet_NaN());
        if (!(number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max()) ||
            std::floor(number) != number)
            reason_ = "member " + Quoted(name) + " must be a whole number";
        else
            target = static_cast<int>(number);
    }

    void ReadText(const QString& name, const QJsonValue& value, std::string& target)
    {
        if (!value.isString())
            reason_ = "member " + Quoted(name) + " must be a text";
        else
            target = ToText(value.toString());
    }

    void ReadSites(const QJsonValue& value)
    {
        if (!value.isObject()) {
            reason_ = "member \"sites\" must be an object of site numbers and addresses";
            return;
        }
        settings_.sites.clear();
        const QJsonObject sites = value.toObject();
        for (auto it = sites.begin(); it != sites.end() && reason_.empty(); ++it)
            ReadSite(it.key(), it.value());
    }

    void ReadSite(const QString& name, const QJsonValue& value)
    {
        bool is_number = false;
        const unsigned int site = name.toUInt(&is_number);
        const QUrl url(value.toString(), QUrl::StrictMode);
        const bool is_http = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
        if (!is_number)
            reason_ = "member \"sites\": " + Quoted(name) + " is not a site number";
        else if (!url.isValid() || !is_http || url.host().isEmpty())
            reason_ = "member \"sites\": the address of site " + Quoted(name) +
                      " must be like \"http://host:port\"";
        else
            settings_.sites[site] = ToText(value.toString());
    }

    ClientSettings& settings_;
    std::string reason_;
};

int LineOf(const QByteArray& text, int offset)
{
    return static_cast<int>(text.left(offset).count('\n')) + 1;
}

}  // namespace

QByteArray SettingsToJson(const ClientSettings& settings)
{
    QJsonObject object;
    for (const NumberMember& member : kNumbers)
        object.insert(QLatin1String(member.name), settings.*member.value);
    for (const TextMember& member : kTexts)
        object.insert(QLatin1String(member.name), FromText(settings.*member.value));
    QJsonObject sites;
    for (const auto& [site, url] : settings.sites)
        sites.insert(QString::number(site), FromText(url));
    object.insert(QLatin1String(kSites), sites);
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

bool SettingsFromJson(const QByteArray& text, ClientSettings& settings, std::string& reason)
{
    // Some editors put a mark in front, which JSON does not allow.
    const QByteArray json = text.startsWith(kByteOrderMark) ? text.mid(3) : text;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError) {
        reason = "not JSON, line " + std::to_string(LineOf(json, error.offset)) + ": " +
                 ToText(error.errorString());
        return false;
    }
    if (!document.isObject()) {
        reason = "the settings must be a JSON object";
        return false;
    }
    ClientSettings read = settings;
    reason = Reader(read).Read(document.object());
    if (!reason.empty())
        return false;
    settings = std::move(read);
    return true;
}

}  // namespace ZellClientHost
