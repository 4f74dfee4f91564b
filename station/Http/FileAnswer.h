#pragma once

#include "station/Http/Routes.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace Station {

// Bytes of known number that can be read from anywhere.
struct FileSource
{
    std::uint64_t size = 0;
    std::string tag;   // changes with the bytes; letters, digits and "-"
    std::string type;  // of the content
    // Fills data from the offset on; false if that can't be done. offset + size is within the source.
    std::function<bool(std::uint64_t offset, char* data, std::size_t size)> read;
};

// False for a name that leads somewhere else than to a file of its folder: "..", a hidden file, one with a
// slash, a backslash or a control character.
bool IsFileName(std::string_view name);
// A file of the disk; nothing if it is not there or no plain file.
std::optional<FileSource> SourceOfFile(const std::filesystem::path& path);
FileSource SourceOfBytes(std::string bytes, const std::string& type);
// The same bytes for the same offset, whatever the size; made while they are sent.
FileSource SyntheticSource(std::uint64_t size);

// One part of a body, as "Range" asks for it.
struct ByteRange
{
    enum class Kind { Whole, Part, Outside };

    Kind kind = Kind::Whole;
    std::uint64_t first = 0;
    std::uint64_t count = 0;
};
// What a "Range" header asks of a body. Several ranges, or words that are none, ask for the whole.
ByteRange ReadRange(std::string_view header, std::uint64_t size);

// Answers with the source or the part that is asked for: 200, 206, 304 for a tag that the client has, 416 for
// a range behind the end.
void AnswerSource(Call& call, const FileSource& source);

}  // namespace Station
