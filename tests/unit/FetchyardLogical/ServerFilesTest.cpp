#include "ServerCallFixture.h"
#include "ZellBase/Error.h"

#include <gtest/gtest.h>

using namespace FetchyardLogical;
using Zell::Base::Error::ErrorCode;

namespace {

std::pair<int, int> Codes(const ErrorCode& error)
{
    return {error.iFirstCode, error.iSecondCode};
}

using Pair = std::pair<int, int>;

// What the station makes by itself.
class ServerFiles : public ServerCallFixture
{
protected:
    ServerFiles()
    {
        request_.str_quern = "/api/v1/logs/gather";
        request_.str_request = R"({"CameraIds":[1]})";
        data_.export_data_node.file_guid = "g-1";
        query_.str_method = "POST";
        query_.str_quern = Site() + "/state";
        query_.str_request = R"({"TaskId":"t"})";
        Zell::Base::Error::SetLastError({});
    }

    bool AskForLogs(bool& failed)
    {
        return CmsGetExportFileData::CircleGetFileState(data_, request_, failed);
    }
    bool AskForReport(bool& failed)
    {
        return CmsGetExportFileData::GetServerFileGenerateState(query_, download_, delete_cache_, failed);
    }

    CmsGetExportFileData data_;
    RequstData request_;
    RequstData query_;
    RequstData download_;
    RequstData delete_cache_;
};

}  // namespace

TEST_F(ServerFiles, GatheringGetsItsNumber)
{
    data_.export_data_node.file_url_list = {"of another"};
    Answer(R"({"ErrorModule":0,"ErrorCode":0,"FileGuid":"g-2"})");
    EXPECT_TRUE(CmsGetExportFileData::GetAllForceLog(data_, request_));
    EXPECT_EQ(data_.export_data_node.file_guid, "g-2");
    EXPECT_TRUE(data_.export_data_node.file_url_list.empty());
    EXPECT_EQ(Codes(data_.error_code), Pair(0, 0));
    EXPECT_EQ(LastAsked().body, R"({"CameraIds":[1]})");
}

TEST_F(ServerFiles, GatheringThatIsRefusedHasNoNumberAndAReason)
{
    const std::vector<std::tuple<const char*, int, Pair>> rows = {
        {R"({"ErrorModule":24,"ErrorCode":1,"FileGuid":"g"})", 200, {24, 1}},
        {R"({"ErrorModule":0,"ErrorCode":0})", 200, {23, 1}},
        {"", 200, {23, 1}},
        {"garbage", 200, {23, 1}},
        {"{}", 500, {21, 500}},
    };
    for (const auto& [answer, status, codes] : rows) {
        Answer(answer, status);
        data_.export_data_node.file_guid = "of another";
        EXPECT_FALSE(CmsGetExportFileData::GetAllForceLog(data_, request_)) << answer;
        EXPECT_EQ(data_.export_data_node.file_guid, "") << answer;
        EXPECT_EQ(Codes(data_.error_code), codes) << answer;
    }
}

TEST_F(ServerFiles, PollForLogsIsTheRequestWithTheNumber)
{
    Answer(R"({"State":"working"})");
    bool failed = true;
    EXPECT_FALSE(AskForLogs(failed));
    EXPECT_FALSE(failed);
    EXPECT_EQ(LastAsked().path, "/api/v1/logs/gather");
    EXPECT_EQ(LastAsked().body, R"({"CameraIds":[1],"FileGuid":"g-1"})");
    request_.str_request = "no json";
    AskForLogs(failed);
    EXPECT_EQ(LastAsked().body, R"({"FileGuid":"g-1"})");
}

TEST_F(ServerFiles, ReadyLogsHaveWholeAddresses)
{
    request_.site_id = 3;
    Answer(R"({"State":"ready","Files":["/api/v1/logs/g/a.log","http://else.example/b.log"]})");
    bool failed = true;
    EXPECT_TRUE(AskForLogs(failed));
    EXPECT_FALSE(failed);
    EXPECT_EQ(data_.export_data_node.file_url_list,
              (std::list<std::string>{Site() + "/api/v1/logs/g/a.log", "http://else.example/b.log"}));
}

TEST_F(ServerFiles, AddressesBelowASiteWithAPathStayBelowIt)
{
    settings_.sites[4] = Site() + "/north";
    ZellClientHost::SetClientSettings(settings_);
    Answer(R"({"State":"ready","Files":["/a.log"]})");
    bool failed = true;
    request_.site_id = 4;
    EXPECT_TRUE(AskForLogs(failed));
    EXPECT_EQ(data_.export_data_node.file_url_list.front(), Site() + "/north/a.log");
    request_.site_id = 0;
    request_.str_quern = Site() + "/north/api/v1/logs/gather";
    EXPECT_TRUE(AskForLogs(failed));
    EXPECT_EQ(data_.export_data_node.file_url_list.front(), Site() + "/north/a.log");
}

TEST_F(ServerFiles, AddressesOfAServerThatIsNoSiteAreItsOwn)
{
    settings_.sites.clear();
    ZellClientHost::SetClientSettings(settings_);
    request_.str_quern = Site() + "/deep/gather?x=1";
    Answer(R"({"State":"ready","Files":["/a.log"]})");
    bool failed = true;
    EXPECT_TRUE(AskForLogs(failed));
    EXPECT_EQ(data_.export_data_node.file_url_list.front(), Site() + "/a.log");
}

// What a poll says of an answer: the codes of the last error if asking again is pointless.
TEST_F(ServerFiles, PollsGoOnUnlessThatIsPointless)
{
    struct Row
    {
        const char* answer;
        int status;
        bool failed;
        Pair codes;
    };
    const std::vector<Row> rows = {
        {R"({"State":"working"})", 200, false, {0, 0}},
        {R"({"State":"stopped"})", 200, false, {0, 0}},
        {R"({"State":"failed"})", 200, true, {20, 3201}},
        {R"({"State":"else"})", 200, true, {23, 1}},
        {R"({"ErrorModule":24,"ErrorCode":4})", 200, true, {24, 4}},
        {"garbage", 200, true, {23, 1}},
        {"", 200, true, {23, 1}},
        {"{}", 404, true, {21, 404}},
        {"{}", 408, false, {0, 0}},
        {"{}", 429, false, {0, 0}},
        {"{}", 500, false, {0, 0}},
        {"{}", 503, false, {0, 0}},
    };
    for (const Row& row : rows) {
        Answer(row.answer, row.status);
        for (const bool of_report : {false, true}) {
            Zell::Base::Error::SetLastError({});
            bool failed = !row.failed;
            EXPECT_FALSE(of_report ? AskForReport(failed) : AskForLogs(failed)) << row.answer;
            EXPECT_EQ(failed, row.failed) << row.answer << row.status;
            EXPECT_EQ(Codes(Zell::Base::Error::GetLastError()), row.codes) << row.answer << row.status;
        }
    }
}

TEST_F(ServerFiles, ServerThatIsNotThereMayBeAskedAgainAndASiteThatIsUnknownNot)
{
    settings_.sites = {{0, "http://127.0.0.1:1"}};
    ZellClientHost::SetClientSettings(settings_);
    bool failed = true;
    EXPECT_FALSE(AskForLogs(failed));
    EXPECT_FALSE(failed);
    request_.site_id = 99;
    EXPECT_FALSE(AskForLogs(failed));
    EXPECT_TRUE(failed);
    EXPECT_EQ(Codes(Zell::Base::Error::GetLastError()), Pair(23, 4));
}

TEST_F(ServerFiles, ReadyReportNamesItsTwoRequests)
{
    Answer(R"({"State":"ready","Download":{"Method":"GET","Api":"/file","Pattern":2,"PdfPageSize":"A3",
        "PdfPageOrientation":0},"DeleteCache":{"Method":"POST","Api":"/drop","Request":"{}"}})");
    bool failed = true;
    EXPECT_TRUE(AskForReport(failed));
    EXPECT_FALSE(failed);
    EXPECT_EQ(LastAsked().path, "/state");
    EXPECT_EQ(LastAsked().body, R"({"TaskId":"t"})");
    EXPECT_EQ(download_.str_method, "GET");
    EXPECT_EQ(download_.str_quern, Site() + "/file");
    EXPECT_EQ(download_.pattern, 2);
    EXPECT_EQ(download_.pdf_page_size, "A3");
    EXPECT_EQ(download_.pdf_page_orintation, 0);
    EXPECT_EQ(delete_cache_.str_quern, Site() + "/drop");
    EXPECT_EQ(delete_cache_.str_request, "{}");
}

TEST_F(ServerFiles, ReadyReportKeepsTheRequestsThatThePageHasNamed)
{
    download_.str_quern = Site() + "/named/before";
    download_.pdf_page_size = "Letter";
    Answer(R"({"State":"ready"})");
    bool failed = true;
    EXPECT_TRUE(AskForReport(failed));
    EXPECT_EQ(download_.str_quern, Site() + "/named/before");
    EXPECT_EQ(download_.pdf_page_size, "Letter");
}

TEST_F(ServerFiles, ReadyReportThatNobodyCanFetchIsPointless)
{
    Answer(R"({"State":"ready"})");
    bool failed = false;
    EXPECT_FALSE(AskForReport(failed));
    EXPECT_TRUE(failed);
    EXPECT_EQ(Codes(Zell::Base::Error::GetLastError()), Pair(23, 1));
}

TEST_F(ServerFiles, ServerDropsItsCopyUnlessItSaysNo)
{
    query_.str_quern = Site() + "/drop";
    for (const char* answer : {"", "{}", R"({"ErrorModule":0,"ErrorCode":0})"}) {
        Answer(answer);
        EXPECT_TRUE(CmsGetExportFileData::NotifyServerDeleteCacheFile(query_)) << answer;
    }
    EXPECT_EQ(LastAsked().path, "/drop");
    Answer(R"({"ErrorModule":24,"ErrorCode":4})");
    EXPECT_FALSE(CmsGetExportFileData::NotifyServerDeleteCacheFile(query_));
}

TEST_F(ServerFiles, AccountGoesToTheSitesWhateverTheSiteOfTheCall)
{
    settings_.user_name = "user";
    settings_.password = "pass";
    settings_.sites = {{8, Site()}};
    ZellClientHost::SetClientSettings(settings_);
    Answer("{}");
    CmsGetExportFileData::NotifyServerDeleteCacheFile(query_);
    EXPECT_EQ(LastAsked().account, "Basic dXNlcjpwYXNz");
}
