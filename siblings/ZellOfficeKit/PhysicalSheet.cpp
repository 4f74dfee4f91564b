#include "PhysicalSheet.h"

#include "CellText.h"
#include "LinkAddress.h"
#include "OfficeLog.h"
#include "ValidationRule.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace ZellOfficeKit {
namespace {

// The format takes rows of 409.5 points and columns of 255 characters.
constexpr int kMostRowPixels = 546;
constexpr int kMostColumnPixels = 1790;
constexpr int kMostColumnCharacters = 255;
// The library counts both in small integers: the validations of a sheet in 8 bits, the merges in 16.
constexpr int kMostValidations = 255;
constexpr std::size_t kMostMerges = 65535;

lxw_row_t Row(int row)
{
    return static_cast<lxw_row_t>(row);
}

lxw_col_t Col(int col)
{
    return static_cast<lxw_col_t>(col);
}

bool Overlap(const CellRange& a, const CellRange& b)
{
    return a.first_row <= b.last_row && b.first_row <= a.last_row && a.first_col <= b.last_col &&
           b.first_col <= a.last_col;
}

bool IsSame(const CellRange& a, const CellRange& b)
{
    return a.first_row == b.first_row && a.first_col == b.first_col && a.last_row == b.last_row &&
           a.last_col == b.last_col;
}

}  // namespace

std::string CellName(int row, int col)
{
    char name[LXW_MAX_CELL_NAME_LENGTH] = {};
    lxw_rowcol_to_cell(name, Row(row), Col(col));
    return name;
}

CPhysicalSheet::CPhysicalSheet(lxw_worksheet* library, std::string name, const OfficeLimits& limits)
    : library_(library), name_(std::move(name)), limits_(limits), rows_(library)
{
}

void CPhysicalSheet::Tell(const std::string& message) const
{
    OFFICE_LOG_ERROR("CExcelControllorWithC", "sheet " + name_ + ": " + message);
}

bool CPhysicalSheet::Check(lxw_error error, const char* what, int row, int col) const
{
    if (error == LXW_NO_ERROR)
        return true;
    Tell(std::string(what) + " of cell " + CellName(row, col) + " is lost: " + lxw_strerror(error));
    return false;
}

void CPhysicalSheet::TellBehind(const char* what, int row, int col) const
{
    Tell(std::string(what) + " of cell " + CellName(row, col) + " is lost: its row has been written already");
}

bool CPhysicalSheet::WriteText(int row, int col, const std::string& text, lxw_format* format)
{
    if (!rows_.MoveTo(row)) {
        TellBehind("the text", row, col);
        return false;
    }
    const std::size_t size = FittingBytes(text, limits_.text_units);
    rows_.SetText(col, text, size, format);
    if (size < text.size()) {
        Tell("the text of cell " + CellName(row, col) + " has " + std::to_string(text.size()) +
             " bytes and is cut at " + std::to_string(limits_.text_units) + " characters");
    }
    return true;
}

void CPhysicalSheet::Merge(const CellRange& range, const std::string& text, lxw_format* format)
{
    const bool is_written = WriteText(range.first_row, range.first_col, text, format);
    const bool is_cell = range.first_row == range.last_row && range.first_col == range.last_col;
    if (is_cell || !MayMerge(range))
        return;
    if (is_written && format != nullptr)
        FillFirstRow(range, format);
    RegisterMerge(range);
}

bool CPhysicalSheet::MayMerge(const CellRange& range)
{
    for (const CellRange& other : merges_) {
        if (!Overlap(range, other))
            continue;
        if (!IsSame(range, other)) {
            Tell("the range from " + CellName(range.first_row, range.first_col) + " to " +
                 CellName(range.last_row, range.last_col) + " overlaps a merged one and stays apart");
        }
        return false;
    }
    if (merges_.size() < kMostMerges)
        return true;
    Tell("no more merged ranges fit, the cells from " + CellName(range.first_row, range.first_col) +
         " stay apart");
    return false;
}

// The cells of the first row that nothing was written to yet.
void CPhysicalSheet::FillFirstRow(const CellRange& range, lxw_format* format)
{
    for (int col = range.first_col + 1; col <= range.last_col; ++col) {
        if (!rows_.HasCell(col))
            rows_.SetBlank(col, format);
    }
}

// The library's own call writes blank cells down to the last row of the range and so moves past the rows
// between, whose titles come later. A range needs no cells but its first, so it is entered without them.
void CPhysicalSheet::RegisterMerge(const CellRange& range)
{
    // Freed by the library with free().
    auto* entry = static_cast<lxw_merged_range*>(std::calloc(1, sizeof(lxw_merged_range)));
    if (entry == nullptr)
        return;
    entry->first_row = Row(range.first_row);
    entry->first_col = Col(range.first_col);
    entry->last_row = Row(range.last_row);
    entry->last_col = Col(range.last_col);
    STAILQ_INSERT_TAIL(library_->merged_ranges, entry, list_pointers);
    ++library_->merged_range_count;
    merges_.push_back(range);
}

std::string CPhysicalSheet::AddressForLink(int row, int col, const std::string& target)
{
    std::string address = MakeLinkAddress(target);
    if (address.empty()) {
        if (!target.empty())
            Tell("the link of cell " + CellName(row, col) +
                 " is no address that a workbook takes, its text stays");
        return {};
    }
    if (links_ < limits_.links)
        return address;
    if (!std::exchange(links_limit_was_told_, true)) {
        Tell("more than " + std::to_string(limits_.links) + " links, from cell " + CellName(row, col) +
             " on only their texts stay");
    }
    return {};
}

void CPhysicalSheet::WriteLink(int row, int col, const std::string& target, const std::string& text)
{
    const std::string& shown = text.empty() ? target : text;
    if (rows_.IsBehind(row)) {
        TellBehind("the link", row, col);
        return;
    }
    const std::string address = AddressForLink(row, col, target);
    const bool is_link = !address.empty() && EnterLink(row, col, address);
    WriteText(row, col, shown, is_link ? library_->default_url_format : nullptr);
}

// The library writes a cell of its own with a link; it stays out of the file, the text goes the way of all
// texts.
bool CPhysicalSheet::EnterLink(int row, int col, const std::string& address)
{
    const lxw_error error =
        worksheet_write_url_opt(library_, Row(row), Col(col), address.c_str(), nullptr, " ", nullptr);
    library_->optimize_row->data_changed = LXW_FALSE;
    if (error == LXW_NO_ERROR)
        ++links_;
    return Check(error, "the link", row, col);
}

void CPhysicalSheet::SetRowHeight(int row, int pixels)
{
    const int height = std::min(pixels, kMostRowPixels);
    if (height < pixels)
        Tell("row " + std::to_string(row + 1) + " can't be " + std::to_string(pixels) + " pixels high");
    if (rows_.MoveTo(row))
        rows_.SetHeight(height);
    else
        TellBehind("the height of the row", row, 0);
}

void CPhysicalSheet::PlacePicture(int row, int col, const std::string& bytes,
                                  const Clxw_image_options_* options)
{
    lxw_image_options own = {};
    if (options != nullptr) {
        own.x_scale = options->GetVal_x_scale();
        own.y_scale = options->GetVal_y_scale();
        own.object_position = options->GetVal_object_position();
    }
    const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
    Check(worksheet_insert_image_buffer_opt(library_, Row(row), Col(col), data, bytes.size(), &own),
          "the picture", row, col);
}

void CPhysicalSheet::AddValidation(int row, int col, const std::string& rule)
{
    const auto found = validations_.find(col);
    if (found != validations_.end()) {
        Validation& open = found->second;
        if (open.rule == rule && row >= open.first_row && row <= open.last_row + 1) {
            open.last_row = std::max(open.last_row, row);
            return;
        }
        EmitValidation(col, open);
    }
    validations_[col] = {row, row, rule};
}

void CPhysicalSheet::EmitValidation(int col, const Validation& validation)
{
    const std::vector<std::string> entries = SplitRule(validation.rule);
    if (entries.empty())
        return;
    const std::string where = CellName(validation.first_row, col);
    if (RuleCharacters(entries) > kMostRuleCharacters) {
        Tell("the list of cell " + where + " has more than " + std::to_string(kMostRuleCharacters) +
             " characters, the cell takes any text");
        return;
    }
    if (emitted_validations_ >= kMostValidations) {
        if (!std::exchange(validations_limit_was_told_, true)) {
            Tell("more than " + std::to_string(kMostValidations) + " lists, from cell " + where +
                 " on cells take any text");
        }
        return;
    }
    // A list of the library's type is a null-terminated array of texts that it does not change.
    std::vector<char*> list;
    list.reserve(entries.size() + 1);
    for (const std::string& entry : entries)
        list.push_back(const_cast<char*>(entry.c_str()));
    list.push_back(nullptr);
    lxw_data_validation rule = {};
    rule.validate = LXW_VALIDATION_TYPE_LIST;
    rule.value_list = list.data();
    if (Check(worksheet_data_validation_range(library_, Row(validation.first_row), Col(col),
                                              Row(validation.last_row), Col(col), &rule),
              "the list", validation.first_row, col))
        ++emitted_validations_;
}

void CPhysicalSheet::SetColumnCharacters(int col, int width)
{
    const int own = std::min(width, kMostColumnCharacters);
    Check(worksheet_set_column(library_, Col(col), Col(col), own, nullptr), "the width of the column", 0,
          col);
}

void CPhysicalSheet::SetColumnPixels(int col, int pixels)
{
    const auto own = static_cast<std::uint32_t>(std::min(pixels, kMostColumnPixels));
    Check(worksheet_set_column_pixels(library_, Col(col), Col(col), own, nullptr), "the width of the column",
          0, col);
}

void CPhysicalSheet::Finish()
{
    for (const auto& [col, validation] : validations_)
        EmitValidation(col, validation);
    validations_.clear();
    rows_.Finish();
}

}  // namespace ZellOfficeKit
