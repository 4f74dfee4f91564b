#include "station/Http/FileAnswer.h"

#include "station/Http/Connection.h"
#include "station/Random.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <fstream>
#include <vector>

namespace Station {
namespace {

constexpr std::size_t kPiece = 512u << 10;  // bytes that are read and sent at a time
constexpr std::size_t kPattern = 64u << 10;

std::string_view TypeOf(const std::filesystem::path& path)
{
    const std::string suffix = path.extension().u8string();
    if (suffix == ".txt" || suffix == ".log")
        return "text/plain; charset=utf-8";
    if (suffix == ".json")
        return "application/json";
    return suffix == ".jpg" ? "image/jpeg" : "application/octet-stream";
}

std::string Hex(std::uint64_t number)
{
    std::array<char, 16> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number, 16);
    return {digits.data(), end.ptr};
}

std::uint64_t Digest(std::string_view bytes)
{
    std::uint64_t state = 0xCBF29CE484222325ULL;
    for (const char byte : bytes)
        state = (state ^ static_cast<unsigned char>(byte)) * 0x100000001B3ULL;
    return state;
}

// A number of digits only; nothing for an empty text or one that is too large.
std::optional<std::uint64_t> Number(std::string_view text)
{
    std::uint64_t number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || result.ec != std::errc() || result.ptr != text.data() + text.size())
        return std::nullopt;
    return number;
}

ByteRange LastBytes(std::uint64_t count, std::uint64_t size)
{
    if (count == 0 || size == 0)
        return {ByteRange::Kind::Outside, 0, 0};
    count = std::min(count, size);
    return {ByteRange::Kind::Part, size - count, count};
}

bool HasTag(const std::string& header, const std::string& quoted_tag)
{
    return header == "*" || header.find(quoted_tag) != std::string::npos;
}

// The part that the request asks for, unless its copy is of another version.
ByteRange WantedRange(const httplib::Request& request, const std::string& quoted_tag, std::uint64_t size)
{
    const bool is_of_other_version =
        request.has_header("If-Range") && request.get_header_value("If-Range") != quoted_tag;
    if (!request.has_header("Range") || is_of_other_version)
        return {ByteRange::Kind::Whole, 0, size};
    ByteRange range = ReadRange(request.get_header_value("Range"), size);
    if (range.kind == ByteRange::Kind::Whole)
        range.count = size;
    return range;
}

const std::vector<char>& Pattern()
{
    static const auto* const pattern = [] {
        auto* bytes = new std::vector<char>(kPattern);
        Random random(20260131);
        for (char& byte : *bytes)
            byte = static_cast<char>(random.Next() & 0xFF);
        return bytes;
    }();
    return *pattern;
}

// Each piece begins with its number, so that no two are alike.
void FillSynthetic(std::uint64_t offset, char* data, std::size_t size)
{
    const std::vector<char>& pattern = Pattern();
    while (size > 0) {
        const std::uint64_t number = offset / kPattern;
        const auto begin = static_cast<std::size_t>(offset % kPattern);
        const std::size_t part = std::min(size, kPattern - begin);
        std::memcpy(data, pattern.data() + begin, part);
        for (std::size_t at = begin; at < std::min<std::size_t>(begin + part, 8); ++at)
            data[at - begin] = static_cast<char>(number >> (8 * at));
        offset += part;
        data += part;
        size -= part;
    }
}

void SendPart(httplib::Response& response, const FileSource& source, const ByteRange& part)
{
    if (part.count == 0) {
        response.set_header("Content-Type", source.type);
        return;
    }
    auto buffer = std::make_shared<std::vector<char>>(std::min<std::uint64_t>(part.count, kPiece));
    response.set_content_provider(
        part.count, source.type,
        [source, part, buffer](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
            const std::size_t size = std::min(length, buffer->size());
            return source.read(part.first + offset, buffer->data(), size) && sink.write(buffer->data(), size);
        });
}

}  // namespace

bool IsFileName(std::string_view name)
{
    return !name.empty() && name.front() != '.' && std::none_of(name.begin(), name.end(), [](char letter) {
        return letter == '/' || letter == '\\' || static_cast<unsigned char>(letter) < 0x20;
    });
}

std::optional<FileSource> SourceOfFile(const std::filesystem::path& path)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        return std::nullopt;
    const std::uint64_t size = std::filesystem::file_size(path, error);
    const auto time = std::filesystem::last_write_time(path, error).time_since_epoch().count();
    auto file = std::make_shared<std::ifstream>(path, std::ios::binary);
    if (error || !file->is_open())
        return std::nullopt;
    FileSource source;
    source.size = size;
    source.tag = Hex(size) + "-" + Hex(static_cast<std::uint64_t>(time));
    source.type = TypeOf(path);
    source.read = [file](std::uint64_t offset, char* data, std::size_t count) {
        file->seekg(static_cast<std::streamoff>(offset));
        return static_cast<bool>(file->read(data, static_cast<std::streamsize>(count)));
    };
    return source;
}

FileSource SourceOfBytes(std::string bytes, const std::string& type)
{
    FileSource source;
    source.size = bytes.size();
    source.tag = Hex(bytes.size()) + "-" + Hex(Digest(bytes));
    source.type = type;
    const auto kept = std::make_shared<const std::string>(std::move(bytes));
    source.read = [kept](std::uint64_t offset, char* data, std::size_t count) {
        std::memcpy(data, kept->data() + offset, count);
        return true;
    };
    return source;
}

FileSource SyntheticSource(std::uint64_t size)
{
    FileSource source;
    source.size = size;
    source.tag = "synthetic-" + Hex(size);
    source.type = "application/octet-stream";
    source.read = [](std::uint64_t offset, char* data, std::size_t count) {
        FillSynthetic(offset, data, count);
        return true;
    };
    return source;
}

ByteRange ReadRange(std::string_view header, std::uint64_t size)
{
    constexpr std::string_view kUnit = "bytes=";
    const ByteRange whole;
    if (header.substr(0, kUnit.size()) != kUnit)
        return whole;
    const std::string_view range = header.substr(kUnit.size());
    const std::size_t dash = range.find('-');
    if (dash == std::string_view::npos)
        return whole;
    const std::optional<std::uint64_t> first = Number(range.substr(0, dash));
    const std::optional<std::uint64_t> last = Number(range.substr(dash + 1));
    if (dash == 0)
        return last ? LastBytes(*last, size) : whole;
    const bool has_last = dash + 1 < range.size();
    if (!first || (has_last && (!last || *last < *first)))
        return whole;
    if (*first >= size)
        return {ByteRange::Kind::Outside, 0, 0};
    const std::uint64_t end = last ? std::min(*last, size - 1) : size - 1;
    return {ByteRange::Kind::Part, *first, end - *first + 1};
}

void AnswerSource(Call& call, const FileSource& source)
{
    const std::string tag = "\"" + source.tag + "\"";
    call.response.set_header("ETag", tag);
    call.response.set_header("Accept-Ranges", "bytes");
    if (HasTag(call.request.get_header_value("If-None-Match"), tag)) {
        call.response.status = 304;
        return;
    }
    const ByteRange part = WantedRange(call.request, tag, source.size);
    const std::string total = "/" + std::to_string(source.size);
    if (part.kind == ByteRange::Kind::Outside) {
        call.response.status = 416;
        call.response.set_header("Content-Range", "bytes *" + total);
        call.response.set_content("There is nothing behind the end.\n", "text/plain");
        return;
    }
    if (part.kind == ByteRange::Kind::Part) {
        call.response.status = 206;
        const std::uint64_t told = part.first + (Connection::Current()->LiesAboutRange() ? 1 : 0);
        call.response.set_header("Content-Range", "bytes " + std::to_string(told) + "-" +
                                                      std::to_string(told + part.count - 1) + total);
    }
    SendPart(call.response, source, part);
}

}  // namespace Station
