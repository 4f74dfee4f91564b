#include "ZellOfficeKit/ExcelControllor.h"

#include "fakes/Journal.h"
#include "fakes/Script.h"

#include <algorithm>
#include <cstdio>
#include <map>

namespace ZellOfficeKit {
namespace {

std::string At(int row, int col)
{
    return std::to_string(row) + "," + std::to_string(col);
}

std::string Quoted(const std::string& text)
{
    return "\"" + text + "\"";
}

// What differs from a fresh format.
std::string Shown(const std::shared_ptr<Clxw_format_>& format)
{
    if (!format)
        return " no format";
    std::string text;
    if (!format->GetVal_background_color().empty())
        text += " bg=" + format->GetVal_background_color();
    if (!format->GetVal_text_color().empty())
        text += " fg=" + format->GetVal_text_color();
    if (format->GetVal_font_size() != 0)
        text += " size=" + std::to_string(format->GetVal_font_size());
    if (format->GetVal_is_blod())
        text += " bold";
    if (format->GetVal_text_location() != 0)
        text += " loc=" + std::to_string(format->GetVal_text_location());
    if (format->GetVal_is_need_wrap())
        text += " wrap";
    return text;
}

std::string Number(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
}

}  // namespace

// Keeps of each sheet the last row that was touched.
struct CExcelControllorWithC::Impl
{
    std::map<std::string, int> last_rows;
    std::string current;

    void Touch(int row)
    {
        int& last = last_rows[current];
        last = std::max(last, row);
    }
};

CExcelControllorWithC::CExcelControllorWithC(QObject* parent) : impl_(std::make_unique<Impl>())
{
    if (parent != nullptr)
        fakes::Append("xlsx with a parent");
}

CExcelControllorWithC::~CExcelControllorWithC() = default;

bool CExcelControllorWithC::Init(const std::string& file_path, std::string folder)
{
    if (!fakes::Call("xlsx init", file_path + " in " + folder))
        return false;
    impl_->last_rows.clear();
    return true;
}

bool CExcelControllorWithC::AddSheetByName(const std::string& name)
{
    impl_->current = name;
    return fakes::Call("xlsx sheet", name);
}

int CExcelControllorWithC::GetUsedRowsCount()
{
    fakes::Call("xlsx used rows", "");
    const int scripted = fakes::TheScript().used_rows;
    return scripted >= 0 ? scripted : impl_->last_rows[impl_->current];
}

void CExcelControllorWithC::SetCellString(int row, int col, const std::string& text,
                                          std::shared_ptr<Clxw_format_> format)
{
    impl_->Touch(row);
    fakes::Call("xlsx cell", At(row, col) + " " + Quoted(text) + Shown(format));
}

void CExcelControllorWithC::MergeCells(int first_row, int first_col, int last_row, int last_col,
                                       const std::string& text, std::shared_ptr<Clxw_format_> format)
{
    impl_->Touch(last_row);
    fakes::Call("xlsx merge", At(first_row, first_col) + " to " + At(last_row, last_col) + " " +
                                  Quoted(text) + Shown(format));
}

void CExcelControllorWithC::SetColumnWidth(int first_col, int last_col, int width)
{
    fakes::Call("xlsx column width", At(first_col, last_col) + " " + std::to_string(width));
}

void CExcelControllorWithC::SetColumnWidthtWithPixels(int first_col, int last_col, int pixels)
{
    fakes::Call("xlsx column pixels", At(first_col, last_col) + " " + std::to_string(pixels));
}

void CExcelControllorWithC::SetRowHeightWithPixels(int row, int pixels)
{
    impl_->Touch(row);
    fakes::Call("xlsx row pixels", std::to_string(row) + " " + std::to_string(pixels));
}

void CExcelControllorWithC::SetColumnPicsBufferOpt(int row, int col, const std::string& buffer,
                                                   std::shared_ptr<Clxw_image_options_> options)
{
    impl_->Touch(row);
    const bool is_jpeg = buffer.compare(0, 2, "\xFF\xD8") == 0;
    fakes::Call("xlsx picture", At(row, col) +
                                    (buffer.empty() ? " empty"
                                     : is_jpeg      ? " jpeg"
                                                    : " unknown") +
                                    " x=" + Number(options->GetVal_x_scale()) +
                                    " y=" + Number(options->GetVal_y_scale()) +
                                    " position=" + std::to_string(options->GetVal_object_position()));
}

void CExcelControllorWithC::SetLinkString(int row, int col, std::string& target, std::string& text)
{
    impl_->Touch(row);
    fakes::Call("xlsx link", At(row, col) + " " + Quoted(target) + " " + Quoted(text));
}

void CExcelControllorWithC::SetCellValidCheck(int row, int col, const std::string& rule)
{
    fakes::Call("xlsx valid", At(row, col) + " " + Quoted(rule));
}

void CExcelControllorWithC::Close()
{
    fakes::Call("xlsx close", "");
}

}  // namespace ZellOfficeKit
