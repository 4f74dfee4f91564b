#include "FetchyardLogical/CmsGetPersonPicFileData.h"
#include "tests/unit/TempFolder.h"
#include "ZellClientHostSettings/ClientSettings.h"
#include "ZellPictureLoader/PictureLoader.h"

#include <gtest/gtest.h>
#include <httplib.h>

#include <condition_variable>
#include <map>
#include <mutex>
#include <string>
#include <thread>

using namespace FetchyardLogical;

namespace {

// A server on loopback with one answer to every search, which serves pictures too, and a client whose site it
// is.
class PersonCall : public ::testing::Test
{
protected:
    PersonCall()
    {
        const auto handler = [this](const httplib::Request& request, httplib::Response& response) {
            const std::lock_guard<std::mutex> lock(mutex_);
            method_ = request.method;
            path_ = request.path;
            body_ = request.body;
            response.status = status_;
            response.set_content(answer_, "application/json");
        };
        server_.Get("/pictures/.*", [this](const httplib::Request& request, httplib::Response& response) {
            const std::lock_guard<std::mutex> lock(mutex_);
            ++pictures_[request.path];
            changed_.notify_all();
            response.set_content("picture", "image/jpeg");
        });
        server_.Post(".*", handler).Put(".*", handler);
        server_.set_keep_alive_max_count(1);  // or stopping waits for the client's idle connection
        const int port = server_.bind_to_any_port("127.0.0.1");
        thread_ = std::thread([this] { server_.listen_after_bind(); });
        while (!server_.is_running())
            std::this_thread::yield();
        settings_.data_path = settings_.public_data_path = folder_.Text();
        settings_.sites = {{0, "http://127.0.0.1:" + std::to_string(port)}};
        ZellClientHost::SetClientSettings(settings_);
        data_.str_quern = "/api/v1/persons/report";
        data_.str_request = R"({"PageIndex":1,"PageSize":10})";
    }

    ~PersonCall() override
    {
        server_.stop();
        thread_.join();
    }

    void Answer(const std::string& text, int status = 200)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        answer_ = text;
        status_ = status;
    }

    bool Call() { return CmsGetPersonPicFileData::GetExportPicDataList(data_); }
    std::pair<int, int> Error() const { return {data_.error_code.iFirstCode, data_.error_code.iSecondCode}; }

    TempFolder folder_;
    httplib::Server server_;
    std::thread thread_;
    ZellClientHost::ClientSettings settings_;
    CmsGetPersonPicFileData data_;

    std::mutex mutex_;
    std::condition_variable changed_;
    std::string method_, path_, body_;
    std::string answer_;
    int status_ = 200;
    std::map<std::string, int> pictures_;  // how often each was fetched
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
    EXPECT_EQ(method_, "PUT");
    EXPECT_EQ(path_, "/api/v1/persons/report");
    EXPECT_EQ(body_, R"({"PageIndex":1,"PageSize":10})");
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
    {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait(lock, [this] { return !pictures_.empty(); });
    }
    const auto key = std::make_shared<ZellPictureLoader::CImgUrlKey>();
    key->SetValurl_type(static_cast<ZellPictureLoader::CImgUrlKey::Type>(1));
    key->SetValstrImageUrl("/pictures/1.jpg");
    key->SetValstr_request("/pictures/1.jpg");
    key->SetValb_save_cache(true);
    std::string bytes;
    Zell::Base::Error::ErrorCode error;
    EXPECT_TRUE(ZellPictureLoader::CImageMultiSyncLoader().SyncLoadImage(error, bytes, key));
    EXPECT_EQ(bytes, "picture");
    EXPECT_EQ(pictures_, (std::map<std::string, int>{{"/pictures/1.jpg", 1}}));
    ZellPictureLoader::UninitZellPictureLoader();
}
