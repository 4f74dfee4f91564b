#pragma once

#include <QProcess>
#include <QString>

#include <string>

namespace FetchyardClient {

// A station of one's own for the life of the object: seeded at the first use, served on a free port.
class StationProgram
{
public:
    StationProgram() = default;
    StationProgram(const StationProgram&) = delete;
    StationProgram& operator=(const StationProgram&) = delete;
    ~StationProgram();

    // data_folder keeps the station's data for the next time. False with the reason in words.
    bool Start(const std::string& data_folder, int events, std::string& reason);
    const std::string& Address() const { return address_; }

private:
    bool Seed(const QString& program, const QString& folder, int events, std::string& reason);

    QProcess process_;
    std::string address_;
};

}  // namespace FetchyardClient
