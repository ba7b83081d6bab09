#include "text/roman_numerals.h"

#include <array>
#include <string>

#include "text/char_classes.h"

namespace vntts {

namespace {

int DigitValue(char c) {
  switch (c) {
  case 'I':
    return 1;
  case 'V':
    return 5;
  case 'X':
    return 10;
  case 'L':
    return 50;
  default:
    return 0;
  }
}

// The usual way of writing n (1..89).
std::string Canonical(int n) {
  static constexpr std::array<std::string_view, 9> kTens = {"",  "X",  "XX",  "XXX", "XL",
                                                            "L", "LX", "LXX", "LXXX"};
  static constexpr std::array<std::string_view, 10> kUnits = {"",  "I",  "II",  "III",  "IV",
                                                              "V", "VI", "VII", "VIII", "IX"};
  std::string out(kTens[static_cast<std::size_t>(n / 10)]);
  out += kUnits[static_cast<std::size_t>(n % 10)];
  return out;
}

} // namespace

bool HasRomanNumeralLetters(std::string_view token) {
  if (token.empty()) return false;
  for (char c : token)
    if (DigitValue(c) == 0) return false;
  return true;
}

std::optional<int> RomanNumeralValue(std::string_view token) {
  if (!HasRomanNumeralLetters(token) || token.size() > 8) return std::nullopt;
  int value = 0;
  for (std::size_t i = 0; i < token.size(); ++i) {
    const int digit = DigitValue(token[i]);
    const int next = i + 1 < token.size() ? DigitValue(token[i + 1]) : 0;
    value += digit < next ? -digit : digit;
  }
  if (value < 1 || value > 89 || Canonical(value) != token) return std::nullopt;
  return value;
}

bool TakesRomanNumeral(std::string_view previousWord) {
  // Internal text, lower case.
  static constexpr std::string_view kWords[] = {
      "ky\xFB",       // kỷ
      "k\xE6",        // kỉ
      "ch\xF6\xF4ng", // chương
      "pha\xE0n",     // phần
      "kho\xF9"
      "a",          // khóa
      "khoa\xF9",   // khoá
      "ho\xE4i",    // hội
      "th\xF6\xF9", // thứ
      "quye\xE5n",  // quyển
      "ta\xE4p",    // tập
      "mu\xEF"
      "c",           // mục
      "quy\xF9",     // quý
      "qu\xED",      // quí
      "ca\xE1p",     // cấp
      "loa\xEFi",    // loại
      "ha\xEFng",    // hạng
      "\xF1oa\xEFn", // đoạn
      "ky\xF8",      // kỳ
      "k\xEC",       // kì
      "chie\xE1n",   // chiến
      "\xF1o\xE4",   // độ
      "vu\xF8ng",    // vùng
      "nho\xF9m",    // nhóm
      "ba\xEB" "c", // bậc
  };
  if (previousWord.size() > 8) return false;
  const std::string lower = LowerInternal(previousWord);
  for (std::string_view word : kWords)
    if (lower == word) return true;
  return false;
}

} // namespace vntts
