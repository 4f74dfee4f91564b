#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ZellNetLink {

// One step of a path: a name, an index that was written in square brackets, or a bare number, which is a name
// in an object and an index from 0 in a list.
struct PathStep
{
    enum class Kind { Name, Index };
    Kind kind = Kind::Name;
    std::string name;
    std::size_t index = 0;                   // from 0; of Kind::Index
    std::optional<std::size_t> bare_number;  // of Kind::Name, if the name is a number
};

using RecordPath = std::vector<PathStep>;

// "/Name[2]/Other" as steps Name, index 1, Other. Empty names are passed over, so a leading, a final or a
// doubled "/" changes nothing. Square brackets that do not hold a number are part of the name. Nothing for an
// index of 0 or one beyond 32 bits: there is no such node. Names that are not UTF-8 are repaired.
std::optional<RecordPath> ParseRecordPath(std::string_view path);

}  // namespace ZellNetLink
