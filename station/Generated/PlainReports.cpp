#include "station/Generated/PlainReports.h"

#include "station/Report/JsonText.h"

#include <algorithm>

namespace Station {

CsvReport::CsvReport(const std::filesystem::path& path, PictureMode mode)
    : has_pictures_(mode != PictureMode::None), file_(path)
{
    file_.Add("\xEF\xBB\xBF");
}

void CsvReport::AddCell(std::string_view text, bool is_first)
{
    if (!is_first)
        file_.Add(",");
    const std::string valid = ToValidUtf8(text);
    if (valid.find_first_of("\",\r\n") == std::string::npos) {
        file_.Add(valid);
        return;
    }
    std::string quoted = "\"";
    for (const char letter : valid) {
        if (letter == '"')
            quoted += '"';
        quoted += letter;
    }
    file_.Add(quoted + "\"");
}

void CsvReport::AddHead(const std::vector<std::string>&, const std::vector<ReportColumn>& columns)
{
    for (std::size_t i = 0; i < columns.size(); ++i)
        AddCell(columns[i].name, i == 0);
    file_.Add("\r\n");
}

void CsvReport::AddRow(const Event& event, const ReportRow& row)
{
    for (std::size_t i = 0; i < kReportColumns.size(); ++i)
        AddCell(row[i], i == 0);
    if (has_pictures_)
        AddCell(PictureAddress(event), false);
    file_.Add("\r\n");
}

void CsvReport::Finish()
{
    file_.Close();
}

TextReport::TextReport(const std::filesystem::path& path, PictureMode mode)
    : has_pictures_(mode != PictureMode::None), file_(path)
{
}

void TextReport::AddCell(std::string_view text, bool is_first)
{
    std::string line = ToValidUtf8(text);
    std::replace_if(
        line.begin(), line.end(),
        [](char letter) { return letter == '\t' || letter == '\r' || letter == '\n'; }, ' ');
    if (!is_first)
        file_.Add("\t");
    file_.Add(line);
}

void TextReport::AddHead(const std::vector<std::string>&, const std::vector<ReportColumn>& columns)
{
    for (std::size_t i = 0; i < columns.size(); ++i)
        AddCell(columns[i].name, i == 0);
    file_.Add("\n");
}

void TextReport::AddRow(const Event& event, const ReportRow& row)
{
    for (std::size_t i = 0; i < kReportColumns.size(); ++i)
        AddCell(row[i], i == 0);
    if (has_pictures_)
        AddCell(PictureAddress(event), false);
    file_.Add("\n");
}

void TextReport::Finish()
{
    file_.Close();
}

}  // namespace Station
