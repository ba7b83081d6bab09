// SPDX-License-Identifier: MIT
#include "audio/archive/utf8_names.h"

#include "text/charset/charsets.h"

namespace vntts {

bool IsValidUtf8(std::string_view s) {
  std::size_t i = 0;
  while (i < s.size()) {
    const auto c = static_cast<unsigned char>(s[i]);
    std::size_t extra = 0;
    char32_t cp = 0;
    char32_t min = 0;
    if (c < 0x80) {
      ++i;
      continue;
    } else if ((c & 0xE0) == 0xC0) {
      extra = 1, cp = c & 0x1F, min = 0x80;
    } else if ((c & 0xF0) == 0xE0) {
      extra = 2, cp = c & 0x0F, min = 0x800;
    } else if ((c & 0xF8) == 0xF0) {
      extra = 3, cp = c & 0x07, min = 0x10000;
    } else {
      return false;
    }
    if (i + extra >= s.size()) return false;
    for (std::size_t k = 1; k <= extra; ++k) {
      const auto cc = static_cast<unsigned char>(s[i + k]);
      if ((cc & 0xC0) != 0x80) return false;
      cp = (cp << 6) | (cc & 0x3F);
    }
    if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return false;
    i += extra + 1;
  }
  return true;
}

std::string Utf8NameToInternal(std::string_view utf8) {
  return Utf8ToInternal(utf8);
}

} // namespace vntts
