#include "SheetRows.h"

#include "CellText.h"

#include <algorithm>
#include <cstdio>

namespace ZellOfficeKit {
namespace {

constexpr std::size_t kBlock = std::size_t{1} << 17U;

// "A" for 0, "XFD" for 16383.
void AppendColumnName(std::string& xml, int col)
{
    char letters[4];
    int count = 0;
    for (int left = col + 1; left > 0; left = (left - 1) / 26)
        letters[count++] = static_cast<char>('A' + (left - 1) % 26);
    while (count > 0)
        xml.push_back(letters[--count]);
}

// The other blanks are escaped as control characters.
bool IsBlank(char letter)
{
    return letter == ' ' || letter == '\t' || letter == '\n';
}

// Pixels as points, of which a pixel is three quarters; without printf, whose decimal point depends on the
// locale.
std::string PointsOfPixels(int pixels)
{
    constexpr const char* kQuarters[] = {"", ".25", ".5", ".75"};
    return std::to_string(pixels * 3 / 4) + kQuarters[pixels * 3 % 4];
}

}  // namespace

bool CSheetRows::MoveTo(int row)
{
    if (row == row_)
        return true;
    if (row < row_)
        return false;
    WriteRow();
    row_ = row;
    row_number_ = std::to_string(row + 1);
    return true;
}

void CSheetRows::SetText(int col, const std::string& text, std::size_t size, lxw_format* format)
{
    if (size == 0) {
        SetBlank(col, format);
        return;
    }
    BeginCell(col);
    AppendStyle(format);
    // Readers drop blanks at either end unless told otherwise.
    const bool has_outer_blanks = IsBlank(text[0]) || IsBlank(text[size - 1]);
    row_xml_.append(has_outer_blanks ? " t=\"inlineStr\"><is><t xml:space=\"preserve\">"
                                     : " t=\"inlineStr\"><is><t>");
    AppendCellXml(row_xml_, text, size);
    row_xml_.append("</t></is></c>");
    EndCell();
}

// A blank cell without a format is no cell, but it takes the place of one written before.
void CSheetRows::SetBlank(int col, lxw_format* format)
{
    if (format == nullptr && !HasCell(col))
        return;
    BeginCell(col);
    AppendStyle(format);
    row_xml_.append("/>");
    EndCell();
}

bool CSheetRows::HasCell(int col) const
{
    const auto is_before = [](const Cell& cell, int number) { return cell.col < number; };
    if (is_sorted_) {
        const auto found = std::lower_bound(cells_.begin(), cells_.end(), col, is_before);
        return found != cells_.end() && found->col == col;
    }
    return std::any_of(cells_.begin(), cells_.end(), [col](const Cell& cell) { return cell.col == col; });
}

void CSheetRows::SetHeight(int pixels)
{
    height_ = pixels;
}

void CSheetRows::Finish()
{
    WriteRow();
    std::fwrite(block_.data(), 1, block_.size(), library_->optimize_tmpfile);
    block_.clear();
}

void CSheetRows::BeginCell(int col)
{
    if (!cells_.empty() && cells_.back().col >= col) {
        if (cells_.back().col == col) {
            // The usual case of a cell written twice.
            row_xml_.resize(cells_.back().begin);
            cells_.pop_back();
        } else {
            is_sorted_ = false;
        }
    }
    cells_.push_back({col, row_xml_.size(), 0});
    row_xml_.append("<c r=\"");
    AppendColumnName(row_xml_, col);
    row_xml_.append(row_number_);
    row_xml_.push_back('"');
}

void CSheetRows::AppendStyle(lxw_format* format)
{
    if (format == nullptr)
        return;
    row_xml_.append(" s=\"");
    row_xml_.append(std::to_string(lxw_format_get_xf_index(format)));
    row_xml_.push_back('"');
}

void CSheetRows::EndCell()
{
    cells_.back().end = row_xml_.size();
}

void CSheetRows::WriteRow()
{
    if (cells_.empty() && height_ == 0)
        return;
    AppendCells();
    NoteExtent();
    if (block_.size() >= kBlock) {
        std::fwrite(block_.data(), 1, block_.size(), library_->optimize_tmpfile);
        block_.clear();
    }
    cells_.clear();
    row_xml_.clear();
    is_sorted_ = true;
    height_ = 0;
}

void CSheetRows::AppendCells()
{
    block_.append("<row r=\"").append(row_number_).push_back('"');
    if (height_ > 0)
        block_.append(" ht=\"").append(PointsOfPixels(height_)).append("\" customHeight=\"1\"");
    if (cells_.empty()) {
        block_.append("/>");
        return;
    }
    block_.push_back('>');
    if (is_sorted_) {
        block_.append(row_xml_);
    } else {
        std::stable_sort(cells_.begin(), cells_.end(),
                         [](const Cell& a, const Cell& b) { return a.col < b.col; });
        for (std::size_t i = 0; i < cells_.size(); ++i) {
            // The last one written to a column stands last.
            if (i + 1 == cells_.size() || cells_[i + 1].col != cells_[i].col)
                block_.append(row_xml_, cells_[i].begin, cells_[i].end - cells_[i].begin);
        }
    }
    block_.append("</row>");
}

// The library takes the extent of the sheet from here, and writes no rows at all if there is none.
void CSheetRows::NoteExtent() const
{
    const auto row = static_cast<lxw_row_t>(row_);
    library_->dim_rowmin = std::min(library_->dim_rowmin, row);
    library_->dim_rowmax = std::max(library_->dim_rowmax, row);
    const auto first = static_cast<lxw_col_t>(cells_.empty() ? 0 : cells_.front().col);
    const auto last = static_cast<lxw_col_t>(cells_.empty() ? 0 : cells_.back().col);
    library_->dim_colmin = std::min(library_->dim_colmin, first);
    library_->dim_colmax = std::max(library_->dim_colmax, last);
}

}  // namespace ZellOfficeKit
