#include "Window/ExportChoice.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <array>
#include <utility>

namespace FetchyardClient {

namespace {

// Members in the order in which they are put in: the page number comes first for the library.
using ordered = nlohmann::ordered_json;
using nlohmann::json;

constexpr int kPageSize = 500;
constexpr int kMostCameras = 1000;

std::string Words(const char* text)
{
    return QCoreApplication::translate("ExportForm", text).toStdString();
}

QStringList Split(const std::string& text, const char* separators)
{
    QStringList parts;
    for (const QString& part : QString::fromStdString(text).split(QRegularExpression(separators))) {
        if (!part.trimmed().isEmpty())
            parts << part.trimmed();
    }
    return parts;
}

// False if one is no number.
bool Cameras(const ExportChoice& choice, std::vector<int>& numbers)
{
    for (const QString& part : Split(choice.cameras, "[,;\\s]+")) {
        bool is_number = false;
        const int number = part.toInt(&is_number);
        if (!is_number || number < 0)
            return false;
        numbers.push_back(number);
    }
    return true;
}

ordered Condition(const ExportChoice& choice)
{
    constexpr std::array<const char*, 3> kPictures = {"none", "linked", "embedded"};
    ordered condition{{"PageIndex", 1}, {"PageSize", kPageSize}};
    if (!choice.begin.empty())
        condition["BeginTime"] = choice.begin;
    if (!choice.end.empty())
        condition["EndTime"] = choice.end;
    std::vector<int> cameras;
    if (Cameras(choice, cameras) && !cameras.empty())
        condition["CameraIds"] = cameras;
    for (const QString& type : Split(choice.event_types, "[,;]"))
        condition["EventTypes"].push_back(type.toStdString());
    if (choice.least_level > 0)
        condition["MinLevel"] = choice.least_level;
    if (!choice.text.empty())
        condition["Text"] = choice.text;
    condition["Pictures"] = kPictures.at(static_cast<std::size_t>(choice.pictures));
    return condition;
}

json Videos(const ExportChoice& choice)
{
    json videos = json::array();
    std::vector<int> cameras;
    Cameras(choice, cameras);
    for (const int camera : cameras) {
        videos.push_back({{"CameraID", camera},
                          {"BeginTime", choice.begin},
                          {"EndTime", choice.end},
                          {"VideoFormat", 2},
                          {"FolderName", "Videos"},
                          {"ExportFileName", "camera " + std::to_string(camera)}});
    }
    return videos;
}

ExportField FieldOf(const std::string& pointer)
{
    constexpr std::pair<const char*, ExportField> kFields[] = {
        {"/RequestAPI", ExportField::Report},     {"/SiteID", ExportField::Site},
        {"/ExportFileName", ExportField::Name},   {"/SaveFilePathDir", ExportField::Folder},
        {"/ExportFileType", ExportField::Format}, {"/ZipPassword", ExportField::Password},
        {"/RequestCondition", ExportField::Text},
    };
    if (pointer.find("/VideoDownload") != std::string::npos)
        return ExportField::Videos;
    for (const auto& [name, field] : kFields) {
        if (pointer.find(name) != std::string::npos)
            return field;
    }
    return ExportField::None;
}

void CheckVideos(const ExportChoice& choice, std::vector<FieldViolation>& violations)
{
    std::vector<int> cameras;
    if (!choice.with_videos || !Cameras(choice, cameras))
        return;
    if (cameras.empty())
        violations.push_back(
            {ExportField::Videos,
             Words(QT_TRANSLATE_NOOP("ExportForm", "videos need the numbers of their cameras"))});
    if (choice.begin.empty() || choice.end.empty())
        violations.push_back(
            {ExportField::Videos, Words(QT_TRANSLATE_NOOP("ExportForm", "videos need a begin and an end"))});
}

void CheckBeyondSchema(const ExportChoice& choice, std::vector<FieldViolation>& violations)
{
    std::vector<int> cameras;
    if (!Cameras(choice, cameras))
        violations.push_back(
            {ExportField::Cameras,
             Words(QT_TRANSLATE_NOOP("ExportForm", "numbers with commas between, as 1, 2, 7"))});
    if (cameras.size() > kMostCameras)
        violations.push_back(
            {ExportField::Cameras, Words(QT_TRANSLATE_NOOP("ExportForm", "1000 cameras at most"))});
    // Of one form, so texts compare as times do.
    if (!choice.begin.empty() && !choice.end.empty() && choice.begin >= choice.end)
        violations.push_back(
            {ExportField::Range, Words(QT_TRANSLATE_NOOP("ExportForm", "the end must be behind the begin"))});
    if (choice.report.empty())
        violations.push_back(
            {ExportField::Report, Words(QT_TRANSLATE_NOOP("ExportForm", "a report is missing"))});
    if (choice.name.find_first_of("/\\") != std::string::npos || choice.name == "." || choice.name == "..")
        violations.push_back(
            {ExportField::Name,
             Words(QT_TRANSLATE_NOOP("ExportForm", "a name can't hold a slash or be dots alone"))});
    constexpr std::size_t most_name_bytes = 200;
    if (choice.name.size() > most_name_bytes)
        violations.push_back(
            {ExportField::Name,
             Words(QT_TRANSLATE_NOOP("ExportForm", "too long: 200 bytes at most, a Chinese letter has 3"))});
    CheckVideos(choice, violations);
}

}  // namespace

json MakeRequest(const ExportChoice& choice)
{
    json file = {
        {"RequestMethod", "POST"},
        {"RequestAPI", choice.report},
        {"RequestCondition", Condition(choice).dump(-1, ' ', false, ordered::error_handler_t::replace)},
        {"SiteID", choice.site}};
    json write = {{"ExportFileName", choice.name},
                  {"ExportFileType", choice.format},
                  {"IsNeedCompressZip", choice.is_packed}};
    if (choice.is_packed && !choice.archive_password.empty())
        write["ZipPassword"] = choice.archive_password;
    if (!choice.save_folder.empty()) {
        const bool is_closed = choice.save_folder.back() == '/' || choice.save_folder.back() == '\\';
        write["SaveFilePathDir"] = choice.save_folder + (is_closed ? "" : "/");
    }
    json data = {{"IsContinueDowinloading", true}, {"ExportFileParam", file}, {"WriteFileCondition", write}};
    if (choice.with_videos)
        data["DownloadFiles"]["VideoDownload"] = Videos(choice);
    return {{"FileExportPurpose", 0}, {"FileExportRequest", {{"FileExportType", 0}, {"RequestData", data}}}};
}

std::vector<FieldViolation> CheckChoice(const ExportChoice& choice)
{
    std::vector<FieldViolation> violations;
    CheckBeyondSchema(choice, violations);
    if (!violations.empty())
        return violations;
    for (const Violation& violation : CheckRequest(MakeRequest(choice)))
        violations.push_back({FieldOf(violation.path), violation.words});
    return violations;
}

}  // namespace FetchyardClient
