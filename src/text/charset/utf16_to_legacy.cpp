// SPDX-License-Identifier: MIT
#include "text/charset/utf16_to_legacy.h"

#include "text/charset/charset_record.h"
#include "text/charset/charsets.h"
#include "text/charset/text_folding.h"

namespace vntts {

namespace {

char CarriedSign(char16_t unit) {
  switch (unit) {
  case 0x20AC:
    return '\x80';
  case 0x00A3:
    return '\xA3';
  case 0x00A5:
    return '\xA5';
  default:
    return 0;
  }
}

} // namespace

std::size_t Utf16ToLegacy::Append(std::u16string_view units, std::string& out) {
  if (to_index_ != kEncodingInternal) return AppendRun(units, out);
  std::size_t unrepresentable = 0;
  std::size_t start = 0;
  for (std::size_t i = 0; i < units.size(); ++i) {
    if (const char sign = CarriedSign(units[i]); sign != 0) {
      unrepresentable += AppendRun(units.substr(start, i - start), out);
      out += sign;
      start = i + 1;
    }
  }
  return unrepresentable + AppendRun(units.substr(start), out);
}

std::size_t Utf16ToLegacy::AppendRun(std::u16string_view units, std::string& out) {
  folded_.clear();
  const std::size_t unrepresentable = FoldToLegacyRepertoire(units, folded_);
  Utf16ToCp1258(folded_, &windows95_);
  ConvertCharset(windows95_, pivot_, kEncodingWindows95, kEncodingPivot);
  ExpandFromPivot(pivot_, legacy_, to_index_);
  out += legacy_;
  return unrepresentable;
}

} // namespace vntts
