#include "FetchyardLogical/CmsGetPersonPicFileData.h"
#include "ServerCallFixture.h"
#include "ZellPictureLoader/PictureLoader.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

using namespace FetchyardLogical;

namespace {

class PersonCall : public ServerCallFixture
{
protected:
    PersonCall()
    {
        data_.str_quern = "/api/v1/persons/report";
        data_.str_request = R"({"PageIndex":1,"PageSize":10})";
    }

    bool Call() { return CmsGetPersonPicFileData::GetExportPicDataList(data_); }
    std::pair<int, int> Error() const { return {data_.error_code.iFirstCode, data_.error_code.iSecondCode}; }

    CmsGetPersonPicFileData data_;
};

constexpr char kPage[] =
    R"({"ErrorModule":0,"ErrorCode":0,"TotalPageIsFinished":true,"Persons":[{"Name":"Anna",
    "Pictures":[{"Title":"Anna 1","Address":"/pictures/1.jpg"},
                {"Title":"Anna 2","Address":"/device/picture?QUERN&camera=1"}]}]})";

}  // namespace

TEST_F(PersonCall, RequestOfTheRecordIsSentAndItsPageFilled)
{
    Answer(kPage);
    data_.str_method = "put";
    ASSERT_TRUE(Call());
    EXPECT_EQ(LastAsked().method, "PUT");
    EXPECT_EQ(LastAsked().path, "/api/v1/persons/report");
    EXPECT_EQ(LastAsked().body, R"({"PageIndex":1,"PageSize":10})");
    EXPECT_TRUE(data_.is_all_finished);
    ASSERT_EQ(data_.picture_list.size(), 2u);
    EXPECT_EQ(data_.picture_list[1].url, "/device/picture?QUERN&camera=1");
    EXPECT_EQ(data_.str_request, R"({"PageIndex":1,"PageSize":10})");
}

TEST_F(PersonCall, RefusedPasswordTellsWhatTheAccountHasLeft)
{
    Answer(R"({"ErrorModule":24,"ErrorCode":2,"RemainingLoginNumber":3,"RemainingLoginType":1})");
    EXPECT_FALSE(Call());
    EXPECT_EQ(Error(), std::make_pair(24, 2));
    EXPECT_EQ(data_.remaining_login_count, "3");
    EXPECT_EQ(data_.remaining_login_type, "1");
}

TEST_F(PersonCall, FailedCallLeavesNoPicturesAndNoTries)
{
    const std::pair<std::pair<int, int>, std::pair<std::string, int>> rows[] = {
        {{21, 503}, {kPage, 503}}, {{23, 1}, {"no json", 200}}, {{23, 1}, {"", 200}}};
    for (const auto& [error, answer] : rows) {
        data_.picture_list = {{"old", "/old"}};
        data_.remaining_login_count = data_.remaining_login_type = "9";
        data_.is_all_finished = false;
        Answer(answer.first, answer.second);
        EXPECT_FALSE(Call());
        EXPECT_EQ(Error(), error);
        EXPECT_TRUE(data_.picture_list.empty());
        EXPECT_FALSE(data_.is_all_finished);
        EXPECT_EQ(data_.remaining_login_count + data_.remaining_login_type, "");
    }
}

TEST_F(PersonCall, UnknownSiteAndUnreachableServerAreTold)
{
    data_.str_quern = "http://127.0.0.1:1/persons";
    EXPECT_FALSE(Call());
    EXPECT_EQ(Error(), std::make_pair(22, 7));
    settings_.sites.clear();
    ZellClientHost::SetClientSettings(settings_);
    data_.str_quern = "/api/v1/persons/report";
    EXPECT_FALSE(Call());
    EXPECT_EQ(Error(), std::make_pair(23, 4));
}

TEST_F(PersonCall, CacheablePictureIsFetchedAheadOnceUnderTheKeyOfTheExport)
{
    ASSERT_TRUE(ZellPictureLoader::InitZellPictureLoader(folder_.Text() + "cache/"));
    Answer(kPage);
    ASSERT_TRUE(Call());
    ASSERT_TRUE(WaitForPath("/pictures/1.jpg"));
    const auto key = std::make_shared<ZellPictureLoader::CImgUrlKey>();
    key->SetValurl_type(static_cast<ZellPictureLoader::CImgUrlKey::Type>(1));
    key->SetValstrImageUrl("/pictures/1.jpg");
    key->SetValstr_request("/pictures/1.jpg");
    key->SetValb_save_cache(true);
    std::string bytes;
    Zell::Base::Error::ErrorCode error;
    EXPECT_TRUE(ZellPictureLoader::CImageMultiSyncLoader().SyncLoadImage(error, bytes, key));
    EXPECT_EQ(bytes, kPage);
    const std::vector<Asked> asked = AllAsked();
    EXPECT_EQ(std::count_if(asked.begin(), asked.end(),
                            [](const Asked& one) { return one.path == "/pictures/1.jpg"; }),
              1);
    ZellPictureLoader::UninitZellPictureLoader();
}
