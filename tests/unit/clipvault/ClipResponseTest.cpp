#include "plugins/clipvault/ClipResponse.h"

#include <gtest/gtest.h>

namespace {

using namespace ClipVault;

TEST(ClipResponse, TextIsAsDocumented)
{
    ClipOutcome outcome;
    outcome.error = {24, 4};
    outcome.resources = {{"1", "0", ClipState::Done, {}},
                         {"2", "7", ClipState::Failed, {24, 4}},
                         {"3", "", ClipState::NotBegun, {}}};
    EXPECT_EQ(
        WriteResponse(outcome),
        R"({"Response":{"TaskDownloadState":3,"ErrorModule":24,"ErrorCode":4,"ResourceDownloadState":[)"
        R"({"ResourceID":"1","SiteID":"0","ResourceDownloadStateType":2,"ErrorModule":0,"ErrorCode":0},)"
        R"({"ResourceID":"2","SiteID":"7","ResourceDownloadStateType":3,"ErrorModule":24,"ErrorCode":4},)"
        R"({"ResourceID":"3","SiteID":"","ResourceDownloadStateType":1,"ErrorModule":0,"ErrorCode":0}]}})");
}

TEST(ClipResponse, RefusedRequestHasNoResources)
{
    ClipOutcome outcome;
    outcome.error = {20, 3};
    EXPECT_EQ(WriteResponse(outcome),
              R"({"Response":{"TaskDownloadState":3,"ErrorModule":20,"ErrorCode":3}})");
}

}  // namespace
