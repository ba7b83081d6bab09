// SPDX-License-Identifier: MIT
#include "text/roman_numerals.h"

#include <array>
#include <string>

#include "text/char_classes.h"
#include "text/word_table.h"

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

bool TakesRomanNumeral(std::string_view previous_word) {
  // Written in UTF-8 and converted once: a hand-written internal-text byte is easy to get
  // wrong, and nothing but a reading of that one word would show it.
  static const WordTable kWords(
      {{"kỷ", ""},  {"kỉ", ""},    {"chương", ""}, {"phần", ""}, {"khóa", ""}, {"khoá", ""},
       {"hội", ""}, {"thứ", ""},   {"quyển", ""},  {"tập", ""},  {"mục", ""},  {"quý", ""},
       {"quí", ""}, {"cấp", ""},   {"loại", ""},   {"hạng", ""}, {"đoạn", ""}, {"kỳ", ""},
       {"kì", ""},  {"chiến", ""}, {"độ", ""},     {"vùng", ""}, {"nhóm", ""}, {"bậc", ""}},
      true);
  return kWords.Contains(previous_word);
}

} // namespace vntts
