#include "ServedFolder.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace SystemTest {
namespace {

constexpr int kLongest = 120000;  // milliseconds

}  // namespace

ServedFolder::ServedFolder(const std::string& data, const QStringList& in_front)
{
    QStringList words = in_front;
    words << STATION_PROGRAM_FILE << "serve"
          << "--data" << QString::fromStdString(data);
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process_.start(words.front(), words.mid(1));
    QByteArray output;
    while (!output.contains('\n')) {
        if (!process_.waitForReadyRead(kLongest))
            throw std::runtime_error("the station does not start");
        output += process_.readAllStandardOutput();
    }
    port_ = output.mid(output.lastIndexOf(':') + 1).trimmed().toInt();
}

ServedFolder::~ServedFolder()
{
    Stop();
}

std::unique_ptr<httplib::Client> ServedFolder::Connect() const
{
    auto client = std::make_unique<httplib::Client>("127.0.0.1", port_);
    client->set_read_timeout(kLongest / 1000);
    return client;
}

nlohmann::json ServedFolder::Post(const std::string& path, const nlohmann::json& body) const
{
    const auto answer = Connect()->Post(path, body.dump(), "application/json");
    if (!answer)
        throw std::runtime_error("no answer for " + path);
    nlohmann::json json = nlohmann::json::parse(answer->body);
    json["status"] = answer->status;
    return json;
}

int ServedFolder::Stop()
{
    if (process_.state() != QProcess::NotRunning) {
        process_.terminate();
        process_.waitForFinished(kLongest);
    }
    return process_.exitStatus() == QProcess::NormalExit ? process_.exitCode() : -1;
}

void ServedFolder::Kill()
{
    process_.kill();
    process_.waitForFinished(kLongest);
}

nlohmann::json Check(const std::string& script, const std::string& file)
{
    QProcess python;
    // The one that has the Debian packages.
    python.start("/usr/bin/python3", {QString::fromStdString(std::string(CHECKS_FOLDER) + "/" + script),
                                      QString::fromStdString(file)});
    EXPECT_TRUE(python.waitForFinished(kLongest));
    EXPECT_EQ(python.exitCode(), 0) << python.readAllStandardError().toStdString();
    return nlohmann::json::parse(python.readAllStandardOutput().toStdString(), nullptr, false);
}

}  // namespace SystemTest
