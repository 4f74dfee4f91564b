#pragma once

#include "station/Http/Routes.h"

#include <string>
#include <vector>

// The endpoints, one source for each group of them.
namespace Station {

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
std::vector<Route> PictureRoutes();
std::vector<Route> CameraRoutes();
std::vector<Route> FileRoutes();
std::vector<Route> SyntheticRoutes();
std::vector<Route> HealthRoutes();
std::vector<Route> ControlRoutes();

inline constexpr char kJson[] = "application/json";

// Answers {"ErrorModule":24,"ErrorCode":code,"ErrorText":text} with an HTTP status.
void AnswerError(httplib::Response& response, int status, StationError code, const std::string& text);

}  // namespace Station
