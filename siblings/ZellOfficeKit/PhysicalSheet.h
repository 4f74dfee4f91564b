#pragma once

#include "SheetRows.h"
#include "ZellOfficeKit/ExcelControllor.h"
#include "ZellOfficeKitHost/OfficeLimits.h"

#include <xlsxwriter.h>

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace ZellOfficeKit {

// A range of cells, all four included.
struct CellRange
{
    int first_row = 0;
    int first_col = 0;
    int last_row = 0;
    int last_col = 0;
};

// One worksheet of the library in constant-memory mode. It holds one row; as soon as a later row is touched
// the row goes to a temporary file, and whatever comes for it is refused. Rows and columns are those of this
// worksheet and lie inside the format's limits. What is refused is told at level 5.
class CPhysicalSheet
{
public:
    CPhysicalSheet(lxw_worksheet* library, std::string name, const OfficeLimits& limits);

    // False if the cell's row has gone already.
    bool WriteText(int row, int col, const std::string& text, lxw_format* format);
    void Merge(const CellRange& range, const std::string& text, lxw_format* format);
    void WriteLink(int row, int col, const std::string& target, const std::string& text);
    void SetRowHeight(int row, int pixels);
    void PlacePicture(int row, int col, const std::string& bytes, const Clxw_image_options_* options);
    // May come for any row at any time.
    void AddValidation(int row, int col, const std::string& rule);
    void SetColumnCharacters(int col, int width);
    void SetColumnPixels(int col, int pixels);
    // Hands the library what is held back: the last row and the validations that may still have grown.
    void Finish();

    lxw_worksheet* library() const { return library_; }
    const std::string& name() const { return name_; }

private:
    // Rows below each other that have one rule share one validation.
    struct Validation
    {
        int first_row = 0;
        int last_row = 0;
        std::string rule;
    };

    bool Check(lxw_error error, const char* what, int row, int col) const;
    void TellBehind(const char* what, int row, int col) const;
    void Tell(const std::string& message) const;
    bool MayMerge(const CellRange& range);
    void RegisterMerge(const CellRange& range);
    void FillFirstRow(const CellRange& range, lxw_format* format);
    std::string AddressForLink(int row, int col, const std::string& target);
    bool EnterLink(int row, int col, const std::string& address);
    void EmitValidation(int col, const Validation& validation);

    lxw_worksheet* library_;
    std::string name_;
    OfficeLimits limits_;
    CSheetRows rows_;
    std::vector<CellRange> merges_;
    std::map<int, Validation> validations_;
    int links_ = 0;
    int emitted_validations_ = 0;
    bool links_limit_was_told_ = false;
    bool validations_limit_was_told_ = false;
};

// "B7" for row 6, column 1.
std::string CellName(int row, int col);

}  // namespace ZellOfficeKit
