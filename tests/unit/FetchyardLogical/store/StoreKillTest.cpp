// A client that is killed at any moment, and one that has a bad disk: what it had told before is there
// afterwards.
#include "StoreRig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QProcess>

#include <map>
#include <random>
#include <sstream>

using namespace FetchyardLogical;
using namespace FetchyardLogical::testing;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

constexpr int kMinute = 60000;  // milliseconds

QStringList Words(const std::vector<std::string>& words)
{
    QStringList list;
    for (const std::string& word : words)
        list << QString::fromStdString(word);
    return list;
}

// Runs the client to its end; what it told.
std::string RunClient(const std::vector<std::string>& words, int expected_end = 0)
{
    QProcess client;
    client.start(QString::fromStdString(words[0]), Words({words.begin() + 1, words.end()}));
    EXPECT_TRUE(client.waitForFinished(kMinute)) << words[0];
    EXPECT_EQ(client.exitCode(), expected_end) << client.readAllStandardError().toStdString();
    return client.readAllStandardOutput().toStdString();
}

// Runs the client until it has told so many lines, and kills it; all whole lines that it told.
std::vector<std::string> RunAndKill(const std::string& store, unsigned int seed, int lines)
{
    QProcess client;
    client.start(STORE_CLIENT, Words({"run", store, std::to_string(seed)}));
    QByteArray told;
    while (told.count('\n') < lines && client.waitForReadyRead(kMinute))
        told += client.readAllStandardOutput();
    client.kill();
    EXPECT_TRUE(client.waitForFinished(kMinute));
    told += client.readAllStandardOutput();
    std::vector<std::string> whole;
    for (const QByteArray& line : told.left(told.lastIndexOf('\n')).split('\n'))
        whole.push_back(line.toStdString());
    return whole;
}

// What a client that was killed has promised of one task.
struct Promise
{
    bool is_gone = false;
    int state = 0;
    int step = 0;
};

class Promises
{
public:
    // What is still promised by the last client; a later one goes on from there.
    void Hear(const std::vector<std::string>& lines)
    {
        for (const std::string& line : lines) {
            std::istringstream words(line);
            std::string what;
            std::string guid;
            words >> what >> guid;
            Promise& promise = by_guid_[guid];
            if (what == "state") {
                int state = 0;
                int step = 0;
                words >> state >> step;
                if (step >= promise.step)
                    promise = {false, state, step};
            } else if (what == "removed") {
                promise.is_gone = true;
            } else if (what == "replaced") {
                promise.is_gone = true;
                std::string resumed;
                words >> resumed;
                by_guid_[resumed];
            } else {
                EXPECT_EQ(what, "kept") << line;
            }
        }
    }

    void Check(const Found& found) const
    {
        for (const auto& [guid, promise] : by_guid_) {
            SCOPED_TRACE(guid);
            const auto task = found.tasks.find(guid);
            if (promise.is_gone) {
                EXPECT_EQ(task, found.tasks.end()) << "is there again";
                continue;
            }
            // What is not there any more may have been taken out just when the client was killed.
            if (task == found.tasks.end()) {
                lost_.push_back(guid);
                continue;
            }
            const int step = StepOf(found.texts.at(guid), promise.step + 10);
            EXPECT_GE(step, promise.step);
            if (step == promise.step && task->second.state != 0) {
                EXPECT_EQ(task->second.state, promise.state);
            }
        }
        EXPECT_LE(lost_.size(), removals_) << ::testing::PrintToString(lost_);
    }

    // A client does one removal or one taking of a place at a time, so a kill hides one at most.
    void CountKill() { ++removals_; }

private:
    // The step that the record was written at.
    static int StepOf(const std::string& text, int most)
    {
        for (int step = 0; step <= most; ++step) {
            if (text == RecordText(1, std::to_string(step)))
                return step;
        }
        return -1;
    }

    std::map<std::string, Promise> by_guid_;
    std::size_t removals_ = 0;
    mutable std::vector<std::string> lost_;
};

}  // namespace

TEST(StoreKill, NothingThatWasToldIsLostAtAnyOfManyKills)
{
    const TempFolder folder;
    const std::string store = folder.File("tasks.db");
    const unsigned int seed = std::random_device{}();
    std::mt19937 random(seed);
    for (int kill = 0; kill < 40; ++kill) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", kill " + std::to_string(kill));
        const int lines = 1 + static_cast<int>(random() % 200);
        Promises promises;
        promises.Hear(RunAndKill(store, static_cast<unsigned int>(random()), lines));
        promises.CountKill();
        const Found found = OpenAndLook(store);
        ASSERT_TRUE(found.is_open) << found.message;
        EXPECT_EQ(found.message, "");
        EXPECT_EQ(found.guids.size(), found.tasks.size()) << "a task is there twice";
        promises.Check(found);
        if (::testing::Test::HasFailure())
            return;
    }
}

TEST(StoreKill, TheLockGoesWithTheProcess)
{
    const TempFolder folder;
    const std::string store = folder.File("tasks.db");
    QProcess client;
    client.start(STORE_CLIENT, Words({"run", store, "1"}));
    ASSERT_TRUE(client.waitForReadyRead(kMinute));
    EXPECT_THAT(OpenAndLook(store).message, StartsWith("Another client has the task store"));
    EXPECT_THAT(RunClient({STORE_CLIENT, "open", store}),
                StartsWith("message Another client has the task store"));
    client.kill();
    ASSERT_TRUE(client.waitForFinished(kMinute));
    EXPECT_EQ(OpenAndLook(store).message, "");
}

TEST(StoreKill, AFullDiskIsToldOnceAndTheEngineGoesOnInMemory)
{
    const TempFolder folder;
    const std::string told = RunClient(
        {"unshare", "--user", "--map-root-user", "--mount", "sh", "-c",
         R"(mount -t tmpfs -o size=2m none "$1" && head -c 1m /dev/zero >"$1/ballast" && "$0" fill "$1/tasks.db" &&
                "$0" open "$1/tasks.db" && rm "$1/ballast" && echo "room again" && "$0" open "$1/tasks.db")",
         STORE_CLIENT, folder.Path().u8string()});
    EXPECT_THAT(told, HasSubstr("tasks.db can't be written, tasks are in memory only: "));
    EXPECT_THAT(told, HasSubstr("works on\n"));
    EXPECT_THAT(
        told, HasSubstr("tasks.db can't be written: "));  // by the second client, for the disk is still full
    EXPECT_THAT(told, HasSubstr("room again\nmessage \ntask "));
}

TEST(StoreKill, AReadOnlyDiskIsToldAndTheEngineWorksInMemory)
{
    const TempFolder folder;
    const std::string told = RunClient({"unshare", "--user", "--map-root-user", "--mount", "sh", "-c",
                                        R"(mount -t tmpfs -o ro none "$1" && exec "$0" open "$1/tasks.db")",
                                        STORE_CLIENT, folder.Path().u8string()});
    EXPECT_EQ(told, "message The task store " + folder.File("tasks.db") +
                        " can't be written: Read-only file system; tasks are in memory only.\n");
}
