// SPDX-License-Identifier: MIT
#include "text/classifier.h"

#include <algorithm>
#include <array>
#include <string>

#include "text/char_classes.h"
#include "text/token_class.h"
#include "text/units.h"
#include "text/vocabulary.h"

namespace vntts {

namespace {

std::size_t Count(std::string_view s, char c) {
  return static_cast<std::size_t>(std::count(s.begin(), s.end(), c));
}

int Value(std::string_view digits) {
  int v = 0;
  for (char c : digits) {
    v = v * 10 + (c - '0');
    if (v > 100000) break;
  }
  return v;
}

// Context word in lower case with a trailing ':' or ',' dropped.
std::string ContextForm(std::string_view word) {
  while (word.size() > 1 && (word.back() == ':' || word.back() == ','))
    word.remove_suffix(1);
  return LowerInternal(word);
}

bool IsDay(std::string_view d) {
  return AllDigits(d) && d.size() <= 2 && Value(d) >= 1 && Value(d) <= 31;
}
bool IsMonth(std::string_view m) {
  return AllDigits(m) && m.size() <= 2 && Value(m) >= 1 && Value(m) <= 12;
}
bool IsYear(std::string_view y) {
  return AllDigits(y) && (y.size() == 4 || y.size() == 2);
}
bool IsLongYear(std::string_view y) {
  return AllDigits(y) && y.size() == 4;
}

// Splits at every occurrence of one separator; at most four parts are kept apart.
std::array<std::string_view, 4> SplitParts(std::string_view t, char sep, std::size_t& count) {
  std::array<std::string_view, 4> parts{};
  count = 0;
  std::size_t start = 0;
  while (count < 4) {
    const std::size_t at = t.find(sep, start);
    parts[count++] = t.substr(start, at == std::string_view::npos ? t.npos : at - start);
    if (at == std::string_view::npos) return parts;
    start = at + 1;
  }
  count = 5; // too many
  return parts;
}

// Number with optional '.' or ',' between digits, taking the whole string.
bool IsPlainNumber(std::string_view s) {
  return !s.empty() && NumberPrefixLength(s) == s.size();
}

bool IsSimpleRangeSide(std::string_view s) {
  if (!IsPlainNumber(s)) return false;
  // A number that starts with 0 and has more digits is a code or a telephone number.
  return !(s.size() > 1 && s[0] == '0' && IsDigit(s[1]));
}

} // namespace

bool IsDateContextWord(std::string_view word) {
  static constexpr std::array<std::string_view, 14> kWords = {
      words::kMonth,     words::kTomorrow,  words::kBefore,  words::kAfter, words::kNow,
      words::kPast,      words::kLateNight, words::kDay,     words::kNight, words::kEvening,
      words::kAfternoon, words::kNoon,      words::kMorning, words::kDate};
  const std::string w = ContextForm(word);
  return std::find(kWords.begin(), kWords.end(), w) != kWords.end();
}

bool IsMeasureContextWord(std::string_view word) {
  static constexpr std::array<std::string_view, 7> kWords = {
      words::kArea,  words::kLong,  words::kDistant, words::kNet,
      words::kHeavy, words::kWeigh, words::kWeight};
  const std::string w = ContextForm(word);
  return std::find(kWords.begin(), kWords.end(), w) != kWords.end();
}

bool IsTelephoneLabel(std::string_view word) {
  static constexpr std::array<std::string_view, 6> kLabels = {"tel",       words::kPhone, "No",
                                                              "telephone", "phone",       ":"};
  return std::any_of(kLabels.begin(), kLabels.end(),
                     [&](std::string_view l) { return EqualsIgnoreCase(word, l); });
}

bool IsAllLetters(std::string_view t) {
  return std::all_of(t.begin(), t.end(), [](char c) { return IsLetter(c); });
}

bool IsNumberToken(std::string_view t) {
  if (t.empty()) return false;
  std::size_t i = 0;
  while (i < t.size()) {
    if (IsDigit(t[i]))
      ++i;
    else if ((t[i] == '.' || t[i] == ',' || t[i] == '/') && i + 1 < t.size() && IsDigit(t[i + 1]))
      i += 2;
    else
      return false;
  }
  return true;
}

bool IsDateToken(std::string_view token, std::string_view previous_word) {
  const std::string_view t = WithoutClosingMark(token);
  if (t.size() < 3 || t.size() > 10 || !IsDigit(t.front())) return false;
  char sep = 0;
  for (char c : t)
    if (!IsDigit(c)) {
      if (c != '/' && c != '-' && c != '.') return false;
      if (sep != 0 && c != sep) return false;
      sep = c;
    }
  if (sep == 0) return false;
  std::size_t n = 0;
  const auto p = SplitParts(t, sep, n);
  const bool context = IsDateContextWord(previous_word);
  if (n == 3) {
    if (IsDay(p[0]) && IsMonth(p[1]) && IsYear(p[2])) return sep != '.' || IsLongYear(p[2]);
    return sep == '-' && IsLongYear(p[0]) && IsMonth(p[1]) && IsDay(p[2]); // 2024-12-31
  }
  if (n != 2 || sep == '.') return false; // 2.5 is a number, never a date
  if (IsMonth(p[0]) && IsLongYear(p[1])) return sep == '/' || context; // 12/2024
  if (IsDay(p[0]) && IsMonth(p[1])) return context; // "ngày 2/9"; a bare 3/4 is a fraction
  return false;
}

bool IsTimeToken(std::string_view token, std::string_view previous_word) {
  const std::string lower = LowerInternal(WithoutClosingMark(token));
  const std::string_view t = lower;
  std::size_t i = 0;
  auto digits = [&](std::size_t max_len) {
    const std::size_t from = i;
    while (i < t.size() && IsDigit(t[i]) && i - from < max_len)
      ++i;
    return t.substr(from, i - from);
  };
  const std::string_view first = digits(3);
  if (first.empty() || i == t.size()) return false;
  const char sep = t[i];
  if (sep == ':') {
    // H:MM or H:MM:SS with two-digit minutes and seconds.
    if (first.size() > 2 || Value(first) > 24) return false;
    ++i;
    const std::string_view mm = digits(2);
    if (mm.size() != 2 || Value(mm) > 59) return false;
    if (i == t.size()) return true;
    if (t[i++] != ':') return false;
    const std::string_view ss = digits(2);
    return ss.size() == 2 && Value(ss) <= 59 && i == t.size();
  }
  if (sep == 'h' || sep == 'g') {
    if (sep == 'g' && (first.size() > 2 || Value(first) > 24)) return false; // 100g is a weight
    if (sep == 'g' && i + 1 == t.size() && token[i] == 'G') return false;    // 4G, the network
    if (sep == 'g' && i + 1 == t.size() && IsMeasureContextWord(previous_word))
      return false; // "nặng 8g"
    if (first.size() > 2 && sep == 'h') return false;
    ++i;
    if (i == t.size()) return true;
    const std::string_view mm = digits(2);
    if (mm.empty() || Value(mm) > 59) return false;
    if (i == t.size()) return true;
    if (t[i] != 'p' && t[i] != '\'') return false;
    ++i;
    if (i == t.size()) return true;
    const std::string_view ss = digits(2);
    if (ss.empty() || Value(ss) > 59) return false;
    return t.substr(i) == "''" || t.substr(i) == "s" || i == t.size();
  }
  if (sep == 'p' || sep == '\'') {
    // Minutes, optionally with seconds: 15', 30p, 15'30''. Two apostrophes alone: seconds.
    if (first.size() > 2 || Value(first) > 59) return false;
    if (t.substr(i) == "''") return true;
    ++i;
    if (i == t.size()) return true;
    const std::string_view ss = digits(2);
    if (ss.empty() || Value(ss) > 59) return false;
    return t.substr(i) == "''" || t.substr(i) == "s" || i == t.size();
  }
  return false;
}

bool IsTelephoneToken(std::string_view t, std::string_view previous_word) {
  if (t.empty() || !IsTelephoneLabel(previous_word)) return false;
  for (std::size_t i = 0; i < t.size(); ++i) {
    const char c = t[i];
    if (IsDigit(c) || c == '-' || c == '(' || c == ')') continue;
    const bool last = i + 1 == t.size();
    if (last && (std::string_view(".,!?").find(c) != std::string_view::npos || IsSymbol(c)))
      continue;
    return false;
  }
  return true;
}

bool IsRangeToken(std::string_view t, std::string_view previous_word) {
  for (char c : t)
    if (c == '+' || c == '*' || c == ':' || c == '=') return false;
  if (Count(t, '-') != 1 || IsTelephoneToken(t, previous_word)) return false;
  const std::size_t dash = t.find('-');
  const std::string_view left = t.substr(0, dash);
  std::string_view right = t.substr(dash + 1);
  if (!IsSimpleRangeSide(left)) return false;
  // The upper end may carry a unit or a percent sign: 5-10km, 20-30%.
  const std::size_t number = NumberPrefixLength(right);
  if (number == 0) return false;
  const std::string_view unit = right.substr(number);
  right = right.substr(0, number);
  if (!IsSimpleRangeSide(right)) return false;
  return unit.empty() || unit == "%" || ReadUnit(unit).has_value();
}

bool IsMeasureToken(std::string_view t) {
  if (t.size() > 1 && t[0] == '-' && IsDigit(t[1])) t.remove_prefix(1); // -5°C
  const std::size_t number = NumberPrefixLength(t);
  if (number == 0 || number == t.size()) return false;
  if (t.substr(number) == "G") return false; // 4G is the network, not four grams
  return ReadUnit(t.substr(number)).has_value();
}

bool IsExpressionToken(std::string_view t, std::string_view previous_word) {
  if (t.empty() || IsTelephoneToken(t, previous_word)) return false;
  std::size_t symbols = 0;
  std::size_t colons = 0;
  for (char c : t) {
    if (IsSymbol(c)) {
      ++symbols;
      colons += c == ':';
    } else if (!IsDigit(c)) {
      return false;
    }
  }
  const bool all_colons = symbols == colons;
  return (!all_colons && (Count(t, '-') != 1 || !IsRangeToken(t, previous_word))) || colons >= 3;
}

bool IsSlashedWordsToken(std::string_view t) {
  if (t.empty() || !IsLetter(t.front()) || !IsLetter(t.back())) return false;
  for (std::size_t i = 0; i < t.size(); ++i)
    if (!IsLetter(t[i]) && !(t[i] == '/' && IsLetter(t[i - 1]) && IsLetter(t[i + 1]))) return false;
  return true;
}

bool IsAmountToken(std::string_view t, std::string_view previous_word) {
  if (t.empty() || !(IsCurrencySign(t[0]) || IsDigit(t[0]))) return false;
  std::size_t i = 0;
  while (i < t.size() && (IsDigit(t[i]) || IsCurrencySign(t[i]))) {
    ++i;
    if (i < t.size() && (t[i] == '.' || t[i] == ',')) ++i;
  }
  while (i < t.size() && IsLetter(t[i]))
    ++i;
  if (i != t.size()) return false;
  return !IsTimeToken(t, previous_word) && !IsTelephoneToken(t, previous_word) &&
         !IsMeasureToken(t);
}

bool IsAddressToken(std::string_view t) {
  return std::all_of(t.begin(), t.end(),
                     [](char c) { return IsLetter(c) || c == ':' || c == '/' || c == '.'; });
}

int Classify(std::string_view token, std::string_view previous_word) {
  using namespace token_class;
  if (IsAllLetters(token)) return kWord;
  if (IsDateToken(token, previous_word)) return kDate;
  if (IsNumberToken(token) && !IsTelephoneToken(token, previous_word)) return kNumber;
  if (token.size() == 1 && IsSymbol(token[0])) return kSymbol;
  if (IsExpressionToken(token, previous_word)) return kExpression;
  if (IsSlashedWordsToken(token)) return kSlashedWords;
  if (IsAmountToken(token, previous_word)) return kAmount;
  if (IsTimeToken(token, previous_word)) return kTime;
  if (IsAddressToken(token)) return kAddress;
  if (IsRangeToken(token, previous_word)) return kRange;
  if (IsTelephoneToken(token, previous_word)) return kTelephone;
  if (IsMeasureToken(token)) return kMeasure;
  return kNone;
}

} // namespace vntts
