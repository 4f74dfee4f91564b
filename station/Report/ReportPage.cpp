#include "station/Report/ReportPage.h"

#include "station/Clock.h"
#include "station/Report/EventTable.h"
#include "station/Report/JsonText.h"

#include <string_view>
#include <vector>

namespace Station {
namespace {

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

void AppendHeaderFormat(std::string& out, const ReportColumn& column)
{
    out +=
        R"(,{"FontSize":11,"IsBold":true,"TextLocation":1,"BackgroundColor":"#DDEBF7","TextColor":"#000000",)";
    out += "\"ColumnWidth\":" + std::to_string(column.width) + "}";
}

void AppendFormats(std::string& out, PictureMode mode)
{
    out += "\"Formats\":[";
    out += kFormats;
    for (const ReportColumn& column : ColumnsOf(mode))
        AppendHeaderFormat(out, column);
    out += ']';
}

void AppendHead(std::string& out, const ReportCondition& condition, std::int64_t total)
{
    const std::vector<ReportColumn> columns = ColumnsOf(condition.pictures);
    const std::vector<std::string> titles = TitlesOf(condition, total);
    out += ",\"Titles\":[";
    for (std::size_t i = 0; i < titles.size(); ++i) {
        out += i == 0 ? "" : ",";
        AppendCell(out, titles[i], i == 0 ? kTitle : kSubtitle);
    }
    out += "],\"Columns\":[";
    for (std::size_t i = 0; i < columns.size(); ++i) {
        out += i == 0 ? "" : ",";
        AppendCell(out, columns[i].name, kFirstHeader + static_cast<int>(i));
    }
    out += "],\"Merges\":[";
    for (std::size_t i = 0; i < titles.size(); ++i) {
        const std::string row = std::to_string(i);
        out += i == 0 ? "" : ",";
        out.append("{\"FirstRow\":").append(row).append(",\"FirstColumn\":0,\"LastRow\":").append(row);
        out.append(",\"LastColumn\":").append(std::to_string(columns.size() - 1)).append(",\"Text\":");
        AppendJson(out, titles[i]);
        out += ",\"Format\":" + std::to_string(i == 0 ? kTitle : kSubtitle) + "}";
    }
    out += ']';
}

// A stem for the picture's file: the time, the camera and the event's number.
std::string PictureTitle(const Event& event)
{
    return ToFileStem(FormatTimeForFile(event.time) + "_" + event.camera + "_" + std::to_string(event.id));
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

// The format of a cell; below 0 for a plain one.
int FormatOf(CellStyle style, const Event& event)
{
    switch (style) {
        case CellStyle::Number:
        case CellStyle::Percent:
            return kNumber;
        case CellStyle::Centred:
            return kCentred;
        case CellStyle::Wrapped:
            return kWrapped;
        case CellStyle::Level:
            return kLevel1 + LevelOf(event) - 1;
        case CellStyle::Plain:
        case CellStyle::Picture:
            break;
    }
    return -1;
}

void AppendRow(std::string& out, const Event& event, std::int64_t number, PictureMode mode)
{
    const ReportRow row(event, number);
    for (std::size_t i = 0; i < kReportColumns.size(); ++i) {
        out += i == 0 ? '[' : ',';
        const int format = FormatOf(kReportColumns[i].style, event);
        if (format < 0)
            AppendJson(out, row[i]);
        else
            AppendCell(out, row[i], format);
    }
    if (mode != PictureMode::None)
        AppendPicture(out, event, mode);
    out += ']';
}

}  // namespace

std::string RenderReportPage(const ReportCondition& condition, const EventPage& page, std::int64_t total)
{
    static_assert(kFirstHeader == 12, "kFormats has one entry for each format before the headers");
    constexpr std::size_t kRowBytes = 640;
    std::string out;
    out.reserve(4096 + page.events.size() * kRowBytes);
    out += R"({"ErrorModule":0,"ErrorCode":0,"IsRowColumnData":true,"TotalPageIsFinished":)";
    out += page.is_last ? "true" : "false";
    out += R"(,"Sheets":[{"SheetName":"Alarms","PageIndex":)" + std::to_string(condition.page_index) + ",";
    AppendFormats(out, condition.pictures);
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
