#include "FetchyardBussiness/DeterminantWriteFile/PdfWork.h"
#include "FetchyardBussiness/DeterminantWriteFile/ReportExportPdf.h"
#include "support/ContractTest.h"
#include "support/HtmlTool.h"
#include "support/Pages.h"

#include <QRegularExpression>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <set>
#include <thread>

namespace contract {
namespace {

using namespace FetchyardBussiness;
using Zell::Base::Error::ErrorCode;

constexpr char kStyle[] =
    "</title></head><style>* {\tmargin: 0;\tpadding: 0;\t}\thtml,\tbody {\theight: 100%;\twidth: 100%; "
    "word-break: break-word; }\t\t#pdf-template {\theight: 100%;\twidth: 100%;\t}\t#pdf-template-table "
    "{\tpadding: 0 20px;\tmargin-top: 20px;\t}\t.report-table {\twidth: 100%;    }\t.person-information "
    "{\ttext-align: left;\t} .person-summary {\ttext-align: left;\t} \ttr {height: 40px;page-break-after: "
    "always; page-break-before: always;page-break-inside: avoid; }\tth {\ttext-align: center;\t}\ttd {    "
    "text-align: center;\t max-width: 150px;\t}\t.table-header {\t\tbackground: #f5f5f5;\t}</style><body>";

class PdfWriterTest : public ContractTest
{
protected:
    PdfWriterTest() { fakes::TheScript().public_data_path = Folder() + "public/"; }

    ExportDataNode Delivery(const std::vector<ExportSheet>& sheets, bool is_last = false) const
    {
        ExportDataNode node;
        node.export_file_type = 2;
        node.file_name = "Alarm";
        node.file_save_path = Folder();
        node.file_total_page_is_finished = is_last;
        node.vec_sheets = sheets;
        return node;
    }

    std::string Content(const std::string& name) const
    {
        std::ifstream file(Folder() + name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    // What the rows of one later page leave in the staging file.
    std::string HtmlOfRow(const std::vector<ExportCell>& row)
    {
        std::filesystem::remove(Folder() + "Alarm.html");
        ExportSheet sheet = Sheet(2, {});
        sheet.vec_rows = {row};
        EXPECT_TRUE(writer_.ExportDataToFile(Delivery({sheet})));
        return Content("Alarm.html");
    }

    // The trace with the time in the names of the work files taken out.
    static std::string TraceWithoutTime()
    {
        QString trace = QString::fromStdString(Trace());
        trace.replace(QRegularExpression("\\d{4}(_\\d\\d){5}_\\d{3}"), "<time>");
        return trace.toStdString();
    }

    static std::string LinesOf(const std::string& trace, const std::string& start)
    {
        std::string lines;
        for (const QString& line : QString::fromStdString(trace).split('\n'))
            if (line.startsWith(QString::fromStdString(start)))
                lines += line.toStdString() + "\n";
        return lines;
    }

    CExportReportDataToPDFFileObject writer_;
};

ExportSheet SheetOfRows(int page_index, int count)
{
    return Sheet(page_index, std::vector<std::vector<std::string>>(static_cast<std::size_t>(count), {"x"}));
}

TEST_F(PdfWriterTest, HeadOfTheFirstPageIsWrittenLetterForLetter)
{
    ExportSheet sheet = Sheet(1, {{"08:00", "<door> & gate"}});
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({sheet})));
    EXPECT_EQ(Content("Alarm.html"),
              std::string("<!DOCTYPE html><html><head><meta charset=\"utf - 8\"><title>Alarms") + kStyle +
                  "<div id=\"pdf-template\"><div id=\"pdf-template-table\"><table border=\"1\" bordercolor = "
                  "\"#cdcdcd\" class=\"report-table\" cellpadding=\"0\" cellspacing=\"0\"><tr "
                  "class=\"table-header\"><th>Time</th><th>Text</th></tr>"
                  "<tr><td>08:00</td><td><door> & gate</td></tr>");
}

TEST_F(PdfWriterTest, TitleIsAParagraphInItsFormat)
{
    ExportSheet sheet = Sheet(1, {});
    ExportCell bold = Cell("Alarms of May");
    bold.cell_format = {"Arial", 16, true, 1, "#DDEBF7", "", false, 0, 0, ""};
    ExportCell plain = Cell("Gate 3");
    plain.cell_format.font_size = 9;
    plain.cell_format.text_location = 7;
    sheet.vec_titles = {bold, plain};
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({sheet})));
    EXPECT_NE(
        Content("Alarm.html")
            .find("<div id=\"pdf-template\">"
                  "<p style=\"font-size:16px; background-color:#DDEBF7;font-family:Arial;text-align:center; "
                  "\"><b>Alarms of May</b></p>"
                  "<p style=\"font-size:9px;font-family:;text-align:; \">Gate 3</p>"
                  "<div id=\"pdf-template-table\">"),
        std::string::npos)
        << Content("Alarm.html");
}

TEST_F(PdfWriterTest, SinglePageThatIsTheLastIsOneWriteThenTheToolRuns)
{
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({Sheet(1, {{"a"}})}, true)));
    EXPECT_EQ(TraceWithoutTime(), R"(
OpenFile <tmp>/Alarm.html 15 8192
WriteFile 883
CloseFile
DirectoryExists <tmp>/public/Fetchyard/ -> missing
MakeFullDir <tmp>/public/Fetchyard/
CopyFileW <tmp>/Alarm.html <tmp>/public/Fetchyard/<time>.html 0
wkhtmltopdf  --encoding utf-8  -O landscape --page-size A4 <tmp>/public/Fetchyard/<time>.html <tmp>/public/Fetchyard/<time>.pdf
log3 pdf has been created! pdf_path =<tmp>/Alarm.pdf
DeleteFileW <tmp>/public/Fetchyard/<time>.html
DeleteFileW <tmp>/Alarm.html
CopyFileW <tmp>/public/Fetchyard/<time>.pdf <tmp>/Alarm.pdf 0
DeleteFileW <tmp>/public/Fetchyard/<time>.pdf
log3 pdf has been created! pdf_path =<tmp>/Alarm.pdf   copy_result= 0  del_result = 0
)");
    EXPECT_EQ(Content("Alarm.pdf"), "%PDF of 883 bytes");
    EXPECT_FALSE(Exists("Alarm.html"));
    const std::string tail = "<tr><td>a</td></tr></table></div></div></body></html>";
    EXPECT_EQ(HtmlOfTheTool().substr(HtmlOfTheTool().size() - tail.size()), tail);
}

TEST_F(PdfWriterTest, FortyFiveRowsAreFlushedTwiceAndAtTheEnd)
{
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({SheetOfRows(2, 45)})));
    EXPECT_EQ(LinesOf(Trace(), "WriteFile"), "WriteFile 380\nWriteFile 380\nWriteFile 95\n");
}

TEST_F(PdfWriterTest, RowCounterStartsAnewWithEachPageAndSheet)
{
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({SheetOfRows(2, 15)})));
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({SheetOfRows(3, 19), SheetOfRows(3, 20)})));
    EXPECT_EQ(LinesOf(Trace(), "WriteFile"), "WriteFile 285\nWriteFile 361\nWriteFile 380\n");
}

TEST_F(PdfWriterTest, PageWithoutRowsWritesNothing)
{
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({Sheet(2, {})})));
    EXPECT_EQ(Trace(), "\n");
}

TEST_F(PdfWriterTest, ThirdInlinePictureFlushesInTheMiddleOfItsRow)
{
    fakes::TheScript().pictures["/p"] = {{}, "png"};
    const ExportCell picture = PictureCell("/p", 2);
    ExportSheet sheet = Sheet(2, {});
    sheet.vec_rows = {{picture, picture, picture, Cell("end")}};
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({sheet})));
    const std::string inline_picture =
        "<td><img width=\"100\" height=\"100\" src =data:image/png;base64,cG5n></td>";
    EXPECT_EQ(Content("Alarm.html"),
              "<tr>" + inline_picture + inline_picture + inline_picture + "<td>end</td></tr>");
    EXPECT_EQ(LinesOf(Trace(), "WriteFile"),
              "WriteFile " + std::to_string(4 + 3 * inline_picture.size()) + "\nWriteFile 17\n");
}

TEST_F(PdfWriterTest, FlushForPicturesStartsTheRowCounterAnew)
{
    ExportSheet sheet = SheetOfRows(2, 19);
    sheet.vec_rows.push_back({PictureCell("/p", 2), PictureCell("/p", 2), PictureCell("/p", 2)});
    for (int i = 0; i < 20; ++i)
        sheet.vec_rows.push_back(Cells({"x"}));
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({sheet})));
    // The flush within row 20 leaves its end to the next one, which comes after 20 further rows.
    EXPECT_EQ(LinesOf(Trace(), "WriteFile"), "WriteFile 602\nWriteFile 385\n");
}

TEST_F(PdfWriterTest, InlinePictureThatCameIsLoggedInTheWordsOfAFailure)
{
    fakes::TheScript().pictures["/p"] = {{}, "png"};
    HtmlOfRow({PictureCell("/p", 2)});
    EXPECT_EQ(LinesOf(Trace(), "log"), "log5 SyncLoadImage  sync download image failed. image_data = png\n");
}

TEST_F(PdfWriterTest, PictureThatFailsIsABlankCell)
{
    fakes::TheScript().pictures["/p"] = {{2, 21, 404}, ""};
    EXPECT_EQ(HtmlOfRow({PictureCell("/p", 2), PictureCell("/p", 3), Cell("x")}),
              "<tr><td> </td><td> </td><td>x</td></tr>");
    EXPECT_EQ(
        LinesOf(Trace(), "log"),
        "log5 SyncLoadImage  sync download image failed. first error code: 21, second error code: 404.\n"
        "log5 SyncLoadImage  sync download image failed. first error code: 21, second error code: 404.\n");
}

TEST_F(PdfWriterTest, InlinePictureWithoutAnAddressIsAnEmptyCell)
{
    EXPECT_EQ(HtmlOfRow({PictureCell("", 2), Cell("x")}), "<tr><td></td><td>x</td></tr>");
    EXPECT_EQ(LinesOf(Trace(), "log"),
              "log5  failed itea_column->cell_name =   can not contain *PictureRequest*\n");
}

TEST_F(PdfWriterTest, LinkedPictureLiesBesideTheReportUnderANewGuid)
{
    EXPECT_EQ(HtmlOfRow({PictureCell("/p", 3, "title that is not used")}),
              "<tr><td><a href=" + Folder() + "guid-1.jpg>image</a></td></tr>");
    EXPECT_EQ(Content("guid-1.jpg"), "picture");
}

TEST_F(PdfWriterTest, LinkWithoutAnAddressGivesItsPlaceToTheNextCell)
{
    EXPECT_EQ(HtmlOfRow({PictureCell("", 3), PictureCell("/p", 2), Cell("x")}),
              "<tr><td>/p</td><td>x</td></tr>");
    EXPECT_EQ(fakes::CountOf("SyncLoadImage"), 0);
}

TEST_F(PdfWriterTest, LinkWithoutAnAddressInTheLastPlaceShowsNothing)
{
    EXPECT_EQ(HtmlOfRow({Cell("x"), PictureCell("", 3)}), "<tr><td>x</td></tr>");
}

TEST_F(PdfWriterTest, CellsOfOtherKindsHaveNoColumn)
{
    std::vector<ExportCell> row;
    for (const int type : {0, 1, 4, 5, 6, 7, -1})
        row.push_back(Cell("t" + std::to_string(type), type));
    EXPECT_EQ(HtmlOfRow(row), "<tr><td>t0</td><td>t1</td></tr>");
}

TEST_F(PdfWriterTest, PictureRequestsAreMadeAsOfEveryWriter)
{
    ExportCell cell = PictureCell("/device?QUERN&camera=3", 2);
    cell.work_station_id = 0;
    ExportDataNode node = Delivery({Sheet(2, {})});
    node.work_station_id = 7;
    node.vec_sheets[0].vec_rows = {{cell, PictureCell("/p?size=1", 3)}};
    EXPECT_TRUE(writer_.ExportDataToFile(node));
    const std::string requests = LinesOf(Trace(), "SyncLoadImage");
    EXPECT_NE(requests.find("/device"), std::string::npos) << requests;
    EXPECT_NE(requests.find("-> memory"), std::string::npos) << requests;
    EXPECT_NE(requests.find("/p?size=1"), std::string::npos) << requests;
    EXPECT_EQ(fakes::CountOf("new CImageMultiSyncLoader"), 1);
}

TEST_F(PdfWriterTest, LaterPageWithoutAnEarlierOneHasNoHead)
{
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({Sheet(2, {{"a"}})}, true)));
    EXPECT_EQ(HtmlOfTheTool(), "<tr><td>a</td></tr></table></div></div></body></html>");
}

TEST_F(PdfWriterTest, StagingFileOfAnEarlierRunIsRemoved)
{
    std::ofstream(Folder() + "Alarm.html") << "old";
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({Sheet(1, {})})));
    EXPECT_EQ(Content("Alarm.html").substr(0, 9), "<!DOCTYPE");
}

TEST_F(PdfWriterTest, FirstPageMakesTheMissingFolder)
{
    ExportDataNode node = Delivery({Sheet(1, {})});
    node.file_save_path = Folder() + "new/below/";
    EXPECT_TRUE(writer_.ExportDataToFile(node));
    EXPECT_TRUE(Exists("new/below/Alarm.html"));
}

TEST_F(PdfWriterTest, ClosingRunsOncePerSheetOfTheLastDelivery)
{
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({Sheet(1, {{"a"}}), Sheet(1, {{"b"}})}, true)));
    EXPECT_EQ(fakes::CountOf("wkhtmltopdf"), 2);
    EXPECT_NE(HtmlOfTheTool().find("<td>b</td>"), std::string::npos);
    EXPECT_EQ(HtmlOfTheTool().find("<td>a</td>"), std::string::npos);
    EXPECT_TRUE(Exists("Alarm.pdf"));
}

TEST_F(PdfWriterTest, PageSizeAndOrientationReachTheTool)
{
    ExportDataNode node = Delivery({Sheet(1, {})}, true);
    node.pdf_page_size = "A3";
    node.pdf_page_orintation = 1;
    EXPECT_TRUE(writer_.ExportDataToFile(node));
    EXPECT_EQ(LinesOf(TraceWithoutTime(), "wkhtmltopdf"),
              "wkhtmltopdf  --encoding utf-8 --page-size A3 <tmp>/public/Fetchyard/<time>.html "
              "<tmp>/public/Fetchyard/<time>.pdf\n");
}

TEST_F(PdfWriterTest, OrientationOtherThanZeroAndEmptyPageSizeAreTheUsualOnes)
{
    for (const int orientation : {-1, 1, 2}) {
        ExportDataNode node = Delivery({Sheet(1, {})}, true);
        node.pdf_page_size = "";
        node.pdf_page_orintation = orientation;
        EXPECT_TRUE(writer_.ExportDataToFile(node));
        EXPECT_EQ(LinesOf(TraceWithoutTime(), "wkhtmltopdf"),
                  "wkhtmltopdf  --encoding utf-8 --page-size A4 <tmp>/public/Fetchyard/<time>.html "
                  "<tmp>/public/Fetchyard/<time>.pdf\n")
            << orientation;
    }
}

TEST_F(PdfWriterTest, FolderForTheToolThatIsThereIsNotMadeAgain)
{
    std::filesystem::create_directories(Folder() + "public/Fetchyard");
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({Sheet(1, {})}, true)));
    EXPECT_EQ(fakes::CountOf("MakeFullDir"), 0);
    EXPECT_TRUE(std::filesystem::is_empty(Folder() + "public/Fetchyard"));
}

TEST_F(PdfWriterTest, LinkedPictureOutlastsTheLastPage)
{
    ExportSheet sheet = Sheet(1, {});
    sheet.vec_rows = {{PictureCell("/p", 3)}};
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({sheet}, true)));
    EXPECT_EQ(Content("guid-1.jpg"), "picture");
    EXPECT_NE(HtmlOfTheTool().find("guid-1.jpg>image</a>"), std::string::npos);
}

TEST_F(PdfWriterTest, LinkWithoutAnAddressHidesASecondOne)
{
    EXPECT_EQ(HtmlOfRow({PictureCell("", 3), PictureCell("", 3), Cell("x")}), "<tr><td></td><td>x</td></tr>");
    EXPECT_EQ(LinesOf(Trace(), "log"),
              "log5  failed itea_column->cell_name =   can not contain *PictureRequest*\n")
        << "the second is a text by then";
    EXPECT_EQ(HtmlOfRow({PictureCell("", 3), Cell("shown", 5)}), "<tr><td>shown</td></tr>");
}

TEST_F(PdfWriterTest, PictureBytesAreLoggedUpToTheirFirstZero)
{
    fakes::TheScript().pictures["/p"] = {{}, std::string("ab\0cd", 5)};
    EXPECT_EQ(HtmlOfRow({PictureCell("/p", 2)}),
              "<tr><td><img width=\"100\" height=\"100\" src =data:image/png;base64,YWIAY2Q=></td></tr>");
    EXPECT_EQ(LinesOf(Trace(), "log"), "log5 SyncLoadImage  sync download image failed. image_data = ab\n");
}

TEST_F(PdfWriterTest, WriteThatFailsIsLoggedAndTheToolRunsAllTheSame)
{
    fakes::FailCalls("WriteFile", 1, -1);
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({Sheet(2, {{"a"}})}, true)));
    EXPECT_EQ(LinesOf(Trace(), "log5"),
              "log5 Write data to file failed. file name: <tmp>/Alarm.html, receive data length: 53.\n");
    EXPECT_EQ(fakes::CountOf("wkhtmltopdf"), 1);
}

TEST_F(PdfWriterTest, ReportsThatEndAtOnceWorkOnFilesOfTheirOwn)
{
    std::mutex mutex;
    std::set<std::string> names;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (int k = 0; k < 5; ++k) {
                const PdfWork work = NewPdfWork();
                const std::lock_guard<std::mutex> lock(mutex);
                names.insert({work.html, work.pdf});
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(names.size(), 40U);
}

TEST_F(PdfWriterTest, ToolThatCannotStartLeavesNoPdfAndIsNoFailure)
{
    fakes::FailCalls("wkhtmltopdf", 1, 1);
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({Sheet(1, {})}, true)));
    EXPECT_EQ(LinesOf(TraceWithoutTime(), "log"),
              "log3 requset.str_request file =  --encoding utf-8  -O landscape --page-size A4 "
              "<tmp>/public/Fetchyard/<time>.html <tmp>/public/Fetchyard/<time>.pdf  failed\n"
              "log3 pdf has been created! pdf_path =<tmp>/Alarm.pdf\n"
              "log3 pdf has been created! pdf_path =<tmp>/Alarm.pdf   copy_result= -1  del_result = -1\n");
    EXPECT_FALSE(Exists("Alarm.pdf"));
    EXPECT_FALSE(Exists("Alarm.html"));
}

TEST_F(PdfWriterTest, FolderForTheToolThatCannotBeMadeFailsTheReportAndKeepsTheHtml)
{
    fakes::FailCalls("MakeFullDir", 1, 1);
    EXPECT_FALSE(writer_.ExportDataToFile(Delivery({Sheet(1, {})}, true)));
    EXPECT_EQ(LinesOf(Trace(), "SetLastError"), "SetLastError (20,3215)\n");
    EXPECT_TRUE(Exists("Alarm.html"));
    EXPECT_EQ(fakes::CountOf("wkhtmltopdf"), 0);
}

TEST_F(PdfWriterTest, FolderForTheToolThatCannotBeMadeIsLogged)
{
    fakes::FailCalls("MakeFullDir", 1, 1);
    writer_.ExportDataToFile(Delivery({Sheet(1, {})}, true));
    EXPECT_EQ(
        LinesOf(Trace(), "log"),
        "log5   CExportReportDataToPDFFileObject::ExportDataToFileWithHTMLInWKHTMLTOPDF create file path "
        "=<tmp>/public/Fetchyard/  failed.  task failed\n");
}

TEST_F(PdfWriterTest, CopyOfTheHtmlThatFailsIsLoggedAndTheToolFindsNoInput)
{
    fakes::FailCalls("CopyFileW", 1, 1);
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({Sheet(1, {})}, true)));
    EXPECT_EQ(LinesOf(TraceWithoutTime(), "log5"),
              "log5 copy html failed. html_path_new =<tmp>/public/Fetchyard/<time>.html\n");
    EXPECT_EQ(HtmlOfTheTool(), "");
    EXPECT_FALSE(Exists("Alarm.pdf"));
}

TEST_F(PdfWriterTest, StagingFileThatCannotBeWrittenLosesItsPieceAndTheReportGoesOn)
{
    fakes::FailCalls("OpenFile", 1, 1);
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({SheetOfRows(2, 20)})));
    EXPECT_TRUE(writer_.ExportDataToFile(Delivery({Sheet(3, {{"b"}})})));
    EXPECT_EQ(Content("Alarm.html"), "<tr><td>b</td></tr>");
    EXPECT_EQ(LinesOf(Trace(), "log5"), "log5 Open file[<tmp>/Alarm.html] failed.\n");
}

TEST_F(PdfWriterTest, StopDoesNotCutADelivery)
{
    writer_.SetTaskStopState(true);
    EXPECT_EQ(HtmlOfRow(Cells({"a", "b"})), "<tr><td>a</td><td>b</td></tr>");
}

TEST_F(PdfWriterTest, DeliveryWithoutSheetsIsRefused)
{
    EXPECT_FALSE(writer_.ExportDataToFile(Delivery({}, true)));
    EXPECT_EQ(Trace(), R"(
log5 CExportReportDataToPDFFileObject::ExportDataToFileWithHTMLInWKHTMLTOPDF excel_data.vec_sheets.size() < 1
)");
}

}  // namespace
}  // namespace contract
