#include "WindowFixture.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QMessageBox>
#include <QTableWidget>
#include <QTest>

namespace SystemTest {
namespace {

using namespace FetchyardClient;

class Window : public WindowFixture
{
};

TEST_F(Window, FinishedExportOpensItsFolderAndItsReportByKeys)
{
    Show();
    Run(Choice("Alarms"));
    ASSERT_TRUE(WaitForState("Alarms", RowState::Finished));
    Click("Alarms");
    PressKeysOf("openFolder");
    PressKeysOf("openReport");
    ASSERT_EQ(opened_.size(), 2U);
    EXPECT_EQ(opened_[0].toLocalFile().toStdString(), Folder("exports/Alarms/"));
    EXPECT_EQ(opened_[1].toLocalFile().toStdString(), Folder("exports/Alarms/Alarms.csv"));
    const std::string progress = ProgressText(model_->RowAt(0), 0).toStdString();
    EXPECT_NE(progress.find("1 page"), std::string::npos) << progress;
    EXPECT_NE(progress.find("KiB"), std::string::npos) << progress;
}

TEST_F(Window, RunningExportStopsAndStartsAgainByKeys)
{
    Show();
    SlowDown();
    Run(Choice("Alarms"));
    ASSERT_TRUE(WaitForState("Alarms", RowState::Running));
    Click("Alarms");
    PressKeysOf("stop");
    ASSERT_TRUE(WaitForState("Alarms", RowState::Stopped));
    station_.ClearFaults();
    PressKeysOf("startAgain");
    ASSERT_TRUE(WaitForState("Alarms", RowState::Finished));
    EXPECT_EQ(model_->rowCount(), 1);
}

TEST_F(Window, RemovedEntriesComeBackByUndoAndTheirFilesStay)
{
    Show();
    Run(Choice("One"));
    Run(Choice("Two"));
    ASSERT_TRUE(WaitForState("One", RowState::Finished));
    ASSERT_TRUE(WaitForState("Two", RowState::Finished));
    Click("One");
    Click("Two", Qt::ControlModifier);
    PressKeysOf("remove");
    EXPECT_EQ(model_->rowCount(), 0);
    EXPECT_EQ(Words("undoBanner"), "2 tasks removed from the list. Their files stay.");
    PressButton("undoBannerAction");
    EXPECT_EQ(model_->rowCount(), 2);
    EXPECT_FALSE(IsShown("undoBanner"));
    EXPECT_EQ(FetchyardLogical::ListTasks().size(), 2U);
}

TEST_F(Window, RemovalIsKeptWhenTheWindowCloses)
{
    Show();
    Run(Choice("One"));
    ASSERT_TRUE(WaitForState("One", RowState::Finished));
    PressKeysOf("clearFinished");
    EXPECT_EQ(model_->rowCount(), 0);
    window_.reset();
    board_.reset();
    EXPECT_TRUE(FetchyardLogical::ListTasks().empty());
    EXPECT_TRUE(QFile::exists(QString::fromStdString(Folder("exports/One/One.csv"))));
}

TEST_F(Window, UnfinishedExportIsDeletedWithItsFolderOnceThePersonHasAgreed)
{
    Show();
    SlowDown();
    Run(Choice("One"));
    ASSERT_TRUE(WaitForState("One", RowState::Running));
    const QString folder = QString::fromStdString(Folder("exports/One"));
    Click("One");
    PressKeysOf("delete");
    auto* box = window_->findChild<QMessageBox*>("deleteBox");
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), "Delete 1 task and the folder of its export?");
    QTest::keyClick(box, Qt::Key_Escape);
    ASSERT_TRUE(WaitFor([&] { return window_->findChild<QMessageBox*>("deleteBox") == nullptr; }));
    EXPECT_TRUE(QDir(folder).exists());
    Click("One");
    PressKeysOf("delete");
    ASSERT_TRUE(WaitFor([&] { return window_->findChild<QMessageBox*>("deleteBox") != nullptr; }));
    box = window_->findChild<QMessageBox*>("deleteBox");
    for (QAbstractButton* button : box->buttons()) {
        if (box->buttonRole(button) == QMessageBox::AcceptRole) {
            QTest::mouseClick(button, Qt::LeftButton);
            break;
        }
    }
    ASSERT_TRUE(WaitForState("One", RowState::Deleted));
    EXPECT_TRUE(WaitFor([&] { return !QDir(folder).exists(); }));
}

TEST_F(Window, FailedFilesAreShownAndTheErrorIsCopied)
{
    Show();
    ExportChoice choice = Choice("Alarms");
    nlohmann::json request = MakeRequest(choice);
    request["FileExportRequest"]["RequestData"]["DownloadFiles"]["ImageDownload"] = {
        {{"Imageurl", "/pictures/there-is-none.jpg"}, {"ImageName", "lost"}}};
    board_->Submit({"Alarms", request.dump()});
    ASSERT_TRUE(WaitForState("Alarms", RowState::Failed));
    Click("Alarms");
    PressKeysOf("copyError");
    EXPECT_TRUE(QApplication::clipboard()->text().startsWith("Alarms: failed\n"))
        << QApplication::clipboard()->text().toStdString();
    PressKeysOf("failedFiles");
    auto* dialog = window_->findChild<QDialog*>("failedFilesDialog");
    ASSERT_NE(dialog, nullptr);
    auto* files = dialog->findChild<QTableWidget*>();
    ASSERT_EQ(files->rowCount(), 1);
    EXPECT_TRUE(files->item(0, 1)->text().contains("lost")) << files->item(0, 1)->text().toStdString();
}

TEST_F(Window, SearchAndStateNarrowTheList)
{
    Show();
    for (const char* name : {"Gate north", "Gate south", "Yard"}) {
        Run(Choice(name));
        ASSERT_TRUE(WaitForState(name, RowState::Finished));
    }
    QTest::keyClick(window_.get(), Qt::Key_F, Qt::ControlModifier);
    auto* search = window_->findChild<QLineEdit*>("search");
    ASSERT_TRUE(WaitFor([&] { return search->hasFocus(); }));
    QTest::keyClicks(search, "GATE");
    EXPECT_TRUE(WaitFor([&] { return model_->rowCount() == 2; }));
    auto* states = window_->findChild<QComboBox*>("states");
    states->setFocus();
    QTest::keyClicks(states, "failed");
    EXPECT_TRUE(WaitFor([&] { return model_->rowCount() == 0; }));
    EXPECT_EQ(window_->findChild<QLabel*>("emptyWords")->text(),
              "No task fits the search and the state that are chosen.");
}

TEST_F(Window, EverythingIsReachedByTabAndHasANameForScreenReaders)
{
    Show();
    Run(Choice("One"));
    ASSERT_TRUE(WaitForState("One", RowState::Finished));
    ASSERT_TRUE(WaitFor([&] { return window_->Table().View().isVisible(); }));
    window_->Table().View().setFocus();
    QSet<QString> reached;
    for (int i = 0; i < 40; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QWidget* focus = QApplication::focusWidget();
        ASSERT_NE(focus, nullptr);
        EXPECT_FALSE(focus->accessibleName().isEmpty()) << focus->metaObject()->className();
        reached << focus->objectName();
    }
    SCOPED_TRACE(QStringList(reached.values()).join(" ").toStdString());
    EXPECT_TRUE(reached.contains("tasks"));
    EXPECT_TRUE(reached.contains("search"));
    EXPECT_TRUE(reached.contains("states"));
}

TEST_F(Window, EndOfATaskIsToldToTheDesktopWhenTheWindowIsNotInFront)
{
    Show();
    QSignalSpy told(window_->findChild<Notices*>(), &Notices::Told);
    Run(Choice("In front"));
    ASSERT_TRUE(WaitForState("In front", RowState::Finished));
    QApplication::setActiveWindow(nullptr);
    Run(Choice("Behind"));
    ASSERT_TRUE(WaitForState("Behind", RowState::Finished));
    ASSERT_TRUE(WaitFor([&] { return told.count() > 0; }));
    ASSERT_EQ(told.count(), 1);
    EXPECT_EQ(told.at(0).at(0).toString(), "Behind: finished");
}

TEST_F(Window, ClosingStopsWhatRunsAfterAsking)
{
    Show();
    SlowDown();
    Run(Choice("Alarms"));
    ASSERT_TRUE(WaitForState("Alarms", RowState::Running));
    window_->close();
    EXPECT_TRUE(window_->isVisible());
    auto* box = window_->findChild<QMessageBox*>("quitBox");
    ASSERT_NE(box, nullptr);
    QTest::mouseClick(box->defaultButton(), Qt::LeftButton);
    EXPECT_TRUE(WaitFor([&] { return !window_->isVisible(); }));
    EXPECT_EQ(StateOf(FetchyardLogical::ListTasks().front()), RowState::Stopped);
}

TEST_F(Window, ExportsWhoseArchivesHaveOneNameRunOneAfterTheOther)
{
    Show();
    SlowDown();
    ExportChoice choice = Choice("Alarms");
    choice.is_packed = true;
    Run(choice);
    board_->Submit({"again", MakeRequest(choice).dump()});
    QSignalSpy submitted(board_.get(), &TaskBoard::Submitted);
    ASSERT_TRUE(WaitFor([&] { return submitted.count() == 1; }));
    EXPECT_EQ(FetchyardLogical::ListTasks().size(), 1U);
    ASSERT_TRUE(WaitFor([&] { return submitted.count() == 2; }));
    station_.ClearFaults();
    EXPECT_TRUE(WaitFor([&] { return model_->Order().Count(RowState::Finished) == 2; }));
}

}  // namespace
}  // namespace SystemTest
