#pragma once

#include "PhysicalSheet.h"

#include <map>
#include <memory>
#include <string>

namespace ZellOfficeKit {

// Makes worksheets for a logical sheet. Number 1 is the sheet itself, 2 the one that continues it. Null if
// the workbook can't take one more.
class CPhysicalSheetSource
{
public:
    virtual ~CPhysicalSheetSource() = default;
    virtual std::unique_ptr<CPhysicalSheet> MakeSheet(const std::string& name, int number) = 0;
};

// A sheet as its writer sees it: rows without end. They lie in as many worksheets as they need, each with as
// many rows as the format takes.
class CLogicalSheet
{
public:
    CLogicalSheet(std::string name, CPhysicalSheetSource& source, const OfficeLimits& limits);

    // Makes the first worksheet; false if the workbook can't take it.
    bool Start();
    int used_row() const { return used_row_; }

    void WriteText(int row, int col, const std::string& text, lxw_format* format);
    void Merge(CellRange range, const std::string& text, lxw_format* format);
    void WriteLink(int row, int col, const std::string& target, const std::string& text);
    void SetRowHeight(int row, int pixels);
    void PlacePicture(int row, int col, const std::string& bytes, const Clxw_image_options_* options);
    void AddValidation(int row, int col, const std::string& rule);
    // Widths hold for every worksheet of the sheet; they are set when it is finished.
    void SetColumnCharacters(int first_col, int last_col, int width);
    void SetColumnPixels(int first_col, int last_col, int pixels);
    void Finish();

private:
    struct Width
    {
        bool in_pixels = false;
        int value = 0;
    };

    CPhysicalSheet* PieceOfRow(int row);
    bool IsInside(int row, int col);
    void SetWidths(int first_col, int last_col, Width width);
    void TellColumns(int col);

    std::string name_;
    CPhysicalSheetSource& source_;
    OfficeLimits limits_;
    std::map<int, std::unique_ptr<CPhysicalSheet>> pieces_;  // by number from 0; null if none could be made
    std::map<int, Width> widths_;
    CPhysicalSheet* last_piece_ = nullptr;
    int last_number_ = -1;
    int used_row_ = 0;
    bool columns_limit_was_told_ = false;
};

}  // namespace ZellOfficeKit
