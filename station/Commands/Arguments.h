#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace Station {

// The command line is wrong; what() says how.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// A command line: words, options with a value ("--port 0" or "--port=0") and switches.
class Arguments
{
public:
    // Throws UsageError for an option that is not among the known ones, or one without its value.
    Arguments(const std::vector<std::string>& line, const std::set<std::string>& options,
              const std::set<std::string>& switches);

    const std::vector<std::string>& Words() const { return words_; }
    bool Has(const std::string& name) const { return values_.count(name) > 0; }
    std::string Text(const std::string& name, const std::string& otherwise) const;
    std::int64_t Number(const std::string& name, std::int64_t otherwise, std::int64_t least,
                        std::int64_t most) const;
    // An option that must be there.
    std::filesystem::path Path(const std::string& name) const;

private:
    std::vector<std::string> words_;
    std::map<std::string, std::string> values_;
};

}  // namespace Station
