// SPDX-License-Identifier: MIT
#pragma once
// Text to be read character by character: every character (with its combining marks) becomes
// a word of its own, and the engine says a lone letter by its name.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vntts {

struct SpelledText {
  std::string text;
  // For each byte of `text` (and one past the end) the offset in the original text.
  std::vector<std::uint32_t> source;
};

SpelledText SpellOut(std::string_view utf8);

} // namespace vntts
