#pragma once

#include "Store/StoredTask.h"

#include <string>
#include <unordered_map>

namespace FetchyardLogical::details {

// Changes brought together: the last of each task. What comes of them does not depend on their order but for
// removals, which go first: a place may be free only by one.
class LastChanges
{
public:
    void Add(Change change);
    void Add(LastChanges later);

    bool IsEmpty() const { return by_guid_.empty(); }
    const std::unordered_map<std::string, Change>& ByGuid() const { return by_guid_; }
    // Whether they say what the task's resume text is; text is then set.
    bool KnowText(const std::string& guid, std::string& text) const;

private:
    std::unordered_map<std::string, Change> by_guid_;
};

}  // namespace FetchyardLogical::details
