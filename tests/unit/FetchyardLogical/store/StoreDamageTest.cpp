// Stores that are damaged, cut, newer, somebody's or nobody's: what is left of them is found, and nothing is
// lost without a word.
#include "Store/ChangeText.h"
#include "Store/Journal.h"
#include "Store/LastChanges.h"
#include "Store/Sqlite.h"
#include "Store/TaskTable.h"
#include "StoreRig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <future>
#include <random>

using namespace FetchyardLogical;
using namespace FetchyardLogical::testing;
using details::Change;
using details::Changes;
using details::Journal;
using details::LastChanges;
using details::Sqlite;
using details::StoredTask;
using details::TaskStore;
using details::TaskTable;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace fs = std::filesystem;

namespace {

Change Put(std::uint64_t place, ZellTaskKit::DownloadState state = ZellTaskKit::Downloading)
{
    Change change;
    change.task.guid = "guid-" + std::to_string(place);
    change.task.name = "Task " + std::to_string(place);
    change.task.folder = "/exports/" + std::to_string(place) + "/";
    change.task.place = place;
    change.task.queue_order = place;
    change.task.state = state;
    change.resume_text = std::make_shared<const std::string>("record " + std::to_string(place));
    return change;
}

Change Update(Change change, ZellTaskKit::DownloadState state, const std::string& text)
{
    change.kind = Change::Kind::Update;
    change.task.state = state;
    change.resume_text = std::make_shared<const std::string>(text);
    return change;
}

class DamagedStore : public ::testing::Test
{
protected:
    // A store of so many tasks that was closed in order.
    void Make(std::uint64_t tasks)
    {
        const TaskStore::Opening opening = TaskStore::Open(path_);
        ASSERT_TRUE(opening.store) << opening.message;
        for (std::uint64_t place = 1; place <= tasks; ++place)
            opening.store->Keep({Put(place, ZellTaskKit::Finished)});
    }

    // The files of a store in a folder of their own, as somebody finds them who comes by now.
    std::string Copy()
    {
        copies_.push_back(std::make_unique<TempFolder>());
        for (const auto& entry : fs::directory_iterator(folder_.Path()))
            fs::copy_file(entry.path(), copies_.back()->Path() / entry.path().filename());
        return copies_.back()->File("tasks.db");
    }

    TempFolder folder_;
    std::vector<std::unique_ptr<TempFolder>> copies_;
    const std::string path_ = folder_.File("tasks.db");
};

}  // namespace

TEST_F(DamagedStore, AJournalCutAtEveryByteGivesWhatWasWholeByThen)
{
    // Kept without the writer's thread coming by: all of it stands in the journal.
    std::string reason;
    Make(0);
    Journal journal(path_);
    ASSERT_TRUE(journal.Open(reason)) << reason;
    std::vector<std::size_t> ends;
    const Changes steps = {Put(1), Put(2), Update(Put(1), ZellTaskKit::Finished, "done"),
                           Update(Put(2), ZellTaskKit::TranscodingBegin, "half")};
    for (std::size_t i = 0; i < steps.size(); ++i) {
        ASSERT_TRUE(journal.Append(i + 1, 0, details::WriteChanges({steps[i]}), reason));
        ends.push_back(ReadBytes(Journal::FileOf(path_, 0)).size());
    }
    const std::string whole = ReadBytes(Journal::FileOf(path_, 0));
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        SCOPED_TRACE("cut to " + std::to_string(size));
        WriteBytes(Journal::FileOf(path_, 0), whole.substr(0, size));
        const std::vector<Journal::Frame> frames = Journal::Read(path_);
        const auto expected =
            std::count_if(ends.begin(), ends.end(), [size](std::size_t end) { return end <= size; });
        ASSERT_EQ(frames.size(), static_cast<std::size_t>(expected));
        EXPECT_FALSE(Journal::HasGap(frames, 0));
        // The whole way where the number of changes is a new one.
        if (std::find(ends.begin(), ends.end(), size) == ends.end() &&
            std::find(ends.begin(), ends.end(), size + 1) == ends.end())
            continue;
        const Found found = OpenAndLook(Copy());
        ASSERT_TRUE(found.is_open);
        EXPECT_EQ(found.message, "");
        EXPECT_EQ(found.tasks.size(), std::min<std::size_t>(2, frames.size()));
        if (size >= ends[0]) {
            EXPECT_EQ(found.tasks.at("guid-1").state, size >= ends[2] ? 4 : 1);
            EXPECT_EQ(found.texts.at("guid-1"), size >= ends[2] ? "done" : "record 1");
        }
        if (size >= ends[1]) {
            EXPECT_EQ(found.texts.at("guid-2"), size >= ends[3] ? "half" : "record 2");
        }
        copies_.clear();
    }
}

TEST_F(DamagedStore, AJournalWithAnyByteFlippedGivesTheRestAndSaysSo)
{
    std::string reason;
    Make(0);
    Journal journal(path_);
    ASSERT_TRUE(journal.Open(reason)) << reason;
    std::size_t second_frame = 0;
    for (std::uint64_t place = 1; place <= 3; ++place) {
        if (place == 2)
            second_frame = ReadBytes(Journal::FileOf(path_, 0)).size();
        ASSERT_TRUE(journal.Append(place, 0, details::WriteChanges({Put(place)}), reason));
    }
    const std::string whole = ReadBytes(Journal::FileOf(path_, 0));
    const std::size_t third_frame = 2 * second_frame;
    for (std::size_t at = 0; at < whole.size(); ++at) {
        SCOPED_TRACE("byte " + std::to_string(at));
        std::string bytes = whole;
        bytes[at] = static_cast<char>(bytes[at] ^ 0x20);
        WriteBytes(Journal::FileOf(path_, 0), bytes);
        const std::vector<Journal::Frame> frames = Journal::Read(path_);
        ASSERT_EQ(frames.size(), 2u);
        // Nothing tells that there was a frame behind the last one that is whole.
        ASSERT_EQ(Journal::HasGap(frames, 0), at < third_frame);
        if (at % 101 != 0)
            continue;
        const std::string copy = Copy();
        const Found found = OpenAndLook(copy);
        ASSERT_TRUE(found.is_open);
        ASSERT_EQ(found.tasks.size(), 2u);
        const std::string lost = at < second_frame ? "guid-1" : at < third_frame ? "guid-2" : "guid-3";
        EXPECT_EQ(found.tasks.count(lost), 0u);
        if (at < third_frame) {
            EXPECT_THAT(found.message,
                        HasSubstr("is damaged and copied aside as " + copy + ".recent-0.damaged-1"));
            EXPECT_TRUE(ReadBytes(copy + ".recent-0.damaged-1") == bytes);
        }
        copies_.clear();
    }
}

TEST_F(DamagedStore, ADatabaseWithAnyPageSpoiledIsReadOrSetAsideButNeverLost)
{
    Make(200);
    const std::string whole = ReadBytes(path_);
    std::mt19937 random(20260131);
    int set_aside = 0;
    std::size_t most_left = 0;
    for (std::size_t page = 0; page < whole.size(); page += 4096) {
        SCOPED_TRACE("page at " + std::to_string(page));
        const std::string copy = Copy();
        std::string bytes = whole;
        for (std::size_t i = page; i < page + 4096 && i < bytes.size(); ++i)
            bytes[i] = static_cast<char>(random());
        WriteBytes(copy, bytes);
        Found found = OpenAndLook(copy);
        if (!found.is_open) {
            // The first page says what the file is; here it says something else.
            EXPECT_THAT(found.message, HasSubstr("left as it is"));
            EXPECT_TRUE(ReadBytes(copy) == bytes);
        } else {
            // Among the resume records it shows when one of them is asked for, and is dealt with at the next
            // opening.
            if (found.message.empty()) {
                found = OpenAndLook(copy);
            }
            if (found.message.empty()) {
                // The page of a table that holds nothing.
                EXPECT_EQ(found.tasks.size(), 200u);
                EXPECT_EQ(found.texts.at("guid-200"), "record 200");
                continue;
            }
            EXPECT_THAT(found.message, HasSubstr("set aside as " + copy + ".damaged-1"));
            EXPECT_TRUE(ReadBytes(copy + ".damaged-1") == bytes);
            ++set_aside;
            most_left = std::max(most_left, found.tasks.size());
            const Found again = OpenAndLook(copy);
            EXPECT_EQ(again.message, "");
            EXPECT_EQ(again.tasks.size(), found.tasks.size());
        }
        copies_.clear();
    }
    EXPECT_GT(set_aside, 5);
    EXPECT_EQ(most_left, 200u);  // where the page was one of the records or of an index
}

TEST_F(DamagedStore, FlippedBytesOfADatabaseAreNeverTakenForATask)
{
    Make(40);
    const std::string whole = ReadBytes(path_);
    std::mt19937 random(4711);
    int with_message = 0;
    for (int round = 0; round < 60; ++round) {
        const std::string copy = Copy();
        std::string bytes = whole;
        for (int flips = 0; flips < 3; ++flips)
            bytes[100 + random() % (bytes.size() - 100)] ^= static_cast<char>(1U << (random() % 8));
        WriteBytes(copy, bytes);
        const Found found = OpenAndLook(copy);
        for (const auto& [guid, task] : found.tasks) {
            const Change expected = Put(task.place, ZellTaskKit::Finished);
            EXPECT_EQ(guid, expected.task.guid);
            EXPECT_EQ(task.name, expected.task.name);
            EXPECT_EQ(task.folder, expected.task.folder);
            EXPECT_EQ(task.state, expected.task.state);
            const std::string& text = found.texts.at(guid);
            EXPECT_TRUE(text.empty() || text == *expected.resume_text) << text;
        }
        if (found.is_open && found.tasks.size() < 40) {
            EXPECT_NE(found.message, "") << "round " << round;
        }
        with_message += found.message.empty() ? 0 : 1;
        copies_.clear();
    }
    EXPECT_GT(with_message, 0);
}

TEST_F(DamagedStore, WhatIsNoDatabaseIsSetAsideAndANewStoreBegun)
{
    WriteBytes(path_,
               "This is no database, and long enough to be looked at as one: " + std::string(5000, 'x'));
    const std::string bytes = ReadBytes(path_);
    const Found found = OpenAndLook(path_);
    EXPECT_TRUE(found.is_open);
    EXPECT_THAT(found.message, StartsWith("The task store " + path_ + " was damaged ("));
    EXPECT_THAT(found.message,
                HasSubstr("is set aside as " + path_ +
                          ".damaged-1; a new one is begun with the 0 tasks that can be read."));
    EXPECT_TRUE(ReadBytes(path_ + ".damaged-1") == bytes);
    WriteBytes(path_, bytes);
    EXPECT_THAT(OpenAndLook(path_).message, HasSubstr(path_ + ".damaged-2"));
    EXPECT_EQ(OpenAndLook(path_).message, "");
}

TEST_F(DamagedStore, WhatTheJournalHoldsOutlivesTheDatabase)
{
    std::string copy;
    {
        const TaskStore::Opening opening = TaskStore::Open(path_);
        opening.store->Keep({Put(1)});
        opening.store->Flush();
        opening.store->Keep({Put(2)});
        copy = Copy();
    }
    WriteBytes(copy, std::string(8192, '#'));
    fs::remove(fs::u8path(copy + "-wal"));
    const Found found = OpenAndLook(copy);
    EXPECT_THAT(found.message, HasSubstr("a new one is begun"));
    EXPECT_EQ(found.tasks.count("guid-2"), 1u);
}

TEST_F(DamagedStore, ADamagedRecordIsSetAsideAndTheRestIsThere)
{
    Make(5);
    {
        Sqlite database(path_, Sqlite::Use::Write);
        database.Run("UPDATE task SET state = 5 WHERE place = 2");
        database.Run("UPDATE task SET name = x'0001FF' WHERE place = 4");
        database.Run("UPDATE resume SET record = 'another' WHERE guid = 'guid-3'");
    }
    const Found found = OpenAndLook(path_);
    EXPECT_TRUE(found.is_open);
    EXPECT_EQ(found.guids, (std::vector<std::string>{"guid-1", "guid-3", "guid-5"}));
    EXPECT_EQ(found.message, "2 records of the task store " + path_ +
                                 " were damaged and set aside in its table damaged_task; the rest is there.");
    EXPECT_EQ(found.texts.at("guid-1"), "record 1");
    EXPECT_EQ(found.texts.at("guid-3"), "");
    EXPECT_EQ(OpenAndLook(path_).message, "");
    Sqlite database(path_, Sqlite::Use::Read);
    EXPECT_EQ(database.Number("SELECT count(*) FROM damaged_task"), 2);
    EXPECT_THAT(database.Text("SELECT columns FROM damaged_task ORDER BY columns"), HasSubstr("'record 2'"));
}

TEST_F(DamagedStore, AStoreOfANewerVersionIsLeftAsItIs)
{
    Make(3);
    {
        Sqlite database(path_, Sqlite::Use::Write);
        database.Run("PRAGMA user_version = 99");
    }
    const std::string bytes = ReadBytes(path_);
    const Found found = OpenAndLook(path_);
    EXPECT_FALSE(found.is_open);
    EXPECT_EQ(found.message, "The task store " + path_ +
                                 " is of a newer version and left as it is; tasks are in memory only.");
    EXPECT_TRUE(ReadBytes(path_) == bytes);
    std::vector<StoredTask> tasks;
    std::string message;
    EXPECT_FALSE(TaskStore::Read(path_, tasks, message));
    EXPECT_EQ(message, "The file " + path_ + " is no task store of this version.");
}

TEST_F(DamagedStore, AnEmptyFileOfTheFirstVersionIsBroughtToThisOne)
{
    WriteBytes(path_, "");
    const Found found = OpenAndLook(path_);
    EXPECT_TRUE(found.is_open);
    EXPECT_EQ(found.message, "");
    Sqlite database(path_, Sqlite::Use::Read);
    EXPECT_EQ(database.Number("PRAGMA user_version"), 1);
}

TEST_F(DamagedStore, SomebodysDatabaseIsLeftAsItIs)
{
    {
        Sqlite database(path_, Sqlite::Use::Write);
        database.Run("CREATE TABLE recipe(name TEXT)");
    }
    const std::string bytes = ReadBytes(path_);
    const Found found = OpenAndLook(path_);
    EXPECT_FALSE(found.is_open);
    EXPECT_EQ(found.message,
              "The file " + path_ + " is no task store and left as it is; tasks are in memory only.");
    EXPECT_TRUE(ReadBytes(path_) == bytes);
}

TEST_F(DamagedStore, ASecondOwnerIsToldSoAndTheFirstGoesOn)
{
    TaskStore::Opening first = TaskStore::Open(path_);
    ASSERT_TRUE(first.store);
    const Found second = OpenAndLook(path_);
    EXPECT_FALSE(second.is_open);
    EXPECT_EQ(second.message, "Another client has the task store " + path_ +
                                  " open; the tasks of this one are in memory only.");
    first.store->Keep({Put(1)});
    first.store.reset();
    EXPECT_EQ(OpenAndLook(path_).tasks.size(), 1u);
}

TEST_F(DamagedStore, AnEngineWithoutItsStoreGoesOnInMemory)
{
    const TaskStore::Opening other = TaskStore::Open(path_);
    std::string message;
    EngineRig rig(path_, message);
    EXPECT_THAT(message, StartsWith("Another client"));
    const auto task = MakeQuickTask();
    ASSERT_TRUE(rig.Add({task}));
    ASSERT_TRUE(rig.Settle());
    EXPECT_EQ(rig->List().size(), 1u);
    EXPECT_TRUE(rig->Remove(task->GetGuid()));
    EXPECT_EQ(rig->StoreTrouble(), "");
}

TEST_F(DamagedStore, AFolderThatIsNotThereIsSaid)
{
    const Found found = OpenAndLook(folder_.File("nowhere/tasks.db"));
    EXPECT_FALSE(found.is_open);
    EXPECT_THAT(found.message,
                HasSubstr("can't be written: No such file or directory; tasks are in memory only."));
}

TEST_F(DamagedStore, AToolThatLocksTheFileMakesTroubleUntilItLetsGo)
{
    const TaskStore::Opening opening = TaskStore::Open(path_);
    ASSERT_TRUE(opening.store);
    {
        Sqlite tool(path_, Sqlite::Use::Write);
        tool.Run("BEGIN IMMEDIATE");
        opening.store->Keep({Put(1)});
        opening.store->Flush();
        EXPECT_EQ(
            opening.store->Trouble(),
            "The task store " + path_ + " can't be written, tasks are in memory only: database is locked.");
        EXPECT_EQ(opening.store->ResumeText("guid-1"), "record 1");
        // Kept all the same.
        EXPECT_EQ(OpenAndLook(Copy()).tasks.size(), 1u);
        tool.Run("ROLLBACK");
    }
    opening.store->Keep({Put(2)});
    opening.store->Flush();
    EXPECT_EQ(opening.store->Trouble(), "");
    std::vector<StoredTask> tasks;
    std::string message;
    ASSERT_TRUE(TaskStore::Read(path_, tasks, message)) << message;
    EXPECT_EQ(tasks.size(), 2u);
}

TEST_F(DamagedStore, AStoreThatAnotherHasOpenCanBeReadAtAnyMoment)
{
    const TaskStore::Opening opening = TaskStore::Open(path_);
    constexpr std::uint64_t kTasks = 3000;
    std::atomic<std::uint64_t> kept{0};
    const auto writer = std::async(std::launch::async, [&] {
        for (std::uint64_t place = 1; place <= kTasks; ++place) {
            opening.store->Keep({Put(place)});
            opening.store->Keep({Update(Put(place), ZellTaskKit::Finished, "end")});
            kept = place;
        }
    });
    std::uint64_t before = 0;
    while (before < kTasks) {
        before = kept;
        std::vector<StoredTask> tasks;
        std::string message;
        ASSERT_TRUE(TaskStore::Read(path_, tasks, message)) << message;
        ASSERT_GE(tasks.size(), before);
        for (std::uint64_t i = 0; i < before; ++i) {
            ASSERT_EQ(tasks[i].place, i + 1);
            ASSERT_EQ(tasks[i].state, ZellTaskKit::Finished);
        }
    }
}

TEST_F(DamagedStore, WhatIsReadInOneViewIsOfOneMoment)
{
    TaskTable owner(path_, Sqlite::Use::Write);
    owner.Migrate();
    const auto write = [&owner](std::uint64_t number) {
        LastChanges changes;
        changes.Add(Put(number));
        owner.Write(changes, number);
    };
    write(1);
    TaskTable onlooker(path_, Sqlite::Use::Read);
    onlooker.HoldView();
    EXPECT_EQ(onlooker.Complete(), 1u);
    write(2);
    std::size_t damaged = 0;
    EXPECT_EQ(onlooker.Load(damaged).size(), 1u);
    EXPECT_EQ(onlooker.Complete(), 1u);
    EXPECT_EQ(TaskTable(path_, Sqlite::Use::Read).Complete(), 2u);
}

TEST_F(DamagedStore, AStoreThatIsNotThereCanNotBeRead)
{
    std::vector<StoredTask> tasks;
    std::string message;
    EXPECT_FALSE(TaskStore::Read(path_, tasks, message));
    EXPECT_EQ(message, "There is no task store " + path_ + ".");
    EXPECT_FALSE(IsThere(path_));
}

TEST_F(DamagedStore, ALongRecordIsKeptAndItsJournalDoesNotStayLong)
{
    const std::string long_text(6U << 20, 'x');
    {
        const TaskStore::Opening opening = TaskStore::Open(path_);
        for (int round = 0; round < 4; ++round) {
            Change change = Put(1);
            change.resume_text = std::make_shared<const std::string>(long_text + std::to_string(round));
            opening.store->Keep({change});
            opening.store->Flush();
        }
        for (int round = 0; round < 4; ++round) {
            opening.store->Keep({Put(2)});
            opening.store->Flush();
        }
        EXPECT_LT(fs::file_size(fs::u8path(Journal::FileOf(path_, 0))), 1U << 20);
        EXPECT_LT(fs::file_size(fs::u8path(Journal::FileOf(path_, 1))), 1U << 20);
    }
    EXPECT_EQ(OpenAndLook(path_).texts.at("guid-1"), long_text + "3");
}

TEST(LastChanges, ComeToTheLastOfEachTask)
{
    const Change put = Put(1);
    const Change update = Update(put, ZellTaskKit::Finished, "end");
    Change plain = update;
    plain.resume_text = nullptr;
    plain.task.state = ZellTaskKit::Failed;
    Change remove;
    remove.kind = Change::Kind::Remove;
    remove.task.guid = put.task.guid;

    const auto result = [&](const Changes& changes) {
        details::LastChanges last;
        for (const Change& change : changes)
            last.Add(change);
        std::string text = "unknown";
        last.KnowText(put.task.guid, text);
        const Change& only = last.ByGuid().begin()->second;
        return std::to_string(static_cast<int>(only.kind)) + " " + std::to_string(only.task.state) + " " +
               text;
    };
    EXPECT_EQ(result({put}), "1 1 record 1");
    EXPECT_EQ(result({put, update}), "1 4 end");
    EXPECT_EQ(result({put, update, plain}), "1 5 end");
    EXPECT_EQ(result({plain}), "2 5 unknown");
    EXPECT_EQ(result({update, plain}), "2 5 end");
    EXPECT_EQ(result({put, remove}), "3 0 ");
    EXPECT_EQ(result({put, remove, update}), "3 0 ");
    EXPECT_EQ(result({put, remove, put}), "1 1 record 1");
}
