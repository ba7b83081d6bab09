// SPDX-License-Identifier: MIT
#include "text/charset/mapped_text.h"

#include <algorithm>

#include "text/charset/charset_record.h"
#include "text/charset/charsets.h"
#include "text/charset/unicode_codecs.h"
#include "text/charset/utf16_to_legacy.h"

namespace vntts {
namespace {

bool IsCombiningMark(char16_t u) {
  return u >= 0x0300 && u <= 0x036F;
}

bool IsHighSurrogate(char16_t u) {
  return u >= 0xD800 && u <= 0xDBFF;
}

// One character as the converter sees it: a unit (or a surrogate pair) and the combining marks
// after it, which fold into the letter or vanish.
std::size_t CharacterEnd(std::u16string_view text, std::size_t at) {
  std::size_t end = at + 1;
  if (IsHighSurrogate(text[at]) && end < text.size() && text[end] >= 0xDC00 && text[end] <= 0xDFFF)
    ++end;
  while (end < text.size() && IsCombiningMark(text[end]))
    ++end;
  return end;
}

} // namespace

MappedText::MappedText(std::u16string_view text) : units_(static_cast<std::uint32_t>(text.size())) {
  std::string utf8;
  EncodeUtf8(text, utf8);
  internal_ = Utf8ToInternal(utf8);
  source_.reserve(internal_.size());

  // Plain ASCII keeps one byte per unit; anything else is measured by converting it alone.
  Utf16ToLegacy converter(kEncodingInternal);
  std::string piece;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = CharacterEnd(text, at);
    std::size_t bytes = 1;
    if (text[at] >= 0x80 || end - at > 1) {
      piece.clear();
      converter.Append(text.substr(at, end - at), piece);
      bytes = piece.size();
    }
    source_.insert(source_.end(), bytes,
                   {static_cast<std::uint32_t>(at), static_cast<std::uint32_t>(end)});
    at = end;
  }
  // Should the whole-text conversion ever differ in length, every byte past the measured ones
  // belongs to the end of the text.
  source_.resize(internal_.size(), {units_, units_});
}

UnitRange MappedText::UnitsOf(std::size_t start, std::size_t length) const {
  if (start >= source_.size()) return {units_, units_};
  const std::size_t last = std::min(source_.size(), start + std::max<std::size_t>(length, 1)) - 1;
  UnitRange range{source_[start].begin, source_[last].end};
  if (length == 0) range.end = range.begin;
  return range;
}

} // namespace vntts
