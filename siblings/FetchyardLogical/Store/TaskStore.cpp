#include "Store/TaskStore.h"

namespace FetchyardLogical::details {

TaskStore::Opening TaskStore::Open(const std::string& path)
{
    return {nullptr, {}, "Tasks can't be kept in " + path + " by this version."};
}

bool TaskStore::Read(const std::string& path, std::vector<StoredTask>& /*tasks*/, std::string& message)
{
    message = "Tasks can't be read from " + path + " by this version.";
    return false;
}

}  // namespace FetchyardLogical::details
