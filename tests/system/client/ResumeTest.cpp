// What a client leaves that ended before its tasks did, and how the next one goes on.
#include "ClientFixture.h"

#include <gtest/gtest.h>
#include <QDateTime>
#include <QDir>
#include <QProcess>
#include <QRegularExpression>

#include <fstream>
#include <iterator>

using nlohmann::json;
using namespace SystemTest;

namespace {

constexpr char kReportPath[] = "/api/v1/events/report";
constexpr int kRows = 400;

std::string Content(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class ClientResume : public ClientFixture
{
protected:
    void SlowDown(const char* path, int milliseconds)
    {
        SetFault({{"Path", path}, {"Kind", "delay"}, {"DelayMs", milliseconds}, {"Count", -1}});
    }
    // A client that works on the requests is killed in their first page, with all of them handed over.
    void KillInTheFirstPage(const std::vector<json>& requests)
    {
        ClientRun onlooker;
        onlooker.UseData(client_.Path("data"));
        const std::size_t tasks = Tasks(onlooker).size() + requests.size();
        station_.ResetRequests();
        SlowDown(kReportPath, 20'000);
        client_.StartRequests(requests);
        ASSERT_TRUE(station_.WaitForRequests(kReportPath, 1));
        int looks = 0;
        while (Tasks(onlooker).size() < tasks)
            ASSERT_LT(++looks, 1000) << "not all of " << tasks << " tasks are in the list";
        client_.Kill();
        ASSERT_TRUE(client_.FinishOrDie().crashed);
        station_.ClearFaults();
    }
    json Report(const std::string& name) const { return ReportRequest(client_, name, 1, "none", kRows); }
    std::string Csv(const std::string& name) const
    {
        return client_.ExportFolder() + name + "/" + name + ".csv";
    }
    std::string Store() const { return client_.Path("data/tasks.db"); }
    json Tasks() { return Tasks(client_); }
    static json Tasks(ClientRun& client)
    {
        const auto result = client.Run({"tasks", "--json"});
        EXPECT_EQ(result.exit_code, 0) << result.output;
        return json::parse(result.output);
    }
    std::vector<std::string> StatesOfTasks()
    {
        std::vector<std::string> states;
        for (const json& task : Tasks())
            states.push_back(task["Name"].get<std::string>() + " " + task["State"].get<std::string>());
        return states;
    }
};

using Words = std::vector<std::string>;

}  // namespace

TEST_F(ClientResume, NoTasksAreToldBeforeTheFirstRun)
{
    EXPECT_EQ(client_.Run({"tasks"}).output, "no tasks\n");
    EXPECT_EQ(Tasks(), json::array());
    const auto result = client_.Run({"resume", "--all"});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_EQ(result.output, "no unfinished tasks\n");
}

TEST_F(ClientResume, TableShowsNumberNameStateErrorStartAndFolder)
{
    KillInTheFirstPage({Report("Lost"), Report("Waiting 大门")});
    const auto result = client_.Run({"tasks"});
    EXPECT_EQ(result.exit_code, 0);
    const std::string time = R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d)";
    const std::string folder = client_.ExportFolder();
    const QRegularExpression table(
        QString::fromStdString("^No  Name +State +Error  Started +Folder\n"
                               " 1  Lost +interrupted +" +
                               time + "  " + folder +
                               "Lost/\n"
                               " 2  Waiting 大门  interrupted +(" +
                               time + "|not yet) +" + folder + "Waiting 大门/\n$"));
    EXPECT_TRUE(table.match(QString::fromStdString(result.output)).hasMatch()) << result.output;
}

TEST_F(ClientResume, ListForProgramsTellsAllThatIsKnown)
{
    KillInTheFirstPage({Report("Lost")});
    const json tasks = Tasks();
    ASSERT_EQ(tasks.size(), 1u);
    const json& task = tasks[0];
    EXPECT_EQ(task["Number"], 1);
    EXPECT_EQ(task["Guid"].get<std::string>().size(), 36u);
    EXPECT_EQ(task["State"], "interrupted");
    EXPECT_EQ(task["StateNumber"], 1);
    EXPECT_EQ(task["IsUnfinished"], true);
    EXPECT_EQ(task["Record"], "export");
    EXPECT_EQ(task["ErrorText"], "");
    EXPECT_TRUE(
        QDateTime::fromString(QString::fromStdString(task["HandedOver"]), Qt::ISODateWithMs).isValid());
    EXPECT_TRUE(task["Ended"].is_null());
    EXPECT_EQ(task["Folder"], client_.ExportFolder() + "Lost/");
}

TEST_F(ClientResume, InterruptedExportsComeBackInTheirPlacesAndFinish)
{
    ASSERT_EQ(client_.RunRequests({Report("First")}).exit_code, 0);
    KillInTheFirstPage({Report("Second"), Report("Third")});
    const json before = Tasks();
    const auto result = client_.Run({"resume", "--all"});
    EXPECT_EQ(result.exit_code, 0) << result.output;
    ExpectWords(result, "Second: brought back\n  it is not packed, and not entered as evidence");
    ExpectWords(result, "Third: finished\n  wrote " + Csv("Third"));
    EXPECT_EQ(Content(Csv("Second")), Content(Csv("First")));
    EXPECT_EQ(StatesOfTasks(), (Words{"First finished", "Second finished", "Third finished"}));
    EXPECT_EQ(Tasks()[0]["Guid"], before[0]["Guid"]);
    EXPECT_NE(Tasks()[1]["Guid"], before[1]["Guid"]);
}

TEST_F(ClientResume, NumberOrGuidBringsOneTaskBackAndLeavesTheOthers)
{
    KillInTheFirstPage({Report("A"), Report("B"), Report("C")});
    const std::string guid = Tasks()[2]["Guid"];
    EXPECT_EQ(client_.Run({"resume", "1"}).exit_code, 0);
    EXPECT_EQ(StatesOfTasks(), (Words{"A finished", "B interrupted", "C interrupted"}));
    EXPECT_EQ(client_.Run({"resume", QString::fromStdString(guid)}).exit_code, 0);
    EXPECT_EQ(StatesOfTasks(), (Words{"A finished", "B interrupted", "C finished"}));
}

TEST_F(ClientResume, WordsThatNameNothingToGoOnWithAreRefusedBeforeAnythingBegins)
{
    ASSERT_EQ(client_.RunRequests({Report("Done")}).exit_code, 0);
    KillInTheFirstPage({Report("Lost")});
    auto result = client_.Run({"resume", "2", "1"});
    EXPECT_EQ(result.exit_code, 2);
    ExpectWords(result, "Done is finished: there is nothing to go on with");
    result = client_.Run({"resume", "2", "7"});
    EXPECT_EQ(result.exit_code, 2);
    ExpectWords(result, "there is no task 7; fetchyard tasks lists them");
    result = client_.Run({"resume"});
    EXPECT_EQ(result.exit_code, 2);
    ExpectWords(result, "which tasks? --all, or numbers as fetchyard tasks lists them");
    EXPECT_EQ(StatesOfTasks(), (Words{"Done finished", "Lost interrupted"}));
}

TEST_F(ClientResume, NextRunSaysWhatIsUnfinishedAndHowToGoOn)
{
    KillInTheFirstPage({Report("Lost")});
    const auto result = client_.RunRequests({Report("Next")});
    EXPECT_EQ(result.exit_code, 0) << result.output;
    ExpectWords(result, "1 task of an earlier run is unfinished - to go on: fetchyard resume --all --data " +
                            client_.Path("data") + " --station " + Address() + " --save " +
                            client_.Path("out") + "\n");
}

TEST_F(ClientResume, InterruptSaysHowToGoOnAndThatDoes)
{
    SlowDown(kReportPath, 300);
    client_.StartRequests({Report("Stopped")});
    ASSERT_TRUE(client_.WaitForOutput("[1-9] page"));
    client_.Interrupt();
    const auto stopped = client_.Finish();
    EXPECT_EQ(stopped.exit_code, 1);
    ExpectWords(stopped, "\nto go on: fetchyard resume --all --data " + client_.Path("data") + " --station " +
                             Address() + " --save " + client_.Path("out") + "\n");
    EXPECT_EQ(StatesOfTasks(), (Words{"Stopped stopped"}));
    station_.ClearFaults();
    const auto resumed = client_.Run({"resume", "--all"});
    EXPECT_EQ(resumed.exit_code, 0) << resumed.output;
    ExpectWords(resumed, "its report goes on with page ");
    EXPECT_EQ(StatesOfTasks(), (Words{"Stopped finished"}));
}

TEST_F(ClientResume, InterruptNamesItsTasksWhereOthersAreUnfinishedToo)
{
    KillInTheFirstPage({Report("Lost")});
    SlowDown(kReportPath, 300);
    client_.StartRequests({Report("Stopped")});
    ASSERT_TRUE(client_.WaitForOutput("Stopped +running +[1-9] page"));
    client_.Interrupt();
    const auto stopped = client_.Finish();
    ExpectWords(stopped,
                "\nto go on: fetchyard resume " + Tasks()[1]["Guid"].get<std::string>() + " --data ");
}

TEST_F(ClientResume, InterruptOfAResumeSaysHowToGoOnToo)
{
    KillInTheFirstPage({Report("Twice")});
    SlowDown(kReportPath, 300);
    client_.Start({"resume", "1"});
    ASSERT_TRUE(client_.WaitForOutput("Twice +running +[1-9] page"));
    client_.Interrupt();
    const auto stopped = client_.Finish();
    EXPECT_EQ(stopped.exit_code, 1);
    ExpectWords(stopped, "\nto go on: fetchyard resume --all --data ");
    EXPECT_EQ(StatesOfTasks(), (Words{"Twice stopped"}));
}

TEST_F(ClientResume, SingleFilesLeaveNoRecordAndAreListedAsInterrupted)
{
    SlowDown("/pictures/", 2000);
    const json file = {{"FileType", 0},
                       {"SavePath", client_.ExportFolder() + "list"},
                       {"FileName", "a.jpg"},
                       {"RequestUrl", "/pictures/event-1.jpg"}};
    client_.StartRequests({{{"FileRequestList", {{{"FileRequest", file}}}}}});
    ASSERT_TRUE(client_.WaitForOutput("a.jpg +running"));
    client_.Kill();
    ASSERT_TRUE(client_.FinishOrDie().crashed);
    EXPECT_EQ(Tasks()[0]["Record"], "none");
    EXPECT_EQ(StatesOfTasks(), (Words{"a.jpg interrupted"}));
    const auto result = client_.Run({"resume", "--all"});
    EXPECT_EQ(result.exit_code, 1);
    ExpectWords(result,
                "a.jpg: interrupted; single files leave no record to go on from: run the request again");
    ExpectWords(
        client_.RunRequests({Report("Next")}),
        "1 task of an earlier run is unfinished and left no record to go on from; see fetchyard tasks");
}

TEST_F(ClientResume, PictureThatWasNotFetchedFailsForWantOfAName)
{
    json request = Report("Pictures");
    Section(request,
            "DownloadFiles")["ImageDownload"] = {{{"Imageurl", "/pictures/event-1.jpg"}, {"ImageName", "a"}}};
    SlowDown("/pictures/", 2000);
    client_.StartRequests({request});
    ASSERT_TRUE(client_.WaitForOutput("Pictures +running"));
    client_.Kill();
    ASSERT_TRUE(client_.FinishOrDie().crashed);
    station_.ClearFaults();
    const auto result = client_.Run({"resume", "--all"});
    EXPECT_EQ(result.exit_code, 1);
    ExpectWords(result, "1 picture of its list comes back without a name and can't be written");
    ExpectWords(result, "Pictures: failed: ");
    ExpectWords(result, "what has no name failed: ");
    EXPECT_TRUE(Exists(Csv("Pictures")));
}

TEST_F(ClientResume, PersonPicturesBeginAnewInTheSaveFolderOfNow)
{
    json search = {{"RequestMethod", "POST"}, {"RequestAPI", "/api/v1/persons/report"}};
    search["RequestCondition"] = json({{"PageIndex", 1}, {"PageSize", 20}, {"PicturesOfPerson", 1}}).dump();
    const json node = {
        {"PicDownloadRequestNode", search}, {"ZipEncodingPassword", "s3cret"}, {"ZipName", "Persons"}};
    SlowDown("/api/v1/persons/report", 2000);
    client_.StartRequests({{{"FileExportRequest", {{"FileExportType", 2}, {"PersonExportPicNode", node}}}}});
    ASSERT_TRUE(station_.WaitForRequests("/api/v1/persons/report", 1));
    client_.Kill();
    ASSERT_TRUE(client_.FinishOrDie().crashed);
    station_.ClearFaults();
    client_.UseSave("elsewhere");
    const std::string elsewhere = client_.Path("elsewhere");
    const auto result = client_.Run({"resume", "--all"});
    EXPECT_EQ(result.exit_code, 0) << result.output;
    ExpectWords(result, "it begins anew, in the save folder of now");
    ExpectWords(result, "wrote " + elsewhere + "/Persons/Persons.zip");
    EXPECT_EQ(Tasks()[0]["Folder"], elsewhere + "/Persons/");
}

TEST_F(ClientResume, RemoveTakesTasksOffTheListAndLeavesTheirFiles)
{
    ASSERT_EQ(client_.RunRequests({Report("Done"), Report("Kept")}).exit_code, 0);
    KillInTheFirstPage({Report("Lost")});
    auto result = client_.Run({"remove", "1"});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_EQ(result.output, "Done: off the list\n");
    EXPECT_EQ(StatesOfTasks(), (Words{"Kept finished", "Lost interrupted"}));
    result = client_.Run({"remove", "--finished"});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_EQ(result.output, "1 finished task off the list\n");
    EXPECT_EQ(StatesOfTasks(), (Words{"Lost interrupted"}));
    EXPECT_EQ(client_.Run({"remove", "1"}).output, "Lost: off the list\n");
    EXPECT_EQ(Tasks(), json::array());
    EXPECT_TRUE(Exists(Csv("Done")));
    EXPECT_TRUE(Exists(Csv("Kept")));
}

TEST_F(ClientResume, RemoveOfATaskThatIsNotThereRemovesNothing)
{
    ASSERT_EQ(client_.RunRequests({Report("Done")}).exit_code, 0);
    auto result = client_.Run({"remove", "1", "2"});
    EXPECT_EQ(result.exit_code, 2);
    ExpectWords(result, "there is no task 2; fetchyard tasks lists them");
    result = client_.Run({"remove"});
    EXPECT_EQ(result.exit_code, 2);
    ExpectWords(result, "which tasks? --finished, or numbers as fetchyard tasks lists them");
    EXPECT_EQ(StatesOfTasks(), (Words{"Done finished"}));
}

TEST_F(ClientResume, SecondClientOnTheDataFolderWorksAndKeepsNothing)
{
    SlowDown(kReportPath, 60'000);
    client_.StartRequests({Report("First")});
    ASSERT_TRUE(station_.WaitForRequests(kReportPath, 1));
    station_.ClearFaults();  // for requests that come from now on
    ClientRun second;
    second.UseStation(Address());
    second.UseData(client_.Path("data"));
    const std::string taken = "Another client has the task store " + Store() + " open; ";
    auto result = second.RunRequests({ReportRequest(second, "Second", 1, "none", 20)});
    EXPECT_EQ(result.exit_code, 0) << result.output;
    ExpectWords(result, taken);
    EXPECT_TRUE(Exists(second.ExportFolder() + "Second/Second.csv"));
    for (const QStringList& words : {QStringList{"resume", "--all"}, QStringList{"remove", "--finished"}}) {
        result = second.Run(words);
        EXPECT_EQ(result.exit_code, 1);
        ExpectWords(result, taken);
    }
    EXPECT_EQ(second.Run({"tasks"}).exit_code, 0);
    client_.Kill();
    EXPECT_TRUE(client_.FinishOrDie().crashed);
    EXPECT_EQ(StatesOfTasks(), (Words{"First interrupted"}));
}

TEST_F(ClientResume, DamagedStoreIsSetAsideAndTheRunGoesOn)
{
    ASSERT_EQ(client_.RunRequests({Report("Before")}).exit_code, 0);
    std::ofstream(Store(), std::ios::binary | std::ios::trunc) << std::string(9000, 'x');
    EXPECT_EQ(client_.Run({"tasks"}).exit_code, 1);
    const auto result = client_.RunRequests({Report("After")});
    EXPECT_EQ(result.exit_code, 0) << result.output;
    ExpectWords(result, "The task store " + Store() + " was damaged");
    EXPECT_EQ(Content(Store() + ".damaged-1"), std::string(9000, 'x'));
    const Words states = StatesOfTasks();
    EXPECT_EQ(states.back(), "After finished");
}

TEST_F(ClientResume, StoreOfANewerVersionIsLeftAsItIs)
{
    ASSERT_EQ(client_.RunRequests({Report("Before")}).exit_code, 0);
    QProcess python;
    python.start(
        "/usr/bin/python3",
        {"-c", "import sqlite3,sys; c=sqlite3.connect(sys.argv[1]); c.execute('pragma user_version=999')",
         QString::fromStdString(Store())});
    ASSERT_TRUE(python.waitForFinished());
    ASSERT_EQ(python.exitCode(), 0) << python.readAllStandardError().toStdString();
    const std::string before = Content(Store());
    const std::string newer = "is of a newer version and left as it is";
    auto result = client_.RunRequests({Report("After")});
    EXPECT_EQ(result.exit_code, 0) << result.output;
    ExpectWords(result, newer);
    result = client_.Run({"resume", "--all"});
    EXPECT_EQ(result.exit_code, 1);
    ExpectWords(result, newer);
    EXPECT_EQ(client_.Run({"tasks"}).exit_code, 1);
    EXPECT_EQ(client_.Run({"remove", "--finished"}).exit_code, 1);
    EXPECT_EQ(Content(Store()), before);
}

TEST_F(ClientResume, StoreThatCantBeWrittenLeavesTheRunInMemory)
{
    ASSERT_TRUE(QDir().mkpath(QString::fromStdString(Store())));
    auto result = client_.RunRequests({Report("Kept nowhere")});
    EXPECT_EQ(result.exit_code, 0) << result.output;
    ExpectWords(result, "The task store " + Store() + " can't be written: ");
    result = client_.Run({"resume", "--all"});
    EXPECT_EQ(result.exit_code, 1);
    ExpectWords(result, "can't be written: ");
}

TEST_F(ClientResume, InterruptWithoutAStorePromisesNothing)
{
    ASSERT_TRUE(QDir().mkpath(QString::fromStdString(Store())));
    SlowDown(kReportPath, 300);
    client_.StartRequests({Report("Stopped")});
    ASSERT_TRUE(client_.WaitForOutput("[1-9] page"));
    client_.Interrupt();
    EXPECT_EQ(client_.Finish().output.find("to go on"), std::string::npos);
}

TEST_F(ClientResume, DiscardedExportIsListedAsDeletedAndItsFolderIsGone)
{
    SlowDown(kReportPath, 300);
    client_.UseOption("--discard");
    client_.StartRequests({Report("Unwanted")});
    ASSERT_TRUE(client_.WaitForOutput("[1-9] page"));
    client_.Interrupt();
    const auto result = client_.Finish();
    ExpectWords(result, "Unwanted: deleted");
    EXPECT_FALSE(Exists(client_.ExportFolder() + "Unwanted"));
    EXPECT_EQ(result.output.find("to go on"), std::string::npos) << result.output;
}

TEST_F(ClientResume, PasswordCheckedExportComesBackOnce)
{
    const QString key = QString::fromStdString(client_.Path("shared.key"));
    ASSERT_EQ(client_.Run({"share-key", key}).exit_code, 0);
    Trust(key.toStdString());
    json request = Report("Checked");
    Section(request, "ExportFileParam")["CheckPasswordRequest"] = {
        {"UserName", "operator"}, {"PassWord", "fetchyard"}, {"PasswordType", 0}, {"LoginModel", 1}};
    client_.UseOption("--encipher");
    KillInTheFirstPage({request});
    client_.DropOptions();
    SlowDown(kReportPath, 2000);
    station_.ResetRequests();
    client_.Start({"resume", "--all"});
    ASSERT_TRUE(station_.WaitForRequests(kReportPath, 1));
    client_.Kill();
    const auto first = client_.FinishOrDie();
    ExpectWords(first,
                "it is checked by password: the account is that of --user now, and it can't be brought back");
    station_.ClearFaults();
    const auto second = client_.Run({"resume", "--all"});
    EXPECT_EQ(second.exit_code, 1);
    ExpectWords(second, "it is checked by password and was brought back before: what it asked for is lost");
    ExpectWords(second, "Checked: failed: ");
}
