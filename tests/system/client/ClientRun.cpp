#include "ClientRun.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <csignal>

namespace SystemTest {

using nlohmann::json;

namespace {

constexpr int kLongest = 300000;

}  // namespace

ClientRun::ClientRun()
{
    process_.setProcessChannelMode(QProcess::MergedChannels);
    process_.setWorkingDirectory(folder_.path());
    QDir(folder_.path()).mkdir("out");
}

void ClientRun::UsePlugin(const std::string& id, const std::string& module)
{
    plugins_ << "--plugin" << QString::fromStdString(id + "=" + module);
}

void ClientRun::SetEnvironment(const QString& name, const QString& value)
{
    QProcessEnvironment environment = process_.processEnvironment();
    if (environment.isEmpty())
        environment = QProcessEnvironment::systemEnvironment();
    environment.insert(name, value);
    process_.setProcessEnvironment(environment);
}

void ClientRun::Start(const QStringList& words)
{
    QStringList all = in_front_;
    const auto place = [this](const QString& name) { return is_relative_ ? name : folder_.filePath(name); };
    all << CLIENT_PROGRAM << "--data" << (data_.empty() ? place("data") : QString::fromStdString(data_));
    if (!station_.empty())
        all << "--station" << QString::fromStdString(station_);
    all << "--save" << place(save_) << plugins_ << words << options_;
    output_.clear();
    process_.start(all.front(), all.mid(1));
    ASSERT_TRUE(process_.waitForStarted()) << all.front().toStdString();
}

ClientRun::Result ClientRun::Run(const QStringList& words, const std::string& input)
{
    Start(words);
    process_.write(input.data(), static_cast<qint64>(input.size()));
    process_.closeWriteChannel();
    return Finish();
}

QStringList ClientRun::WriteRequests(const std::vector<std::string>& texts)
{
    QStringList words = {"run"};
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const QString path = folder_.filePath(QString("request-%1.json").arg(i + 1));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(texts[i].data(), static_cast<qint64>(texts[i].size()));
        words << path;
    }
    return words;
}

ClientRun::Result ClientRun::RunTexts(const std::vector<std::string>& texts)
{
    return Run(WriteRequests(texts));
}

ClientRun::Result ClientRun::RunRequests(const std::vector<json>& requests)
{
    StartRequests(requests);
    return Finish();
}

void ClientRun::StartRequests(const std::vector<json>& requests)
{
    std::vector<std::string> texts(requests.size());
    std::transform(requests.begin(), requests.end(), texts.begin(),
                   [](const json& request) { return request.dump(); });
    Start(WriteRequests(texts));
}

bool ClientRun::WaitForOutput(const std::string& pattern)
{
    const QRegularExpression expression(QString::fromStdString(pattern));
    while (!expression.match(QString::fromStdString(output_)).hasMatch()) {
        if (!process_.waitForReadyRead(kLongest))
            return false;
        output_ += process_.readAll().toStdString();
    }
    return true;
}

void ClientRun::Interrupt()
{
    ::kill(static_cast<pid_t>(process_.processId()), SIGINT);
}

ClientRun::Result ClientRun::Finish()
{
    Result result = FinishOrDie();
    EXPECT_FALSE(result.crashed) << result.output;
    return result;
}

ClientRun::Result ClientRun::FinishOrDie()
{
    Result result;
    if (process_.state() != QProcess::NotRunning && !process_.waitForFinished(kLongest))
        process_.kill();
    output_ += process_.readAll().toStdString();
    result.output = output_;
    result.crashed = process_.exitStatus() == QProcess::CrashExit;
    result.exit_code = process_.exitCode();
    return result;
}

std::string ClientRun::ExportFolder() const
{
    return folder_.path().toStdString() + "/out/";
}

std::string ClientRun::Path(const std::string& below) const
{
    return folder_.path().toStdString() + "/" + below;
}

json ReportRequest(const ClientRun& run, const std::string& name, int type, const std::string& pictures,
                   int rows)
{
    const std::string condition = R"({"PageIndex":1,"PageSize":50,"Limit":)" + std::to_string(rows) +
                                  R"(,"Pictures":")" + pictures + R"("})";
    json data;
    data["ExportFileParam"] = {
        {"RequestMethod", "POST"}, {"RequestAPI", "/api/v1/events/report"}, {"RequestCondition", condition}};
    data["WriteFileCondition"] = {
        {"SaveFilePathDir", run.ExportFolder()}, {"ExportFileName", name}, {"ExportFileType", type}};
    return {{"FileExportRequest", {{"FileExportType", 0}, {"RequestData", data}}}};
}

json& Section(json& request, const char* name)
{
    return request["FileExportRequest"]["RequestData"][name];
}

std::string Check(const QStringList& words)
{
    QProcess python;
    python.setProcessChannelMode(QProcess::MergedChannels);
    QStringList all = {QString(CHECKS_FOLDER) + "/" + words.front()};
    all << words.mid(1);
    // The one that has the Debian packages.
    python.start("/usr/bin/python3", all);
    EXPECT_TRUE(python.waitForFinished(kLongest));
    std::string output = python.readAll().toStdString();
    EXPECT_EQ(python.exitCode(), 0) << output;
    return output;
}

bool Exists(const std::string& path)
{
    return QFile::exists(QString::fromStdString(path));
}

std::vector<std::string> FilesBelow(const std::string& folder)
{
    std::vector<std::string> files;
    const QDir top(QString::fromStdString(folder));
    QDirIterator walk(top.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (walk.hasNext())
        files.push_back(top.relativeFilePath(walk.next()).toStdString());
    std::sort(files.begin(), files.end());
    return files;
}

}  // namespace SystemTest
