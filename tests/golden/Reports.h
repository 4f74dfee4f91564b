#pragma once

#include "FetchyardLogical/ReportData.h"

#include <string>
#include <vector>

namespace golden {

// A small report as its deliveries, page after page, the last one marked. Folder and format are the test's.
using Report = std::vector<FetchyardLogical::ExportDataNode>;

// Titles, a merge, columns of given widths and cells of every kind.
Report EveryKindOfCell();
// Pictures that come, fail, can't be read and have no address, in the first page and in a later one.
Report Pictures();
// Three pages of two sheets.
Report PagesOfTwoSheets();
// Two pages with four pictures, for a stop at each of them.
Report FourPictures();
// Nothing but its name.
Report WithoutRowsAndColumns();

}  // namespace golden
