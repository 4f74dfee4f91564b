#include "ZellOfficeKit/ExcelControllor.h"

#include "OfficeLog.h"
#include "Workbook.h"
#include "ZellBaseHost/ProcessExit.h"

#include <chrono>
#include <thread>

namespace ZellOfficeKit {
namespace {

// Callers try a failed Init again at once and without end.
void WaitAfterFailure()
{
    const Zell::Base::details::CBlockedMark mark;
    std::this_thread::sleep_for(std::chrono::milliseconds(CurrentOfficeLimits().init_failure_delay_ms));
}

}  // namespace

struct CExcelControllorWithC::Impl
{
    // The current sheet; null, with a line at level 5, if there is none.
    CLogicalSheet* Sheet() const
    {
        if (sheet == nullptr)
            OFFICE_LOG_ERROR("CExcelControllorWithC", "there is no sheet to write to");
        return sheet;
    }

    lxw_format* Format(const std::shared_ptr<Clxw_format_>& format) const
    {
        return workbook->formats().Get(format.get());
    }

    // Which of the two workbooks of one path goes on is told by the sheet that comes first: one that the
    // earlier has begins the report anew, any other is a further sheet of it.
    void ChooseWorkbook(const std::string& name)
    {
        if (earlier != nullptr && !earlier->HasSheet(name))
            workbook = std::move(earlier);
        earlier.reset();
    }

    std::unique_ptr<CWorkbook> workbook;
    std::unique_ptr<CWorkbook> earlier;  // left open at the same path
    CLogicalSheet* sheet = nullptr;
};

// Parameters are passed as the contract says.

CExcelControllorWithC::CExcelControllorWithC(QObject* /*parent*/) : impl_(std::make_unique<Impl>()) {}

CExcelControllorWithC::~CExcelControllorWithC() = default;

bool CExcelControllorWithC::Init(const std::string& file_path, std::string /*folder*/)
{
    if (impl_->earlier == nullptr && impl_->workbook != nullptr && impl_->workbook->file_path() == file_path)
        impl_->earlier = std::move(impl_->workbook);
    else if (impl_->earlier != nullptr && impl_->earlier->file_path() != file_path)
        impl_->earlier.reset();
    impl_->sheet = nullptr;
    impl_->workbook.reset();
    impl_->workbook = CWorkbook::Create(file_path);
    if (impl_->workbook == nullptr)
        WaitAfterFailure();
    return impl_->workbook != nullptr;
}

bool CExcelControllorWithC::AddSheetByName(const std::string& name)
{
    if (impl_->workbook == nullptr)
        return false;
    impl_->ChooseWorkbook(name);
    CLogicalSheet* sheet = impl_->workbook->SheetNamed(name);
    if (sheet == nullptr)
        return false;
    impl_->sheet = sheet;
    return true;
}

int CExcelControllorWithC::GetUsedRowsCount()
{
    return impl_->sheet == nullptr ? 0 : impl_->sheet->used_row();
}

void CExcelControllorWithC::SetCellString(int row, int col, const std::string& text,
                                          std::shared_ptr<Clxw_format_> format)
{
    if (CLogicalSheet* sheet = impl_->Sheet())
        sheet->WriteText(row, col, text, impl_->Format(format));
}

void CExcelControllorWithC::MergeCells(int first_row, int first_col, int last_row, int last_col,
                                       const std::string& text, std::shared_ptr<Clxw_format_> format)
{
    if (CLogicalSheet* sheet = impl_->Sheet())
        sheet->Merge({first_row, first_col, last_row, last_col}, text, impl_->Format(format));
}

void CExcelControllorWithC::SetColumnWidth(int first_col, int last_col, int width)
{
    if (CLogicalSheet* sheet = impl_->Sheet())
        sheet->SetColumnCharacters(first_col, last_col, width);
}

void CExcelControllorWithC::SetColumnWidthtWithPixels(int first_col, int last_col, int pixels)
{
    if (CLogicalSheet* sheet = impl_->Sheet())
        sheet->SetColumnPixels(first_col, last_col, pixels);
}

void CExcelControllorWithC::SetRowHeightWithPixels(int row, int pixels)
{
    if (CLogicalSheet* sheet = impl_->Sheet())
        sheet->SetRowHeight(row, pixels);
}

void CExcelControllorWithC::SetColumnPicsBufferOpt(int row, int col, const std::string& buffer,
                                                   std::shared_ptr<Clxw_image_options_> options)
{
    if (CLogicalSheet* sheet = impl_->Sheet())
        sheet->PlacePicture(row, col, buffer, options.get());
}

void CExcelControllorWithC::SetLinkString(int row, int col, std::string& target, std::string& text)
{
    if (CLogicalSheet* sheet = impl_->Sheet())
        sheet->WriteLink(row, col, target, text);
}

void CExcelControllorWithC::SetCellValidCheck(int row, int col, const std::string& rule)
{
    if (CLogicalSheet* sheet = impl_->Sheet())
        sheet->AddValidation(row, col, rule);
}

void CExcelControllorWithC::Close()
{
    if (impl_->workbook != nullptr)
        impl_->workbook->Close();
    impl_->sheet = nullptr;
    impl_->workbook.reset();
    impl_->earlier.reset();
}

}  // namespace ZellOfficeKit
