// SPDX-License-Identifier: MIT
#include <array>

#include "text/charset/charset_record.h"
#include "text/charset/charsets.h"
#include "text/charset/unicode_codecs.h"
#include "text/charset/unicode_letters.h"
#include "text/charset/working_record.h"

namespace vntts {

namespace {

// Every value that follows the byte-order mark in the decomposition list, as a bitmap over
// the few code points concerned.
class DecomposedValues {
public:
  constexpr DecomposedValues() {
    for (std::size_t i = 1; i < kDecompositionList.size(); ++i)
      Set(kDecompositionList[i]);
  }
  constexpr bool Contains(char16_t u) const {
    return u < kLimit && (bits_[u / 64] >> (u % 64) & 1u) != 0;
  }

private:
  static constexpr char16_t kLimit = 0x0340;
  constexpr void Set(char16_t u) { bits_[u / 64] |= std::uint64_t{1} << (u % 64); }
  std::array<std::uint64_t, kLimit / 64> bits_{};
};
constexpr DecomposedValues kDecomposedValues;

template <typename Sink> void WriteCp1258(std::u16string_view text, Sink&& put) {
  const std::size_t n = text.size();
  for (std::size_t i = 0; i < n; ++i) {
    const char16_t u = text[i];
    if (u < 0x80) {
      put(static_cast<std::uint8_t>(u));
      continue;
    }
    const int k = PrecomposedRank(u);
    if (k != kNotALetter && k < kToneFreeLetters) {
      put(BaseLetterByte(u));
      if (i + 1 < n) {
        if (const std::uint8_t mark = ToneMarkByte(text[i + 1]); mark != 0) {
          put(mark);
          ++i;
        }
      }
    } else if (k != kNotALetter) {
      put(BaseLetterByte(DecomposedBase(k)));
      put(ToneMarkByte(DecomposedMark(k)));
    } else if (const std::uint8_t mark = ToneMarkByte(u); mark != 0) {
      put(mark);
    } else {
      put(static_cast<std::uint8_t>(u & 0xFF));
    }
  }
}

} // namespace

std::size_t Utf16ToCp1258(std::u16string_view text, std::string* bytes) {
  std::size_t count = 0;
  if (bytes == nullptr) {
    WriteCp1258(text, [&](std::uint8_t) { ++count; });
    return count;
  }
  // At most two bytes per code unit: size once, write, trim.
  bytes->resize(2 * text.size());
  char* next = bytes->data();
  WriteCp1258(text, [&](std::uint8_t b) { *next++ = static_cast<char>(b); });
  bytes->resize(static_cast<std::size_t>(next - bytes->data()));
  return bytes->size();
}

std::size_t ComposeUtf16(std::u16string_view text, std::u16string& composed) {
  composed.clear();
  composed.reserve(text.size());
  const std::size_t n = text.size();
  std::size_t i = 0;
  while (i < n) {
    if (i + 1 < n && ToneMarkByte(text[i + 1]) != 0) {
      int match = kNotALetter;
      for (int k = kToneFreeLetters; k < kPrecomposedLetters; ++k) {
        if (DecomposedBase(k) == text[i] && DecomposedMark(k) == text[i + 1]) {
          match = k;
          break;
        }
      }
      if (match != kNotALetter) {
        composed.push_back(kPrecomposedList[static_cast<std::size_t>(match + 1)]);
        i += 2;
        continue;
      }
    }
    // The 14 tone-free letters are the same code points in both lists.
    composed.push_back(text[i]);
    ++i;
  }
  return composed.size();
}

bool ContainsVietnamese(std::u16string_view utf16) {
  for (const char16_t u : utf16)
    if (PrecomposedRank(u) != kNotALetter || kDecomposedValues.Contains(u)) return true;
  return false;
}

std::size_t MultiByteToUtf16(unsigned code_page, std::string_view text, std::u16string& utf16) {
  utf16.clear();
  if (code_page == kCodePageUtf8) {
    utf16.reserve(text.size());
    DecodeUtf8(text, utf16);
  } else if (code_page == kCodePageWindows1258) {
    DecodeCp1258(text, utf16);
  }
  return utf16.size();
}

std::size_t LegacyToUtf16(int from_index, std::string_view text, std::u16string* utf16) {
  std::string windows95;
  if (!ConvertCharset(text, windows95, from_index, kEncodingWindows95)) return 0;
  std::u16string decomposed;
  MultiByteToUtf16(kCodePageWindows1258, windows95, decomposed);
  std::u16string composed;
  const std::size_t count = ComposeUtf16(decomposed, composed);
  if (utf16 != nullptr) *utf16 = std::move(composed);
  return count;
}

} // namespace vntts
