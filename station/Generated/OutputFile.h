#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace Station {

// A file that is written in blocks. Throws StoreError when the disk does not take them.
class OutputFile
{
public:
    explicit OutputFile(const std::filesystem::path& path);

    void Add(std::string_view bytes);
    // Writes the rest and closes.
    void Close();

private:
    void Write();

    const std::string name_;
    std::ofstream file_;
    std::string block_;
};

}  // namespace Station
