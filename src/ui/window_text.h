// SPDX-License-Identifier: MIT
#pragma once
// A window's Unicode text as the engine speaks it. The engine reports word and sentence
// positions as byte ranges of its internal text, where a Vietnamese letter may take two bytes
// ("ế" is "e" and a tone byte); this maps them back to the window's UTF-16 characters, so that
// the word highlighted is the word being spoken.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "synthesis/utf8_text_map.h"
#include "ui/dialog_view.h"

namespace vntts::ui {

class WindowText {
public:
  explicit WindowText(std::u16string_view text);

  // What the engine is given to speak: the same bytes as the UTF-8 speak path makes.
  const std::string& internal() const { return map_.internal(); }
  // The UTF-16 units that internal bytes [start, start + length) came from, widened to whole
  // characters; offsets past the end are taken as the end.
  TextSelection UnitsOf(std::uint32_t start, std::uint32_t length) const;

private:
  static std::string Utf8(std::u16string_view text);

  Utf8TextMap map_;
  std::vector<std::uint32_t> units_before_; // by UTF-8 offset: the UTF-16 units before it
};

} // namespace vntts::ui
