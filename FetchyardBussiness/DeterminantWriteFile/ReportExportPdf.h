#pragma once

#include "FetchyardBussiness/DeterminantWriteFile/ReportExportObject.h"

#include <string>
#include <vector>

namespace FetchyardBussiness {

// Writes a report as HTML beside the place where the PDF is to be, page after page, and has wkhtmltopdf turn
// it into the PDF with the last one. Texts go into the HTML as they are. Embedded pictures travel inside it;
// linked ones lie beside the report. No stop is heeded. Keeps nothing between pages but the HTML on disk.
class CExportReportDataToPDFFileObject : public CExportReportDataToFileObject
{
public:
    bool ExportDataToFile(const ExportDataNode& excel_data) override;

    // False if there is no sheet or the folder for the tool can't be made; true also if the tool failed.
    bool ExportDataToFileWithHTMLInWKHTMLTOPDF(const ExportDataNode& excel_data);

private:
    // HTML on its way to disk, with what has gathered in it since it was last written there.
    struct Staging
    {
        std::string path;
        std::string html;
        int rows = 0;
        int pictures = 0;  // inline ones
    };

    static void AddHead(const ExportDataNode& excel_data, const ExportSheet& sheet, Staging& staging);
    void AddRow(const ExportDataNode& excel_data, const std::vector<ExportCell>& row, Staging& staging);
    void AddEmbeddedPicture(const ExportDataNode& excel_data, const ExportCell& cell, Staging& staging);
    void AddLinkedPicture(const ExportDataNode& excel_data, const ExportCell& cell, Staging& staging);
    void Flush(Staging& staging);
    bool Finish(const ExportDataNode& excel_data, Staging& staging);
};

}  // namespace FetchyardBussiness
