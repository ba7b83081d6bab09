// SPDX-License-Identifier: MIT
#include "ui/window_text.h"

#include <algorithm>

#include "text/charset/unicode_codecs.h"

namespace vntts::ui {
namespace {

bool IsHighSurrogate(char16_t u) {
  return u >= 0xD800 && u <= 0xDBFF;
}
bool IsLowSurrogate(char16_t u) {
  return u >= 0xDC00 && u <= 0xDFFF;
}

// Bytes of the UTF-8 form of the character at text[at] (a lone surrogate becomes U+FFFD),
// and how many units it takes.
std::pair<std::uint32_t, std::uint32_t> Sizes(std::u16string_view text, std::size_t at) {
  const char16_t u = text[at];
  if (IsHighSurrogate(u) && at + 1 < text.size() && IsLowSurrogate(text[at + 1])) return {4, 2};
  return {u < 0x80 ? 1u : u < 0x800 ? 2u : 3u, 1};
}

} // namespace

std::string WindowText::Utf8(std::u16string_view text) {
  std::string utf8;
  EncodeUtf8(text, utf8);
  return utf8;
}

WindowText::WindowText(std::u16string_view text) : map_(Utf8(text)) {
  for (std::size_t at = 0; at < text.size();) {
    const auto [bytes, units] = Sizes(text, at);
    units_before_.insert(units_before_.end(), bytes, static_cast<std::uint32_t>(at));
    at += units;
  }
  units_before_.push_back(static_cast<std::uint32_t>(text.size()));
}

TextSelection WindowText::UnitsOf(std::uint32_t start, std::uint32_t length) const {
  const auto [from, to] = map_.ToUtf8(start, length);
  const std::size_t last = units_before_.size() - 1;
  return {static_cast<int>(units_before_[std::min<std::size_t>(from, last)]),
          static_cast<int>(units_before_[std::min<std::size_t>(to, last)])};
}

} // namespace vntts::ui
