#include "fakes/FetchyardLogical/FakeEngine.h"
#include "fakes/ZellBase/FakeMessageLoop.h"
#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "FetchyardBussiness/ImageDownload/ImageDownloadTask.h"
#include "support/ContractTest.h"

#include <memory>
#include <string>
#include <vector>

namespace contract {
namespace {

using FetchyardBussiness::CDeterminantWriteFileTask;
using FetchyardBussiness::CDownloadBussinessManager;
using FetchyardBussiness::CDownloadBussinessManagerObserver;
using FetchyardBussiness::DeterminantDownloadParam;
using FetchyardBussiness::VideoDownloadEntry;
using Zell::Base::Error::ErrorCode;
using Zell::MultimediaComm::InfoOverlay;
using ZellTaskKit::CTaskCallbackParam;
using ZellTaskKit::DownloadState;

CDownloadBussinessManager& Manager()
{
    return CDownloadBussinessManager::Instance();
}

class StateKeeper final : public CDownloadBussinessManagerObserver
{
public:
    void UpdateDownloadBussinessManagerState(const Param& param) override
    {
        states.push_back(param.task_guid + " " + std::to_string(param.state) + " (" +
                         std::to_string(param.error_code.iFirstCode) + "," +
                         std::to_string(param.error_code.iSecondCode) + ")");
    }

    std::vector<std::string> states;
};

class ManagerTest : public ContractTest
{
protected:
    // Hands one small export over and returns the limit that was set on the way.
    std::string LimitAtHandOff()
    {
        std::vector<std::string> guids;
        EXPECT_TRUE(
            Manager().AddDownloadCommTask(guids, {InFolder(R"({"FileExportRequest":{"FileExportType":0,
            "RequestData":{"WriteFileCondition":{"SaveFilePathDir":"<tmp>/","ExportFileName":"A"}}}})")}));
        std::string limit;
        for (const std::string& line : fakes::Take()) {
            if (line.rfind("SetMaxParallelDownloadNum", 0) == 0)
                limit += line;
        }
        return limit;
    }

    static std::shared_ptr<CDeterminantWriteFileTask> ExportWithVideo(
        const std::shared_ptr<InfoOverlay>& overlay)
    {
        const auto param = std::make_shared<DeterminantDownloadParam>();
        VideoDownloadEntry entry;
        entry.video.ptr_info_overlay = overlay;
        param->vs_file_param_.vec_video_download.push_back(entry);
        auto task = std::make_shared<CDeterminantWriteFileTask>();
        task->SetDownloadTaskParam(param, false);
        return task;
    }

    static std::shared_ptr<InfoOverlay> Overlay(int type)
    {
        auto overlay = std::make_shared<InfoOverlay>();
        overlay->SetInfoOverlayType(type);
        return overlay;
    }

    static void PutIntoEngine(const std::shared_ptr<ZellTaskKit::CDownloadTaskBase>& task)
    {
        auto& tasks = fakes::TheScript().engine_tasks;
        tasks[static_cast<unsigned int>(tasks.size()) + 1] = task;
    }
};

TEST_F(ManagerTest, InitStartsTheEngineThenThePictureLoaderTwice)
{
    EXPECT_TRUE(Manager().Init());
    EXPECT_EQ(Trace(), R"(
engine Init
SetTransCallback
InitZellPictureLoader ""
InitZellPictureLoader ""
)");
    Manager().Unit();
}

TEST_F(ManagerTest, InitRegistersWithTheEngineBeforeThePictureLoaderStarts)
{
    fakes::OnCall("InitZellPictureLoader", 1,
                  [] { fakes::ReportFromEngine({CTaskCallbackParam("a", ZellTaskKit::Downloading, {})}); });
    Manager().Init();
    EXPECT_EQ(fakes::CountOf("PostTask"), 1);
    fakes::TakePosted();
    Manager().Unit();
}

TEST_F(ManagerTest, InitOfAnEngineThatCannotStartSetsNothingUp)
{
    fakes::FailCalls("engine Init", 1, 1);
    EXPECT_FALSE(Manager().Init());
    EXPECT_EQ(Trace(), "\nengine Init -> fails\n");
    fakes::ReportFromEngine({CTaskCallbackParam("a", ZellTaskKit::Downloading, {})});
    EXPECT_EQ(Trace(), "\n");
}

TEST_F(ManagerTest, SecondInitRunsAllStepsAgain)
{
    Manager().Init();
    Manager().Init();
    EXPECT_EQ(fakes::CountOf("engine Init"), 2);
    EXPECT_EQ(fakes::CountOf("InitZellPictureLoader"), 4);
    fakes::ReportFromEngine({CTaskCallbackParam("a", ZellTaskKit::Downloading, {})});
    EXPECT_EQ(fakes::CountOf("PostTask"), 2);
    fakes::TakePosted();
    Manager().Unit();
    Manager().Unit();
}

TEST_F(ManagerTest, UnitStopsTheEngineThenThePictureLoaderTwice)
{
    Manager().Init();
    fakes::Take();
    EXPECT_TRUE(Manager().Unit());
    EXPECT_EQ(Trace(), R"(
engine Unit
UninitZellPictureLoader
UninitZellPictureLoader
)");
    fakes::ReportFromEngine({CTaskCallbackParam("a", ZellTaskKit::Downloading, {})});
    EXPECT_EQ(Trace(), "\n");
}

TEST_F(ManagerTest, UnitTakesLeaveOfTheEngineBeforeThePictureLoaderGoes)
{
    Manager().Init();
    fakes::OnCall("UninitZellPictureLoader", 1,
                  [] { fakes::ReportFromEngine({CTaskCallbackParam("a", ZellTaskKit::Downloading, {})}); });
    EXPECT_TRUE(Manager().Unit());
    EXPECT_EQ(fakes::CountOf("UninitZellPictureLoader"), 2);
    EXPECT_EQ(fakes::CountOf("PostTask"), 0);
}

TEST_F(ManagerTest, UnitOfAnEngineThatCannotStopLeavesEverythingUp)
{
    Manager().Init();
    fakes::Take();
    fakes::FailCalls("engine Unit", 1, 1);
    EXPECT_FALSE(Manager().Unit());
    EXPECT_EQ(Trace(), "\nengine Unit -> fails\n");
    fakes::ReportFromEngine({CTaskCallbackParam("a", ZellTaskKit::Downloading, {})});
    EXPECT_EQ(fakes::CountOf("PostTask"), 1);
    fakes::TakePosted();
    Manager().Unit();
}

TEST_F(ManagerTest, HandOffIntoAnEmptyEngineSetsTheLimitToFive)
{
    EXPECT_EQ(LimitAtHandOff(), "SetMaxParallelDownloadNum 5");
}

TEST_F(ManagerTest, HandOffAsksTheEngineThenSetsTheLimitThenAddsTheBatch)
{
    std::vector<std::string> guids;
    Manager().AddDownloadCommTask(guids, {InFolder(R"({"FileExportRequest":{"FileExportType":0,
        "RequestData":{"WriteFileCondition":{"SaveFilePathDir":"<tmp>/","ExportFileName":"A"}}}})")});
    std::vector<std::string> lines = fakes::Take();
    ASSERT_GE(lines.size(), 3U);
    lines.erase(lines.begin(), lines.end() - 3);
    EXPECT_EQ(lines, (std::vector<std::string>{"GetAllTask", "SetMaxParallelDownloadNum 5",
                                               "AddTransferTask task-1"}));
    EXPECT_EQ(guids, std::vector<std::string>{"task-1"});
}

TEST_F(ManagerTest, HandOffThatTheEngineRefusesIsFalseAndKeepsTheGuid)
{
    fakes::FailCalls("AddTransferTask", 1, 1);
    std::vector<std::string> guids;
    EXPECT_FALSE(Manager().AddDownloadCommTask(guids, {InFolder(R"({"FileExportRequest":{"FileExportType":0,
        "RequestData":{"WriteFileCondition":{"SaveFilePathDir":"<tmp>/","ExportFileName":"A"}}}})")}));
    EXPECT_EQ(guids, std::vector<std::string>{"task-1"});
}

TEST_F(ManagerTest, UnfinishedExportWithOverlayTypeZeroSetsTheLimitToOne)
{
    PutIntoEngine(ExportWithVideo(Overlay(0)));
    EXPECT_EQ(LimitAtHandOff(), "SetMaxParallelDownloadNum 1");
}

TEST_F(ManagerTest, OverlayTypeMinusOneLeavesTheLimitAtFive)
{
    PutIntoEngine(ExportWithVideo(Overlay(-1)));
    EXPECT_EQ(LimitAtHandOff(), "SetMaxParallelDownloadNum 5");
}

TEST_F(ManagerTest, VideoWithoutOverlayLeavesTheLimitAtFive)
{
    PutIntoEngine(ExportWithVideo(nullptr));
    EXPECT_EQ(LimitAtHandOff(), "SetMaxParallelDownloadNum 5");
}

TEST_F(ManagerTest, OverlayOnALaterEntryOfALaterTaskIsFound)
{
    PutIntoEngine(std::make_shared<FetchyardBussiness::CImageDownloadTask>());
    PutIntoEngine(ExportWithVideo(nullptr));
    const auto task = ExportWithVideo(Overlay(-1));
    VideoDownloadEntry entry;
    entry.video.ptr_info_overlay = Overlay(3);
    task->GetDownloadTaskParam<DeterminantDownloadParam>()->vs_file_param_.vec_video_download.push_back(
        entry);
    PutIntoEngine(task);
    EXPECT_EQ(LimitAtHandOff(), "SetMaxParallelDownloadNum 1");
}

TEST_F(ManagerTest, ExportWithoutARecordLeavesTheLimitAtFive)
{
    PutIntoEngine(std::make_shared<CDeterminantWriteFileTask>());
    EXPECT_EQ(LimitAtHandOff(), "SetMaxParallelDownloadNum 5");
}

TEST_F(ManagerTest, OnlyStatesFourFiveAndSixLiftTheLimitOfAnOverlayExport)
{
    const std::vector<std::pair<int, std::string>> rows = {{1, "1"},  {4, "5"},  {5, "5"},  {6, "5"},
                                                           {7, "1"},  {10, "1"}, {11, "1"}, {12, "1"},
                                                           {13, "1"}, {200, "1"}};
    for (const auto& [state, limit] : rows) {
        const auto task = ExportWithVideo(Overlay(0));
        task->NotifyTaskState(static_cast<DownloadState>(state));
        fakes::TheScript().engine_tasks = {{1, task}};
        EXPECT_EQ(LimitAtHandOff(), "SetMaxParallelDownloadNum " + limit) << "state " << state;
    }
}

TEST_F(ManagerTest, OverlayOfTheBatchItselfCountsOnlyAtTheNextHandOff)
{
    std::vector<std::string> guids;
    Manager().AddDownloadCommTask(guids, {InFolder(R"({"FileExportRequest":{"FileExportType":0,"RequestData":{
        "WriteFileCondition":{"SaveFilePathDir":"<tmp>/","ExportFileName":"A"},
        "DownloadFiles":{"VideoDownload":[{"InfoOverlay":{"OverlayType":0}}]}}}})")});
    EXPECT_NE(Trace().find("SetMaxParallelDownloadNum 5"), std::string::npos);
    PutIntoEngine(fakes::TheScript().handed_over.at(0));
    EXPECT_EQ(LimitAtHandOff(), "SetMaxParallelDownloadNum 1");
}

TEST_F(ManagerTest, SensitiveTextIsPassedOnToTheEngine)
{
    EXPECT_TRUE(Manager().SetSensitiveInfoToTask("account"));
    fakes::FailCalls("SetSensitiveInfoToTask", 2, 1);
    EXPECT_FALSE(Manager().SetSensitiveInfoToTask("other"));
    EXPECT_EQ(Trace(), R"(
SetSensitiveInfoToTask account
SetSensitiveInfoToTask other -> fails
)");
}

TEST_F(ManagerTest, ErrorZeroTwoHundredTenHasTheTextOfCode3606)
{
    Manager().Init();
    EXPECT_EQ(fakes::TextFromCallback(ErrorCode(0, 210)), "text of 20/3606");
    EXPECT_EQ(fakes::TextFromCallback(ErrorCode(1, 210)), "text of 1/210");
    EXPECT_EQ(fakes::TextFromCallback(ErrorCode(0, 211)), "text of 0/211");
    EXPECT_EQ(fakes::TextFromCallback(ErrorCode(2, 20, 3219)), "text of 20/3219");
    Manager().Unit();
}

TEST_F(ManagerTest, ReportsReachObserversOnTheLoopInOrderAndUnchanged)
{
    StateKeeper keeper;
    Manager().Init();
    EXPECT_TRUE(Manager().RegisterObserver(&keeper));
    fakes::ReportFromEngine({CTaskCallbackParam("a", ZellTaskKit::Downloading, {}),
                             CTaskCallbackParam("b", ZellTaskKit::Failed, ErrorCode(2, 20, 3215)),
                             CTaskCallbackParam("a", ZellTaskKit::Deleted, ErrorCode(0, 210))});
    EXPECT_TRUE(keeper.states.empty());
    fakes::RunPosted();
    EXPECT_EQ(keeper.states, (std::vector<std::string>{"a 1 (0,0)", "b 5 (20,3215)", "a 200 (0,210)"}));
    Manager().SyncUnregisterObserver(&keeper);
    Manager().Unit();
}

TEST_F(ManagerTest, ObserverRegisteredTwiceIsToldTwiceUntilOneEntryGoes)
{
    StateKeeper keeper;
    Manager().RegisterObserver(&keeper);
    Manager().RegisterObserver(&keeper);
    Manager().NotifyObserversEIT({"a", ZellTaskKit::Finished, {}});
    EXPECT_EQ(keeper.states.size(), 2U);
    EXPECT_TRUE(Manager().AsyncUnregisterObserver(&keeper));
    Manager().NotifyObserversEIT({"b", ZellTaskKit::Finished, {}});
    EXPECT_EQ(keeper.states.size(), 3U);
    EXPECT_TRUE(Manager().SyncUnregisterObserver(&keeper));
    Manager().NotifyObserversEIT({"c", ZellTaskKit::Finished, {}});
    EXPECT_EQ(keeper.states.size(), 3U);
}

TEST_F(ManagerTest, ObserversAreToldInTheOrderOfTheirRegistration)
{
    struct Numbered final : CDownloadBussinessManagerObserver
    {
        Numbered(std::string& order, char letter) : order_(order), letter_(letter) {}
        void UpdateDownloadBussinessManagerState(const Param&) override { order_ += letter_; }
        std::string& order_;
        char letter_;
    };
    std::string order;
    Numbered first(order, '1');
    Numbered second(order, '2');
    Numbered third(order, '3');
    for (Numbered* observer : {&first, &second, &third})
        Manager().RegisterObserver(observer);
    Manager().NotifyObserversEIT({"a", ZellTaskKit::Finished, {}});
    Manager().SyncUnregisterObserver(&second);
    Manager().NotifyObserversEIT({"a", ZellTaskKit::Finished, {}});
    EXPECT_EQ(order, "12313");
    Manager().SyncUnregisterObserver(&first);
    Manager().SyncUnregisterObserver(&third);
}

TEST_F(ManagerTest, NullObserversAreRefusedByTheTwoOperationsThatLook)
{
    EXPECT_FALSE(Manager().RegisterObserver(nullptr));
    EXPECT_FALSE(Manager().AsyncUnregisterObserver(nullptr));
    EXPECT_TRUE(Manager().SyncUnregisterObserver(nullptr));
}

TEST_F(ManagerTest, UnknownObserverIsUnregisteredWithoutComplaint)
{
    StateKeeper keeper;
    EXPECT_TRUE(Manager().AsyncUnregisterObserver(&keeper));
    EXPECT_TRUE(Manager().SyncUnregisterObserver(&keeper));
}

TEST_F(ManagerTest, CancelledCallReachesNobody)
{
    StateKeeper keeper;
    Manager().RegisterObserver(&keeper);
    Manager().UpdateDownloadTaskManagerState({CTaskCallbackParam("a", ZellTaskKit::Finished, {})});
    const auto posted = fakes::TakePosted();
    ASSERT_EQ(posted.size(), 1U);
    auto* call = dynamic_cast<Zell::Base::CCancelableTask*>(posted.front().get());
    ASSERT_NE(call, nullptr);
    call->Cancel();
    call->Exec();
    EXPECT_TRUE(keeper.states.empty());
    Manager().SyncUnregisterObserver(&keeper);
}

TEST_F(ManagerTest, CallWhoseFactoryIsGoneReachesNobody)
{
    struct Subject
    {
        Subject() : factory(this) {}
        void Take(const int& value) { seen += value; }
        int seen = 0;
        Zell::Base::CScopedRunnableMethodFactory<Subject> factory;
    };
    auto subject = std::make_unique<Subject>();
    const std::unique_ptr<Zell::Base::CTask> before(subject->factory.NewRunnableMethod(&Subject::Take, 1));
    const std::unique_ptr<Zell::Base::CTask> after(subject->factory.NewRunnableMethod(&Subject::Take, 2));
    before->Exec();
    EXPECT_EQ(subject->seen, 1);
    subject.reset();
    after->Exec();
}

}  // namespace
}  // namespace contract
