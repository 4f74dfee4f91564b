#include "StationProcess.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <thread>

namespace SystemTest {
namespace {

constexpr int kLongest = 240000;  // milliseconds
constexpr char kEnd[] = "2026-02-01T00:00:00Z";
constexpr char kListening[] = "listening on http://127.0.0.1:";

[[noreturn]] void Fail(const std::string& what)
{
    throw std::runtime_error(what);
}

// Seeding is deterministic, so one folder serves all tests of a build. Another test may make it at the same
// time: whoever is first gives it its name.
std::filesystem::path TemplateFolder(int events)
{
    const QFileInfo program(STATION_PROGRAM);
    const QString version = QString::number(program.lastModified().toMSecsSinceEpoch(), 36);
    const std::filesystem::path all = STATION_TEMPLATES;
    const std::filesystem::path folder = all / (std::to_string(events) + "-" + version.toStdString());
    if (std::filesystem::exists(folder))
        return folder;
    std::filesystem::create_directories(all);
    QTemporaryDir making(QString::fromStdString((all / "making-XXXXXX").string()));
    const QString data = making.filePath("data");
    // Video takes time to draw; the tests of other sites need none.
    const char* const minutes = events == StationProcess::kEvents ? "1" : "0";
    const ProgramResult result = RunStation(
        {"seed", "--data", data, "--events", QString::number(events), "--end", kEnd, "--minutes", minutes});
    if (result.exit_code != 0)
        Fail("the station can't be seeded: " + result.errors);
    std::error_code error;
    std::filesystem::rename(data.toStdString(), folder, error);
    if (!std::filesystem::exists(folder))
        Fail("the seeded data can't be kept: " + error.message());
    return folder;
}

}  // namespace

ProgramResult RunStation(const QStringList& words, const QByteArray& input)
{
    QProcess process;
    process.start(STATION_PROGRAM, words);
    if (!process.waitForStarted())
        Fail("the program station does not start");
    process.write(input);
    process.closeWriteChannel();
    ProgramResult result;
    const bool has_ended = process.waitForFinished(kLongest);
    if (!has_ended) {
        process.kill();
        process.waitForFinished();
        result.errors = "does not end: ";
    }
    result.output = process.readAllStandardOutput().toStdString();
    result.errors += process.readAllStandardError().toStdString();
    if (has_ended && process.exitStatus() == QProcess::NormalExit)
        result.exit_code = process.exitCode();
    return result;
}

StationProcess::StationProcess(int events, const QStringList& more_words)
{
    CopyData(events);
    QStringList words = {"serve", "--data", QString::fromStdString(DataFolder()), "--control"};
    words << more_words;
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process_.start(STATION_PROGRAM, words);
    WaitUntilReady();
}

StationProcess::~StationProcess()
{
    Stop();
}

void StationProcess::CopyData(int events) const
{
    std::filesystem::copy(TemplateFolder(events), DataFolder(), std::filesystem::copy_options::recursive);
}

void StationProcess::WaitUntilReady()
{
    QByteArray output;
    while (!output.contains('\n')) {
        if (!process_.waitForReadyRead(kLongest))
            Fail("the station does not start");
        output += process_.readAllStandardOutput();
    }
    const int at = output.indexOf(kListening);
    if (at < 0)
        Fail("the station does not tell its port: " + output.toStdString());
    port_ = output.mid(at + static_cast<int>(sizeof(kListening)) - 1).trimmed().toInt();
}

std::string StationProcess::Address() const
{
    return "http://127.0.0.1:" + std::to_string(port_);
}
std::string StationProcess::DataFolder() const
{
    return folder_.filePath("data").toStdString();
}

std::unique_ptr<httplib::Client> StationProcess::Connect() const
{
    auto client = std::make_unique<httplib::Client>("127.0.0.1", port_);
    client->set_keep_alive(true);
    client->set_tcp_nodelay(true);
    client->set_read_timeout(kLongest / 1000);
    return client;
}

nlohmann::json StationProcess::Post(const std::string& path, const nlohmann::json& body) const
{
    const auto answer = Connect()->Post(path, body.dump(), "application/json");
    if (!answer)
        Fail("no answer for " + path + ": " + httplib::to_string(answer.error()));
    nlohmann::json json = nlohmann::json::parse(answer->body);
    json["status"] = answer->status;
    return json;
}

nlohmann::json StationProcess::Get(const std::string& path) const
{
    const auto answer = Connect()->Get(path);
    if (!answer)
        Fail("no answer for " + path + ": " + httplib::to_string(answer.error()));
    return nlohmann::json::parse(answer->body);
}

void StationProcess::SetFault(const nlohmann::json& fault) const
{
    const nlohmann::json answer = Post("/control/faults", fault);
    if (answer["status"] != 200)
        Fail("the fault is refused: " + answer.dump());
}

void StationProcess::ClearFaults() const
{
    if (!Connect()->Delete("/control/faults"))
        Fail("the faults can't be cleared");
}

nlohmann::json StationProcess::Requests() const
{
    const auto answer = Connect()->Get("/control/requests");
    if (!answer)
        Fail("the requests can't be asked for");
    return nlohmann::json::parse(answer->body);
}

void StationProcess::ResetRequests() const
{
    if (!Connect()->Delete("/control/requests"))
        Fail("the requests can't be reset");
}

int StationProcess::RequestCount(const std::string& path) const
{
    const nlohmann::json paths = Requests()["Paths"];
    return paths.contains(path) ? paths[path]["Count"].get<int>() : 0;
}

bool StationProcess::WaitForRequests(const std::string& path, int count) const
{
    constexpr std::chrono::minutes longest(1);
    const auto end = std::chrono::steady_clock::now() + longest;
    while (RequestCount(path) < count) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::yield();
    }
    return true;
}

void StationProcess::Trust(const std::string& key_file) const
{
    const ProgramResult result = RunStation(
        {"trust", QString::fromStdString(key_file), "--data", QString::fromStdString(DataFolder())});
    if (result.exit_code != 0)
        Fail("the key is refused: " + result.errors);
}

int StationProcess::Stop()
{
    if (is_stopped_)
        return exit_code_;
    is_stopped_ = true;
    process_.terminate();
    process_.waitForFinished(kLongest);
    if (process_.exitStatus() == QProcess::NormalExit)
        exit_code_ = process_.exitCode();
    return exit_code_;
}

}  // namespace SystemTest
