#include "Reports.h"

#include <utility>

namespace golden {

using FetchyardLogical::CellFormat;
using FetchyardLogical::ExportCell;
using FetchyardLogical::ExportDataNode;
using FetchyardLogical::ExportMergeRange;
using FetchyardLogical::ExportSheet;

namespace {

ExportCell Cell(const std::string& text, int type = 0, const std::string& title = "")
{
    ExportCell cell;
    cell.cell_name = text;
    cell.file_title = title;
    cell.cell_format.cell_type = type;
    return cell;
}

CellFormat TitleFormat(int size, bool is_bold, const std::string& background)
{
    CellFormat format;
    format.font_family = "Arial";
    format.font_size = size;
    format.is_blod = is_bold;
    format.text_location = 1;
    format.background_color = background;
    format.text_color = "#1F3864";
    return format;
}

std::vector<ExportCell> Cells(const std::vector<std::string>& texts)
{
    std::vector<ExportCell> cells;
    for (const std::string& text : texts)
        cells.push_back(Cell(text));
    return cells;
}

ExportSheet Sheet(const std::string& name, int page)
{
    ExportSheet sheet;
    sheet.sheet_name = name;
    sheet.page_index = page;
    return sheet;
}

ExportDataNode Delivery(std::vector<ExportSheet> sheets, bool is_last)
{
    ExportDataNode node;
    node.file_name = "Report";
    node.file_total_page_is_finished = is_last;
    node.vec_sheets = std::move(sheets);
    return node;
}

}  // namespace

Report EveryKindOfCell()
{
    ExportSheet sheet = Sheet("Alarms", 1);
    sheet.vec_titles = {Cell("Alarms of May"), Cell("Gate 3, \"north\""), Cell("<5 rows> & more")};
    sheet.vec_titles[0].cell_format = TitleFormat(14, true, "#BDD7EE");
    sheet.vec_titles[1].cell_format = TitleFormat(10, false, "");
    ExportMergeRange merge;
    merge.last_column = 3;
    merge.merge_text = "Alarms of May";
    merge.cell_format = sheet.vec_titles[0].cell_format;
    sheet.vec_merges = {merge};
    sheet.vec_columns = Cells({"Zero", "One", "Four", "Five", "Six", "Seven"});
    sheet.vec_columns[0].cell_format = TitleFormat(11, true, "#DDEBF7");
    sheet.vec_columns[0].cell_format.column_width = 24;
    ExportCell validated = Cell("open", 4);
    validated.cell_format.valid_list = "open,closed";
    ExportCell coloured = Cell("red\nalarm");
    coloured.cell_format.text_color = "#C00000";
    coloured.cell_format.background_color = "#FFF2CC";
    coloured.cell_format.is_need_wrap = true;
    coloured.cell_format.text_location = 2;
    sheet.vec_rows = {
        {Cell("text, with comma"), Cell("one", 1), validated, Cell("nothing", 5),
         Cell("https://example.org/a b?c=1#d", 6, "a link"), Cell("seven", 7)},
        {coloured, Cell("门 باب 🚪", 1), Cell("", 4), Cell("", 5), Cell("", 6), Cell("minus", -1)},
        {Cell(""), Cell("\"quoted\"", 1)},
        {},
    };
    return {Delivery({sheet}, true)};
}

Report Pictures()
{
    ExportSheet first = Sheet("Alarms", 1);
    first.vec_columns = Cells({"Text", "Inside", "Beside"});
    first.vec_rows = {{Cell("good"), Cell("/good1", 2, "ignored"), Cell("/good2", 3, "named")},
                      {Cell("failed"), Cell("/none1", 2), Cell("/none2", 3, "failed")},
                      {Cell("unreadable"), Cell("/broken1", 2), Cell("/broken2", 3, "broken")},
                      {Cell("no address"), Cell("", 2), Cell("", 3), Cell("behind")}};
    ExportSheet later = Sheet("Alarms", 2);
    later.vec_rows = {{Cell("good"), Cell("/good3", 2), Cell("/good4", 3, "later")},
                      {Cell("device"), Cell("/good?QUERN&camera=3", 2), Cell("last")}};
    return {Delivery({first}, false), Delivery({later}, true)};
}

Report PagesOfTwoSheets()
{
    Report report;
    for (int page = 1; page <= 3; ++page) {
        ExportSheet alarms = Sheet("Alarms", page);
        ExportSheet doors = Sheet("Doors", page);
        if (page == 1) {
            alarms.vec_titles = Cells({"All alarms"});
            alarms.vec_columns = Cells({"Time", "Text"});
            doors.vec_columns = Cells({"Door", "State", "Since"});
        }
        const std::string number = std::to_string(page);
        alarms.vec_rows = {Cells({"08:0" + number, "first"}), Cells({"09:0" + number, "second"})};
        if (page != 2)
            doors.vec_rows = {Cells({"north", "open", number})};
        report.push_back(Delivery({alarms, doors}, page == 3));
    }
    return report;
}

Report FourPictures()
{
    ExportSheet first = Sheet("Alarms", 1);
    first.vec_columns = Cells({"Text", "Inside", "Beside"});
    first.vec_rows = {{Cell("a"), Cell("/good1", 2), Cell("/good2", 3, "one")}};
    ExportSheet later = Sheet("Alarms", 2);
    later.vec_rows = {{Cell("b"), Cell("/good3", 2), Cell("/good4", 3, "two")}, Cells({"c", "d", "e"})};
    return {Delivery({first}, false), Delivery({later}, true)};
}

Report WithoutRowsAndColumns()
{
    return {Delivery({Sheet("Empty", 1)}, true)};
}

}  // namespace golden
