#pragma once

#include "station/Data/Store.h"
#include "station/Report/Condition.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

// The table of the alarm report, whichever form it leaves in.
namespace Station {

enum class CellStyle { Plain, Number, Percent, Centred, Wrapped, Level, Picture };

struct ReportColumn
{
    std::string_view name;
    int width;  // characters
    CellStyle style;
};

// The columns without the picture, which may come behind them.
inline constexpr std::array<ReportColumn, 10> kReportColumns = {{{"No.", 7, CellStyle::Number},
                                                                 {"Time", 20, CellStyle::Centred},
                                                                 {"Camera", 22, CellStyle::Plain},
                                                                 {"Place", 24, CellStyle::Plain},
                                                                 {"Type", 20, CellStyle::Plain},
                                                                 {"Level", 8, CellStyle::Level},
                                                                 {"Person", 24, CellStyle::Plain},
                                                                 {"Plate", 12, CellStyle::Centred},
                                                                 {"Confidence", 12, CellStyle::Percent},
                                                                 {"Text", 60, CellStyle::Wrapped}}};

std::vector<ReportColumn> ColumnsOf(PictureMode mode);
// The lines above the table; total is the number of its rows.
std::vector<std::string> TitlesOf(const ReportCondition& condition, std::int64_t total);

// The texts of a row, by column. Holds on to the event, which must outlive it.
class ReportRow
{
public:
    // number counts the rows of the report from 1.
    ReportRow(const Event& event, std::int64_t number);
    ReportRow(const ReportRow&) = delete;
    ReportRow& operator=(const ReportRow&) = delete;

    std::string_view operator[](std::size_t column) const { return texts_[column]; }

private:
    const std::string number_;
    const std::string time_;
    const std::string level_;
    const std::string confidence_;
    const std::array<std::string_view, kReportColumns.size()> texts_;
};

// From 1 to 5, whatever the store holds.
int LevelOf(const Event& event);
// Address of an event's picture.
std::string PictureAddress(const Event& event);
// The text without what file systems refuse.
std::string ToFileStem(std::string text);

}  // namespace Station
