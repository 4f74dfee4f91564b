#include "StationProgram.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QStandardPaths>

namespace FetchyardClient {

namespace {

constexpr char kProgram[] = "fetchyard-station";
constexpr int kSeedTimeout = 300000;
constexpr int kStartTimeout = 30000;
constexpr char kListening[] = "listening on ";

// Beside this program, or wherever programs are found.
QString FindProgram()
{
    const QString beside = QStandardPaths::findExecutable(kProgram, {QCoreApplication::applicationDirPath()});
    return beside.isEmpty() ? QStandardPaths::findExecutable(kProgram) : beside;
}

}  // namespace

bool StationProgram::Seed(const QString& program, const QString& folder, int events, std::string& reason)
{
    // Written when seeding is over, so that one that was cut short is done again.
    const QString mark = folder + "/seeded-" + QString::number(events);
    if (QFile::exists(mark))
        return true;
    QDir(folder).removeRecursively();
    QDir().mkpath(folder);
    QProcess seeding;
    seeding.setProcessChannelMode(QProcess::MergedChannels);
    seeding.start(program, {"seed", "--data", folder, "--events", QString::number(events)});
    if (!seeding.waitForFinished(kSeedTimeout) || seeding.exitCode() != 0) {
        reason = "the station can't be seeded: " + seeding.readAll().toStdString();
        return false;
    }
    QFile written(mark);
    return written.open(QIODevice::WriteOnly);
}

bool StationProgram::Start(const std::string& data_folder, int events, std::string& reason)
{
    const QString program = FindProgram();
    if (program.isEmpty()) {
        reason = std::string("the program ") + kProgram + " is not installed";
        return false;
    }
    const QString folder = QString::fromStdString(data_folder);
    if (!Seed(program, folder, events, reason))
        return false;
    process_.start(program, {"serve", "--data", folder, "--port", "0"});
    QElapsedTimer timer;
    timer.start();
    QByteArray output;
    while (!output.contains('\n') && timer.elapsed() < kStartTimeout &&
           process_.state() != QProcess::NotRunning) {
        process_.waitForReadyRead(kStartTimeout);
        output += process_.readAllStandardOutput();
    }
    const int at = output.indexOf(kListening);
    if (at < 0) {
        reason = "the station does not start: " + (output + process_.readAllStandardError()).toStdString();
        return false;
    }
    const QByteArray rest = output.mid(at + static_cast<int>(sizeof(kListening)) - 1);
    address_ = rest.left(rest.indexOf('\n')).trimmed().toStdString();
    return true;
}

StationProgram::~StationProgram()
{
    if (process_.state() == QProcess::NotRunning)
        return;
    process_.terminate();
    if (!process_.waitForFinished(5000))
        process_.kill();
    process_.waitForFinished(5000);
}

}  // namespace FetchyardClient
