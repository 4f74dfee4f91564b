#pragma once

#include "FetchyardLogical/ReportData.h"
#include "ZellBase/Error.h"
#include "ZellPictureLoader/PictureLoader.h"

#include <QList>
#include <QMutex>
#include <QSize>
#include <QString>
#include <QStringList>

#include <atomic>
#include <memory>
#include <string>
#include <vector>

namespace FetchyardBussiness {

using FetchyardLogical::CellFormat;
using FetchyardLogical::ExportCell;
using FetchyardLogical::ExportDataNode;
using FetchyardLogical::ExportMergeRange;
using FetchyardLogical::ExportSheet;

// Kinds of data cells. Any other number is like kCellNothing.
enum CellType : int {
    kCellText = 0,
    kCellPlainText = 1,
    kCellEmbeddedPicture = 2,
    kCellLinkedPicture = 3,
    kCellValidatedText = 4,
    kCellNothing = 5,
    kCellHyperlink = 6,
};

// Base of the report writers: what all of them do alike. A task keeps one writer for each format for as long
// as it lives; a writer gets the report page by page on the thread of the task. Page 1 of a sheet starts it,
// any other page adds to it.
class CExportReportDataToFileObject
{
public:
    CExportReportDataToFileObject();
    CExportReportDataToFileObject(const CExportReportDataToFileObject&) = delete;
    CExportReportDataToFileObject& operator=(const CExportReportDataToFileObject&) = delete;
    virtual ~CExportReportDataToFileObject();

    // Writes one delivery. False: the report could not be written at all. The base writes nothing: true.
    virtual bool ExportDataToFile(const ExportDataNode& excel_data);

    // Asks the writer to leave its loops, or with false to go on. Any thread.
    void SetTaskStopState(bool state);

    // Appends to a file, which is created if it is missing.
    bool WriteStrStreamToFile(const std::string& data, const std::string& file_path);

    // Suffix of a format with its dot; empty for a number that is no format.
    static std::string GetFileSuffix(int type);
    // CSS name of a text location; empty for any other number.
    static std::string GetAlignmentName(int text_location);

    // The texts of a sheet, or of all sheets of a delivery one after the other.
    QStringList GetSheetTitleTexts(const ExportSheet& sheet) const;
    QStringList GetSheetColumnTexts(const ExportSheet& sheet) const;
    QStringList GetAllTitleTexts(const ExportDataNode& excel_data) const;
    QStringList GetAllColumnTexts(const ExportDataNode& excel_data) const;
    QList<QStringList> GetAllRowTexts(const ExportDataNode& excel_data) const;

    // Every text followed by the separator.
    static QString JoinTexts(const QStringList& texts, const QString& separator);

protected:
    bool IsStopped() const { return stop_state_.load(std::memory_order_relaxed); }

    // A text as it goes into the report.
    QString ReportText(const std::string& text) const;

    // Fetches the picture of a cell, which has an address, into the target file. On false, error says why.
    bool FetchPictureCell(const ExportDataNode& excel_data, const ExportCell& cell, const std::string& target,
                          Zell::Base::Error::ErrorCode& error);
    // The same into memory.
    bool FetchPictureCellToMemory(const ExportDataNode& excel_data, const ExportCell& cell, std::string& data,
                                  Zell::Base::Error::ErrorCode& error);

    // Deletes the pictures that were only staged.
    void DeleteTemporaryPictures();

    QMutex write_mutex_;
    bool strip_line_feeds_ = false;
    QSize picture_size_ = QSize(100, 100);  // pixels
    std::shared_ptr<ZellPictureLoader::CImageMultiSyncLoader> image_loader_;
    std::vector<std::string> temp_picture_files_;

private:
    QStringList Texts(const std::vector<ExportCell>& cells) const;

    std::atomic<bool> stop_state_{false};
};

// Makes the writer of a format; null if there is none.
std::unique_ptr<CExportReportDataToFileObject> MakeReportWriter(int export_file_type);

}  // namespace FetchyardBussiness
