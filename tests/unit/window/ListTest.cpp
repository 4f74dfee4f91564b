#include "Window/TaskChanges.h"
#include "Window/TaskModel.h"

#include <gmock/gmock.h>
#include <QSignalSpy>

#include <algorithm>
#include <random>
#include <thread>

namespace FetchyardClient {
namespace {

using FetchyardLogical::TaskView;
using testing::ElementsAre;

TaskView Task(const std::string& name, long long started,
              ZellTaskKit::DownloadState state = ZellTaskKit::Finished)
{
    TaskView task;
    task.guid = "guid of " + name;
    task.name = name;
    task.started = started;
    task.handed_over = started;
    task.ended = started + 1000;
    task.state = state;
    task.is_running = state == ZellTaskKit::Downloading;
    return task;
}

TaskNews News(const TaskView& task)
{
    TaskNews news;
    news.row.task = task;
    return news;
}

TaskNews Gone(const TaskView& task)
{
    TaskNews news = News(task);
    news.is_gone = true;
    return news;
}

std::vector<TaskView> ManyTasks(int count)
{
    std::vector<TaskView> tasks;
    for (int i = 0; i < count; ++i)
        tasks.push_back(Task("task " + std::to_string(i), 1'700'000'000'000 + i));
    return tasks;
}

// A list that was filled, and what it signals.
struct List
{
    explicit List(std::vector<TaskView> tasks)
    {
        TaskOrder order;
        order.Fill(std::move(tasks));
        model.Load(std::move(order));
        for (QSignalSpy* spy : {&resets, &layouts, &inserts, &removals, &moves, &changes})
            spy->clear();
    }

    std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        for (int row = 0; row < model.rowCount(); ++row)
            names.push_back(model.RowAt(row).task.name);
        return names;
    }

    TaskModel model;
    QSignalSpy resets{&model, &QAbstractItemModel::modelReset};
    QSignalSpy layouts{&model, &QAbstractItemModel::layoutChanged};
    QSignalSpy inserts{&model, &QAbstractItemModel::rowsInserted};
    QSignalSpy removals{&model, &QAbstractItemModel::rowsRemoved};
    QSignalSpy moves{&model, &QAbstractItemModel::rowsMoved};
    QSignalSpy changes{&model, &QAbstractItemModel::dataChanged};
};

TEST(TaskList, ShowsTheLatestStartFirst)
{
    const List list({Task("a", 1), Task("b", 3), Task("c", 2)});
    EXPECT_THAT(list.Names(), ElementsAre("b", "c", "a"));
}

TEST(TaskList, NewTaskIsOneInsertionAndNoReset)
{
    List list({Task("a", 1), Task("b", 3)});
    list.model.Apply({News(Task("c", 2))});
    EXPECT_THAT(list.Names(), ElementsAre("b", "c", "a"));
    EXPECT_EQ(list.inserts.count(), 1);
    EXPECT_EQ(list.resets.count() + list.layouts.count() + list.moves.count(), 0);
}

TEST(TaskList, ChangeOfAStateTouchesItsLineAlone)
{
    List list({Task("a", 1, ZellTaskKit::Downloading), Task("b", 3)});
    list.model.Apply({News(Task("a", 1, ZellTaskKit::Failed))});
    ASSERT_EQ(list.changes.count(), 1);
    EXPECT_EQ(list.changes.at(0).at(0).toModelIndex().row(), 1);
    EXPECT_EQ(list.changes.at(0).at(1).toModelIndex().row(), 1);
    EXPECT_EQ(list.inserts.count() + list.removals.count() + list.moves.count() + list.layouts.count(), 0);
    EXPECT_EQ(list.model.Order().Count(RowState::Failed), 1U);
    EXPECT_EQ(list.model.Order().Count(RowState::Running), 0U);
}

TEST(TaskList, ChangeOfTheSortedColumnMovesOneLineInBothDirections)
{
    List list({Task("a", 1), Task("b", 2), Task("c", 3), Task("d", 4)});
    list.model.Apply({News(Task("a", 9))});
    EXPECT_THAT(list.Names(), ElementsAre("a", "d", "c", "b"));
    list.model.Apply({News(Task("a", 2))});
    EXPECT_THAT(list.Names(), ElementsAre("d", "c", "b", "a"));
    list.model.Apply({News(Task("d", 0))});
    EXPECT_THAT(list.Names(), ElementsAre("c", "b", "a", "d"));
    EXPECT_EQ(list.moves.count(), 3);
    EXPECT_EQ(list.layouts.count(), 0);
}

TEST(TaskList, FilterByStateAndNameFollowsChanges)
{
    List list(
        {Task("Gate", 1), Task("gate 2", 2, ZellTaskKit::Failed), Task("yard", 3, ZellTaskKit::Failed)});
    TaskFilter filter;
    filter.state = RowState::Failed;
    filter.text = " GATE ";
    list.model.SetFilter(filter);
    EXPECT_THAT(list.Names(), ElementsAre("gate 2"));
    list.model.Apply({News(Task("Gate", 1, ZellTaskKit::Failed))});
    EXPECT_THAT(list.Names(), ElementsAre("gate 2", "Gate"));
    list.model.Apply({News(Task("gate 2", 2, ZellTaskKit::Finished))});
    EXPECT_THAT(list.Names(), ElementsAre("Gate"));
    EXPECT_EQ(list.inserts.count(), 1);
    EXPECT_EQ(list.removals.count(), 1);
}

TEST(TaskList, EqualKeysKeepTheOrderOfTheEngine)
{
    List list({Task("x", 1), Task("y", 1), Task("z", 1)});
    EXPECT_THAT(list.Names(), ElementsAre("z", "y", "x"));
    list.model.sort(TaskModel::kStart, Qt::AscendingOrder);
    EXPECT_THAT(list.Names(), ElementsAre("x", "y", "z"));
    list.model.sort(TaskModel::kKind, Qt::AscendingOrder);
    EXPECT_THAT(list.Names(), ElementsAre("x", "y", "z"));
}

TEST(TaskList, TaskThatTakesThePlaceOfAnEntryStandsInItsPlace)
{
    List list({Task("x", 1), Task("old", 1), Task("z", 1)});
    TaskNews news = News(Task("new", 1));
    news.in_place_of = "guid of old";
    list.model.Apply({news});
    EXPECT_THAT(list.Names(), ElementsAre("z", "new", "x"));
    EXPECT_EQ(list.model.Find("guid of old"), nullptr);
    EXPECT_EQ(list.inserts.count() + list.removals.count(), 0);
}

TEST(TaskList, HiddenEntriesComeBackWhereTheyWere)
{
    List list({Task("a", 1), Task("b", 2), Task("c", 3)});
    list.model.SetHidden({"guid of b", "guid of nobody"}, true);
    EXPECT_THAT(list.Names(), ElementsAre("c", "a"));
    EXPECT_EQ(list.model.Order().Total(), 2U);
    list.model.SetHidden({"guid of b"}, false);
    EXPECT_THAT(list.Names(), ElementsAre("c", "b", "a"));
    EXPECT_EQ(list.model.Order().Total(), 3U);
}

TEST(TaskList, EntryThatIsGoneIsForgottenAndItsRoomUsedAgain)
{
    List list({Task("a", 1), Task("b", 2)});
    list.model.Apply({Gone(Task("a", 1)), Gone(Task("nobody", 1))});
    EXPECT_THAT(list.Names(), ElementsAre("b"));
    list.model.Apply({News(Task("c", 3)), News(Task("d", 0))});
    EXPECT_THAT(list.Names(), ElementsAre("c", "b", "d"));
    EXPECT_EQ(list.model.Order().Total(), 3U);
}

TEST(TaskList, SelectionStaysWithItsTaskWhenTheListIsLaidAnew)
{
    List list({Task("a", 1), Task("b", 2), Task("c", 3)});
    const QPersistentModelIndex at(list.model.index(1, TaskModel::kState));
    list.model.sort(TaskModel::kStart, Qt::AscendingOrder);
    list.model.Apply({News(Task("e", 0))});
    EXPECT_EQ(list.model.RowAt(at.row()).task.name, "b");
    EXPECT_EQ(at.column(), TaskModel::kState);
    TaskFilter filter;
    filter.text = "a";
    list.model.SetFilter(filter);
    EXPECT_FALSE(at.isValid());
}

TEST(TaskList, MeasuredSizeStaysWhenOnlyTheStateComes)
{
    List list({});
    TaskNews measured = News(Task("a", 1, ZellTaskKit::Downloading));
    measured.row.bytes = 5000;
    measured.row.is_measured = true;
    list.model.Apply({measured});
    list.model.Apply({News(Task("a", 1))});
    EXPECT_EQ(list.model.Find("guid of a")->bytes, 5000U);
    list.model.Apply({News(Task("a", 2, ZellTaskKit::Downloading))});
    EXPECT_EQ(list.model.Find("guid of a")->bytes, 0U) << "of another run";
}

// What a second of 1,000 changes amounts to, at 20 rounds of news a second.
TEST(TaskList, AThousandChangesAmongAHundredThousandTasksAreAThousandLines)
{
    List list(ManyTasks(100'000));
    std::mt19937 random(7);
    for (int round = 0; round < 20; ++round) {
        std::vector<TaskNews> news;
        for (int i = 0; i < 50; ++i) {
            const int number = static_cast<int>(random() % 100'000);
            news.push_back(News(Task("task " + std::to_string(number), 1'700'000'000'000 + number,
                                     round % 2 == 0 ? ZellTaskKit::Failed : ZellTaskKit::Stopped)));
        }
        list.model.Apply(news);
    }
    EXPECT_EQ(list.changes.count(), 1000);
    EXPECT_EQ(list.resets.count() + list.layouts.count() + list.inserts.count() + list.removals.count() +
                  list.moves.count(),
              0);
    EXPECT_EQ(list.model.rowCount(), 100'000);
}

TEST(TaskList, RandomNewsKeepTheOrderTheCountsAndTheFilterRight)
{
    List list(ManyTasks(50));
    TaskFilter filter;
    filter.state = RowState::Failed;
    list.model.SetFilter(filter);
    list.model.sort(TaskModel::kName, Qt::AscendingOrder);
    std::mt19937 random(11);
    constexpr ZellTaskKit::DownloadState kStates[] = {ZellTaskKit::Failed, ZellTaskKit::Finished,
                                                      ZellTaskKit::Failed, ZellTaskKit::Stopped};
    for (int i = 0; i < 2000; ++i) {
        const TaskView task = Task("task " + std::to_string(random() % 80),
                                   static_cast<long long>(random() % 100), kStates[random() % 4]);
        list.model.Apply({random() % 5 == 0 ? Gone(task) : News(task)});
    }
    const std::vector<std::string> names = list.Names();
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
    EXPECT_EQ(names.size(), list.model.Order().Count(RowState::Failed));
    for (int row = 0; row < list.model.rowCount(); ++row) {
        EXPECT_EQ(list.model.RowAt(row).task.state, ZellTaskKit::Failed);
        EXPECT_EQ(list.model.Order().PositionOf(list.model.Order().At(row)), row);
    }
}

TEST(TaskList, NewsOfManyAtOnceAreOneLayout)
{
    List list(ManyTasks(10));
    std::vector<TaskNews> news;
    for (const TaskView& task : ManyTasks(2000))
        news.push_back(News(task));
    list.model.Apply(news);
    EXPECT_EQ(list.layouts.count(), 1);
    EXPECT_EQ(list.resets.count() + list.inserts.count(), 0);
    EXPECT_EQ(list.model.rowCount(), 2000);
    for (TaskNews& one : news)
        one.is_gone = true;
    list.model.Apply(news);
    EXPECT_EQ(list.model.rowCount(), 0);
    EXPECT_EQ(list.model.Order().Total(), 0U);
}

TEST(TaskChanges, TellEachTaskOnceHoweverOftenItChanged)
{
    TaskChanges changes;
    std::vector<std::thread> reporters;
    for (int thread = 0; thread < 4; ++thread) {
        reporters.emplace_back([&changes] {
            for (int i = 0; i < 1000; ++i)
                changes.UpdateDownloadBussinessManagerState(
                    {std::to_string(i % 10), ZellTaskKit::Downloading, {}});
        });
    }
    for (std::thread& reporter : reporters)
        reporter.join();
    EXPECT_EQ(changes.Take().size(), 10U);
    EXPECT_TRUE(changes.Take().empty());
    changes.Touch("b");
    changes.Touch("a");
    changes.Touch("b");
    EXPECT_THAT(changes.Take(), ElementsAre("b", "a"));
}

}  // namespace
}  // namespace FetchyardClient
