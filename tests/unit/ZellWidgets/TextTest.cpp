#include "ZellWidgets/ZellWidgets.h"

#include <gtest/gtest.h>
#include <QTextCodec>

#include <string>

using ZellWidgets::QStringToString;
using ZellWidgets::StringToQString;

TEST(Text, GoesThereAndBackAsUtf8WithoutACodec)
{
    const std::string text = "gr\xC3\xBC\xC3\x9F \xE6\x8A\xA5\xE8\xA1\xA8 \xF0\x9F\x93\xB7";
    EXPECT_EQ(StringToQString(text, nullptr), QString::fromUtf8(text.c_str()));
    EXPECT_EQ(QStringToString(StringToQString(text, nullptr), nullptr), text);
}

TEST(Text, MayBeEmptyOrHoldAZero)
{
    EXPECT_TRUE(StringToQString("", nullptr).isEmpty());
    EXPECT_EQ(QStringToString(QString(), nullptr), "");
    const std::string text("a\0b", 3);
    EXPECT_EQ(StringToQString(text, nullptr).size(), 3);
    EXPECT_EQ(QStringToString(StringToQString(text, nullptr), nullptr), text);
}

TEST(Text, ShowsAReplacementLetterForBytesThatAreNoUtf8)
{
    EXPECT_EQ(StringToQString("a\xFFz", nullptr), QString("a") + QChar(0xFFFD) + "z");
    EXPECT_EQ(StringToQString("gr\xFC", nullptr), QString("gr") + QChar(0xFFFD));
}

TEST(Text, UsesTheCodecThatIsGiven)
{
    QTextCodec* const latin1 = QTextCodec::codecForName("ISO-8859-1");
    ASSERT_NE(latin1, nullptr);
    EXPECT_EQ(StringToQString("gr\xFC", latin1), QString::fromUtf8("gr\xC3\xBC"));
    EXPECT_EQ(QStringToString(QString::fromUtf8("gr\xC3\xBC"), latin1), "gr\xFC");
}

namespace {

class Window
{
public:
    static Window& UiInstance()
    {
        static Window window;
        return window;
    }
};

}  // namespace

TEST(UiSingleton, IsTheInstanceOfTheClass)
{
    EXPECT_EQ(&ZellWidgets::CUiSingleton<Window>::Instance(), &Window::UiInstance());
}
