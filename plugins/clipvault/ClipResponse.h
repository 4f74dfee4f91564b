#pragma once

#include "ZellBase/Error.h"

#include <string>
#include <vector>

namespace ClipVault {

// How a download or one of its resources has ended. The numbers are those of the response.
enum class ClipState : int {
    NotBegun = 1,
    Done = 2,
    Failed = 3,
    Stopped = 4,
};

struct ResourceOutcome
{
    std::string resource_id;
    std::string site_id;
    ClipState state = ClipState::NotBegun;
    Zell::Base::Error::ErrorCode error;
};

struct ClipOutcome
{
    ClipState state = ClipState::Failed;
    Zell::Base::Error::ErrorCode error;
    std::vector<ResourceOutcome> resources;
};

// The JSON text of the response.
std::string WriteResponse(const ClipOutcome& outcome);

}  // namespace ClipVault
