#include "ReportFolder.h"
#include "ZellOfficeKitHost/OfficeFolders.h"

#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>

// What the writers do when a write into a report fails, the N-th one, once or from then on, as on a full
// disk.
namespace {

namespace fs = std::filesystem;
using FetchyardBussiness::CExportReportDataToFileObject;

struct Failing
{
    std::string folder;  // writes into files below it are counted; none if it is empty
    int writes = 0;
    int first = 0;  // the first that fails, 0 for none
    bool for_good = false;
};
Failing failing;

bool IsWatched(int descriptor)
{
    if (failing.folder.empty())
        return false;
    std::array<char, 4096> path;
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t length = ::readlink(link.c_str(), path.data(), path.size());
    return length > 0 &&
           std::string_view(path.data(), static_cast<std::size_t>(length)).rfind(failing.folder, 0) == 0;
}

}  // namespace

// Stands in front of the system's.
extern "C" __attribute__((visibility("default"))) ssize_t write(int descriptor, const void* data, size_t size)
{
    if (IsWatched(descriptor)) {
        ++failing.writes;
        const bool is_turn =
            failing.for_good ? failing.writes >= failing.first : failing.writes == failing.first;
        if (failing.first > 0 && is_turn) {
            errno = ENOSPC;
            return -1;
        }
    }
    return ::syscall(SYS_write, descriptor, data, size);
}

namespace {

struct Outcome
{
    std::size_t taken = 0;
    int writes = 0;
};

class FailingWrite : public testing::TestWithParam<bool>
{
protected:
    ~FailingWrite() override { failing = {}; }

    static Outcome WriteReport(const golden::ReportFolder& folder, int type, int first)
    {
        const auto writer = FetchyardBussiness::MakeReportWriter(type);
        failing = {folder.Out(), 0, first, GetParam()};
        Outcome run;
        run.taken = folder.Write(*writer, type, golden::PagesOfTwoSheets());
        run.writes = failing.writes;
        failing = {};
        return run;
    }
};

TEST_P(FailingWrite, TextPageThatIsNotWholeFails)
{
    const golden::ReportFolder good;
    const Outcome whole = WriteReport(good, 3, 0);
    ASSERT_EQ(whole.taken, 3u);
    ASSERT_EQ(whole.writes, 3);
    for (int first = 1; first <= whole.writes; ++first) {
        const golden::ReportFolder folder;
        EXPECT_EQ(WriteReport(folder, 3, first).taken, static_cast<std::size_t>(first - 1));
        // What earlier pages brought stays for a resume, and nothing of the page that failed.
        golden::Report earlier = golden::PagesOfTwoSheets();
        earlier.resize(static_cast<std::size_t>(first - 1));
        const golden::ReportFolder expected;
        const auto writer = FetchyardBussiness::MakeReportWriter(3);
        expected.Write(*writer, 3, earlier);
        EXPECT_EQ(golden::Content(folder.Path("out/Report.txt")),
                  golden::Content(expected.Path("out/Report.txt")));
    }
}

TEST_P(FailingWrite, CsvIsWholeOrSetAside)
{
    const golden::ReportFolder good;
    const Outcome whole = WriteReport(good, 1, 0);
    ASSERT_EQ(whole.taken, 3u);
    ASSERT_GE(whole.writes, 5);
    for (int first = 1; first <= whole.writes; ++first) {
        const golden::ReportFolder folder;
        const Outcome run = WriteReport(folder, 1, first);
        int whole_files = 0;
        for (const char* name : {"out/Report_Alarms.csv", "out/Report_Doors.csv"}) {
            if (!fs::exists(folder.Path(name)))
                continue;
            // A page that was refused ended the report, so that the other sheet may lack its last pages.
            const std::string all = golden::Content(good.Path(name));
            const std::string left = golden::Content(folder.Path(name));
            EXPECT_EQ(left, all.substr(0, left.size())) << name << " " << first;
            whole_files += left == all ? 1 : 0;
        }
        EXPECT_LT(whole_files, 2) << first;
        EXPECT_FALSE(fs::is_empty(ZellOfficeKit::SetAsideFolder())) << first;
        // The last page has no next one that could be refused.
        EXPECT_TRUE(run.taken < 3 || first > whole.writes - 2) << first;
    }
}

TEST_P(FailingWrite, StagedHtmlLosesThePieceAndTheReportGoesOn)
{
    const golden::ReportFolder good;
    const Outcome whole = WriteReport(good, 2, 0);
    ASSERT_EQ(whole.taken, 3u);
    ASSERT_GE(whole.writes, 5);
    for (int first = 1; first <= whole.writes; ++first) {
        const golden::ReportFolder folder;
        EXPECT_EQ(WriteReport(folder, 2, first).taken, 3u);
        EXPECT_FALSE(fs::exists(folder.Path("out/Report.html")));
    }
}

INSTANTIATE_TEST_SUITE_P(Ways, FailingWrite, testing::Bool(), [](const testing::TestParamInfo<bool>& way) {
    return way.param ? "FromThenOn" : "Once";
});

}  // namespace
