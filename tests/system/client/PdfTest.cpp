#include "ClientFixture.h"

#include <gtest/gtest.h>
#include <QProcess>

#include <algorithm>
#include <cstdlib>

using nlohmann::json;
using namespace SystemTest;

namespace {

// PDF reports by the real tool, judged by other people's readers.
class ClientPdf : public ClientFixture
{
protected:
    static std::string Output(const QString& program, const QStringList& words)
    {
        QProcess process;
        process.start(program, words);
        EXPECT_TRUE(process.waitForFinished(60000)) << program.toStdString();
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
        return process.readAllStandardOutput().toStdString();
    }
    QString Pdf(const std::string& name) const
    {
        return QString::fromStdString(client_.ExportFolder() + name + "/" + name + ".pdf");
    }
    std::string TextOf(const std::string& name) { return Output("pdftotext", {"-raw", Pdf(name), "-"}); }
    int PagesOf(const std::string& name)
    {
        const std::string info = Output("pdfinfo", {Pdf(name)});
        return std::atoi(&info[info.find("Pages:") + 6]);
    }
    static std::string WithoutBlanks(std::string text)
    {
        const auto is_blank = [](unsigned char letter) { return letter <= ' '; };
        text.erase(std::remove_if(text.begin(), text.end(), is_blank), text.end());
        return text;
    }
    // Letters that every font has and no reader turns around, and nothing that HTML takes for its own.
    static bool IsPlain(const std::string& text)
    {
        return std::all_of(text.begin(), text.end(), [](unsigned char letter) {
            return letter < 0x80 && letter != '<' && letter != '&';
        });
    }
    static std::size_t CountOf(const std::string& text, const std::string& part)
    {
        std::size_t count = 0;
        for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size()))
            ++count;
        return count;
    }
};

}  // namespace

TEST_F(ClientPdf, ReportHoldsTitlesHeadsAndEveryRow)
{
    const auto result = client_.RunRequests({ReportRequest(client_, "Alarms", 2, "none", 70)});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    EXPECT_NE(result.output.find("Alarms.pdf ("), std::string::npos) << result.output;
    const std::string text = TextOf("Alarms");
    for (const char* part : {"Alarm report", "All times (UTC)", "70 events", "Camera", "Place"})
        EXPECT_NE(text.find(part), std::string::npos) << part;
    EXPECT_GE(CountOf(text, " %"), 70u) << "each row has a confidence";
    EXPECT_EQ(FilesBelow(client_.ExportFolder()), std::vector<std::string>{"Alarms/Alarms.pdf"});
    EXPECT_EQ(FilesBelow(client_.Path("data/Public")), std::vector<std::string>{}) << "work files are left";
}

TEST_F(ClientPdf, EveryTextOfTheCsvStandsInThePdf)
{
    // A row at the edge of a page may be torn in two.
    constexpr int kRowsOfAPage = 8;
    json csv = ReportRequest(client_, "Csv", 1, "none", kRowsOfAPage);
    ASSERT_EQ(client_.RunRequests({ReportRequest(client_, "Pdf", 2, "none", kRowsOfAPage), csv}).exit_code,
              0);
    // The tool breaks words wherever a cell ends.
    const std::string pdf = WithoutBlanks(TextOf("Pdf"));
    const json records =
        json::parse(Check({"csv_rows.py", QString::fromStdString(client_.ExportFolder() + "Csv/Csv.csv")}));
    int compared = 0;
    for (const json& record : records)
        for (const std::string& text : record.get<std::vector<std::string>>()) {
            if (!IsPlain(text))
                continue;
            EXPECT_NE(pdf.find(WithoutBlanks(text)), std::string::npos) << text;
            ++compared;
        }
    EXPECT_GT(compared, 60);
}

TEST_F(ClientPdf, SmallReportIsOnePageAndALongOneSeveral)
{
    ASSERT_EQ(client_.RunRequests({ReportRequest(client_, "Small", 2, "none", 3)}).exit_code, 0);
    ASSERT_EQ(client_.RunRequests({ReportRequest(client_, "Long", 2, "none", 60)}).exit_code, 0);
    EXPECT_EQ(PagesOf("Small"), 1);
    EXPECT_GE(PagesOf("Long"), 2);
}

TEST_F(ClientPdf, LettersOfOtherScriptsAreThere)
{
    json request = ReportRequest(client_, "Alarms", 2, "none", 200);
    ASSERT_EQ(client_.RunRequests({request}).exit_code, 0);
    const auto page = station_.Post("/api/v1/events/report", {{"PageIndex", 1}, {"PageSize", 200}});
    const std::string pdf = TextOf("Alarms");
    int shown = 0;
    for (const json& row : page["Sheets"][0]["Rows"])
        for (const json& cell : row)
            if (cell.is_string() && cell.get<std::string>().find("李娜") == 0)
                ++shown;
    ASSERT_GT(shown, 0) << "the site has such a person";
    EXPECT_NE(pdf.find("李娜"), std::string::npos);
}

TEST_F(ClientPdf, EmbeddedPicturesTravelInside)
{
    const auto result = client_.RunRequests({ReportRequest(client_, "Alarms", 2, "embedded", 7)});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    EXPECT_EQ(CountOf(Output("pdfimages", {"-list", Pdf("Alarms")}), " image "), 7u);
    EXPECT_EQ(FilesBelow(client_.ExportFolder()), std::vector<std::string>{"Alarms/Alarms.pdf"});
}

TEST_F(ClientPdf, LinkedPicturesLieBesideAndAreNamed)
{
    const auto result = client_.RunRequests({ReportRequest(client_, "Alarms", 2, "linked", 7)});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    EXPECT_EQ(CountOf(TextOf("Alarms"), "image"), 7u);
    const auto files = FilesBelow(client_.ExportFolder());
    EXPECT_EQ(files.size(), 8u);
    EXPECT_EQ(std::count_if(files.begin(), files.end(),
                            [](const std::string& file) { return file.find(".jpg") != std::string::npos; }),
              7);
}

TEST_F(ClientPdf, PageSizeAndOrientationAreAsAsked)
{
    json wide = ReportRequest(client_, "Wide", 2, "none", 10);
    Section(wide, "WriteFileCondition")["PdfPageSize"] = "A5";
    Section(wide, "WriteFileCondition")["PdfPageOrientaion"] = 0;
    json tall = ReportRequest(client_, "Tall", 2, "none", 10);
    Section(tall, "WriteFileCondition")["PdfPageOrientaion"] = 1;
    for (const json& request : {wide, tall}) {
        const auto result = client_.RunRequests({request});
        ASSERT_EQ(result.exit_code, 0) << result.output;
    }
    EXPECT_NE(Output("pdfinfo", {Pdf("Wide")}).find("595 x 420 pts"), std::string::npos)
        << Output("pdfinfo", {Pdf("Wide")});
    EXPECT_NE(Output("pdfinfo", {Pdf("Tall")}).find("595 x 842 pts (A4)"), std::string::npos);
}

TEST_F(ClientPdf, ReportsThatEndAtOnceAreAllThere)
{
    std::vector<json> requests;
    for (const char* name : {"A", "B", "C", "D", "E"})
        requests.push_back(ReportRequest(client_, name, 2, "none", 5));
    const auto result = client_.RunRequests(requests);
    EXPECT_EQ(result.exit_code, 0) << result.output;
}

TEST_F(ClientPdf, MissingToolIsSeenOnDisk)
{
    client_.SetEnvironment("PATH", QString::fromStdString(client_.ExportFolder()));
    const auto result = client_.RunRequests({ReportRequest(client_, "Alarms", 2, "none", 10)});
    EXPECT_EQ(result.exit_code, 1) << result.output;
    EXPECT_NE(result.output.find("Alarms: finished"), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("Alarms.pdf is missing"), std::string::npos) << result.output;
    EXPECT_EQ(FilesBelow(client_.ExportFolder()), std::vector<std::string>{});
}

TEST_F(ClientPdf, ReportIsPackedWithItsLinkedPictures)
{
    json request = ReportRequest(client_, "Alarms", 2, "linked", 3);
    Section(request, "WriteFileCondition")["IsNeedCompressZip"] = true;
    const auto result = client_.RunRequests({request});
    ASSERT_EQ(result.exit_code, 0) << result.output;
    const std::string list =
        Output("unzip", {"-Z1", QString::fromStdString(client_.ExportFolder() + "Alarms/Alarms.zip")});
    EXPECT_EQ(CountOf(list, ".jpg\n"), 3u);
    EXPECT_NE(list.find("Alarms.pdf\n"), std::string::npos);
    EXPECT_EQ(list.find(".html"), std::string::npos);
}
