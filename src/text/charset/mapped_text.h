// SPDX-License-Identifier: MIT
#pragma once
// Internal text made from UTF-16 text together with where each of its bytes came from. A window
// that speaks its own Unicode text gets the engine's event offsets in internal bytes, where a
// Vietnamese letter may take two bytes ("ế" is "e" and a tone byte); this map turns them back
// into the window's characters.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vntts {

struct UnitRange {
  std::uint32_t begin = 0; // first UTF-16 unit
  std::uint32_t end = 0;   // one past the last
  bool operator==(const UnitRange&) const = default;
};

class MappedText {
public:
  // The same bytes as Utf8ToInternal of the text's UTF-8 form.
  explicit MappedText(std::u16string_view text);

  const std::string& internal() const { return internal_; }
  // The units that the bytes [start, start + length) were made from, widened to whole
  // characters (a letter and its marks, a surrogate pair). Offsets past the end are clamped.
  UnitRange UnitsOf(std::size_t start, std::size_t length) const;

private:
  std::string internal_;
  std::vector<UnitRange> source_; // one per byte of internal_
  std::uint32_t units_ = 0;
};

} // namespace vntts
