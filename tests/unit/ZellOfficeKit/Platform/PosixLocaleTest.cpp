#include "tests/unit/ZellOfficeKit/OfficeTest.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <fstream>

using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

// Runs under a locale whose decimal point is a comma, made for the test.
class CommaLocale : public OfficeTest
{
protected:
    CommaLocale()
    {
        std::ofstream(work_.File("comma.src"))
            << "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \"\"\ngrouping -1\nEND LC_NUMERIC\n";
        Output("cd " + work_.Text() + " && localedef -c -i comma.src ./comma 2>/dev/null; test -d comma");
        setenv("LOCPATH", work_.Path().c_str(), 1);
        EXPECT_NE(std::setlocale(LC_NUMERIC, "comma"), nullptr);
    }
    ~CommaLocale() override { std::setlocale(LC_NUMERIC, "C"); }

    static std::string Printed()
    {
        char text[16] = {};
        std::snprintf(text, sizeof(text), "%.1f", 0.5);
        return text;
    }
};

TEST_F(CommaLocale, NumbersOfAWorkbookHaveADecimalPoint)
{
    ASSERT_EQ(Printed(), "0,5");
    Book book(Report("r.xlsx"));
    book->AddSheetByName("Alarms");
    book->SetRowHeightWithPixels(0, 41);
    book->SetColumnWidth(0, 0, 20);
    book->Close();
    const std::string xml = Member(book.path(), "xl/worksheets/sheet1.xml");
    EXPECT_THAT(xml, HasSubstr("ht=\"30.75\""));
    EXPECT_THAT(xml, HasSubstr("width=\"20.7109375\""));
    EXPECT_THAT(xml, HasSubstr("left=\"0.7\""));
    EXPECT_EQ(Printed(), "0,5");
}

}  // namespace
