// bench_peer_xlsx FILE ROWS: a bare libxlsxwriter loop in constant-memory mode that passes one shared format,
// over the same cells as bench_memory. Prints the seconds it took.
#include <xlsxwriter.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

int main(int argc, char** argv)
{
    if (argc != 3)
        return 2;
    constexpr int kRowsInPage = 1000;
    constexpr int kColumns = 10;
    std::vector<std::string> cells;
    for (int row = 0; row < kRowsInPage; ++row) {
        for (int column = 0; column < kColumns; ++column)
            cells.push_back("row " + std::to_string(row) + " c" + std::to_string(column));
    }
    const int rows = std::atoi(argv[2]);
    const auto begin = std::chrono::steady_clock::now();
    lxw_workbook_options options{};
    options.constant_memory = LXW_TRUE;
    lxw_workbook* workbook = workbook_new_opt(argv[1], &options);
    lxw_worksheet* sheet = workbook_add_worksheet(workbook, "Rows");
    lxw_format* format = workbook_add_format(workbook);
    format_set_font_size(format, 11);
    format_set_bg_color(format, LXW_COLOR_WHITE);
    std::size_t next = 0;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < kColumns; ++column) {
            worksheet_write_string(sheet, static_cast<lxw_row_t>(row), static_cast<lxw_col_t>(column),
                                   cells[next].c_str(), format);
            next = next + 1 == cells.size() ? 0 : next + 1;
        }
    }
    const lxw_error error = workbook_close(workbook);
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    std::printf("%.4f\n", seconds.count());
    return error == LXW_NO_ERROR ? 0 : 1;
}
