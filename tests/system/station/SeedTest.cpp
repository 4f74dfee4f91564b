#include "StationFixture.h"

#include <filesystem>
#include <fstream>
#include <set>
#include <string>

using nlohmann::json;
using namespace SystemTest;

namespace {

constexpr char kReport[] = "/api/v1/events/report";

class StationSeed : public testing::Test
{
protected:
    static json AllRows(const StationProcess& station)
    {
        return station.Post(kReport, {{"PageIndex", 1}, {"PageSize", 10000}})["Sheets"][0]["Rows"];
    }
    QString Data(const char* name) const { return folder_.filePath(name); }
    static QStringList Words(const QString& data, const QStringList& more)
    {
        return QStringList{"seed", "--data", data, "--end", "2026-02-01T00:00:00Z", "--minutes", "0"} + more;
    }

    static testing::AssertionResult Succeeds(const QStringList& words)
    {
        const ProgramResult result = RunStation(words);
        if (result.exit_code == 0)
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << "exit code " << result.exit_code << "\n" << result.errors;
    }

    QTemporaryDir folder_;
};

std::string ReadBytes(const QString& path)
{
    std::ifstream file(path.toStdString(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

TEST_F(StationSeed, FourThousandEventsAreSpreadOverFourWeeksOfTwelveCameras)
{
    const StationProcess station(4000);
    std::set<std::string> days;
    std::set<std::string> cameras;
    for (const json& row : AllRows(station)) {
        days.insert(row[1]["Text"].get<std::string>().substr(0, 10));
        cameras.insert(row[2]);
    }
    EXPECT_EQ(days.size(), 28u);
    EXPECT_EQ(cameras.size(), 12u);
    EXPECT_EQ(*days.begin(), "2026-01-04");
    EXPECT_EQ(*days.rbegin(), "2026-01-31");
}

TEST_F(StationSeed, TextsHaveWhatTroublesWriters)
{
    const StationProcess station(4000);
    const std::string all = AllRows(station).dump();
    for (const char* part : {"王伟", "محمد علي", "👷", "👨‍👩‍👧", "O'Brien, Seán", "\\\"Mia\\\"",
                             "\\n", "Łukasz", "=> "})
        EXPECT_NE(all.find(part), std::string::npos) << part;
}

TEST_F(StationSeed, DaysAreBusierThanNights)
{
    const StationProcess station(4000);
    int day = 0;
    int night = 0;
    for (const json& row : AllRows(station)) {
        const int hour = std::stoi(row[1]["Text"].get<std::string>().substr(11, 2));
        day += hour >= 8 && hour < 18 ? 1 : 0;
        night += hour < 5 ? 1 : 0;
    }
    EXPECT_GT(day, night * 4);
    EXPECT_GT(night, 50);
}

TEST_F(StationSeed, SameSeedGivesTheSameSiteAndAnotherAnother)
{
    const StationProcess first;
    const StationProcess second;
    EXPECT_EQ(AllRows(first), AllRows(second));
    ASSERT_TRUE(Succeeds(Words(Data("other"), {"--events", "400", "--seed", "2"})));
    ASSERT_TRUE(Succeeds(Words(Data("same"), {"--events", "400", "--seed", "1"})));
    EXPECT_NE(ReadBytes(Data("other/station.db")).size(), 0u);
    EXPECT_FALSE(ReadBytes(Data("other/station.db")) == ReadBytes(Data("same/station.db")));
}

TEST_F(StationSeed, ManyCamerasHaveNamesOfTheirOwn)
{
    ASSERT_TRUE(Succeeds(Words(Data("many"), {"--events", "10", "--cameras", "30", "--weeks", "1"})));
    const std::string bytes = ReadBytes(Data("many/station.db"));
    EXPECT_NE(bytes.find("Gate North (3)"), std::string::npos);
}

TEST_F(StationSeed, StationThatIsThereIsNotThrownAwayUnasked)
{
    ASSERT_TRUE(Succeeds(Words(Data("kept"), {"--events", "10"})));
    const ProgramResult again = RunStation(Words(Data("kept"), {"--events", "20"}));
    EXPECT_EQ(again.exit_code, 1);
    EXPECT_NE(again.errors.find("--replace"), std::string::npos) << again.errors;
    EXPECT_TRUE(Succeeds(Words(Data("kept"), {"--events", "20", "--replace"})));
}

TEST_F(StationSeed, ReplacedStationLosesTheOldPictures)
{
    ASSERT_TRUE(Succeeds(Words(Data("kept"), {"--events", "10"})));
    const std::filesystem::path drawn = Data("kept/drawn").toStdString();
    std::filesystem::create_directories(drawn);
    std::ofstream(drawn / "event-1.jpg") << "old";
    ASSERT_TRUE(Succeeds(Words(Data("kept"), {"--events", "10", "--replace"})));
    EXPECT_FALSE(std::filesystem::exists(drawn / "event-1.jpg"));
}

TEST_F(StationSeed, WrongWordsEndWithTheUsageCode)
{
    for (const QStringList& words :
         {QStringList{}, QStringList{"sow"}, QStringList{"seed"}, QStringList{"seed", "--data"},
          QStringList{"seed", "--data", Data("x"), "--events", "many"},
          QStringList{"seed", "--data", Data("x"), "--events", "-1"},
          QStringList{"seed", "--data", Data("x"), "--end", "tomorrow"},
          QStringList{"seed", "--data", Data("x"), "--colour", "red"},
          QStringList{"seed", "--data", Data("x"), "surplus"}}) {
        const ProgramResult result = RunStation(words);
        EXPECT_EQ(result.exit_code, 2) << words.join(' ').toStdString();
        EXPECT_FALSE(result.errors.empty());
    }
    EXPECT_FALSE(std::filesystem::exists(Data("x").toStdString()));
}

TEST_F(StationSeed, FolderThatCantBeMadeIsToldInWords)
{
    std::ofstream(Data("file").toStdString()) << "in the way";
    const ProgramResult result = RunStation(Words(Data("file/below"), {"--events", "10"}));
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_NE(result.errors.find("can't be made"), std::string::npos) << result.errors;
}
