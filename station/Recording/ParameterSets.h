#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

// What an H.264 decoder must know before the first picture, as mp4 keeps it.
namespace Station {

// The parameter sets of a stream and what its box in an mp4 file says about them. Units are without their
// lengths.
struct ParameterSets
{
    std::uint8_t profile = 0;
    std::uint8_t compatibility = 0;
    std::uint8_t level = 0;
    std::vector<std::string> sequence;
    std::vector<std::string> picture;

    bool operator==(const ParameterSets& other) const;
};

// Reads the box of an mp4 file. False if it is none, has no sets, or its units have lengths of other than
// four bytes.
bool ReadBox(std::string_view box, ParameterSets& sets);
// Reads units with start codes, as encoders give them.
bool ReadStartCodes(std::string_view bytes, ParameterSets& sets);
std::string WriteBox(const ParameterSets& sets);
// The sets as units with lengths in front, for the head of a key frame.
std::string AsUnits(const ParameterSets& sets);

// The numbers by which pictures name their sets.
std::set<unsigned> NumbersOf(const ParameterSets& sets);
// Both in one box: their numbers must differ.
ParameterSets Together(const ParameterSets& first, const ParameterSets& second);

// A packet with start codes as one with lengths. Parameter sets in it are left out.
std::string WithLengths(std::string_view packet);
// Whether the packet, of units with lengths, holds a picture that needs none before it.
bool StartsAnew(std::string_view packet);

}  // namespace Station
