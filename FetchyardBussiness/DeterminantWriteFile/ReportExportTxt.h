#pragma once

#include "FetchyardBussiness/DeterminantWriteFile/ReportExportObject.h"

class QFile;

namespace FetchyardBussiness {

// Writes all sheets of a report into one plain text file, each field followed by ten blanks. No picture is
// fetched and no stop is heeded: a page is always written whole. Keeps nothing open between pages.
class CExportReportDataToTXTFileObject : public CExportReportDataToFileObject
{
public:
    bool ExportDataToFile(const ExportDataNode& excel_data) override;

private:
    bool StartFile(const ExportDataNode& excel_data, const std::string& path);
    bool ContinueFile(const ExportDataNode& excel_data, const std::string& path);
    bool Write(QFile& file, const ExportDataNode& excel_data, bool with_heads) const;
};

}  // namespace FetchyardBussiness
