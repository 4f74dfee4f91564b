// Which folder goes with a task that is deleted.
#include "Engine/OwnFolder.h"
#include "StoreRig.h"
#include "ZellClientHostSettings/ClientSettings.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace FetchyardLogical;
using namespace FetchyardLogical::testing;
using namespace ZellTaskKit;

namespace fs = std::filesystem;

namespace {

// A folder with the files of exports, and the client's own folders beside it.
class DeletedFolder : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ZellClientHost::ClientSettings settings;
        settings.data_path = disk_.File("data/");
        settings.public_data_path = disk_.File("public/");
        fs::create_directories(fs::u8path(settings.data_path));
        ZellClientHost::SetClientSettings(settings);
    }

    std::string Folder(const std::string& name)
    {
        fs::create_directories(disk_.Path() / name);
        return disk_.File(name + "/");
    }

    void PutFile(const std::string& name) { WriteBytes(disk_.File(name), "content"); }
    bool HasFile(const std::string& name) { return IsThere(disk_.File(name)); }

    // An export that leaves a file, and ends in 200 once it is deleted.
    std::shared_ptr<FakeTask> MakeExport(const std::string& folder, int kind = 1)
    {
        auto task = MakeRecorded(
            [this, folder](FakeTask& self) {
                WriteBytes(folder + "report.csv", "rows");
                self.Report(Downloading);
                started_.Open();
                EXPECT_TRUE(deleted_.Wait());
                self.Report(Deleted);
                EXPECT_TRUE(IsThere(folder)) << "removed while Exec ran";
            },
            "Export", folder, kind);
        task->on_delete = [this](FakeTask&) { deleted_.Open(); };
        return task;
    }

    void RunAndDelete(const std::shared_ptr<FakeTask>& task, FolderFate fate = FolderFate::Remove)
    {
        ASSERT_TRUE(store_.Rig().Add({task}));
        ASSERT_TRUE(started_.Wait());
        EXPECT_TRUE(store_->DeleteTask(task->GetGuid(), fate));
        ASSERT_TRUE(store_.Rig().Settle());
    }

    TempFolder disk_;
    Latch started_;
    Latch deleted_;
    StoreRig store_;  // last: its tasks use the others until it goes
};

}  // namespace

TEST_F(DeletedFolder, GoesWithAllThatIsInItOnceExecHasReturned)
{
    Folder("out/Alarms/pictures");
    const auto task = MakeExport(Folder("out/Alarms"));
    RunAndDelete(task);
    EXPECT_FALSE(HasFile("out/Alarms"));
    EXPECT_TRUE(HasFile("out"));
    EXPECT_EQ(store_.View(task->GetGuid()).state, Deleted);
}

TEST_F(DeletedFolder, StaysIfTheHostDoesNotWantItRemoved)
{
    RunAndDelete(MakeExport(Folder("out/Alarms")), FolderFate::Keep);
    EXPECT_TRUE(HasFile("out/Alarms/report.csv"));
}

TEST_F(DeletedFolder, StaysIfItHeldAFileWhenTheTaskCame)
{
    Folder("out/Alarms/older");
    PutFile("out/Alarms/older/picture.jpg");
    RunAndDelete(MakeExport(Folder("out/Alarms")));
    EXPECT_TRUE(HasFile("out/Alarms/report.csv"));
    EXPECT_TRUE(HasFile("out/Alarms/older/picture.jpg"));
}

TEST_F(DeletedFolder, StaysIfItHeldALinkWhenTheTaskCame)
{
    Folder("elsewhere");
    Folder("out/Alarms");
    fs::create_directory_symlink(disk_.Path() / "elsewhere", disk_.Path() / "out/Alarms/link");
    RunAndDelete(MakeExport(Folder("out/Alarms")));
    EXPECT_TRUE(HasFile("out/Alarms/report.csv"));
}

TEST_F(DeletedFolder, StaysIfAnotherTaskOfTheListHasItOrOneBelow)
{
    const std::string folder = Folder("out/Alarms");
    Folder("out/Alarms/more");
    const auto below = MakeRecorded([](FakeTask& self) { self.Report(Stopped); }, "Below", folder + "more/");
    ASSERT_TRUE(store_.Rig().Add({below}));
    ASSERT_TRUE(store_.Rig().Settle());
    RunAndDelete(MakeExport(folder));
    EXPECT_TRUE(HasFile("out/Alarms/report.csv"));
}

TEST_F(DeletedFolder, OfASimpleDownloadIsNobodysOwn)
{
    const std::string folder = Folder("out");
    store_->SetLimit(1);
    ASSERT_TRUE(store_.Rig().Add({MakeExport(Folder("busy"))}));
    ASSERT_TRUE(started_.Wait());
    const auto waiting = MakeTask([](FakeTask&) {});
    waiting->GetDownloadTaskParam<CDownloadTaskParam>()->SetVal_str_file_path(folder);
    ASSERT_TRUE(store_.Rig().Add({waiting}));
    EXPECT_TRUE(store_->DeleteTask(waiting->GetGuid(), FolderFate::Remove));
    EXPECT_EQ(store_.View(waiting->GetGuid()).state, Deleted);
    EXPECT_TRUE(HasFile("out"));
    deleted_.Open();
}

TEST_F(DeletedFolder, OfAWaitingExportGoesAtOnce)
{
    store_->SetLimit(1);
    ASSERT_TRUE(store_.Rig().Add({MakeExport(Folder("busy"))}));
    ASSERT_TRUE(started_.Wait());
    const auto waiting = MakeRecorded([](FakeTask&) {}, "Waiting", Folder("out/Waiting"));
    ASSERT_TRUE(store_.Rig().Add({waiting}));
    EXPECT_TRUE(store_->DeleteTask(waiting->GetGuid(), FolderFate::Remove));
    EXPECT_FALSE(HasFile("out/Waiting"));
    deleted_.Open();
}

TEST_F(DeletedFolder, StaysIfTheTaskEndsOtherwise)
{
    const std::string folder = Folder("out/Alarms");
    const auto task = MakeRecorded(
        [&](FakeTask& self) {
            self.Report(Downloading);
            started_.Open();
            EXPECT_TRUE(deleted_.Wait());
            self.Report(Finished);  // the delete came too late
        },
        "Alarms", folder);
    task->on_delete = [&](FakeTask&) { deleted_.Open(); };
    RunAndDelete(task);
    EXPECT_TRUE(HasFile("out/Alarms"));
}

TEST_F(DeletedFolder, OfAnEndedTaskStays)
{
    const auto task = MakeRecorded(
        [](FakeTask& self) {
            self.Report(Downloading);
            self.Report(Finished);
        },
        "Alarms", Folder("out/Alarms"));
    ASSERT_TRUE(store_.Rig().Add({task}));
    ASSERT_TRUE(store_.Rig().Settle());
    EXPECT_TRUE(store_->DeleteTask(task->GetGuid(), FolderFate::Remove));
    EXPECT_TRUE(HasFile("out/Alarms"));
    EXPECT_FALSE(store_->StartAgain("no such task"));
}

TEST_F(DeletedFolder, ThatAKilledClientLeftGoesAtTheNextOpening)
{
    const std::string folder = Folder("out/Alarms");
    std::string copy;
    store_.Rig().Log().on_report = [&](const CTaskCallbackParam& report) {
        if (report.GetVal_state() == Deleted)
            copy = store_.CopyOfFiles();
    };
    RunAndDelete(MakeExport(folder));
    Folder("out/Alarms");
    PutFile("out/Alarms/report.csv");
    std::string message;
    EngineRig later(copy, message);
    EXPECT_FALSE(HasFile("out/Alarms"));
    EXPECT_EQ(later->List().size(), 1u);
}

TEST_F(DeletedFolder, OfAnInterruptedExportGoesWithItsEntry)
{
    const std::string folder = Folder("out/Alarms");
    const auto task = MakeExport(folder);
    ASSERT_TRUE(store_.Rig().Add({task}));
    ASSERT_TRUE(started_.Wait());
    const std::string copy = store_.CopyOfFiles();
    const std::string second_copy = store_.CopyOfFiles();
    deleted_.Open();
    ASSERT_TRUE(store_.Rig().Settle());

    std::string message;
    EngineRig keeping(copy, message);
    EXPECT_TRUE(keeping->DeleteTask(task->GetGuid(), FolderFate::Keep));
    EXPECT_TRUE(keeping->List().empty());
    EXPECT_TRUE(HasFile("out/Alarms/report.csv"));
    EngineRig removing(second_copy, message);
    EXPECT_TRUE(removing->DeleteTask(task->GetGuid(), FolderFate::Remove));
    EXPECT_FALSE(HasFile("out/Alarms"));
}

TEST_F(DeletedFolder, OfAResumedExportIsStillItsOwn)
{
    const std::string folder = Folder("out/Alarms");
    const auto first = MakeExport(folder);
    ASSERT_TRUE(store_.Rig().Add({first}));
    ASSERT_TRUE(started_.Wait());
    const std::string copy = store_.CopyOfFiles();
    deleted_.Open();
    ASSERT_TRUE(store_.Rig().Settle());

    std::string message;
    EngineRig later(copy, message);
    Latch again;
    Latch asked;
    const auto resumed = MakeRecorded(
        [&](FakeTask& self) {
            self.Report(Downloading);
            again.Open();
            EXPECT_TRUE(asked.Wait());
            self.Report(Deleted);
        },
        "", "");
    resumed->on_delete = [&](FakeTask&) { asked.Open(); };
    ASSERT_TRUE(later->AddInPlaceOf(first->GetGuid(), resumed));
    ASSERT_TRUE(again.Wait());
    EXPECT_TRUE(later->DeleteTask(resumed->GetGuid(), FolderFate::Remove));
    ASSERT_TRUE(later.Settle());
    EXPECT_FALSE(HasFile("out/Alarms"));
}

TEST_F(DeletedFolder, ThatHoldsTheClientsDataStays)
{
    EXPECT_FALSE(details::RemoveOwnFolder(disk_.Text()));
    EXPECT_FALSE(details::RemoveOwnFolder(disk_.File("data")));
    EXPECT_FALSE(details::RemoveOwnFolder(disk_.File("out/../data/.")));
    EXPECT_FALSE(details::RemoveOwnFolder("/"));
    EXPECT_FALSE(details::RemoveOwnFolder(""));
    EXPECT_TRUE(HasFile("data"));
    EXPECT_TRUE(details::RemoveOwnFolder(Folder("database")));
    EXPECT_FALSE(HasFile("database"));
}

TEST(FolderClaims, AreCountedByFolderAndBelow)
{
    details::FolderClaims claims;
    claims.Add("/a/b");
    claims.Add("/a/b/");
    claims.Add("/a/b/c/");
    claims.Add("");
    EXPECT_FALSE(claims.IsFree("/a/b/", 2));
    EXPECT_TRUE(claims.IsFree("/a/b/", 3));
    EXPECT_TRUE(claims.IsFree("/a/b/c/", 1));
    EXPECT_TRUE(claims.IsFree("/a/bc/", 0));
    claims.Drop("/a/./b/");
    claims.Drop("/nobody/");
    EXPECT_TRUE(claims.IsFree("/a/b/", 2));
}
