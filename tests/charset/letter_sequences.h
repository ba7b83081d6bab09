#pragma once
// How each record writes each of the 148 letters, derived from the table alone so that the
// converters can be checked against it.
#include <string>

#include "text/charset/charset_record.h"
#include "text/charset/working_record.h"

namespace vntts::testing {

// The bytes a font of this encoding expects for `letter`: one byte, or the group's base (its
// plain vowel where the base itself takes two bytes, as in â = a + E2) followed by the mark.
inline std::string SequenceOf(const WorkingRecord& record, int letter) {
  if (record.length(letter) == 1) return std::string(1, static_cast<char>(record.code(letter)));
  const int base = GroupBase(letter);
  const char first = base == letter || record.length(base) == 2
                         ? static_cast<char>(PlainVowelOfGroup(letter))
                         : static_cast<char>(record.code(base));
  return std::string{first, static_cast<char>(record.code(letter))};
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
