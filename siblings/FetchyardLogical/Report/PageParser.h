#pragma once

#include "FetchyardLogical/ReportData.h"
#include "ZellBase/Error.h"

#include <string>
#include <vector>

namespace FetchyardLogical::details {

// What one answer of a report server holds.
struct ReportPage
{
    bool is_rowcolumn_data = true;
    bool is_last = false;
    std::vector<ExportSheet> sheets;
    ServerGenerateNode server;
};

// Reads an answer into the page. (0, 0) if it is a page; the server's own pair if the answer names a failure;
// (23, 1) if it is neither. body keeps its text, but may be given more capacity. site is the one that the
// answer came from: the site of further requests that name none.
//
// What counts as a page:
// - Members may come in any order. One that is null counts as absent, one that is unknown is passed over
//   without a look at what it holds. Names are compared as they are written, without escapes.
// - "IsRowColumnData" may be absent and is then true. A page of rows has "TotalPageIsFinished" and "Sheets",
//   which may be empty; any other answer has "ServerGenerate".
// - A sheet has a "PageIndex" of 1 or more; all else of it may be absent. A merge has its four coordinates,
//   0 or more, none of them in front of the first.
// - A cell is a text, or an object that has "Text"; a number, a flag, a list or null is no cell. "Format" is
//   an index into the sheet's "Formats". Numbers are whole and fit the record; texts are valid UTF-8.
Zell::Base::Error::ErrorCode ParseReportPage(std::string& body, int site, ReportPage& page);

}  // namespace FetchyardLogical::details
