// SPDX-License-Identifier: MIT
#pragma once
// The character-set table in its stored layout: 19 records of 346 bytes, no header. Each
// record lists the same 148 Vietnamese letters in a fixed order (see LetterIndex) and says,
// per letter, which byte the encoding uses and whether the letter takes one or two bytes.
#include <array>
#include <cstddef>
#include <cstdint>

namespace vntts {

inline constexpr int kEncodingCount = 19;
inline constexpr int kLetterCount = 148;
inline constexpr int kLowerCaseCount = 74; // upper-case letter = lower-case letter + 74

// Encoding indices the conversion paths use by number.
inline constexpr int kEncodingInternal = 3;   // "VNI-Windows ANSI", the engine's own text
inline constexpr int kEncodingPivot = 7;      // "VS1", one byte per letter
inline constexpr int kEncodingWindows95 = 17; // "Windows 95VN", code page 1258 decomposed

struct CharsetRecord {
  char name[50];
  // One byte per letter: the letter itself when it takes one byte; the mark byte that
  // follows the group's base when it takes two.
  std::uint8_t code[kLetterCount];
  std::uint8_t length[kLetterCount]; // 1 or 2
};
static_assert(sizeof(CharsetRecord) == 346);

using CharsetTable = std::array<CharsetRecord, kEncodingCount>;

// Letter order inside each half: twelve groups of six (a â ă e ê o ô ơ i u ư y; the base
// letter, then sắc, huyền, hỏi, ngã, nặng), then d and đ.
inline constexpr int kLettersPerGroup = 6;
inline constexpr int kIndexD = 72;
inline constexpr int kIndexDStroke = 73;

// The base letter of x's group. The boundary at 75 rather than 74 is kept: index 74 (A)
// then yields 72, which is harmless because base letters never take two bytes.
constexpr int GroupBase(int x) {
  return x < 75 ? x / 6 * 6 : (x - 74) / 6 * 6 + 74;
}

} // namespace vntts
