#include "Window/ExportForm.h"
#include "WindowFixture.h"

#include <QApplication>
#include <QTest>

namespace SystemTest {
namespace {

using namespace FetchyardClient;
using FetchyardLogical::RecordKind;

TaskNews Task(const std::string& name, ZellTaskKit::DownloadState state, RecordKind kind, int minutes_ago)
{
    static int number = 0;
    TaskNews news;
    FetchyardLogical::TaskView& task = news.row.task;
    task.guid = "look " + std::to_string(++number);
    task.name = name;
    task.folder = "/home/operator/Exports/" + name + "/";
    task.state = state;
    task.record_kind = kind;
    task.started = QDateTime::currentMSecsSinceEpoch() - minutes_ago * 60'000LL;
    task.handed_over = task.started;
    task.ended = task.started + 95'000;
    task.pages = 20;
    news.row.bytes = 3'500'000;
    news.row.is_measured = true;
    return news;
}

std::vector<TaskNews> Tasks()
{
    std::vector<TaskNews> tasks{
        Task("Alarms of the night", ZellTaskKit::Downloading, RecordKind::Export, 2),
        Task("Gate north, week 3", ZellTaskKit::Unstarted, RecordKind::Export, 1),
        Task("Intrusions of January", ZellTaskKit::Finished, RecordKind::Export, 20),
        Task("Visitors", ZellTaskKit::Finished, RecordKind::PersonPictures, 40),
        Task("camera 3", ZellTaskKit::Failed, RecordKind::None, 55),
        Task("Parking violations", ZellTaskKit::Stopped, RecordKind::Export, 70),
        Task("Crowd at the main entrance", ZellTaskKit::Downloading, RecordKind::Export, 3000),
        Task("דוח אירועים של השער הצפוני", ZellTaskKit::Finished, RecordKind::Export, 90),
        Task("北门一月入侵报警", ZellTaskKit::Finished, RecordKind::Export, 100),
        Task("Every event of every camera of the northern and the southern yard in the first quarter of the "
             "year",
             ZellTaskKit::UploadFinished, RecordKind::Export, 120),
        Task("stamped clip", ZellTaskKit::Deleted, RecordKind::Transcoding, 200),
    };
    tasks[0].row.task.is_running = true;
    tasks[0].row.pictures = 412;
    tasks[0].row.rate = 1'450'000;
    tasks[1].row.task.is_waiting = true;
    tasks[1].row.task.pages = 0;
    tasks[1].row.bytes = 0;
    tasks[4].row.task.error = {21, 404};
    tasks[4].row.task.error_text = "The server has no such file (404).";
    tasks[6].row.task.is_stored_only = true;
    tasks[6].row.task.is_interrupted = true;
    return tasks;
}

class Look : public WindowFixture
{
protected:
    void Take(Theme theme, const QString& language, const QString& suffix)
    {
        ApplyTheme(theme);
        ApplyLanguage(language);
        Show();
        Keep(*window_, "empty-" + suffix);
        model_->Apply(Tasks());
        ASSERT_EQ(model_->rowCount(), 11);
        const QString going_on =
            MainWindow::tr("%n task(s) of an earlier run were left unfinished.", nullptr, 1);
        window_->findChild<Banner*>("goOnBanner")->Say(going_on);
        window_->Table().View().selectRow(2);
        ASSERT_TRUE(WaitFor([&] { return window_->findChild<QAction*>("openReport")->isEnabled(); }));
        Keep(*window_, "window-" + suffix);
        PressKeysOf("newExport");
        auto* form = window_->findChild<ExportForm*>("exportForm");
        auto* state = form->findChild<QLabel*>("stationState");
        ASSERT_TRUE(WaitFor([&] { return state->text() == ExportForm::tr("The station answers."); }));
        form->findChild<QLineEdit*>("name")->setText("Alarms of the night");
        form->findChild<QLineEdit*>("cameras")->setText("3, four");
        auto* run = form->findChild<QPushButton*>("run");
        ASSERT_TRUE(WaitFor([&] { return !run->isEnabled(); }));
        Keep(*form, "form-" + suffix);
    }
};

TEST_F(Look, LightEnglish)
{
    Take(Theme::Light, "en", "light-en");
}

TEST_F(Look, DarkEnglish)
{
    Take(Theme::Dark, "en", "dark-en");
}

TEST_F(Look, LightChinese)
{
    Take(Theme::Light, "zh", "light-zh");
    EXPECT_EQ(window_->windowTitle(), QString::fromUtf8("下载中心"));
}

TEST_F(Look, DarkChinese)
{
    Take(Theme::Dark, "zh", "dark-zh");
}

}  // namespace
}  // namespace SystemTest
