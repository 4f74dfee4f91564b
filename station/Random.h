#pragma once

#include <cstdint>
#include <string_view>

namespace Station {

// Numbers that look random and are the same on every platform for one seed.
class Random
{
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint64_t Next()
    {
        state_ += 0x9E3779B97F4A7C15ULL;
        std::uint64_t mixed = state_;
        mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9ULL;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBULL;
        return mixed ^ (mixed >> 31);
    }
    // From 0 to below count, which is above 0.
    int Below(int count) { return static_cast<int>(Next() % static_cast<std::uint64_t>(count)); }
    // From least to most.
    int Between(int least, int most) { return least + Below(most - least + 1); }
    // From 0 to below 1.
    double Fraction() { return static_cast<double>(Next() >> 11) / 9007199254740992.0; }
    bool OneIn(int count) { return Below(count) == 0; }
    template <typename List>
    const auto& Pick(const List& list)
    {
        return list[Next() % std::size(list)];
    }

private:
    std::uint64_t state_;
};

}  // namespace Station
