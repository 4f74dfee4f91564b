#pragma once

#include "station/Data/Database.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace Station {

// A filter in the words of the database, with its values.
struct Filter
{
    using Value = std::variant<std::int64_t, std::string>;

    std::string sql = " WHERE 1";
    std::vector<Value> values;

    template <typename T>
    void AddTest(const std::string& test, const T& value)
    {
        sql += " AND " + test;
        values.emplace_back(value);
    }
    template <typename T>
    void AddChoice(const std::string& column, const std::vector<T>& choices)
    {
        if (choices.empty())
            return;
        sql += " AND " + column + " IN (";
        for (std::size_t i = 0; i < choices.size(); ++i) {
            sql += i == 0 ? "?" : ",?";
            values.emplace_back(choices[i]);
        }
        sql += ")";
    }
    void BindTo(Statement& statement) const
    {
        for (const Value& value : values) {
            if (const auto* number = std::get_if<std::int64_t>(&value))
                statement.Add(*number);
            else
                statement.Add(std::string_view(std::get<std::string>(value)));
        }
    }
    // Tells filters apart.
    std::string Key(std::int64_t page_size) const
    {
        std::string key = std::to_string(page_size) + sql;
        for (const Value& value : values) {
            const auto* number = std::get_if<std::int64_t>(&value);
            const std::string text =
                number != nullptr ? std::to_string(*number) : std::get<std::string>(value);
            key += "|" + std::to_string(text.size()) + ":" + text;
        }
        return key;
    }
};

// The pattern of texts that have this one in them, for LIKE with the escape sign of one backslash.
inline std::string LikePattern(const std::string& text)
{
    std::string pattern = "%";
    for (const char letter : text) {
        if (letter == '%' || letter == '_' || letter == '\\')
            pattern += '\\';
        pattern += letter;
    }
    return pattern + "%";
}

}  // namespace Station
