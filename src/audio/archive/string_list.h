// SPDX-License-Identifier: MIT
#pragma once
// The count and length-prefix string list that the archive's key file uses:
//   count   u16; 0xFFFF escapes to a u32 count that follows
//   string  length prefix + bytes (no terminator); the prefix is one byte below 255,
//           else 0xFF + u16 below 0xFFFE, else 0xFF 0xFFFF + u32
// All values little-endian.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace vntts {

// Parses a whole serialised list. Returns nothing when the bytes end before the count or any
// string is complete; a lying count can therefore never make the reader allocate more than the
// input could hold. Bytes after the last string are ignored.
std::optional<std::vector<std::string>> ParseStringList(std::span<const std::uint8_t> bytes);

// Appends one length prefix (in its shortest allowed form) to out.
void AppendLengthPrefix(std::vector<std::uint8_t>& out, std::size_t length);
void AppendCountPrefix(std::vector<std::uint8_t>& out, std::size_t count);

// Serialises strings in the format above.
std::vector<std::uint8_t> SerializeStringList(std::span<const std::string> strings);

} // namespace vntts
