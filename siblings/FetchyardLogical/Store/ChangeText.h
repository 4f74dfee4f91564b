#pragma once

#include "Store/StoredTask.h"

#include <cstdint>
#include <string>
#include <string_view>

// Tasks and changes as bytes. Numbers are little-endian; a text is its length in 32 bits and its bytes.
namespace FetchyardLogical::details {

std::string WriteChanges(const Changes& changes);
// False, with the list in an unknown state, if the bytes are none that WriteChanges makes.
bool ReadChanges(std::string_view bytes, Changes& changes);

// CRC-32 of the bytes, taken on from an earlier one.
std::uint32_t CheckOf(std::string_view bytes, std::uint32_t earlier = 0);
// Of a task as it is kept, which tells whether a record of it was damaged.
std::uint32_t CheckOf(const StoredTask& task);

// Plain numbers in the same form, for headers.
void AppendNumber(std::string& bytes, std::uint64_t value, int size);
std::uint64_t NumberAt(std::string_view bytes, std::size_t position, int size);

}  // namespace FetchyardLogical::details
