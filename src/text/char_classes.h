// SPDX-License-Identifier: MIT
#pragma once
// Character classes on bytes of internal text (VNI-Windows ANSI). A Vietnamese letter there is
// an ASCII letter, a single high byte (ơ, ư, đ, the i-forms), or a base letter followed by a
// mark byte; the tokenizer treats the high bytes of both kinds as letters.
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace vntts {

namespace detail {
inline constexpr unsigned char kHighLetters[] = {
    0xC0, 0xC1, 0xC2, 0xC3, 0xC4, 0xC5, 0xC6, 0xC8, 0xC9, 0xCA, 0xCB, 0xCC, 0xCD,
    0xCE, 0xCF, 0xD1, 0xD2, 0xD3, 0xD4, 0xD5, 0xD6, 0xD8, 0xD9, 0xDA, 0xDB, 0xDC,
    0xE0, 0xE1, 0xE2, 0xE3, 0xE4, 0xE5, 0xE6, 0xE8, 0xE9, 0xEA, 0xEB, 0xEC, 0xED,
    0xEE, 0xEF, 0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xF8, 0xF9, 0xFA, 0xFB, 0xFC};

enum : std::uint8_t { kDigit = 1, kLetter = 2, kSymbol = 4, kCurrency = 8, kBlank = 16 };

constexpr std::array<std::uint8_t, 256> MakeClassTable() {
  std::array<std::uint8_t, 256> t{};
  for (int c = '0'; c <= '9'; ++c)
    t[c] |= kDigit;
  for (int c = 'A'; c <= 'Z'; ++c)
    t[c] |= kLetter;
  for (int c = 'a'; c <= 'z'; ++c)
    t[c] |= kLetter;
  for (unsigned char c : kHighLetters)
    t[c] |= kLetter;
  for (char c : std::string_view("+-*:/(),.{}><=[]_&%@"))
    t[static_cast<unsigned char>(c)] |= kSymbol;
  t['$'] |= kCurrency;
  t[0x80] |= kCurrency; // euro sign
  t[0xA3] |= kCurrency; // pound sign
  t[0xA5] |= kCurrency; // yen sign
  t[' '] |= kBlank;
  t['\t'] |= kBlank;
  return t;
}
inline constexpr std::array<std::uint8_t, 256> kClassTable = MakeClassTable();
} // namespace detail

constexpr bool IsDigit(char c) {
  return detail::kClassTable[static_cast<unsigned char>(c)] & detail::kDigit;
}
inline bool AllDigits(std::string_view s) {
  if (s.empty()) return false;
  for (char c : s)
    if (!IsDigit(c)) return false;
  return true;
}
// One closing punctuation mark may follow a date, a time or a number ("2/9/1945.").
inline std::string_view WithoutClosingMark(std::string_view t) {
  if (t.size() > 1 && std::string_view(".,!?").find(t.back()) != std::string_view::npos)
    t.remove_suffix(1);
  return t;
}
constexpr bool IsLetter(char c) {
  return detail::kClassTable[static_cast<unsigned char>(c)] & detail::kLetter;
}
constexpr bool IsWordChar(char c) {
  return detail::kClassTable[static_cast<unsigned char>(c)] & (detail::kDigit | detail::kLetter);
}
constexpr bool IsSymbol(char c) {
  return detail::kClassTable[static_cast<unsigned char>(c)] & detail::kSymbol;
}
constexpr bool IsCurrencySign(char c) {
  return detail::kClassTable[static_cast<unsigned char>(c)] & detail::kCurrency;
}
// Blanks separate tokens: space and TAB (line ends are punctuation with a pause).
constexpr bool IsBlank(char c) {
  return detail::kClassTable[static_cast<unsigned char>(c)] & detail::kBlank;
}

// Byte-wise lower case as archive keys use it: A-Z and C0..DE except D7 move up by 0x20.
constexpr char ToLowerInternal(char c) {
  const auto b = static_cast<unsigned char>(c);
  if ((b >= 'A' && b <= 'Z') || (b >= 0xC0 && b <= 0xDE && b != 0xD7))
    return static_cast<char>(b + 0x20);
  return c;
}
inline std::string LowerInternal(std::string_view s) {
  std::string out(s);
  for (char& c : out)
    c = ToLowerInternal(c);
  return out;
}
// Case-insensitive equality in the same byte-wise sense.
constexpr bool EqualsIgnoreCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (ToLowerInternal(a[i]) != ToLowerInternal(b[i])) return false;
  return true;
}

} // namespace vntts
