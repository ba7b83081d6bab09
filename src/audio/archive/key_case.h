// SPDX-License-Identifier: MIT
#pragma once
// Archive keys are internal-encoding bytes lower-cased the Latin-1 way: A-Z and C0..DE
// (except D7, the multiplication sign) move up by 0x20. The same rule serves the recording
// names that the archive writer lists, so that writer and reader agree on every key.
#include <string>
#include <string_view>

namespace vntts {

constexpr unsigned char LowerKeyByte(unsigned char c) {
  if ((c >= 'A' && c <= 'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7))
    return static_cast<unsigned char>(c + 0x20);
  return c;
}

inline void LowerKeyInPlace(std::string& s) {
  for (auto& ch : s)
    ch = static_cast<char>(LowerKeyByte(static_cast<unsigned char>(ch)));
}

inline std::string LowerKey(std::string_view s) {
  std::string out(s);
  LowerKeyInPlace(out);
  return out;
}

} // namespace vntts
