#include "station/Report/EventTable.h"

#include "station/Clock.h"

#include <algorithm>

namespace Station {
namespace {

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

}  // namespace

std::vector<ReportColumn> ColumnsOf(PictureMode mode)
{
    std::vector<ReportColumn> columns(kReportColumns.begin(), kReportColumns.end());
    if (mode != PictureMode::None)
        columns.push_back({"Picture", 22, CellStyle::Picture});
    return columns;
}

std::vector<std::string> TitlesOf(const ReportCondition& condition, std::int64_t total)
{
    return {"Alarm report", TimeRange(condition), WithThousands(total) + (total == 1 ? " event" : " events")};
}

ReportRow::ReportRow(const Event& event, std::int64_t number)
    : number_(std::to_string(number)),
      time_(FormatTime(event.time)),
      level_(std::to_string(event.level)),
      confidence_(std::to_string(event.confidence) + " %"),
      texts_{number_, time_,        event.camera, event.place, event.type,
             level_,  event.person, event.plate,  confidence_, event.text}
{
}

int LevelOf(const Event& event)
{
    return std::clamp(event.level, 1, 5);
}

std::string PictureAddress(const Event& event)
{
    return "/pictures/" +
           (event.picture.empty() ? "event-" + std::to_string(event.id) + ".jpg" : event.picture);
}

std::string ToFileStem(std::string text)
{
    for (char& letter : text)
        if (static_cast<unsigned char>(letter) < 0x20 ||
            std::string_view("/\\:*?\"<>|").find(letter) != std::string_view::npos)
            letter = '-';
    return text;
}

}  // namespace Station
