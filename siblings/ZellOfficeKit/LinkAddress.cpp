#include "LinkAddress.h"

#include "CellText.h"

#include <cctype>
#include <cstring>
#include <filesystem>

namespace ZellOfficeKit {
namespace {

// Besides letters and digits, what stands for itself in a path of a file address.
constexpr char kPlainInPath[] = "-._~/!$&'()*+,;=:@";
// The same for an address that came as one; "%" is looked at apart.
constexpr char kPlainInAddress[] = "-._~/!$&'()*+,;=:@?#[]";

bool IsAlnum(char letter)
{
    return std::isalnum(static_cast<unsigned char>(letter)) != 0 && static_cast<unsigned char>(letter) < 0x80;
}

bool IsEncoded(const std::string& text, std::size_t at)
{
    return at + 2 < text.size() && text[at] == '%' &&
           std::isxdigit(static_cast<unsigned char>(text[at + 1])) != 0 &&
           std::isxdigit(static_cast<unsigned char>(text[at + 2])) != 0;
}

// Invalid UTF-8 becomes U+FFFD first, so that the address is text again when it is decoded.
std::string Encode(const std::string& text, const char* plain, bool keep_encoded)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string valid;
    for (std::size_t at = 0; at < text.size();) {
        const CodePoint point = ReadCodePoint(text, at);
        AppendCodePoint(valid, point.value);
        at += point.size;
    }
    std::string encoded;
    encoded.reserve(valid.size() + 16);
    for (std::size_t at = 0; at < valid.size(); ++at) {
        const char letter = valid[at];
        const bool stays = IsAlnum(letter) || (letter != '\0' && std::strchr(plain, letter) != nullptr) ||
                           (keep_encoded && IsEncoded(valid, at));
        if (stays) {
            encoded.push_back(letter);
            continue;
        }
        const auto byte = static_cast<unsigned char>(letter);
        encoded.push_back('%');
        encoded.push_back(kDigits[byte >> 4U]);
        encoded.push_back(kDigits[byte & 0x0FU]);
    }
    return encoded;
}

bool IsSeparator(char letter)
{
    return letter == '/' || letter == '\\';
}

// Letters before a ":" that name a scheme; a single one is a drive.
std::size_t SchemeSize(const std::string& target)
{
    std::size_t size = 0;
    while (size < target.size() &&
           (IsAlnum(target[size]) || (size > 0 && std::strchr("+-.", target[size]) != nullptr)))
        ++size;
    const bool is_scheme = size >= 2 && size < target.size() && target[size] == ':' &&
                           std::isalpha(static_cast<unsigned char>(target[0])) != 0;
    return is_scheme ? size : 0;
}

std::string WithSlashes(std::string path)
{
    for (char& letter : path) {
        if (letter == '\\')
            letter = '/';
    }
    return path;
}

bool HasDrive(const std::string& path)
{
    return path.size() >= 3 && std::isalpha(static_cast<unsigned char>(path[0])) != 0 && path[1] == ':' &&
           IsSeparator(path[2]);
}

std::string FileAddress(const std::string& path)
{
    if (HasDrive(path))
        return "file:///" + Encode(WithSlashes(path), kPlainInPath, false);
    if (path.size() > 2 && path[0] == '\\' && path[1] == '\\')
        return "file:" + Encode(WithSlashes(path), kPlainInPath, false);
    if (path[0] == '/')
        return "file://" + Encode(path, kPlainInPath, false);
    std::error_code error;
    const std::string whole = std::filesystem::absolute(std::filesystem::u8path(path), error).u8string();
    const bool is_whole = !error && !whole.empty() && (whole[0] == '/' || HasDrive(whole));
    return is_whole ? FileAddress(whole) : std::string();
}

// Two schemes of the workbook library's own: they would point into workbooks, not at files or the web.
bool IsOwnScheme(const std::string& scheme)
{
    return scheme == "internal" || scheme == "external";
}

std::string Address(const std::string& target)
{
    if (target.empty())
        return {};
    if (const std::size_t scheme = SchemeSize(target); scheme > 0) {
        if (IsOwnScheme(target.substr(0, scheme)))
            return {};
        return Encode(target, kPlainInAddress, true);
    }
    if (target.compare(0, 4, "www.") == 0)
        return "http://" + Encode(target, kPlainInAddress, true);
    return FileAddress(target);
}

}  // namespace

std::string MakeLinkAddress(const std::string& target)
{
    std::string address = Address(target);
    if (address.size() > static_cast<std::size_t>(kMostLinkCharacters))
        address.clear();
    return address;
}

}  // namespace ZellOfficeKit
