#include "Window/ExportForm.h"
#include "WindowFixture.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QFile>
#include <QMimeData>
#include <QTest>

namespace SystemTest {
namespace {

using namespace FetchyardClient;

class Form : public WindowFixture
{
protected:
    void Open()
    {
        Show();
        PressKeysOf("newExport");
        form_ = window_->findChild<ExportForm*>("exportForm");
        ASSERT_NE(form_, nullptr);
        QApplication::setActiveWindow(form_);
    }

    template <typename Editor>
    Editor* Field(const char* name)
    {
        return form_->findChild<Editor*>(name);
    }

    void Type(const char* field, const QString& text)
    {
        auto* editor = Field<QLineEdit>(field);
        editor->setFocus();
        editor->selectAll();
        QTest::keyClicks(editor, text);
    }

    QLabel* Violation(ExportField field)
    {
        return form_->findChild<QLabel*>("violation" + QString::number(static_cast<int>(field)));
    }

    QString Preview() { return Field<QPlainTextEdit>("preview")->toPlainText(); }

    QPointer<ExportForm> form_;
};

TEST_F(Form, ShowsTheRequestWhileItIsTypedAndRunsIt)
{
    Open();
    Type("name", "Night");
    Type("cameras", "1, 2");
    QTest::keyClicks(Field<QComboBox>("format"), "CSV");
    ASSERT_TRUE(WaitFor([&] { return Preview().contains("\"ExportFileName\": \"Night\""); }));
    ASSERT_TRUE(WaitFor([&] { return Preview().contains("\\\"CameraIds\\\":[1,2]"); }));
    QTest::mouseClick(Field<QPushButton>("run"), Qt::LeftButton);
    ASSERT_TRUE(WaitForState("Night", RowState::Finished));
    EXPECT_TRUE(WaitFor([&] { return form_.isNull(); })) << "it closes when its request was taken";
    EXPECT_TRUE(QFile::exists(QString::fromStdString(Folder("exports/Night/Night.csv"))));
}

TEST_F(Form, ShowsWhatIsWrongAtItsFieldAndRunsNothing)
{
    Open();
    Type("cameras", "one");
    ASSERT_TRUE(WaitFor([&] { return Violation(ExportField::Cameras)->isVisible(); }));
    EXPECT_EQ(Violation(ExportField::Cameras)->text(), "numbers with commas between, as 1, 2, 7");
    EXPECT_FALSE(Field<QPushButton>("run")->isEnabled());
    EXPECT_FALSE(Field<QPushButton>("save")->isEnabled());
    Type("cameras", "1");
    EXPECT_TRUE(WaitFor([&] { return Field<QPushButton>("run")->isEnabled(); }));
    EXPECT_FALSE(Violation(ExportField::Cameras)->isVisible());
}

TEST_F(Form, PasswordThatTheSchemaRefusesIsToldAtThePassword)
{
    Open();
    QTest::keyClick(Field<QCheckBox>("packed"), Qt::Key_Space);
    Type("password", "a\"b");
    EXPECT_TRUE(WaitFor([&] { return Violation(ExportField::Password)->isVisible(); }));
}

TEST_F(Form, SavedRequestRunsWhenItsFileIsDroppedOnTheWindow)
{
    Open();
    Type("name", "Saved");
    const QString path = QString::fromStdString(Folder("saved.json"));
    form_->SaveTo(path);
    ASSERT_TRUE(QFile::exists(path));
    form_->close();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window_.get(), &enter);
    ASSERT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window_.get(), &drop);
    EXPECT_TRUE(WaitForState("Saved", RowState::Finished));
}

TEST_F(Form, TellsThatTheStationWentAway)
{
    Open();
    auto* state = Field<QLabel>("stationState");
    ASSERT_TRUE(WaitFor([&] { return state->text() == "The station answers."; }));
    station_.Stop();
    EXPECT_TRUE(WaitFor([&] { return state->text().startsWith("The station does not answer: "); }))
        << state->text().toStdString();
    Type("name", "Still there");
    EXPECT_TRUE(WaitFor([&] { return Preview().contains("Still there"); }));
}

TEST_F(Form, RequestCanNotBeSavedWhereNothingCanBeWritten)
{
    Open();
    form_->SaveTo("/there/is/no/such/folder/request.json");
    EXPECT_TRUE(Field<QLabel>("verdict")->text().startsWith(
        "/there/is/no/such/folder/request.json can't be written: "));
}

}  // namespace
}  // namespace SystemTest
