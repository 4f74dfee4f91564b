#pragma once

#include <nlohmann/json.hpp>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <string>
#include <vector>

namespace SystemTest {

// The client in a folder of its own, with everything it makes below it.
class ClientRun
{
public:
    struct Result
    {
        int exit_code = -1;
        bool crashed = false;
        std::string output;  // both streams, as they came
    };

    ClientRun();

    // Arguments of the whole client, such as --station, for every run from now on.
    void UseStation(const std::string& address) { station_ = address; }
    // Another data folder than its own.
    void UseData(const std::string& folder) { data_ = folder; }
    // Another folder for exports that name none, below the one of the run.
    void UseSave(const QString& name) { save_ = name; }
    // Tells the client its folders from the working folder on.
    void UseRelativeFolders() { is_relative_ = true; }
    void UseOption(const QString& word) { options_ << word; }
    void DropOptions() { options_.clear(); }
    void UsePlugin(const std::string& id, const std::string& module);
    void SetEnvironment(const QString& name, const QString& value);
    void PutInFront(const QStringList& words) { in_front_ = words; }

    // Runs a command and waits for its end.
    Result Run(const QStringList& words, const std::string& input = "");
    // Writes the requests to files and runs them.
    Result RunRequests(const std::vector<nlohmann::json>& requests);
    Result RunTexts(const std::vector<std::string>& texts);
    // Starts the same without waiting; Finish waits for the end.
    void StartRequests(const std::vector<nlohmann::json>& requests);
    void Start(const QStringList& words);
    // Waits until the output matches the regular expression somewhere; false if the client ends before.
    bool WaitForOutput(const std::string& pattern);
    void Interrupt();
    // As a crash does.
    void Kill() { process_.kill(); }
    Result Finish();
    // The same of a client that is allowed to be killed.
    Result FinishOrDie();

    // Folder for exports, with its final "/".
    std::string ExportFolder() const;
    std::string Path(const std::string& below) const;

private:
    QStringList WriteRequests(const std::vector<std::string>& texts);

    QTemporaryDir folder_;
    QProcess process_;
    QStringList in_front_;
    QStringList plugins_;
    QStringList options_;  // of the command
    std::string data_;
    QString save_ = "out";
    bool is_relative_ = false;
    std::string station_;
    std::string output_;
};

// A report of the station's events: name, format (0 Excel, 1 CSV), pictures ("none", "embedded", "linked"),
// number of rows. Its folder is the export folder of the run.
nlohmann::json ReportRequest(const ClientRun& run, const std::string& name, int type,
                             const std::string& pictures, int rows);
// The object of the request with that name ("ExportFileParam", "WriteFileCondition").
nlohmann::json& Section(nlohmann::json& request, const char* name);

// Runs a Python check of the folder checks/ and returns what it prints; its failure is the test's.
std::string Check(const QStringList& words);
bool Exists(const std::string& path);
std::vector<std::string> FilesBelow(const std::string& folder);

}  // namespace SystemTest
