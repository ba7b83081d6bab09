// SPDX-License-Identifier: MIT
#include "text/readings.h"

#include <algorithm>

#include "text/char_classes.h"
#include "text/classifier.h"
#include "text/number_reading.h"
#include "text/token_class.h"
#include "text/units.h"
#include "text/vocabulary.h"
#include "text/word_table.h"

namespace vntts {

namespace {

void AppendWord(std::string& out, std::string_view word) {
  out += ' ';
  out += word;
  out += ' ';
}

// An integer that must be heard even when it is zero (hours, minutes).
std::string ReadCount(std::string_view digits) {
  std::string w = ReadInteger(digits);
  if (w.empty()) w = words::kDigitWords[0];
  return w;
}

std::string_view CurrencyWord(char sign) {
  switch (static_cast<unsigned char>(sign)) {
  case '$':
    return words::kDollarWord;
  case 0xA3:
    return words::kPoundWord;
  case 0xA5:
    return words::kYenWord;
  case 0x80:
    return words::kEuroWord;
  default:
    return {};
  }
}

// Letters written after an amount: đ, k, tr, usd, vnd ... or any other word as it stands.
std::string AmountSuffix(std::string_view letters) {
  const std::string l = LowerInternal(letters);
  if (l == "k") return std::string(words::kThousandWord);
  if (l == "tr") return std::string(words::kMillionWord);
  if (auto money = ReadCurrencyWord(l)) return *money;
  std::string out;
  AppendWord(out, l);
  return out;
}

std::size_t TakeDigits(std::string_view t, std::size_t& i, std::size_t max_len) {
  const std::size_t from = i;
  while (i < t.size() && IsDigit(t[i]) && i - from < max_len)
    ++i;
  return i - from;
}

} // namespace

std::optional<std::string> ReadCurrencyWord(std::string_view letters) {
  const std::string l = LowerInternal(letters);
  if (l == "\xF1") return std::string(words::kDongWord);
  if (l == "usd") return std::string(words::kUsDollarWord);
  if (l == "vnd" || l == "vn\xF1") return std::string(words::kVietnamDongWord);
  if (l == "eur") return std::string(words::kEuroWord);
  // Other currencies a newsreader names (150 JPY/USD, 7 CNY).
  static const WordTable kOthers({{"jpy", "yên"},
                                  {"cny", "nhân dân tệ"},
                                  {"rmb", "nhân dân tệ"},
                                  {"gbp", "bảng anh"},
                                  {"krw", "uôn"},
                                  {"thb", "bạt"},
                                  {"sgd", "đô la xinh ga po"},
                                  {"aud", "đô la úc"},
                                  {"cad", "đô la ca na đa"},
                                  {"chf", "phrăng thụy sĩ"}},
                                 true);
  if (const std::string* other = kOthers.Find(l)) return *other;
  return std::nullopt;
}

std::optional<std::string> ReadAfterWord(std::string_view previous_word, std::string_view digits) {
  if (EqualsIgnoreCase(previous_word, words::kOrdinalWord)) {
    if (digits == "1") return std::string(words::kOrdinalFirst);
    if (digits == "4") return std::string(words::kOrdinalFourth);
  }
  if (EqualsIgnoreCase(previous_word, words::kMonth) && (digits == "4" || digits == "04"))
    return std::string(words::kMonthFour);
  return std::nullopt;
}

std::string ReadSymbol(char symbol) {
  for (const auto& s : words::kSymbolWords)
    if (s.symbol == symbol) return std::string(s.word);
  return {}; // ( ) , . and anything else read as nothing
}

std::string ReadPhone(std::string_view token) {
  std::string out;
  for (char c : token) {
    if (IsBlank(c)) continue;
    if (IsDigit(c)) {
      out += words::kDigitWords[static_cast<std::size_t>(c - '0')];
      continue;
    }
    if (std::string_view(".,()!?-").find(c) != std::string_view::npos) continue;
    break;
  }
  if (!out.empty()) out += ' ';
  return out;
}

std::string ReadDate(std::string_view token, bool month_already_said) {
  const std::string_view t = WithoutClosingMark(token);
  std::string_view parts[3];
  std::size_t n = 0;
  std::size_t start = 0;
  for (std::size_t i = 0; i <= t.size() && n < 3; ++i)
    if (i == t.size() || t[i] == '/' || t[i] == '-' || t[i] == '.') {
      parts[n++] = t.substr(start, i - start);
      start = i + 1;
    }
  std::string_view day, month, year;
  if (n == 3 && parts[0].size() == 4) { // 2024-12-31
    year = parts[0], month = parts[1], day = parts[2];
  } else if (n == 3) {
    day = parts[0], month = parts[1], year = parts[2];
  } else if (n == 2 && parts[1].size() == 4) {
    month = parts[0], year = parts[1];
  } else if (n == 2) {
    day = parts[0], month = parts[1];
  } else {
    return ReadNumber(t);
  }
  std::string out;
  if (!day.empty()) out += ReadGroup(day);
  if (!(month_already_said && day.empty())) out += words::kMonthWord;
  // Only the month 4 is "tư"; "04" keeps "bốn", as this reading always had it.
  if (month == "4")
    out += words::kMonthFour;
  else
    out += ReadGroup(month);
  if (!year.empty()) {
    out += words::kYearWord;
    out += ReadGroup(year);
  }
  out += ' ';
  return out;
}

std::string ReadTime(std::string_view token) {
  const std::string lower = LowerInternal(WithoutClosingMark(token));
  const std::string_view t = lower;
  std::size_t i = 0;
  std::string out;
  auto unit = [&](std::string_view digits, std::string_view word, bool say_zero) {
    if (!say_zero && ReadInteger(digits).empty()) return;
    out += ReadCount(digits);
    out += ' ';
    out += word;
  };
  std::size_t len = TakeDigits(t, i, 3);
  const std::string_view first = t.substr(0, len);
  if (i >= t.size()) return ReadNumber(first);
  const char sep = t[i];
  if (sep == ':' || sep == 'h' || sep == 'g') {
    unit(first, words::kHourWord, true);
    ++i;
    std::size_t from = i;
    len = TakeDigits(t, i, 2);
    if (len > 0) unit(t.substr(from, len), words::kMinuteWord, false);
    if (i < t.size() && (t[i] == ':' || t[i] == 'p' || t[i] == '\'')) ++i;
    from = i;
    len = TakeDigits(t, i, 2);
    if (len > 0) unit(t.substr(from, len), words::kSecondWord, false);
    return out;
  }
  // Minutes (15', 30p), or seconds alone (30'').
  if (t.substr(i) == "''") {
    unit(first, words::kSecondWord, true);
    return out;
  }
  unit(first, words::kMinuteWord, true);
  ++i;
  const std::size_t from = i;
  len = TakeDigits(t, i, 2);
  if (len > 0) unit(t.substr(from, len), words::kSecondWord, false);
  return out;
}

std::string ReadAmount(std::string_view token) {
  std::string amount;
  std::string signs;
  std::size_t i = 0;
  while (i < token.size() && !IsLetter(token[i])) {
    const char c = token[i++];
    if (IsCurrencySign(c))
      signs += c;
    else
      amount += c;
  }
  // Dollar amounts are written the English way: $1,000 is a thousand.
  if (signs.find('$') != std::string::npos && amount.find('.') == std::string::npos) {
    bool groups_of_three = amount.find(',') != std::string::npos;
    for (std::size_t p = amount.find(','); p != std::string::npos; p = amount.find(',', p + 1))
      groups_of_three = groups_of_three && p + 4 <= amount.size() &&
                        std::all_of(amount.begin() + static_cast<std::ptrdiff_t>(p) + 1,
                                    amount.begin() + static_cast<std::ptrdiff_t>(p) + 4,
                                    [](char c) { return IsDigit(c); }) &&
                        (p + 4 == amount.size() || amount[p + 4] == ',');
    if (groups_of_three) std::replace(amount.begin(), amount.end(), ',', '.');
  }
  std::string out = ReadNumber(amount);
  for (char s : signs)
    out += CurrencyWord(s);
  if (i < token.size()) out += AmountSuffix(token.substr(i));
  return out;
}

std::string ReadRange(std::string_view token) {
  const std::size_t dash = token.find('-');
  if (dash == std::string_view::npos) return ReadNumber(token);
  std::string out = ReadNumber(token.substr(0, dash));
  out += ' ';
  out += words::kRangeWord;
  const std::string_view right = token.substr(dash + 1);
  const std::size_t number = NumberPrefixLength(right);
  out += ReadNumber(right.substr(0, number));
  const std::string_view unit = right.substr(number);
  if (unit == "%")
    out += ReadSymbol('%');
  else if (auto u = ReadUnit(unit))
    out += *u;
  return out;
}

std::string ReadMeasure(std::string_view token) {
  std::string out;
  if (token.size() > 1 && token[0] == '-' && IsDigit(token[1])) {
    out += words::kNegativeWord;
    token.remove_prefix(1);
  }
  const std::size_t number = NumberPrefixLength(token);
  out += ReadNumber(token.substr(0, number));
  if (auto u = ReadUnit(token.substr(number))) out += *u;
  return out;
}

std::string ReadAddress(std::string_view token) {
  std::string out;
  std::size_t i = 0;
  while (i < token.size()) {
    const char c = token[i];
    if (IsLetter(c)) {
      std::size_t j = i;
      while (j < token.size() && IsLetter(token[j]))
        ++j;
      AppendWord(out, LowerInternal(token.substr(i, j - i)));
      i = j;
    } else if (IsDigit(c)) {
      std::size_t j = i;
      while (j < token.size() && IsDigit(token[j]))
        ++j;
      std::string w = ReadInteger(token.substr(i, j - i));
      out += w.empty() ? ReadDigits(token.substr(i, j - i)) : w;
      i = j;
    } else if (token.substr(i, 3) == "://") {
      out += ' ';
      out += words::kColonWord;
      out += words::kDoubleSlash;
      i += 3;
    } else if (token.substr(i, 2) == "//") {
      out += ' ';
      out += words::kDoubleSlash;
      i += 2;
    } else {
      std::string_view w;
      switch (c) {
      case ':':
        w = words::kColonWord;
        break;
      case '.':
        w = words::kDotWord;
        break;
      case '/':
        w = words::kSlashWord;
        break;
      case '@':
        w = words::kAtWord;
        break;
      case '-':
        w = words::kHyphenWord;
        break;
      case '_':
        w = words::kUnderscoreWord;
        break;
      default:
        break;
      }
      out += ' ';
      if (!w.empty())
        out += w;
      else
        out += ReadSymbol(c);
      ++i;
    }
  }
  return out;
}

std::string ReadExpression(std::string_view token) {
  std::string out;
  std::size_t i = 0;
  while (i < token.size()) {
    // A minus sign with no number or closing bracket before it is the sign of the number
    // after it: -5 is âm năm, 2*-3 hai nhân âm ba, while 5-3 stays năm trừ ba.
    if (token[i] == '-' && i + 1 < token.size() && IsDigit(token[i + 1]) &&
        (i == 0 || !(IsDigit(token[i - 1]) || token[i - 1] == ')'))) {
      out += words::kNegativeWord;
      ++i;
      continue;
    }
    if (IsDigit(token[i])) {
      const std::size_t len = NumberPrefixLength(token.substr(i));
      out += ReadNumber(token.substr(i, len));
      out += ' ';
      i += len;
    } else {
      out += ' ';
      out += ReadSymbol(token[i]);
      ++i;
    }
  }
  return out;
}

std::string ReadOver(std::string_view token) {
  if (auto unit = ReadUnit(token)) return *unit; // km/h
  std::string out;
  std::size_t start = 0;
  bool first_part = true;
  while (start <= token.size()) {
    std::size_t slash = token.find('/', start);
    if (slash == std::string_view::npos) slash = token.size();
    const std::string_view part = token.substr(start, slash - start);
    if (!first_part) {
      out += ' ';
      out += words::kOver;
      out += ' ';
    }
    first_part = false;
    if (!part.empty()) {
      const int cls = Classify(part);
      if (cls == token_class::kWord) {
        if (auto u = ReadUnit(part))
          out += *u;
        else
          AppendWord(out, LowerInternal(part));
      } else if (auto reading = Normalise(cls, part)) {
        out += *reading;
      }
    }
    start = slash + 1;
  }
  return out;
}

std::optional<std::string> Normalise(int token_class, std::string_view token,
                                     std::string_view previous_word) {
  using namespace token_class;
  switch (token_class) {
  case kNumber:
    if (auto special = ReadAfterWord(previous_word, token)) return special; // thứ tư, tháng tư
    return ReadNumber(token);
  case kDriverNumber:
    return ReadNumber(token);
  case kDate:
    return ReadDate(token, EqualsIgnoreCase(previous_word, words::kMonth));
  case kAmount:
    return ReadAmount(token);
  case kTime:
    return ReadTime(token);
  case kOver:
    return ReadOver(token);
  case kSymbol:
    return token.empty() ? std::string() : ReadSymbol(token[0]);
  case kExpression:
    return ReadExpression(token);
  case kAddress:
    return ReadAddress(token);
  case kRange:
    return ReadRange(token);
  case kTelephone:
    return ReadPhone(token);
  case kMeasure:
    return ReadMeasure(token);
  default:
    return std::nullopt;
  }
}

} // namespace vntts
