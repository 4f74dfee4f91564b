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

    // What it printed; the exit code must be the one expected.
    static QString Run(const QString& program, const QStringList& words, int exit_code = 0,
                       const QString& libraries = {})
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        if (!libraries.isEmpty())
            environment.insert("LD_LIBRARY_PATH", libraries);
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(program, words);
        EXPECT_TRUE(process.waitForFinished(600000)) << program.toStdString();
        const QString printed = QString::fromUtf8(process.readAll());
        EXPECT_EQ(process.exitCode(), exit_code) << words.join(' ').toStdString() << "\n"
                                                 << printed.toStdString();
        return printed;
    }

    // Builds an example outside of the tree, against the library as it is installed.
    QString Build(const QString& example)
    {
        const QString prefix = folder_.filePath("installed");
        QString build = folder_.filePath(example);
        Run(CMAKE_PROGRAM, {"--install", BUILD_FOLDER, "--prefix", prefix});
        Run(CMAKE_PROGRAM, {"-S", QString(SOURCE_FOLDER) + "/examples/" + example, "-B", build,
                            "-DCMAKE_PREFIX_PATH=" + prefix, QString("-DCMAKE_BUILD_TYPE=") + BUILD_CONFIG,
                            QString("-DCMAKE_CXX_FLAGS=") + SANITIZER_FLAGS});
        Run(CMAKE_PROGRAM, {"--build", build});
        return build;
    }

    const QTemporaryDir folder_;
};

}  // namespace

TEST_F(Embedding, ExampleOfTheReadmeIsTheOneThatIsBuilt)
{
    const QString readme = ReadText(QString(SOURCE_FOLDER) + "/README.md");
    EXPECT_TRUE(readme.contains(ReadText(QString(SOURCE_FOLDER) + "/examples/embed/main.cpp")));
}

TEST_F(Embedding, ProgramThatFindsTheInstalledLibraryExportsAReport)
{
    const QString build = Build("embed");
    const QString out = folder_.filePath("out/");
    QDir().mkpath(out);
    Run(build + "/embed", {QString::fromStdString(Address()), out});
    EXPECT_TRUE(QFile::exists(out + "Alarms/Alarms.csv"));
}

TEST_F(Embedding, SiblingOfAnothersOwnTakesThePlaceOfOurs)
{
    const QString build = Build("error-texts");
    const QString request = QString(SOURCE_FOLDER) + "/docs/requests/report-export.sample.json";
    const QString printed = Run(CLIENT_PROGRAM,
                                {"--station", "http://127.0.0.1:1", "--data", folder_.filePath("data"),
                                 "--save", folder_.filePath("out/"), "run", request},
                                1, build);
    EXPECT_TRUE(printed.contains("Das ging schief: 22/7")) << printed.toStdString();
}
