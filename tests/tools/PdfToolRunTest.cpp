#include "support/ExportTest.h"
#include "support/Pages.h"
#include "ToolPlace.h"

#include <filesystem>

// The start of the HTML tool on both ways to a PDF: a report that is written here, and one that the server
// made.
namespace contract {
namespace {

// A client's data folder with blanks, quotes where the system takes them, and letters outside every code
// page.
constexpr char kPublic[] = "p ub ü 门/";

class PdfToolRun : public ExportTest
{
protected:
    PdfToolRun()
    {
        fakes::TheScript().public_data_path = place_.Folder() + kPublic;
        std::filesystem::create_directories(std::filesystem::u8path(place_.Folder() + kPublic + "Fetchyard"));
        Settings().export_file_type = FetchyardBussiness::kPdfReport;
    }

    void ReportOf(const std::string& page_size, int orientation)
    {
        fakes::TheScript().pages = {Page(Sheet(1, {{"08:00", "door"}}), true)};
        Settings().pdf_page_size = page_size;
        Settings().pdf_page_orintation = orientation;
        Run();
    }

    void ServerFileOf(const std::string& page_size, int orientation)
    {
        fakes::PageAnswer page;
        page.is_rowcolumn_data = false;
        page.server.file_is_created = true;
        page.server.download_request.str_method = "GET";
        page.server.download_request.str_quern = "/file";
        page.server.download_request.pdf_page_size = page_size;
        page.server.download_request.pdf_page_orintation = orientation;
        fakes::TheScript().pages = {page};
        Run();
    }

    tools::ToolPlace place_;
};

// The line as the C runtime takes it apart: nothing is quoted, so blanks of the folder's name break its
// words.
constexpr char kLandscapeWords[] = R"(--encoding
utf-8
-O
landscape
--page-size
A4
<tmp>/p
ub
ü
门/Fetchyard/<stamp>.html
<tmp>/p
ub
ü
门/Fetchyard/<stamp>.pdf
)";

constexpr char kPlainWords[] = R"(--encoding
utf-8
--page-size
Letter
<tmp>/p
ub
ü
门/Fetchyard/<stamp>.html
<tmp>/p
ub
ü
门/Fetchyard/<stamp>.pdf
)";

TEST_F(PdfToolRun, LandscapeReportIsGivenToTheToolWordByWord)
{
    ReportOf("A4", 0);
    EXPECT_EQ(place_.Told("argument"), kLandscapeWords);
}

TEST_F(PdfToolRun, UprightReportIsGivenToTheToolWordByWord)
{
    ReportOf("Letter", 1);
    EXPECT_EQ(place_.Told("argument"), kPlainWords);
}

TEST_F(PdfToolRun, LandscapeServerFileIsGivenToTheToolWordByWord)
{
    ServerFileOf("A4", 0);
    EXPECT_EQ(place_.Told("argument"), kLandscapeWords);
}

TEST_F(PdfToolRun, UprightServerFileIsGivenToTheToolWordByWord)
{
    ServerFileOf("Letter", 1);
    EXPECT_EQ(place_.Told("argument"), kPlainWords);
}

TEST_F(PdfToolRun, ToolWorksInTheFolderOfTheClient)
{
    ReportOf("A4", 0);
    const std::filesystem::path told = std::filesystem::u8path(place_.Told("folder"));
    EXPECT_EQ(told.filename().u8string(), std::filesystem::current_path().filename().u8string() + "\n");
}

TEST_F(PdfToolRun, ExportEndsAsFinishedWhateverTheToolEndsWith)
{
    tools::ToolPlace::EndWith(7);
    ReportOf("A4", 0);
    EXPECT_TRUE(place_.HasRun());
    EXPECT_EQ(task_->GetDownloadState(), 4);
}

}  // namespace
}  // namespace contract
