#include "StationFixture.h"

#include <QElapsedTimer>

#include <filesystem>
#include <fstream>
#include <string>

using nlohmann::json;
using namespace SystemTest;

namespace {

namespace fs = std::filesystem;

class StationLife : public testing::Test
{
protected:
    // Data that no station serves.
    std::string SeededData()
    {
        const std::string data = folder_.filePath("data").toStdString();
        EXPECT_EQ(
            RunStation({"seed", "--data", QString::fromStdString(data), "--events", "300", "--minutes", "0"})
                .exit_code,
            0);
        return data;
    }
    static ProgramResult Serve(const std::string& data, const QStringList& more = {})
    {
        return RunStation(QStringList{"serve", "--data", QString::fromStdString(data)} + more);
    }
    static void ExpectDamaged(const ProgramResult& result)
    {
        EXPECT_EQ(result.exit_code, 1);
        EXPECT_NE(result.errors.find("station.db"), std::string::npos) << result.errors;
        EXPECT_NE(result.errors.find("damaged"), std::string::npos) << result.errors;
    }

    QTemporaryDir folder_;
};

}  // namespace

TEST_F(StationLife, StopEndsAnIdleConnectionAtOnce)
{
    StationProcess station;
    const auto client = station.Connect();
    ASSERT_TRUE(client->Get("/health"));
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(station.Stop(), 0);
    // An idle connection would be kept for fifteen seconds.
    EXPECT_LT(timer.elapsed(), 10000);
    EXPECT_FALSE(client->Get("/health"));
}

TEST_F(StationLife, PortFileHoldsThePort)
{
    const QString file = folder_.filePath("port");
    const StationProcess station(StationProcess::kEvents, {"--port-file", file});
    // The file is written right after the line that the test waits for.
    while (!fs::exists(file.toStdString()))
        ASSERT_TRUE(station.Connect()->Get("/health"));
    int port = 0;
    std::ifstream(file.toStdString()) >> port;
    EXPECT_EQ(port, station.Port());
}

TEST_F(StationLife, PortInUseIsToldInWords)
{
    const StationProcess station;
    const ProgramResult second = Serve(station.DataFolder(), {"--port", QString::number(station.Port())});
    EXPECT_EQ(second.exit_code, 1);
    EXPECT_NE(second.errors.find("may be in use"), std::string::npos) << second.errors;
    EXPECT_TRUE(station.Connect()->Get("/health"));
}

TEST_F(StationLife, ControlsAreThereOnlyWhenAskedFor)
{
    const std::string data = SeededData();
    QProcess process;
    process.start(STATION_PROGRAM_FILE, {"serve", "--data", QString::fromStdString(data)});
    ASSERT_TRUE(process.waitForReadyRead());
    const QByteArray line = process.readAllStandardOutput();
    httplib::Client client("127.0.0.1", line.mid(line.lastIndexOf(':') + 1).trimmed().toInt());
    EXPECT_EQ(client.Post("/control/faults", R"({"Kind":"reset"})", "application/json")->status, 404);
    EXPECT_EQ(client.Get("/control/requests")->status, 404);
    EXPECT_EQ(client.Get("/health")->status, 200);
    process.terminate();
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 0);
}

TEST_F(StationLife, FolderWithoutAStationIsToldInWords)
{
    const ProgramResult result = Serve(folder_.filePath("nothing").toStdString());
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_NE(result.errors.find("station seed"), std::string::npos) << result.errors;
    EXPECT_FALSE(fs::exists(folder_.filePath("nothing").toStdString()));
}

TEST_F(StationLife, DataFileThatIsNoneIsToldAsDamaged)
{
    const std::string data = SeededData();
    std::ofstream(data + "/station.db", std::ios::binary) << std::string(8192, 'x');
    ExpectDamaged(Serve(data));
}

TEST_F(StationLife, DataFileThatIsCutIsToldAsDamaged)
{
    const std::string data = SeededData();
    fs::resize_file(data + "/station.db", fs::file_size(data + "/station.db") / 2);
    ExpectDamaged(Serve(data));
}

TEST_F(StationLife, DataFileWithAWrongPageIsToldAsDamaged)
{
    const std::string data = SeededData();
    std::fstream file(data + "/station.db", std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(3 * 4096);
    file << std::string(4096, '\x5a');
    file.close();
    ExpectDamaged(Serve(data));
}

TEST_F(StationLife, DataFileOfAnotherProgramIsLeftAlone)
{
    const std::string data = SeededData();
    std::fstream file(data + "/station.db", std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(68);  // where SQLite keeps the number of the program
    file << "ABCD";
    file.close();
    const ProgramResult result = Serve(data);
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_NE(result.errors.find("not one of a station"), std::string::npos) << result.errors;
    EXPECT_EQ(RunStation({"import", "/tmp", "--data", QString::fromStdString(data)}).exit_code, 1);
}

TEST_F(StationLife, EmptyDataFileIsNotOneOfAStation)
{
    const std::string data = SeededData();
    fs::resize_file(data + "/station.db", 0);
    EXPECT_EQ(Serve(data).exit_code, 1);
}
