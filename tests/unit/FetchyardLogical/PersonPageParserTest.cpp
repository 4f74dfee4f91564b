#include "Report/PersonPageParser.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

using FetchyardLogical::CmsGetPersonPicFileData;
using FetchyardLogical::details::ParsePersonPage;

namespace {

constexpr char kPage[] = R"({"ErrorModule":0,"ErrorCode":0,"TotalPageIsFinished":true,"Persons":[
    {"PersonId":3,"Name":"Anna","Pictures":[{"Title":"Anna_1","Address":"/pictures/1.jpg"},
                                            {"Title":"Anna_2","Address":"/pictures/2.jpg"}]},
    {"PersonId":9,"Name":"Bo","Pictures":[{"Title":"Bo_3","Address":"/pictures/3.jpg"}]}]})";

std::pair<int, int> Error(const CmsGetPersonPicFileData& data)
{
    return {data.error_code.iFirstCode, data.error_code.iSecondCode};
}

// The error of an answer that is refused.
std::pair<int, int> Refused(std::string text)
{
    CmsGetPersonPicFileData data;
    data.picture_list = {{"old", "/old"}};
    EXPECT_FALSE(ParsePersonPage(text, data)) << text;
    EXPECT_TRUE(data.picture_list.empty()) << text;
    EXPECT_FALSE(data.is_all_finished) << text;
    return Error(data);
}

std::string Pictures(const std::string& pictures)
{
    return R"({"TotalPageIsFinished":true,"Persons":[{"Pictures":)" + pictures + "}]}";
}

constexpr std::pair<int, int> kNotUnderstood{23, 1};

}  // namespace

TEST(PersonPageParser, PicturesOfAllPersonsComeInTheServersOrder)
{
    std::string body = kPage;
    CmsGetPersonPicFileData data;
    data.error_code = {1, 2};
    data.remaining_login_count = "4";
    data.remaining_login_type = "1";
    ASSERT_TRUE(ParsePersonPage(body, data));
    EXPECT_EQ(body, kPage);
    EXPECT_EQ(Error(data), std::make_pair(0, 0));
    EXPECT_TRUE(data.is_all_finished);
    EXPECT_EQ(data.remaining_login_count + data.remaining_login_type, "");
    ASSERT_EQ(data.picture_list.size(), 3u);
    EXPECT_EQ(data.picture_list[0].file_stem, "Anna_1");
    EXPECT_EQ(data.picture_list[0].url, "/pictures/1.jpg");
    EXPECT_EQ(data.picture_list[1].file_stem, "Anna_2");
    EXPECT_EQ(data.picture_list[2].file_stem, "Bo_3");
    EXPECT_EQ(data.picture_list[2].url, "/pictures/3.jpg");
}

TEST(PersonPageParser, LaterPageReplacesTheOneBefore)
{
    std::string body = R"({"Persons":[],"TotalPageIsFinished":false,"New":{"a":[1]}})";
    CmsGetPersonPicFileData data;
    data.picture_list = {{"old", "/old"}};
    data.is_all_finished = true;
    ASSERT_TRUE(ParsePersonPage(body, data));
    EXPECT_TRUE(data.picture_list.empty());
    EXPECT_FALSE(data.is_all_finished);
}

TEST(PersonPageParser, PersonMayHaveNoPictures)
{
    for (const char* const persons :
         {"[{}]", R"([{"Name":"Anna"}])", R"([{"Pictures":[]}])", R"([{"Pictures":null}])"}) {
        std::string body = std::string(R"({"TotalPageIsFinished":true,"Persons":)") + persons + "}";
        CmsGetPersonPicFileData data;
        EXPECT_TRUE(ParsePersonPage(body, data)) << persons;
        EXPECT_TRUE(data.picture_list.empty());
    }
}

TEST(PersonPageParser, RefusalGivesTheServersPairAndWhatTheAccountHasLeft)
{
    std::string body = R"({"ErrorModule":24,"ErrorCode":2,"ErrorText":"The password is wrong.",
        "RemainingLoginNumber":4,"RemainingLoginType":"1"})";
    CmsGetPersonPicFileData data;
    EXPECT_FALSE(ParsePersonPage(body, data));
    EXPECT_EQ(Error(data), std::make_pair(24, 2));
    EXPECT_EQ(data.remaining_login_count, "4");
    EXPECT_EQ(data.remaining_login_type, "1");
}

TEST(PersonPageParser, RefusalForgetsWhatAnEarlierOneSaid)
{
    std::string body = R"({"ErrorModule":24,"ErrorCode":5})";
    CmsGetPersonPicFileData data;
    data.remaining_login_count = "4";
    data.remaining_login_type = "1";
    EXPECT_FALSE(ParsePersonPage(body, data));
    EXPECT_EQ(data.remaining_login_count + data.remaining_login_type, "");
}

TEST(PersonPageParser, AnswerThatIsNoPageIsNotUnderstood)
{
    for (const char* const text :
         {"", "{}", "[]", "null", "no json", R"({"Persons":[]})", R"({"TotalPageIsFinished":true})",
          R"({"TotalPageIsFinished":null,"Persons":[]})", R"({"TotalPageIsFinished":true,"Persons":null})",
          R"({"TotalPageIsFinished":1,"Persons":[]})", R"({"TotalPageIsFinished":true,"Persons":{}})",
          R"({"TotalPageIsFinished":true,"Persons":[1]})", R"({"TotalPageIsFinished":true,"Persons":[]} x)",
          R"({"TotalPageIsFinished":true,"Persons":[]}{})"})
        EXPECT_EQ(Refused(text), kNotUnderstood) << text;
}

TEST(PersonPageParser, PictureHasBothItsTexts)
{
    for (const char* const picture :
         {R"([{"Title":"a"}])", R"([{"Address":"/a"}])", R"([{"Title":"","Address":"/a"}])",
          R"([{"Title":"a","Address":""}])", R"([{"Title":null,"Address":"/a"}])",
          R"([{"Title":5,"Address":"/a"}])", R"(["a"])", "{}", "7"})
        EXPECT_EQ(Refused(Pictures(picture)), kNotUnderstood) << picture;
}

TEST(PersonPageParser, TitleThatLeadsOutOfItsFolderIsRefused)
{
    for (const char* const title : {"../a", "a/b", "/a", R"(..\\a)", R"(a\\b)", R"(a\u0000b)", R"(a\/b)"})
        EXPECT_EQ(Refused(Pictures(std::string(R"([{"Title":")") + title + R"(","Address":"/a"}])")),
                  kNotUnderstood)
            << title;
}

TEST(PersonPageParser, PageCutAtEveryByteIsNotUnderstood)
{
    const std::string page = kPage;
    for (std::size_t size = 0; size < page.size(); ++size)
        ASSERT_EQ(Refused(page.substr(0, size)), kNotUnderstood) << size;
}
