#include "support/ExportTest.h"
#include "ZellBase/Error.h"

namespace contract {
namespace {

using FetchyardBussiness::ShortVideoEntry;
using Zell::Base::Error::ErrorCode;

// The phase that fetches the stored objects of an export, behind its pictures and videos.
class StoredObjectsTest : public ExportTest
{
protected:
    StoredObjectsTest() { Settings().str_request_api = ""; }

    void AddObject(const std::string& name, int kind, int place = 1)
    {
        ShortVideoEntry entry;
        entry.clip.file_name = name;
        entry.clip.save_path = Folder() + "Alarm/";
        entry.clip.str_shortvideo_url = "/o/" + name;
        entry.clip.EnumUpLoadType = kind;
        entry.clip.EnumStoragePlace = place;
        Settings().vec_short_video.push_back(entry);
    }

    std::string Marks()
    {
        std::string marks;
        for (const ShortVideoEntry& entry : Settings().vec_short_video)
            marks += entry.is_has_download ? '+' : '-';
        return marks;
    }

    // The trace from the second look at the last error up to the pages.
    std::string Phase()
    {
        const std::string trace = Run();
        const std::size_t begin = trace.find("log3 DownloadPictures code_now2");
        return "\n" + trace.substr(begin, trace.find("log3 ptr_determinant_control_param->vs") - begin);
    }

    void MakeEvidence() { record_->str_evidence_param = R"({"Case":7})"; }
};

TEST_F(StoredObjectsTest, EachKindHasItsCall)
{
    AddObject("a.jpg", 0, 0);
    AddObject("b.mp4", 1, 1);
    AddObject("c.jpg", 2, -1);
    EXPECT_EQ(Phase(), R"(
log3 DownloadPictures code_now2 iFirstCode = 0  iSecondCode = 0
DownloadFileByPic /o/a.jpg <tmp>/Alarm/a.jpg 0
DownloadFile /o/b.mp4 <tmp>/Alarm/b.mp4 1
DownloadFileByPicInOXT /o/c.jpg <tmp>/Alarm/c.jpg
SetDownloadTaskParam
)");
    EXPECT_EQ(Marks(), "+++");
}

TEST_F(StoredObjectsTest, UnknownKindIsNeitherFetchedNorMarked)
{
    AddObject("a", 3);
    AddObject("b", -1);
    AddObject("c.mp4", 1);
    const std::string trace = Run();
    EXPECT_EQ(Lines(trace, "Download"), "\nDownloadFile /o/c.mp4 <tmp>/Alarm/c.mp4 1\n");
    EXPECT_EQ(Marks(), "--+");
    EXPECT_EQ(States(trace), "1 4 (0,0)");
}

TEST_F(StoredObjectsTest, SecondRunFetchesWhatIsMissing)
{
    AddObject("a.mp4", 1);
    AddObject("b.mp4", 1);
    fakes::FailCalls("DownloadFile", 2, 1);
    EXPECT_EQ(States(Run()), "1 5 5 (20,3605)");
    EXPECT_EQ(Marks(), "+-");
    const std::string trace = Run();
    EXPECT_EQ(Lines(trace, "DownloadFile"), "\nDownloadFile /o/b.mp4 <tmp>/Alarm/b.mp4 1\n");
    EXPECT_EQ(Marks(), "++");
    EXPECT_EQ(States(trace), "1 4 (0,0)");
}

TEST_F(StoredObjectsTest, NoObjectsSaveNothing)
{
    EXPECT_EQ(Phase(), "\nlog3 DownloadPictures code_now2 iFirstCode = 0  iSecondCode = 0\n");
}

struct KindRow
{
    int kind;
    const char* call;
    const char* failure;  // the lines from the failed call to the end of the run
};

// The failed object ends the export, told twice, and the record is not saved.
TEST_F(StoredObjectsTest, FailureEndsTheExportByItsKind)
{
    const std::vector<KindRow> rows = {
        {0, "DownloadFileByPic", R"(
DownloadFileByPic /o/x <tmp>/Alarm/x 1 -> fails
log5 download pic object iter_param.str_shortvideo_url = /o/x, iter_param.EnumStoragePlace = 1
log5 CDeterminantWriteFileTask::Exec()  PIC_OXT download filed
SetLastError (20,2330)
state 5 (20,2330)
state 5 (20,2330)
log5 DownloadPictures failed·
)"},
        {1, "DownloadFile", R"(
DownloadFile /o/x <tmp>/Alarm/x 1 -> fails
log5 download file object iter_param.str_shortvideo_url = /o/x, iter_param.EnumStoragePlace = 1
log5 CDeterminantWriteFileTask::Exec()  video download filed
SetLastError (20,3605)
state 5 (20,3605)
state 5 (20,3605)
log5 DownloadPictures failed·
)"},
        {2, "DownloadFileByPicInOXT", R"(
DownloadFileByPicInOXT /o/x <tmp>/Alarm/x -> fails
log5 download PIC_OXT object iter_param.str_shortvideo_url = /o/x, iter_param.EnumStoragePlace = 1
log5 CDeterminantWriteFileTask::Exec()  PIC_OXT download filed
state 5 (0,0)
state 5 (0,0)
log5 DownloadPictures failed·
)"},
    };
    for (const KindRow& row : rows) {
        Settings().vec_short_video.clear();
        AddObject("x", row.kind);
        AddObject("never", 1);
        fakes::FailCalls(row.call, fakes::CountOf(row.call) + 1, 1);
        const std::string trace = Run();
        EXPECT_EQ("\n" + trace.substr(trace.find(row.call)), row.failure);
        EXPECT_EQ(Marks(), "--");
    }
}

TEST_F(StoredObjectsTest, FailureOfAnEvidenceExportIsToldTwiceAsEleven)
{
    MakeEvidence();
    AddObject("x", 1);
    fakes::FailCalls("DownloadFile", 1, 1);
    EXPECT_EQ(States(Run()), "7 11 11 (20,3605)");
}

TEST_F(StoredObjectsTest, FailuresAreCollectedAndTheOthersArrive)
{
    Settings().is_continue_dowinloading = true;
    AddObject("b.jpg", 0);
    AddObject("a.mp4", 1);
    AddObject("c.mp4", 1);
    fakes::FailCalls("DownloadFileByPic", 1, 1);
    fakes::FailCalls("DownloadFile", 1, 1);
    const std::string phase = Phase();
    EXPECT_EQ(phase, R"(
log3 DownloadPictures code_now2 iFirstCode = 0  iSecondCode = 0
DownloadFileByPic /o/b.jpg <tmp>/Alarm/b.jpg 1 -> fails
log5 download pic object iter_param.str_shortvideo_url = /o/b.jpg, iter_param.EnumStoragePlace = 1
GetErrorInfoByCode 20/2330
SetErrorParamState true
SetErrorParam ArrayList[1]/ErrorReason=text of 20/2330; ArrayList[1]/FileName=b.jpg
SetDownloadTaskParam
DownloadFile /o/a.mp4 <tmp>/Alarm/a.mp4 1 -> fails
log5 download file object iter_param.str_shortvideo_url = /o/a.mp4, iter_param.EnumStoragePlace = 1
GetErrorInfoByCode 20/3605
SetErrorParamState true
SetErrorParam ArrayList[1]/ErrorReason=/o/a.mp4 text of 20/3605; ArrayList[1]/FileName=a.mp4; ArrayList[2]/ErrorReason=text of 20/2330; ArrayList[2]/FileName=b.jpg
SetDownloadTaskParam
DownloadFile /o/c.mp4 <tmp>/Alarm/c.mp4 1
SetDownloadTaskParam
)");
    EXPECT_EQ(Marks(), "--+");
}

TEST_F(StoredObjectsTest, CollectedFailuresEndInFiveWithTheirCode)
{
    Settings().is_continue_dowinloading = true;
    AddObject("b.jpg", 0);
    fakes::FailCalls("DownloadFileByPic", 1, -1);
    EXPECT_EQ(States(Run()), "1 5 (20,2330)");
    AddObject("c.jpg", 0);
    EXPECT_EQ(States(Run()), "1 5 (20,3605)");
}

// Its reason is the thread's last error, and it leaves no code: the end takes the common one.
TEST_F(StoredObjectsTest, LocalStoragePictureLeavesAReasonAndNoCode)
{
    Settings().is_continue_dowinloading = true;
    AddObject("c.jpg", 2);
    fakes::FailCalls("DownloadFileByPicInOXT", 1, 1);
    fakes::OnCall("DownloadFileByPicInOXT", 1, [] { Zell::Base::Error::SetLastError(ErrorCode(21, 404)); });
    const std::string trace = Run();
    EXPECT_NE(trace.find("\nGetErrorInfoByCode 21/404\n"), std::string::npos);
    EXPECT_EQ(task_->GetCommData(), R"({"ArrayList":[{"FileName":"c.jpg","ErrorReason":"text of 21/404"}]})");
    EXPECT_EQ(States(trace), "1 5 (20,3605)");
}

TEST_F(StoredObjectsTest, SecondFailureOfANameKeepsTheFirstReason)
{
    Settings().is_continue_dowinloading = true;
    AddObject("x", 0);
    AddObject("x", 1);
    fakes::FailCalls("DownloadFileByPic", 1, 1);
    fakes::FailCalls("DownloadFile", 1, 1);
    Run();
    EXPECT_EQ(task_->GetCommData(), R"({"ArrayList":[{"FileName":"x","ErrorReason":"text of 20/2330"}]})");
}

TEST_F(StoredObjectsTest, StopAloneEndsTheLoopAndTheRecordIsSaved)
{
    AddObject("a.mp4", 1);
    AddObject("b.mp4", 1);
    fakes::OnCall("DownloadFile", 1, [this] { task_->Stop(); });
    const std::string trace = Run();
    const std::size_t call = trace.find("DownloadFile /o/a");
    EXPECT_EQ("\n" + trace.substr(call, trace.find("log3 ptr_determinant_control_param->vs") - call), R"(
DownloadFile /o/a.mp4 <tmp>/Alarm/a.mp4 1
log3 CDeterminantWriteFileTask::Exec() start to stop task.
log3 finish stop task.
log3 download object b_stop_ = 1, b_delete_ = 0
SetDownloadTaskParam
)");
    EXPECT_EQ(Marks(), "+-");
    EXPECT_EQ(States(trace), "1 6 (0,0)");
}

TEST_F(StoredObjectsTest, DeleteAloneEndsTheLoop)
{
    AddObject("a.mp4", 1);
    AddObject("b.mp4", 1);
    fakes::OnCall("DownloadFile", 1, [this] { task_->Delete(); });
    const std::string trace = Run();
    EXPECT_EQ(Lines(trace, "log3 download object"), "\nlog3 download object b_stop_ = 0, b_delete_ = 1\n");
    EXPECT_EQ(States(trace), "1 200 (0,0)");
}

// A flag that is up before the phase leaves it out, and the record is not saved.
TEST_F(StoredObjectsTest, StopBeforeThePhaseLeavesItOut)
{
    AddObject("a.mp4", 1);
    fakes::OnCall("DirectoryExists", 1, [this] { task_->Stop(); });
    EXPECT_EQ(Phase(), "\nlog3 DownloadPictures code_now2 iFirstCode = 0  iSecondCode = 0\n");
    EXPECT_EQ(Marks(), "-");
}

// Objects that are done are passed over in front of the look at the flags.
TEST_F(StoredObjectsTest, DoneObjectsAreWalkedThroughWhateverTheFlags)
{
    AddObject("a.mp4", 1);
    AddObject("b.mp4", 1);
    Settings().vec_short_video[1].is_has_download = true;
    fakes::OnCall("DownloadFile", 1, [this] { task_->Stop(); });
    const std::string trace = Run();
    EXPECT_EQ(Lines(trace, "log3 download object"), "\n");
    EXPECT_EQ(Marks(), "++");
}

TEST_F(StoredObjectsTest, PhaseWithoutARecordIsFalse)
{
    const auto task = std::make_shared<FetchyardBussiness::CDeterminantWriteFileTask>();
    fakes::Take();
    EXPECT_FALSE(task->DownloadAllTypeVideo());
    EXPECT_EQ(Trace(), "\nlog5 DownloadAllTypeVideo ptr_determinant_control_param is null!\n");
}

}  // namespace
}  // namespace contract
