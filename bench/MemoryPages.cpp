#include "MemoryPages.h"

#include "FetchyardLogical/CmsGetExportFileData.h"

#include <cstdlib>
#include <string>

namespace FetchyardBench {

using FetchyardLogical::ExportCell;
using FetchyardLogical::ExportSheet;

namespace {

PagePlan plan_in_force;

ExportCell Cell(std::string text)
{
    ExportCell cell;
    cell.cell_name = std::move(text);
    cell.cell_format.font_size = 11;
    cell.cell_format.background_color = "#FFFFFF";
    return cell;
}

}  // namespace

void SetPagePlan(const PagePlan& plan)
{
    plan_in_force = plan;
}

ExportSheet MakeSheet(const PagePlan& plan, int page_index)
{
    ExportSheet sheet;
    sheet.sheet_name = "Rows";
    sheet.page_index = page_index;
    for (int column = 0; column < plan.columns; ++column)
        sheet.vec_columns.push_back(Cell("Column " + std::to_string(column + 1)));
    sheet.vec_rows.resize(static_cast<std::size_t>(plan.rows_in_page));
    int row = 0;
    for (auto& cells : sheet.vec_rows) {
        for (int column = 0; column < plan.columns; ++column)
            cells.push_back(Cell("row " + std::to_string(row) + " c" + std::to_string(column)));
        ++row;
    }
    return sheet;
}

}  // namespace FetchyardBench

namespace FetchyardLogical {

// In place of the sibling's own: the page is copied out of a ready one, which is the least that a delivery
// costs.
bool CmsGetExportFileData::GetExportFileDataList(CmsGetExportFileData& data, const RequstData& request)
{
    using namespace FetchyardBench;
    static const ExportSheet page = MakeSheet(plan_in_force, 1);
    constexpr char kKey[] = "\"PageIndex\":";
    const std::size_t key = request.str_request.find(kKey);
    const int page_index =
        key == std::string::npos ? 1 : std::atoi(&request.str_request[key + sizeof(kKey) - 1]);
    ExportDataNode& node = data.export_data_node;
    node.vec_sheets.resize(1);
    node.vec_sheets.front() = page;
    node.vec_sheets.front().page_index = page_index;
    node.is_rowcolumn_data = true;
    node.file_total_page_is_finished = page_index * plan_in_force.rows_in_page >= plan_in_force.rows;
    return true;
}

}  // namespace FetchyardLogical
