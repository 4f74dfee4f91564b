#pragma once

#include <filesystem>
#include <random>
#include <string>

// A new folder of a test's own, removed with all that the test left in it.
class TempFolder
{
public:
    TempFolder()
        : path_(std::filesystem::temp_directory_path() /
                ("fetchyard-test-" + std::to_string(std::random_device{}()) + "-" +
                 std::to_string(std::random_device{}())))
    {
        std::filesystem::create_directories(path_);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    const std::filesystem::path& Path() const { return path_; }
    // UTF-8, with "/" and the name behind it.
    std::string File(const std::string& name) const { return path_.u8string() + "/" + name; }
    // UTF-8, with a final "/".
    std::string Text() const { return File(""); }

private:
    std::filesystem::path path_;
};
