#pragma once

#include "station/Http/Routes.h"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <vector>

// The endpoints, one source for each group of them.
namespace Station {

struct PasswordCheck;

// The station's own error codes, module 24.
inline constexpr int kModuleStation = 24;
enum StationError : int {
    StationBadCondition = 1,
    StationWrongAccount = 2,
    StationUnknownReport = 3,
    StationNoSuchObject = 4,
    StationStoreFailed = 5,
};

std::vector<Route> ReportRoutes();
std::vector<Route> PersonRoutes();
std::vector<Route> PictureRoutes();
std::vector<Route> CameraRoutes();
std::vector<Route> FileRoutes();
std::vector<Route> DockRoutes();
std::vector<Route> EvidenceRoutes();
std::vector<Route> GeneratedRoutes();
std::vector<Route> LogRoutes();
std::vector<Route> RecordingRoutes();
std::vector<Route> SyntheticRoutes();
std::vector<Route> HealthRoutes();
std::vector<Route> ControlRoutes();

inline constexpr char kJson[] = "application/json";

// Answers {"ErrorModule":24,"ErrorCode":code,"ErrorText":text} with an HTTP status.
void AnswerError(httplib::Response& response, int status, StationError code, const std::string& text);
// Answers {"ErrorModule":0,"ErrorCode":0} and nothing more.
void AnswerDone(Call& call);
void AnswerJson(Call& call, const nlohmann::ordered_json& answer);

// Reads the body of the request; answers status 400 and returns false if it is no JSON text.
bool ReadBody(Call& call, nlohmann::json& json);
// True if no check is asked for or it names the right account; otherwise answers the refusal, with what the
// account has left: "RemainingLoginNumber" counts tries if "RemainingLoginType" is 1, and minutes until the
// account is open again if it is 2.
bool PassesPasswordCheck(Call& call, const PasswordCheck& check);

}  // namespace Station
