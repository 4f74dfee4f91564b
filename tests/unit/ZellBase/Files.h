#pragma once

#include "ZellBase/FileSystem.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

// Files for the tests of the file layer, written and read without it but where said. Paths are UTF-8.

inline void Put(const std::string& path, const std::string& text)
{
    std::ofstream(std::filesystem::u8path(path), std::ios::binary) << text;
}

inline std::string Content(const std::string& path)
{
    std::stringstream text;
    text << std::ifstream(std::filesystem::u8path(path), std::ios::binary).rdbuf();
    return text.str();
}

// Path below the folder and size of each file found.
inline std::map<std::string, long long> Found(const std::string& folder, bool recursive, bool with_folders)
{
    Zell::Base::FileSystem::SearchFileParam search;
    search.folder = folder;
    search.recursive = recursive;
    search.with_folders = with_folders;
    std::vector<Zell::Base::FileSystem::FileInfo> files;
    EXPECT_EQ(Zell::Base::FileSystem::GetFilesInDir(search, files), 0);
    std::map<std::string, long long> sizes;
    for (const auto& file : files)
        sizes[file.path] = file.size;
    EXPECT_EQ(sizes.size(), files.size());
    return sizes;
}

// What the file layer gives for a file that it can't open.
inline void* NoHandle()
{
    return reinterpret_cast<void*>(static_cast<std::intptr_t>(-1));
}

// By the file layer itself.
inline void WriteThrough(const std::string& path, unsigned int flags, std::string text)
{
    void* const handle =
        Zell::Base::FileSystem::OpenFile(path.c_str(), flags, Zell::Base::FileSystem::kAttributesPlain);
    ASSERT_NE(handle, NoHandle());
    unsigned int written = 0;
    EXPECT_EQ(Zell::Base::FileSystem::WriteFile(handle, text.data(), static_cast<unsigned int>(text.size()),
                                                &written),
              0);
    EXPECT_EQ(written, text.size());
    EXPECT_EQ(Zell::Base::FileSystem::CloseFile(handle), 0);
}
