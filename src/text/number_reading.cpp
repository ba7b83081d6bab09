// SPDX-License-Identifier: MIT
#include "text/number_reading.h"

#include <array>
#include <cstdint>
#include <vector>

#include "text/char_classes.h"
#include "text/vocabulary.h"

namespace vntts {

namespace {

std::string_view DigitWord(int d) {
  return words::kDigitWords[static_cast<std::size_t>(d)];
}

void AppendTensAndUnits(std::string& out, int t, int u, bool group_has_words) {
  if (t >= 2) {
    out += DigitWord(t);
    out += words::kTens;
    if (u == 5)
      out += words::kFiveAfterTens;
    else if (u == 1)
      out += words::kOneAfterTens;
    else if (u != 0)
      out += DigitWord(u);
  } else if (t == 1) {
    out += words::kTen;
    if (u == 5)
      out += words::kFiveAfterTens;
    else if (u != 0)
      out += DigitWord(u);
  } else if (u != 0) {
    if (group_has_words) out += words::kOddUnit;
    out += DigitWord(u);
  }
}

std::string OnlyDigits(std::string_view s) {
  std::string d;
  d.reserve(s.size());
  for (char c : s)
    if (IsDigit(c)) d += c;
  return d;
}

bool AllZeros(std::string_view digits) {
  for (char c : digits)
    if (c != '0') return false;
  return !digits.empty();
}

} // namespace

std::string ReadGroup(std::string_view input) {
  const std::string digits = OnlyDigits(input);
  std::string out;
  if (digits.size() >= 3 && digits[0] == '0')
    out = digits[1] == '0' ? words::kZeroHundredOdd : words::kZeroHundred;
  // Only nine digits make sense here; a longer string keeps its last nine.
  std::uint32_t n = 0;
  const std::size_t from = digits.size() > 9 ? digits.size() - 9 : 0;
  for (std::size_t i = from; i < digits.size(); ++i)
    n = n * 10 + static_cast<std::uint32_t>(digits[i] - '0');
  if (n == 0) return {};
  constexpr std::array<std::uint32_t, 3> kDivisors = {1'000'000, 1'000, 1};
  constexpr std::array<std::string_view, 3> kNames = {words::kMillion, words::kThousand, ""};
  bool earlier_group = false;
  for (std::size_t k = 0; k < kDivisors.size(); ++k) {
    const std::uint32_t g = n / kDivisors[k];
    if (g == 0) continue;
    const int h = static_cast<int>(g / 100);
    const int t = static_cast<int>(g / 10 % 10);
    const int u = static_cast<int>(g % 10);
    bool group_has_words = false;
    if (earlier_group || h != 0) {
      out += DigitWord(h);
      out += words::kHundred;
      group_has_words = true;
    }
    AppendTensAndUnits(out, t, u, group_has_words);
    out += kNames[k];
    earlier_group = true;
    n %= kDivisors[k];
  }
  out += ' ';
  return out;
}

std::string ReadInteger(std::string_view input) {
  const std::string all = OnlyDigits(input);
  std::string_view digits = all;
  while (!digits.empty() && digits.front() == '0')
    digits.remove_prefix(1);
  if (digits.empty()) return {};
  if (digits.size() < 4) return ReadGroup(digits);
  // Group names cycle "", nghìn, triệu, tỉ, then nghìn again: a zero group drops its name,
  // so 10^12 reads "một nghìn". That is how this reading has always counted.
  constexpr std::array<std::string_view, 4> kNames = {"", words::kThousand, words::kMillion,
                                                      words::kBillion};
  std::vector<std::string> groups; // right to left
  std::size_t name = 0;
  while (!digits.empty()) {
    const std::size_t take = digits.size() >= 4 ? 3 : digits.size();
    const std::string_view group = digits.substr(digits.size() - take);
    digits.remove_suffix(take);
    if (!AllZeros(group)) {
      std::string words = ReadGroup(group);
      words += kNames[name];
      groups.push_back(std::move(words));
    }
    name = name == 3 ? 1 : name + 1;
  }
  std::string out;
  for (auto it = groups.rbegin(); it != groups.rend(); ++it)
    out += *it;
  return out;
}

std::string ReadDigits(std::string_view digits) {
  std::string out;
  for (char c : digits)
    if (IsDigit(c)) {
      out += DigitWord(c - '0');
      out += ' ';
    }
  return out;
}

std::string ReadNumber(std::string_view input) {
  std::string token;
  token.reserve(input.size());
  for (char c : input)
    if (!IsBlank(c)) token += c;
  if (token == "0") return std::string(words::kZeroWhole);

  std::string out;
  const bool leading_zero_word =
      token.size() >= 2 && token[0] == '0' && (token[1] == ',' || token[1] == '.');
  if (leading_zero_word) out += words::kZeroWhole;

  // A '.' with one or two digits after it is a decimal point; every other '.' separates
  // thousands.
  const std::size_t n = token.size();
  for (std::size_t at : {n >= 3 ? n - 3 : std::string::npos, n >= 2 ? n - 2 : std::string::npos}) {
    if (at == std::string::npos || token[at] != '.') continue;
    std::string_view whole = std::string_view(token).substr(0, at);
    std::string whole_words = ReadInteger(whole);
    if (whole_words.empty() && !leading_zero_word) whole_words = words::kDigitWords[0];
    out += whole_words;
    out += words::kDecimalPoint;
    out += ReadDigits(std::string_view(token).substr(at + 1));
    return out;
  }
  std::string rest;
  rest.reserve(n);
  for (char c : token)
    if (c != '.') rest += c;
  while (!rest.empty() && rest.back() == ',')
    rest.pop_back();
  if (!token.empty() && token.back() == '.' && !rest.empty() && rest.back() == ',') rest.pop_back();

  // Runs of digits joined by ',' (decimal comma) or '/' (trên).
  std::size_t i = 0;
  bool first = true;
  auto read_run = [&](std::string_view run) {
    std::string w = ReadInteger(run);
    if (w.empty() && !(first && leading_zero_word) && AllZeros(run)) w = words::kDigitWords[0];
    first = false;
    return w;
  };
  while (i < rest.size()) {
    std::size_t j = i;
    while (j < rest.size() && rest[j] != ',' && rest[j] != '/')
      ++j;
    const std::string_view run = std::string_view(rest).substr(i, j - i);
    if (j == rest.size()) {
      out += read_run(run);
      break;
    }
    out += read_run(run);
    if (rest[j] == '/') {
      out += ' ';
      out += words::kOver;
      out += ' ';
      i = j + 1;
      continue;
    }
    // Decimal comma: the fraction is the run of digits after it.
    out += ' ';
    out += words::kDecimalComma;
    std::size_t k = j + 1;
    while (k < rest.size() && IsDigit(rest[k]))
      ++k;
    const std::string_view fraction = std::string_view(rest).substr(j + 1, k - j - 1);
    if (!fraction.empty() && fraction[0] != '0' && fraction.size() < 4)
      out += ReadGroup(fraction);
    else
      out += ReadDigits(fraction);
    first = false;
    if (k < rest.size() && rest[k] == ',') ++k; // a second comma has no reading of its own
    i = k;
    if (i < rest.size() && rest[i] == '/') {
      out += ' ';
      out += words::kOver;
      out += ' ';
      ++i;
    }
  }
  return out;
}

} // namespace vntts
