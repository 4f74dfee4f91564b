#pragma once

#include "fakes/Script.h"
#include "FetchyardLogical/ReportData.h"

#include <string>
#include <vector>

// Short words for the records of a report page.
namespace contract {

FetchyardLogical::ExportCell Cell(const std::string& text, int cell_type = 0);
// A picture cell of kind 2 (embedded) or 3 (linked).
FetchyardLogical::ExportCell PictureCell(const std::string& address, int cell_type,
                                         const std::string& title = "");
std::vector<FetchyardLogical::ExportCell> Cells(const std::vector<std::string>& texts);
// A sheet of the page with the columns "Time" and "Text" and the given rows.
FetchyardLogical::ExportSheet Sheet(int page_index, const std::vector<std::vector<std::string>>& rows);
fakes::PageAnswer Page(const FetchyardLogical::ExportSheet& sheet, bool is_last);
fakes::PageAnswer FailedPage(int module, int code);

}  // namespace contract
