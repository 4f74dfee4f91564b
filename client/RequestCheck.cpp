#include "RequestCheck.h"

#include <QFile>
#include <valijson/adapters/nlohmann_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validation_results.hpp>
#include <valijson/validator.hpp>

#include <algorithm>

// The resources of a static library are linked only if somebody asks for them; the macro wants global scope.
static void LinkSchemas()
{
    Q_INIT_RESOURCE(schemas);
}

namespace FetchyardClient {

namespace {

using nlohmann::json;
using valijson::adapters::NlohmannJsonAdapter;

std::string ReadResource(const char* name)
{
    LinkSchemas();
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
}

// Line and column of a byte, both from 1.
std::string Place(const std::string& text, std::size_t byte)
{
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(byte, text.size()));
    const auto line = 1 + std::count(text.begin(), end, '\n');
    const auto last = std::find(std::make_reverse_iterator(end), text.rend(), '\n').base();
    return "line " + std::to_string(line) + ", column " + std::to_string(std::distance(last, end));
}

std::string PointerOf(const std::vector<std::string>& context)
{
    std::string pointer;
    for (std::string part : context) {
        if (part == "<root>")
            continue;
        if (part.size() > 1 && part.front() == '[' && part.back() == ']')
            part = part.substr(1, part.size() - 2);
        pointer += "/" + part;
    }
    return pointer;
}

// valijson reports a failure in a member once for each level above it; only the innermost line tells
// something.
bool IsOnlyThatAMemberFailed(const std::string& words)
{
    return words.find("Failed to validate against schema") != std::string::npos ||
           words.find("Failed to validate item") != std::string::npos ||
           words.find("Object properties failed validation") != std::string::npos;
}

void CheckPageCondition(const json& request, std::vector<Violation>& violations)
{
    const json::json_pointer pointer("/FileExportRequest/RequestData/ExportFileParam/RequestCondition");
    if (!request.contains(pointer) || !request[pointer].is_string())
        return;
    const std::string text = request[pointer];
    if (!text.empty() && !json::accept(text))
        violations.push_back({pointer.to_string(), "is not JSON as text, which the server expects"});
}

}  // namespace

bool ParseRequest(const std::string& text, json& request, std::vector<Violation>& violations)
{
    try {
        request = json::parse(text);
        return true;
    } catch (const json::parse_error& error) {
        violations.push_back({"", "is not JSON: " + Place(text, error.byte) + ": " + error.what()});
        return false;
    }
}

std::vector<Violation> CheckRequest(const json& request)
{
    const json schema_text = json::parse(ReadResource(":/schemas/report-export.schema.json"));
    valijson::Schema schema;
    valijson::SchemaParser parser;
    parser.populateSchema(NlohmannJsonAdapter(schema_text), schema);
    valijson::Validator validator;
    valijson::ValidationResults results;
    std::vector<Violation> violations;
    if (!validator.validate(schema, NlohmannJsonAdapter(request), &results)) {
        valijson::ValidationResults::Error error;
        while (results.popError(error)) {
            if (!IsOnlyThatAMemberFailed(error.description))
                violations.push_back({PointerOf(error.context), error.description});
        }
        if (violations.empty())
            violations.push_back({"", "does not fit the schema of a report export"});
    }
    CheckPageCondition(request, violations);
    return violations;
}

}  // namespace FetchyardClient
