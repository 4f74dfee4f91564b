#include "tests/unit/ZellOfficeKit/OfficeTest.h"
#include "ZellOfficeKit/CSVParser.h"

#include <QString>
#include <sys/resource.h>

#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ZellOfficeKit::CCSVParser;

namespace {

// While it lives no file of the process grows above so many bytes: writes behind that fail, as on a full
// disk.
class SmallFiles
{
public:
    explicit SmallFiles(std::uint64_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &former_);
        rlimit now = former_;
        now.rlim_cur = bytes;
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &now), 0);
    }
    SmallFiles(const SmallFiles&) = delete;
    SmallFiles& operator=(const SmallFiles&) = delete;
    ~SmallFiles() { setrlimit(RLIMIT_FSIZE, &former_); }

private:
    rlimit former_ = {};
};

class FullDisk : public OfficeTest
{
protected:
    static std::size_t OpenDescriptors() { return NamesIn("/proc/self/fd").size(); }

    // Writes pages of a report, one object for each; tells whether all could be opened.
    bool WriteCsvPages(int pages)
    {
        const QString path = QString::fromStdString(Report("r.csv"));
        const QString cell(1000, 'x');
        for (int page = 0; page < pages; ++page) {
            CCSVParser parser(nullptr);
            if (!(page == 0 ? parser.OpenFile(path) : parser.OpenFileWithAppendMode(path)))
                return false;
            for (int row = 0; row < 100; ++row)
                parser.AppendLine({cell});
            parser.WriteCSVFile();
            parser.CloseFile();
        }
        return true;
    }

    void WriteWorkbook()
    {
        Book book(Report("r.xlsx"));
        book->AddSheetByName("Alarms");
        for (int row = 0; row < 3000; ++row)
            book.Text(row, 0, "row " + std::to_string(row) + " " + std::to_string(row * 7919 % 10007));
        book->Close();
    }
};

TEST_F(FullDisk, CsvThatLosesBytesDoesNotKeepItsName)
{
    const SmallFiles small(150000);
    EXPECT_FALSE(WriteCsvPages(3));
    EXPECT_THAT(NamesInReports(), IsEmpty());
    ASSERT_THAT(NamesSetAside(),
                ElementsAre(::testing::AllOf(::testing::StartsWith("r-"), ::testing::EndsWith(".csv"))));
    EXPECT_EQ(std::filesystem::file_size(work_.File("set-aside/" + NamesSetAside()[0])), 150000U);
    EXPECT_THAT(Errors(), ElementsAre(HasSubstr("bytes did not reach the disk, the file " + Report("r.csv") +
                                                " is now ")));
}

// Once and for good, wherever the disk fills.
TEST_F(FullDisk, CsvIsWholeOrGoneAtEverySize)
{
    for (std::uint64_t size = 1; size < 310000; size += 30011) {
        const SmallFiles small(size);
        EXPECT_EQ(WriteCsvPages(3), size > 200406) << size;
        EXPECT_FALSE(std::filesystem::exists(Report("r.csv"))) << size;
    }
}

TEST_F(FullDisk, AppendToACsvThatLostBytesFailsUntilItIsBegunAnew)
{
    const QString path = QString::fromStdString(Report("r.csv"));
    {
        const SmallFiles small(1000);
        WriteCsvPages(1);
    }
    CCSVParser parser(nullptr);
    EXPECT_FALSE(parser.OpenFileWithAppendMode(path));
    EXPECT_FALSE(parser.OpenFileWithAppendMode(QString::fromStdString(Report("./r.csv"))));
    EXPECT_THAT(NamesInReports(), IsEmpty());
    ASSERT_TRUE(parser.OpenFile(path));
    parser.CloseFile();
    EXPECT_TRUE(parser.OpenFileWithAppendMode(path));
}

TEST_F(FullDisk, CsvOnADeviceThatIsFullLeavesTheDeviceAlone)
{
    {
        CCSVParser parser(nullptr);
        ASSERT_TRUE(parser.OpenFile("/dev/full"));
        parser.AppendLine({"x"});
    }
    EXPECT_TRUE(std::filesystem::exists("/dev/full"));
    EXPECT_THAT(Errors(), ElementsAre(HasSubstr("/dev/full is no plain file and stays")));
}

TEST_F(FullDisk, CsvThatCantBeSetAsideIsRemoved)
{
    std::ofstream(work_.File("set-aside")).close();
    const SmallFiles small(1000);
    WriteCsvPages(1);
    EXPECT_THAT(NamesInReports(), IsEmpty());
    EXPECT_THAT(Errors(), ElementsAre(HasSubstr("r.csv was removed")));
}

TEST_F(FullDisk, WorkbookWhoseRowsAreLostDoesNotComeToItsPath)
{
    const std::size_t descriptors = OpenDescriptors();
    {
        const SmallFiles small(50000);
        WriteWorkbook();
    }
    EXPECT_THAT(NamesInReports(), IsEmpty());
    EXPECT_THAT(NamesInWork(), IsEmpty());
    EXPECT_THAT(Errors(), ElementsAre(HasSubstr("is not whole: rows did not reach the work folder")));
    EXPECT_EQ(OpenDescriptors(), descriptors);
}

// The rows fit, the copy that is packed does not; the library says nothing.
TEST_F(FullDisk, WorkbookCutWhileItIsPackedIsSetAside)
{
    WriteWorkbook();
    const std::size_t size = Member(Report("r.xlsx"), "xl/worksheets/sheet1.xml").size();
    std::filesystem::remove(Report("r.xlsx"));
    const std::size_t descriptors = OpenDescriptors();
    for (const std::size_t missing : {1U, 50U, 150U}) {
        const SmallFiles small(size - missing);
        WriteWorkbook();
        EXPECT_THAT(NamesInReports(), IsEmpty());
    }
    EXPECT_THAT(NamesSetAside(), SizeIs(3));
    EXPECT_THAT(NamesInWork(), IsEmpty());
    EXPECT_THAT(Errors(), ElementsAre(HasSubstr("sheet1.xml is cut"), HasSubstr("sheet1.xml is cut"),
                                      HasSubstr("sheet1.xml is cut")));
    EXPECT_EQ(OpenDescriptors(), descriptors);
}

TEST_F(FullDisk, WorkbookThatCantBePackedLeavesNoDescriptor)
{
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book->AddSheetByName("Doors");
    book.Text(0, 0, "x");
    const std::size_t descriptors = OpenDescriptors();
    std::filesystem::remove_all(work_.Path());
    book->Close();
    EXPECT_EQ(OpenDescriptors(), descriptors - 2);
    EXPECT_THAT(NamesInReports(), IsEmpty());
    EXPECT_THAT(Errors(), ElementsAre(HasSubstr("is not whole")));
}

TEST_F(FullDisk, WorkbookIsWholeOrAbsentAtEverySize)
{
    for (std::uint64_t size = 10; size < 300000; size += 17011) {
        {
            const SmallFiles small(size);
            WriteWorkbook();
        }
        if (!NamesInReports().empty()) {
            EXPECT_EQ(CellsOf(Report("r.xlsx")).size(), 3000U) << size;
            std::filesystem::remove(Report("r.xlsx"));
        }
        EXPECT_THAT(NamesInWork(), IsEmpty());
    }
}

TEST_F(FullDisk, WorkbookLeftOpenLeavesNoFileAndNoDescriptor)
{
    const std::size_t descriptors = OpenDescriptors();
    {
        Book book(Report("r.xlsx"));
        for (const char* name : {"Alarms", "Doors"}) {
            book->AddSheetByName(name);
            for (int row = 0; row < 5000; ++row)
                book.Text(row, 0, "a row of some length to fill a block or two");
        }
        book->SetColumnPicsBufferOpt(0, 0, PngBytes(20, 20), nullptr);
        book.Link(6000, 0, "http://h/", "l");
        EXPECT_GT(OpenDescriptors(), descriptors);
    }
    EXPECT_EQ(OpenDescriptors(), descriptors);
    EXPECT_THAT(NamesInReports(), IsEmpty());
    EXPECT_THAT(NamesInWork(), IsEmpty());
}

// Most machines have this folder on another file system than the temporary one.
TEST_F(FullDisk, WorkbookComesToItsPathFromAnyFileSystem)
{
    const std::string path =
        "/dev/shm/fetchyard-office-test-" + reports_.Path().filename().string() + ".xlsx";
    Book book(path);
    book->AddSheetByName("Alarms");
    book.Text(0, 0, "x");
    book->Close();
    EXPECT_EQ(CellsOf(path)["A1"], "x");
    EXPECT_THAT(NamesInWork(), IsEmpty());
    std::filesystem::remove(path);
}

}  // namespace
