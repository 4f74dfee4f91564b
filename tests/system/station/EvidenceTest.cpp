#include "ServedFolder.h"
#include "StationFixture.h"

#include <set>
#include <string>
#include <thread>
#include <vector>

using nlohmann::json;
using namespace SystemTest;

namespace {

constexpr char kEvidence[] = "/api/v1/evidence";
const char* const kHash = "9F86d081884c7d659a2feaa0c55ad015a3bf4f1b2b0b822cd15d6c15b0f00a08";

class StationEvidence : public StationFixture
{
protected:
    static json File(const std::string& name, std::int64_t bytes)
    {
        return {{"Name", name}, {"Bytes", bytes}, {"Sha256", kHash}};
    }
    std::string Register(const std::string& case_number, const std::string& title)
    {
        const json answer = station_.Post(kEvidence, {{"CaseNumber", case_number}, {"Title", title}});
        EXPECT_EQ(answer["ErrorCode"], 0) << answer;
        return answer["EvidenceId"];
    }
    json Get(const std::string& path) { return json::parse(station_.Connect()->Get(path)->body); }
    std::vector<std::string> Titles(const std::string& query = "")
    {
        std::vector<std::string> titles;
        const json list = Get(kEvidence + query)["Evidence"];
        for (const json& entry : list)
            titles.push_back(entry["Title"]);
        return titles;
    }
    std::string Page(const std::string& query = "")
    {
        return station_.Connect()->Get("/evidence" + query)->body;
    }
    void ExpectRefused(const json& evidence, const std::string& word)
    {
        const json answer = station_.Post(kEvidence, evidence);
        EXPECT_EQ(answer["status"], 200) << evidence;
        EXPECT_EQ(answer["ErrorModule"], 24) << evidence;
        EXPECT_EQ(answer["ErrorCode"], 1) << evidence;
        EXPECT_NE(answer["ErrorText"].get<std::string>().find(word), std::string::npos) << answer;
    }
};

}  // namespace

TEST_F(StationEvidence, WhatIsRegisteredCanBeReadAgain)
{
    const json receipt = station_.Post(kEvidence, {{"CaseNumber", "2026-117"},
                                                   {"Title", "Fence, 有人翻越围栏"},
                                                   {"Remark", "two\nlines"},
                                                   {"Client", "Control room 1"},
                                                   {"Files", {File("a.csv", 12), File("b/c.jpg", 0)}},
                                                   {"Surplus", true}});
    EXPECT_EQ(receipt["ErrorModule"], 0);
    const std::string guid = receipt["EvidenceId"];
    const std::string hash = "9f86d081884c7d659a2feaa0c55ad015a3bf4f1b2b0b822cd15d6c15b0f00a08";
    EXPECT_EQ(Get(kEvidence + ("/" + guid)),
              (json{{"ErrorModule", 0},
                    {"ErrorCode", 0},
                    {"EvidenceId", guid},
                    {"RegisteredAt", receipt["RegisteredAt"]},
                    {"CaseNumber", "2026-117"},
                    {"Title", "Fence, 有人翻越围栏"},
                    {"Remark", "two\nlines"},
                    {"Client", "Control room 1"},
                    {"FileCount", 2},
                    {"Bytes", 12},
                    {"Files",
                     {{{"Name", "a.csv"}, {"Bytes", 12}, {"Sha256", hash}},
                      {{"Name", "b/c.jpg"}, {"Bytes", 0}, {"Sha256", hash}}}}}));
}

TEST_F(StationEvidence, ListHasTheNewestFirstAndOneCaseIfAsked)
{
    EXPECT_TRUE(Titles().empty());
    Register("A", "first");
    Register("B 1&2", "second");
    Register("A", "third");
    EXPECT_EQ(Titles(), (std::vector<std::string>{"third", "second", "first"}));
    EXPECT_EQ(Titles("?case=A"), (std::vector<std::string>{"third", "first"}));
    EXPECT_EQ(Titles("?case=B%201%262"), (std::vector<std::string>{"second"}));
    EXPECT_EQ(Titles("?case="), (std::vector<std::string>{"third", "second", "first"}));
    EXPECT_TRUE(Titles("?case=a").empty());
    EXPECT_TRUE(Titles("?case=%27%20OR%201%3D1%20--").empty());
    EXPECT_FALSE(Get(kEvidence)["Evidence"][0].contains("Files"));
}

TEST_F(StationEvidence, WhatMustBeThereIsAskedFor)
{
    ExpectRefused(json::object(), "CaseNumber is missing");
    ExpectRefused({{"CaseNumber", "1"}}, "Title is missing");
    ExpectRefused({{"CaseNumber", " \n"}, {"Title", "x"}}, "CaseNumber is missing");
    ExpectRefused({{"CaseNumber", "1"}, {"Title", ""}}, "Title is missing");
    ExpectRefused({{"CaseNumber", 1}, {"Title", "x"}}, "CaseNumber must be a text");
    ExpectRefused({{"CaseNumber", std::string(501, 'x')}, {"Title", "x"}}, "CaseNumber is longer");
    ExpectRefused({{"CaseNumber", "1"}, {"Title", "x"}, {"Remark", std::string(20001, 'x')}},
                  "Remark is longer");
    ExpectRefused({{"CaseNumber", "1"}, {"Title", "x"}, {"Client", json::array()}}, "Client must be a text");
    ExpectRefused(json::array(), "object");
    ExpectRefused(json("evidence"), "object");
    EXPECT_EQ(station_.Connect()->Post(kEvidence, "{", "application/json")->status, 400);
    EXPECT_EQ(station_.Connect()->Post(kEvidence, "{\"Title\":\"\xFF\"}", "application/json")->status, 400);
    EXPECT_TRUE(Titles().empty());
}

TEST_F(StationEvidence, FilesAreLookedAtOneByOne)
{
    const auto with = [](const json& files) {
        return json{{"CaseNumber", "1"}, {"Title", "x"}, {"Files", files}};
    };
    const auto changed = [](const char* member, const json& value) {
        json file = File("a", 1);
        file[member] = value;
        return json{File("good", 1), file};
    };
    ExpectRefused(with("a.csv"), "Files must be a list");
    ExpectRefused(with({1}), "File 1: A file must be an object");
    ExpectRefused(with(changed("Name", "")), "File 2: Name is missing");
    ExpectRefused(with(changed("Name", nullptr)), "File 2: Name is missing");
    ExpectRefused(with(changed("Bytes", -1)), "File 2: Bytes must be");
    ExpectRefused(with(changed("Bytes", nullptr)), "File 2: Bytes is missing");
    ExpectRefused(with(changed("Bytes", 281474976710657)), "File 2: Bytes must be");
    ExpectRefused(with(changed("Bytes", 18446744073709551615u)), "File 2: Bytes must be");
    ExpectRefused(with(changed("Bytes", 1.0)), "File 2: Bytes must be");
    for (const std::string& hash :
         {std::string(), std::string(63, 'a'), std::string(65, 'a'), std::string(63, 'a') + "g",
          std::string(63, 'a') + " ", "0x" + std::string(62, 'a')})
        ExpectRefused(with(changed("Sha256", hash)), "File 2: Sha256 must be 64 hex digits");
    ExpectRefused(with(changed("Sha256", 64)), "File 2: Sha256 must be");
    ExpectRefused(with(json(std::vector<json>(10001, File("a", 1)))), "at most 10000");
    EXPECT_TRUE(Titles().empty());
}

TEST_F(StationEvidence, MostFilesOfTheLargestSizeAreStored)
{
    const json answer =
        station_.Post(kEvidence, {{"CaseNumber", "1"},
                                  {"Title", "x"},
                                  {"Files", std::vector<json>(10000, File("a", 281474976710656))}});
    EXPECT_EQ(answer["ErrorCode"], 0) << answer;
    EXPECT_EQ(Get(kEvidence)["Evidence"][0]["Bytes"], 2814749767106560000);
    EXPECT_NE(Page().find("2814749.8 TB"), std::string::npos);
}

TEST_F(StationEvidence, UnknownEvidenceIsTold)
{
    for (const char* guid : {"none", "..", "%2e%2e", "5d2f0a4e-7c11-4b7e-9d5b-000000000009", "'--", "%00"}) {
        const auto answer = station_.Connect()->Get(kEvidence + (std::string("/") + guid));
        ASSERT_TRUE(answer) << guid;
        EXPECT_EQ(answer->status, 404) << guid;
        EXPECT_EQ(json::parse(answer->body)["ErrorCode"], 4) << guid;
    }
}

TEST_F(StationEvidence, PageShowsTheListToAPersonAndTextsAreNoMarkup)
{
    EXPECT_NE(Page().find("Nothing is registered yet."), std::string::npos);
    const std::string guid = Register("<i>1</i>", "<script>alert(1)</script> & \"so\"");
    station_.Post(kEvidence, {{"CaseNumber", "2"}, {"Title", "other"}, {"Client", "'\"><img src=x>"}});
    const auto answer = station_.Connect()->Get("/evidence");
    EXPECT_EQ(answer->get_header_value("Content-Type"), "text/html; charset=utf-8");
    EXPECT_NE(answer->get_header_value("Content-Security-Policy").find("default-src 'none'"),
              std::string::npos);
    EXPECT_NE(answer->body.find("2 registered exports"), std::string::npos);
    EXPECT_NE(answer->body.find("/api/v1/evidence/" + guid), std::string::npos);
    EXPECT_NE(answer->body.find("&lt;script&gt;alert(1)&lt;/script&gt; &amp; &quot;so&quot;"),
              std::string::npos);
    for (const char* markup : {"<script", "<i>", "<img"})
        EXPECT_EQ(answer->body.find(markup), std::string::npos) << markup;
    const std::string one_case = Page("?case=%3Ci%3E1%3C%2Fi%3E");
    EXPECT_NE(one_case.find("1 registered export of case &lt;i&gt;1&lt;/i&gt;"), std::string::npos);
    EXPECT_NE(one_case.find("value=\"&lt;i&gt;1&lt;/i&gt;\""), std::string::npos);
    EXPECT_EQ(one_case.find("other"), std::string::npos);
    EXPECT_EQ(Page("?case=%22%3E%3Cscript%3E%FF").find("<script"), std::string::npos);
}

TEST_F(StationEvidence, EvidenceOutlivesTheStation)
{
    const std::string guid = Register("1", "kept");
    const std::string data = station_.DataFolder();
    EXPECT_EQ(station_.Stop(), 0);
    ServedFolder killed(data);
    const json second = killed.Post(kEvidence, {{"CaseNumber", "1"}, {"Title", "kept as well"}});
    killed.Kill();
    const ServedFolder again(data);
    const auto list = again.Connect()->Get(kEvidence);
    EXPECT_EQ(json::parse(list->body)["Evidence"].size(), 2u);
    EXPECT_EQ(again.Connect()->Get(kEvidence + ("/" + guid))->status, 200);
    EXPECT_EQ(again.Connect()->Get(kEvidence + ("/" + second["EvidenceId"].get<std::string>()))->status, 200);
}

TEST_F(StationEvidence, TwentyClientsAtOnceAreAllRegistered)
{
    std::vector<std::thread> clients;
    for (int i = 0; i < 20; ++i)
        clients.emplace_back([this, i] {
            for (int k = 0; k < 5; ++k)
                Register(std::to_string(i), std::to_string(k));
        });
    for (std::thread& client : clients)
        client.join();
    std::set<std::string> guids;
    const json list = Get(kEvidence)["Evidence"];
    for (const json& entry : list)
        guids.insert(entry["EvidenceId"].get<std::string>());
    EXPECT_EQ(guids.size(), 100u);
    EXPECT_EQ(Titles("?case=7"), (std::vector<std::string>{"4", "3", "2", "1", "0"}));
}

TEST(StationOfPhotographs, HasAllTablesOnceItServes)
{
    // A folder that was made by an import, which knows of no evidence and no docking devices.
    const QTemporaryDir folder;
    const QString data = folder.filePath("data");
    ASSERT_NE(RunStation({"import", PHOTOGRAPHS, "--data", data}).exit_code, 1);
    const ServedFolder station(data.toStdString());
    EXPECT_EQ(station.Connect()->Get("/api/v1/dock/files")->status, 200);
    EXPECT_EQ(station.Post(kEvidence, {{"CaseNumber", "1"}, {"Title", "x"}})["ErrorCode"], 0);
    EXPECT_EQ(station.Post("/api/v1/events/generated-report",
                           {{"FileType", 2}, {"Pictures", "embedded"}, {"ReadyAfterPolls", 0}})["ErrorCode"],
              0);
}
