#include "WindowFixture.h"

#include <QDir>
#include <QFile>

namespace SystemTest {
namespace {

using namespace FetchyardClient;

class BadInput : public WindowFixture
{
protected:
    // What the banner says after a file was given to the window.
    QString Told(const QString& path)
    {
        board_->SubmitFile(path);
        const QString name = path.section('/', -1);
        EXPECT_TRUE(WaitFor([&] { return IsShown("toldBanner") && Words("toldBanner").startsWith(name); }));
        return Words("toldBanner");
    }

    QString File(const QString& name, const QByteArray& text)
    {
        QFile file(folder_.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        return file.fileName();
    }
};

TEST_F(BadInput, RequestFileOfAHundredMebibytesIsRefusedWithWords)
{
    Show();
    QFile file(File("huge.json", ""));
    ASSERT_TRUE(file.resize(100LL << 20));
    EXPECT_EQ(Told(file.fileName()),
              "huge.json: has 100.0 MiB, which is no request: one has 32.0 MiB at most");
}

TEST_F(BadInput, RequestThatDoesNotFitItsSchemaIsToldByMember)
{
    Show();
    const QString told =
        Told(File("bad.json", R"({"FileExportRequest":{"FileExportType":0,"RequestData":{"Typo":1}}})"));
    EXPECT_TRUE(told.startsWith("bad.json: /FileExportRequest/RequestData")) << told.toStdString();
    EXPECT_TRUE(Told(File("none.json", "{")).startsWith("none.json: is not JSON"));
}

TEST_F(BadInput, FolderThatWasRemovedIsToldWhenItIsToBeOpened)
{
    Show();
    Run(Choice("Alarms"));
    ASSERT_TRUE(WaitForState("Alarms", RowState::Finished));
    QDir(QString::fromStdString(Folder("exports/Alarms"))).removeRecursively();
    Click("Alarms");
    PressKeysOf("openFolder");
    EXPECT_TRUE(opened_.empty());
    EXPECT_EQ(Words("toldBanner").toStdString(),
              "Alarms: its folder was removed: " + Folder("exports/Alarms/"));
}

TEST_F(BadInput, StationThatIsGoneMakesTheTaskFailWithItsReason)
{
    Show();
    station_.Stop();
    Run(Choice("Alarms"));
    ASSERT_TRUE(WaitForState("Alarms", RowState::Failed));
    EXPECT_FALSE(ErrorText(model_->RowAt(0).task).isEmpty());
}

TEST_F(BadInput, NamesOfTenThousandLettersAndFromRightToLeftAreShownAndFound)
{
    Show();
    TaskNews huge;
    huge.row.task.guid = "huge";
    for (int i = 0; i < 10'000; ++i)
        huge.row.task.name += "ש";
    huge.row.task.state = ZellTaskKit::Finished;
    model_->Apply({huge});
    EXPECT_EQ(model_->rowCount(), 1);
    Keep(*window_, "long-name");
    TaskFilter filter;
    filter.text = QString::fromUtf8("שש");
    model_->SetFilter(filter);
    EXPECT_EQ(model_->rowCount(), 1);
}

}  // namespace
}  // namespace SystemTest
