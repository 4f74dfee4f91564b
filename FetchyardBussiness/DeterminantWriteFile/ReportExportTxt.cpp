#include "FetchyardBussiness/DeterminantWriteFile/ReportExportTxt.h"

#include "FetchyardBussiness/Log.h"
#include "ZellWidgets/ZellWidgets.h"

#include <QDir>
#include <QFile>
#include <QMutexLocker>
#include <QTextStream>

namespace FetchyardBussiness {

namespace {

constexpr char kSeparator[] = "          ";

QDir FolderOf(const ExportDataNode& excel_data)
{
    return QDir(ZellWidgets::StringToQString(excel_data.file_save_path, nullptr));
}

}  // namespace

bool CExportReportDataToTXTFileObject::ExportDataToFile(const ExportDataNode& excel_data)
{
    LogInfo("CExportReportDataToTXTFileObject::ExportDataToFile");
    if (excel_data.vec_sheets.empty()) {
        LogError("CExportReportDataToTXTFileObject::ExportDataToFile excel_data.vec_sheets.size() < 1");
        return false;
    }
    const std::string path =
        excel_data.file_save_path + excel_data.file_name + GetFileSuffix(excel_data.export_file_type);
    // The first sheet decides for all of them.
    return excel_data.vec_sheets.front().page_index == 1 ? StartFile(excel_data, path)
                                                         : ContinueFile(excel_data, path);
}

bool CExportReportDataToTXTFileObject::StartFile(const ExportDataNode& excel_data, const std::string& path)
{
    const QDir folder = FolderOf(excel_data);
    if (!folder.exists())
        QDir().mkpath(folder.path());
    // The message says csv, and readers of the log know it so.
    LogInfo("CExportReportDataToTXTFileObject::ExportDataToFile to csv file: %s.", path.c_str());
    QFile file(ZellWidgets::StringToQString(path, nullptr));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        LogInfo("CExportReportDataToTXTFileObject::ExportDataToFile txt Can't open the file!");
        return false;
    }
    return Write(file, excel_data, true);
}

bool CExportReportDataToTXTFileObject::ContinueFile(const ExportDataNode& excel_data, const std::string& path)
{
    const QMutexLocker lock(&write_mutex_);
    if (!FolderOf(excel_data).exists())
        return false;
    LogInfo("CExportReportDataToTXTFileObject::ExportDataToFile append  to txt file: %s.", path.c_str());
    QFile file(ZellWidgets::StringToQString(path, nullptr));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text | QIODevice::Append)) {
        LogInfo("CExportReportDataToTXTFileObject::ExportDataToFile append Can't open the file!");
        return false;
    }
    return Write(file, excel_data, false);
}

// UTF-8 whatever the platform's code page is, so that no letter is lost. False if the page is not whole on
// disk; then the file is cut back to the pages before it, which a resume goes on with.
bool CExportReportDataToTXTFileObject::Write(QFile& file, const ExportDataNode& excel_data,
                                             bool with_heads) const
{
    const qint64 before = file.size();
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    const QString separator = QLatin1String(kSeparator);
    if (with_heads) {
        for (const QString& title : GetAllTitleTexts(excel_data))
            stream << title << '\n';
        stream << JoinTexts(GetAllColumnTexts(excel_data), separator) << '\n';
    }
    for (const QStringList& row : GetAllRowTexts(excel_data))
        stream << JoinTexts(row, separator) << '\n';
    stream.flush();
    const bool flushed = file.flush();
    const bool whole = flushed && stream.status() == QTextStream::Ok && file.error() == QFileDevice::NoError;
    // Closing tries once more to write what is still held.
    file.close();
    if (whole && file.error() == QFileDevice::NoError)
        return true;
    file.resize(before);
    return false;
}

}  // namespace FetchyardBussiness
