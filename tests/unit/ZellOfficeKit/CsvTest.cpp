#include "OfficeTest.h"
#include "ZellOfficeKit/CSVParser.h"

#include <QString>
#include <QStringList>

#include <filesystem>
#include <fstream>

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ZellOfficeKit::CCSVParser;

namespace {

class Csv : public OfficeTest
{
protected:
    QString Path() const { return QString::fromStdString(Report("r.csv")); }
    std::string Bytes() const { return ReadWhole(Report("r.csv")); }

    std::string Written(const QStringList& fields)
    {
        CCSVParser parser(nullptr);
        EXPECT_TRUE(parser.OpenFile(Path()));
        parser.AppendLine(fields);
        parser.WriteCSVFile();
        parser.CloseFile();
        return Bytes().substr(3);
    }
};

TEST_F(Csv, RecordsStandBehindAMarkWithCommasAndCrLf)
{
    CCSVParser parser(nullptr);
    ASSERT_TRUE(parser.OpenFile(Path()));
    parser.AppendLine({"Alarms"});
    parser.AppendLine({"", ""});
    parser.AppendLine({"Time", "Camera"});
    parser.WriteCSVFile();
    parser.CloseFile();
    EXPECT_EQ(Bytes(),
              "\xEF\xBB\xBF"
              "Alarms\r\n,\r\nTime,Camera\r\n");
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(Csv, RecordOfNoFieldsIsAnEmptyLine)
{
    EXPECT_EQ(Written({}), "\r\n");
}

TEST_F(Csv, LoneEmptyFieldIsQuotedSoThatItIsAField)
{
    EXPECT_EQ(Written({""}), "\"\"\r\n");
}

TEST_F(Csv, FieldWithACommaIsQuoted)
{
    EXPECT_EQ(Written({"a,b", "c"}), "\"a,b\",c\r\n");
}

TEST_F(Csv, QuotesAreDoubledInAQuotedField)
{
    EXPECT_EQ(Written({"say \"yes\""}), "\"say \"\"yes\"\"\"\r\n");
}

TEST_F(Csv, LineEndsAreQuoted)
{
    EXPECT_EQ(Written({"a\nb", "a\rb", "c"}), "\"a\nb\",\"a\rb\",c\r\n");
}

TEST_F(Csv, MarkInTheFirstEightLettersOfALongFieldIsSeen)
{
    EXPECT_EQ(Written({"a,bcdefghijklmnop"}), "\"a,bcdefghijklmnop\"\r\n");
}

TEST_F(Csv, BlanksAndSemicolonsStayBare)
{
    EXPECT_EQ(Written({" a ", "b;c", "'d'"}), " a ,b;c,'d'\r\n");
}

TEST_F(Csv, TextIsUtf8)
{
    const QString text = QString::fromUtf8("Café \xE4\xB8\xAD\xE6\x96\x87 \xF0\x9F\x93\xB7 long enough");
    EXPECT_EQ(Written({text}), text.toStdString() + "\r\n");
}

TEST_F(Csv, HalfASurrogatePairBecomesTheReplacementCharacter)
{
    const QString text = QString(QChar(0xD83D)) + "a" + QChar(0xDE00) + QChar(0xD83D);
    EXPECT_EQ(Written({text}),
              "\xEF\xBF\xBD"
              "a\xEF\xBF\xBD\xEF\xBF\xBD\r\n");
}

TEST_F(Csv, ZeroAndControlCharactersStayAsTheyAre)
{
    EXPECT_EQ(Written({QString(QChar(0)) + QChar(7)}), std::string("\0\a\r\n", 4));
}

TEST_F(Csv, EveryLengthOfFieldComesOutWhole)
{
    CCSVParser parser(nullptr);
    ASSERT_TRUE(parser.OpenFile(Path()));
    std::string expected = "\xEF\xBB\xBF";
    for (int length = 1; length < 70; ++length) {
        const QString umlaut = QString(length, QChar(0xE4));
        const QString letters = QString(length, 'x');
        parser.AppendLine({umlaut, letters + umlaut + letters});
        expected += umlaut.toStdString() + "," + (letters + umlaut + letters).toStdString() + "\r\n";
    }
    parser.CloseFile();
    EXPECT_EQ(Bytes(), expected);
}

TEST_F(Csv, AppendToAMissingFileCreatesItWithAMark)
{
    CCSVParser parser(nullptr);
    ASSERT_TRUE(parser.OpenFileWithAppendMode(Path()));
    parser.AppendLine({"row"});
    parser.CloseFile();
    EXPECT_EQ(Bytes(), "\xEF\xBB\xBFrow\r\n");
}

TEST_F(Csv, AppendToAnEmptyFileWritesAMark)
{
    std::ofstream(Report("r.csv")).close();
    CCSVParser parser(nullptr);
    ASSERT_TRUE(parser.OpenFileWithAppendMode(Path()));
    parser.AppendLine({"row"});
    parser.CloseFile();
    EXPECT_EQ(Bytes(), "\xEF\xBB\xBFrow\r\n");
}

TEST_F(Csv, AppendWritesNoSecondMark)
{
    Written({"one"});
    CCSVParser parser(nullptr);
    ASSERT_TRUE(parser.OpenFileWithAppendMode(Path()));
    parser.AppendLine({"two"});
    parser.CloseFile();
    EXPECT_EQ(Bytes(), "\xEF\xBB\xBFone\r\ntwo\r\n");
}

TEST_F(Csv, OpenFileEmptiesTheFile)
{
    Written({"a first and longer report"});
    EXPECT_EQ(Written({"b"}), "b\r\n");
}

TEST_F(Csv, OneObjectWritesOneFileAfterTheOther)
{
    CCSVParser parser(nullptr);
    ASSERT_TRUE(parser.OpenFile(Path()));
    parser.AppendLine({"one"});
    ASSERT_TRUE(parser.OpenFile(QString::fromStdString(Report("s.csv"))));
    parser.AppendLine({"two"});
    parser.CloseFile();
    EXPECT_EQ(Bytes(), "\xEF\xBB\xBFone\r\n");
    EXPECT_EQ(ReadWhole(Report("s.csv")), "\xEF\xBB\xBFtwo\r\n");
}

TEST_F(Csv, FileInAMissingFolderIsRefused)
{
    CCSVParser parser(nullptr);
    const QString path = QString::fromStdString(Report("none/r.csv"));
    EXPECT_FALSE(parser.OpenFile(path));
    EXPECT_FALSE(parser.OpenFileWithAppendMode(path));
    EXPECT_THAT(NamesInReports(), IsEmpty());
}

TEST_F(Csv, FolderInPlaceOfTheFileIsRefused)
{
    CCSVParser parser(nullptr);
    EXPECT_FALSE(parser.OpenFile(QString::fromStdString(reports_.Text())));
    EXPECT_FALSE(parser.OpenFileWithAppendMode(QString::fromStdString(reports_.Text())));
}

TEST_F(Csv, RecordWithoutAnOpenFileIsTold)
{
    CCSVParser parser(nullptr);
    parser.AppendLine({"lost"});
    parser.WriteCSVFile();
    parser.CloseFile();
    EXPECT_THAT(Errors(), ElementsAre(HasSubstr("a record without an open file is lost")));
}

TEST_F(Csv, DestructionPutsWhatIsHeldIntoTheFile)
{
    {
        CCSVParser parser(nullptr);
        ASSERT_TRUE(parser.OpenFile(Path()));
        parser.AppendLine({"held"});
    }
    EXPECT_EQ(Bytes(), "\xEF\xBB\xBFheld\r\n");
}

TEST_F(Csv, CellOfTenMegabytesComesOutWhole)
{
    // Odd places for the pairs, so that one lies across each seam.
    const QString emoji = QString::fromUtf8("\xF0\x9F\x93\xB7");
    QString text = "x";
    while (text.size() < 10 * 1024 * 1024)
        text += emoji;
    EXPECT_EQ(Written({text, "next"}), text.toStdString() + ",next\r\n");
}

TEST_F(Csv, QuotedCellOfTenMegabytesComesOutWhole)
{
    QString text(5 * 1024 * 1024, '"');
    text += QString(5 * 1024 * 1024, 'x');
    const std::string written = Written({text});
    EXPECT_EQ(written,
              "\"" + std::string(10 * 1024 * 1024, '"') + std::string(5 * 1024 * 1024, 'x') + "\"\r\n");
}

TEST_F(Csv, RecordsOfManyBlocksComeInOrder)
{
    CCSVParser parser(nullptr);
    ASSERT_TRUE(parser.OpenFile(Path()));
    std::string expected = "\xEF\xBB\xBF";
    for (int i = 0; i < 60000; ++i) {
        const QString number = QString::number(i);
        parser.AppendLine({number, "camera \"" + number + "\"", "yard, north"});
        expected +=
            number.toStdString() + ",\"camera \"\"" + number.toStdString() + "\"\"\",\"yard, north\"\r\n";
    }
    parser.CloseFile();
    EXPECT_TRUE(Bytes() == expected);
}

TEST_F(Csv, PythonReadsTheFieldsBack)
{
    Written({"a,b", "say \"yes\"", "two\nlines", "", " blank ",
             QString::fromUtf8("\xD8\xB9\xD8\xB1\xD8\xA8\xD9\x8A")});
    const std::string program = "import csv\nprint(list(csv.reader(open('" + Report("r.csv") +
                                "', newline='', encoding='utf-8-sig'))) == [['a,b', 'say \"yes\"', "
                                "'two\\nlines', '', ' blank ', '\\u0639\\u0631\\u0628\\u064a']])";
    EXPECT_EQ(Output("python3 -c " + QuotedForShell(program)), "True\n");
}

}  // namespace
