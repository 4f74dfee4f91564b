// A client that is killed at a drawn event of its work. The next one finds what the store promises, brings it
// back, and leaves what the record on disk at the kill says, no more and no less.
#include "Aftermath.h"
#include "tests/system/client/ClientRun.h"
#include "tests/system/StationProcess.h"

#include <gtest/gtest.h>
#include <QProcess>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <random>
#include <set>
#include <string>
#include <vector>

using nlohmann::json;

namespace SystemTest {
namespace {

constexpr unsigned int kDefaultSeed = 20260117;
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int kKillsOfAKind = 2;
#else
constexpr int kKillsOfAKind = 9;
#endif
constexpr int kRowsOfAPage = 20;
constexpr char kReportPath[] = "/api/v1/events/report";
constexpr char kPassword[] = "s3cret";

// The variable FETCHYARD_KILL_SEED repeats another draw.
unsigned int Seed()
{
    const char* const wanted = std::getenv("FETCHYARD_KILL_SEED");
    return wanted == nullptr ? kDefaultSeed : static_cast<unsigned int>(std::strtoul(wanted, nullptr, 10));
}

json Report(const ClientRun& run, const std::string& name, int rows)
{
    json request = ReportRequest(run, name, 1, "none", rows);
    json condition = {{"PageIndex", 1}, {"PageSize", kRowsOfAPage}, {"Limit", rows}, {"Pictures", "none"}};
    Section(request, "ExportFileParam")["RequestCondition"] = condition.dump();
    return request;
}

// One way of working with the client.
struct Kind
{
    const char* name;
    int page_delay;  // milliseconds that the station waits before a page
    std::function<std::vector<json>(const ClientRun&)> requests;
    bool is_evidence = false;
    bool is_person = false;
    bool is_packed = false;
};

void PrintTo(const Kind& kind, std::ostream* out)
{
    *out << kind.name;
}

std::vector<json> ManySmallOnes(const ClientRun& run)
{
    std::vector<json> requests;
    for (int i = 1; i <= 8; ++i)
        requests.push_back(Report(run, "Queued " + std::to_string(i), 60));
    return requests;
}

std::vector<json> ManyPages(const ClientRun& run)
{
    return {Report(run, "Paged", 400)};
}

std::vector<json> WithPictures(const ClientRun& run)
{
    json request = Report(run, "Pictured", 60);
    for (int i = 1; i <= 6; ++i)
        Section(request, "DownloadFiles")["ImageDownload"].push_back(
            {{"Imageurl", "/pictures/event-" + std::to_string(i) + ".jpg"},
             {"ImageName", "picture " + std::to_string(i)}});
    return {request};
}

std::vector<json> Packed(const ClientRun& run)
{
    json request = Report(run, "Packed", 100);
    Section(request, "WriteFileCondition")["IsNeedCompressZip"] = true;
    Section(request, "WriteFileCondition")["ZipPassword"] = kPassword;
    return {request};
}

std::vector<json> AsEvidence(const ClientRun& run)
{
    json request = Report(run, "Evident", 60);
    request["FileExportPurpose"] = 1;
    request["EvidenceParam"] = {
        {"CaseNumber", "9"}, {"Title", "Gate"}, {"Folder", run.ExportFolder() + "Evident/"}};
    return {request};
}

std::vector<json> Persons(const ClientRun& /*run*/)
{
    json search;
    search["RequestMethod"] = "POST";
    search["RequestAPI"] = "/api/v1/persons/report";
    search["RequestCondition"] = json({{"PageIndex", 1}, {"PageSize", 4}, {"PicturesOfPerson", 2}}).dump();
    const json node = {
        {"PicDownloadRequestNode", search}, {"ZipEncodingPassword", kPassword}, {"ZipName", "Persons"}};
    return {{{"FileExportRequest", {{"FileExportType", 2}, {"PersonExportPicNode", node}}}}};
}

// One client's life: its folders and the events that it wrote down.
class Life
{
public:
    explicit Life(const StationProcess& station)
    {
        run_.UseStation(station.Address());
        UseEvents("first");
    }

    ClientRun& Run() { return run_; }
    std::string Data() const { return run_.Path("data"); }
    void UseEvents(const std::string& name)
    {
        events_ = run_.Path("events-" + name);
        run_.SetEnvironment("FETCHYARD_TEST_EVENTS", QString::fromStdString(events_));
    }
    void KillAt(const std::string& event)
    {
        run_.SetEnvironment("FETCHYARD_TEST_KILL", QString::fromStdString(event));
    }
    Events Told() const { return ReadEvents(events_); }
    std::string Csv(const std::string& name) const
    {
        return Bytes(run_.ExportFolder() + name + "/" + name + ".csv");
    }
    std::string ArchivePath(const std::string& name) const
    {
        return run_.ExportFolder() + name + "/" + name + ".zip";
    }
    std::string Archive(const std::string& name) const { return Bytes(ArchivePath(name)); }
    bool HasStore() const { return Exists(Data() + "/tasks.db"); }

private:
    ClientRun run_;
    std::string events_;
};

// The archive's directory; its files are the client's own to look through.
std::set<std::string> NamesIn(const std::string& archive)
{
    QProcess unzip;
    unzip.start("unzip", {"-Z1", QString::fromStdString(archive)});
    EXPECT_TRUE(unzip.waitForFinished());
    std::set<std::string> names;
    for (const QByteArray& line : unzip.readAll().split('\n')) {
        if (line.endsWith(".jpeg"))
            names.insert(line.toStdString());
    }
    EXPECT_FALSE(names.empty()) << archive;
    return names;
}

class Kill : public testing::TestWithParam<Kind>
{
protected:
    void SetUp() override
    {
        if (GetParam().page_delay > 0)
            station_.SetFault(
                {{"Path", "/api/"}, {"Kind", "delay"}, {"DelayMs", GetParam().page_delay}, {"Count", -1}});
    }

    // A life without a kill: how often each event comes, and what is left.
    void LiveUndisturbed()
    {
        Life life(station_);
        life.Run().StartRequests(GetParam().requests(life.Run()));
        const ClientRun::Result result = life.Run().Finish();
        ASSERT_EQ(result.exit_code, 0) << result.output;
        undisturbed_ = life.Told();
        for (const KeptTask& task : KeptTasks(life.Data())) {
            csv_[task.name] = life.Csv(task.name);
            names_.push_back(task.name);
        }
        if (GetParam().is_person)
            persons_ = NamesIn(life.ArchivePath("Persons"));
        if (GetParam().is_packed)
            csv_["Packed"] = PackedReport();
    }

    // Packing takes the report away.
    std::string PackedReport() const
    {
        Life life(station_);
        std::vector<json> requests = GetParam().requests(life.Run());
        Section(requests[0], "WriteFileCondition")["IsNeedCompressZip"] = false;
        EXPECT_EQ(life.Run().RunRequests(requests).exit_code, 0);
        return life.Csv("Packed");
    }

    std::size_t EvidenceCount() const { return station_.Get("/api/v1/evidence?case=9")["Evidence"].size(); }

    // The rows from a page on, as they stand in an undisturbed report.
    std::string RowsFrom(const std::string& name, int page) const
    {
        const std::string& whole = csv_.at(name);
        const auto lines = std::count(whole.begin(), whole.end(), '\n');
        const int rows = GetRowCount(name);
        std::size_t at = 0;
        const auto skipped = lines - rows + std::min(static_cast<long>(rows), (page - 1L) * kRowsOfAPage);
        for (long line = 0; line < skipped; ++line)
            at = whole.find('\n', at) + 1;
        return whole.substr(at);
    }
    static int GetRowCount(const std::string& name)
    {
        const std::map<std::string, int> rows = {{"Paged", 400}, {"Packed", 100}};
        const auto found = rows.find(name);
        return found == rows.end() ? 60 : found->second;
    }

    // What the report holds in the end, by what the record said and what was in the file at the kill.
    std::string Promised(const KeptTask& task, const std::string& at_kill) const
    {
        if (IsEnd(task.state) || task.total_page_is_finished)
            return at_kill;
        if (!task.restart_is_need_download)
            return csv_.at(task.name);
        return at_kill + RowsFrom(task.name, task.current_page + 1);
    }

    void CheckTheKilled(const std::vector<KeptTask>& kept, const Events& events) const
    {
        std::vector<std::string> names;
        std::map<std::string, const KeptTask*> by_guid;
        for (const KeptTask& task : kept) {
            names.push_back(task.name);
            by_guid[task.guid] = &task;
            EXPECT_EQ(task.is_interrupted, !IsEnd(task.state)) << task.name;
        }
        // In the order in which they were handed over, none lost and none doubled.
        ASSERT_LE(names.size(), names_.size());
        EXPECT_TRUE(std::equal(names.begin(), names.end(), names_.begin()));
        EXPECT_EQ(by_guid.size(), kept.size());
        for (const auto& [guid, states] : events.told) {
            ASSERT_EQ(by_guid.count(guid), 1u) << "a task that was told is not kept";
            const int last = states.back();
            EXPECT_TRUE(by_guid[guid]->state == last || !IsEnd(last)) << "told " << last;
            EXPECT_NE(by_guid[guid]->state, 0);
        }
        CheckOneEnd(events);
    }

    static void CheckOneEnd(const Events& events)
    {
        for (const auto& [guid, states] : events.told) {
            std::set<int> ends;
            std::copy_if(states.begin(), states.end(), std::inserter(ends, ends.end()), IsEnd);
            EXPECT_LE(ends.size(), 1u) << "two different ends of " << guid;
        }
    }

    void CheckTheEnd(Life& life, const std::vector<KeptTask>& killed,
                     const std::map<std::string, std::string>& csv_at_kill,
                     const std::map<std::string, std::string>& zip_at_kill) const
    {
        const std::vector<KeptTask> ended = KeptTasks(life.Data());
        ASSERT_EQ(ended.size(), killed.size());
        for (std::size_t i = 0; i < killed.size(); ++i) {
            const KeptTask& task = killed[i];
            EXPECT_EQ(ended[i].name, task.name);
            EXPECT_EQ(ended[i].guid == task.guid, !task.is_interrupted);
            if (!task.is_interrupted) {
                EXPECT_EQ(ended[i].state, task.state);
            } else {
                // A picture without a name has no file to go to.
                EXPECT_EQ(ended[i].state, task.missing_pictures > 0 ? 5 : 4) << task.name;
            }
            if (GetParam().is_person) {
                EXPECT_EQ(NamesIn(life.ArchivePath(task.name)), persons_);
                continue;
            }
            EXPECT_EQ(life.Csv(task.name), Promised(task, csv_at_kill.at(task.name))) << task.name;
            // No record promises an archive.
            EXPECT_EQ(life.Archive(task.name), zip_at_kill.at(task.name)) << task.name;
        }
    }

    // Kills a client at the event and brings its work back. False if the client came to its end before.
    bool KillAndBringBack(const std::string& event) const
    {
        Life life(station_);
        life.KillAt(event);
        life.Run().StartRequests(GetParam().requests(life.Run()));
        if (!life.Run().FinishOrDie().crashed)
            return false;
        // A kill in the making of the store leaves nothing that was promised.
        const std::vector<KeptTask> killed =
            life.HasStore() ? KeptTasks(life.Data()) : std::vector<KeptTask>();
        CheckTheKilled(killed, life.Told());
        std::map<std::string, std::string> csv;
        std::map<std::string, std::string> zip;
        bool expects_failure = false;
        for (const KeptTask& task : killed) {
            csv[task.name] = life.Csv(task.name);
            zip[task.name] = life.Archive(task.name);
            expects_failure = expects_failure || (task.is_interrupted && task.missing_pictures > 0);
        }
        const std::size_t evidence = GetParam().is_evidence ? EvidenceCount() : 0;
        life.KillAt("");
        life.UseEvents("second");
        const ClientRun::Result result = life.Run().Run({"resume", "--all"});
        EXPECT_EQ(result.exit_code, expects_failure ? 1 : 0) << result.output;
        CheckOneEnd(life.Told());
        CheckTheEnd(life, killed, csv, zip);
        if (GetParam().is_evidence) {
            EXPECT_EQ(EvidenceCount(), evidence) << "a resumed export is a plain one";
        }
        return true;
    }

    StationProcess station_;
    Events undisturbed_;
    std::vector<std::string> names_;
    std::map<std::string, std::string> csv_;
    std::set<std::string> persons_;  // names in the archive
};

TEST_P(Kill, NextClientFindsAndFinishesWhatTheRecordPromises)
{
    ASSERT_NO_FATAL_FAILURE(LiveUndisturbed());
    std::cout << "seed " << Seed() << " (FETCHYARD_KILL_SEED draws anew)\n";
    std::mt19937 draw(Seed());
    const std::vector<std::string> points = {"store", "state", "page"};
    int kills = 0;
    for (int tries = 0; kills < kKillsOfAKind && tries < 10 * kKillsOfAKind; ++tries) {
        const std::string& point = points[static_cast<std::size_t>(kills) % points.size()];
        const auto most = static_cast<unsigned int>(undisturbed_.counts.at(point));
        const std::string event = point + " " + std::to_string(1 + draw() % most);
        SCOPED_TRACE("killed at " + event);
        kills += KillAndBringBack(event) ? 1 : 0;
        if (HasFailure())
            return;
    }
    EXPECT_EQ(kills, kKillsOfAKind);
}

INSTANTIATE_TEST_SUITE_P(, Kill,
                         testing::Values(Kind{"Queueing", 10, ManySmallOnes}, Kind{"Paging", 130, ManyPages},
                                         Kind{"Pictures", 10, WithPictures},
                                         Kind{"Archive", 10, Packed, false, false, true},
                                         Kind{"Evidence", 10, AsEvidence, true},
                                         Kind{"Persons", 10, Persons, false, true}),
                         [](const auto& kind) { return kind.param.name; });

}  // namespace
}  // namespace SystemTest
