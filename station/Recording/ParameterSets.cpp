#include "station/Recording/ParameterSets.h"

#include <algorithm>
#include <optional>

namespace Station {
namespace {

constexpr unsigned kInstantRefresh = 5;
constexpr unsigned kSequence = 7;
constexpr unsigned kPicture = 8;
constexpr std::size_t kLengthBytes = 4;
// Profiles whose box says more about colour at its end.
constexpr unsigned kHighProfile = 100;

unsigned Byte(std::string_view bytes, std::size_t at)
{
    return static_cast<unsigned char>(bytes[at]);
}

unsigned KindOf(std::string_view unit)
{
    return unit.empty() ? 0 : Byte(unit, 0) & 0x1F;
}

void AppendNumber(std::string& bytes, std::size_t number, std::size_t size)
{
    while (size > 0)
        bytes += static_cast<char>((number >> (8 * --size)) & 0xFF);
}

// Takes so many bytes as a number.
std::optional<std::size_t> TakeNumber(std::string_view& bytes, std::size_t size)
{
    if (bytes.size() < size)
        return std::nullopt;
    std::size_t number = 0;
    for (std::size_t i = 0; i < size; ++i)
        number = number << 8 | Byte(bytes, i);
    bytes.remove_prefix(size);
    return number;
}

bool TakeUnits(std::string_view& box, std::size_t count, std::vector<std::string>& units)
{
    for (std::size_t i = 0; i < count; ++i) {
        const auto size = TakeNumber(box, 2);
        if (!size || *size == 0 || *size > box.size())
            return false;
        units.emplace_back(box.substr(0, *size));
        box.remove_prefix(*size);
    }
    return true;
}

// The number in the code that H.264 writes numbers in, whose first bit is given.
unsigned ReadGolomb(std::string_view bytes, std::size_t bit)
{
    const auto is_set = [&bytes](std::size_t at) {
        return at / 8 < bytes.size() && (Byte(bytes, at / 8) >> (7 - at % 8) & 1) != 0;
    };
    std::size_t zeros = 0;
    while (zeros < 16 && !is_set(bit + zeros))
        ++zeros;
    unsigned value = 0;
    for (std::size_t i = 0; i <= zeros; ++i)
        value = value << 1 | (is_set(bit + zeros + i) ? 1u : 0u);
    return value - 1;
}

// Units between start codes, which have three bytes and any zeros in front.
std::vector<std::string_view> SplitStartCodes(std::string_view bytes)
{
    constexpr std::string_view kCode("\0\0\1", 3);
    std::vector<std::string_view> units;
    std::size_t begin = bytes.find(kCode);
    while (begin != std::string_view::npos) {
        begin += kCode.size();
        const std::size_t next = bytes.find(kCode, begin);
        std::string_view unit = bytes.substr(begin, next == std::string_view::npos ? next : next - begin);
        while (!unit.empty() && unit.back() == '\0')
            unit.remove_suffix(1);
        if (!unit.empty())
            units.push_back(unit);
        begin = next;
    }
    return units;
}

void TakeKind(ParameterSets& sets, std::string_view unit)
{
    if (KindOf(unit) == kPicture)
        sets.picture.emplace_back(unit);
    if (KindOf(unit) != kSequence || unit.size() < kLengthBytes)
        return;
    if (sets.sequence.empty()) {
        sets.profile = static_cast<std::uint8_t>(Byte(unit, 1));
        sets.compatibility = static_cast<std::uint8_t>(Byte(unit, 2));
        sets.level = static_cast<std::uint8_t>(Byte(unit, 3));
    }
    sets.sequence.emplace_back(unit);
}

void AppendUnits(std::string& box, const std::vector<std::string>& units)
{
    for (const std::string& unit : units) {
        AppendNumber(box, unit.size(), 2);
        box += unit;
    }
}

}  // namespace

bool ParameterSets::operator==(const ParameterSets& other) const
{
    return sequence == other.sequence && picture == other.picture;
}

bool ReadBox(std::string_view box, ParameterSets& sets)
{
    constexpr std::size_t kHead = 6;
    if (box.size() < kHead || Byte(box, 0) != 1 || (Byte(box, 4) & 3) + 1 != kLengthBytes)
        return false;
    sets = {};
    sets.profile = static_cast<std::uint8_t>(Byte(box, 1));
    sets.compatibility = static_cast<std::uint8_t>(Byte(box, 2));
    sets.level = static_cast<std::uint8_t>(Byte(box, 3));
    const std::size_t sequences = Byte(box, 5) & 0x1F;
    box.remove_prefix(kHead);
    if (sequences == 0 || !TakeUnits(box, sequences, sets.sequence))
        return false;
    const auto pictures = TakeNumber(box, 1);
    return pictures.value_or(0) > 0 && TakeUnits(box, *pictures, sets.picture);
}

bool ReadStartCodes(std::string_view bytes, ParameterSets& sets)
{
    sets = {};
    for (const std::string_view unit : SplitStartCodes(bytes))
        TakeKind(sets, unit);
    return !sets.sequence.empty() && !sets.picture.empty();
}

std::string WriteBox(const ParameterSets& sets)
{
    std::string box;
    box += '\1';
    box += static_cast<char>(sets.profile);
    box += static_cast<char>(sets.compatibility);
    box += static_cast<char>(sets.level);
    box += static_cast<char>(0xFC | (kLengthBytes - 1));
    box += static_cast<char>(0xE0 | sets.sequence.size());
    AppendUnits(box, sets.sequence);
    box += static_cast<char>(sets.picture.size());
    AppendUnits(box, sets.picture);
    // Recordings have 4:2:0 colour of eight bits, and no extensions.
    if (sets.profile >= kHighProfile)
        box += "\xFD\xF8\xF8" + std::string(1, '\0');
    return box;
}

std::string AsUnits(const ParameterSets& sets)
{
    std::string units;
    for (const auto* kind : {&sets.sequence, &sets.picture}) {
        for (const std::string& unit : *kind) {
            AppendNumber(units, unit.size(), kLengthBytes);
            units += unit;
        }
    }
    return units;
}

std::set<unsigned> NumbersOf(const ParameterSets& sets)
{
    constexpr std::size_t kSequenceNumberBit = 32;  // behind the head, the profile and the level
    constexpr std::size_t kPictureNumberBit = 8;
    std::set<unsigned> numbers;
    for (const std::string& unit : sets.sequence)
        numbers.insert(ReadGolomb(unit, kSequenceNumberBit));
    for (const std::string& unit : sets.picture)
        numbers.insert(ReadGolomb(unit, kPictureNumberBit));
    return numbers;
}

ParameterSets Together(const ParameterSets& first, const ParameterSets& second)
{
    ParameterSets both = first;
    both.profile = std::max(first.profile, second.profile);
    both.compatibility = first.compatibility & second.compatibility;
    both.level = std::max(first.level, second.level);
    both.sequence.insert(both.sequence.end(), second.sequence.begin(), second.sequence.end());
    both.picture.insert(both.picture.end(), second.picture.begin(), second.picture.end());
    return both;
}

std::string WithLengths(std::string_view packet)
{
    std::string units;
    units.reserve(packet.size() + 16);
    for (const std::string_view unit : SplitStartCodes(packet)) {
        if (KindOf(unit) == kSequence || KindOf(unit) == kPicture)
            continue;
        AppendNumber(units, unit.size(), kLengthBytes);
        units += unit;
    }
    return units;
}

bool StartsAnew(std::string_view packet)
{
    while (const auto size = TakeNumber(packet, kLengthBytes)) {
        if (*size > packet.size())
            return false;
        if (KindOf(packet.substr(0, *size)) == kInstantRefresh)
            return true;
        packet.remove_prefix(*size);
    }
    return false;
}

}  // namespace Station
