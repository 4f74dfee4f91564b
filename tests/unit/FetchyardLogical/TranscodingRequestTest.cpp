#include "FetchyardLogical/ProtocalFactory.h"
#include "FetchyardLogicalHost/TranscodingRequest.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using FetchyardLogical::CProtocalFactory;
using FetchyardLogical::PictureBeside;
using FetchyardLogical::TrasncodingFile;
using nlohmann::json;

namespace {

json File(const std::string& source, const std::string& target)
{
    return {{"SourceFile", source}, {"SaveFile", target}};
}

json Request(const std::vector<json>& files)
{
    return {{"TranscodingRequest", {{"TaskName", "Stamping"}, {"ShowTip", true}, {"Files", files}}}};
}

class TranscodingRequestTest : public testing::Test
{
protected:
    bool Parse(const std::string& text)
    {
        return CProtocalFactory::Instance().ParseTranscodingRequest(names_, tip_, task_name_, files_, text);
    }
    bool Parse(const json& request) { return Parse(request.dump()); }

    // Refused, for a reason in these words, and nothing of it taken.
    void ExpectRefused(const std::string& text, const std::string& words)
    {
        names_ = {"before"};
        tip_ = true;
        task_name_ = "before";
        files_.assign(1, TrasncodingFile());
        EXPECT_FALSE(Parse(text)) << text;
        EXPECT_EQ(names_, std::vector<std::string>{"before"});
        EXPECT_TRUE(tip_);
        EXPECT_EQ(task_name_, "before");
        EXPECT_EQ(files_.size(), 1u);
        FetchyardLogical::TranscodingRequest request;
        std::string reason;
        EXPECT_FALSE(FetchyardLogical::ReadTranscodingRequest(text, request, reason));
        EXPECT_NE(reason.find(words), std::string::npos) << reason;
    }
    void ExpectRefused(const json& request, const std::string& words)
    {
        ExpectRefused(request.dump(), words);
    }

    std::vector<std::string> names_;
    bool tip_ = false;
    std::string task_name_;
    std::vector<TrasncodingFile> files_;
};

}  // namespace

TEST_F(TranscodingRequestTest, AllMembersAreRead)
{
    json file = File("/videos/gate.mp4", "/stamped/gate.avi");
    file["WatermarkText"] = "Gate\nSouth";
    file["WatermarkKind"] = 3;
    file["DeleteSource"] = true;
    file["CaptureImage"] = true;
    ASSERT_TRUE(Parse(Request({file, File("/videos/yard.mp4", "/stamped/yard.mp4")})));
    EXPECT_EQ(task_name_, "Stamping");
    EXPECT_TRUE(tip_);
    EXPECT_EQ(names_, (std::vector<std::string>{"gate.avi", "yard.mp4"}));
    ASSERT_EQ(files_.size(), 2u);
    EXPECT_EQ(files_[0].source_file, "/videos/gate.mp4");
    EXPECT_EQ(files_[0].save_file, "/stamped/gate.avi");
    EXPECT_EQ(files_[0].watermark_text, "Gate\nSouth");
    EXPECT_EQ(files_[0].watermark_kind, 3);
    EXPECT_TRUE(files_[0].b_delete_source);
    EXPECT_TRUE(files_[0].b_capture_image);
}

TEST_F(TranscodingRequestTest, WhatMayBeAbsentHasItsDefault)
{
    const std::string nothing = R"("WatermarkText":null,"WatermarkKind":null,"DeleteSource":null,)"
                                R"("CaptureImage":null)";
    for (const std::string& more : {std::string(), "," + nothing}) {
        ASSERT_TRUE(Parse(R"({"TranscodingRequest":{"Files":[{"SourceFile":"a.mp4","SaveFile":"b.mp4")" +
                          more + "}]}}"));
        EXPECT_EQ(task_name_, "b.mp4");
        EXPECT_FALSE(tip_);
        ASSERT_EQ(files_.size(), 1u);
        EXPECT_EQ(files_[0].watermark_text, "");
        EXPECT_EQ(files_[0].watermark_kind, 0);
        EXPECT_FALSE(files_[0].b_delete_source);
        EXPECT_FALSE(files_[0].b_capture_image);
    }
}

TEST_F(TranscodingRequestTest, NoFilesGiveEmptyLists)
{
    for (const char* text : {R"({"TranscodingRequest":{}})", R"({"TranscodingRequest":{"Files":null}})",
                             R"({"TranscodingRequest":{"Files":[]}})"}) {
        files_.resize(2);
        names_.resize(2);
        EXPECT_TRUE(Parse(std::string(text))) << text;
        EXPECT_TRUE(files_.empty());
        EXPECT_TRUE(names_.empty());
        EXPECT_EQ(task_name_, "");
    }
}

TEST_F(TranscodingRequestTest, MembersThatNobodyKnowsAreIgnored)
{
    json request = Request({File("a.mp4", "b.mp4")});
    request["Other"] = 1;
    request["TranscodingRequest"]["Files"][0]["Other"] = {1, 2};
    EXPECT_TRUE(Parse(request));
}

TEST_F(TranscodingRequestTest, TextThatIsNoRequestIsRefused)
{
    ExpectRefused(std::string(), "parse error");
    ExpectRefused(std::string("no json"), "parse error");
    ExpectRefused(std::string("{\"TranscodingRequest\":{\"Files\":["), "parse error");
    ExpectRefused(std::string("{\"TranscodingRequest\":{\"TaskName\":\"\xFF\"}}"), "UTF-8");
    for (const char* text : {"[]", "7", "null", "{}", R"({"TranscodingRequest":null})",
                             R"({"TranscodingRequest":[]})", R"({"TranscodingRequest":"x"})"})
        ExpectRefused(std::string(text), "there is no TranscodingRequest");
    ExpectRefused(std::string(R"({"TranscodingRequest":{"Files":{}}})"), "Files is no list");
    ExpectRefused(std::string(R"({"TranscodingRequest":{"Files":[1]}})"), "an entry of Files is no object");
}

TEST_F(TranscodingRequestTest, MemberOfAWrongKindIsRefusedByItsName)
{
    const std::vector<std::pair<const char*, std::vector<json>>> of_a_file = {
        {"SourceFile", {1, true, json::array()}},
        {"SaveFile", {1, json::object()}},
        {"WatermarkText", {1, true}},
        {"WatermarkKind", {"1", true, 1.5, 2147483648, -2147483649LL, 18446744073709551615ULL}},
        {"DeleteSource", {1, "true"}},
        {"CaptureImage", {0, "false"}}};
    for (const auto& [name, values] : of_a_file) {
        for (const json& value : values) {
            json request = Request({File("a.mp4", "b.mp4")});
            request["TranscodingRequest"]["Files"][0][name] = value;
            ExpectRefused(request, std::string(name) + " is n");
        }
    }
    for (const char* const name : {"TaskName", "ShowTip"}) {
        json request = Request({File("a.mp4", "b.mp4")});
        request["TranscodingRequest"][name] = 1;
        ExpectRefused(request, std::string(name) + " is n");
    }
}

TEST_F(TranscodingRequestTest, LargestAndSmallestKindAreTaken)
{
    for (const int kind : {2147483647, -2147483647 - 1, -1}) {
        json request = Request({File("a.mp4", "b.mp4")});
        request["TranscodingRequest"]["Files"][0]["WatermarkKind"] = kind;
        ASSERT_TRUE(Parse(request));
        EXPECT_EQ(files_[0].watermark_kind, kind);
    }
}

TEST_F(TranscodingRequestTest, FileWithoutSourceOrTargetIsRefused)
{
    ExpectRefused(Request({json::object()}), "a file has no SourceFile");
    ExpectRefused(Request({File("", "b.mp4")}), "a file has no SourceFile");
    ExpectRefused(Request({{{"SourceFile", "a.mp4"}}}), "a file has no SaveFile");
    ExpectRefused(Request({File("a.mp4", "")}), "a file has no SaveFile");
    ExpectRefused(Request({File("a.mp4", "folder/")}), "folder/ names no file");
    ExpectRefused(Request({File("a.mp4", "folder\\")}), "folder/ names no file");
    ExpectRefused(Request({File("a.mp4", std::string("b\0.mp4", 6))}), "SaveFile has a zero in it");
    ExpectRefused(Request({File(std::string("a\0", 2), "b.mp4")}), "SourceFile has a zero in it");
}

TEST_F(TranscodingRequestTest, FileThatIsItsOwnTargetIsRefused)
{
    ExpectRefused(Request({File("v/a.mp4", "v/a.mp4")}), "v/a.mp4 would be written over itself");
    ExpectRefused(Request({File("v\\a.mp4", "v/a.mp4")}), "v/a.mp4 would be written over itself");
}

TEST_F(TranscodingRequestTest, TwoOfOneTargetAreRefused)
{
    ExpectRefused(Request({File("a.mp4", "v/c.mp4"), File("b.mp4", "v\\c.mp4")}),
                  "v/c.mp4 would be written twice");
    json first = File("a.mp4", "c.mp4");
    json second = File("b.mp4", "c.avi");
    first["CaptureImage"] = true;
    EXPECT_TRUE(Parse(Request({first, second})));
    second["CaptureImage"] = true;
    ExpectRefused(Request({first, second}), "c.jpg would be written twice");
}

TEST_F(TranscodingRequestTest, SourceThatWouldBeDeletedBeforeItsTurnIsRefused)
{
    json first = File("a.mp4", "c.mp4");
    first["DeleteSource"] = true;
    ExpectRefused(Request({first, File("a.mp4", "d.mp4")}), "a.mp4 would be deleted before its turn");
    EXPECT_TRUE(Parse(Request({File("a.mp4", "d.mp4"), first})));
}

TEST_F(TranscodingRequestTest, ResultMayBeTheSourceOfTheNext)
{
    EXPECT_TRUE(Parse(Request({File("a.mp4", "b.mp4"), File("b.mp4", "c.mp4")})));
}

TEST_F(TranscodingRequestTest, BackslashesOfATargetBecomeSlashesAndThoseOfASourceStay)
{
    ASSERT_TRUE(Parse(Request({File("C:\\videos\\a.mp4", "C:\\stamped\\a.mp4")})));
    EXPECT_EQ(files_[0].source_file, "C:\\videos\\a.mp4");
    EXPECT_EQ(files_[0].save_file, "C:/stamped/a.mp4");
    EXPECT_EQ(names_, std::vector<std::string>{"a.mp4"});
}

TEST_F(TranscodingRequestTest, NamesOfAnyScriptPass)
{
    ASSERT_TRUE(Parse(Request({File("/录像/大门 南.mp4", "/عربي/بوابة 🚪.mp4")})));
    EXPECT_EQ(files_[0].source_file, "/录像/大门 南.mp4");
    EXPECT_EQ(names_, std::vector<std::string>{"بوابة 🚪.mp4"});
    ASSERT_TRUE(Parse(std::string(R"({"TranscodingRequest":{"TaskName":"\u5927\u95e8"}})")));
    EXPECT_EQ(task_name_, "大门");
}

TEST_F(TranscodingRequestTest, HugeRequestsAreReadOrRefusedWithoutHarm)
{
    // Written by hand, since a list of objects of this size takes a sanitizer long.
    const auto request = [](const std::string& files) {
        return R"({"TranscodingRequest":{"Files":[)" + files + "]}}";
    };
    std::string files;
    for (int i = 0; i < 20000; ++i) {
        const std::string name = std::to_string(i) + R"(.mp4")";
        files += std::string(i == 0 ? "" : ",") + R"({"SourceFile":"in/)" + name + R"(,"SaveFile":"out/)" +
                 name + "}";
    }
    ASSERT_TRUE(Parse(request(files)));
    EXPECT_EQ(files_.size(), 20000u);
    EXPECT_EQ(names_.back(), "19999.mp4");
    ASSERT_TRUE(Parse(request(R"({"SourceFile":"a.mp4","SaveFile":"b.mp4","WatermarkText":")" +
                              std::string(5000000, 'x') + R"("})")));
    EXPECT_EQ(files_[0].watermark_text.size(), 5000000u);
    ExpectRefused(R"({"TranscodingRequest":{"Files":)" + std::string(1000000, '['), "nested too deeply");
    const auto nested = [](std::size_t depth) {
        return R"({"TranscodingRequest":{"Files":)" + std::string(depth, '[') + std::string(depth, ']') +
               "}}";
    };
    ExpectRefused(nested(98), "an entry of Files is no object");
    ExpectRefused(nested(100000), "nested too deeply");
}

TEST(PictureBeside, TakesThePlaceOfTheLastExtension)
{
    EXPECT_EQ(PictureBeside("/out/gate.mp4"), "/out/gate.jpg");
    EXPECT_EQ(PictureBeside("gate.south.avi"), "gate.south.jpg");
    EXPECT_EQ(PictureBeside("gate"), "");
    EXPECT_EQ(PictureBeside(".mp4"), "");
}
