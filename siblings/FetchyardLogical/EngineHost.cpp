#include "FetchyardLogicalHost/EngineHost.h"

#include "Engine/Engine.h"

namespace FetchyardLogical {

std::vector<TaskView> ListTasks()
{
    return details::Engine::Shared()->List();
}

bool StopTask(const std::string& guid)
{
    return details::Engine::Shared()->StopTask(guid);
}

bool DeleteTask(const std::string& guid)
{
    return details::Engine::Shared()->DeleteTask(guid);
}

bool WaitUntilIdle(std::chrono::milliseconds timeout)
{
    return details::Engine::Shared()->WaitUntilIdle(timeout);
}

}  // namespace FetchyardLogical
