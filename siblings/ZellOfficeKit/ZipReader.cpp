#include "ZipReader.h"

#include <zlib.h>

#include <algorithm>
#include <filesystem>

namespace ZellOfficeKit {
namespace {

constexpr std::size_t kEndSize = 22;
constexpr std::size_t kEndLocatorSize = 20;
constexpr std::size_t kEnd64Size = 56;
constexpr std::size_t kEntrySize = 46;
constexpr std::size_t kLocalSize = 30;
constexpr std::size_t kPiece = std::size_t{1} << 18U;
constexpr std::uint64_t kIn64 = 0xFFFFFFFFU;

// Little-endian number of the given width.
std::uint64_t Number(const std::string& bytes, std::size_t at, std::size_t width)
{
    std::uint64_t value = 0;
    for (std::size_t i = width; i > 0; --i)
        value = (value << 8U) | static_cast<unsigned char>(bytes[at + i - 1]);
    return value;
}

// Takes the 64-bit numbers out of an entry's extra fields, in their fixed order, for those that did not fit.
void ReadExtra(const std::string& extra, ZipEntry& entry)
{
    std::size_t at = 0;
    while (at + 4 <= extra.size()) {
        const std::uint64_t id = Number(extra, at, 2);
        const std::size_t end = at + 4 + static_cast<std::size_t>(Number(extra, at + 2, 2));
        at += 4;
        if (end > extra.size())
            return;
        if (id == 1) {
            for (std::uint64_t* number : {&entry.size, &entry.packed_size, &entry.offset}) {
                if (*number == kIn64 && at + 8 <= end) {
                    *number = Number(extra, at, 8);
                    at += 8;
                }
            }
        }
        at = end;
    }
}

}  // namespace

bool CZipReader::Open(const std::string& path)
{
    const std::filesystem::path own = std::filesystem::u8path(path);
    std::error_code error;
    file_size_ = std::filesystem::file_size(own, error);
    if (error)
        return false;
    file_.open(own, std::ios::binary);
    std::uint64_t offset = 0;
    std::uint64_t size = 0;
    std::string directory;
    return file_.is_open() && FindDirectory(offset, size) && size <= file_size_ &&
           ReadAt(offset, directory, static_cast<std::size_t>(size)) && ReadDirectory(directory);
}

bool CZipReader::ReadAt(std::uint64_t offset, std::string& bytes, std::size_t size)
{
    if (offset > file_size_ || size > file_size_ - offset)
        return false;
    bytes.resize(size);
    file_.clear();
    file_.seekg(static_cast<std::streamoff>(offset));
    file_.read(bytes.data(), static_cast<std::streamsize>(size));
    return file_.good();
}

// The workbook library writes no comment, so the end record is the end of the file.
bool CZipReader::FindDirectory(std::uint64_t& offset, std::uint64_t& size)
{
    std::string end;
    if (file_size_ < kEndSize || !ReadAt(file_size_ - kEndSize, end, kEndSize) ||
        end.compare(0, 4, "PK\5\6") != 0)
        return false;
    size = Number(end, 12, 4);
    offset = Number(end, 16, 4);
    std::string locator;
    std::string end64;
    const bool has_64 = file_size_ >= kEndSize + kEndLocatorSize &&
                        ReadAt(file_size_ - kEndSize - kEndLocatorSize, locator, kEndLocatorSize) &&
                        locator.compare(0, 4, "PK\6\7") == 0;
    if (!has_64)
        return true;
    if (!ReadAt(Number(locator, 8, 8), end64, kEnd64Size) || end64.compare(0, 4, "PK\6\6") != 0)
        return false;
    size = Number(end64, 40, 8);
    offset = Number(end64, 48, 8);
    return true;
}

bool CZipReader::ReadDirectory(const std::string& directory)
{
    std::size_t at = 0;
    while (at + kEntrySize <= directory.size()) {
        if (directory.compare(at, 4, "PK\1\2") != 0)
            return false;
        const auto name_size = static_cast<std::size_t>(Number(directory, at + 28, 2));
        const auto extra_size = static_cast<std::size_t>(Number(directory, at + 30, 2));
        const auto comment_size = static_cast<std::size_t>(Number(directory, at + 32, 2));
        const std::size_t next = at + kEntrySize + name_size + extra_size + comment_size;
        if (next > directory.size())
            return false;
        ZipEntry entry;
        entry.method = static_cast<int>(Number(directory, at + 10, 2));
        entry.packed_size = Number(directory, at + 20, 4);
        entry.size = Number(directory, at + 24, 4);
        entry.offset = Number(directory, at + 42, 4);
        entry.name = directory.substr(at + kEntrySize, name_size);
        ReadExtra(directory.substr(at + kEntrySize + name_size, extra_size), entry);
        entries_.push_back(std::move(entry));
        at = next;
    }
    return at == directory.size();
}

bool CZipReader::Read(const ZipEntry& entry, const Visitor& visitor)
{
    std::string local;
    if (!ReadAt(entry.offset, local, kLocalSize) || local.compare(0, 4, "PK\3\4") != 0)
        return false;
    const std::uint64_t offset = entry.offset + kLocalSize + Number(local, 26, 2) + Number(local, 28, 2);
    if (offset > file_size_ || entry.packed_size > file_size_ - offset)
        return false;
    if (entry.method == Z_DEFLATED)
        return Inflate(offset, entry, visitor);
    std::string bytes;
    if (entry.method != 0 || !ReadAt(offset, bytes, static_cast<std::size_t>(entry.packed_size)))
        return false;
    visitor(bytes.data(), bytes.size());
    return true;
}

bool CZipReader::Inflate(std::uint64_t offset, const ZipEntry& entry, const Visitor& visitor)
{
    z_stream stream = {};
    // A negative width: the member has no zlib header.
    if (inflateInit2(&stream, -MAX_WBITS) != Z_OK)
        return false;
    std::string in;
    std::string out(kPiece, '\0');
    std::uint64_t left = entry.packed_size;
    std::uint64_t got = 0;
    int state = Z_OK;
    while (state == Z_OK) {
        if (stream.avail_in == 0 && left > 0) {
            const auto piece = static_cast<std::size_t>(std::min<std::uint64_t>(left, kPiece));
            if (!ReadAt(offset, in, piece))
                break;
            offset += piece;
            left -= piece;
            stream.next_in = reinterpret_cast<Bytef*>(in.data());
            stream.avail_in = static_cast<uInt>(piece);
        }
        stream.next_out = reinterpret_cast<Bytef*>(out.data());
        stream.avail_out = static_cast<uInt>(out.size());
        state = inflate(&stream, Z_NO_FLUSH);
        const std::size_t made = out.size() - stream.avail_out;
        got += made;
        visitor(out.data(), made);
    }
    inflateEnd(&stream);
    return state == Z_STREAM_END && got == entry.size;
}

}  // namespace ZellOfficeKit
