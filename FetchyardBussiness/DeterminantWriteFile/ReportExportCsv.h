#pragma once

#include "FetchyardBussiness/DeterminantWriteFile/ReportExportObject.h"

namespace ZellOfficeKit {
class CCSVParser;
}

namespace FetchyardBussiness {

// Writes one CSV file for each sheet, with the pictures as files beside it. Keeps nothing open between pages.
class CExportReportDataToCSVFileObject : public CExportReportDataToFileObject
{
public:
    CExportReportDataToCSVFileObject();

    bool ExportDataToFile(const ExportDataNode& excel_data) override;

private:
    bool StartSheet(const ExportDataNode& excel_data, const ExportSheet& sheet);
    bool ContinueSheet(const ExportDataNode& excel_data, const ExportSheet& sheet);
    void WriteRows(const ExportDataNode& excel_data, const ExportSheet& sheet,
                   ZellOfficeKit::CCSVParser& file);
    QString PictureField(const ExportDataNode& excel_data, const ExportCell& cell);
};

}  // namespace FetchyardBussiness
