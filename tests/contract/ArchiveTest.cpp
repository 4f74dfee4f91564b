#include "FetchyardBussiness/DeterminantWriteFile/Compress.h"
#include "support/ExportTest.h"

#include <filesystem>
#include <fstream>

namespace contract {
namespace {

class ArchiveTest : public ExportTest
{
protected:
    ArchiveTest()
    {
        fakes::TheScript().public_data_path = Folder() + "public/";
        std::filesystem::create_directories(Folder() + "public/Fetchyard");
        Settings().str_request_api = "";
        Settings().is_need_compress_zip = true;
        std::ofstream(Folder() + "Alarm/Alarm.csv") << "report";
    }

    // What the archiver would leave.
    void ArchiverWorks()
    {
        fakes::OnCall("LaunchApp", 1,
                      [this] { std::ofstream(Folder() + "public/Fetchyard/Alarm.zip") << "zip"; });
    }

    // The part of a run from the archive step on.
    std::string Step()
    {
        const std::string trace = Run();
        const auto start = trace.find("log3  begin to  compress");
        return start == std::string::npos ? "no archive step: " + trace : "\n" + trace.substr(start);
    }
};

TEST_F(ArchiveTest, ArchiveTakesThePlaceOfTheFolder)
{
    ArchiverWorks();
    EXPECT_EQ(Step(), R"(
log3  begin to  compress, file name: Alarm, file save path: <tmp>/Alarm/.
NQX_AccessFile 7za.exe 0
DirectoryExists <tmp>/Alarm/
log3 Excute command:
LaunchApp 7za.exe a -tzip "<tmp>/public/Fetchyard/Alarm.zip" "<tmp>/Alarm//*" wait hide
RemoveDirRecursively <tmp>/Alarm/
DirectoryExists <tmp>/Alarm/ -> missing
MakeFullDir <tmp>/Alarm/
CopyFileW <tmp>/public/Fetchyard/Alarm.zip <tmp>/Alarm/Alarm.zip 0
DeleteFileW <tmp>/public/Fetchyard/Alarm.zip
log3 CDeterminantWriteFileTask:: DoCompressWork  state = 0·
log3 CDeterminantWriteFileTask::Exec() success·
state 4 (0,0)
log3 Download export result, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
)");
    EXPECT_TRUE(Exists("Alarm/Alarm.zip"));
    EXPECT_FALSE(Exists("Alarm/Alarm.csv"));
    EXPECT_FALSE(Exists("public/Fetchyard/Alarm.zip"));
}

TEST_F(ArchiveTest, ProgressBehindTheStepIsTheSizeOfTheArchive)
{
    std::ofstream(Folder() + "Alarm/big") << std::string(5000, 'x');
    ArchiverWorks();
    Run();
    EXPECT_EQ(task_->GetProgress().GetVal_finished_size(), 1U);
}

TEST_F(ArchiveTest, PasswordStandsOnTheLineAsItIs)
{
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"", R"(7za.exe a -tzip "<tmp>/z.zip" "<tmp>/Alarm/*")"},
        {"secret", R"(7za.exe a -tzip -p"secret" "<tmp>/z.zip" "<tmp>/Alarm/*")"},
        {"a b'$", R"(7za.exe a -tzip -p"a b'$" "<tmp>/z.zip" "<tmp>/Alarm/*")"},
        {"a\"b", R"(7za.exe a -tzip -p"a"b" "<tmp>/z.zip" "<tmp>/Alarm/*")"},
        {"%s", R"(7za.exe a -tzip -p"%s" "<tmp>/z.zip" "<tmp>/Alarm/*")"},
    };
    for (const auto& [password, line] : rows) {
        EXPECT_EQ(Compress::CompressFolder(Folder() + "z.zip", Folder() + "Alarm", password), 1);
        EXPECT_EQ(Lines(Trace(), "LaunchApp"), "\nLaunchApp " + line + " wait hide\n");
    }
}

TEST_F(ArchiveTest, PasswordNeverReachesTheLog)
{
    Settings().str_zip_password = "secret";
    EXPECT_EQ(Lines(Run(), "log").find("secret"), std::string::npos);
}

TEST_F(ArchiveTest, LineIsTurnedIntoTheCodePage)
{
    fakes::TheScript().local_mark = "local:";
    Compress::CompressFolder(Folder() + "z.zip", Folder() + "Alarm", "");
    EXPECT_EQ(Lines(Trace(), "LaunchApp"),
              "\nLaunchApp local:7za.exe a -tzip \"<tmp>/z.zip\" \"<tmp>/Alarm/*\" wait hide\n");
}

TEST_F(ArchiveTest, FolderToRemoveIsTurnedIntoTheCodePage)
{
    ArchiverWorks();
    fakes::TheScript().local_mark = "/nowhere";
    EXPECT_EQ(Lines(Run(), "RemoveDirRecursively"), "\nRemoveDirRecursively /nowhere<tmp>/Alarm/\n");
}

TEST_F(ArchiveTest, MissingArchiverLeavesTheFolderAndTheExportFinishes)
{
    fakes::FailCalls("NQX_AccessFile", 1, 1);
    EXPECT_EQ(Step(), R"(
log3  begin to  compress, file name: Alarm, file save path: <tmp>/Alarm/.
NQX_AccessFile 7za.exe 0 -> fails
log5 [Compress::CompressFolder] 7Za Execute Not Exist
log3 compress zip failed. file_new_path =<tmp>/public/Fetchyard/Alarm.zip
log3 CDeterminantWriteFileTask:: DoCompressWork  state = 0·
log3 CDeterminantWriteFileTask::Exec() success·
state 4 (0,0)
log3 Download export result, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
)");
    EXPECT_TRUE(Exists("Alarm/Alarm.csv"));
}

TEST_F(ArchiveTest, FailedArchiverLeavesTheFolderAndTheExportFinishes)
{
    fakes::FailCalls("LaunchApp", 1, 1);
    EXPECT_EQ(Step(), R"(
log3  begin to  compress, file name: Alarm, file save path: <tmp>/Alarm/.
NQX_AccessFile 7za.exe 0
DirectoryExists <tmp>/Alarm/
log3 Excute command:
LaunchApp 7za.exe a -tzip "<tmp>/public/Fetchyard/Alarm.zip" "<tmp>/Alarm//*" wait hide -> fails
log5 [Compress::CompressFolder] Compress Execute Fail
log3 compress zip failed. file_new_path =<tmp>/public/Fetchyard/Alarm.zip
log3 CDeterminantWriteFileTask:: DoCompressWork  state = 0·
log3 CDeterminantWriteFileTask::Exec() success·
state 4 (0,0)
log3 Download export result, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
)");
    EXPECT_TRUE(Exists("Alarm/Alarm.csv"));
}

TEST_F(ArchiveTest, ResultsOfTheArchiverCall)
{
    EXPECT_EQ(Compress::CompressFolder(Folder() + "z.zip", Folder() + "Alarm", ""), 1);
    fakes::FailCalls("LaunchApp", 2, 1);
    EXPECT_EQ(Compress::CompressFolder(Folder() + "z.zip", Folder() + "Alarm", ""), 4);
    fakes::TheScript().access_result = -1;
    EXPECT_EQ(Compress::CompressFolder(Folder() + "z.zip", Folder() + "Alarm", ""), 2);
}

TEST_F(ArchiveTest, FolderToPackIsMadeIfItIsMissing)
{
    EXPECT_EQ(Compress::CompressFolder(Folder() + "z.zip", Folder() + "new", ""), 1);
    EXPECT_TRUE(Exists("new"));
}

TEST_F(ArchiveTest, FolderToPackThatCannotBeMadeIsLoggedAndTheArchiverStarts)
{
    fakes::FailCalls("MakeFullDir", 1, 1);
    EXPECT_EQ(Compress::CompressFolder(Folder() + "z.zip", Folder() + "new", ""), 1);
    EXPECT_EQ(Trace(), R"(
NQX_AccessFile 7za.exe 0
DirectoryExists <tmp>/new -> missing
MakeFullDir <tmp>/new -> fails
log5  create file pic_down_path_dir =<tmp>/new  failed.  task failed
log3 Excute command:
LaunchApp 7za.exe a -tzip "<tmp>/z.zip" "<tmp>/new/*" wait hide
)");
}

TEST_F(ArchiveTest, FolderThatCannotBeMadeAgainLeavesTheArchiveInTheScratchFolder)
{
    ArchiverWorks();
    fakes::FailCalls("MakeFullDir", 1, 1);
    EXPECT_EQ(Step(), R"(
log3  begin to  compress, file name: Alarm, file save path: <tmp>/Alarm/.
NQX_AccessFile 7za.exe 0
DirectoryExists <tmp>/Alarm/
log3 Excute command:
LaunchApp 7za.exe a -tzip "<tmp>/public/Fetchyard/Alarm.zip" "<tmp>/Alarm//*" wait hide
RemoveDirRecursively <tmp>/Alarm/
DirectoryExists <tmp>/Alarm/ -> missing
MakeFullDir <tmp>/Alarm/ -> fails
SetLastError (20,3215)
log5   DoCompressWork create file path =<tmp>/Alarm/  failed.  task failed
log3 CDeterminantWriteFileTask:: DoCompressWork  state = 0·
log3 CDeterminantWriteFileTask::Exec() success·
state 4 (20,3215)
log3 Download export result, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
)");
    EXPECT_TRUE(Exists("public/Fetchyard/Alarm.zip"));
}

TEST_F(ArchiveTest, FailedCopyIsLoggedAndTheScratchArchiveIsDeletedAllTheSame)
{
    ArchiverWorks();
    fakes::FailCalls("CopyFileW", 1, 1);
    EXPECT_EQ(Step(), R"(
log3  begin to  compress, file name: Alarm, file save path: <tmp>/Alarm/.
NQX_AccessFile 7za.exe 0
DirectoryExists <tmp>/Alarm/
log3 Excute command:
LaunchApp 7za.exe a -tzip "<tmp>/public/Fetchyard/Alarm.zip" "<tmp>/Alarm//*" wait hide
RemoveDirRecursively <tmp>/Alarm/
DirectoryExists <tmp>/Alarm/ -> missing
MakeFullDir <tmp>/Alarm/
CopyFileW <tmp>/public/Fetchyard/Alarm.zip <tmp>/Alarm/Alarm.zip 0 -> fails
log5 copy zip failed. file_new_path =<tmp>/Alarm/Alarm.zip
DeleteFileW <tmp>/public/Fetchyard/Alarm.zip
log3 CDeterminantWriteFileTask:: DoCompressWork  state = 0·
log3 CDeterminantWriteFileTask::Exec() success·
state 4 (0,0)
log3 Download export result, file name: Alarm, file guid: task-1, file save path: <tmp>/Alarm/.
)");
}

TEST_F(ArchiveTest, FolderThatStillExistsIsNotMadeAgain)
{
    ArchiverWorks();
    fakes::FailCalls("RemoveDirRecursively", 1, 1);
    EXPECT_EQ(Lines(Run(), "MakeFullDir"), "\n");
    EXPECT_TRUE(Exists("Alarm/Alarm.zip"));
}

TEST_F(ArchiveTest, PathThatIsNotUtf8IsLoggedAndTheTargetIsConverted)
{
    const std::string folder = Folder() + "\xFF/";
    std::filesystem::create_directory(folder);
    Settings().str_export_file_path = folder;
    fakes::TheScript().utf8_mark = "utf8:";
    ArchiverWorks();
    const std::string trace = Run();
    EXPECT_NE(trace.find("\nlog3  file name is utf8  file = <tmp>/\xFF/.\n"), std::string::npos);
    EXPECT_NE(trace.find("\nCopyFileW <tmp>/public/Fetchyard/Alarm.zip utf8:<tmp>/\xFF/Alarm.zip 0\n"),
              std::string::npos);
}

TEST_F(ArchiveTest, ExportThatAsksForNoArchiveHasNoStep)
{
    Settings().is_need_compress_zip = false;
    Run();
    EXPECT_EQ(fakes::CountOf("NQX_AccessFile"), 0);
    EXPECT_TRUE(Exists("Alarm/Alarm.csv"));
}

TEST_F(ArchiveTest, CollectedFailuresDoNotKeepTheArchiveFromBeingMade)
{
    Settings().is_continue_dowinloading = true;
    AddPicture("a.jpg", "/bad");
    fakes::TheScript().pictures["/bad"] = {{21, 404}, ""};
    ArchiverWorks();
    EXPECT_EQ(States(Run()), "1 5 (21,404)");
    EXPECT_TRUE(Exists("Alarm/Alarm.zip"));
}

TEST_F(ArchiveTest, WriterOfATypeIsMadeOnce)
{
    FetchyardLogical::ExportDataNode node;
    node.export_file_type = 1;
    node.file_name = "R";
    node.file_save_path = Folder();
    node.vec_sheets = {Sheet(1, {})};
    EXPECT_TRUE(task_->WriteDataToFile(node));
    EXPECT_TRUE(task_->WriteDataToFile(node));
    EXPECT_EQ(Lines(Trace(), "log3 CDeterminantWriteFileTask"), R"(
log3 CDeterminantWriteFileTask::WriteDataToFile excel_data.export_file_type = 1
log3 CDeterminantWriteFileTask::WriteDataToFile return = 1
log3 CDeterminantWriteFileTask::WriteDataToFile return = 1
)");
}

TEST_F(ArchiveTest, TypesWithoutAWriterAreRefusedAndRememberedSo)
{
    FetchyardLogical::ExportDataNode node;
    node.vec_sheets = {Sheet(1, {})};
    for (const int type : {4, 5, 6, -1}) {
        node.export_file_type = type;
        EXPECT_FALSE(task_->WriteDataToFile(node));
        EXPECT_FALSE(task_->WriteDataToFile(node));
        EXPECT_EQ(Trace(),
                  "\nlog3 CDeterminantWriteFileTask::WriteDataToFile excel_data.export_file_type = " +
                      std::to_string(type) +
                      "\nlog3 CDeterminantWriteFileTask::WriteDataToFile return false\n"
                      "log3 CDeterminantWriteFileTask::WriteDataToFile return false\n");
    }
}

TEST_F(ArchiveTest, FolderOfTheProgram)
{
    EXPECT_EQ(task_->GetPdfExePath(), "/opt/client/");
    fakes::FailCalls("GetCurExePath", 2, 1);
    EXPECT_EQ(task_->GetPdfExePath(), "");
    EXPECT_EQ(Trace(), "\nGetCurExePath 260\nGetCurExePath 260 -> fails\nlog5 Get exe path failed.·\n");
}

}  // namespace
}  // namespace contract
