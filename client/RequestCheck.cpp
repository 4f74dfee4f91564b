#include "RequestCheck.h"

#include "FileList.h"
#include "Transcoding.h"

#include <QFile>
#include <valijson/adapters/nlohmann_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validation_results.hpp>
#include <valijson/validator.hpp>

#include <algorithm>
#include <array>

// The resources of a static library are linked only if somebody asks for them; the macro wants global scope.
static void LinkSchemas()
{
    Q_INIT_RESOURCE(schemas);
}

namespace FetchyardClient {

namespace {

using nlohmann::json;

using valijson::adapters::NlohmannJsonAdapter;

// Deeper than any request; what is as deep as its text is long needs more stack than there is.
constexpr int kDeepest = 100;

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

// Adds where a value departs from a schema; pointer is its place in the request.
void CheckSchema(const std::string& schema_name, const std::string& pointer, const json& value,
                 std::vector<Violation>& violations)
{
    const json schema_text = json::parse(ReadResource((":/schemas/" + schema_name + ".schema.json").c_str()));
    valijson::Schema schema;
    valijson::SchemaParser parser;
    parser.populateSchema(NlohmannJsonAdapter(schema_text), schema);
    valijson::Validator validator;
    valijson::ValidationResults results;
    if (validator.validate(schema, NlohmannJsonAdapter(value), &results))
        return;
    const std::size_t before = violations.size();
    valijson::ValidationResults::Error error;
    while (results.popError(error)) {
        if (!IsOnlyThatAMemberFailed(error.description))
            violations.push_back({pointer + PointerOf(error.context), error.description});
    }
    if (violations.size() == before)
        violations.push_back({pointer, "does not fit the schema " + schema_name});
}

// Each entry has the schema of its type.
void CheckFileList(const json& request, std::vector<Violation>& violations)
{
    constexpr std::array<const char*, 4> kSchemaOfType = {"picture", "server-file", "video", "clip"};
    CheckSchema("file-list", "", request, violations);
    if (!violations.empty())
        return;
    std::size_t index = 0;
    for (const json& entry : request.at("FileRequestList")) {
        const json& file = entry.at("FileRequest");
        CheckSchema(kSchemaOfType.at(file.at("FileType").get<std::size_t>()),
                    "/FileRequestList/" + std::to_string(index++) + "/FileRequest", file, violations);
    }
}

void CheckPageCondition(const json& request, const char* server_request, std::vector<Violation>& violations)
{
    const json::json_pointer pointer(std::string(server_request) + "/RequestCondition");
    if (!request.contains(pointer) || !request[pointer].is_string())
        return;
    const std::string text = request[pointer];
    if (!text.empty() && !json::accept(text))
        violations.push_back({pointer.to_string(), "is not JSON as text, which the server expects"});
}

}  // namespace

bool ParseRequest(const std::string& text, json& request, std::vector<Violation>& violations)
{
    bool is_too_deep = false;
    const auto watch_depth = [&is_too_deep](int depth, json::parse_event_t /*event*/,
                                            const json& /*parsed*/) {
        is_too_deep = is_too_deep || depth > kDeepest;
        return !is_too_deep;
    };
    try {
        request = json::parse(text, watch_depth);
        if (is_too_deep)
            violations.push_back({"", "is nested more than " + std::to_string(kDeepest) + " levels deep"});
        return !is_too_deep;
    } catch (const json::parse_error& error) {
        violations.push_back({"", "is not JSON: " + Place(text, error.byte) + ": " + error.what()});
        return false;
    }
}

bool IsPersonRequest(const json& request)
{
    const json::json_pointer type("/FileExportRequest/FileExportType");
    return request.contains(json::json_pointer("/FileExportRequest/PersonExportPicNode")) ||
           (request.contains(type) && request[type] == 2);
}

const char* ServerRequestOf(const json& request)
{
    return IsPersonRequest(request) ? "/FileExportRequest/PersonExportPicNode/PicDownloadRequestNode"
                                    : "/FileExportRequest/RequestData/ExportFileParam";
}

std::vector<Violation> CheckRequest(const json& request)
{
    std::vector<Violation> violations;
    if (IsFileList(request)) {
        CheckFileList(request, violations);
    } else if (IsTranscoding(request)) {
        CheckSchema("transcode", "", request, violations);
    } else {
        CheckSchema(IsPersonRequest(request) ? "person-pictures" : "report-export", "", request, violations);
        CheckPageCondition(request, ServerRequestOf(request), violations);
    }
    return violations;
}

void PrintViolations(std::FILE* stream, const std::string& label, const std::vector<Violation>& violations)
{
    for (const Violation& violation : violations)
        std::fprintf(stream, "%s: %s: %s\n", label.c_str(),
                     violation.path.empty() ? "the request" : violation.path.c_str(),
                     violation.words.c_str());
}

}  // namespace FetchyardClient
