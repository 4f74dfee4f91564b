#include "LogicalSheet.h"

#include "OfficeLog.h"

#include <algorithm>
#include <utility>

namespace ZellOfficeKit {

CLogicalSheet::CLogicalSheet(std::string name, CPhysicalSheetSource& source, const OfficeLimits& limits)
    : name_(std::move(name)), source_(source), limits_(limits)
{
}

bool CLogicalSheet::Start()
{
    return PieceOfRow(0) != nullptr;
}

CPhysicalSheet* CLogicalSheet::PieceOfRow(int row)
{
    const int number = row / limits_.rows;
    if (number == last_number_)
        return last_piece_;
    auto found = pieces_.find(number);
    if (found == pieces_.end()) {
        found = pieces_.emplace(number, source_.MakeSheet(name_, number + 1)).first;
        const std::string made = found->second == nullptr ? " are lost, no further sheet could be made"
                                                          : " go on in sheet " + found->second->name();
        if (number > 0 || found->second == nullptr) {
            OFFICE_LOG_ERROR("CExcelControllorWithC",
                             "sheet " + name_ + ": rows from " + std::to_string(row) + made);
        }
    }
    last_number_ = number;
    last_piece_ = found->second.get();
    return last_piece_;
}

void CLogicalSheet::TellColumns(int col)
{
    if (!std::exchange(columns_limit_was_told_, true)) {
        OFFICE_LOG_ERROR("CExcelControllorWithC", "sheet " + name_ + ": column " + std::to_string(col) +
                                                      " and all behind column " +
                                                      std::to_string(limits_.columns - 1) + " are lost");
    }
}

bool CLogicalSheet::IsInside(int row, int col)
{
    if (row >= 0 && col >= 0 && col < limits_.columns)
        return true;
    if (row >= 0 && col >= 0) {
        TellColumns(col);
    } else {
        OFFICE_LOG_ERROR("CExcelControllorWithC", "sheet " + name_ + ": there is no row " +
                                                      std::to_string(row) + ", column " +
                                                      std::to_string(col));
    }
    return false;
}

void CLogicalSheet::WriteText(int row, int col, const std::string& text, lxw_format* format)
{
    if (!IsInside(row, col))
        return;
    used_row_ = std::max(used_row_, row);
    if (CPhysicalSheet* piece = PieceOfRow(row))
        piece->WriteText(row % limits_.rows, col, text, format);
}

void CLogicalSheet::Merge(CellRange range, const std::string& text, lxw_format* format)
{
    if (range.first_row > range.last_row)
        std::swap(range.first_row, range.last_row);
    if (range.first_col > range.last_col)
        std::swap(range.first_col, range.last_col);
    if (!IsInside(range.first_row, range.first_col))
        return;
    used_row_ = std::max(used_row_, range.first_row);
    CPhysicalSheet* piece = PieceOfRow(range.first_row);
    if (piece == nullptr)
        return;
    if (range.last_col >= limits_.columns) {
        TellColumns(range.last_col);
        range.last_col = limits_.columns - 1;
    }
    const int first_number = range.first_row / limits_.rows;
    if (range.last_row / limits_.rows != first_number) {
        OFFICE_LOG_ERROR("CExcelControllorWithC", "sheet " + name_ + ": the merged range from row " +
                                                      std::to_string(range.first_row) +
                                                      " ends with the last row of its worksheet");
        range.last_row = first_number * limits_.rows + (limits_.rows - 1);
    }
    range.first_row %= limits_.rows;
    range.last_row %= limits_.rows;
    piece->Merge(range, text, format);
}

void CLogicalSheet::WriteLink(int row, int col, const std::string& target, const std::string& text)
{
    if (!IsInside(row, col))
        return;
    used_row_ = std::max(used_row_, row);
    if (CPhysicalSheet* piece = PieceOfRow(row))
        piece->WriteLink(row % limits_.rows, col, target, text);
}

void CLogicalSheet::SetRowHeight(int row, int pixels)
{
    if (pixels <= 0 || !IsInside(row, 0))
        return;
    used_row_ = std::max(used_row_, row);
    if (CPhysicalSheet* piece = PieceOfRow(row))
        piece->SetRowHeight(row % limits_.rows, pixels);
}

void CLogicalSheet::PlacePicture(int row, int col, const std::string& bytes,
                                 const Clxw_image_options_* options)
{
    if (bytes.empty() || !IsInside(row, col))
        return;
    used_row_ = std::max(used_row_, row);
    if (CPhysicalSheet* piece = PieceOfRow(row))
        piece->PlacePicture(row % limits_.rows, col, bytes, options);
}

void CLogicalSheet::AddValidation(int row, int col, const std::string& rule)
{
    if (!IsInside(row, col))
        return;
    if (CPhysicalSheet* piece = PieceOfRow(row))
        piece->AddValidation(row % limits_.rows, col, rule);
}

void CLogicalSheet::SetColumnCharacters(int first_col, int last_col, int width)
{
    SetWidths(first_col, last_col, {false, width});
}

void CLogicalSheet::SetColumnPixels(int first_col, int last_col, int pixels)
{
    SetWidths(first_col, last_col, {true, pixels});
}

void CLogicalSheet::SetWidths(int first_col, int last_col, Width width)
{
    // 0 would hide the column.
    if (width.value <= 0 || !IsInside(0, first_col))
        return;
    if (last_col >= limits_.columns)
        TellColumns(last_col);
    for (int col = first_col; col <= std::min(last_col, limits_.columns - 1); ++col)
        widths_[col] = width;
}

void CLogicalSheet::Finish()
{
    for (const auto& [number, piece] : pieces_) {
        if (piece == nullptr)
            continue;
        for (const auto& [col, width] : widths_) {
            if (width.in_pixels)
                piece->SetColumnPixels(col, width.value);
            else
                piece->SetColumnCharacters(col, width.value);
        }
        piece->Finish();
    }
}

}  // namespace ZellOfficeKit
