#include "Export.h"

#include <atomic>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

// A plug-in that leans on nothing: it counts its starts and stops, and in the mood that the environment names
// it refuses to start.
namespace {

std::atomic<int> starts{0};
std::atomic<int> stops{0};

}  // namespace

PLUGIN_FUNCTION bool StartPlugin()
{
    const char* const word = std::getenv("FETCHYARD_TEST_PLUGIN");
    const std::string_view mood = word != nullptr ? word : "";
    if (mood == "throws")
        throw std::runtime_error("a bad day");
    if (mood == "refuses")
        return false;
    ++starts;
    return true;
}

PLUGIN_FUNCTION void StopPlugin()
{
    ++stops;
}

PLUGIN_FUNCTION int StartCount()
{
    return starts;
}

PLUGIN_FUNCTION int StopCount()
{
    return stops;
}
