// SPDX-License-Identifier: MIT
#pragma once
// A per-call working copy of one record with its lookups prepared. The stored table is never
// changed; the "Windows 95VN" record is completed here before every use.
#include <array>
#include <cstdint>

#include "text/charset/charset_record.h"

namespace vntts {

class WorkingRecord {
public:
  static constexpr std::int16_t kNotFound = -1;

  // Null when `index` names no record.
  static const CharsetRecord* Stored(int index);

  explicit WorkingRecord(int index);

  std::uint8_t Code(int x) const { return code_[static_cast<std::size_t>(x)]; }
  std::uint8_t Length(int x) const { return length_[static_cast<std::size_t>(x)]; }

  // The letter lookup: plain ASCII vowels and d are never table letters, even where an
  // encoding uses them as group bases; otherwise the first index whose code is `b` wins.
  int FindLetter(std::uint8_t b) const { return letter_[b]; }
  // An ordinary search for the first index whose code is `b`, with no exceptions.
  int FindCode(std::uint8_t b) const { return any_[b]; }

private:
  std::array<std::uint8_t, kLetterCount> code_{};
  std::array<std::uint8_t, kLetterCount> length_{};
  std::array<std::int16_t, 256> letter_{};
  std::array<std::int16_t, 256> any_{};
};

constexpr bool IsAsciiVowel(std::uint8_t c) {
  switch (c) {
  case 'A':
  case 'E':
  case 'I':
  case 'O':
  case 'U':
  case 'Y':
  case 'a':
  case 'e':
  case 'i':
  case 'o':
  case 'u':
  case 'y':
    return true;
  default:
    return false;
  }
}

// Group bases whose letters may be followed by a separate tone byte: the modified vowels and
// o i u y d, in both cases.
constexpr bool IsToneableBase(int x) {
  switch (x) {
  case 6:
  case 12:
  case 24:
  case 30:
  case 36:
  case 42:
  case 48:
  case 54:
  case 60:
  case 66:
  case 72:
  case 80:
  case 86:
  case 98:
  case 104:
  case 110:
  case 116:
  case 122:
  case 128:
  case 134:
  case 140:
  case 146:
    return true;
  default:
    return false;
  }
}

// The plain ASCII vowel of x's group (a for a, â, ă; o for o, ô, ơ; ...), or 0 for the d group.
constexpr std::uint8_t PlainVowelOfGroup(int x) {
  constexpr char kLower[] = "aaaeeoooiuuy";
  const int lower = x % kLowerCaseCount;
  if (lower >= kIndexD) return 0;
  const auto c = static_cast<std::uint8_t>(kLower[lower / kLettersPerGroup]);
  return x >= kLowerCaseCount ? static_cast<std::uint8_t>(c - 'a' + 'A') : c;
}

} // namespace vntts
