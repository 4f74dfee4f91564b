#include "FetchyardLogical/DownloadTaskManager.h"
#include "FetchyardLogicalHost/EngineHost.h"
#include "ServerCallFixture.h"
#include "ZellPictureLoader/PictureLoader.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

using namespace FetchyardLogical;

namespace {

class PageCall : public ServerCallFixture
{
protected:
    PageCall()
    {
        request_.str_quern = "/api/v1/events/report";
        request_.str_request = R"({"PageIndex":2,"PageSize":10})";
    }

    bool Call() { return CmsGetExportFileData::GetExportFileDataList(data_, request_); }
    std::pair<int, int> Error() const { return {data_.error_code.iFirstCode, data_.error_code.iSecondCode}; }

    // Two sheets, one of page 1, as an earlier call has left them.
    void HaveSheets()
    {
        data_.export_data_node.vec_sheets.resize(2);
        data_.export_data_node.vec_sheets[0].sheet_name = "first";
        data_.export_data_node.vec_sheets[0].page_index = 1;
        data_.export_data_node.vec_sheets[0].vec_rows.resize(3);
        data_.export_data_node.vec_sheets[1].page_index = 4;
        data_.export_data_node.vec_sheets[1].vec_rows.resize(2);
    }

    CmsGetExportFileData data_;
    RequstData request_;
};

constexpr char kPage[] = R"({"ErrorModule":0,"ErrorCode":0,"IsRowColumnData":true,"TotalPageIsFinished":true,
    "Sheets":[{"SheetName":"Alarms","PageIndex":2,"Rows":[["a","b"]]}]})";

}  // namespace

TEST_F(PageCall, AGoodAnswerReplacesThePage)
{
    HaveSheets();
    data_.error_code = {1, 2};
    Answer(kPage);
    ASSERT_TRUE(Call());
    EXPECT_EQ(Error(), std::make_pair(0, 0));
    EXPECT_TRUE(data_.export_data_node.is_rowcolumn_data);
    EXPECT_TRUE(data_.export_data_node.file_total_page_is_finished);
    ASSERT_EQ(data_.export_data_node.vec_sheets.size(), 1u);
    EXPECT_EQ(data_.export_data_node.vec_sheets[0].vec_rows.at(0).at(1).cell_name, "b");
}

TEST_F(PageCall, ThePresetFieldsOfTheNodeStay)
{
    data_.export_data_node.file_name = "report";
    data_.export_data_node.work_station_id = 9;
    data_.export_data_node.export_file_type = 1;
    Answer(kPage);
    ASSERT_TRUE(Call());
    EXPECT_EQ(data_.export_data_node.file_name, "report");
    EXPECT_EQ(data_.export_data_node.work_station_id, 9u);
    EXPECT_EQ(data_.export_data_node.export_file_type, 1);
}

TEST_F(PageCall, WithoutAMethodTheRequestIsPosted)
{
    Answer(kPage);
    ASSERT_TRUE(Call());
    EXPECT_EQ(LastAsked().method, "POST");
    EXPECT_EQ(LastAsked().path, "/api/v1/events/report");
    EXPECT_EQ(LastAsked().body, R"({"PageIndex":2,"PageSize":10})");
    EXPECT_EQ(LastAsked().account, "");
}

TEST_F(PageCall, AMethodGoesOutInUpperCaseAndAPathWithoutSlashGetsOne)
{
    request_.str_method = "Put";
    request_.str_quern = "some/path";
    Answer(kPage);
    ASSERT_TRUE(Call());
    EXPECT_EQ(LastAsked().method, "PUT");
    EXPECT_EQ(LastAsked().path, "/some/path");
}

TEST_F(PageCall, AnAbsoluteAddressIsUsedAsItStands)
{
    request_.site_id = 99;
    request_.str_quern = Site() + "/elsewhere";
    Answer(kPage);
    ASSERT_TRUE(Call());
    EXPECT_EQ(LastAsked().path, "/elsewhere");
}

TEST_F(PageCall, TheAccountGoesToTheClientsSitesOnly)
{
    settings_.user_name = "user";
    settings_.password = "pass";
    settings_.sites[5] = "http://127.0.0.1:1";
    ZellClientHost::SetClientSettings(settings_);
    Answer(kPage);
    ASSERT_TRUE(Call());
    EXPECT_EQ(LastAsked().account, "Basic dXNlcjpwYXNz");
    request_.str_quern = Site() + "/absolute";
    ASSERT_TRUE(Call());
    EXPECT_EQ(LastAsked().account, "Basic dXNlcjpwYXNz");
    request_.site_id = 5;
    ASSERT_TRUE(Call());
    EXPECT_EQ(LastAsked().account, "Basic dXNlcjpwYXNz");
    settings_.sites = {{5, "http://127.0.0.1:1"}};
    ZellClientHost::SetClientSettings(settings_);
    ASSERT_TRUE(Call());
    EXPECT_EQ(LastAsked().account, "");
}

TEST_F(PageCall, AnUnknownSiteEndsWith23And4)
{
    request_.site_id = 77;
    EXPECT_FALSE(Call());
    EXPECT_EQ(Error(), std::make_pair(23, 4));
    request_.site_id = -1;
    EXPECT_FALSE(Call());
    EXPECT_EQ(Error(), std::make_pair(23, 4));
}

TEST_F(PageCall, AStatusOtherThan200EndsWithIt)
{
    Answer(kPage, 500);
    EXPECT_FALSE(Call());
    EXPECT_EQ(Error(), std::make_pair(21, 500));
}

TEST_F(PageCall, TheServersOwnErrorIsPassedOn)
{
    Answer(R"({"ErrorModule":24,"ErrorCode":2})");
    EXPECT_FALSE(Call());
    EXPECT_EQ(Error(), std::make_pair(24, 2));
}

TEST_F(PageCall, GarbageEndsWith23And1)
{
    Answer("<html>");
    EXPECT_FALSE(Call());
    EXPECT_EQ(Error(), std::make_pair(23, 1));
    Answer("");
    EXPECT_FALSE(Call());
    EXPECT_EQ(Error(), std::make_pair(23, 1));
}

TEST_F(PageCall, AServerThatIsDownEndsWithATransportError)
{
    settings_.sites[3] = "http://127.0.0.1:1";
    ZellClientHost::SetClientSettings(settings_);
    request_.site_id = 3;
    EXPECT_FALSE(Call());
    EXPECT_EQ(Error(), std::make_pair(22, 7));
}

TEST_F(PageCall, AFailedLaterPageLeavesSheetsThatStartNothingAnew)
{
    HaveSheets();
    Answer("garbage");
    EXPECT_FALSE(Call());
    const auto& sheets = data_.export_data_node.vec_sheets;
    ASSERT_EQ(sheets.size(), 2u);
    EXPECT_EQ(sheets[0].sheet_name, "first");
    EXPECT_EQ(sheets[0].page_index, 0);
    EXPECT_TRUE(sheets[0].vec_rows.empty());
    EXPECT_EQ(sheets[1].page_index, 4);
    EXPECT_TRUE(sheets[1].vec_rows.empty());
    EXPECT_TRUE(data_.export_data_node.is_rowcolumn_data);
    EXPECT_FALSE(data_.export_data_node.file_total_page_is_finished);
}

TEST_F(PageCall, AFailedFirstPageLeavesNoSheets)
{
    HaveSheets();
    request_.str_request = R"({"PageSize":10,"PageIndex": 1,"Limit":2})";
    Answer("garbage");
    EXPECT_FALSE(Call());
    EXPECT_TRUE(data_.export_data_node.vec_sheets.empty());
}

TEST_F(PageCall, AFailureLeavesTheKindOfThePageAsItWas)
{
    data_.export_data_node.is_rowcolumn_data = false;
    Answer(R"({"IsRowColumnData":true,"TotalPageIsFinished":true,"Sheets":[{}]})");
    EXPECT_FALSE(Call());
    EXPECT_FALSE(data_.export_data_node.is_rowcolumn_data);
}

TEST_F(PageCall, AServerGeneratedReportFillsItsNode)
{
    request_.site_id = 3;
    Answer(R"({"IsRowColumnData":false,"ServerGenerate":{"TaskId":"t","Query":{"Api":"/state"}}})");
    ASSERT_TRUE(Call());
    EXPECT_FALSE(data_.export_data_node.is_rowcolumn_data);
    EXPECT_TRUE(data_.export_data_node.vec_sheets.empty());
    EXPECT_EQ(data_.export_data_node.server_genareate_node.query_request.str_quern, Site() + "/state");
    EXPECT_EQ(data_.export_data_node.server_genareate_node.download_request.str_quern, "");
    EXPECT_EQ(data_.export_data_node.server_genareate_node.query_request.task_id, "t");
    EXPECT_EQ(data_.export_data_node.server_genareate_node.query_request.site_id, 3);
}

TEST_F(PageCall, PicturesOfThePageAreFetchedAhead)
{
    ASSERT_TRUE(ZellPictureLoader::InitZellPictureLoader(""));
    Answer(R"({"TotalPageIsFinished":true,"Sheets":[{"PageIndex":1,"Formats":[{"CellType":2}],
        "Rows":[[{"Text":"/pictures/ahead.jpg","Format":0}]]}]})");
    ASSERT_TRUE(Call());
    EXPECT_TRUE(WaitForPath("/pictures/ahead.jpg"));
    ZellPictureLoader::UninitZellPictureLoader();
}

TEST_F(PageCall, AnOperateActionIsTakenUnlessTheServerSaysNo)
{
    request_.str_request = R"({"OperateType":1,"TaskId":"t"})";
    request_.str_quern = "/operate";
    for (const char* answer : {"", "{}", R"({"ErrorModule":0,"ErrorCode":0})"}) {
        Answer(answer);
        EXPECT_TRUE(CmsGetExportFileData::TakeOperateActionToServer(request_)) << answer;
    }
    EXPECT_EQ(LastAsked().body, R"({"OperateType":1,"TaskId":"t"})");
    for (const char* answer : {"garbage", R"({"ErrorModule":24,"ErrorCode":4})", R"({"ErrorCode":4})"}) {
        Answer(answer);
        EXPECT_FALSE(CmsGetExportFileData::TakeOperateActionToServer(request_)) << answer;
    }
    Answer("{}", 404);
    EXPECT_FALSE(CmsGetExportFileData::TakeOperateActionToServer(request_));
}

TEST_F(PageCall, PagesAreCountedForTheTaskThatAsks)
{
    class PagingTask : public ZellTaskKit::CDownloadTaskBase
    {
    public:
        explicit PagingTask(RequstData request) : request_(std::move(request))
        {
            SetDownloadTaskParam(std::make_shared<ZellTaskKit::CDownloadTaskParam>(), false);
        }
        void Exec() override
        {
            NotifyTaskState(ZellTaskKit::Downloading);
            CmsGetExportFileData data;
            for (int i = 0; i < 3; ++i)
                CmsGetExportFileData::GetExportFileDataList(data, request_);
            request_.site_id = 77;
            CmsGetExportFileData::GetExportFileDataList(data, request_);
            NotifyTaskState(ZellTaskKit::Finished);
        }
        bool Stop() override { return true; }
        ZellTaskKit::CDownloadProgress GetProgress() override { return {}; }
        bool Suspend() override { return true; }

    private:
        RequstData request_;
    };
    Answer(kPage);
    CDownloadTaskManager& manager = CDownloadTaskManager::Instance();
    ASSERT_TRUE(manager.Init());
    ASSERT_TRUE(manager.AddTransferTask({std::make_shared<PagingTask>(request_)}));
    ASSERT_TRUE(WaitUntilIdle(std::chrono::minutes(1)));
    const std::vector<TaskView> tasks = ListTasks();
    ASSERT_EQ(tasks.size(), 1u);
    EXPECT_EQ(tasks[0].pages, 3u);
    EXPECT_TRUE(manager.Unit());
}
