#include "ZellErrorText/ErrorInfoMgr.h"
#include "ZellWidgets/ZellWidgets.h"

#include <gmock/gmock.h>

#include <set>
#include <string>
#include <system_error>

using ::testing::HasSubstr;
using ::testing::Not;
using Zell::Base::Error::ErrorCode;

namespace {

ZellErrorText::CErrorInfoMgr& Manager()
{
    return ZellWidgets::CUiSingleton<ZellErrorText::CErrorInfoMgr>::Instance();
}

std::string Text(int module, int code)
{
    return ZellWidgets::QStringToString(Manager().GetErrorInfoByModuleAndCode(module, code), nullptr);
}

// Each has words of its own, so the numbers need not be shown and no two texts are the same.
void ExpectOwnWords(int module, std::initializer_list<int> codes)
{
    std::set<std::string> texts;
    for (const int code : codes) {
        const std::string text = Text(module, code);
        EXPECT_THAT(text, Not(HasSubstr("code " + std::to_string(code)))) << module;
        EXPECT_GT(text.size(), 15u) << module << " " << code;
        EXPECT_EQ(text.back(), '.') << text;
        EXPECT_TRUE(texts.insert(text).second) << text;
    }
}

}  // namespace

TEST(ErrorText, HasWordsForEachCodeOfTheSystem)
{
    ExpectOwnWords(20, {3, 2316, 2330, 3201, 3209, 3215, 3219, 3605, 3606});
}

TEST(ErrorText, HasWordsForTheUsualHttpStatuses)
{
    ExpectOwnWords(21, {400, 401, 403, 404, 408, 413, 416, 429, 500, 501, 502, 503, 504});
    EXPECT_THAT(Text(21, 404), HasSubstr("404"));
}

TEST(ErrorText, HasWordsForTheUsualTransferErrors)
{
    ExpectOwnWords(22, {1, 3, 5, 6, 7, 18, 23, 26, 28, 35, 47, 52, 55, 56, 60, 63});
}

TEST(ErrorText, HasWordsForAnswersAndForTheStation)
{
    ExpectOwnWords(23, {1, 2, 3, 4, 5, 6});
    ExpectOwnWords(24, {1, 2, 3, 4, 5});
}

TEST(ErrorText, OfTheStoppedExportIsTheTablesOwn)
{
    EXPECT_EQ(Text(20, 3209), "The export was stopped.");
}

TEST(ErrorText, OfASystemErrorIsTheSystems)
{
    for (const int code : {2, 13, 20, 28})
        EXPECT_THAT(Text(0, code), ::testing::StartsWith(std::system_category().message(code)));
    EXPECT_THAT(Text(0, 28), HasSubstr("(module 0, code 28)"));
}

TEST(ErrorText, NamesTheNumbersOfAnUnknownCode)
{
    EXPECT_EQ(Text(20, 4711), "The export failed (module 20, code 4711).");
    EXPECT_EQ(Text(21, 599), "The server answered with an error (module 21, code 599).");
    EXPECT_EQ(Text(22, 999), "The transfer failed (module 22, code 999).");
    EXPECT_EQ(Text(77, -1), "An error occurred (module 77, code -1).");
    EXPECT_THAT(Text(0, 210), HasSubstr("(module 0, code 210)"));
    EXPECT_THAT(Text(1, 210), HasSubstr("(module 1, code 210)"));
    EXPECT_THAT(Text(20, 0), HasSubstr("(module 20, code 0)"));
}

TEST(ErrorText, OfNoErrorIsEmpty)
{
    EXPECT_EQ(Text(0, 0), "");
}

TEST(ErrorText, IsTheSameByCodeAsByTwoNumbers)
{
    const ZellErrorText::CErrorCodeEvent event(ErrorCode(2, 20, 3215));
    EXPECT_EQ(event.Code().iFirstCode, 20);
    EXPECT_EQ(event.Code().iSecondCode, 3215);
    EXPECT_EQ(Manager().GetErrorInfoByCode(event), Manager().GetErrorInfoByModuleAndCode(20, 3215));
}
