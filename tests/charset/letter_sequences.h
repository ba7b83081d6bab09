// SPDX-License-Identifier: MIT
#pragma once
// How each record writes each of the 148 letters, derived from the table alone so that the
// converters can be checked against it.
#include <string>
#include <string_view>

#include "text/charset/charset_record.h"
#include "text/charset/working_record.h"

namespace vntts::testing {

// The bytes a font of this encoding expects for `letter`: one byte, or the group's base (its
// plain vowel where the base itself takes two bytes, as in â = a + E2) followed by the mark.
inline std::string SequenceOf(const WorkingRecord& record, int letter) {
  if (record.Length(letter) == 1) return std::string(1, static_cast<char>(record.Code(letter)));
  const int base = GroupBase(letter);
  const char first = base == letter || record.Length(base) == 2
                         ? static_cast<char>(PlainVowelOfGroup(letter))
                         : static_cast<char>(record.Code(base));
  return std::string{first, static_cast<char>(record.Code(letter))};
}

// The 148 letters in table order, each one precomposed code point.
inline constexpr std::string_view kLowerLetters =
    "aáàảãạâấầẩẫậăắằẳẵặeéèẻẽẹêếềểễệoóòỏõọôốồổỗộơớờởỡợiíìỉĩịuúùủũụưứừửữựyýỳỷỹỵdđ";
inline constexpr std::string_view kUpperLetters =
    "AÁÀẢÃẠÂẤẦẨẪẬĂẮẰẲẴẶEÉÈẺẼẸÊẾỀỂỄỆOÓÒỎÕỌÔỐỒỔỖỘƠỚỜỞỠỢIÍÌỈĨỊUÚÙỦŨỤƯỨỪỬỮỰYÝỲỶỸỴDĐ";

// UTF-8 of letter x.
inline std::string LetterUtf8(int x) {
  std::string_view s = x < kLowerCaseCount ? kLowerLetters : kUpperLetters;
  int skip = x % kLowerCaseCount;
  std::size_t i = 0;
  const auto next = [&] {
    std::size_t k = i + 1;
    while (k < s.size() && (static_cast<unsigned char>(s[k]) & 0xC0) == 0x80)
      ++k;
    return k;
  };
  while (skip-- > 0)
    i = next();
  return std::string(s.substr(i, next() - i));
}

inline std::string Bytes(std::initializer_list<unsigned> values) {
  std::string s;
  for (unsigned v : values)
    s.push_back(static_cast<char>(v));
  return s;
}

inline std::string Hex(const std::string& s) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string out;
  for (unsigned char c : s) {
    if (!out.empty()) out.push_back(' ');
    out.push_back(kDigits[c >> 4]);
    out.push_back(kDigits[c & 15]);
  }
  return out;
}

} // namespace vntts::testing
