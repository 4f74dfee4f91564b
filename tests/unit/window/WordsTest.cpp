#include "Window/Icons.h"
#include "Window/Notices.h"
#include "Window/TaskActions.h"
#include "Window/TaskModel.h"
#include "Window/Theme.h"

#include <gtest/gtest.h>
#include <QApplication>

#include <cmath>

namespace FetchyardClient {
namespace {

using FetchyardLogical::RecordKind;
using FetchyardLogical::TaskView;

TaskRow Row(ZellTaskKit::DownloadState state)
{
    TaskRow row;
    row.task.guid = "guid";
    row.task.name = "Gate";
    row.task.state = state;
    row.task.started = 1'700'000'000'000;
    row.task.ended = row.task.started + 72'000;
    return row;
}

std::string Progress(const TaskRow& row)
{
    return ProgressText(row, 1'700'000'005'000).toStdString();
}

// The model lists that task alone.
void Show(const TaskView& task, TaskModel& model)
{
    TaskOrder order;
    order.Fill({task});
    model.Load(std::move(order));
}

TEST(TaskWords, ProgressNamesPagesPicturesSizeRateAndTime)
{
    TaskRow row = Row(ZellTaskKit::Downloading);
    row.task.is_running = true;
    row.task.pages = 12;
    row.pictures = 1;
    row.bytes = 5u << 20;
    row.is_measured = true;
    row.rate = 2048;
    EXPECT_EQ(Progress(row),
              "12 pages  \u00b7  1 picture  \u00b7  5.0 MiB  \u00b7  2.0 KiB/s  \u00b7  00:05");
    row.task.is_running = false;
    row.task.state = ZellTaskKit::Finished;
    row.task.pages = 1;
    EXPECT_EQ(Progress(row), "1 page  \u00b7  1 picture  \u00b7  5.0 MiB  \u00b7  01:12");
}

TEST(TaskWords, StateIsInterruptedOnlyForWhatAnEarlierRunLeft)
{
    TaskView task = Row(ZellTaskKit::Downloading).task;
    task.is_running = true;
    EXPECT_EQ(StateOf(task), RowState::Running);
    task.is_running = false;
    task.is_interrupted = true;
    EXPECT_EQ(StateOf(task), RowState::Interrupted);
    EXPECT_FALSE(CanGoOn(task)) << "it has no record";
    task.record_kind = RecordKind::Export;
    EXPECT_TRUE(CanGoOn(task));
}

TEST(TaskWords, EvidenceStatesReadLikeThePlainOnes)
{
    EXPECT_EQ(StateOf(Row(ZellTaskKit::UploadFinished).task), RowState::Finished);
    EXPECT_EQ(StateOf(Row(ZellTaskKit::UploadFailed).task), RowState::Failed);
    EXPECT_EQ(StateOf(Row(ZellTaskKit::UploadStopped).task), RowState::Stopped);
    EXPECT_EQ(StateOf(Row(ZellTaskKit::Deleted).task), RowState::Deleted);
}

TEST(TaskWords, TaskThatEndedWithoutTellingAnEndHasFailed)
{
    EXPECT_EQ(StateOf(Row(ZellTaskKit::Downloading).task), RowState::Failed);
}

TEST(TaskWords, NameOfTenThousandLettersIsCutForTheList)
{
    TaskView task = Row(ZellTaskKit::Finished).task;
    task.name.clear();
    for (int i = 0; i < 10'000; ++i)
        task.name += "\xD7\xA9";  // a Hebrew letter
    const QString name = NameText(task);
    EXPECT_EQ(name.size(), 201);
    EXPECT_EQ(name.at(199), QChar(0x05E9));
    EXPECT_EQ(name.at(200), QChar(0x2026));
}

TEST(TaskWords, CutNeverHalvesALetter)
{
    const QString text = QString::fromUtf8("ab\xF0\x9F\x8E\xA5");  // a camera, a surrogate pair
    EXPECT_EQ(CutText(text, 3), QString("ab") + QChar(0x2026));
    EXPECT_EQ(CutText(text, 4), text);
}

TEST(TaskWords, ErrorReportHoldsCodesAndFailedFiles)
{
    TaskView task = Row(ZellTaskKit::Failed).task;
    task.error = {21, 404};
    task.error_text = "not there";
    task.failed_files = {{"a.jpg", "gone"}};
    EXPECT_EQ(ErrorReport(task), "Gate: failed\nnot there\nerror 404 of module 21\na.jpg: gone");
}

TEST(TaskWords, ActionsArePossibleWhereTheyMakeSense)
{
    TaskView running = Row(ZellTaskKit::Downloading).task;
    running.is_running = true;
    EXPECT_TRUE(IsPossible(TaskAction::Stop, running));
    EXPECT_FALSE(IsPossible(TaskAction::Remove, running));
    EXPECT_FALSE(IsPossible(TaskAction::StartAgain, running));
    TaskView stored = Row(ZellTaskKit::Failed).task;
    stored.is_stored_only = true;
    EXPECT_FALSE(IsPossible(TaskAction::StartAgain, stored)) << "a download of an earlier run has no record";
    stored.record_kind = RecordKind::Export;
    EXPECT_TRUE(IsPossible(TaskAction::StartAgain, stored));
    EXPECT_FALSE(IsPossible(TaskAction::StartAgain, Row(ZellTaskKit::Deleted).task));
    EXPECT_TRUE(IsPossible(TaskAction::Delete, running));
    EXPECT_FALSE(IsPossible(TaskAction::Delete, Row(ZellTaskKit::Finished).task))
        << "it is what was asked for";
}

TEST(TaskWords, RemovedFolderIsToldByItsPath)
{
    TaskView task = Row(ZellTaskKit::Finished).task;
    task.folder = "/there/is/no/such/folder/";
    QString reason;
    EXPECT_EQ(FolderToOpen(task, reason), "");
    EXPECT_EQ(reason, "Gate: its folder was removed: /there/is/no/such/folder/");
    task.folder.clear();
    EXPECT_EQ(ReportToOpen(task, reason), "");
    EXPECT_EQ(reason, "Gate: has no folder yet");
}

TEST(TaskWords, StartOfATaskThatWaitsIsItsHandOver)
{
    TaskView task = Row(ZellTaskKit::Stopped).task;
    task.handed_over = task.started + 1000;
    EXPECT_EQ(StartOf(task), task.started);
    task.is_waiting = true;
    EXPECT_EQ(StartOf(task), task.handed_over) << "it was started again and waits for its turn";
    task.is_waiting = false;
    task.started = 0;
    EXPECT_EQ(StartOf(task), task.handed_over) << "it was taken out of the queue";
}

TEST(TaskWords, ToolTipOfTheNameHasTheFolderIfThereIsOne)
{
    TaskView task = Row(ZellTaskKit::Finished).task;
    const auto tip = [&task] {
        TaskModel model;
        Show(task, model);
        return model.data(model.index(0, TaskModel::kName), Qt::ToolTipRole).toString();
    };
    EXPECT_EQ(tip(), "<qt>Gate</qt>");
    task.folder = "/exports/gate/";
    EXPECT_EQ(tip(), "<qt>Gate<br>/exports/gate/</qt>");
}

TEST(TaskWords, ToolTipShowsMarkupAsItStands)
{
    TaskView task = Row(ZellTaskKit::Failed).task;
    task.error_text = "<img src=x>";
    TaskModel model;
    Show(task, model);
    EXPECT_EQ(model.data(model.index(0, TaskModel::kError), Qt::ToolTipRole), "<qt>&lt;img src=x&gt;</qt>");
    EXPECT_EQ(model.data(model.index(0, TaskModel::kState), Qt::AccessibleTextRole), "State: failed");
}

TEST(TaskWords, NoticeOfSeveralEndsCountsTheFailed)
{
    const std::vector<TaskRow> one{Row(ZellTaskKit::Finished)};
    EXPECT_EQ(Notices::TitleOf(one), "Gate: finished");
    const std::vector<TaskRow> five{Row(ZellTaskKit::Finished), Row(ZellTaskKit::Failed),
                                    Row(ZellTaskKit::Finished), Row(ZellTaskKit::Stopped),
                                    Row(ZellTaskKit::Failed)};
    EXPECT_EQ(Notices::TitleOf(five), "5 tasks ended, 2 of them failed");
    EXPECT_EQ(Notices::WordsOf(five), "Gate: finished\nGate: failed\nGate: finished\nand 2 more");
}

double Luminance(const QColor& colour)
{
    const auto linear = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

double Contrast(const QColor& one, const QColor& other)
{
    const double a = Luminance(one) + 0.05;
    const double b = Luminance(other) + 0.05;
    return a > b ? a / b : b / a;
}

TEST(TaskWords, StateColoursCanBeReadOnTheirGround)
{
    for (const Theme theme : {Theme::Light, Theme::Dark}) {
        ApplyTheme(theme);
        const QPalette palette = QApplication::palette();
        EXPECT_EQ(IsDark(palette), theme == Theme::Dark);
        for (int state = 0; state < kRowStates; ++state) {
            const QColor colour = StateColour(static_cast<RowState>(state), IsDark(palette));
            EXPECT_GE(Contrast(colour, palette.color(QPalette::Base)), 4.5) << state;
            EXPECT_GE(Contrast(colour, palette.color(QPalette::AlternateBase)), 4.5) << state;
        }
    }
}

TEST(TaskWords, ChineseHasEveryText)
{
    ApplyLanguage("zh");
    EXPECT_EQ(StateText(RowState::Running), QString::fromUtf8("运行中"));
    TaskRow row = Row(ZellTaskKit::Finished);
    row.task.pages = 3;
    EXPECT_EQ(ProgressText(row, 0), QString::fromUtf8("3 页  \u00b7  01:12"));
    ApplyLanguage("en");
    EXPECT_EQ(StateText(RowState::Running), "running");
}

}  // namespace
}  // namespace FetchyardClient
