#include "FetchyardBussiness/DeterminantWriteFile/ReportExportPdf.h"

#include "FetchyardBussiness/DeterminantWriteFile/DeterminantDownloadParam.h"
#include "FetchyardBussiness/DeterminantWriteFile/PdfWork.h"
#include "FetchyardBussiness/Log.h"
#include "ZellBase/FileSystem.h"
#include "ZellBase/Util.h"
#include "ZellWidgets/ZellWidgets.h"

#include <QDir>
#include <QFile>

namespace FetchyardBussiness {

namespace FileSystem = Zell::Base::FileSystem;

namespace {

constexpr int kRowsOfAFlush = 20;
constexpr int kPicturesOfAFlush = 3;

constexpr char kBeforeTitle[] = "<!DOCTYPE html><html><head><meta charset=\"utf - 8\"><title>";
// The style stands between head and body; that is how the report has always looked.
constexpr char kBehindTitle[] =
    "</title></head><style>* {\tmargin: 0;\tpadding: 0;\t}\thtml,\tbody {\theight: 100%;\twidth: 100%; "
    "word-break: "
    "break-word; }\t\t#pdf-template {\theight: 100%;\twidth: 100%;\t}\t#pdf-template-table {\tpadding: 0 "
    "20px;\tmargin-top: 20px;\t}\t.report-table {\twidth: 100%;    }\t.person-information {\ttext-align: "
    "left;\t} "
    ".person-summary {\ttext-align: left;\t} \ttr {height: 40px;page-break-after: always; page-break-before: "
    "always;page-break-inside: avoid; }\tth {\ttext-align: center;\t}\ttd {    text-align: center;\t "
    "max-width: "
    "150px;\t}\t.table-header {\t\tbackground: #f5f5f5;\t}</style><body>";
constexpr char kBehindParagraphs[] =
    "<div id=\"pdf-template-table\">"
    "<table border=\"1\" bordercolor = \"#cdcdcd\" class=\"report-table\" cellpadding=\"0\" "
    "cellspacing=\"0\">"
    "<tr class=\"table-header\">";
constexpr char kTail[] = "</table></div></div></body></html>";
constexpr char kNoPicture[] = "<td> </td>";

std::string TitleParagraph(const ExportCell& title)
{
    const CellFormat& format = title.cell_format;
    const std::string background =
        format.background_color.empty() ? "" : "background-color:" + format.background_color + ";";
    return "<p style=\"font-size:" + std::to_string(format.font_size) + (format.is_blod ? "px; " : "px;") +
           background + "font-family:" + format.font_family +
           ";text-align:" + CExportReportDataToFileObject::GetAlignmentName(format.text_location) +
           (format.is_blod ? "; \"><b>" : "; \">") + title.cell_name + (format.is_blod ? "</b></p>" : "</p>");
}

std::string TextCell(const std::string& text)
{
    return "<td>" + text + "</td>";
}

}  // namespace

bool CExportReportDataToPDFFileObject::ExportDataToFile(const ExportDataNode& excel_data)
{
    return ExportDataToFileWithHTMLInWKHTMLTOPDF(excel_data);
}

bool CExportReportDataToPDFFileObject::ExportDataToFileWithHTMLInWKHTMLTOPDF(const ExportDataNode& excel_data)
{
    if (excel_data.vec_sheets.empty()) {
        LogError(
            "CExportReportDataToPDFFileObject::ExportDataToFileWithHTMLInWKHTMLTOPDF "
            "excel_data.vec_sheets.size() < 1");
        return false;
    }
    for (const ExportSheet& sheet : excel_data.vec_sheets) {
        Staging staging;
        staging.path = excel_data.file_save_path + excel_data.file_name + ".html";
        if (sheet.page_index == 1)
            AddHead(excel_data, sheet, staging);
        for (const std::vector<ExportCell>& row : sheet.vec_rows)
            AddRow(excel_data, row, staging);
        if (!excel_data.file_total_page_is_finished)
            Flush(staging);
        else if (!Finish(excel_data, staging))
            return false;
    }
    return true;
}

void CExportReportDataToPDFFileObject::AddHead(const ExportDataNode& excel_data, const ExportSheet& sheet,
                                               Staging& staging)
{
    const QString folder = ZellWidgets::StringToQString(excel_data.file_save_path, nullptr);
    if (!QDir(folder).exists())
        QDir().mkpath(folder);
    const QString staged = ZellWidgets::StringToQString(staging.path, nullptr);
    if (QFile::exists(staged))
        QFile::remove(staged);
    std::string& html = staging.html;
    html += kBeforeTitle + sheet.sheet_name + kBehindTitle + "<div id=\"pdf-template\">";
    for (const ExportCell& title : sheet.vec_titles)
        html += TitleParagraph(title);
    html += kBehindParagraphs;
    for (const ExportCell& column : sheet.vec_columns)
        html += "<th>" + column.cell_name + "</th>";
    html += "</tr>";
}

void CExportReportDataToPDFFileObject::AddRow(const ExportDataNode& excel_data,
                                              const std::vector<ExportCell>& row, Staging& staging)
{
    ++staging.rows;
    staging.html += "<tr>";
    for (std::size_t i = 0; i < row.size(); ++i) {
        const ExportCell& cell = row[i];
        switch (cell.cell_format.cell_type) {
            case kCellText:
            case kCellPlainText:
                staging.html += TextCell(cell.cell_name);
                break;
            case kCellEmbeddedPicture:
                AddEmbeddedPicture(excel_data, cell, staging);
                break;
            case kCellLinkedPicture:
                if (!cell.cell_name.empty()) {
                    AddLinkedPicture(excel_data, cell, staging);
                    break;
                }
                LogError(" failed itea_column->cell_name = %s  can not contain *PictureRequest*",
                         cell.cell_name.c_str());
                // The next cell takes the place of a link that leads nowhere, whatever its kind.
                if (++i < row.size())
                    staging.html += TextCell(row[i].cell_name);
                break;
            default:
                break;
        }
    }
    staging.html += "</tr>";
    if (staging.rows == kRowsOfAFlush)
        Flush(staging);
}

void CExportReportDataToPDFFileObject::AddEmbeddedPicture(const ExportDataNode& excel_data,
                                                          const ExportCell& cell, Staging& staging)
{
    if (cell.cell_name.empty()) {
        LogError(" failed itea_column->cell_name = %s  can not contain *PictureRequest*",
                 cell.cell_name.c_str());
        staging.html += TextCell(cell.cell_name);
        return;
    }
    Zell::Base::Error::ErrorCode error;
    std::string data;
    if (!FetchPictureCellToMemory(excel_data, cell, data, error)) {
        staging.html += kNoPicture;
        return;
    }
    // These words stand in the log of a picture that came; readers of the log know them so.
    LogError("SyncLoadImage  sync download image failed. image_data = %s", data.c_str());
    std::string text;
    Zell::Base::Encrypt::Base64Encode(text, data);
    // The type says png whatever the picture is; readers look at the bytes.
    staging.html += "<td><img width=\"100\" height=\"100\" src =data:image/png;base64," + text + "></td>";
    if (++staging.pictures == kPicturesOfAFlush)
        Flush(staging);
}

void CExportReportDataToPDFFileObject::AddLinkedPicture(const ExportDataNode& excel_data,
                                                        const ExportCell& cell, Staging& staging)
{
    const std::string target = excel_data.file_save_path + Zell::Base::GuidUtil::CreateGuid() + ".jpg";
    Zell::Base::Error::ErrorCode error;
    if (FetchPictureCell(excel_data, cell, target, error))
        staging.html += "<td><a href=" + target + ">image</a></td>";
    else
        staging.html += kNoPicture;
}

// May fall into the middle of a row. What can't be written is lost, and the report goes on.
void CExportReportDataToPDFFileObject::Flush(Staging& staging)
{
    if (!staging.html.empty())
        WriteStrStreamToFile(staging.html, staging.path);
    staging.html.clear();
    staging.rows = 0;
    staging.pictures = 0;
}

// Whatever the tool makes of it, the report counts as written; what is missing is seen on disk.
bool CExportReportDataToPDFFileObject::Finish(const ExportDataNode& excel_data, Staging& staging)
{
    staging.html += kTail;
    Flush(staging);
    const PdfWork work = NewPdfWork();
    if (!MakePdfWorkFolder(work)) {
        LogError(
            "  CExportReportDataToPDFFileObject::ExportDataToFileWithHTMLInWKHTMLTOPDF create file path =%s  "
            "failed.  task failed",
            work.folder.c_str());
        return false;
    }
    const std::string page_size = excel_data.pdf_page_size.empty() ? "A4" : excel_data.pdf_page_size;
    RunPdfTool(work, staging.path, page_size, excel_data.pdf_page_orintation);
    const std::string pdf = excel_data.file_save_path + excel_data.file_name + GetFileSuffix(kPdfReport);
    LogInfo("pdf has been created! pdf_path =%s", pdf.c_str());
    FileSystem::DeleteFileW(work.html.c_str());
    FileSystem::DeleteFileW(staging.path.c_str());
    const int copy_result = FileSystem::CopyFileW(work.pdf.c_str(), pdf.c_str(), 0);
    const int del_result = FileSystem::DeleteFileW(work.pdf.c_str());
    LogInfo("pdf has been created! pdf_path =%s   copy_result= %d  del_result = %d", pdf.c_str(), copy_result,
            del_result);
    return true;
}

}  // namespace FetchyardBussiness
