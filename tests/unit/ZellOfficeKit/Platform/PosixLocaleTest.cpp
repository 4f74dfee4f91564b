#include "tests/unit/ZellOfficeKit/OfficeTest.h"

#include <sys/wait.h>
#include <unistd.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>

using ::testing::HasSubstr;

namespace {

// A locale whose decimal point is a comma, made for the test.
class CommaLocale : public OfficeTest
{
protected:
    CommaLocale()
    {
        std::ofstream(work_.File("comma.src"))
            << "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \"\"\ngrouping -1\nEND LC_NUMERIC\n";
        Output("cd " + work_.Text() + " && localedef -c -i comma.src ./comma 2>/dev/null; test -d comma");
    }

    static bool PrintsAComma()
    {
        char text[16] = {};
        std::snprintf(text, sizeof(text), "%.1f", 0.5);
        return std::strcmp(text, "0,5") == 0;
    }

    // Writes the workbook; tells whether numbers were printed with a comma before and after.
    bool WriteUnderTheLocale() const
    {
        setenv("LOCPATH", work_.Path().c_str(), 1);
        if (std::setlocale(LC_NUMERIC, "comma") == nullptr || !PrintsAComma())
            return false;
        Book book(Report("r.xlsx"));
        book->AddSheetByName("Alarms");
        book->SetRowHeightWithPixels(0, 41);
        book->SetColumnWidth(0, 0, 20);
        book->Close();
        return PrintsAComma();
    }
};

TEST_F(CommaLocale, NumbersOfAWorkbookHaveADecimalPoint)
{
    // A process of its own: the locale is everybody's.
    const pid_t child = fork();
    if (child == 0)
        _exit(WriteUnderTheLocale() ? 0 : 1);
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_EQ(status, 0);
    const std::string xml = Member(Report("r.xlsx"), "xl/worksheets/sheet1.xml");
    EXPECT_THAT(xml, HasSubstr("ht=\"30.75\""));
    EXPECT_THAT(xml, HasSubstr("width=\"20.7109375\""));
    EXPECT_THAT(xml, HasSubstr("left=\"0.7\""));
}

}  // namespace
