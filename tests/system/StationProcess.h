#pragma once

#include <httplib.h>
#include <nlohmann/json.hpp>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>
#include <string>

namespace SystemTest {

struct ProgramResult
{
    int exit_code = -1;  // -1: did not run, or crashed
    std::string output;
    std::string errors;
};

// Runs the station's program to its end.
ProgramResult RunStation(const QStringList& words, const QByteArray& input = {});

// A station of its own for a test: data that is seeded once for each build and copied, a free port of the
// loopback, and the test controls switched on. Throws std::runtime_error with what the program said if it
// does not start.
class StationProcess
{
public:
    // Only the site of so many events has recordings too, of the minute before its end.
    static constexpr int kEvents = 400;

    explicit StationProcess(int events = kEvents, const QStringList& more_words = {});
    ~StationProcess();
    StationProcess(const StationProcess&) = delete;
    StationProcess& operator=(const StationProcess&) = delete;

    std::string Address() const;  // "http://127.0.0.1:PORT"
    int Port() const { return port_; }
    // UTF-8, without a final "/".
    std::string DataFolder() const;

    // A connection that is kept alive; each call gives a new one.
    std::unique_ptr<httplib::Client> Connect() const;
    // Sends a JSON body and reads a JSON answer, with its status in "status".
    nlohmann::json Post(const std::string& path, const nlohmann::json& body) const;

    // Asks for a JSON answer; throws if there is none.
    nlohmann::json Get(const std::string& path) const;

    // See /control/faults; throws if the station refuses the fault.
    void SetFault(const nlohmann::json& fault) const;
    void ClearFaults() const;
    // See /control/requests.
    nlohmann::json Requests() const;
    void ResetRequests() const;
    // Requests of a path; 0 if there was none.
    int RequestCount(const std::string& path) const;
    // Waits until the path has been asked for so often; false after a minute.
    bool WaitForRequests(const std::string& path, int count) const;

    // Shares a key file with the running station.
    void Trust(const std::string& key_file) const;
    // Asks it to end and waits; the exit code. Later calls do nothing.
    int Stop();

private:
    void CopyData(int events) const;
    void WaitUntilReady();

    QTemporaryDir folder_;
    QProcess process_;
    int port_ = 0;
    int exit_code_ = -1;
    bool is_stopped_ = false;
};

}  // namespace SystemTest
