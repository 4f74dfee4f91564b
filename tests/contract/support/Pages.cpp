#include "support/Pages.h"

namespace contract {

using FetchyardLogical::ExportCell;
using FetchyardLogical::ExportSheet;

ExportCell Cell(const std::string& text, int cell_type)
{
    ExportCell cell;
    cell.cell_name = text;
    cell.cell_format.cell_type = cell_type;
    return cell;
}

ExportCell PictureCell(const std::string& address, int cell_type, const std::string& title)
{
    ExportCell cell = Cell(address, cell_type);
    cell.file_title = title;
    return cell;
}

std::vector<ExportCell> Cells(const std::vector<std::string>& texts)
{
    std::vector<ExportCell> cells;
    for (const std::string& text : texts)
        cells.push_back(Cell(text));
    return cells;
}

ExportSheet Sheet(int page_index, const std::vector<std::vector<std::string>>& rows)
{
    ExportSheet sheet;
    sheet.sheet_name = "Alarms";
    sheet.page_index = page_index;
    if (page_index == 1)
        sheet.vec_columns = Cells({"Time", "Text"});
    for (const auto& row : rows)
        sheet.vec_rows.push_back(Cells(row));
    return sheet;
}

fakes::PageAnswer Page(const ExportSheet& sheet, bool is_last)
{
    fakes::PageAnswer answer;
    answer.sheets = {sheet};
    answer.is_last = is_last;
    return answer;
}

fakes::PageAnswer FailedPage(int module, int code)
{
    fakes::PageAnswer answer;
    answer.ok = false;
    answer.error = {module, code};
    return answer;
}

}  // namespace contract
