#include "FetchyardBussiness/DeterminantWriteFile/ReportExportCsv.h"

#include "FetchyardBussiness/ErrorText.h"
#include "FetchyardBussiness/Log.h"
#include "ZellBase/Util.h"
#include "ZellOfficeKit/CSVParser.h"
#include "ZellWidgets/ZellWidgets.h"

#include <QDir>

namespace FetchyardBussiness {

using ZellOfficeKit::CCSVParser;

namespace {

std::string SheetPath(const ExportDataNode& excel_data, const ExportSheet& sheet)
{
    const std::string suffix = excel_data.vec_sheets.size() > 1 ? "_" + sheet.sheet_name : std::string();
    return excel_data.file_save_path + excel_data.file_name + suffix + ".csv";
}

// The fields of one row after another in the same list. Texts are taken over by a swap: a copy would cost two
// atomic operations a cell, and a new list for each row a third of the time of the whole report.
class CRowFields
{
public:
    void Start() { used_ = 0; }

    void Add(QString text)
    {
        if (used_ == fields_.size())
            fields_.append(QString());
        fields_[used_++].swap(text);
    }

    const QStringList& End()
    {
        while (fields_.size() > used_)
            fields_.removeLast();
        return fields_;
    }

private:
    QStringList fields_;
    int used_ = 0;
};

}  // namespace

CExportReportDataToCSVFileObject::CExportReportDataToCSVFileObject()
{
    strip_line_feeds_ = true;
}

bool CExportReportDataToCSVFileObject::ExportDataToFile(const ExportDataNode& excel_data)
{
    LogInfo("CExportReportDataToCSVFileObject::ExportDataToCSVFile");
    if (excel_data.vec_sheets.empty()) {
        LogError("CExportReportDataToCSVFileObject::ExportDataToFile excel_data.vec_sheets.size() < 1");
        return false;
    }
    for (const ExportSheet& sheet : excel_data.vec_sheets) {
        if (IsStopped())
            return true;
        const bool written =
            sheet.page_index == 1 ? StartSheet(excel_data, sheet) : ContinueSheet(excel_data, sheet);
        if (!written)
            return false;
    }
    return true;
}

bool CExportReportDataToCSVFileObject::StartSheet(const ExportDataNode& excel_data, const ExportSheet& sheet)
{
    DeleteTemporaryPictures();
    const QDir folder(ZellWidgets::StringToQString(excel_data.file_save_path, nullptr));
    if (!folder.exists())
        QDir().mkpath(folder.path());
    const std::string path = SheetPath(excel_data, sheet);
    LogInfo("CExportReportDataToCSVFileObject::ExportDataToCSVFile to csv file: %s.", path.c_str());
    CCSVParser file(nullptr);
    if (!file.OpenFile(ZellWidgets::StringToQString(path, nullptr)))
        return false;
    const QStringList titles = GetSheetTitleTexts(sheet);
    for (const QString& title : titles)
        file.AppendLine(QStringList(title));
    if (!titles.isEmpty())
        file.AppendLine(QStringList{QString(), QString()});
    file.AppendLine(GetSheetColumnTexts(sheet));
    WriteRows(excel_data, sheet, file);
    file.WriteCSVFile();
    file.CloseFile();
    return true;
}

bool CExportReportDataToCSVFileObject::ContinueSheet(const ExportDataNode& excel_data,
                                                     const ExportSheet& sheet)
{
    if (!QDir(ZellWidgets::StringToQString(excel_data.file_save_path, nullptr)).exists())
        return false;
    const std::string path = SheetPath(excel_data, sheet);
    LogInfo("CExportReportDataToCSVFileObject::ExportDataToCSVFile  add to csv file: %s.", path.c_str());
    CCSVParser file(nullptr);
    if (!file.OpenFileWithAppendMode(ZellWidgets::StringToQString(path, nullptr)))
        return false;
    WriteRows(excel_data, sheet, file);
    file.WriteCSVFile();
    file.CloseFile();
    return true;
}

// A stop in the middle of a row leaves a short row.
void CExportReportDataToCSVFileObject::WriteRows(const ExportDataNode& excel_data, const ExportSheet& sheet,
                                                 CCSVParser& file)
{
    CRowFields fields;
    for (const std::vector<ExportCell>& row : sheet.vec_rows) {
        if (IsStopped())
            break;
        fields.Start();
        for (const ExportCell& cell : row) {
            if (IsStopped())
                break;
            switch (cell.cell_format.cell_type) {
                case kCellText:
                case kCellPlainText:
                    fields.Add(ReportText(cell.cell_name));
                    break;
                case kCellEmbeddedPicture:
                case kCellLinkedPicture:
                    fields.Add(PictureField(excel_data, cell));
                    break;
                default:
                    break;  // no field at all
            }
        }
        file.AppendLine(fields.End());
    }
}

// The path of the fetched picture, or why there is none.
QString CExportReportDataToCSVFileObject::PictureField(const ExportDataNode& excel_data,
                                                       const ExportCell& cell)
{
    std::string name = Zell::Base::GuidUtil::CreateGuid() + ".jpg";
    if (!cell.file_title.empty())
        name = cell.file_title + ".jpg";
    const std::string target = excel_data.file_save_path + name;
    if (cell.cell_name.empty()) {
        LogError(" failed itea_column->cell_name = %s  can not contain *PictureRequest*",
                 cell.cell_name.c_str());
        return {};
    }
    Zell::Base::Error::ErrorCode error;
    if (FetchPictureCell(excel_data, cell, target, error))
        return ReportText(target);
    return ErrorMessage(error).remove(QLatin1Char('\n'));
}

}  // namespace FetchyardBussiness
