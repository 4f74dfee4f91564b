#include "station/Generated/HtmlReport.h"

#include "station/Generated/Thumbnail.h"
#include "station/Html.h"

#include <QByteArray>

namespace Station {
namespace {

constexpr std::string_view kStyle = R"(<style>
body { font-family: "Noto Sans", "DejaVu Sans", "Droid Sans Fallback", sans-serif; color: #202020; margin: 16px; }
h1 { font-size: 20px; color: #1f3864; margin: 0 0 4px; }
p { font-size: 12px; color: #555555; margin: 0 0 2px; }
table { border-collapse: collapse; width: 100%; margin-top: 12px; font-size: 11px; }
thead { display: table-header-group; }
tr { page-break-inside: avoid; }
th { background: #ddebf7; text-align: left; padding: 5px 6px; border: 1px solid #9db7d5; white-space: nowrap; }
td { padding: 4px 6px; border: 1px solid #d0d0d0; vertical-align: top; white-space: pre-line; }
tbody tr:nth-child(even) { background: #f7f9fc; }
.number { text-align: right; white-space: nowrap; }
.centred { text-align: center; white-space: nowrap; }
.level { text-align: center; font-weight: bold; }
.level1 { background: #e2efda; color: #375623; }
.level2 { background: #ddebf7; color: #1f4e78; }
.level3 { background: #fff2cc; color: #7f6000; }
.level4 { background: #f8cbad; color: #833c0c; }
.level5 { background: #c00000; color: #ffffff; }
img { display: block; width: 160px; }
</style>
)";

std::string ClassOf(CellStyle style, const Event& event)
{
    switch (style) {
        case CellStyle::Number:
        case CellStyle::Percent:
            return " class=\"number\"";
        case CellStyle::Centred:
            return " class=\"centred\"";
        case CellStyle::Level:
            return " class=\"level level" + std::to_string(LevelOf(event)) + "\"";
        case CellStyle::Plain:
        case CellStyle::Wrapped:
        case CellStyle::Picture:
            break;
    }
    return {};
}

}  // namespace

HtmlReport::HtmlReport(const std::filesystem::path& path, PictureMode mode, EventPictures& pictures)
    : has_pictures_(mode != PictureMode::None), pictures_(pictures), file_(path)
{
}

void HtmlReport::AddHead(const std::vector<std::string>& titles, const std::vector<ReportColumn>& columns)
{
    file_.Add("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>");
    file_.Add(ToHtml(titles.front()));
    file_.Add("</title>\n");
    file_.Add(kStyle);
    file_.Add("</head>\n<body>\n");
    for (std::size_t i = 0; i < titles.size(); ++i)
        file_.Add((i == 0 ? "<h1>" : "<p>") + ToHtml(titles[i]) + (i == 0 ? "</h1>\n" : "</p>\n"));
    file_.Add("<table>\n<thead><tr>");
    for (const ReportColumn& column : columns)
        file_.Add("<th>" + ToHtml(column.name) + "</th>");
    file_.Add("</tr></thead>\n<tbody>\n");
}

void HtmlReport::AddPicture(const Event& event)
{
    const std::string jpeg = Thumbnail(pictures_, event);
    if (jpeg.empty()) {
        file_.Add("<td>The picture can't be read.</td>");
        return;
    }
    file_.Add("<td><img alt=\"" + ToHtml(PictureAddress(event)) + "\" src=\"data:image/jpeg;base64,");
    file_.Add(QByteArray::fromRawData(jpeg.data(), static_cast<int>(jpeg.size())).toBase64().toStdString());
    file_.Add("\"></td>");
}

void HtmlReport::AddRow(const Event& event, const ReportRow& row)
{
    file_.Add("<tr>");
    for (std::size_t i = 0; i < kReportColumns.size(); ++i)
        file_.Add("<td" + ClassOf(kReportColumns[i].style, event) + ">" + ToHtml(row[i]) + "</td>");
    if (has_pictures_)
        AddPicture(event);
    file_.Add("</tr>\n");
}

void HtmlReport::Finish()
{
    file_.Add("</tbody>\n</table>\n</body>\n</html>\n");
    file_.Close();
}

}  // namespace Station
