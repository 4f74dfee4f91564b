#include "station/Clock.h"
#include "station/Commands/Arguments.h"
#include "station/Commands/Commands.h"
#include "station/Commands/Fonts.h"
#include "station/Data/Accounts.h"
#include "station/Data/Store.h"
#include "station/Dock/DockFiles.h"
#include "station/Dock/DockSeeder.h"
#include "station/Drawing/EventPictures.h"
#include "station/Recording/Recordings.h"
#include "station/Recording/RecordingSeeder.h"
#include "station/Seeding/FileSeeder.h"
#include "station/Seeding/SiteSeeder.h"

#include <iostream>
#include <system_error>

namespace Station {
namespace {

constexpr int kMinutes = 3;
constexpr int kMostMinutes = 24 * 60;
constexpr char kOperator[] = "operator";
constexpr char kOperatorPassword[] = "fetchyard";

SeedPlan ReadPlan(const Arguments& arguments)
{
    SeedPlan plan;
    plan.events = static_cast<int>(arguments.Number("--events", plan.events, 0, 10000000));
    plan.cameras = static_cast<int>(arguments.Number("--cameras", plan.cameras, 1, 10000));
    plan.weeks = static_cast<int>(arguments.Number("--weeks", plan.weeks, 1, 5200));
    plan.seed = static_cast<std::uint64_t>(arguments.Number("--seed", 1, 0, INT64_MAX));
    plan.end = Now();
    if (arguments.Has("--end")) {
        const auto end = ParseTime(arguments.Text("--end", ""));
        if (!end)
            throw UsageError("--end must be a time such as 2026-01-31T09:05:07Z");
        plan.end = *end;
    }
    return plan;
}

// Of the folder's content only what a station made.
void RemoveStation(const std::filesystem::path& data)
{
    std::error_code error;
    const std::filesystem::path file = DatabaseFile(data);
    for (const char* suffix : {"", "-wal", "-shm"}) {
        std::filesystem::path part = file;
        part += suffix;
        std::filesystem::remove(part, error);
    }
    std::filesystem::remove_all(PictureFolder(data), error);
    std::filesystem::remove_all(FileFolder(data), error);
    std::filesystem::remove_all(DockFolder(data), error);
    std::filesystem::remove_all(GeneratedFolder(data), error);
    std::filesystem::remove_all(GatheredFolder(data), error);
    std::filesystem::remove_all(RecordingFolder(data), error);
}

}  // namespace

int SeedCommand(const CommandLine& line)
{
    const Arguments arguments(
        line, {"--data", "--events", "--cameras", "--weeks", "--seed", "--end", "--minutes"}, {"--replace"});
    if (!arguments.Words().empty())
        throw UsageError("seed takes no words, only options");
    const std::filesystem::path data = arguments.Path("--data");
    const SeedPlan plan = ReadPlan(arguments);
    const int minutes = static_cast<int>(arguments.Number("--minutes", kMinutes, 0, kMostMinutes));
    std::error_code error;
    if (std::filesystem::exists(DatabaseFile(data), error)) {
        if (!arguments.Has("--replace"))
            throw StoreError("There is a station in " + data.u8string() +
                             " already; --replace throws it away.");
        RemoveStation(data);
    }
    // Drawn pictures of an earlier site would show other events.
    std::filesystem::remove_all(DrawnPictureFolder(data), error);
    const auto database = OpenForWriting(data);
    SeedSite(*database, plan);
    SeedFiles(*database, data);
    SeedDock(*database, data, plan.seed, plan.end);
    if (minutes > 0)
        StartFonts();
    SeedRecordings(*database, data, plan.end, minutes);
    SetAccount(*database, kOperator, kOperatorPassword);
    std::cout << "seeded " << plan.events << " events of " << plan.cameras << " cameras in "
              << data.u8string() << "; account " << kOperator << ", password " << kOperatorPassword
              << std::endl;
    return ExitGood;
}

}  // namespace Station
