#include "FetchyardBussiness/FileDownload/FileExportParam.h"
#include "FetchyardBussiness/ImageDownload/ImageDownloadTask.h"
#include "support/ContractTest.h"
#include "ZellBase/Error.h"

#include <fstream>
#include <sstream>

namespace contract {
namespace {

using FetchyardBussiness::CImageDownloadTask;
using FetchyardBussiness::ImageItem;
using FetchyardBussiness::ImageParam;
using Zell::Base::Error::ErrorCode;

class ImageTaskTest : public ContractTest
{
protected:
    std::shared_ptr<ImageParam> Pictures(const std::vector<std::string>& addresses) const
    {
        const auto param = std::make_shared<ImageParam>();
        param->SetVal_str_name("a.jpg");
        param->SetVal_str_file_path(Folder());
        for (const std::string& address : addresses) {
            ImageItem item;
            item.image_url = address;
            item.workstation_id = 7;
            param->image_items.push_back(item);
        }
        return param;
    }

    // The trace of the run alone.
    static std::string Run(CImageDownloadTask& task,
                           const std::shared_ptr<ZellTaskKit::CDownloadTaskParam>& param)
    {
        task.SetDownloadTaskParam(param, false);
        fakes::Take();
        task.Exec();
        return Trace();
    }
};

TEST_F(ImageTaskTest, PicturesAreFetchedInOrderIntoTheOneFile)
{
    fakes::TheScript().pictures["two"] = {{}, "bytes of two"};
    CImageDownloadTask task;
    EXPECT_EQ(Run(task, Pictures({"one", "two"})), R"(
state 1 (0,0)
log3 Start download image file.
log3 Start download image file, task name: a.jpg, task guid: task-1, image save path: <tmp>/.
SyncLoadImage type=0 url=one request= cache=0 site=7 person=-1 -> <tmp>/a.jpg
SyncLoadImage type=0 url=two request= cache=0 site=7 person=-1 -> <tmp>/a.jpg
state 4 (0,0)
)");
    std::ostringstream content;
    content << std::ifstream(Folder() + "a.jpg").rdbuf();
    EXPECT_EQ(content.str(), "bytes of two");
}

TEST_F(ImageTaskTest, EveryFieldOfAnItemReachesTheKey)
{
    const auto param = Pictures({"one"});
    ImageItem& item = param->image_items.front();
    item.save_cache = true;
    item.workstation_id = -1;
    item.access_type = 5;
    item.image_type = 17;
    item.person_id = 42;
    CImageDownloadTask task;
    const std::string trace = Run(task, param);
    EXPECT_NE(
        trace.find(
            "\nSyncLoadImage type=17 url=one request= cache=1 site=-1 access=5 person=42 -> <tmp>/a.jpg\n"),
        std::string::npos)
        << trace;
}

TEST_F(ImageTaskTest, LoaderIsMadeWithTheTaskAndServesAllRuns)
{
    CImageDownloadTask task;
    EXPECT_EQ(Trace(), "\nnew CImageMultiSyncLoader\n");
    const auto param = Pictures({"one"});
    Run(task, param);
    const std::string second = Run(task, param);
    EXPECT_EQ(fakes::CountOf("new CImageMultiSyncLoader"), 1);
    EXPECT_NE(second.find("SyncLoadImage"), std::string::npos);
}

TEST_F(ImageTaskTest, SecondPictureThatFailsEndsTheTaskAndTheLoadersErrorStaysInTheLog)
{
    fakes::TheScript().pictures["two"] = {ErrorCode(21, 404), ""};
    CImageDownloadTask task;
    EXPECT_EQ(Run(task, Pictures({"one", "two", "three"})), R"(
state 1 (0,0)
log3 Start download image file.
log3 Start download image file, task name: a.jpg, task guid: task-1, image save path: <tmp>/.
SyncLoadImage type=0 url=one request= cache=0 site=7 person=-1 -> <tmp>/a.jpg
SyncLoadImage type=0 url=two request= cache=0 site=7 person=-1 -> <tmp>/a.jpg
state 5 (0,0)
log5 sync download image failed. first error code: 21, second error code: 404.
)");
    EXPECT_TRUE(Exists("a.jpg"));
}

TEST_F(ImageTaskTest, FailedStateCarriesWhateverLastErrorTheThreadHeld)
{
    fakes::TheScript().pictures["one"] = {ErrorCode(21, 404), ""};
    CImageDownloadTask task;
    Zell::Base::Error::SetLastError(ErrorCode(7, 8));
    const std::string trace = Run(task, Pictures({"one"}));
    EXPECT_NE(trace.find("\nstate 5 (7,8)\n"), std::string::npos) << trace;
}

TEST_F(ImageTaskTest, EmptyListFinishesAtOnce)
{
    CImageDownloadTask task;
    EXPECT_EQ(Run(task, Pictures({})), R"(
state 1 (0,0)
log3 Start download image file.
log3 Start download image file, task name: a.jpg, task guid: task-1, image save path: <tmp>/.
state 4 (0,0)
)");
}

TEST_F(ImageTaskTest, RecordOfAnotherClassFailsWithoutACallOfTheLoader)
{
    const char* const expected = R"(
state 1 (0,0)
log3 Start download image file.
state 5 (0,0)
log5 download image file failed. create ptr failed.·
)";
    CImageDownloadTask task;
    EXPECT_EQ(Run(task, std::make_shared<ZellTaskKit::CDownloadTaskParam>(*Pictures({"one"}))), expected);
    EXPECT_EQ(Run(task, std::make_shared<FetchyardBussiness::FileExportParam>()), expected);
    EXPECT_EQ(Run(task, nullptr), expected);
}

TEST_F(ImageTaskTest, StopAndSuspendReturnFalseAndTheTaskRunsOn)
{
    CImageDownloadTask task;
    fakes::OnCall("SyncLoadImage", 1, [&task] {
        EXPECT_FALSE(task.Stop());
        EXPECT_FALSE(task.Suspend());
    });
    const std::string trace = Run(task, Pictures({"one", "two"}));
    EXPECT_EQ(fakes::CountOf("SyncLoadImage"), 2);
    EXPECT_NE(trace.find("\nstate 4 (0,0)\n"), std::string::npos) << trace;
}

TEST_F(ImageTaskTest, ProgressIsAlwaysZero)
{
    CImageDownloadTask task;
    EXPECT_EQ(task.GetProgress().GetVal_finished_size(), 0U);
    Run(task, Pictures({"one"}));
    EXPECT_EQ(task.GetProgress().GetVal_finished_size(), 0U);
}

TEST_F(ImageTaskTest, SlotsLeftToTheBaseDoNothing)
{
    CImageDownloadTask task;
    EXPECT_FALSE(task.SetCommonData("text"));
    EXPECT_EQ(task.GetCommData(), "");
    EXPECT_TRUE(task.Delete());
    EXPECT_TRUE(task.SetAccountInforToRequest());
}

}  // namespace
}  // namespace contract
