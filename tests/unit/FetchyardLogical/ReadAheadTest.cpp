#include "FetchyardLogical/DownloadTaskManager.h"
#include "FetchyardLogicalHost/EngineHost.h"
#include "Report/NextPage.h"
#include "ServerCallFixture.h"
#include "ZellNetLinkHost/HttpClient.h"
#include "ZellTaskKit/DownloadTaskBase.h"

#include <gtest/gtest.h>

#include <functional>
#include <utility>

using namespace FetchyardLogical;

namespace {

constexpr char kPage[] = R"({"IsRowColumnData":true,"TotalPageIsFinished":false,"Sheets":[{"PageIndex":2}]})";
constexpr char kLast[] = R"({"IsRowColumnData":true,"TotalPageIsFinished":true,"Sheets":[{"PageIndex":2}]})";

std::string Condition(int page)
{
    return R"({"PageIndex":)" + std::to_string(page) + R"(,"PageSize":10})";
}

// A task whose Exec is the test's.
class CallingTask : public ZellTaskKit::CDownloadTaskBase
{
public:
    explicit CallingTask(std::function<void()> work) : work_(std::move(work))
    {
        SetDownloadTaskParam(std::make_shared<ZellTaskKit::CDownloadTaskParam>(), false);
    }
    void Exec() override
    {
        NotifyTaskState(ZellTaskKit::Downloading);
        work_();
        NotifyTaskState(ZellTaskKit::Finished);
    }
    bool Stop() override { return true; }
    ZellTaskKit::CDownloadProgress GetProgress() override { return {}; }
    bool Suspend() override { return true; }

private:
    std::function<void()> work_;
};

class ReadAhead : public ServerCallFixture
{
protected:
    void InATask(const std::function<void()>& work)
    {
        CDownloadTaskManager& manager = CDownloadTaskManager::Instance();
        ASSERT_TRUE(manager.Init());
        ASSERT_TRUE(manager.AddTransferTask({std::make_shared<CallingTask>(work)}));
        ASSERT_TRUE(WaitUntilIdle(std::chrono::minutes(1)));
        ASSERT_TRUE(manager.Unit());
    }

    bool Call(int page, const std::string& api = "/report")
    {
        RequstData request;
        request.str_quern = api;
        request.str_request = Condition(page);
        return CmsGetExportFileData::GetExportFileDataList(data_, request);
    }

    // The pages that the server was asked for, in their order.
    std::vector<long> Pages()
    {
        std::vector<long> pages;
        for (const Asked& asked : AllAsked())
            pages.push_back(details::PageInRequest(asked.body));
        return pages;
    }

    bool WaitForCalls(std::size_t count)
    {
        while (AllAsked().size() < count)
            std::this_thread::yield();
        return true;
    }

    CmsGetExportFileData data_;
};

}  // namespace

TEST_F(ReadAhead, NextPageIsOnItsWayBeforeItIsAskedFor)
{
    Answer(kPage);
    InATask([this] {
        EXPECT_TRUE(Call(1));
        WaitForCalls(2);
        Answer(kLast);
        EXPECT_TRUE(Call(2)) << "the answer that came before";
        EXPECT_FALSE(data_.export_data_node.file_total_page_is_finished);
        EXPECT_TRUE(Call(3));
    });
    EXPECT_EQ(Pages(), (std::vector<long>{1, 2, 3}));
}

TEST_F(ReadAhead, NothingComesBehindTheLastPage)
{
    Answer(kLast);
    InATask([this] { EXPECT_TRUE(Call(7)); });
    EXPECT_EQ(Pages(), (std::vector<long>{7}));
}

TEST_F(ReadAhead, AnotherQuestionIsAskedByItself)
{
    Answer(kPage);
    InATask([this] {
        EXPECT_TRUE(Call(1));
        WaitForCalls(2);
        EXPECT_TRUE(Call(9));
        WaitForCalls(4);
        EXPECT_TRUE(Call(10, "/other"));
        WaitForCalls(6);
    });
    EXPECT_EQ(Pages(), (std::vector<long>{1, 2, 9, 10, 10, 11}));
}

TEST_F(ReadAhead, FailedAnswerThatCameBeforeIsTheAnswerAndIsUsedOnce)
{
    Answer(kPage);
    InATask([this] {
        EXPECT_TRUE(Call(1));
        WaitForCalls(2);
        Answer("garbage");
        EXPECT_TRUE(Call(2));
        WaitForCalls(3);
        Answer(kPage);
        EXPECT_FALSE(Call(3));
        EXPECT_EQ(data_.error_code.iFirstCode, ZellNetLink::kModuleAnswer);
        EXPECT_TRUE(Call(3));
    });
}

// A run that ends leaves nothing to the next one of its thread.
TEST_F(ReadAhead, RunThatEndsDropsWhatIsOnItsWay)
{
    Answer(kPage);
    InATask([this] {
        EXPECT_TRUE(Call(1));
        WaitForCalls(2);
    });
    Answer(kLast);
    InATask([this] {
        EXPECT_TRUE(Call(2));
        EXPECT_TRUE(data_.export_data_node.file_total_page_is_finished) << "asked anew";
    });
    EXPECT_EQ(Pages(), (std::vector<long>{1, 2, 2}));
}

TEST_F(ReadAhead, CallOutsideATaskFetchesNothingAhead)
{
    Answer(kPage);
    EXPECT_TRUE(Call(1));
    EXPECT_TRUE(Call(2));
    EXPECT_EQ(Pages(), (std::vector<long>{1, 2}));
}

TEST_F(ReadAhead, RequestWithoutAPageBehindGetsNone)
{
    Answer(kPage);
    InATask([this] {
        RequstData request;
        request.str_quern = "/report";
        for (const char* text :
             {R"({"PageSize":10})", R"({"PageIndex":3})", R"({"PageIndex":"x","a":1})", ""}) {
            request.str_request = text;
            EXPECT_TRUE(CmsGetExportFileData::GetExportFileDataList(data_, request));
        }
    });
    EXPECT_EQ(AllAsked().size(), 4u);
}

TEST(NextPage, IsWorkedOutAsTheTaskDoes)
{
    using details::RequestOfNextPage;
    EXPECT_EQ(RequestOfNextPage(R"({"PageIndex":1,"PageSize":2})"), R"({"PageIndex":2,"PageSize":2})");
    EXPECT_EQ(RequestOfNextPage(R"({"a":"\"PageIndex\":5","PageIndex": 9 ,"b":1})"),
              R"({"a":"\"PageIndex\":5","PageIndex":10,"b":1})");
    EXPECT_EQ(RequestOfNextPage(R"({"PageIndex":2147483646,"b":1})"), R"({"PageIndex":2147483647,"b":1})");
    for (const char* text :
         {R"({"PageIndex":2147483647,"b":1})", R"({"PageIndex":0,"b":1})", R"({"PageIndex":-1,"b":1})",
          R"({"PageIndex":1})", R"({"pageIndex":1,"b":1})", R"({"PageIndex":99999999999999999999,"b":1})"})
        EXPECT_EQ(RequestOfNextPage(text), "") << text;
}
