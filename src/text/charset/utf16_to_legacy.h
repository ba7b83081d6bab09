// SPDX-License-Identifier: MIT
#pragma once
// The road from Unicode text to a legacy encoding that the UTF-8 speak path and `vntts
// convert` share: fold to what the legacy encodings can hold, write code page 1258 with
// separate tone bytes, then through the pivot to the target. The euro, pound and yen signs
// have bytes of their own in the internal text (those of code page 1258, which its letters
// leave free) but not in the pivot, whose letters fill them; for the internal target they are
// carried around the pivot so that "£5" still reads as money.
#include <cstddef>
#include <string>
#include <string_view>

namespace vntts {

class Utf16ToLegacy {
public:
  // `to_index` must name a record.
  explicit Utf16ToLegacy(int to_index) : to_index_(to_index) {}

  // Appends the converted units to `out`; returns how many characters the target cannot hold
  // (written as '?').
  std::size_t Append(std::u16string_view units, std::string& out);

private:
  std::size_t AppendRun(std::u16string_view units, std::string& out);

  int to_index_;
  std::u16string folded_;
  std::string windows95_;
  std::string pivot_;
  std::string legacy_;
};

} // namespace vntts
