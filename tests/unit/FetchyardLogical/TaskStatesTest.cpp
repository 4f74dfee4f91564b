#include "Engine/TaskStates.h"

#include <gtest/gtest.h>

#include <set>
#include <utility>
#include <vector>

using namespace ZellTaskKit;

namespace {

constexpr DownloadState kAll[] = {Unstarted,     Downloading,      Finished,       Failed,
                                  Stopped,       Uploading,        UploadFinished, UploadFailed,
                                  UploadStopped, TranscodingBegin, TranscodingEnd, Deleted};

}  // namespace

TEST(TaskStates, OnlyAFailureMayBeReportedAgainBehindAnEnd)
{
    std::set<std::pair<int, int>> found;
    for (const DownloadState before : kAll)
        for (const DownloadState next : kAll)
            if (FetchyardLogical::details::IsEndState(before) &&
                FetchyardLogical::details::CanFollow(before, next))
                found.insert({before, next});
    EXPECT_EQ(found, (std::set<std::pair<int, int>>{{5, 5}, {11, 11}}));
}

TEST(TaskStates, NothingLeadsBackToTheStart)
{
    for (const DownloadState before : kAll) {
        EXPECT_FALSE(FetchyardLogical::details::CanFollow(before, Unstarted));
        if (before != Unstarted) {
            EXPECT_FALSE(FetchyardLogical::details::CanFollow(before, Downloading));
            EXPECT_FALSE(FetchyardLogical::details::CanFollow(before, Uploading));
        }
    }
}

TEST(TaskStates, StartAndEndStatesAreThoseOfTheContract)
{
    std::set<int> starts;
    std::set<int> ends;
    for (const DownloadState state : kAll) {
        if (FetchyardLogical::details::IsStartState(state))
            starts.insert(state);
        if (FetchyardLogical::details::IsEndState(state))
            ends.insert(state);
    }
    EXPECT_EQ(starts, (std::set<int>{1, 7}));
    EXPECT_EQ(ends, (std::set<int>{4, 5, 6, 10, 11, 12, 200}));
}

TEST(TaskStates, EveryRunOfATranscodingIsKnown)
{
    const std::vector<std::vector<DownloadState>> runs = {
        {Unstarted, Failed},
        {Unstarted, Downloading, Failed},
        {Unstarted, Downloading, TranscodingBegin, Failed},
        {Unstarted, Downloading, TranscodingBegin, Stopped},
        {Unstarted, Downloading, TranscodingBegin, TranscodingEnd, Finished}};
    for (const std::vector<DownloadState>& run : runs) {
        for (std::size_t i = 1; i < run.size(); ++i)
            EXPECT_TRUE(FetchyardLogical::details::CanFollow(run[i - 1], run[i]))
                << run[i - 1] << " " << run[i];
    }
}
