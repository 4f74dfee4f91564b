#include "WindowFixture.h"

#include <QDir>
#include <QFile>

namespace SystemTest {
namespace {

using namespace FetchyardClient;

class StoredTasks : public WindowFixture
{
protected:
    QDir Data() const { return QDir(QString::fromStdString(Folder("data"))); }

    // Keeps the store's files as a kill at this moment would leave them: two looks that see the same saw one
    // moment.
    void KeepStore()
    {
        ASSERT_TRUE(WaitFor([this] {
            kept_ = StoreFiles();
            return kept_ == StoreFiles();
        }));
    }

    std::map<QString, QByteArray> StoreFiles() const
    {
        std::map<QString, QByteArray> files;
        for (const QString& name : Data().entryList({"tasks.db*"}, QDir::Files)) {
            if (!name.endsWith(".lock"))
                files[name] = Read(Data().filePath(name));
        }
        return files;
    }

    void PutStoreBack()
    {
        for (const QString& name : Data().entryList({"tasks.db*"}, QDir::Files))
            QFile::remove(Data().filePath(name));
        for (const auto& [name, bytes] : kept_) {
            QFile file(Data().filePath(name));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(bytes);
        }
    }

    static QByteArray Read(const QString& path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    std::map<QString, QByteArray> kept_;
};

TEST_F(StoredTasks, OfAnEarlierRunAreShownAndStartAgainFromTheirRecord)
{
    Show();
    EXPECT_EQ(Words("storeBanner"), "");
    SlowDown();
    Run(Choice("Alarms"));
    ASSERT_TRUE(WaitForState("Alarms", RowState::Running));
    const std::string guid = model_->RowAt(0).task.guid;
    FetchyardLogical::StopTask(guid);
    ASSERT_TRUE(WaitForState("Alarms", RowState::Stopped));
    station_.ClearFaults();
    Leave();

    Show();
    ASSERT_EQ(Line("Alarms"), 0);
    EXPECT_TRUE(model_->RowAt(0).task.is_stored_only);
    Click("Alarms");
    PressKeysOf("startAgain");
    ASSERT_TRUE(WaitForState("Alarms", RowState::Finished));
    EXPECT_EQ(model_->rowCount(), 1);
    EXPECT_NE(model_->RowAt(0).task.guid, guid);
}

TEST_F(StoredTasks, WhatACrashLeftIsGoneOnWithByOneButton)
{
    Show();
    SlowDown();
    Run(Choice("One"));
    Run(Choice("Two"));
    ASSERT_TRUE(WaitForState("One", RowState::Running));
    ASSERT_TRUE(WaitForState("Two", RowState::Running));
    KeepStore();
    Leave();
    PutStoreBack();
    station_.ClearFaults();

    Show();
    EXPECT_TRUE(IsShown("goOnBanner"));
    EXPECT_EQ(Words("goOnBanner"), "2 tasks of an earlier run were left unfinished.");
    EXPECT_EQ(model_->Order().Count(RowState::Interrupted), 2U);
    PressButton("goOnBannerAction");
    EXPECT_TRUE(WaitForState("One", RowState::Finished));
    EXPECT_TRUE(WaitForState("Two", RowState::Finished));
    EXPECT_FALSE(IsShown("goOnBanner"));
    EXPECT_EQ(model_->rowCount(), 2);
}

TEST_F(StoredTasks, ListThatAnotherClientHoldsIsToldInABanner)
{
    ASSERT_TRUE(Data().mkpath("."));
    QProcess other;
    other.start("flock", {Data().filePath("tasks.db.lock"), "sh", "-c", "echo held; cat"});
    ASSERT_TRUE(other.waitForReadyRead(60000));
    Show();
    EXPECT_TRUE(IsShown("storeBanner"));
    EXPECT_EQ(Words("storeBanner").toStdString(), host_->StoreMessage());
    EXPECT_FALSE(host_->StoreMessage().empty());
    Run(Choice("Alarms"));
    EXPECT_TRUE(WaitForState("Alarms", RowState::Finished)) << "it works, and is not kept";
    other.closeWriteChannel();
    EXPECT_TRUE(other.waitForFinished(60000));
}

}  // namespace
}  // namespace SystemTest
