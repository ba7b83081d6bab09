// SPDX-License-Identifier: MIT
#include "synthesis/spelled_text.h"

#include "synthesis/utf8_characters.h"

namespace vntts {
namespace {

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
