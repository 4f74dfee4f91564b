#include "FetchyardBussiness/DeterminantWriteFile/ReportExportTxt.h"
#include "support/ContractTest.h"
#include "support/Pages.h"

#include <fstream>

namespace contract {
namespace {

// The text mode of the device: what a report holds is written with the ends that the system's editors want.
TEST_F(ContractTest, LinesOfATextReportEndAsTheSystemWants)
{
    FetchyardBussiness::ExportDataNode node;
    node.export_file_type = 3;
    node.file_name = "Alarm";
    node.file_save_path = Folder();
    node.vec_sheets = {Sheet(2, {{"1"}, {"2"}})};
    FetchyardBussiness::CExportReportDataToTXTFileObject writer;
    ASSERT_TRUE(writer.ExportDataToFile(node));
    std::ifstream file(Folder() + "Alarm.txt", std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(bytes, "1          \r\n2          \r\n");
}

}  // namespace
}  // namespace contract
