#include "Window/RequestFile.h"

#include <gtest/gtest.h>
#include <QFile>
#include <QTemporaryDir>

namespace FetchyardClient {
namespace {

std::string WhyNot(const QString& path)
{
    RequestSource source;
    std::string reason;
    EXPECT_FALSE(ReadRequestFile(path.toStdString(), source, reason));
    EXPECT_TRUE(source.text.empty());
    return reason;
}

TEST(RequestFile, OfAHundredMebibytesIsRefusedUnread)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("huge.json"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.resize(100LL << 20));
    EXPECT_EQ(WhyNot(file.fileName()), "has 100.0 MiB, which is no request: one has 32.0 MiB at most");
}

TEST(RequestFile, ThatIsAFolderOrIsNotThereIsRefused)
{
    const QTemporaryDir folder;
    EXPECT_EQ(WhyNot(folder.path()), "is no file");
    EXPECT_EQ(WhyNot(folder.filePath("none.json")).rfind("can't be read: ", 0), 0U);
}

TEST(RequestFile, IsReadAsItStands)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("request.json"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("{}\n");
    file.close();
    RequestSource source;
    std::string reason;
    ASSERT_TRUE(ReadRequestFile(file.fileName().toStdString(), source, reason));
    EXPECT_EQ(source.text, "{}\n");
    EXPECT_EQ(source.label, file.fileName().toStdString());
}

}  // namespace
}  // namespace FetchyardClient
