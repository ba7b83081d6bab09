// SPDX-License-Identifier: MIT
#pragma once
// Lookups over the precomposed and decomposed letter lists.
#include <array>
#include <cstdint>

#include "text/charset/unicode_letter_data.h"

namespace vntts {

inline constexpr int kToneFreeLetters = 14;     // Â â Ă ă Ê ê Ô ô Ư ư Ơ ơ Đ đ
inline constexpr int kPrecomposedLetters = 134; // without the byte-order mark
inline constexpr int kNotALetter = -1;

namespace detail {
// Ranks of the letters below U+1EA0, which lie between U+00C0 and U+01B0.
inline constexpr char16_t kLowRankFirst = 0x00C0;
inline constexpr char16_t kLowRankLast = 0x01B0;
constexpr std::array<std::int16_t, kLowRankLast - kLowRankFirst + 1> MakeLowRanks() {
  std::array<std::int16_t, kLowRankLast - kLowRankFirst + 1> ranks{};
  for (auto& r : ranks)
    r = -1;
  for (int k = 0; k < 134; ++k) {
    const char16_t u = kPrecomposedList[static_cast<std::size_t>(k + 1)];
    if (u >= kLowRankFirst && u <= kLowRankLast)
      ranks[u - kLowRankFirst] = static_cast<std::int16_t>(k);
  }
  return ranks;
}
inline constexpr auto kLowRanks = MakeLowRanks();
} // namespace detail

// Rank (0..133) of `u` in the precomposed list, or kNotALetter.
constexpr int PrecomposedRank(char16_t u) {
  if (u >= 0x1EA0 && u <= 0x1EF9) return kToneFreeLetters + (u - 0x1EA0);
  if (u < detail::kLowRankFirst || u > detail::kLowRankLast) return kNotALetter;
  return detail::kLowRanks[u - detail::kLowRankFirst];
}

// Base and tone mark of the toned letter of rank k (k >= 14).
constexpr char16_t DecomposedBase(int k) {
  return kDecompositionList[static_cast<std::size_t>(1 + kToneFreeLetters +
                                                     2 * (k - kToneFreeLetters))];
}
constexpr char16_t DecomposedMark(int k) {
  return kDecompositionList[static_cast<std::size_t>(2 + kToneFreeLetters +
                                                     2 * (k - kToneFreeLetters))];
}

// Code page 1258 byte of one of the five combining tone marks, or 0.
constexpr std::uint8_t ToneMarkByte(char16_t u) {
  switch (u) {
  case 0x0300:
    return 0xCC; // huyền
  case 0x0301:
    return 0xEC; // sắc
  case 0x0303:
    return 0xDE; // ngã
  case 0x0309:
    return 0xD2; // hỏi
  case 0x0323:
    return 0xF2; // nặng
  default:
    return 0;
  }
}

// Code page 1258 byte of a base letter: its own value in Latin-1, a byte of its own for the
// letters code page 1258 adds.
constexpr std::uint8_t BaseLetterByte(char16_t u) {
  switch (u) {
  case 0x0102:
    return 0xC3; // Ă
  case 0x0103:
    return 0xE3; // ă
  case 0x01A0:
    return 0xD5; // Ơ
  case 0x01A1:
    return 0xF5; // ơ
  case 0x01AF:
    return 0xDD; // Ư
  case 0x01B0:
    return 0xFD; // ư
  case 0x0110:
    return 0xD0; // Đ
  case 0x0111:
    return 0xF0; // đ
  default:
    return static_cast<std::uint8_t>(u & 0xFF);
  }
}

} // namespace vntts
