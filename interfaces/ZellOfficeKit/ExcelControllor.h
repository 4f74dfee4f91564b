#pragma once

#include "ZellOfficeKit/Export.h"

#include <memory>
#include <string>

class QObject;

namespace ZellOfficeKit {

// Format of a cell.
class ZELLOFFICEKIT_API Clxw_format_
{
public:
    void SetVal_background_color(const std::string& color)
    {
        background_color_ = color;
    }  // "#RRGGBB" or a name
    const std::string& GetVal_background_color() const { return background_color_; }
    void SetVal_text_color(const std::string& color) { text_color_ = color; }
    const std::string& GetVal_text_color() const { return text_color_; }
    void SetVal_font_size(const int& points) { font_size_ = points; }  // 0 or less: the workbook's default
    int GetVal_font_size() const { return font_size_; }
    void SetVal_is_blod(const bool& bold) { is_blod_ = bold; }
    bool GetVal_is_blod() const { return is_blod_; }
    void SetVal_text_location(const int& location)
    {
        text_location_ = location;
    }  // 0 left, 1 centre, 2 right
    int GetVal_text_location() const { return text_location_; }
    void SetVal_is_need_wrap(const bool& wrap) { is_need_wrap_ = wrap; }
    bool GetVal_is_need_wrap() const { return is_need_wrap_; }

private:
    std::string background_color_;
    std::string text_color_;
    int font_size_ = 0;
    int text_location_ = 0;
    bool is_blod_ = false;
    bool is_need_wrap_ = false;
};

// Options of a picture in a cell, with the meaning of libxlsxwriter's image options. A scale of 0 counts
// as 1.
class ZELLOFFICEKIT_API Clxw_image_options_
{
public:
    void SetVal_x_scale(const double& scale) { x_scale_ = scale; }
    double GetVal_x_scale() const { return x_scale_; }
    void SetVal_y_scale(const double& scale) { y_scale_ = scale; }
    double GetVal_y_scale() const { return y_scale_; }
    void SetVal_object_position(const unsigned char& position) { object_position_ = position; }
    unsigned char GetVal_object_position() const { return object_position_; }

private:
    double x_scale_ = 1.0;
    double y_scale_ = 1.0;
    unsigned char object_position_ = 0;
};

// A workbook that grows row by row. Rows and columns count from 0; rows are logical: past 1,048,576 they go
// on in a further sheet of the workbook. Memory does not grow with rows. What the format refuses is cut,
// moved or written as plain text with a line at level 5, never dropped in silence. One object is used by one
// thread at a time. Destroying an open workbook discards it with all its temporary files.
class ZELLOFFICEKIT_API CExcelControllorWithC
{
public:
    explicit CExcelControllorWithC(QObject* parent);
    CExcelControllorWithC(const CExcelControllorWithC&) = delete;
    CExcelControllorWithC& operator=(const CExcelControllorWithC&) = delete;
    ~CExcelControllorWithC();

    // Creates the workbook at file_path (UTF-8); the folder holds nothing of it before Close. A workbook left
    // open is discarded; one of the same path only if the sheet that is added next is one that it has, since
    // any other is a further sheet of the same report. False if the path can't be written; that answer takes
    // a second.
    bool Init(const std::string& file_path, std::string folder);
    // Makes the sheet of that name current, adding it if the workbook has none yet. False without a workbook.
    bool AddSheetByName(const std::string& name);
    // Index of the last row touched by a cell, a height or a picture; 0 on an empty sheet.
    int GetUsedRowsCount();
    void SetCellString(int row, int col, const std::string& text, std::shared_ptr<Clxw_format_> format);
    void MergeCells(int first_row, int first_col, int last_row, int last_col, const std::string& text,
                    std::shared_ptr<Clxw_format_> format);
    // In characters of the default font.
    void SetColumnWidth(int first_col, int last_col, int width);
    // 0 pixels and less are ignored.
    void SetColumnWidthtWithPixels(int first_col, int last_col, int pixels);
    void SetRowHeightWithPixels(int row, int pixels);
    // Places a picture held in memory (JPEG or PNG bytes) into a cell; an empty buffer is ignored.
    void SetColumnPicsBufferOpt(int row, int col, const std::string& buffer,
                                std::shared_ptr<Clxw_image_options_> options);
    // Writes a hyperlink to a file path or a web address that shows text.
    void SetLinkString(int row, int col, std::string& target, std::string& text);
    // Adds a validation: the entries of a list, separated by commas or line feeds.
    void SetCellValidCheck(int row, int col, const std::string& rule);
    // Finishes the workbook and puts it at its path. A workbook that did not reach the disk whole is set
    // aside with a line at level 5.
    void Close();

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace ZellOfficeKit
