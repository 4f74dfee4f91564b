#include "UnfinishedTasks.h"

#include <gtest/gtest.h>

using namespace FetchyardClient;
using FetchyardLogical::TaskView;

namespace {

TaskView InState(ZellTaskKit::DownloadState state)
{
    TaskView task;
    task.state = state;
    return task;
}

}  // namespace

TEST(UnfinishedTasks, InterruptedAndStoppedOnesAreUnfinished)
{
    TaskView interrupted = InState(ZellTaskKit::Downloading);
    interrupted.is_interrupted = true;
    EXPECT_TRUE(IsUnfinished(interrupted));
    EXPECT_TRUE(IsUnfinished(InState(ZellTaskKit::Stopped)));
    EXPECT_TRUE(IsUnfinished(InState(ZellTaskKit::UploadStopped)));
}

TEST(UnfinishedTasks, EndedAndRunningOnesAreNot)
{
    for (const auto state :
         {ZellTaskKit::Unstarted, ZellTaskKit::Downloading, ZellTaskKit::Finished, ZellTaskKit::Failed,
          ZellTaskKit::UploadFinished, ZellTaskKit::UploadFailed, ZellTaskKit::Deleted})
        EXPECT_FALSE(IsUnfinished(InState(state))) << state;
}

TEST(UnfinishedTasks, CommandLeadsToTheSameDataAndStations)
{
    HostOptions options;
    EXPECT_EQ(ResumeCommand(options, {}), "fetchyard resume --all");
    options.data_folder = "/data";
    options.station = "http://127.0.0.1:8080";
    options.sites[7] = "http://127.0.0.1:8081";
    options.save_folder = "/save";
    options.user = "anna";
    options.plugins["clipvault.c"] = "/lib/clipvault.so";
    options.own_plugins = false;
    options.log_file = "/log";
    EXPECT_EQ(ResumeCommand(options, {"a", "b"}),
              "fetchyard resume a b --data /data --station http://127.0.0.1:8080 "
              "--site 7=http://127.0.0.1:8081 --save /save --user anna "
              "--plugin clipvault.c=/lib/clipvault.so --no-own-plugins --log /log");
}

TEST(UnfinishedTasks, WordWithABlankIsQuotedInTheCommand)
{
    HostOptions options;
    options.data_folder = "/my data";
    const std::string command = ResumeCommand(options, {});
    EXPECT_NE(command.find("--data '/my data'"), command.find("--data \"/my data\"")) << command;
}
