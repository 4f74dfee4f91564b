#include "station/Evidence/Evidence.h"

#include "station/Clock.h"
#include "station/Endpoints/Endpoints.h"
#include "station/Evidence/EvidencePage.h"
#include "station/Services.h"

#include <nlohmann/json.hpp>

namespace Station {
namespace {

using Json = nlohmann::ordered_json;

Json ToJson(const Evidence& evidence)
{
    return {{"EvidenceId", evidence.guid},        {"RegisteredAt", FormatIsoTime(evidence.registered)},
            {"CaseNumber", evidence.case_number}, {"Title", evidence.title},
            {"Remark", evidence.remark},          {"Client", evidence.client},
            {"FileCount", evidence.file_count},   {"Bytes", evidence.bytes}};
}

void Register(Call& call)
{
    nlohmann::json json;
    if (!ReadBody(call, json))
        return;
    Evidence evidence;
    std::string reason;
    if (!ReadEvidence(json, evidence, reason)) {
        AnswerError(call.response, 200, StationBadCondition, reason);
        return;
    }
    RegisterEvidence(*call.services.store.Borrow(), evidence);
    AnswerJson(call, {{"ErrorModule", 0},
                      {"ErrorCode", 0},
                      {"EvidenceId", evidence.guid},
                      {"RegisteredAt", FormatIsoTime(evidence.registered)}});
}

std::vector<Evidence> WantedEvidence(Call& call)
{
    return ListEvidence(*call.services.store.Borrow(), call.request.get_param_value("case"));
}

void AnswerEvidenceList(Call& call)
{
    Json list = Json::array();
    for (const Evidence& evidence : WantedEvidence(call))
        list.push_back(ToJson(evidence));
    AnswerJson(call, {{"ErrorModule", 0}, {"ErrorCode", 0}, {"Evidence", list}});
}

void AnswerEvidence(Call& call)
{
    const auto evidence = FindEvidence(*call.services.store.Borrow(), call.name);
    if (!evidence) {
        AnswerError(call.response, 404, StationNoSuchObject, "There is no such evidence.");
        return;
    }
    Json answer = {{"ErrorModule", 0}, {"ErrorCode", 0}};
    answer.update(ToJson(*evidence));
    answer["Files"] = Json::array();
    for (const EvidenceFile& file : evidence->files)
        answer["Files"].push_back({{"Name", file.name}, {"Bytes", file.bytes}, {"Sha256", file.sha256}});
    AnswerJson(call, answer);
}

void ShowEvidence(Call& call)
{
    call.response.set_header("Content-Security-Policy",
                             "default-src 'none'; style-src 'unsafe-inline'; form-action 'self'");
    call.response.set_content(RenderEvidencePage(WantedEvidence(call), call.request.get_param_value("case")),
                              "text/html; charset=utf-8");
}

}  // namespace

std::vector<Route> EvidenceRoutes()
{
    return {{"POST", "/api/v1/evidence", Register},
            {"GET", "/api/v1/evidence", AnswerEvidenceList},
            {"GET", "/api/v1/evidence/{guid}", AnswerEvidence},
            {"GET", "/evidence", ShowEvidence}};
}

}  // namespace Station
