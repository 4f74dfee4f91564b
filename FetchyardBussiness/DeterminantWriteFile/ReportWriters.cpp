#include "FetchyardBussiness/DeterminantWriteFile/DeterminantDownloadParam.h"
#include "FetchyardBussiness/DeterminantWriteFile/ReportExportCsv.h"
#include "FetchyardBussiness/DeterminantWriteFile/ReportExportExcel.h"
#include "FetchyardBussiness/DeterminantWriteFile/ReportExportPdf.h"
#include "FetchyardBussiness/DeterminantWriteFile/ReportExportTxt.h"

namespace FetchyardBussiness {

std::unique_ptr<CExportReportDataToFileObject> MakeReportWriter(int export_file_type)
{
    switch (export_file_type) {
        case kExcelReport:
            return std::make_unique<CExportReportDataToEXCELFileObject>();
        case kCsvReport:
            return std::make_unique<CExportReportDataToCSVFileObject>();
        case kPdfReport:
            return std::make_unique<CExportReportDataToPDFFileObject>();
        case kTxtReport:
            return std::make_unique<CExportReportDataToTXTFileObject>();
        default:
            return nullptr;
    }
}

}  // namespace FetchyardBussiness
