#include "FetchyardBussiness/DeterminantWriteFile/ReportExportExcel.h"

#include "FetchyardBussiness/ErrorText.h"
#include "FetchyardBussiness/Log.h"
#include "ZellWidgets/ZellWidgets.h"

#include <QDir>
#include <QMutexLocker>

#include <algorithm>

namespace FetchyardBussiness {

using ZellOfficeKit::Clxw_format_;

namespace {

// Headers and data cells have no place for a text location.
std::shared_ptr<Clxw_format_> CellFormatOf(const CellFormat& source)
{
    auto format = std::make_shared<Clxw_format_>();
    format->SetVal_background_color(source.background_color);
    format->SetVal_text_color(source.text_color);
    format->SetVal_font_size(source.font_size);
    format->SetVal_is_blod(source.is_blod);
    format->SetVal_is_need_wrap(source.is_need_wrap);
    return format;
}

std::shared_ptr<Clxw_format_> TitleFormatOf(const CellFormat& source)
{
    auto format = CellFormatOf(source);
    format->SetVal_text_location(source.text_location);
    return format;
}

std::shared_ptr<Clxw_format_> MergeFormatOf(const CellFormat& source)
{
    auto format = TitleFormatOf(source);
    format->SetVal_is_need_wrap(false);
    return format;
}

}  // namespace

CExportReportDataToEXCELFileObject::CExportReportDataToEXCELFileObject()
    : ptr_excel_controller_(std::make_shared<ZellOfficeKit::CExcelControllorWithC>(nullptr))
{
}

bool CExportReportDataToEXCELFileObject::ExportDataToFile(const ExportDataNode& excel_data)
{
    LogInfo("CExportReportDataToEXCELFileObject::ExportDataToFile");
    if (excel_data.vec_sheets.empty()) {
        LogError("CExportReportDataToEXCELFileObject::ExportDataToFile excel_data.vec_sheets.size() < 1");
        return false;
    }
    for (const ExportSheet& sheet : excel_data.vec_sheets) {
        if (IsStopped())
            break;
        if (sheet.page_index == 1)
            StartSheet(excel_data, sheet);
        else
            ContinueSheet(excel_data, sheet);
    }
    Finish(excel_data);
    return true;
}

// A workbook that can't be made is tried again until it can, or until a stop; a try that fails takes a
// second.
bool CExportReportDataToEXCELFileObject::InitWorkbook(const ExportDataNode& excel_data)
{
    while (!IsStopped()) {
        const QDir folder(ZellWidgets::StringToQString(excel_data.file_save_path, nullptr));
        if (!folder.exists())
            QDir().mkpath(folder.path());
        const std::string path =
            excel_data.file_save_path + excel_data.file_name + GetFileSuffix(excel_data.export_file_type);
        file_path_ = ZellWidgets::StringToQString(path, nullptr);
        if (ptr_excel_controller_->Init(path, excel_data.file_save_path))
            return true;
        LogError("CExportReportDataToEXCELFileObject::ExportDataToFile ptr_excel_controller_.isNull()");
    }
    return false;
}

void CExportReportDataToEXCELFileObject::StartSheet(const ExportDataNode& excel_data,
                                                    const ExportSheet& sheet)
{
    if (!InitWorkbook(excel_data) || !ptr_excel_controller_->AddSheetByName(sheet.sheet_name))
        return;
    Position position;
    WriteTitles(sheet, position);
    WriteColumns(sheet, position);
    for (const std::vector<ExportCell>& row : sheet.vec_rows) {
        if (IsStopped())
            break;
        position.tallest_picture = 0;
        WriteRow(excel_data, row, position);
        if (position.tallest_picture != 0)
            ptr_excel_controller_->SetRowHeightWithPixels(position.row, position.tallest_picture);
    }
}

// The height of the tallest picture of the page goes to the last row of the page, once.
void CExportReportDataToEXCELFileObject::ContinueSheet(const ExportDataNode& excel_data,
                                                       const ExportSheet& sheet)
{
    const QMutexLocker lock(&write_mutex_);
    if (!ptr_excel_controller_->AddSheetByName(sheet.sheet_name))
        return;
    Position position;
    position.row = ptr_excel_controller_->GetUsedRowsCount();
    for (const std::vector<ExportCell>& row : sheet.vec_rows) {
        if (IsStopped())
            break;
        WriteRow(excel_data, row, position);
    }
    if (position.tallest_picture != 0)
        ptr_excel_controller_->SetRowHeightWithPixels(position.row, position.tallest_picture);
}

void CExportReportDataToEXCELFileObject::WriteTitles(const ExportSheet& sheet, Position& position)
{
    for (const ExportCell& title : sheet.vec_titles) {
        if (IsStopped())
            break;
        ptr_excel_controller_->SetCellString(position.row, 0, title.cell_name,
                                             TitleFormatOf(title.cell_format));
        MergeTitle(sheet, position.row);
        ++position.row;
    }
}

// Only the first range that begins in the row counts.
void CExportReportDataToEXCELFileObject::MergeTitle(const ExportSheet& sheet, int row)
{
    const auto range = std::find_if(sheet.vec_merges.begin(), sheet.vec_merges.end(),
                                    [row](const ExportMergeRange& merge) { return merge.first_row == row; });
    if (range == sheet.vec_merges.end())
        return;
    ptr_excel_controller_->MergeCells(range->first_row, range->first_column, range->last_row,
                                      range->last_column, range->merge_text,
                                      MergeFormatOf(range->cell_format));
}

void CExportReportDataToEXCELFileObject::WriteColumns(const ExportSheet& sheet, Position& position)
{
    int column = 0;
    for (const ExportCell& header : sheet.vec_columns) {
        if (IsStopped())
            break;
        ptr_excel_controller_->SetCellString(position.row, column, header.cell_name,
                                             CellFormatOf(header.cell_format));
        const int width = header.cell_format.column_width;
        if (width > 0) {
            LogInfo(
                "CExportReportDataToEXCELFileObject::ExportDataToFile column_now= %d column_now=%d  "
                "striterator_comuln->cell_format.column_width =%d",
                column, column, width);
            ptr_excel_controller_->SetColumnWidth(column, column, width);
        }
        ++column;
    }
}

void CExportReportDataToEXCELFileObject::WriteRow(const ExportDataNode& excel_data,
                                                  const std::vector<ExportCell>& row, Position& position)
{
    position.column = 0;
    ++position.row;
    for (const ExportCell& cell : row) {
        if (IsStopped())
            break;
        WriteCell(excel_data, cell, position);
        ++position.column;
    }
}

void CExportReportDataToEXCELFileObject::WriteCell(const ExportDataNode& excel_data, const ExportCell& cell,
                                                   Position& position)
{
    std::shared_ptr<Clxw_format_> format = CellFormatOf(cell.cell_format);
    switch (cell.cell_format.cell_type) {
        case kCellText:
        case kCellPlainText:
            ptr_excel_controller_->SetCellString(position.row, position.column, cell.cell_name,
                                                 std::move(format));
            break;
        case kCellEmbeddedPicture:
            EmbedPicture(excel_data, cell, position);
            break;
        case kCellLinkedPicture:
            LinkPicture(excel_data, cell, position, format);
            break;
        case kCellValidatedText:
            ptr_excel_controller_->SetCellValidCheck(position.row, position.column,
                                                     cell.cell_format.valid_list);
            ptr_excel_controller_->SetCellString(position.row, position.column, cell.cell_name,
                                                 std::move(format));
            break;
        case kCellHyperlink: {
            std::string target = cell.cell_name;
            std::string text = cell.file_title;
            ptr_excel_controller_->SetLinkString(position.row, position.column, target, text);
            break;
        }
        default:
            break;  // an empty cell
    }
}

void CExportReportDataToEXCELFileObject::LinkPicture(const ExportDataNode& excel_data, const ExportCell& cell,
                                                     const Position& position,
                                                     const std::shared_ptr<Clxw_format_>& format)
{
    std::string name = std::to_string(position.row) + "_" + std::to_string(position.column) + ".jpg";
    if (!cell.file_title.empty())
        name = cell.file_title + ".jpg";
    std::string target = excel_data.file_save_path + name;
    if (cell.cell_name.empty()) {
        LogError(" failed itea_column->cell_name = %s  can not contain *PictureRequest*",
                 cell.cell_name.c_str());
        return;
    }
    Zell::Base::Error::ErrorCode error;
    if (FetchPictureCell(excel_data, cell, target, error)) {
        ptr_excel_controller_->SetLinkString(position.row, position.column, target, name);
        return;
    }
    const std::string reason = ZellWidgets::QStringToString(ErrorMessage(error), nullptr);
    ptr_excel_controller_->SetCellString(position.row, position.column, reason, format);
}

// The workbook stays open for the next page unless this was the last.
void CExportReportDataToEXCELFileObject::Finish(const ExportDataNode& excel_data)
{
    LogInfo("file  is finished =  %d", excel_data.file_total_page_is_finished);
    if (!excel_data.file_total_page_is_finished)
        return;
    LogInfo("file  close success, file_path_ = %s",
            ZellWidgets::QStringToString(file_path_, nullptr).c_str());
    // A later, narrower picture has made its column too narrow.
    for (auto width = column_pixel_widths_.cbegin(); width != column_pixel_widths_.cend(); ++width)
        ptr_excel_controller_->SetColumnWidthtWithPixels(width.key(), width.key(), width.value());
    column_pixel_widths_.clear();
    ptr_excel_controller_->Close();
    DeleteTemporaryPictures();
    file_path_.clear();
}

}  // namespace FetchyardBussiness
