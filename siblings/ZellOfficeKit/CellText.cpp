#include "CellText.h"

#include <cctype>
#include <cstdint>
#include <cstring>

namespace ZellOfficeKit {
namespace {

constexpr std::uint64_t kOnes = 0x0101010101010101U;
constexpr std::uint64_t kHighs = 0x8080808080808080U;
constexpr char kEscapedUnderscore[] = "_x005F_";

unsigned ByteAt(const std::string& text, std::size_t at)
{
    return static_cast<unsigned char>(text[at]);
}

// What the fast look at a text found.
struct Look
{
    bool is_ascii = true;         // no byte above 127, no zero byte
    bool has_underscore = false;  // so an escape may be there
};

std::uint64_t ZeroBytes(std::uint64_t word)
{
    return (word - kOnes) & ~word & kHighs;
}

// Eight bytes at a time: every cell of a report passes here.
Look LookAt(const std::string& text)
{
    Look look;
    const char* data = text.data();
    std::size_t left = text.size();
    std::uint64_t bad = 0;
    std::uint64_t underscores = 0;
    while (left >= sizeof(std::uint64_t)) {
        std::uint64_t word = 0;
        std::memcpy(&word, data, sizeof(word));
        bad |= (word & kHighs) | ZeroBytes(word);
        underscores |= ZeroBytes(word ^ (kOnes * static_cast<unsigned char>('_')));
        data += sizeof(word);
        left -= sizeof(word);
    }
    for (; left > 0; --left, ++data) {
        const auto byte = static_cast<unsigned char>(*data);
        bad |= static_cast<std::uint64_t>(byte == 0 || byte >= 0x80);
        underscores |= static_cast<std::uint64_t>(byte == '_');
    }
    look.is_ascii = bad == 0;
    look.has_underscore = underscores != 0;
    return look;
}

// "_x" and four hexadecimal digits and "_": readers take it for the character of that number.
bool IsEscape(const std::string& text, std::size_t at)
{
    if (text.size() - at < 7 || text[at] != '_' || text[at + 1] != 'x' || text[at + 6] != '_')
        return false;
    for (std::size_t i = at + 2; i < at + 6; ++i) {
        if (std::isxdigit(static_cast<unsigned char>(text[i])) == 0)
            return false;
    }
    return true;
}

bool HasEscape(const std::string& text)
{
    for (std::size_t at = text.find("_x"); at != std::string::npos; at = text.find("_x", at + 1)) {
        if (IsEscape(text, at))
            return true;
    }
    return false;
}

// The bytes behind the first one of a sequence, with the range that the second one must be in.
struct Sequence
{
    std::size_t size = 0;  // 0 for a byte that begins no sequence
    unsigned first_bits = 0;
    unsigned second_from = 0x80;
    unsigned second_to = 0xBF;
};

Sequence SequenceOf(unsigned lead)
{
    if (lead >= 0xC2 && lead <= 0xDF)
        return {2, lead & 0x1FU, 0x80, 0xBF};
    if (lead >= 0xE0 && lead <= 0xEF)
        return {3, lead & 0x0FU, lead == 0xE0 ? 0xA0U : 0x80U, lead == 0xED ? 0x9FU : 0xBFU};
    if (lead >= 0xF0 && lead <= 0xF4)
        return {4, lead & 0x07U, lead == 0xF0 ? 0x90U : 0x80U, lead == 0xF4 ? 0x8FU : 0xBFU};
    return {};
}

}  // namespace

CodePoint ReadCodePoint(const std::string& text, std::size_t at)
{
    const unsigned lead = ByteAt(text, at);
    if (lead < 0x80)
        return {lead, 1};
    const Sequence sequence = SequenceOf(lead);
    if (sequence.size == 0)
        return {};
    char32_t value = sequence.first_bits;
    for (std::size_t i = 1; i < sequence.size; ++i) {
        const unsigned byte = at + i < text.size() ? ByteAt(text, at + i) : 0U;
        const unsigned from = i == 1 ? sequence.second_from : 0x80U;
        const unsigned to = i == 1 ? sequence.second_to : 0xBFU;
        if (byte < from || byte > to)
            return {0xFFFD, i};
        value = (value << 6U) | (byte & 0x3FU);
    }
    return {value, sequence.size};
}

void AppendCodePoint(std::string& text, char32_t point)
{
    const auto put = [&text](char32_t byte) { text.push_back(static_cast<char>(byte)); };
    if (point < 0x80) {
        put(point);
        return;
    }
    if (point < 0x800) {
        put(0xC0U | (point >> 6U));
    } else {
        if (point < 0x10000) {
            put(0xE0U | (point >> 12U));
        } else {
            put(0xF0U | (point >> 18U));
            put(0x80U | ((point >> 12U) & 0x3FU));
        }
        put(0x80U | ((point >> 6U) & 0x3FU));
    }
    put(0x80U | (point & 0x3FU));
}

CellText FitCellText(const std::string& source, std::string& scratch, int max_units)
{
    const auto most = static_cast<std::size_t>(max_units);
    if (source.size() <= most) {
        const Look look = LookAt(source);
        if (look.is_ascii && !(look.has_underscore && HasEscape(source)))
            return {source.c_str(), false};
    }
    scratch.clear();
    std::size_t units = 0;
    std::size_t at = 0;
    while (at < source.size()) {
        const bool escape = IsEscape(source, at);
        CodePoint point = ReadCodePoint(source, at);
        if (point.value == 0 || point.value == 0xFFFE || point.value == 0xFFFF)
            point.value = 0xFFFD;
        units += escape ? sizeof(kEscapedUnderscore) - 1 : (point.value >= 0x10000 ? 2U : 1U);
        if (units > most)
            return {scratch.c_str(), true};
        if (escape)
            scratch.append(kEscapedUnderscore);
        else
            AppendCodePoint(scratch, point.value);
        at += point.size;
    }
    return {scratch.c_str(), false};
}

}  // namespace ZellOfficeKit
