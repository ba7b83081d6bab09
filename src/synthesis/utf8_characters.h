// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

namespace vntts {

// Length of the character that starts at `pos`: a well-formed sequence, else one byte, so that
// a broken byte never swallows the characters after it.
inline std::size_t CharacterLength(std::string_view s, std::size_t pos) {
  const auto lead = static_cast<unsigned char>(s[pos]);
  const std::size_t length = lead < 0xC2   ? 1
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF5 ? 4
                                           : 1;
  if (pos + length > s.size()) return 1;
  for (std::size_t i = 1; i < length; ++i)
    if ((static_cast<unsigned char>(s[pos + i]) & 0xC0) != 0x80) return 1;
  return length;
}

// A combining diacritical mark (U+0300..U+036F) at `pos`: it belongs to the letter before.
inline bool IsCombiningMark(std::string_view s, std::size_t pos) {
  if (pos + 1 >= s.size()) return false;
  const auto a = static_cast<unsigned char>(s[pos]), b = static_cast<unsigned char>(s[pos + 1]);
  return (a == 0xCC && b >= 0x80) || (a == 0xCD && b < 0xB0);
}

} // namespace vntts
