#include "station/Endpoints/Endpoints.h"
#include "station/Services.h"

#include <nlohmann/json.hpp>

namespace Station {
namespace {

using Json = nlohmann::ordered_json;

void AnswerCameras(Call& call)
{
    Json list = Json::array();
    for (const Camera& camera : call.services.store.Cameras())
        list.push_back({{"Id", camera.id}, {"Name", camera.name}, {"Place", camera.place}});
    AnswerJson(call, {{"ErrorModule", 0}, {"ErrorCode", 0}, {"Cameras", list}});
}

}  // namespace

std::vector<Route> CameraRoutes()
{
    return {{"GET", "/api/v1/cameras", AnswerCameras}};
}

}  // namespace Station
