#include "plugins/clipvault/ClipRequest.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using ClipVault::ClipRequest;

// What an export sends for a camera of a site.
constexpr char kFull[] =
    R"({"DownloadVideoFileRequest":{"GUID":"g-1","DownloadParam":{"DownloadType":1,"VideoFormat":1,
    "Password":"p","CustomFilePath":"/tmp/a","IsSnap":true,"IsNeedPlatformWatermark":false},"ResourceParam":[
    {"ResourceID":"7","ResourceType":2008,"SiteID":"3","IsCameraNO":true,
     "DownloadTime":[{"StartTime":100,"EndTime":160},{"StartTime":2147483647,"EndTime":2147483648}],
     "CustomFileName":"gate"}]}})";

ClipRequest Read(const std::string& json)
{
    ClipRequest request;
    std::string reason;
    EXPECT_TRUE(ClipVault::ReadRequest(json, request, reason)) << reason;
    return request;
}

std::string Refusal(const std::string& json)
{
    ClipRequest request;
    std::string reason;
    EXPECT_FALSE(ClipVault::ReadRequest(json, request, reason)) << json;
    return reason;
}

std::string Replaced(const std::string& what, const std::string& by)
{
    std::string json = kFull;
    const std::size_t at = json.find(what);
    EXPECT_NE(at, std::string::npos) << what;
    return json.replace(at, what.size(), by);
}

TEST(ClipRequest, AllMembersAreRead)
{
    const ClipRequest request = Read(kFull);
    EXPECT_EQ(request.guid, "g-1");
    EXPECT_EQ(request.format, 1);
    EXPECT_EQ(request.password, "p");
    EXPECT_EQ(request.folder, "/tmp/a/");
    EXPECT_TRUE(request.has_snapshot);
    EXPECT_TRUE(request.is_stamped_later);
    ASSERT_EQ(request.resources.size(), 1U);
    EXPECT_EQ(request.resources[0].resource_id, "7");
    EXPECT_EQ(request.resources[0].site_id, "3");
    EXPECT_EQ(request.resources[0].site, 3U);
    EXPECT_TRUE(request.resources[0].is_camera_number);
    EXPECT_EQ(request.resources[0].file_name, "gate");
    ASSERT_EQ(request.resources[0].times.size(), 2U);
    EXPECT_EQ(request.resources[0].times[0].begin, 100);
    EXPECT_EQ(request.resources[0].times[1].end, 2147483648);
}

TEST(ClipRequest, WhatMayBeAbsentHasItsDefault)
{
    const ClipRequest request = Read(R"({"DownloadVideoFileRequest":{"DownloadParam":{"CustomFilePath":"a\\"},
        "ResourceParam":[{"ResourceID":"7","DownloadTime":[{"StartTime":1,"EndTime":2}],"CustomFileName":"n"}]}})");
    EXPECT_EQ(request.guid, "");
    EXPECT_EQ(request.format, 0);
    EXPECT_EQ(request.password, "");
    EXPECT_EQ(request.folder, "a\\");
    EXPECT_FALSE(request.has_snapshot);
    EXPECT_FALSE(request.is_stamped_later);
    EXPECT_EQ(request.resources[0].site, 0U);
    EXPECT_EQ(request.resources[0].site_id, "0");
}

TEST(ClipRequest, PresenceOfTheWatermarkCountsAndNotItsValue)
{
    EXPECT_TRUE(Read(Replaced("\"IsNeedPlatformWatermark\":false", "\"IsNeedPlatformWatermark\":true"))
                    .is_stamped_later);
    EXPECT_FALSE(Read(Replaced(",\"IsNeedPlatformWatermark\":false", "")).is_stamped_later);
}

TEST(ClipRequest, TimesBelowZeroAreThoseFrom2038On)
{
    const ClipRequest request = Read(Replaced("\"EndTime\":2147483648", "\"EndTime\":-2147483648"));
    EXPECT_EQ(request.resources[0].times[1].begin, 2147483647);
    EXPECT_EQ(request.resources[0].times[1].end, 2147483648);
    EXPECT_NE(Refusal(Replaced("100", "-2147483649")), "");
}

TEST(ClipRequest, ExtensionsFollowTheFormat)
{
    ClipRequest request;
    for (const auto& [format, extension] : {std::pair(2, ".mp4"), std::pair(1, ".avi"), std::pair(0, ""),
                                            std::pair(-1, ""), std::pair(3, "")}) {
        request.format = format;
        EXPECT_STREQ(request.Extension(), extension) << format;
    }
}

TEST(ClipRequest, RefusalsNameTheMember)
{
    EXPECT_EQ(Refusal(""), "the request is no JSON text with a DownloadVideoFileRequest");
    EXPECT_EQ(Refusal(R"({"Other":1})"), "the request is no JSON text with a DownloadVideoFileRequest");
    EXPECT_EQ(Refusal(Replaced("\"7\"", "7")),
              "/DownloadVideoFileRequest/ResourceParam[1]/ResourceID is no text");
    EXPECT_EQ(Refusal(Replaced("\"7\"", "\"7a\"")),
              "/DownloadVideoFileRequest/ResourceParam[1]/ResourceID is no number");
    EXPECT_EQ(Refusal(Replaced("160", "100")),
              "/DownloadVideoFileRequest/ResourceParam[1]/DownloadTime[1] ends before it begins");
    EXPECT_EQ(Refusal(Replaced("\"gate\"", "null")),
              "/DownloadVideoFileRequest/ResourceParam[1]/CustomFileName is no text");
    EXPECT_EQ(Refusal(Replaced("\"IsSnap\":true", "\"IsSnap\":1")),
              "/DownloadVideoFileRequest/DownloadParam/IsSnap is neither true nor false");
}

TEST(ClipRequest, ListsBeyondAThousandAreRefused)
{
    std::string times = "{\"StartTime\":1,\"EndTime\":2}";
    for (int i = 0; i < 1000; ++i)
        times += ",{\"StartTime\":1,\"EndTime\":2}";
    EXPECT_EQ(Refusal(Replaced("{\"StartTime\":100,\"EndTime\":160}", times)),
              "/DownloadVideoFileRequest/ResourceParam[1]/DownloadTime is no list of times");
}

}  // namespace
