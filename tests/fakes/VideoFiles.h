#pragma once

#include <deque>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

// For the fakes that make video files.
namespace fakes {

// The next of the scripted results; 0 if there is none left.
inline int NextResult(std::deque<int>& results)
{
    if (results.empty())
        return 0;
    const int result = results.front();
    results.pop_front();
    return result;
}

// A file that says what was done to which content.
inline void WriteVideo(const std::string& work, const std::string& source, const std::string& target)
{
    std::ifstream in(std::filesystem::u8path(source), std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    std::ofstream(std::filesystem::u8path(target), std::ios::binary) << work << " " << content;
}

}  // namespace fakes
