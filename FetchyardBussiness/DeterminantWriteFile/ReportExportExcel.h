#pragma once

#include "FetchyardBussiness/DeterminantWriteFile/ReportExportObject.h"
#include "ZellOfficeKit/ExcelControllor.h"

#include <QMap>
#include <QString>

#include <memory>
#include <string>

namespace FetchyardBussiness {

// Writes a workbook with one sheet for each sheet name. The workbook is made at page 1 and stays open until
// the last page has been delivered; one that is still open when the writer goes is discarded.
class CExportReportDataToEXCELFileObject : public CExportReportDataToFileObject
{
public:
    CExportReportDataToEXCELFileObject();

    // False only for a delivery without sheets; every other failure goes to the log.
    bool ExportDataToFile(const ExportDataNode& excel_data) override;

private:
    // Where the next cell goes.
    struct Position
    {
        int row = 0;
        int column = 0;
        int tallest_picture = 0;  // pixels
    };

    bool InitWorkbook(const ExportDataNode& excel_data);
    void StartSheet(const ExportDataNode& excel_data, const ExportSheet& sheet);
    void ContinueSheet(const ExportDataNode& excel_data, const ExportSheet& sheet);
    void WriteTitles(const ExportSheet& sheet, Position& position);
    void MergeTitle(const ExportSheet& sheet, int row);
    void WriteColumns(const ExportSheet& sheet, Position& position);
    void WriteRow(const ExportDataNode& excel_data, const std::vector<ExportCell>& row, Position& position);
    void WriteCell(const ExportDataNode& excel_data, const ExportCell& cell, Position& position);
    void EmbedPicture(const ExportDataNode& excel_data, const ExportCell& cell, Position& position);
    void PlacePicture(const std::string& file, Position& position);
    void LinkPicture(const ExportDataNode& excel_data, const ExportCell& cell, const Position& position,
                     const std::shared_ptr<ZellOfficeKit::Clxw_format_>& format);
    void Finish(const ExportDataNode& excel_data);

    std::shared_ptr<ZellOfficeKit::CExcelControllorWithC> ptr_excel_controller_;
    QString file_path_;                   // of the open workbook; empty while none is open
    QMap<int, int> column_pixel_widths_;  // widest picture of a column, pixels
};

}  // namespace FetchyardBussiness
