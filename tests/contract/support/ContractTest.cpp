#include "support/ContractTest.h"

#include "ZellBase/Error.h"

#include <filesystem>
#include <sstream>

namespace contract {

ContractTest::ContractTest() : folder_(directory_.path().toStdString() + "/")
{
    fakes::Reset();
    Zell::Base::Error::SetLastError({});
    fakes::Reset();
    fakes::SetAlias(directory_.path().toStdString(), "<tmp>");
}

ContractTest::~ContractTest()
{
    fakes::Reset();
}

std::string ContractTest::InFolder(std::string text) const
{
    const std::string mark = "<tmp>/";
    for (auto at = text.find(mark); at != std::string::npos; at = text.find(mark, at + folder_.size()))
        text.replace(at, mark.size(), folder_);
    return text;
}

std::string ContractTest::Trace()
{
    return "\n" + fakes::TakeText();
}

bool ContractTest::Exists(const std::string& path_in_folder) const
{
    return std::filesystem::exists(folder_ + path_in_folder);
}

std::string ContractTest::States(const std::string& trace)
{
    std::istringstream lines(trace);
    std::string states;
    std::string error;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string word;
        std::string state;
        words >> word >> state;
        if (word != "state")
            continue;
        states += state + " ";
        words >> error;
    }
    return states + error;
}

std::string ContractTest::Lines(const std::string& trace, const std::string& start)
{
    std::istringstream lines(trace);
    std::string found = "\n";
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind(start, 0) == 0)
            found += line + "\n";
    }
    return found;
}

}  // namespace contract
