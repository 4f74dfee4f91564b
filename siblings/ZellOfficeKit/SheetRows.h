#pragma once

#include <xlsxwriter.h>

#include <cstddef>
#include <string>
#include <vector>

namespace ZellOfficeKit {

// The rows of one worksheet of a library workbook in constant-memory mode. Writes their XML into the
// worksheet's row file in the library's place: the library formats each cell with several printf calls and
// checks its text three times over, which is most of the time of a report. What it writes is what the library
// would write. One row is held; its cells may come in any order, and the last one written to a column counts.
class CSheetRows
{
public:
    explicit CSheetRows(lxw_worksheet* library) : library_(library) {}

    // Whether the row has left memory already, so that nothing can be added to it.
    bool IsBehind(int row) const { return row < row_; }
    // Makes the row current; false if it is behind. The operations below are for the current row.
    bool MoveTo(int row);
    void SetText(int col, const std::string& text, std::size_t size, lxw_format* format);
    void SetBlank(int col, lxw_format* format);
    bool HasCell(int col) const;
    void SetHeight(int pixels);
    // Writes what is held. The stream's error flag tells whether all rows reached it.
    void Finish();

private:
    struct Cell
    {
        int col;
        std::size_t begin;  // in row_xml_
        std::size_t end;
    };

    void BeginCell(int col);
    void AppendStyle(lxw_format* format);
    void EndCell();
    void WriteRow();
    void AppendCells();
    void NoteExtent() const;

    lxw_worksheet* library_;
    int row_ = -1;
    int height_ = 0;  // pixels; 0 for the default
    bool is_sorted_ = true;
    std::string row_number_;
    std::string row_xml_;
    std::vector<Cell> cells_;
    std::string block_;
};

}  // namespace ZellOfficeKit
