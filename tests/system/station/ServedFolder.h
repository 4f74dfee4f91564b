#pragma once

#include <httplib.h>
#include <nlohmann/json.hpp>
#include <QProcess>
#include <QStringList>

#include <memory>
#include <string>

namespace SystemTest {

// A station that serves data which is there already; in_front are the words of a program that starts it.
class ServedFolder
{
public:
    explicit ServedFolder(const std::string& data, const QStringList& in_front = {});
    ~ServedFolder();
    ServedFolder(const ServedFolder&) = delete;
    ServedFolder& operator=(const ServedFolder&) = delete;

    std::unique_ptr<httplib::Client> Connect() const;
    nlohmann::json Post(const std::string& path, const nlohmann::json& body) const;
    // Its exit code.
    int Stop();
    // As a power cut does.
    void Kill();

private:
    QProcess process_;
    int port_ = 0;
};

// Runs a Python check of the folder checks/ on a file and returns what it prints, as JSON; its failure is the
// test's.
nlohmann::json Check(const std::string& script, const std::string& file);

}  // namespace SystemTest
