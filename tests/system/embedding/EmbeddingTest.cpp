#include "tests/system/StationFixture.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

namespace {

class Embedding : public SystemTest::StationFixture
{
protected:
    static QString ReadText(const QString& path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
        return QString::fromUtf8(file.readAll());
    }

    static void RunOrFail(const QString& program, const QStringList& words)
    {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(program, words);
        ASSERT_TRUE(process.waitForFinished(600000)) << program.toStdString();
        ASSERT_EQ(process.exitCode(), 0) << words.join(' ').toStdString() << "\n"
                                         << process.readAll().toStdString();
    }
};

}  // namespace

TEST_F(Embedding, ExampleOfTheReadmeIsTheOneThatIsBuilt)
{
    const QString readme = ReadText(QString(SOURCE_FOLDER) + "/README.md");
    EXPECT_TRUE(readme.contains(ReadText(QString(SOURCE_FOLDER) + "/examples/embed/main.cpp")));
}

TEST_F(Embedding, ProgramThatFindsTheInstalledLibraryExportsAReport)
{
    const QTemporaryDir folder;
    const QString prefix = folder.filePath("installed");
    const QString build = folder.filePath("build");
    RunOrFail(CMAKE_PROGRAM, {"--install", BUILD_FOLDER, "--prefix", prefix});
    RunOrFail(CMAKE_PROGRAM, {"-S", QString(SOURCE_FOLDER) + "/examples/embed", "-B", build,
                              "-DCMAKE_PREFIX_PATH=" + prefix, QString("-DCMAKE_BUILD_TYPE=") + BUILD_CONFIG,
                              QString("-DCMAKE_CXX_FLAGS=") + SANITIZER_FLAGS});
    RunOrFail(CMAKE_PROGRAM, {"--build", build});
    const QString out = folder.filePath("out/");
    QDir().mkpath(out);
    RunOrFail(build + "/embed", {QString::fromStdString(Address()), out});
    EXPECT_TRUE(QFile::exists(out + "Alarms/Alarms.csv"));
}
