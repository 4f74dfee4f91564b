#include "CellText.h"

#include <array>
#include <cctype>
#include <cstdint>

namespace ZellOfficeKit {
namespace {

// What a byte of a text asks for on its way into a cell.
enum ByteKind : std::uint8_t {
    kPlain,
    kMarkup,      // a letter of XML's own
    kUnderscore,  // may begin what looks like an escape
    kControl,
    kLongCharacter,  // a character of several bytes, or none at all
};

constexpr std::array<std::uint8_t, 256> MakeKinds()
{
    std::array<std::uint8_t, 256> kinds{};
    for (std::size_t byte = 0; byte < kinds.size(); ++byte) {
        if (byte < 0x20 && byte != '\t' && byte != '\n')
            kinds[byte] = kControl;
        else if (byte >= 0x80)
            kinds[byte] = kLongCharacter;
    }
    kinds['&'] = kMarkup;
    kinds['<'] = kMarkup;
    kinds['>'] = kMarkup;
    kinds['_'] = kUnderscore;
    return kinds;
}

constexpr auto kKinds = MakeKinds();
constexpr char kReplacement[] = "\xEF\xBF\xBD";

unsigned ByteAt(const std::string& text, std::size_t at)
{
    return static_cast<unsigned char>(text[at]);
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

std::size_t FittingBytes(const std::string& text, int max_units)
{
    const auto most = static_cast<std::size_t>(max_units);
    // No character has more units than bytes.
    if (text.size() <= most)
        return text.size();
    std::size_t units = 0;
    std::size_t at = 0;
    while (at < text.size()) {
        const CodePoint point = ReadCodePoint(text, at);
        units += point.value >= 0x10000 ? 2U : 1U;
        if (units > most)
            break;
        at += point.size;
    }
    return at;
}

namespace {

void AppendMarkup(std::string& xml, char letter)
{
    xml.append(letter == '&' ? "&amp;" : letter == '<' ? "&lt;" : "&gt;");
}

void AppendControl(std::string& xml, unsigned byte)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    if (byte == 0) {
        xml.append(kReplacement);
        return;
    }
    const char escape[] = {'_', 'x', '0', '0', kDigits[byte >> 4U], kDigits[byte & 0x0FU], '_'};
    xml.append(escape, sizeof(escape));
}

void AppendLongCharacter(std::string& xml, const std::string& text, std::size_t at, const CodePoint& point)
{
    if (point.value == 0xFFFD || point.value == 0xFFFE || point.value == 0xFFFF)
        xml.append(kReplacement);
    else
        xml.append(text, at, point.size);
}

}  // namespace

void AppendCellXml(std::string& xml, const std::string& text, std::size_t size)
{
    std::size_t at = 0;
    while (at < size) {
        const std::size_t from = at;
        while (at < size && kKinds[ByteAt(text, at)] == kPlain)
            ++at;
        xml.append(text, from, at - from);
        if (at == size)
            return;
        CodePoint point{ByteAt(text, at), 1};
        switch (kKinds[point.value]) {
            case kMarkup:
                AppendMarkup(xml, text[at]);
                break;
            case kUnderscore:
                xml.append(IsEscape(text, at) ? "_x005F_" : "_");
                break;
            case kControl:
                AppendControl(xml, static_cast<unsigned>(point.value));
                break;
            default:
                point = ReadCodePoint(text, at);
                AppendLongCharacter(xml, text, at, point);
        }
        at += point.size;
    }
}

}  // namespace ZellOfficeKit
