#include "station/Evidence/EvidencePage.h"

#include "station/Clock.h"
#include "station/Html.h"

#include <array>
#include <cstdio>

namespace Station {
namespace {

constexpr std::string_view kHead = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Evidence</title>
<style>
body { font-family: "Noto Sans", "DejaVu Sans", system-ui, sans-serif; color: #202020; background: #f4f6f9;
  margin: 0; }
header { background: #1f3864; color: #ffffff; padding: 18px 32px; }
h1 { font-size: 22px; margin: 0; }
header p { margin: 4px 0 0; color: #bdd7ee; font-size: 14px; }
main { padding: 24px 32px; }
form { margin: 0 0 16px; font-size: 14px; }
input, button { font: inherit; padding: 5px 10px; border: 1px solid #9db7d5; border-radius: 4px; }
button { background: #1f4e78; color: #ffffff; }
form a { margin-left: 8px; color: #1f4e78; }
table { border-collapse: collapse; width: 100%; background: #ffffff; font-size: 14px;
  box-shadow: 0 1px 3px rgba(0, 0, 0, 0.15); }
th { background: #ddebf7; text-align: left; padding: 9px 12px; white-space: nowrap; }
td { padding: 9px 12px; border-top: 1px solid #e4e8ee; vertical-align: top; overflow-wrap: anywhere; }
td.line { white-space: nowrap; }
td.number { text-align: right; white-space: nowrap; }
small { display: block; color: #666666; white-space: pre-line; margin-top: 3px; }
code { font-size: 12px; color: #666666; }
.empty { color: #666666; font-size: 15px; }
</style>
</head>
<body>
)";

std::string ReadableSize(std::int64_t bytes)
{
    constexpr std::array<const char*, 5> kUnits = {"B", "KB", "MB", "GB", "TB"};
    double size = static_cast<double>(bytes);
    std::size_t unit = 0;
    while (size >= 1000 && unit + 1 < kUnits.size()) {
        size /= 1000;
        ++unit;
    }
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), unit == 0 ? "%.0f %s" : "%.1f %s", size, kUnits[unit]);
    return text.data();
}

std::string RowOf(const Evidence& evidence)
{
    std::string row = "<tr><td class=\"line\">" + FormatTime(evidence.registered) + "</td><td>" +
                      ToHtml(evidence.case_number) + "</td><td>" + ToHtml(evidence.title);
    if (!evidence.remark.empty())
        row += "<small>" + ToHtml(evidence.remark) + "</small>";
    return row + "</td><td>" + ToHtml(evidence.client) + "</td><td class=\"number\">" +
           std::to_string(evidence.file_count) + "</td><td class=\"number\">" + ReadableSize(evidence.bytes) +
           "</td><td class=\"line\"><a href=\"/api/v1/evidence/" + ToHtml(evidence.guid) + "\"><code>" +
           ToHtml(evidence.guid) + "</code></a></td></tr>\n";
}

std::string Subtitle(const std::vector<Evidence>& list, const std::string& case_number)
{
    const bool is_cut = list.size() >= static_cast<std::size_t>(kMostListed);
    std::string text = (is_cut ? "the latest " : "") + std::to_string(list.size()) +
                       (list.size() == 1 ? " registered export" : " registered exports");
    if (!case_number.empty())
        text += " of case " + case_number;
    return text;
}

}  // namespace

std::string RenderEvidencePage(const std::vector<Evidence>& list, const std::string& case_number)
{
    std::string page(kHead);
    page += "<header><h1>Evidence</h1><p>" + ToHtml(Subtitle(list, case_number)) + "</p></header>\n<main>\n";
    page += "<form action=\"/evidence\"><label>Case <input name=\"case\" value=\"" + ToHtml(case_number) +
            "\"></label> <button>Show</button>";
    if (!case_number.empty())
        page += "<a href=\"/evidence\">all cases</a>";
    page += "</form>\n";
    if (list.empty()) {
        page += "<p class=\"empty\">Nothing is registered yet.</p>\n";
    } else {
        page +=
            "<table>\n<thead><tr><th>Registered (UTC)</th><th>Case</th><th>Title</th><th>Client</th>"
            "<th>Files</th><th>Size</th><th>Number</th></tr></thead>\n<tbody>\n";
        for (const Evidence& evidence : list)
            page += RowOf(evidence);
        page += "</tbody>\n</table>\n";
    }
    return page + "</main>\n</body>\n</html>\n";
}

}  // namespace Station
