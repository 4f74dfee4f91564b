#include "support/PersonTest.h"
#include "ZellBase/Error.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <utility>

namespace contract {
namespace {

namespace fs = std::filesystem;

class PersonTaskTest : public PersonTest
{
protected:
    void TwoPages()
    {
        AddPage({"a", "b"}, false);
        AddPage({"c"}, true);
        ArchiverWorks();
    }

    std::string Text(const std::string& path_in_folder) const
    {
        std::ifstream file(Folder() + path_in_folder, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    // What the folder of the pictures holds when the archiver comes.
    void LookAtTheArchivedFolder(std::map<std::string, std::string>& files) const
    {
        fakes::OnCall("LaunchApp", 1, [this, &files] {
            for (const auto& entry : fs::directory_iterator(Folder() + "save/guid-1"))
                files[entry.path().filename().string()] =
                    Text("save/guid-1/" + entry.path().filename().string());
        });
    }

    static void FailPage(int module, int code, const std::string& count, const std::string& type)
    {
        fakes::PersonPageAnswer page;
        page.ok = false;
        page.error = {module, code};
        page.remaining_login_count = count;
        page.remaining_login_type = type;
        fakes::TheScript().person_pages.push_back(page);
    }

    static void EvidenceAnswers(int module, int code)
    {
        fakes::TheScript().evidence_answer = R"({"Response":{"ErrorModule":)" + std::to_string(module) +
                                             R"(,"ErrorCode":)" + std::to_string(code) + "}}";
    }

    void MakeEvidence() { record_->str_evidence_param = R"({"Case":7})"; }
};

TEST_F(PersonTaskTest, WholeExportMakesTheseCallsAndLines)
{
    TwoPages();
    EXPECT_EQ(Run(), R"(
state 1 (0,0)
log3 Start export.
DirectoryExists <tmp>/Persons/
log3 Start export , file name: Persons, file guid: task-1, file save path: <tmp>/Persons/.
GetClientConfig 2
DirectoryExists <tmp>/save/guid-1/ -> missing
MakeFullDir <tmp>/save/guid-1/
new CImageMultiSyncLoader
log3  begin Start export.
GetExportPicDataList POST /persons {"PageIndex":1,"PageSize":2}
log3 CDownloadPersonPicTask::Exec()GetExportFileDataList, file name: Persons, file guid: task-1, file save path: <tmp>/Persons/.
log3 CDownloadPersonPicTask::Exec()  is_all_finished = 0
log3 Start image download :sync_load_param.save_full_name =  <tmp>/save/guid-1/a.jpeg
SyncLoadImage type=1 url=/pictures/a.jpg request=/pictures/a.jpg cache=1 site=0 -> <tmp>/save/guid-1/a.jpeg
log3 Start image download :sync_load_param.save_full_name =  <tmp>/save/guid-1/b.jpeg
SyncLoadImage type=1 url=/pictures/b.jpg request=/pictures/b.jpg cache=1 site=0 -> <tmp>/save/guid-1/b.jpeg
log3 CDownloadPersonPicTask::Exec()  ptr_person_control_param->vs_file_param_.file_current_page = 1
GetExportPicDataList POST /persons {"PageIndex":2,"PageSize":2}
log3 CDownloadPersonPicTask::Exec()GetExportFileDataList, file name: Persons, file guid: task-1, file save path: <tmp>/Persons/.
log3 CDownloadPersonPicTask::Exec()  is_all_finished = 0
log3 Start image download :sync_load_param.save_full_name =  <tmp>/save/guid-1/c.jpeg
SyncLoadImage type=1 url=/pictures/c.jpg request=/pictures/c.jpg cache=1 site=0 -> <tmp>/save/guid-1/c.jpeg
log3 all data has download finished. file = <tmp>/Persons/
NQX_AccessFile 7za.exe 0
DirectoryExists <tmp>/save/guid-1/
log3 Excute command:
LaunchApp 7za.exe a -tzip -p"secret" "<tmp>/save/guid-1.zip" "<tmp>/save/guid-1//*" wait hide
log3 Compressd  successfully. file =<tmp>/save/guid-1.zip
RemoveDirRecursively <tmp>/save/guid-1/
DirectoryExists <tmp>/Persons/
CopyFileW <tmp>/save/guid-1.zip <tmp>/Persons/guid-1.zip 0
RenameFile <tmp>/Persons/guid-1.zip <tmp>/Persons/Anna.zip
DeleteFileW <tmp>/save/guid-1.zip
log3 all data has download Compressd. file = <tmp>/Persons/Anna.zip   rename_resule = 0
log3 CDownloadPersonPicTask::Exec() success·
state 4 (0,0)
log3 Download export result, file name: Persons, file guid: task-1, file save path: <tmp>/Persons/.
)");
    EXPECT_EQ(Text("Persons/Anna.zip"), "zip");
    EXPECT_TRUE(fs::is_empty(Folder() + "save"));
    EXPECT_EQ(Settings().file_current_page, 2);
    EXPECT_TRUE(Settings().file_total_page_is_finished);
    // The page is rewritten in the request only.
    EXPECT_EQ(Settings().str_request_condition, R"({"PageIndex":1,"PageSize":2})");
}

TEST_F(PersonTaskTest, LinesCarryTheNamesOfTheClassesOperations)
{
    fakes::TheScript().show_log_heads = true;
    AddPage({"a"}, true);
    ArchiverWorks();
    const std::string trace = Run();
    EXPECT_NE(trace.find("FetchyardBussiness::CDownloadPersonPicTask::"), std::string::npos) << trace;
    EXPECT_EQ(trace.find("CDeterminantWriteFileTask"), std::string::npos) << trace;
}

TEST_F(PersonTaskTest, TaskWithoutARecordReportsItsStartAndThenFive)
{
    Zell::Base::Error::SetLastError({});
    fakes::Take();
    task_->Exec();
    EXPECT_EQ(Trace(), R"(
state 1 (0,0)
log3 Start export.
state 5 (0,0)
log5 Export param failed·
)");
}

TEST_F(PersonTaskTest, RecordOfAnotherClassIsNone)
{
    task_->SetDownloadTaskParam(std::make_shared<ZellTaskKit::CDownloadTaskParam>(), false);
    fakes::Take();
    task_->Exec();
    EXPECT_EQ(States(Trace()), "1 5 (0,0)");
}

TEST_F(PersonTaskTest, FolderThatCannotBeMadeEndsTheRunAtItsStart)
{
    fs::remove(Folder() + "Persons");
    fakes::FailCalls("MakeFullDir", 1, 1);
    EXPECT_EQ(Run(), R"(
state 1 (0,0)
log3 Start export.
DirectoryExists <tmp>/Persons/ -> missing
MakeFullDir <tmp>/Persons/ -> fails
SetLastError (20,3215)
state 5 (20,3215)
log5  create file path =<tmp>/Persons/  failed.  task failed
)");
}

TEST_F(PersonTaskTest, ScratchFolderThatCannotBeMadeEndsTheRun)
{
    fakes::FailCalls("MakeFullDir", 1, 1);
    EXPECT_EQ(From(Run(), "GetClientConfig"), R"(
GetClientConfig 2
DirectoryExists <tmp>/save/guid-1/ -> missing
MakeFullDir <tmp>/save/guid-1/ -> fails
SetLastError (20,3215)
state 5 (20,3215)
log5  create file pic_down_path_dir =<tmp>/save/guid-1/  failed.  task failed
)");
}

TEST_F(PersonTaskTest, FoldersThatCannotBeMadeEndAnEvidenceExportInEleven)
{
    MakeEvidence();
    fakes::FailCalls("MakeFullDir", 1, 1);
    EXPECT_EQ(States(Run()), "1 11 (20,3215)");
    fs::remove(Folder() + "Persons");
    fakes::FailCalls("MakeFullDir", 2, 1);
    EXPECT_EQ(States(Run()), "1 11 (20,3215)");
}

TEST_F(PersonTaskTest, MissingFolderIsMadeAndTheExportGoesOn)
{
    fs::remove(Folder() + "Persons");
    TwoPages();
    EXPECT_EQ(States(Run()), "1 4 (0,0)");
    EXPECT_TRUE(Exists("Persons/Anna.zip"));
}

TEST_F(PersonTaskTest, EvidenceExportStartsInOneAndEndsInTen)
{
    MakeEvidence();
    TwoPages();
    EvidenceAnswers(5, 6);
    EXPECT_EQ(From(Run(), "DeleteFileW"), R"(
DeleteFileW <tmp>/save/guid-1.zip
log3 all data has download Compressd. file = <tmp>/Persons/Anna.zip   rename_resule = 0
log3 Request API: /API/Evidence/V0/CreateEvidence, request message : {"Case":7}.
DoRequest /API/Evidence/V0/CreateEvidence {"Case":7}
log3 CDownloadPersonPicTask::Exec() success·
state 10 (0,0)
log3 Download export result, file name: Persons, file guid: task-1, file save path: <tmp>/Persons/.
)");
}

TEST_F(PersonTaskTest, CleanAnswerOfTheEvidenceServiceEndsInEleven)
{
    MakeEvidence();
    TwoPages();
    EvidenceAnswers(0, 0);
    EXPECT_EQ(From(Run(), "log3 Request API"), R"(
log3 Request API: /API/Evidence/V0/CreateEvidence, request message : {"Case":7}.
DoRequest /API/Evidence/V0/CreateEvidence {"Case":7}
state 11 (0,0)
log5 upload files to evidence failed.
)");
    EXPECT_TRUE(Exists("Persons/Anna.zip"));
}

TEST_F(PersonTaskTest, EvidenceIsAcceptedOnlyWithTwoCodesThatAreNotZero)
{
    EvidenceAnswers(1, 0);
    EXPECT_FALSE(task_->UploadFilesToEvidence("{}"));
    EvidenceAnswers(0, 1);
    EXPECT_FALSE(task_->UploadFilesToEvidence("{}"));
    EvidenceAnswers(-1, -1);
    EXPECT_TRUE(task_->UploadFilesToEvidence("{}"));
    fakes::TheScript().evidence_answer = "";
    EXPECT_FALSE(task_->UploadFilesToEvidence("{}"));
    fakes::TheScript().evidence_answer = "no json";
    EXPECT_FALSE(task_->UploadFilesToEvidence("{}"));
}

TEST_F(PersonTaskTest, EvidenceRequestThatCannotBeSentEndsInEleven)
{
    MakeEvidence();
    TwoPages();
    fakes::FailCalls("DoRequest", 1, 1);
    EXPECT_EQ(From(Run(), "DoRequest"), R"(
DoRequest /API/Evidence/V0/CreateEvidence {"Case":7} -> fails
log5 Do request failed.
state 11 (0,0)
log5 upload files to evidence failed.
)");
}

TEST_F(PersonTaskTest, EvidenceAnswerLeavesTheSearchTextAlone)
{
    MakeEvidence();
    TwoPages();
    fakes::TheScript().evidence_answer = R"({"Response":{"ErrorModule":1,"ErrorCode":1,"SearchXml":"<a/>"}})";
    EXPECT_EQ(States(Run()), "1 10 (0,0)");
    EXPECT_EQ(record_->GetVal_str_search_xml(), "");
}

TEST_F(PersonTaskTest, FailedListCallLeavesNoScratchFolderAndTellsWhatTheAccountHasLeft)
{
    FailPage(24, 2, "4", "1");
    EXPECT_EQ(From(Run(), "GetExportPicDataList"), R"(
GetExportPicDataList POST /persons {"PageIndex":1,"PageSize":2}
RemoveDirRecursively <tmp>/save/guid-1/
log5 CDownloadPersonPicTask::Exec() ret = 0  delete_result =0·
SetLastError (24,2)
SetTaskErrorCode (24,2)
SetErrorParamState true
SetErrorParam ErrorCode=2; RemainingLoginNumber=4; RemainingLoginType=1
state 5 (24,2)
)");
    EXPECT_FALSE(Exists("save/guid-1"));
    EXPECT_EQ(Settings().str_request_condition, R"({"PageIndex":1,"PageSize":2})");
}

TEST_F(PersonTaskTest, FailedListCallOfALaterPageDropsThePicturesToo)
{
    AddPage({"a"}, false);
    FailPage(22, 7, "", "");
    MakeEvidence();
    fakes::FailCalls("RemoveDirRecursively", 1, 1);
    EXPECT_EQ(From(Run(), "RemoveDirRecursively"), R"(
RemoveDirRecursively <tmp>/save/guid-1/ -> fails
log5 CDownloadPersonPicTask::Exec() ret = 0  delete_result =-1·
SetLastError (22,7)
SetTaskErrorCode (22,7)
SetErrorParamState true
SetErrorParam ErrorCode=7; RemainingLoginNumber=; RemainingLoginType=
state 11 (22,7)
)");
}

TEST_F(PersonTaskTest, EachPageIsAskedForWithAnEmptyList)
{
    TwoPages();
    EXPECT_EQ(Run().find("left over"), std::string::npos);
}

TEST_F(PersonTaskTest, LostPictureIsMissingFromTheArchiveAndNothingMore)
{
    AddPage({"a", "b", "c"}, true);
    fakes::TheScript().pictures["/pictures/b.jpg"] = {{21, 404}, ""};
    std::map<std::string, std::string> files;
    LookAtTheArchivedFolder(files);
    const std::string trace = Run();
    EXPECT_EQ(Lines(trace, "log5"), R"(
log5 CDownloadPersonPicTask::Exec()  image download filed  , ptr_img_url_key->strImageUrl = : /pictures/b.jpg  error_code.iFirstCode =21, error_code.iSecondCode =404
log5 copy html failed. html_path_new =<tmp>/Persons/guid-1.zip
)");
    EXPECT_EQ(files, (std::map<std::string, std::string>{{"a.jpeg", "picture"}, {"c.jpeg", "picture"}}));
    EXPECT_EQ(States(trace), "1 4 (0,0)");
}

TEST_F(PersonTaskTest, SecondPictureOfANameTakesThePlaceOfTheFirst)
{
    fakes::PersonPageAnswer page;
    page.is_last = true;
    page.pictures = {{"a", "/1"}, {"a", "/2"}};
    fakes::TheScript().person_pages = {page};
    fakes::TheScript().pictures["/1"] = {{}, "first"};
    fakes::TheScript().pictures["/2"] = {{}, "second"};
    std::map<std::string, std::string> files;
    LookAtTheArchivedFolder(files);
    Run();
    EXPECT_EQ(files, (std::map<std::string, std::string>{{"a.jpeg", "second"}}));
}

TEST_F(PersonTaskTest, AddressOfADeviceIsCutAtItsQuestionMarkAndNotCached)
{
    fakes::PersonPageAnswer page;
    page.is_last = true;
    page.pictures = {{"a", "/device?QUERN&camera=3"}, {"b", "/p?x=1"}};
    fakes::TheScript().person_pages = {page};
    EXPECT_EQ(Lines(Run(), "SyncLoadImage"), R"(
SyncLoadImage type=17 url=/device request=QUERN&camera=3 cache=0 site=0 -> <tmp>/save/guid-1/a.jpeg
SyncLoadImage type=1 url=/p?x=1 request=x=1 cache=1 site=0 -> <tmp>/save/guid-1/b.jpeg
)");
}

TEST_F(PersonTaskTest, EmptyPageThatIsNotTheLastGoesOnAtOnce)
{
    AddPage({}, false);
    AddPage({}, false);
    AddPage({"a"}, true);
    ArchiverWorks();
    const std::string trace = Run();
    EXPECT_EQ(Lines(trace, "GetExportPicDataList"), R"(
GetExportPicDataList POST /persons {"PageIndex":1,"PageSize":2}
GetExportPicDataList POST /persons {"PageIndex":2,"PageSize":2}
GetExportPicDataList POST /persons {"PageIndex":3,"PageSize":2}
)");
    EXPECT_EQ(fakes::CountOf("ZC_Sleep"), 0);
    EXPECT_EQ(States(trace), "1 4 (0,0)");
}

TEST_F(PersonTaskTest, PageNumberWithoutACommaBehindItEmptiesTheNextRequest)
{
    SetCondition(R"({"PageSize":2,"PageIndex":1})");
    TwoPages();
    EXPECT_EQ(Lines(Run(), "GetExportPicDataList"),
              "\n"
              "GetExportPicDataList POST /persons "
              R"({"PageSize":2,"PageIndex":1})"
              "\nGetExportPicDataList POST /persons·\n");
}

TEST_F(PersonTaskTest, RequestWithoutAPageNumberIsEmptyAtTheNextPage)
{
    SetCondition("{}");
    TwoPages();
    EXPECT_EQ(Lines(Run(), "GetExportPicDataList"),
              "\nGetExportPicDataList POST /persons {}\nGetExportPicDataList POST /persons·\n");
}

TEST_F(PersonTaskTest, StopTakesEffectBehindThePageAndLeavesTheScratchFolder)
{
    TwoPages();
    fakes::OnCall("SyncLoadImage", 1, [this] { EXPECT_TRUE(task_->Stop()); });
    EXPECT_EQ(From(Run(), "SyncLoadImage"), R"(
SyncLoadImage type=1 url=/pictures/a.jpg request=/pictures/a.jpg cache=1 site=0 -> <tmp>/save/guid-1/a.jpeg
log3 CDownloadPersonPicTask::Exec() start to stop task.
log3 Start image download :sync_load_param.save_full_name =  <tmp>/save/guid-1/b.jpeg
SyncLoadImage type=1 url=/pictures/b.jpg request=/pictures/b.jpg cache=1 site=0 -> <tmp>/save/guid-1/b.jpeg
log3 CDownloadPersonPicTask::Exec()  ptr_person_control_param->vs_file_param_.file_current_page = 1
log3  file  not finished= <tmp>/Persons/
state 6 (0,0)
log3 Download stop success, file name: Persons, file guid: task-1, file save path: <tmp>/Persons/.
)");
    EXPECT_TRUE(Exists("save/guid-1/a.jpeg"));
    EXPECT_TRUE(Exists("save/guid-1/b.jpeg"));
    EXPECT_FALSE(Exists("Persons/Anna.zip"));
}

TEST_F(PersonTaskTest, StopBehindTheLastPageStillMakesTheArchive)
{
    TwoPages();
    fakes::OnCall("SyncLoadImage", 3, [this] { task_->Stop(); });
    EXPECT_EQ(From(Run(), "DeleteFileW"), R"(
DeleteFileW <tmp>/save/guid-1.zip
log3 all data has download Compressd. file = <tmp>/Persons/Anna.zip   rename_resule = 0
state 6 (0,0)
log3 Download stop success, file name: Persons, file guid: task-1, file save path: <tmp>/Persons/.
)");
    EXPECT_TRUE(Exists("Persons/Anna.zip"));
}

TEST_F(PersonTaskTest, StoppedEvidenceExportEndsInTwelveAndRegistersNothing)
{
    MakeEvidence();
    TwoPages();
    fakes::OnCall("LaunchApp", 1, [this] { task_->Stop(); });
    const std::string trace = Run();
    EXPECT_EQ(States(trace), "1 12 (0,0)");
    EXPECT_EQ(fakes::CountOf("DoRequest"), 0);
}

TEST_F(PersonTaskTest, SecondStopIsToldToTheLogOnly)
{
    EXPECT_TRUE(task_->Stop());
    EXPECT_TRUE(task_->Stop());
    EXPECT_EQ(Trace(), R"(
log3 CDownloadPersonPicTask::Exec() start to stop task.
log3 CDownloadPersonPicTask::Exec() start to stop task.
log3  CDownloadPersonPicTask::Exec() has already stop.
)");
}

TEST_F(PersonTaskTest, FlagsRaisedBeforeTheRunAreForgottenByIt)
{
    TwoPages();
    task_->Stop();
    task_->RaiseDelete();
    EXPECT_EQ(States(Run()), "1 4 (0,0)");
}

TEST_F(PersonTaskTest, SuspendDoesNothingAndDeleteIsThatOfTheBase)
{
    EXPECT_TRUE(task_->Suspend());
    EXPECT_TRUE(task_->Delete());
    EXPECT_EQ(task_->GetCommData(), "");
    EXPECT_FALSE(task_->SetCommonData("text"));
    EXPECT_EQ(Trace(), "\n");
    TwoPages();
    fakes::OnCall("SyncLoadImage", 1, [this] { task_->Delete(); });
    EXPECT_EQ(States(Run()), "1 4 (0,0)");
}

TEST_F(PersonTaskTest, RaisedDeleteFlagEndsTheRunInTwoHundred)
{
    MakeEvidence();
    TwoPages();
    fakes::OnCall("SyncLoadImage", 2, [this] { task_->RaiseDelete(); });
    EXPECT_EQ(From(Run(), "log3  file"), R"(
log3  file  not finished= <tmp>/Persons/
log3 Download delete success, file name: Persons, file guid: task-1, file save path: <tmp>/Persons/.
state 200 (0,0)
)");
}

TEST_F(PersonTaskTest, StopAndDeleteTogetherEndThePage)
{
    TwoPages();
    fakes::OnCall("SyncLoadImage", 1, [this] {
        task_->Stop();
        task_->RaiseDelete();
    });
    const std::string trace = Run();
    EXPECT_EQ(fakes::CountOf("SyncLoadImage"), 1);
    EXPECT_EQ(Lines(trace, "log3 download image"), "\nlog3 download image b_stop_ = 1, b_delete_ = 1\n");
    EXPECT_EQ(States(trace), "1 200 (0,0)");
}

TEST_F(PersonTaskTest, StopAndDeleteTogetherEndThePageBehindALostPictureToo)
{
    TwoPages();
    fakes::TheScript().pictures["/pictures/a.jpg"] = {{21, 404}, ""};
    fakes::OnCall("SyncLoadImage", 1, [this] {
        task_->Stop();
        task_->RaiseDelete();
    });
    EXPECT_EQ(States(Run()), "1 200 (0,0)");
    EXPECT_EQ(fakes::CountOf("SyncLoadImage"), 1);
}

TEST_F(PersonTaskTest, MissingArchiverKeepsThePicturesAndTheExportEndsAsFinished)
{
    TwoPages();
    fakes::FailCalls("NQX_AccessFile", 1, 1);
    EXPECT_EQ(From(Run(), "NQX_AccessFile"), R"(
NQX_AccessFile 7za.exe 0 -> fails
log5 [Compress::CompressFolder] 7Za Execute Not Exist
log3   Compressd failed!. file = <tmp>/save/guid-1.zip  result = 2
log3 CDownloadPersonPicTask::Exec() success·
state 4 (0,0)
log3 Download export result, file name: Persons, file guid: task-1, file save path: <tmp>/Persons/.
)");
    EXPECT_TRUE(Exists("save/guid-1/a.jpeg"));
    EXPECT_FALSE(Exists("Persons/Anna.zip"));
}

TEST_F(PersonTaskTest, FailedArchiveOfAnEvidenceExportIsRegisteredAllTheSame)
{
    MakeEvidence();
    TwoPages();
    EvidenceAnswers(1, 1);
    fakes::FailCalls("LaunchApp", 1, 1);
    EXPECT_EQ(From(Run(), "log5 [Compress"), R"(
log5 [Compress::CompressFolder] Compress Execute Fail
log3   Compressd failed!. file = <tmp>/save/guid-1.zip  result = 4
log3 Request API: /API/Evidence/V0/CreateEvidence, request message : {"Case":7}.
DoRequest /API/Evidence/V0/CreateEvidence {"Case":7}
log3 CDownloadPersonPicTask::Exec() success·
state 10 (0,0)
log3 Download export result, file name: Persons, file guid: task-1, file save path: <tmp>/Persons/.
)");
}

TEST_F(PersonTaskTest, FolderThatGoesAwayMeanwhileIsMadeAgain)
{
    TwoPages();
    fakes::OnCall("RemoveDirRecursively", 1, [this] { fs::remove(Folder() + "Persons"); });
    EXPECT_EQ(States(Run()), "1 4 (0,0)");
    EXPECT_TRUE(Exists("Persons/Anna.zip"));
}

TEST_F(PersonTaskTest, FolderThatCannotBeMadeAtTheEndIsFiveAlsoForEvidence)
{
    MakeEvidence();
    TwoPages();
    fakes::OnCall("RemoveDirRecursively", 1, [this] { fs::remove(Folder() + "Persons"); });
    fakes::FailCalls("MakeFullDir", 2, 1);
    EXPECT_EQ(From(Run(), "RemoveDirRecursively"), R"(
RemoveDirRecursively <tmp>/save/guid-1/
DirectoryExists <tmp>/Persons/ -> missing
MakeFullDir <tmp>/Persons/ -> fails
SetLastError (20,3215)
state 5 (20,3215)
log5  create file path =<tmp>/Persons/  failed.  task failed
)");
    EXPECT_TRUE(Exists("save/guid-1.zip"));
}

TEST_F(PersonTaskTest, FailedCopyIsLoggedAndTheStepsGoOn)
{
    TwoPages();
    fakes::FailCalls("CopyFileW", 1, 1);
    EXPECT_EQ(From(Run(), "CopyFileW"), R"(
CopyFileW <tmp>/save/guid-1.zip <tmp>/Persons/guid-1.zip 0 -> fails
log5 copy html failed. html_path_new =<tmp>/Persons/guid-1.zip
RenameFile <tmp>/Persons/guid-1.zip <tmp>/Persons/Anna.zip
DeleteFileW <tmp>/save/guid-1.zip
log3 all data has download Compressd. file = <tmp>/Persons/Anna.zip   rename_resule = -1
log3 CDownloadPersonPicTask::Exec() success·
state 4 (0,0)
log3 Download export result, file name: Persons, file guid: task-1, file save path: <tmp>/Persons/.
)");
}

TEST_F(PersonTaskTest, FailedRenameReachesTheLogOnly)
{
    TwoPages();
    fakes::FailCalls("RenameFile", 1, 1);
    const std::string trace = Run();
    EXPECT_EQ(Lines(trace, "log3 all data has download Comp"),
              "\nlog3 all data has download Compressd. file = <tmp>/Persons/Anna.zip   rename_resule = -1\n");
    EXPECT_EQ(States(trace), "1 4 (0,0)");
    EXPECT_TRUE(Exists("Persons/guid-1.zip"));
}

TEST_F(PersonTaskTest, ArchiveOfTheNameThatIsThereIsTheRenamesMatter)
{
    std::ofstream(Folder() + "Persons/Anna.zip") << "older";
    TwoPages();
    EXPECT_EQ(States(Run()), "1 4 (0,0)");
    EXPECT_EQ(Text("Persons/Anna.zip"), "zip");
}

TEST_F(PersonTaskTest, FolderInTheCodePageIsTurnedIntoUtf8)
{
    Settings().str_save_path = Folder() + "Pers\xE4/";
    fs::create_directory(Folder() + "Pers\xE4");
    fakes::TheScript().utf8_mark = Folder() + "utf8";
    AddPage({}, true);
    ArchiverWorks();
    const std::string trace = Run();
    EXPECT_EQ(Lines(trace, "log3  file name is utf8"),
              "\nlog3  file name is utf8  file = <tmp>/utf8<tmp>/Pers\xE4/.\n");
    EXPECT_EQ(Lines(trace, "RenameFile"),
              "\nRenameFile <tmp>/utf8<tmp>/Pers\xE4/guid-1.zip <tmp>/utf8<tmp>/Pers\xE4/Anna.zip\n");
    EXPECT_EQ(Settings().str_save_path.Get(), Folder() + "utf8" + Folder() + "Pers\xE4/");
}

TEST_F(PersonTaskTest, ScratchFolderToRemoveIsTurnedIntoTheCodePage)
{
    TwoPages();
    fakes::TheScript().local_mark = "/nowhere";
    EXPECT_EQ(Lines(Run(), "RemoveDirRecursively"), "\nRemoveDirRecursively /nowhere<tmp>/save/guid-1/\n");
}

TEST_F(PersonTaskTest, EmptyPasswordMakesAnArchiveWithoutOne)
{
    Settings().str_zip_encoding_password = "";
    TwoPages();
    EXPECT_EQ(Lines(Run(), "LaunchApp"),
              "\nLaunchApp 7za.exe a -tzip \"<tmp>/save/guid-1.zip\" \"<tmp>/save/guid-1//*\" wait hide\n");
}

TEST_F(PersonTaskTest, PasswordNeverReachesTheLog)
{
    TwoPages();
    EXPECT_EQ(Lines(Run(), "log").find("secret"), std::string::npos);
}

TEST_F(PersonTaskTest, SecondRunHasAScratchFolderOfItsOwnAndTheSameLoader)
{
    AddPage({"a"}, false);
    fakes::OnCall("SyncLoadImage", 1, [this] { task_->Stop(); });
    EXPECT_EQ(States(Run()), "1 6 (0,0)");
    AddPage({"b"}, true);
    fakes::OnCall("LaunchApp", 1, [this] { std::ofstream(Folder() + "save/guid-2.zip") << "zip"; });
    const std::string trace = Run();
    // The stored condition goes out as it stands, whatever page the run before had come to.
    EXPECT_EQ(Lines(trace, "GetExportPicDataList"),
              "\nGetExportPicDataList POST /persons {\"PageIndex\":1,\"PageSize\":2}\n");
    EXPECT_EQ(Lines(trace, "SyncLoadImage"),
              "\nSyncLoadImage type=1 url=/pictures/b.jpg request=/pictures/b.jpg cache=1 site=0 -> "
              "<tmp>/save/guid-2/b.jpeg\n");
    EXPECT_EQ(fakes::CountOf("new CImageMultiSyncLoader"), 1);
    EXPECT_TRUE(Exists("save/guid-1/a.jpeg"));
    EXPECT_TRUE(Exists("Persons/Anna.zip"));
}

TEST_F(PersonTaskTest, RunBehindTheLastPageAsksForNothingAndPacksAnEmptyFolder)
{
    TwoPages();
    Run();
    const std::string trace = Run();
    EXPECT_EQ(Lines(trace, "GetExportPicDataList"), "\n");
    EXPECT_EQ(Lines(trace, "LaunchApp"),
              "\nLaunchApp 7za.exe a -tzip -p\"secret\" \"<tmp>/save/guid-2.zip\" \"<tmp>/save/guid-2//*\" "
              "wait hide\n");
}

TEST_F(PersonTaskTest, ProgressIsTheSizeOfTheFolderSoNothingUntilTheArchiveLands)
{
    TwoPages();
    task_->SetDownloadTaskParam(record_, false);
    unsigned long long during = 99;
    fakes::OnCall("SyncLoadImage", 3, [&] { during = task_->GetProgress().GetVal_finished_size(); });
    Run();
    EXPECT_EQ(during, 0U);
    EXPECT_EQ(task_->GetProgress().GetVal_finished_size(), 1U);
    std::ofstream(Folder() + "Persons/big") << std::string(1025, 'x');
    EXPECT_EQ(task_->GetProgress().GetVal_finished_size(), 3U);
}

TEST_F(PersonTaskTest, ProgressMakesTheseLines)
{
    task_->SetDownloadTaskParam(record_, false);
    fakes::Take();
    task_->GetProgress();
    EXPECT_EQ(Lines(Trace(), "log"),
              "\nlog3 CDownloadPersonPicTask::GetProgress() , file name: Persons, file guid: task-1, file "
              "save path: <tmp>/Persons/.\n");
    fs::remove(Folder() + "Persons");
    EXPECT_EQ(task_->GetProgress().GetVal_finished_size(), 0U);
    EXPECT_EQ(Lines(Trace(), "log3 dir"), "\nlog3 dir is not exists.<tmp>/Persons/\n");
}

TEST_F(PersonTaskTest, ProgressWithoutARecordIsNone)
{
    EXPECT_EQ(task_->GetProgress().GetVal_finished_size(), 0U);
    EXPECT_EQ(Trace(), "\nlog5 CDownloadPersonPicTask::GetProgress() nullptr == ptr_ftp_param\n");
}

TEST_F(PersonTaskTest, DesktopClientWritesItsOwnIdentityIntoTheRequest)
{
    task_->SetDownloadTaskParam(record_, false);
    fakes::Take();
    Settings().password_type = 8;
    EXPECT_TRUE(task_->SetAccountInforToRequest());
    EXPECT_EQ(Settings().str_request_condition,
              R"({"PageIndex":1,"PageSize":2,"CheckPasswordRequest":{"UserName":"operator",)"
              R"("PassWord":"cipher-of-secret","PasswordType":3,"LoginModel":4,"ClientGuid":"client-guid",)"
              R"("ClientHardwareCode":"hardware-code"}})");
    EXPECT_EQ(Settings().password_type, 3);
    EXPECT_EQ(Trace(), R"(
GetUserInfo
AESEncryptForSensitiveInfor secret
GetUserInfoEx
GetClientInfo
SetDownloadTaskParam
)");
}

TEST_F(PersonTaskTest, WebClientWritesAnEmptyIdentityAndTheValuesOfTheRecord)
{
    fakes::TheScript().client_type = 1;
    task_->SetDownloadTaskParam(record_, false);
    Settings().password_type = 8;
    Settings().web_login_model = 9;
    EXPECT_TRUE(task_->SetAccountInforToRequest());
    EXPECT_EQ(Settings().str_request_condition,
              R"({"PageIndex":1,"PageSize":2,"CheckPasswordRequest":{"UserName":"operator",)"
              R"("PassWord":"cipher-of-secret","PasswordType":8,"LoginModel":9,"ClientGuid":"",)"
              R"("ClientHardwareCode":""}})");
    EXPECT_EQ(Settings().password_type, 8);
}

TEST_F(PersonTaskTest, NextRunSendsTheRenewedAccountOnEveryPage)
{
    fakes::TheScript().client_type = 1;
    task_->SetDownloadTaskParam(record_, false);
    task_->SetAccountInforToRequest();
    TwoPages();
    const std::string trace = Run();
    for (const char* const page : {"1", "2"})
        EXPECT_NE(trace.find(std::string(R"(GetExportPicDataList POST /persons {"PageIndex":)") + page +
                             R"(,"PageSize":2,"CheckPasswordRequest":{"UserName":"operator")"),
                  std::string::npos)
            << trace;
}

TEST_F(PersonTaskTest, AccountWithoutARecordIsRefusedUnderTheNameOfTheProgress)
{
    EXPECT_FALSE(task_->SetAccountInforToRequest());
    EXPECT_EQ(Trace(), "\nlog5 CDownloadPersonPicTask::GetProgress() nullptr == ptr_ftp_param\n");
}

}  // namespace
}  // namespace contract
