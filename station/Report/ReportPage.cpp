#include "station/Report/ReportPage.h"

#include "station/Clock.h"
#include "station/Report/JsonText.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace Station {
namespace {

struct Column
{
    std::string_view name;
    int width;  // characters
};

constexpr std::array<Column, 10> kColumns = {{{"No.", 7},
                                              {"Time", 20},
                                              {"Camera", 22},
                                              {"Place", 24},
                                              {"Type", 20},
                                              {"Level", 8},
                                              {"Person", 24},
                                              {"Plate", 12},
                                              {"Confidence", 12},
                                              {"Text", 60}}};
constexpr Column kPictureColumn = {"Picture", 22};

// Numbers of the formats of a sheet, in their order; a header format for each column comes after the last.
enum FormatNumber {
    kTitle,
    kSubtitle,
    kNumber,
    kCentred,
    kWrapped,
    kLevel1,
    kLevel5 = kLevel1 + 4,
    kEmbedded,
    kLinked,
    kFirstHeader
};

constexpr std::string_view kFormats =
    R"({"FontSize":12,"IsBold":true,"TextLocation":1,"BackgroundColor":"#BDD7EE","TextColor":"#1F3864"},)"
    R"({"FontSize":11,"IsBold":false,"TextLocation":1,"BackgroundColor":"#F2F2F2","TextColor":"#404040"},)"
    R"({"TextLocation":2},)"
    R"({"TextLocation":1},)"
    R"({"TextLocation":0,"IsNeedWrap":true},)"
    R"({"TextLocation":1,"BackgroundColor":"#E2EFDA","TextColor":"#375623"},)"
    R"({"TextLocation":1,"BackgroundColor":"#DDEBF7","TextColor":"#1F4E78"},)"
    R"({"TextLocation":1,"BackgroundColor":"#FFF2CC","TextColor":"#7F6000"},)"
    R"({"IsBold":true,"TextLocation":1,"BackgroundColor":"#F8CBAD","TextColor":"#833C0C"},)"
    R"({"IsBold":true,"TextLocation":1,"BackgroundColor":"#C00000","TextColor":"#FFFFFF"},)"
    R"({"CellType":2,"TextLocation":1},)"
    R"({"CellType":3,"TextColor":"#0563C1"})";

void AppendCell(std::string& out, std::string_view text, int format)
{
    out += "{\"Text\":";
    AppendJson(out, text);
    out += ",\"Format\":";
    out += std::to_string(format);
    out += '}';
}

void AppendHeaderFormat(std::string& out, const Column& column)
{
    out +=
        R"(,{"FontSize":11,"IsBold":true,"TextLocation":1,"BackgroundColor":"#DDEBF7","TextColor":"#000000",)";
    out += "\"ColumnWidth\":" + std::to_string(column.width) + "}";
}

void AppendFormats(std::string& out, bool has_pictures)
{
    out += "\"Formats\":[";
    out += kFormats;
    for (const Column& column : kColumns)
        AppendHeaderFormat(out, column);
    if (has_pictures)
        AppendHeaderFormat(out, kPictureColumn);
    out += ']';
}

std::string WithThousands(std::int64_t number)
{
    std::string text = std::to_string(number);
    for (std::size_t at = text.size(); at > 3; at -= 3)
        text.insert(at - 3, ",");
    return text;
}

std::string TimeRange(const ReportCondition& condition)
{
    const std::string from = condition.begin ? "from " + FormatTime(*condition.begin) : "";
    const std::string until = condition.end ? "until " + FormatTime(*condition.end) : "";
    if (from.empty() && until.empty())
        return "All times (UTC)";
    return "Time: " + from + (from.empty() || until.empty() ? "" : " ") + until + " (UTC)";
}

void AppendHead(std::string& out, const ReportCondition& condition, std::int64_t total)
{
    const bool has_pictures = condition.pictures != PictureMode::None;
    const std::size_t last_column = kColumns.size() - (has_pictures ? 0 : 1);
    const std::array<std::string, 3> titles = {"Alarm report", TimeRange(condition),
                                               WithThousands(total) + (total == 1 ? " event" : " events")};
    out += ",\"Titles\":[";
    for (std::size_t i = 0; i < titles.size(); ++i) {
        out += i == 0 ? "" : ",";
        AppendCell(out, titles[i], i == 0 ? kTitle : kSubtitle);
    }
    out += "],\"Columns\":[";
    for (std::size_t i = 0; i <= last_column; ++i) {
        out += i == 0 ? "" : ",";
        AppendCell(out, i < kColumns.size() ? kColumns[i].name : kPictureColumn.name,
                   kFirstHeader + static_cast<int>(i));
    }
    out += "],\"Merges\":[";
    for (std::size_t i = 0; i < titles.size(); ++i) {
        const std::string row = std::to_string(i);
        out += i == 0 ? "" : ",";
        out.append("{\"FirstRow\":").append(row).append(",\"FirstColumn\":0,\"LastRow\":").append(row);
        out.append(",\"LastColumn\":").append(std::to_string(last_column)).append(",\"Text\":");
        AppendJson(out, titles[i]);
        out += ",\"Format\":" + std::to_string(i == 0 ? kTitle : kSubtitle) + "}";
    }
    out += ']';
}

// A stem for the picture's file: the time, the camera and the event's number, without what file systems
// refuse.
std::string PictureTitle(const Event& event)
{
    std::string title = FormatTimeForFile(event.time) + "_" + event.camera + "_" + std::to_string(event.id);
    for (char& letter : title)
        if (static_cast<unsigned char>(letter) < 0x20 ||
            std::string_view("/\\:*?\"<>|").find(letter) != std::string_view::npos)
            letter = '-';
    return title;
}

void AppendPicture(std::string& out, const Event& event, PictureMode mode)
{
    out += ",{\"Text\":";
    AppendJson(out, PictureAddress(event));
    out += ",\"Format\":";
    out += std::to_string(mode == PictureMode::Embedded ? kEmbedded : kLinked);
    out += ",\"Title\":";
    AppendJson(out, PictureTitle(event));
    out += '}';
}

void AppendRow(std::string& out, const Event& event, std::int64_t number, PictureMode mode)
{
    out += '[';
    AppendCell(out, std::to_string(number), kNumber);
    out += ',';
    AppendCell(out, FormatTime(event.time), kCentred);
    out += ',';
    AppendJson(out, event.camera);
    out += ',';
    AppendJson(out, event.place);
    out += ',';
    AppendJson(out, event.type);
    out += ',';
    AppendCell(out, std::to_string(event.level), kLevel1 + std::clamp(event.level, 1, 5) - 1);
    out += ',';
    AppendJson(out, event.person);
    out += ',';
    AppendCell(out, event.plate, kCentred);
    out += ',';
    AppendCell(out, std::to_string(event.confidence) + " %", kNumber);
    out += ',';
    AppendCell(out, event.text, kWrapped);
    if (mode != PictureMode::None)
        AppendPicture(out, event, mode);
    out += ']';
}

}  // namespace

std::string PictureAddress(const Event& event)
{
    return "/pictures/" +
           (event.picture.empty() ? "event-" + std::to_string(event.id) + ".jpg" : event.picture);
}

std::string RenderReportPage(const ReportCondition& condition, const EventPage& page, std::int64_t total)
{
    static_assert(kFirstHeader == 12, "kFormats has one entry for each format before the headers");
    constexpr std::size_t kRowBytes = 640;
    std::string out;
    out.reserve(4096 + page.events.size() * kRowBytes);
    out += R"({"ErrorModule":0,"ErrorCode":0,"IsRowColumnData":true,"TotalPageIsFinished":)";
    out += page.is_last ? "true" : "false";
    out += R"(,"Sheets":[{"SheetName":"Alarms","PageIndex":)" + std::to_string(condition.page_index) + ",";
    AppendFormats(out, condition.pictures != PictureMode::None);
    if (condition.page_index == 1)
        AppendHead(out, condition, total);
    out += ",\"Rows\":[";
    std::int64_t number = page.first_row;
    for (const Event& event : page.events) {
        if (number != page.first_row)
            out += ',';
        AppendRow(out, event, ++number, condition.pictures);
    }
    out += "]}]}";
    return out;
}

}  // namespace Station
