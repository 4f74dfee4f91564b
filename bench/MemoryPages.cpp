#include "MemoryPages.h"

#include "FetchyardLogical/CmsGetExportFileData.h"

#include <condition_variable>
#include <cstdlib>
#include <deque>
#include <mutex>
#include <string>
#include <thread>

namespace FetchyardBench {

using FetchyardLogical::ExportCell;
using FetchyardLogical::ExportSheet;

namespace {

using Rows = std::vector<std::vector<ExportCell>>;

// Copies the rows of a page ahead on a thread of its own, as a server would make the next page: what is
// measured is the library, not the copying.
class RowCopies
{
public:
    RowCopies(const Rows& rows, int count) : copier_([this, &rows, count] { Copy(rows, count); }) {}
    ~RowCopies()
    {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            wanted_ = false;
            changed_.notify_all();
        }
        copier_.join();
    }

    Rows Take()
    {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait(lock, [this] { return !copies_.empty(); });
        Rows rows = std::move(copies_.front());
        copies_.pop_front();
        changed_.notify_all();
        return rows;
    }

private:
    void Copy(const Rows& rows, int count)
    {
        for (; count > 0; --count) {
            Rows copy = rows;
            std::unique_lock<std::mutex> lock(mutex_);
            changed_.wait(lock, [this] { return !wanted_ || copies_.size() < 2; });
            if (!wanted_)
                return;
            copies_.push_back(std::move(copy));
            changed_.notify_all();
        }
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Rows> copies_;
    bool wanted_ = true;
    std::thread copier_;
};

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

// In place of the sibling's own: hands over one page again and again.
bool CmsGetExportFileData::GetExportFileDataList(CmsGetExportFileData& data, const RequstData& request)
{
    using namespace FetchyardBench;
    static const ExportSheet page = MakeSheet(plan_in_force, 1);
    static RowCopies copies(page.vec_rows, plan_in_force.rows / plan_in_force.rows_in_page);
    constexpr char kKey[] = "\"PageIndex\":";
    const std::size_t key = request.str_request.find(kKey);
    const int page_index =
        key == std::string::npos ? 1 : std::atoi(&request.str_request[key + sizeof(kKey) - 1]);
    ExportDataNode& node = data.export_data_node;
    node.vec_sheets.resize(1);
    ExportSheet& sheet = node.vec_sheets.front();
    sheet.sheet_name = page.sheet_name;
    sheet.vec_columns = page.vec_columns;
    sheet.vec_rows = copies.Take();
    sheet.page_index = page_index;
    node.is_rowcolumn_data = true;
    node.file_total_page_is_finished = page_index * plan_in_force.rows_in_page >= plan_in_force.rows;
    return true;
}

}  // namespace FetchyardLogical
