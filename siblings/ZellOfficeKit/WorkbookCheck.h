#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ZellOfficeKit {

// What a worksheet of a closed workbook must hold.
struct ExpectedSheet
{
    int number = 0;               // from 1, as in the names of the members
    std::uint64_t row_bytes = 0;  // bytes of XML of all its rows
};

// Reads a closed workbook back: on a full disk the library can close one without an error and with a cut
// sheet. Each XML member must end with the end of its first element, and each sheet must hold exactly its
// rows. Returns what is wrong; empty if all is well.
std::string FindDamage(const std::string& path, const std::vector<ExpectedSheet>& expected);

}  // namespace ZellOfficeKit
