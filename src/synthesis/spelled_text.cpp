// SPDX-License-Identifier: MIT
#include "synthesis/spelled_text.h"

namespace vntts {
namespace {

std::size_t CharacterLength(std::string_view s, std::size_t pos) {
  std::size_t end = pos + 1;
  while (end < s.size() && (static_cast<unsigned char>(s[end]) & 0xC0) == 0x80)
    ++end;
  return end - pos;
}

// U+0300..U+036F: a mark that belongs to the character before it.
bool IsCombiningMark(std::string_view s, std::size_t pos) {
  if (pos + 1 >= s.size()) return false;
  const auto a = static_cast<unsigned char>(s[pos]), b = static_cast<unsigned char>(s[pos + 1]);
  return (a == 0xCC && b >= 0x80) || (a == 0xCD && b < 0xB0);
}

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

} // namespace

SpelledText SpellOut(std::string_view utf8) {
  SpelledText out;
  std::size_t pos = 0;
  while (pos < utf8.size()) {
    std::size_t end = pos + CharacterLength(utf8, pos);
    while (end < utf8.size() && IsCombiningMark(utf8, end))
      end += CharacterLength(utf8, end);
    if (!IsBlank(utf8[pos])) {
      out.text.append(utf8.substr(pos, end - pos));
      out.source.insert(out.source.end(), end - pos, static_cast<std::uint32_t>(pos));
      out.text += ' ';
      out.source.push_back(static_cast<std::uint32_t>(end));
    }
    pos = end;
  }
  out.source.push_back(static_cast<std::uint32_t>(utf8.size()));
  return out;
}

} // namespace vntts
