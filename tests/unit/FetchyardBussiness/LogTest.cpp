#include "FetchyardBussiness/Log.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace {

struct Line
{
    int level;
    std::string module;
    std::string format;
    std::string text;
};

std::vector<Line>& Lines()
{
    static auto* lines = new std::vector<Line>;
    return *lines;
}

std::string LastText()
{
    return Lines().back().text;
}

}  // namespace

// Stands in for the client's log.
void Zell::Base::details::IOXTFormatLog(int level, const char* module, const char* format, ...)
{
    char text[1024];
    va_list values;
    va_start(values, format);
    std::vsnprintf(text, sizeof text, format, values);
    va_end(values);
    Lines().push_back({level, module, format, text});
}

namespace FetchyardBussiness {

struct Sample
{
    Sample() { LogInfo("made"); }
    ~Sample() { LogInfo("gone"); }
    Sample(const Sample&) = delete;
    Sample& operator=(const Sample&) = delete;

    void Exec() { LogInfo("begin"); }
    static std::map<std::string, std::vector<int>> Read(int (*callback)(int), const std::string& text)
    {
        LogError("%s %d", text.c_str(), callback(1));
        return {};
    }
    const std::string& Name() const
    {
        LogWarning(" with a blank");
        return name;
    }
    template <typename T>
    void Typed(T value)
    {
        LogInfo("%d", static_cast<int>(value));
    }
    std::string name;
};

namespace {

void FileLocal()
{
    LogInfo("local");
}

int Twice(int value)
{
    return value * 2;
}

}  // namespace

TEST(Log, TheHeadIsTheQualifiedNameAndTheTailIsFileAndLine)
{
    Sample sample;
    sample.Exec();
    EXPECT_EQ(Lines().back().format, "[%s]begin[%s(%d)]");
    EXPECT_EQ(Lines().back().module, "FetchyardBussiness");
    const std::string head = std::string("[FetchyardBussiness::Sample::Exec]begin[") + __FILE__ + "(";
    EXPECT_EQ(LastText().rfind(head, 0), 0u) << LastText();
}

TEST(Log, ValuesStandBetweenHeadAndTail)
{
    Sample::Read(&Twice, "value");
    EXPECT_EQ(Lines().back().level, 5);
    EXPECT_EQ(LastText().rfind("[FetchyardBussiness::Sample::Read]value 2[", 0), 0u) << LastText();
}

TEST(Log, ATextThatBeginsWithABlankKeepsIt)
{
    Sample sample;
    sample.Name();
    EXPECT_EQ(Lines().back().level, 4);
    EXPECT_EQ(LastText().rfind("[FetchyardBussiness::Sample::Name] with a blank[", 0), 0u) << LastText();
}

TEST(Log, ConstructorsAndDestructorsHaveTheirNames)
{
    {
        Sample sample;
    }
    const auto& lines = Lines();
    EXPECT_EQ(lines[lines.size() - 2].text.rfind("[FetchyardBussiness::Sample::Sample]made[", 0), 0u);
    EXPECT_EQ(lines.back().text.rfind("[FetchyardBussiness::Sample::~Sample]gone[", 0), 0u) << LastText();
}

TEST(Log, AnUnnamedNamespaceDoesNotShow)
{
    FileLocal();
    EXPECT_EQ(LastText().rfind("[FetchyardBussiness::FileLocal]local[", 0), 0u) << LastText();
}

TEST(Log, TemplatesShowTheirNameWithoutTheirArguments)
{
    Sample sample;
    sample.Typed(7L);
    EXPECT_EQ(LastText().rfind("[FetchyardBussiness::Sample::Typed]7[", 0), 0u) << LastText();
}

TEST(Log, TheNameIsAConstantOfTheProgram)
{
    static constexpr auto name =
        details::QualifiedName("virtual std::map<int, a b> ns::{anonymous}::C::Get(x<y (*)()>)");
    EXPECT_STREQ(name.text, "ns::C::Get");
    static constexpr auto clang = details::QualifiedName("void ns::(anonymous namespace)::Run(int)");
    EXPECT_STREQ(clang.text, "ns::Run");
    static constexpr auto msvc = details::QualifiedName("bool __cdecl ns::`anonymous-namespace'::Run(void)");
    EXPECT_STREQ(msvc.text, "ns::Run");
    static constexpr auto reference = details::QualifiedName("const std::string &ns::C::Name() const");
    EXPECT_STREQ(reference.text, "ns::C::Name");
}

}  // namespace FetchyardBussiness
