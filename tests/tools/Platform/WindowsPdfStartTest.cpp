#include "FetchyardBussiness/Platform/HtmlTool.h"
#include "ToolPlace.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <string>

// What only a process on Windows sees of its start: the line as one text, window and priority.
namespace {

using FetchyardBussiness::Platform::RunHtmlTool;

// What the system was asked for last.
struct Asked
{
    std::wstring application;
    std::wstring line;
    DWORD flags = 0;
    BOOL inherits = TRUE;
    bool has_folder = true;
};

Asked& TheAsked()
{
    static Asked asked;
    return asked;
}

BOOL WINAPI NoteAndCreate(const wchar_t* application, wchar_t* line, SECURITY_ATTRIBUTES* process_rights,
                          SECURITY_ATTRIBUTES* thread_rights, BOOL inherits, DWORD flags, void* environment,
                          const wchar_t* folder, STARTUPINFOW* start, PROCESS_INFORMATION* process)
{
    TheAsked() = {application, line, flags, inherits, folder != nullptr};
    using Create = decltype(&NoteAndCreate);
    const auto create = reinterpret_cast<Create>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "CreateProcessW")));
    return create(application, line, process_rights, thread_rights, inherits, flags, environment, folder,
                  start, process);
}

}  // namespace

// The place through which this program, of which the start of the tool is a part, calls the system.
extern "C" {
extern const void* const __imp_CreateProcessW;
const void* const __imp_CreateProcessW = reinterpret_cast<const void*>(&NoteAndCreate);
}

namespace {

TEST(HtmlToolStart, LineArrivesLetterForLetter)
{
    const tools::ToolPlace place;
    for (const std::string line :
         {R"( --encoding utf-8  -O landscape --page-size A4 C:/a b/1.html C:/a b/1.pdf)",
          R"( --encoding utf-8 --page-size A4 C:/ü 门/"q"/\\x\1.html C:/ü 门/1.pdf)", " "}) {
        EXPECT_TRUE(RunHtmlTool(line));
        EXPECT_EQ(place.Told("line"), line + "\n");
    }
}

// STARTF_USESHOWWINDOW with SW_HIDE and nothing else.
TEST(HtmlToolStart, ToolIsHidden)
{
    const tools::ToolPlace place;
    EXPECT_TRUE(RunHtmlTool(" x"));
    EXPECT_EQ(place.Told("start flags"), "1 show 0\n");
    EXPECT_EQ(place.Told("console"), "hidden\n");
}

// Not every emulator gives a process the priority that is asked for, so what is asked for counts.
TEST(HtmlToolStart, ToolIsAskedForWithoutAWindowAndAsIdle)
{
    const tools::ToolPlace place;
    EXPECT_TRUE(RunHtmlTool(" x"));
    EXPECT_TRUE(place.HasRun());
    EXPECT_EQ(TheAsked().application, L"./wkhtmltopdf.exe");
    EXPECT_EQ(TheAsked().line, L" x");
    EXPECT_EQ(TheAsked().flags, DWORD{CREATE_NO_WINDOW | IDLE_PRIORITY_CLASS});
    EXPECT_EQ(TheAsked().inherits, FALSE);
    EXPECT_FALSE(TheAsked().has_folder);
}

TEST(HtmlToolStart, CodeOfTheToolDoesNotMatter)
{
    const tools::ToolPlace place;
    tools::ToolPlace::EndWith(3);
    EXPECT_TRUE(RunHtmlTool(" x"));
}

TEST(HtmlToolStart, ToolIsLookedForInTheWorkingFolderAlone)
{
    const tools::ToolPlace place;
    const std::filesystem::path elsewhere = std::filesystem::u8path(place.Folder() + "elsewhere");
    std::filesystem::create_directory(elsewhere);
    std::filesystem::current_path(elsewhere);
    EXPECT_FALSE(RunHtmlTool(" x"));
    EXPECT_FALSE(place.HasRun());
}

}  // namespace
