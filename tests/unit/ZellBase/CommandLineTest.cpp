#include "ZellBase/CommandLine.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using Zell::Base::details::SplitCommandLine;

namespace {

using Words = std::vector<std::string>;

}  // namespace

TEST(CommandLine, SplitsByTheRulesOfTheCRuntime)
{
    const struct
    {
        const char* line;
        Words words;
    } table[] = {
        {"", {}},
        {" \t ", {}},
        {"p", {"p"}},
        {"  p\ta  b ", {"p", "a", "b"}},
        {R"(p "a b" c)", {"p", "a b", "c"}},
        {R"(p a"b c"d)", {"p", "ab cd"}},
        {R"(p "" x)", {"p", "", "x"}},
        {R"(p "abc" d e)", {"p", "abc", "d", "e"}},
        {R"(p a\\b d"e f"g h)", {"p", R"(a\\b)", "de fg", "h"}},
        {R"(p a\\\"b c d)", {"p", R"(a\"b)", "c", "d"}},
        {R"(p a\\\\"b c" d e)", {"p", R"(a\\b c)", "d", "e"}},
        {R"(p a"b"" c d)", {"p", R"(ab" c d)"}},
        {R"(p "a""b" c)", {"p", R"(a"b)", "c"}},
        {R"(p """a b""" c)", {"p", R"("a b")", "c"}},
        {R"(p \"a b\" c)", {"p", R"("a)", R"(b")", "c"}},
        {R"(p "a\\" b)", {"p", R"(a\)", "b"}},
        {R"(p "a\" b" c)", {"p", R"(a" b)", "c"}},
        {R"(p "open end)", {"p", "open end"}},
        {R"(p C:\Folder\File.txt \\server\share\)", {"p", R"(C:\Folder\File.txt)", R"(\\server\share\)"}},
        {"p 'a b' $HOME `x` ;&|<>*?", {"p", "'a", "b'", "$HOME", "`x`", ";&|<>*?"}},
        {"p a\nb", {"p", "a\nb"}},
        {R"("C:\Program Files\p.exe" a)", {R"(C:\Program Files\p.exe)", "a"}},
        {R"(C:\tools\"p q".exe a\"b)", {R"(C:\tools\p q.exe)", R"(a"b)"}},
        {"p \xE6\x8A\xA5 \xF0\x9F\x93\xB7", {"p", "\xE6\x8A\xA5", "\xF0\x9F\x93\xB7"}},
    };
    for (const auto& row : table)
        EXPECT_EQ(SplitCommandLine(row.line), row.words) << row.line;
}

TEST(CommandLine, SplitsTheLineOfTheArchiver)
{
    EXPECT_EQ(SplitCommandLine(R"(7za.exe a -tzip -p"secret word" "/data/out file.zip" "/exports/a b//*")"),
              (Words{"7za.exe", "a", "-tzip", "-psecret word", "/data/out file.zip", "/exports/a b//*"}));
}

TEST(CommandLine, LetsAQuoteInAPasswordBreakTheLine)
{
    EXPECT_EQ(SplitCommandLine(R"(7za.exe a -p"pass"word" "out.zip" "in/*")"),
              (Words{"7za.exe", "a", "-ppassword out.zip in/*"}));
}
