#include "ZellAssetBookHost/WaterMarkFile.h"

#include "ZellClientHostSettings/ClientSettings.h"
#include "ZellWidgets/ZellWidgets.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <cmath>
#include <limits>

namespace ZellAssetBook {
namespace {

constexpr char kColor[] = "color";
constexpr char kCustomContent[] = "custom_content";
constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";
constexpr qint64 kMostBytes = 65536;

struct FlagMember
{
    const char* name;
    void (CWaterMark::*set)(const bool&);
    bool (CWaterMark::*get)() const;
};
constexpr FlagMember kFlags[] = {
    {"enable", &CWaterMark::SetVal_b_enable, &CWaterMark::GetVal_b_enable},
    {"adapt_color", &CWaterMark::SetVal_b_enable_autoadaptcolor, &CWaterMark::GetVal_b_enable_autoadaptcolor},
    {"user_name", &CWaterMark::SetVal_b_enable_username, &CWaterMark::GetVal_b_enable_username},
    {"date_time", &CWaterMark::SetVal_b_enable_datatime, &CWaterMark::GetVal_b_enable_datatime},
    {"custom", &CWaterMark::SetVal_b_enable_custom_content, &CWaterMark::GetVal_b_enable_custom_content},
};

struct NumberMember
{
    const char* name;
    void (CWaterMark::*set)(const int&);
    int (CWaterMark::*get)() const;
    int least;
    int most;
};
constexpr NumberMember kNumbers[] = {
    {"font_size", &CWaterMark::SetVal_font_size, &CWaterMark::GetVal_font_size, 1, 1000},
    {"transparency", &CWaterMark::SetVal_transparency, &CWaterMark::GetVal_transparency, 0, 100},
    {"rotation_angle", &CWaterMark::SetVal_rotation_angle, &CWaterMark::GetVal_rotation_angle, -360, 360},
    {"space", &CWaterMark::SetVal_space, &CWaterMark::GetVal_space, 0, 10000},
    {"bench_width", &CWaterMark::SetVal_bench_width, &CWaterMark::GetVal_bench_width, 1, 100000},
    {"bench_height", &CWaterMark::SetVal_bench_height, &CWaterMark::GetVal_bench_height, 1, 100000},
};

std::string ToText(const QString& text)
{
    return ZellWidgets::QStringToString(text, nullptr);
}

QString FromText(const std::string& text)
{
    return ZellWidgets::StringToQString(text, nullptr);
}

std::string ReadFlag(const FlagMember& member, const QJsonValue& value, CWaterMark& watermark)
{
    if (!value.isBool())
        return std::string("member \"") + member.name + "\" must be true or false";
    (watermark.*member.set)(value.toBool());
    return {};
}

std::string ReadNumber(const NumberMember& member, const QJsonValue& value, CWaterMark& watermark)
{
    const double number = value.toDouble(std::numeric_limits<double>::quiet_NaN());
    if (!(number >= member.least && number <= member.most) || std::floor(number) != number)
        return std::string("member \"") + member.name + "\" must be a whole number from " +
               std::to_string(member.least) + " to " + std::to_string(member.most);
    (watermark.*member.set)(static_cast<int>(number));
    return {};
}

std::string ReadColor(const QJsonValue& value, CWaterMark& watermark)
{
    const QString text = value.toString();
    bool is_number = false;
    const int number = text.mid(1).toInt(&is_number, 16);
    if (text.size() != 7 || !text.startsWith('#') || !is_number || number < 0)
        return "member \"color\" must be like \"#FF8000\"";
    watermark.SetVal_color(number >> 16, (number >> 8) & 255, number & 255);
    return {};
}

// What is wrong with the member; empty if nothing is.
std::string ReadMember(const QString& name, const QJsonValue& value, CWaterMark& watermark)
{
    for (const FlagMember& member : kFlags) {
        if (name == QLatin1String(member.name))
            return ReadFlag(member, value, watermark);
    }
    for (const NumberMember& member : kNumbers) {
        if (name == QLatin1String(member.name))
            return ReadNumber(member, value, watermark);
    }
    if (name == QLatin1String(kColor))
        return ReadColor(value, watermark);
    if (name != QLatin1String(kCustomContent))
        return "unknown member \"" + ToText(name) + "\"";
    if (!value.isString())
        return "member \"custom_content\" must be a text";
    watermark.SetVal_custom_content(ToText(value.toString()));
    return {};
}

bool Parse(const QByteArray& text, CWaterMark& watermark, std::string& reason)
{
    // Some editors put a mark in front, which JSON does not allow.
    const QByteArray json = text.startsWith(kByteOrderMark) ? text.mid(3) : text;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError) {
        reason = "not JSON, line " + std::to_string(json.left(error.offset).count('\n') + 1) + ": " +
                 ToText(error.errorString());
        return false;
    }
    if (!document.isObject()) {
        reason = "the watermark must be a JSON object";
        return false;
    }
    const QJsonObject object = document.object();
    for (auto it = object.begin(); it != object.end() && reason.empty(); ++it)
        reason = ReadMember(it.key(), it.value(), watermark);
    return reason.empty();
}

}  // namespace

std::string WaterMarkFilePath()
{
    return ZellClientHost::GetClientSettings().data_path + "watermark.json";
}

bool LoadWaterMark(const std::string& path, CWaterMark& watermark, std::string& reason)
{
    reason.clear();
    watermark = CWaterMark();
    QFile file(FromText(path));
    if (!file.exists())
        return true;
    if (!file.open(QIODevice::ReadOnly)) {
        reason = path + ": " + ToText(file.errorString());
        return false;
    }
    const QByteArray text = file.read(kMostBytes + 1);
    if (file.error() != QFileDevice::NoError || text.size() > kMostBytes) {
        reason = path + ": " + (text.size() > kMostBytes ? "too large" : ToText(file.errorString()));
        return false;
    }
    CWaterMark read;
    if (!Parse(text, read, reason)) {
        reason.insert(0, path + ": ");
        return false;
    }
    watermark = read;
    return true;
}

bool SaveWaterMark(const std::string& path, const CWaterMark& watermark, std::string& reason)
{
    reason.clear();
    QJsonObject object;
    for (const FlagMember& member : kFlags)
        object.insert(QLatin1String(member.name), (watermark.*member.get)());
    for (const NumberMember& member : kNumbers)
        object.insert(QLatin1String(member.name), (watermark.*member.get)());
    int red = 0;
    int green = 0;
    int blue = 0;
    watermark.GetVal_color(red, green, blue);
    const int color = (red << 16) | (green << 8) | blue;
    object.insert(QLatin1String(kColor), "#" + QString::number(color, 16).toUpper().rightJustified(6, '0'));
    object.insert(QLatin1String(kCustomContent), FromText(watermark.GetVal_custom_content()));
    const QByteArray text = QJsonDocument(object).toJson(QJsonDocument::Indented);
    QSaveFile file(FromText(path));
    const bool is_saved = file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit();
    if (!is_saved)
        reason = path + ": " + ToText(file.errorString());
    return is_saved;
}

}  // namespace ZellAssetBook
