#pragma once

#include "ZellBaseHost/PerThread.h"

#include <simdjson.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

// Answers of servers, read in one walk. Each reader of a value takes null as absent, and is false if the
// value is of another kind or the text is at fault.
namespace FetchyardLogical::details {

namespace od = simdjson::ondemand;

inline bool IsNull(od::value& value)
{
    bool is_null = false;
    return value.is_null().get(is_null) == simdjson::SUCCESS && is_null;
}

inline bool ReadText(od::value& value, std::string& out)
{
    std::string_view text;
    if (value.get_string().get(text) != simdjson::SUCCESS)
        return IsNull(value);
    out.assign(text);
    return true;
}

inline bool ReadFlag(od::value& value, bool& out)
{
    bool flag = false;
    if (value.get_bool().get(flag) != simdjson::SUCCESS)
        return IsNull(value);
    out = flag;
    return true;
}

template <typename Number>
bool ReadNumber(od::value& value, Number& out)
{
    std::int64_t number = 0;
    if (value.get_int64().get(number) != simdjson::SUCCESS)
        return IsNull(value);
    if (number < std::int64_t{std::numeric_limits<Number>::min()} ||
        number > std::int64_t{std::numeric_limits<Number>::max()})
        return false;
    out = static_cast<Number>(number);
    return true;
}

// Calls read(name, value) for each member. False as soon as it says so or the text is at fault.
template <typename Read>
bool ForEachMember(od::object& object, const Read& read)
{
    for (auto member : object) {
        od::field field;
        if (std::move(member).get(field) != simdjson::SUCCESS)
            return false;
        od::value value = field.value();
        if (!read(field.key(), value))
            return false;
    }
    return true;
}

template <typename Read>
bool ReadObject(od::value& value, const Read& read)
{
    od::object object;
    if (value.get_object().get(object) != simdjson::SUCCESS)
        return IsNull(value);
    return ForEachMember(object, read);
}

// Calls read(value) for each entry.
template <typename Read>
bool ReadList(od::value& value, const Read& read)
{
    od::array array;
    if (value.get_array().get(array) != simdjson::SUCCESS)
        return IsNull(value);
    for (auto entry : array) {
        od::value item;
        if (entry.get(item) != simdjson::SUCCESS || !read(item))
            return false;
    }
    return true;
}

// Calls read(object) for the object that the text is. False if it is none, read says so, or more follows
// behind it. body keeps its text, but may be given more capacity.
template <typename Read>
bool ReadJson(std::string& body, const Read& read)
{
    // A parser keeps five bytes of scratch memory for each byte of the largest answer it has seen; above this
    // size of answer it is not worth keeping.
    constexpr std::size_t most_kept_bytes = 16u << 20;
    static const auto& parsers = *new Zell::Base::details::CPerThread<od::parser>();
    od::parser& parser = parsers.Value();
    // The parser looks beyond the end of the text, but not at what stands there.
    if (body.capacity() - body.size() < simdjson::SIMDJSON_PADDING)
        body.reserve(body.size() + simdjson::SIMDJSON_PADDING);
    od::document document;
    od::object object;
    const bool is_read =
        parser.iterate(simdjson::padded_string_view(body)).get(document) == simdjson::SUCCESS &&
        document.get_object().get(object) == simdjson::SUCCESS && read(object) &&
        document.current_location().error() == simdjson::OUT_OF_BOUNDS;
    if (body.size() > most_kept_bytes)
        parser = od::parser();
    return is_read;
}

}  // namespace FetchyardLogical::details
