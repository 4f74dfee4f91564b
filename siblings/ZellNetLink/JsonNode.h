#pragma once

#include "RecordPath.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ZellNetLink {

// A node of a JSON text. Nodes stay at their address until they are taken out, so a handle outlives
// additions.
struct JsonNode
{
    enum class Kind { Null, Bool, Number, String, List, Object };

    // Containers within containers; deeper texts are refused, so that no walk runs out of stack.
    static constexpr std::size_t kMaxDepth = 512;
    // Entries that a write may leave empty between the end of a list and the index it names, and in all of
    // the lists that it makes together.
    static constexpr std::size_t kMaxGap = 65536;

    Kind kind = Kind::Null;
    bool flag = false;      // of Bool
    std::string text;       // of String, and of Number in the form in which it came
    std::string name;       // within an object
    std::size_t depth = 1;  // number of containers down to this node, itself counted
    std::vector<std::unique_ptr<JsonNode>> children;  // of List and Object

    JsonNode* Member(std::string_view member) const;
    JsonNode* AddChild(std::string_view child_name);
    JsonNode* Step(const PathStep& step) const;  // null if there is nothing
    JsonNode* Find(const RecordPath& path);
    // The node at the path, made with all that is missing on the way. A null node counts as missing; any
    // other wrong kind on the way ends with null and leaves all as it was. So does a path that has no room
    // for so many levels below its end.
    JsonNode* FindOrCreate(const RecordPath& path, std::size_t below = 0);
    void Become(Kind new_kind);  // forgets the value
    void CopyFrom(const JsonNode& other);
    // A later member of a name replaces an earlier one, in the earlier one's place.
    void KeepLastOfEachName();

private:
    JsonNode* StepOrCreate(const PathStep& step);
};

}  // namespace ZellNetLink
