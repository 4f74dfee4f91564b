#pragma once

#include <cstdint>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace ZellOfficeKit {

// A member of a zip.
struct ZipEntry
{
    std::string name;
    std::uint64_t packed_size = 0;
    std::uint64_t size = 0;
    std::uint64_t offset = 0;  // of its local header
    int method = 0;            // 0 stored, 8 deflated
};

// Reads a zip, with or without 64-bit sizes, that nobody changes meanwhile.
class CZipReader
{
public:
    // Gets the bytes of a member piece by piece.
    using Visitor = std::function<void(const char* data, std::size_t size)>;

    // Reads the directory at the end of the file; false if the file is no whole zip.
    bool Open(const std::string& path);
    const std::vector<ZipEntry>& entries() const { return entries_; }
    // Unpacks a member; false if it can't be read whole.
    bool Read(const ZipEntry& entry, const Visitor& visitor);

private:
    bool ReadAt(std::uint64_t offset, std::string& bytes, std::size_t size);
    bool FindDirectory(std::uint64_t& offset, std::uint64_t& size);
    bool ReadDirectory(const std::string& directory);
    bool Inflate(std::uint64_t offset, const ZipEntry& entry, const Visitor& visitor);

    std::ifstream file_;
    std::uint64_t file_size_ = 0;
    std::vector<ZipEntry> entries_;
};

}  // namespace ZellOfficeKit
