#include "support/ExportTest.h"
#include "ZellBase/Error.h"

namespace contract {
namespace {

using Zell::Base::Error::ErrorCode;

class PicturePhaseTest : public ExportTest
{
protected:
    PicturePhaseTest() { Settings().str_request_api = ""; }

    // The part of a run between the phase's first and last line.
    std::string Phase()
    {
        const std::string trace = Run();
        const auto start = trace.find("log3 DownloadPictures code_now iFirstCode");
        const auto end = trace.find("log3 DownloadPictures  code_now1");
        return start == std::string::npos || end == std::string::npos
                   ? "no such phase: " + trace
                   : "\n" + trace.substr(start, end - start);
    }

    bool IsDone(std::size_t index) { return Settings().vec_image_download.at(index).is_has_download; }
};

TEST_F(PicturePhaseTest, PicturesAreFetchedInOrderAndMarked)
{
    AddPicture("a.jpg", "/p/a");
    AddPicture("b.jpg", "/p/b");
    EXPECT_EQ(Phase(), R"(
log3 DownloadPictures code_now iFirstCode = 0  iSecondCode = 0
new CImageMultiSyncLoader
log3 Start image download :sync_load_param.save_full_name =  <tmp>/Alarm/a.jpg
SyncLoadImage type=1 url=/p/a request=/p/a cache=1 site=0 -> <tmp>/Alarm/a.jpg
SetLastError (0,0)
log3 Start image download :sync_load_param.save_full_name =  <tmp>/Alarm/b.jpg
SyncLoadImage type=1 url=/p/b request=/p/b cache=1 site=0 -> <tmp>/Alarm/b.jpg
SetLastError (0,0)
SetDownloadTaskParam
)");
    EXPECT_TRUE(IsDone(0));
    EXPECT_TRUE(IsDone(1));
}

TEST_F(PicturePhaseTest, AddressesGiveTheseKeys)
{
    Settings().request_site_id = 12;
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"/p/a.jpg", "type=1 url=/p/a.jpg request=/p/a.jpg cache=1 site=12"},
        {"/p/a.jpg?w=1?h=2", "type=1 url=/p/a.jpg?w=1?h=2 request=w=1?h=2 cache=1 site=12"},
        {"/d/pic?QUERN&camera=3", "type=17 url=/d/pic request=QUERN&camera=3 cache=0 site=12"},
        {"/d/QUERN/pic", "type=17 url=/d/QUERN/pic request=/d/QUERN/pic cache=0 site=12"},
        {"", "type=1 url= request= cache=1 site=12"},
    };
    for (const auto& [address, key] : rows) {
        Settings().vec_image_download.clear();
        AddPicture("a.jpg", address);
        Settings().vec_image_download[0].image.image_items[0].save_cache = false;
        Settings().vec_image_download[0].image.image_items[0].workstation_id = 99;
        Settings().vec_image_download[0].image.image_items[0].image_type = 5;
        EXPECT_EQ(Lines(Run(), "SyncLoadImage"), "\nSyncLoadImage " + key + " -> <tmp>/Alarm/a.jpg\n")
            << address;
    }
}

TEST_F(PicturePhaseTest, OnlyTheFirstItemOfAnEntryIsFetched)
{
    AddPicture("a.jpg", "/p/a");
    Settings().vec_image_download[0].image.image_items.resize(2);
    Run();
    EXPECT_EQ(fakes::CountOf("SyncLoadImage"), 1);
}

TEST_F(PicturePhaseTest, EntryWithoutAnItemIsNeitherFetchedNorMarked)
{
    AddPicture("a.jpg", "/p/a");
    Settings().vec_image_download[0].image.image_items.clear();
    EXPECT_EQ(Phase(), R"(
log3 DownloadPictures code_now iFirstCode = 0  iSecondCode = 0
new CImageMultiSyncLoader
SetDownloadTaskParam
)");
    EXPECT_FALSE(IsDone(0));
}

TEST_F(PicturePhaseTest, SecondRunSkipsWhatIsDoneAndKeepsTheLoader)
{
    AddPicture("a.jpg", "/p/a");
    Run();
    EXPECT_EQ(Phase(), R"(
log3 DownloadPictures code_now iFirstCode = 0  iSecondCode = 0
SetDownloadTaskParam
)");
    AddPicture("b.jpg", "/p/b");
    EXPECT_EQ(Lines(Phase(), "SyncLoadImage"),
              "\nSyncLoadImage type=1 url=/p/b request=/p/b cache=1 site=0 -> <tmp>/Alarm/b.jpg\n");
    EXPECT_EQ(fakes::CountOf("new CImageMultiSyncLoader"), 1);
}

TEST_F(PicturePhaseTest, FailedPictureIsLeftOutAndTheExportFinishes)
{
    AddPicture("a.jpg", "/bad");
    AddPicture("b.jpg", "/p/b");
    fakes::TheScript().pictures["/bad"] = {ErrorCode(21, 404), ""};
    EXPECT_EQ(Phase(), R"(
log3 DownloadPictures code_now iFirstCode = 0  iSecondCode = 0
new CImageMultiSyncLoader
log3 Start image download :sync_load_param.save_full_name =  <tmp>/Alarm/a.jpg
SyncLoadImage type=1 url=/bad request=/bad cache=1 site=0 -> <tmp>/Alarm/a.jpg
log5 CDeterminantWriteFileTask::Exec()  image download filed  , ptr_img_url_key->strImageUrl = : /bad
SetLastError (21,404)
log3 Start image download :sync_load_param.save_full_name =  <tmp>/Alarm/b.jpg
SyncLoadImage type=1 url=/p/b request=/p/b cache=1 site=0 -> <tmp>/Alarm/b.jpg
SetLastError (0,0)
SetDownloadTaskParam
)");
    EXPECT_FALSE(IsDone(0));
    EXPECT_TRUE(IsDone(1));
    EXPECT_EQ(task_->GetCommData(), "");
}

TEST_F(PicturePhaseTest, LastErrorIsThatOfTheLatestPicture)
{
    AddPicture("a.jpg", "/bad");
    AddPicture("b.jpg", "/p/b");
    fakes::TheScript().pictures["/bad"] = {ErrorCode(21, 404), ""};
    EXPECT_EQ(States(Run()), "1 4 (0,0)");
    fakes::TheScript().pictures["/p/b"] = {ErrorCode(22, 7), ""};
    Settings().vec_image_download[1].is_has_download = false;
    EXPECT_EQ(States(Run()), "1 4 (22,7)");
}

TEST_F(PicturePhaseTest, ErrorOfTheThreadBeforeThePhaseIsLogged)
{
    AddPicture("a.jpg", "/p/a");
    task_->SetDownloadTaskParam(record_, false);
    Zell::Base::Error::SetLastError(ErrorCode(7, 8));
    fakes::Take();
    task_->Exec();
    EXPECT_NE(Trace().find("\nlog3 DownloadPictures code_now iFirstCode = 7  iSecondCode = 8\n"),
              std::string::npos);
}

TEST_F(PicturePhaseTest, FailedDevicePictureIsLoggedWithItsCutAddress)
{
    AddPicture("a.jpg", "/d/pic?QUERN&camera=3");
    fakes::TheScript().pictures["/d/pic"] = {ErrorCode(21, 500), ""};
    EXPECT_EQ(
        Lines(Run(), "log5"),
        "\nlog5 CDeterminantWriteFileTask::Exec()  image download filed  , ptr_img_url_key->strImageUrl = : "
        "/d/pic\n");
}

TEST_F(PicturePhaseTest, FailedPictureIsCollectedWhenTheExportGoesOn)
{
    Settings().is_continue_dowinloading = true;
    AddPicture("b.jpg", "/bad");
    AddPicture("a.jpg", "/worse");
    fakes::TheScript().pictures["/bad"] = {ErrorCode(21, 404), ""};
    fakes::TheScript().pictures["/worse"] = {ErrorCode(22, 7), ""};
    EXPECT_EQ(Phase(), R"(
log3 DownloadPictures code_now iFirstCode = 0  iSecondCode = 0
new CImageMultiSyncLoader
log3 Start image download :sync_load_param.save_full_name =  <tmp>/Alarm/b.jpg
SyncLoadImage type=1 url=/bad request=/bad cache=1 site=0 -> <tmp>/Alarm/b.jpg
log5 CDeterminantWriteFileTask::Exec()  image download filed  , ptr_img_url_key->strImageUrl = : /bad
GetErrorInfoByCode 21/404
SetErrorParamState true
SetErrorParam ArrayList[1]/ErrorReason=text of 21/404; ArrayList[1]/FileName=b.jpg
SetDownloadTaskParam
SetLastError (21,404)
log3 Start image download :sync_load_param.save_full_name =  <tmp>/Alarm/a.jpg
SyncLoadImage type=1 url=/worse request=/worse cache=1 site=0 -> <tmp>/Alarm/a.jpg
log5 CDeterminantWriteFileTask::Exec()  image download filed  , ptr_img_url_key->strImageUrl = : /worse
GetErrorInfoByCode 22/7
SetErrorParamState true
SetErrorParam ArrayList[1]/ErrorReason=text of 22/7; ArrayList[1]/FileName=a.jpg; ArrayList[2]/ErrorReason=text of 21/404; ArrayList[2]/FileName=b.jpg
SetDownloadTaskParam
SetLastError (22,7)
SetDownloadTaskParam
)");
}

TEST_F(PicturePhaseTest, StopAloneLetsAllPicturesCome)
{
    for (const char* const name : {"a.jpg", "b.jpg", "c.jpg"})
        AddPicture(name, "/p");
    fakes::OnCall("SyncLoadImage", 1, [this] { task_->Stop(); });
    EXPECT_EQ(States(Run()), "1 6 (0,0)");
    EXPECT_EQ(fakes::CountOf("SyncLoadImage"), 3);
}

TEST_F(PicturePhaseTest, DeleteAloneLetsAllPicturesCome)
{
    for (const char* const name : {"a.jpg", "b.jpg", "c.jpg"})
        AddPicture(name, "/p");
    fakes::OnCall("SyncLoadImage", 1, [this] { task_->Delete(); });
    EXPECT_EQ(States(Run()), "1 200 (0,0)");
    EXPECT_EQ(fakes::CountOf("SyncLoadImage"), 3);
}

TEST_F(PicturePhaseTest, StopAndDeleteTogetherEndTheWalkBehindThePictureInHand)
{
    for (const char* const name : {"a.jpg", "b.jpg", "c.jpg"})
        AddPicture(name, "/p");
    fakes::OnCall("SyncLoadImage", 2, [this] {
        task_->Delete();
        task_->Stop();
    });
    const std::string trace = Run();
    EXPECT_EQ(States(trace), "1 200 (0,0)");
    EXPECT_EQ(fakes::CountOf("SyncLoadImage"), 2);
    EXPECT_NE(
        trace.find(
            "\nSetLastError (0,0)\nlog3 download image b_stop_ = 1, b_delete_ = 1\nSetDownloadTaskParam\n"),
        std::string::npos)
        << trace;
    EXPECT_TRUE(IsDone(1));
    EXPECT_FALSE(IsDone(2));
}

TEST_F(PicturePhaseTest, DoneEntriesAreWalkedThroughWhateverTheFlags)
{
    for (const char* const name : {"a.jpg", "b.jpg"}) {
        AddPicture(name, "/p");
        Settings().vec_image_download.back().is_has_download = true;
    }
    fakes::OnCall("DirectoryExists", 1, [this] {
        task_->Stop();
        task_->Delete();
    });
    EXPECT_EQ(Phase(), R"(
log3 DownloadPictures code_now iFirstCode = 0  iSecondCode = 0
new CImageMultiSyncLoader
SetDownloadTaskParam
)");
}

TEST_F(PicturePhaseTest, PhaseWithoutARecordIsFalse)
{
    EXPECT_FALSE(task_->DownloadPictures());
    EXPECT_EQ(Trace(), "\nlog5 DownloadPictures ptr_determinant_control_param is null!\n");
}

TEST_F(PicturePhaseTest, RecordThatGoesBeforeThePhaseFailsTheExportInStateFive)
{
    record_->str_evidence_param = "{}";
    AddPicture("a.jpg", "/p/a");
    fakes::OnCall("DirectoryExists", 1, [this] { task_->SetDownloadTaskParam(nullptr, false); });
    const std::string trace = Run();
    EXPECT_EQ(States(trace), "7 5 (0,0)");
    EXPECT_NE(trace.find("\nlog5 DownloadPictures ptr_determinant_control_param is null!\nstate 5 (0,0)\n"
                         "log5 DownloadPictures failed·\n"),
              std::string::npos)
        << trace;
}

}  // namespace
}  // namespace contract
