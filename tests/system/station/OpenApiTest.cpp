#include "station/Http/Routes.h"
#include "StationFixture.h"

#include <valijson/adapters/nlohmann_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validation_results.hpp>
#include <valijson/validator.hpp>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <functional>
#include <set>
#include <string>
#include <thread>

using nlohmann::json;
using namespace SystemTest;

namespace {

json Document()
{
    std::ifstream file(OPENAPI_FILE);
    return json::parse(file);
}

// What is wrong with a value, by a schema of the document; empty if nothing is.
std::string Violations(const json& document, json schema_json, const json& value)
{
    // References lead from the root, so the schema gets the document's components.
    schema_json["components"] = document["components"];
    valijson::Schema schema;
    valijson::SchemaParser parser;
    parser.populateSchema(valijson::adapters::NlohmannJsonAdapter(schema_json), schema);
    valijson::ValidationResults results;
    valijson::Validator validator;
    validator.validate(schema, valijson::adapters::NlohmannJsonAdapter(value), &results);
    std::string text;
    valijson::ValidationResults::Error error;
    while (results.popError(error)) {
        for (const std::string& step : error.context)
            text += step;
        text += ": " + error.description + "\n";
    }
    return text;
}

std::string Upper(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::toupper(c); });
    return text;
}

// One request that the document shows, with what it says about the answer.
struct Example
{
    std::string name;
    std::string method;
    std::string path;
    std::string body;
    json responses;
};

// The path with the examples of its parameters.
std::string FillIn(std::string path, const json& operation)
{
    std::string query;
    for (const json& parameter : operation.value("parameters", json::array())) {
        const std::string name = parameter["name"];
        const json& value = parameter["example"];
        const std::string text = value.is_string() ? value.get<std::string>() : value.dump();
        if (parameter["in"] == "path")
            path.replace(path.find("{" + name + "}"), name.size() + 2, text);
        else if (parameter["in"] == "query")
            query += (query.empty() ? "?" : "&") + name + (text.empty() ? "" : "=" + text);
    }
    return path + query;
}

std::vector<Example> ExamplesOf(const json& document)
{
    std::vector<Example> examples;
    for (const auto& [path, methods] : document["paths"].items())
        for (const auto& [method, operation] : methods.items()) {
            const Example bare{method + " " + path, Upper(method), FillIn(path, operation), "",
                               operation["responses"]};
            if (!operation.contains("requestBody")) {
                examples.push_back(bare);
                continue;
            }
            for (const auto& [name, example] :
                 operation["requestBody"]["content"]["application/json"]["examples"].items()) {
                examples.push_back(bare);
                examples.back().name += " " + name;
                examples.back().body = example["value"].dump();
            }
        }
    return examples;
}

// Objects that are there only once they are ordered: the document shows them by these guids.
constexpr char kTaskGuid[] = "5d2f0a4e-7c11-4b7e-9d5b-000000000001";
constexpr char kLogsGuid[] = "5d2f0a4e-7c11-4b7e-9d5b-000000000002";
constexpr char kEvidenceGuid[] = "5d2f0a4e-7c11-4b7e-9d5b-000000000003";

void Replace(std::string& text, const std::string& old_part, const std::string& new_part)
{
    for (auto at = text.find(old_part); at != std::string::npos; at = text.find(old_part, at))
        text.replace(at, old_part.size(), new_part);
}

// Logs that are ready: the order can't be waited for, so polls are.
std::string OrderLogs(const StationProcess& station)
{
    json condition = {{"ReadyAfterPolls", 0}};
    condition["FileGuid"] = station.Post("/api/v1/logs/gather", condition)["FileGuid"];
    while (station.Post("/api/v1/logs/gather", condition)["State"] == "working")
        std::this_thread::yield();
    return condition["FileGuid"];
}

// The example with an object of the station for each that it shows.
Example MadeReal(const StationProcess& station, Example example)
{
    const auto put = [&example](const char* shown, const std::function<std::string()>& make) {
        if ((example.path + example.body).find(shown) == std::string::npos)
            return;
        const std::string real = make();
        Replace(example.path, shown, real);
        Replace(example.body, shown, real);
    };
    put(kTaskGuid, [&station] {
        return station.Post("/api/v1/events/generated-report",
                            {{"FileType", 1}, {"ReadyAfterPolls", 0}})["ServerGenerate"]["TaskId"];
    });
    put(kLogsGuid, [&station] { return OrderLogs(station); });
    put(kEvidenceGuid, [&station] {
        return station.Post("/api/v1/evidence", {{"CaseNumber", "1"}, {"Title", "One"}})["EvidenceId"];
    });
    return example;
}

class StationOpenApi : public testing::Test
{
protected:
    static httplib::Result Send(const StationProcess& station, const Example& example)
    {
        const auto client = station.Connect();
        if (example.method == "POST")
            return client->Post(example.path, example.body, "application/json");
        return example.method == "DELETE" ? client->Delete(example.path) : client->Get(example.path);
    }
    void ExpectAsDocumented(const Example& example, const httplib::Response& answer)
    {
        const std::string status = std::to_string(answer.status);
        ASSERT_TRUE(example.responses.contains(status)) << example.name << " answers " << status;
        const json& content = example.responses[status]["content"];
        const std::string type = answer.get_header_value("Content-Type");
        ASSERT_TRUE(content.contains(type)) << example.name << " answers " << type;
        if (type != "application/json")
            return;
        EXPECT_EQ(Violations(document_, content[type]["schema"], json::parse(answer.body)), "")
            << example.name;
    }

    const json document_ = Document();
};

}  // namespace

TEST_F(StationOpenApi, EveryEndpointIsDocumentedAndEveryDocumentedOneIsThere)
{
    std::set<std::string> served;
    for (const Station::Route& route : Station::StationRoutes())
        served.insert(std::string(route.method) + " " + std::string(route.path));
    std::set<std::string> documented;
    for (const auto& [path, methods] : document_["paths"].items())
        for (const auto& [method, operation] : methods.items())
            documented.insert(Upper(method) + " " + path);
    EXPECT_EQ(served, documented);
}

TEST_F(StationOpenApi, ExamplesOfRequestsFitTheirOwnSchemas)
{
    for (const auto& [path, methods] : document_["paths"].items())
        for (const auto& [method, operation] : methods.items()) {
            if (!operation.contains("requestBody"))
                continue;
            const json& content = operation["requestBody"]["content"]["application/json"];
            for (const auto& [name, example] : content["examples"].items())
                EXPECT_EQ(Violations(document_, content["schema"], example["value"]), "")
                    << path << " " << name;
        }
}

TEST_F(StationOpenApi, AnswersToTheExamplesFitTheirSchemas)
{
    const StationProcess station;
    const std::vector<Example> examples = ExamplesOf(document_);
    ASSERT_GE(examples.size(), 12u);
    for (const Example& example : examples) {
        station.ClearFaults();
        const auto answer = Send(station, MadeReal(station, example));
        ASSERT_TRUE(answer) << example.name;
        ExpectAsDocumented(example, *answer);
    }
}

TEST_F(StationOpenApi, ExamplesAreAnsweredWithSuccess)
{
    const StationProcess station;
    for (const Example& example : ExamplesOf(document_)) {
        const auto answer = Send(station, MadeReal(station, example));
        ASSERT_TRUE(answer) << example.name;
        EXPECT_EQ(answer->status, 200) << example.name << answer->body;
        station.ClearFaults();
    }
}

TEST_F(StationOpenApi, RefusalsFitTheirSchemas)
{
    const StationProcess station(StationProcess::kEvents, {"--require-account"});
    for (const Example& example : ExamplesOf(document_)) {
        const auto answer = Send(station, example);
        ASSERT_TRUE(answer) << example.name;
        ExpectAsDocumented(example, *answer);
        station.ClearFaults();
    }
    for (const Station::Route& route : Station::StationRoutes()) {
        if (route.method != "POST")
            continue;
        const std::string path(route.path);
        const Example broken{path + " without JSON", "POST",
                             path.find('{') == std::string::npos ? path : "/api/v1/x/report", "{",
                             document_["paths"][path]["post"]["responses"]};
        const auto client = station.Connect();
        client->set_basic_auth("operator", "fetchyard");
        const auto answer = client->Post(broken.path, broken.body, "application/json");
        ASSERT_TRUE(answer) << broken.name;
        ExpectAsDocumented(broken, *answer);
    }
}

TEST_F(StationOpenApi, SchemasRefuseWhatIsNotDocumented)
{
    const json schema = {{"$ref", "#/components/schemas/ReportPage"}};
    json page = StationProcess().Post("/api/v1/events/report", {{"PageIndex", 1}, {"PageSize", 3}});
    page.erase("status");
    EXPECT_EQ(Violations(document_, schema, page), "");
    json wrong = page;
    wrong["Sheets"][0]["Rows"][0][0] = 5;
    EXPECT_NE(Violations(document_, schema, wrong), "");
    wrong = page;
    wrong["Surplus"] = true;
    EXPECT_NE(Violations(document_, schema, wrong), "");
    wrong = page;
    wrong.erase("TotalPageIsFinished");
    EXPECT_NE(Violations(document_, schema, wrong), "");
}
