#include "station/Commands/Arguments.h"

#include <charconv>

namespace Station {

Arguments::Arguments(const std::vector<std::string>& line, const std::set<std::string>& options,
                     const std::set<std::string>& switches)
{
    for (std::size_t i = 0; i < line.size(); ++i) {
        const std::string& word = line[i];
        if (word.compare(0, 2, "--") != 0) {
            words_.push_back(word);
            continue;
        }
        const std::size_t equals = word.find('=');
        const std::string name = word.substr(0, equals);
        if (switches.count(name) > 0 && equals == std::string::npos) {
            values_[name] = "";
            continue;
        }
        if (options.count(name) == 0)
            throw UsageError("there is no option " + name);
        if (equals != std::string::npos)
            values_[name] = word.substr(equals + 1);
        else if (i + 1 < line.size())
            values_[name] = line[++i];
        else
            throw UsageError(name + " needs a value");
    }
}

std::string Arguments::Text(const std::string& name, const std::string& otherwise) const
{
    const auto found = values_.find(name);
    return found == values_.end() ? otherwise : found->second;
}

std::int64_t Arguments::Number(const std::string& name, std::int64_t otherwise, std::int64_t least,
                               std::int64_t most) const
{
    const auto found = values_.find(name);
    if (found == values_.end())
        return otherwise;
    const std::string& text = found->second;
    std::int64_t value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size() || value < least || value > most)
        throw UsageError(name + " must be a whole number from " + std::to_string(least) + " to " +
                         std::to_string(most));
    return value;
}

std::filesystem::path Arguments::Path(const std::string& name) const
{
    const auto found = values_.find(name);
    if (found == values_.end() || found->second.empty())
        throw UsageError(name + " is missing");
    return std::filesystem::u8path(found->second);
}

}  // namespace Station
