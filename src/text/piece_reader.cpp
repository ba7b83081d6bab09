// SPDX-License-Identifier: MIT
#include "text/piece_reader.h"

#include <algorithm>

#include "text/char_classes.h"
#include "text/charset/charsets.h"
#include "text/classifier.h"
#include "text/context_words.h"
#include "text/document_numbers.h"
#include "text/foreign_words.h"
#include "text/number_reading.h"
#include "text/readings.h"
#include "text/roman_numerals.h"
#include "text/syllable.h"
#include "text/text_segment.h"
#include "text/token_class.h"
#include "text/unaccented.h"
#include "text/units.h"
#include "text/vocabulary.h"
#include "text/word_table.h"

namespace vntts {

namespace {

using namespace token_class;

// Replacements and definitions may themselves hold words that have replacements; a small
// depth keeps a table that refers to itself from looping.
constexpr int kMaxDepth = 3;
// Longer letter runs are not words of any language; only their start is spelled.
constexpr std::size_t kMaxSpelledLetters = 64;
constexpr std::size_t kMaxSpeakableWord = 40;
// Units are short ("km", "kWh", "mmHg"): only short words after a number may be one.
constexpr std::size_t kContextWordBytes = 8;

bool IsLineEnd(char c) {
  return c == '\n' || c == '\r';
}

bool IsCutChar(char c) {
  return c == '.' || c == ',' || c == ';' || c == ':' || c == '!' || c == '?';
}

bool HasLettersAndDigits(std::string_view s) {
  bool letters = false, digits = false;
  for (char c : s) {
    letters = letters || IsLetter(c);
    digits = digits || IsDigit(c);
  }
  return letters && digits;
}

// Letters and digits glued with at most dashes, dots and underscores: "A4", "COVID-19".
bool IsGluedCompound(std::string_view s) {
  return HasLettersAndDigits(s) && std::all_of(s.begin(), s.end(), [](char c) {
           return IsWordChar(c) || c == '-' || c == '.' || c == '_';
         });
}

// Unlike the classifier, a piece drops every closing mark (".", ",", "!", "?", ";", ":").
std::string_view WithoutClosingMarks(std::string_view t) {
  while (t.size() > 1 && std::string_view(".,!?;:").find(t.back()) != std::string_view::npos)
    t.remove_suffix(1);
  return t;
}

// "0912.345.678", "0912-345-678", "+84912345678": a number with a leading 0 or + and nine
// to twelve digits is a telephone number even without a label.
bool LooksLikePhoneNumber(std::string_view t) {
  if (t.empty() || !(t[0] == '0' || t[0] == '+')) return false;
  std::size_t digits = 0;
  for (std::size_t i = t[0] == '+' ? 1 : 0; i < t.size(); ++i) {
    const char c = t[i];
    if (IsDigit(c))
      ++digits;
    else if (!((c == '-' || c == '.') && i > 0 && IsDigit(t[i - 1]) && i + 1 < t.size() &&
               IsDigit(t[i + 1])))
      return false;
  }
  return digits >= 9 && digits <= 12 && (t[0] == '+' || t.size() > 1);
}

// Digits with the dots, dashes, brackets and blanks that telephone numbers are written with.
bool IsPhoneShaped(std::string_view t, std::size_t least_digits) {
  std::size_t digits = 0;
  for (std::size_t i = 0; i < t.size(); ++i) {
    const char c = t[i];
    if (IsDigit(c))
      ++digits;
    else if (!(c == '.' || c == '-' || c == '(' || c == ')' || IsBlank(c) || c == '\xA0' ||
               (c == '+' && i == t.find_first_not_of('('))))
      return false;
  }
  return digits >= least_digits;
}

// Known web words: the parts of an address a reader says as words.
const WordTable& WebWords() {
  static const WordTable kTable(
      {
          {"www", "vê kép vê kép vê kép"},
          {"http", "hát tê tê pê"},
          {"https", "hát tê tê pê ét"},
          {"com", "com"},
          {"vn", "vê en"},
          {"net", "nét"},
          {"org", "o rờ gờ"},
          {"gov", "gờ o vê"},
          {"edu", "e đu"},
          {"info", "in phô"},
          {"io", "i o"},
          {"biz", "bít"},
          {"html", "hát tê em e lờ"},
          {"php", "pê hát pê"},
          {"pdf", "pê đê ép"},
          {"asp", "a ét pê"},
          {"us", "u ét"},
          {"uk", "u ca"},
          {"ai", "a i"},
          {"tv", "ti vi"},
          {"me", "mi"},
          {"jp", "giê pê"},
          {"cn", "xê en"},
          {"kr", "ca e rờ"},
          {"fr", "ép e rờ"},
          {"de", "đê e"},
          {"au", "a u"},
          {"app", "áp"},
          {"blog", "bờ lốc"},
          {"mail", "meo"},
          {"gmail", "gờ meo"},
          {"email", "i meo"},
          {"yahoo", "da hu"},
          {"outlook", "ao lúc"},
          {"hotmail", "hót meo"},
          {"index", "in đếch"},
          {"home", "hôm"},
          {"news", "niu"},
          {"online", "on lai"},
          {"shop", "sốp"},
          {"store", "xờ to"},
          {"login", "lốc in"},
      },
      true);
  return kTable;
}

// Top-level domains: a dotted piece that ends in one is a web address ("vnexpress.net").
bool EndsWithDomain(std::string_view t) {
  static const WordTable kTable({{"com", ""},
                                 {"vn", ""},
                                 {"net", ""},
                                 {"org", ""},
                                 {"gov", ""},
                                 {"edu", ""},
                                 {"info", ""},
                                 {"io", ""},
                                 {"biz", ""}},
                                true);
  const std::size_t dot = t.rfind('.');
  if (dot == std::string_view::npos || dot == 0 || dot + 1 == t.size()) return false;
  if (!IsLetter(t[0])) return false;
  for (char c : t)
    if (!(IsWordChar(c) || c == '.' || c == '-' || c == '_' || c == '/')) return false;
  const std::size_t slash = t.find('/');
  const std::string_view host = t.substr(0, slash);
  const std::size_t host_dot = host.rfind('.');
  return host_dot != std::string_view::npos && kTable.Contains(host.substr(host_dot + 1));
}

// "baocao2024.pdf", "anh_the.jpg": a file name, read part by part as an address is.
bool IsFileName(std::string_view t) {
  static const WordTable kExtensions(
      {{"pdf", ""},  {"doc", ""},  {"docx", ""}, {"xls", ""},  {"xlsx", ""}, {"ppt", ""},
       {"pptx", ""}, {"txt", ""},  {"csv", ""},  {"jpg", ""},  {"jpeg", ""}, {"png", ""},
       {"gif", ""},  {"zip", ""},  {"rar", ""},  {"mp3", ""},  {"mp4", ""},  {"exe", ""},
       {"apk", ""},  {"json", ""}, {"xml", ""},  {"html", ""}, {"py", ""},   {"cpp", ""}},
      true);
  const std::size_t dot = t.rfind('.');
  if (dot == std::string_view::npos || dot == 0 || !IsLetter(t[0]) ||
      !kExtensions.Contains(t.substr(dot + 1)))
    return false;
  return std::all_of(t.begin(), t.begin() + dot,
                     [](char c) { return IsWordChar(c) || c == '_' || c == '-'; });
}

bool LooksLikeWebAddress(std::string_view t) {
  if (t.find_first_of(".:@") == std::string_view::npos) return false;
  if (IsFileName(WithoutClosingMarks(t))) return true;
  if (t.find("://") != std::string_view::npos ||
      (t.size() > 4 && EqualsIgnoreCase(t.substr(0, 4), "www.")))
    return true;
  const std::size_t at = t.find('@');
  if (at != std::string_view::npos && at > 0 && IsWordChar(t[at - 1]) &&
      t.find('.', at) != std::string_view::npos && at + 1 < t.size() && IsWordChar(t[at + 1]))
    return true;
  return EndsWithDomain(t);
}

// Chat short forms typed as one small letter: k không, r rồi, j gì, z and v vậy, t tôi, m mày.
const WordTable& ChatLetters() {
  static const WordTable kTable({{"k", "không"},
                                 {"r", "rồi"},
                                 {"j", "gì"},
                                 {"z", "vậy"},
                                 {"v", "vậy"},
                                 {"t", "tôi"},
                                 {"m", "mày"}},
                                false);
  return kTable;
}

// Acronyms in capitals whose letters also spell a word (ai, ca): only the capitals are read
// as the acronym, so they cannot be definitions, which ignore case.
const WordTable& CapitalAcronyms() {
  static const WordTable kTable({{"AI", "ây ai"},
                                 {"CA", "công an"},
                                 {"TƯ", "trung ương"},
                                 {"BYT", "bộ y tế"},
                                 {"SYT", "sở y tế"},
                                 {"VAT", "vát"},
                                 {"UAE", "u a e"},
                                 {"IT", "ai ti"},
                                 {"PR", "pi a"},
                                 {"MV", "em vi"},
                                 {"TV", "ti vi"},
                                 {"NHNN", "ngân hàng nhà nước"}},
                                false);
  return kTable;
}

// Words that name money, on the left of "đồng/kg", "USD/thùng".
bool IsMoneyPart(std::string_view part) {
  if (ReadCurrencyWord(part)) return true;
  static const WordTable kTable({{"đồng", ""},
                                 {"nghìn", ""},
                                 {"ngàn", ""},
                                 {"triệu", ""},
                                 {"tỷ", ""},
                                 {"tỉ", ""},
                                 {"k", ""},
                                 {"tr", ""},
                                 {"đô", ""},
                                 {"euro", ""},
                                 {"yên", ""},
                                 {"usd", ""}},
                                true);
  if (kTable.Contains(part)) return true;
  return !part.empty() && (IsDigit(part[0]) || IsCurrencySign(part[0])) &&
         Classify(part) == kAmount && !ReadUnit(part.substr(NumberPrefixLength(part)));
}

// A number of goals or points: one digit, or two without a leading zero.
// Words before the number of a house, a lane or a class, which are written n/m too:
// "số 25/3 đường Lê Lợi", "ngõ 12/34", "lớp 10/2".
bool IsAddressWord(std::string_view word) {
  static const WordTable kTable({{"số", ""},
                                 {"ngõ", ""},
                                 {"ngách", ""},
                                 {"hẻm", ""},
                                 {"kiệt", ""},
                                 {"nhà", ""},
                                 {"phòng", ""},
                                 {"lớp", ""},
                                 {"căn", ""},
                                 {"lô", ""}},
                                true);
  return kTable.Contains(word);
}

// A Vietnamese number plate: two digits, one or two letters and maybe a digit, a dash, then
// four or five digits ("29A-123.45", "51F1-12345"); read digit by digit.
bool IsCapitalPair(std::string_view t) {
  return std::all_of(t.begin(), t.end(),
                     [](char c) { return IsLetter(c) && ToLowerInternal(c) != c; });
}

// "N.T.H", "Đ.V.A.": the initials of a name, single capitals each with a point.
bool IsInitials(std::string_view t) {
  if (t.size() < 3) return false;
  for (std::size_t i = 0; i < t.size(); ++i) {
    const bool letter_place = i % 2 == 0;
    if (letter_place != (t[i] != '.')) return false;
    if (letter_place && !(IsLetter(t[i]) && ToLowerInternal(t[i]) != t[i])) return false;
  }
  return true;
}

bool IsNumberPlate(std::string_view t) {
  std::size_t i = 0;
  const auto digits = [&](std::size_t most) {
    const std::size_t from = i;
    while (i < t.size() && IsDigit(t[i]) && i - from < most)
      ++i;
    return i - from;
  };
  if (digits(2) != 2) return false;
  const std::size_t letters = i;
  while (i < t.size() && t[i] >= 'A' && t[i] <= 'Z' && i - letters < 2)
    ++i;
  if (i == letters) return false;
  digits(1);
  if (i >= t.size() || t[i++] != '-') return false;
  std::size_t tail = digits(3);
  if (i < t.size() && t[i] == '.') {
    ++i;
    tail += digits(2);
  } else {
    tail += digits(2);
  }
  return i == t.size() && (tail == 4 || tail == 5);
}

// Counts of a rate that keep trên: vòng/phút, nhịp/phút.
bool IsTechnicalCount(std::string_view word) {
  static const WordTable kTable({{"vòng", ""}, {"nhịp", ""}, {"bit", ""}, {"byte", ""}}, true);
  return kTable.Contains(word);
}

// The units of a clock, over which a unit makes a speed or a flow (km/giờ, lít/phút).
bool IsClockUnit(std::string_view word) {
  static const WordTable kTable({{"giờ", ""}, {"phút", ""}, {"giây", ""}, {"h", ""}, {"s", ""}},
                                true);
  return kTable.Contains(word);
}

// A number stands before the piece, maybe with its scale word: "5 km", "1,2 tỷ m3".
bool AfterQuantity(const PieceContext& ctx) {
  if (ctx.AfterNumber()) return true;
  static const WordTable kScales(
      {{"nghìn", ""}, {"ngàn", ""}, {"triệu", ""}, {"tỷ", ""}, {"tỉ", ""}}, true);
  const std::string_view before2 = ctx.Before(2);
  return !before2.empty() && IsDigit(before2.back()) && kScales.Contains(ctx.Before());
}

// "2024-2025", "2021 - 2026": two years, the second after the first.
bool IsYearPair(std::string_view left, std::string_view right) {
  const auto year = [](std::string_view t) {
    return t.size() == 4 && AllDigits(t) && (t[0] == '1' || t[0] == '2');
  };
  return year(left) && year(right) && right > left;
}

bool IsSmallNumber(std::string_view t) {
  return AllDigits(t) && (t.size() == 1 || (t.size() == 2 && t[0] != '0'));
}

// The piece that a dash closes can start a range: a number, time, amount, measure or percent
// ("7:30", "100.000đ", "5km", "20%"), a weekday ("Thứ Hai", "T2").
bool CanOpenRange(std::string_view t, std::string_view before) {
  if (t.empty()) return false;
  if (IsDigit(t.back())) return true;
  if (IsDigit(t[0])) {
    const int cls = Classify(t);
    return cls == kAmount || cls == kTime || cls == kMeasure || cls == kExpression ||
           cls == kDate || cls == kRange;
  }
  return IsWeekdayName(t, before) || EqualsIgnoreCase(t, "CN");
}

bool CanCloseRange(std::string_view t, std::string_view word_before_first) {
  if (t.empty()) return false;
  if (IsDigit(t[0])) return true;
  static const WordTable kStarts({{"thứ", ""}, {"chủ", ""}, {"cn", ""}}, true);
  return kStarts.Contains(t) ||
         (!word_before_first.empty() && EqualsIgnoreCase(t, word_before_first) && IsAllLetters(t));
}

bool IsOperatorPiece(std::string_view t) {
  return t == "+" || t == "-" || t == "*" || t == "x" || t == "/" || t == ":" || t == "=" ||
         t == "\xD7";
}

// A day and a month written d/m ("15/6"), a closing mark and brackets around allowed.
std::string_view DayMonthCore(std::string_view piece, bool& bracketed) {
  std::string_view t = WithoutClosingMarks(piece);
  bracketed = t.size() > 2 && t.front() == '(' && t.back() == ')';
  if (bracketed) t = t.substr(1, t.size() - 2);
  const std::size_t slash = t.find('/');
  if (slash == std::string_view::npos || t.find('/', slash + 1) != std::string_view::npos)
    return {};
  return IsDateToken(t, words::kDate) ? t : std::string_view();
}

} // namespace

void AddReading(std::string_view reading, std::vector<std::string>& words) {
  std::size_t i = 0;
  while (i < reading.size()) {
    while (i < reading.size() && IsBlank(reading[i]))
      ++i;
    std::size_t j = i;
    while (j < reading.size() && !IsBlank(reading[j]))
      ++j;
    if (j > i) {
      std::string word = LowerInternal(reading.substr(i, j - i));
      if (IsAllLetters(word) && !LooksLikeSyllable(word)) {
        const std::string_view letters =
            std::string_view(word).substr(0, std::min(word.size(), kMaxSpelledLetters));
        AddReading(SpellWord(letters), words);
      } else {
        words.push_back(std::move(word));
      }
    }
    i = j;
  }
}

void PieceReader::Read(std::string_view piece, const PieceContext& ctx, int depth,
                       PieceWords& out) {
  if (piece.empty()) return;
  // Round brackets say nothing: "(8:00", "17:30)", "(Mr.", "(8-10)" read as what they hold. A
  // day and month in brackets keep them, as they make it a date ("Thứ Hai (15/7)").
  if (depth == 0 && !ctx.phone_run && piece.size() > 1 &&
      (piece.front() == '(' || piece.back() == ')' || piece.front() == '#')) {
    std::string_view inner = piece;
    if (inner.front() == '(' || inner.front() == '#') inner.remove_prefix(1); // #DH2024-0015
    // An order or ticket number (#123456) is read digit by digit, as any long code; a short
    // one is a rank or a number (#1: số một).
    const std::string_view digits = WithoutClosingMarks(inner);
    if (piece.front() == '#' && !digits.empty() && AllDigits(digits)) {
      if (digits.size() < 4) AddReading(words::kNumberWord, out.words);
      AddReading(digits.size() >= 4 ? ReadDigits(digits) : ReadNumber(digits), out.words);
      out.mark = kNumber;
      Remember(piece, kNumber);
      return;
    }
    if (!inner.empty() && inner.back() == ')' && inner.find('(') == std::string_view::npos)
      inner.remove_suffix(1);
    const bool day_month =
        piece.front() == '(' && piece.back() == ')' && inner.find('/') != std::string_view::npos;
    if (inner.size() < piece.size() && !day_month &&
        std::any_of(inner.begin(), inner.end(), IsWordChar)) {
      Read(inner, ctx, depth, out);
      return;
    }
  }
  if (depth == 0 && piece.size() > 1 && piece[0] == '~' && IsDigit(piece[1])) {
    AddReading(words::kAboutWord, out.words); // ~40°C: khoảng bốn mươi độ xê
    Read(piece.substr(1), ctx, depth, out);
    return;
  }
  if (ctx.phone_run) { // "0912 345 678", "+84 24 3823 4567"
    if (piece.find('+') != std::string_view::npos) AddReading(ReadSymbol('+'), out.words);
    AddReading(ReadPhone(piece.substr(piece.find_first_of("0123456789"))), out.words);
    out.mark = kTelephone;
    Remember(piece, kTelephone);
    return;
  }
  // A word of letters alone reads the same wherever it stands, unless it is a single letter
  // (k, x, a consonant's name), a unit after a number, Km before one, a numeral after a word
  // that takes one, or the stores answer.
  const bool plain = depth == 0 && !ctx.list_marker &&
                     piece.size() <= ReadingCache::kLongestPiece && piece.size() > 1 &&
                     IsAllLetters(piece) && !HasRomanNumeralLetters(piece) &&
                     !(ctx.BeforeNumber() && EqualsIgnoreCase(piece, "km")) &&
                     !(piece.size() <= kContextWordBytes && AfterQuantity(ctx) && ReadUnit(piece));
  if (plain) {
    if (const auto* known = cache_.Find(piece)) {
      ReadingCache::AppendWords(*known, out.words);
      out.mark = known->mark;
      if (known->telephone_label)
        previous_word_ = "tel";
      else
        previous_word_.assign(piece); // letters alone: nothing to trim
      return;
    }
  }
  const std::size_t first_word = out.words.size();
  stores_answered_ = false;
  if (piece.size() <= 8 && AfterQuantity(ctx))
    if (auto unit = ReadUnit(piece)) { // 5 km, 500 GB, 220 V, 1,2 tỷ m3
      AddReading(*unit, out.words);
      out.mark = kMeasure;
      Remember(piece, kMeasure);
      return;
    }
  // A number has no definition: the stores are asked only for pieces with letters or symbols.
  const bool number = IsDigit(piece[0]) && std::none_of(piece.begin(), piece.end(), IsLetter);
  if (depth == 0 && !number && piece.size() <= 4)
    if (auto reading = ReadAbbreviationAfter(previous_word_, piece)) { // Khu CN, chỉ số UV
      AddReading(*reading, out.words);
      out.mark = kCompound;
      Remember(piece, kCompound);
      return;
    }
  if (depth < kMaxDepth && stores_.definitions != nullptr && !number && !Expanding(piece)) {
    if (auto definition = FindDefinition(piece)) {
      out.mark = kCompound;
      out.from_definition = true;
      ReadReplacement(piece, *definition, depth, out);
      Remember(piece, kCompound);
      stores_answered_ = true;
      return;
    }
    // An abbreviation with its point glued to what follows: "Q.1", "P.Bến", "Tr.5".
    const std::size_t dot = piece.find('.');
    if (dot != std::string_view::npos && dot > 0 && dot + 1 < piece.size() &&
        IsAllLetters(piece.substr(0, dot)))
      if (auto head = FindDefinition(piece.substr(0, dot + 1))) {
        out.mark = kCompound;
        out.from_definition = true;
        ReadReplacement(piece.substr(0, dot + 1), *head, depth, out);
        PieceWords rest{out.words};
        Read(piece.substr(dot + 1), {}, depth + 1, rest);
        Remember(piece, kCompound);
        stores_answered_ = true;
        return;
      }
  }
  const int mark = ReadUndefined(piece, ctx, depth, out);
  out.mark = mark;
  Remember(piece, mark);
  if (plain && !stores_answered_)
    cache_.Add(piece, mark, previous_word_ == "tel", out.words, first_word);
}

// Text that stands in for one piece (a definition or a replacement): its blank-separated
// pieces in turn, punctuation at their ends dropped.
void PieceReader::ReadInline(std::string_view text, int depth, PieceWords& out) {
  std::size_t i = 0;
  while (i < text.size()) {
    while (i < text.size() && (IsBlank(text[i]) || IsLineEnd(text[i])))
      ++i;
    std::size_t j = i;
    while (j < text.size() && !IsBlank(text[j]) && !IsLineEnd(text[j]))
      ++j;
    std::string_view piece = text.substr(i, j - i);
    while (piece.size() > 1 && IsCutChar(piece.back()))
      piece.remove_suffix(1);
    if (!piece.empty() && !(piece.size() == 1 && IsCutChar(piece[0]))) {
      PieceWords inner{out.words};
      Read(piece, {}, depth, inner);
      out.from_definition = out.from_definition || inner.from_definition;
    }
    i = j;
  }
}

void PieceReader::ReadReplacement(std::string_view key, std::string_view text, int depth,
                                  PieceWords& out) {
  expanding_.push_back(LowerInternal(key));
  ReadInline(text, depth + 1, out);
  expanding_.pop_back();
}

bool PieceReader::Expanding(std::string_view piece) const {
  if (expanding_.empty()) return false;
  return std::find(expanding_.begin(), expanding_.end(), LowerInternal(piece)) != expanding_.end();
}

std::optional<std::string> PieceReader::FindDefinition(std::string_view piece) const {
  if (stores_.definitions == nullptr) return std::nullopt;
  auto definition = stores_.definitions->FindDefinition(piece);
  if (!definition) {
    const std::string lower = LowerInternal(piece);
    if (lower != piece) definition = stores_.definitions->FindDefinition(lower);
  }
  return definition;
}

bool PieceReader::Speakable(const std::string& lower) const {
  if (lower.size() > kMaxSpeakableWord) return false;
  return stores_.speakable != nullptr ? stores_.speakable->CanSpeak(lower)
                                      : LooksLikeSyllable(lower);
}

int PieceReader::ReadUndefined(std::string_view piece, const PieceContext& ctx, int depth,
                               PieceWords& out) {
  if (ctx.list_marker) {
    const auto roman = IsDigit(piece[0]) ? std::nullopt : RomanNumeralValue(piece); // "II. Viết"
    AddReading(ReadNumber(roman ? std::to_string(*roman) : std::string(piece)), out.words);
    return kDriverNumber;
  }
  if (IsAllLetters(piece)) return ReadLetters(piece, ctx, depth, out);
  if (IsInitials(WithoutClosingMarks(piece))) { // Bà N.T.H: en tê hát
    std::string letters;
    for (char c : WithoutClosingMarks(piece))
      if (c != '.') letters += c;
    AddReading(SpellWord(LowerInternal(letters)), out.words);
    return kSpelled;
  }
  if (ReplaceByAutoCorrect(piece, depth, out)) return kWord;
  if (ReadTelephone(piece, ctx, out)) return kTelephone;
  if (LooksLikeWebAddress(piece)) {
    ReadWebAddress(piece, depth, out);
    return kAddress;
  }
  if (piece == "\xB1") { // 5 ± 2
    AddReading(words::kPlusMinus, out.words);
    return kSymbol;
  }
  if (piece == "-") {
    ReadDash(piece, ctx, out);
    return kSymbol;
  }
  if (piece.size() > 1 && std::none_of(piece.begin(), piece.end(), IsWordChar)) {
    ReadTokens(piece, depth, out); // "(-)", "=>", "--": punctuation, said only where it means
    return kNone;                  // something on its own
  }
  if (piece == ">" && IsLetter(ctx.Before().empty() ? ' ' : ctx.Before()[0]) &&
      IsLetter(ctx.After().empty() ? ' ' : ctx.After()[0]) &&
      (ctx.Before().size() > 1 || ctx.After().size() > 1))
    return kSymbol; // Cài đặt > Wi-Fi: a step in a menu, not lớn hơn
  if (ReadGenerationOrPicture(piece, out)) return kCompound;
  if (ReadGrams(piece, ctx, out)) return kMeasure;
  if (ReadVehicleCode(piece, out)) return kCompound;
  if (ReadAmountWithRest(piece, out)) return kAmount;
  if (ReadVersion(piece, out)) return kNumber;
  const std::string_view bare = WithoutClosingMarks(piece);
  if (bare.size() >= 4 && AllDigits(bare) && (bare[0] == '0' || IntroducesSecret(previous_word_))) {
    // số 0001234, a code; mật khẩu 12345678, mã OTP 123456
    AddReading(ReadDigits(bare), out.words);
    return kNumber;
  }
  // The readings of the walk's own, each for pieces with the mark it looks for.
  const bool has_slash = piece.find('/') != std::string_view::npos;
  const bool dash = piece.find('-') != std::string_view::npos;
  if (dash && ctx.After().starts_with("=")) { // 5-3 = 2: a sum, trừ
    const std::string_view t = WithoutClosingMarks(piece);
    const std::size_t minus = t.find('-');
    if (minus != std::string_view::npos && minus > 0 && minus + 1 < t.size() &&
        AllDigits(t.substr(0, minus)) && AllDigits(t.substr(minus + 1))) {
      AddReading(ReadNumber(t.substr(0, minus)), out.words);
      AddReading(ReadSymbol('-'), out.words);
      AddReading(ReadNumber(t.substr(minus + 1)), out.words);
      return kExpression;
    }
  }
  if (dash && ReadDashedDayMonth(piece, ctx, out)) return kDate;
  if ((dash || piece.find(':') != std::string_view::npos) && ReadScore(piece, ctx, out))
    return kNumber;
  if (has_slash && ReadPercentPer(piece, depth, out)) return kExpression;
  if (has_slash && ReadSeason(piece, out)) return kNumber;
  if (has_slash && ReadDecimalOverDecimal(piece, out)) return kNumber;
  if (has_slash && ReadDocument(piece, ctx, depth, out)) return kCompound;
  if (has_slash && ReadPeriodAndYear(piece, ctx, out)) return kNumber;
  if (has_slash && ReadDayMonth(piece, ctx, out)) return kDate;
  if (dash && IsNumberPlate(WithoutClosingMarks(piece))) {
    ReadCompound(WithoutClosingMarks(piece), depth, out, true);
    return kCompound;
  }
  if (dash && ReadSpanOfYears(piece, out)) return kNumber;
  if (dash && ReadDashedRange(piece, depth, out)) return kRange;
  if (piece.find('.') != std::string_view::npos && ReadDottedGroups(piece, out)) return kNumber;
  if (stores_.definitions != nullptr && ReadNumberAndDefinition(piece, depth, out))
    return kCompound;
  if (piece.find(':') != std::string_view::npos && ReadNumberColonNumber(piece, out))
    return kExpression;
  const int cls = Classify(piece, previous_word_);
  if (cls == kSymbol && piece[0] == ':') {
    // A colon between words is punctuation; between two numbers it is the ratio, or nothing
    // in a score ("tỷ số 2 : 2").
    if (ctx.AfterNumber() && ctx.BeforeNumber() && !IsScoreContext(ctx, 2))
      AddReading(ReadSymbol(':'), out.words);
    return kSymbol;
  }
  if (cls == kDate) saw_date_ = true;
  if (cls == kSlashedWords) {
    ReadSlashed(piece, depth, out);
    return kOver;
  }
  if (cls != kNone) {
    if (auto reading = Normalise(cls, piece, previous_word_)) AddReading(*reading, out.words);
    return cls;
  }
  const std::size_t slash = piece.find('/');
  if (slash != std::string_view::npos && slash > 0 && slash + 1 < piece.size() &&
      IsWordChar(piece[slash - 1]) && IsWordChar(piece[slash + 1])) {
    ReadSlashed(piece, depth, out);
    return kOver;
  }
  if (depth > 0 || piece.size() == 1 || IsGluedCompound(piece)) {
    ReadCompound(piece, depth, out);
    return kCompound;
  }
  const std::size_t power = piece.find('^');
  if (power != std::string_view::npos && power > 0 && power + 1 < piece.size() &&
      AllDigits(WithoutClosingMarks(piece.substr(power + 1)))) { // x^2, 10^6: mũ
    static const std::string kPower = Utf8ToInternal("mũ");
    PieceWords base{out.words};
    Read(piece.substr(0, power), {}, depth + 1, base);
    AddReading(kPower, out.words);
    AddReading(ReadNumber(WithoutClosingMarks(piece.substr(power + 1))), out.words);
    return kExpression;
  }
  ReadTokens(piece, depth, out);
  return kNone;
}

int PieceReader::ReadLetters(std::string_view piece, const PieceContext& ctx, int depth,
                             PieceWords& out) {
  std::string lower = LowerInternal(piece);
  if (TakesRomanNumeral(previous_word_))
    if (const auto value = RomanNumeralValue(piece)) { // thế kỷ XXI, chương IV, lần thứ IV
      const std::string digits = std::to_string(*value);
      const auto special = ReadAfterWord(previous_word_, digits);
      AddReading(special ? *special : ReadNumber(digits), out.words);
      return kNumber;
    }
  const bool after_amount = (!ctx.Before().empty() && IsDigit(ctx.Before().front())) || // 500mg x 2
                            (!ctx.Before(2).empty() && AllDigits(ctx.Before(2))); // 10 vỉ x 10
  if ((ctx.AfterNumber() || after_amount) && ctx.BeforeNumber() && lower == "x") {
    AddReading(ReadSymbol('*'), out.words); // 2 x 3, 60 x 40 cm
    return kExpression;
  }
  if (piece.starts_with("K") && lower == "km" && ctx.BeforeNumber() && !ctx.AfterNumber()) {
    // Km 42, a highway marker
    AddReading(words::kKilometre, out.words);
    return kMeasure;
  }
  if (!ctx.pieces.empty() && !ctx.AfterNumber())
    if (const std::string* chat = ChatLetters().Find(piece)) { // "ko dc r", "k bít j"
      AddReading(*chat, out.words);
      return kWord;
    }
  if ((lower == "c" || lower == "f") &&
      EqualsIgnoreCase(ctx.Before(), words::kDegree.substr(1, 3))) {
    AddReading(SpellWord(lower), out.words); // nhiệt độ 30 độ C
    return kSpelled;
  }
  // Chat forms and typing slips that are no syllable (ko, dc, ngừoi) are the table's before the
  // voice tries to split them.
  if (!IsUnmarkedSyllable(lower) && LooksLikeSyllable(lower) &&
      ReplaceByAutoCorrect(piece, depth, out))
    return kWord;
  if (lower.size() == 1 && lower[0] >= 'b' && lower[0] <= 'z' &&
      std::string_view("eiouy").find(lower[0]) == std::string_view::npos) {
    AddReading(SpellWord(lower), out.words); // a consonant alone is its name: S24, Ctrl + C
    return kSpelled;
  }
  if (const std::string* acronym = CapitalAcronyms().Find(piece)) { // AI, CA: not ai, ca
    AddReading(*acronym, out.words);
    return kCompound;
  }
  if (ReadDrawnOut(piece, ctx, depth, out)) return kWord;
  if (ReadWord(piece, depth, out)) return kWord;
  if (auto money = ReadCurrencyWord(lower)) {
    AddReading(*money, out.words);
    return kAmount;
  }
  if (ReplaceByAutoCorrect(piece, depth, out)) return kWord;
  if (ReadForeign(piece, depth, out)) return kWord;
  AddReading(SpellWord(std::string_view(lower).substr(0, kMaxSpelledLetters)), out.words);
  return kSpelled;
}

// "quáaaa", "điiii", "nhéeee": a chat word drawn out by repeating its last letter is the word.
bool PieceReader::ReadDrawnOut(std::string_view piece, const PieceContext& ctx, int depth,
                               PieceWords& out) {
  std::size_t run = 1;
  while (run < piece.size() && piece[piece.size() - 1 - run] == piece.back())
    ++run;
  if (run < 3 || run == piece.size()) return false;
  const std::string_view stem = piece.substr(0, piece.size() - run);
  const std::string stem_lower = LowerInternal(stem);
  const std::string_view word =
      stem.size() > 1 && LooksLikeSyllable(stem_lower) && Speakable(stem_lower)
          ? stem
          : piece.substr(0, piece.size() - run + 1);
  if (!Speakable(LowerInternal(word))) return false;
  ReadLetters(word, ctx, depth, out);
  return true;
}

// A foreign name or word that no list holds, said in Vietnamese syllables (Kamala: ca ma la);
// words written in capitals are acronyms and stay spelled, and a word with capitals inside
// (VinFast, iOS) is read part by part.
bool PieceReader::ReadForeign(std::string_view piece, int depth, PieceWords& out) {
  const auto small = [](char c) { return c >= 'a' && c <= 'z'; };
  if (std::none_of(piece.begin(), piece.end(), small)) return false;
  for (std::size_t i = 1; i < piece.size(); ++i)
    if (piece[i] >= 'A' && piece[i] <= 'Z' && small(piece[i - 1])) {
      PieceWords head{out.words};
      ReadLetters(piece.substr(0, i), {}, depth, head);
      PieceWords tail{out.words};
      ReadLetters(piece.substr(i), {}, depth, tail);
      return true;
    }
  auto syllables = ReadForeignWord(piece);
  if (!syllables || !std::all_of(syllables->begin(), syllables->end(),
                                 [&](const std::string& s) { return Speakable(s); }))
    return false;
  for (std::string& s : *syllables)
    out.words.push_back(std::move(s));
  return true;
}

// A word said as it stands, or, typed without its marks, as the syllable it stands for.
bool PieceReader::ReadWord(std::string_view word, int depth, PieceWords& out) {
  (void)depth;
  std::string lower = LowerInternal(word);
  // Short words in capitals are acronyms (IEC, UBND): never taken for unmarked syllables.
  const bool acronym =
      word.size() <= 4 && word.size() > 1 && lower != word &&
      std::none_of(word.begin(), word.end(), [](char c) { return c >= 'a' && c <= 'z'; });
  if (!acronym)
    if (auto repaired = RepairUnmarked(lower)) { // chieu -> chiều, nguoi -> người
      out.words.push_back(std::move(*repaired));
      return true;
    }
  // The voice can join two syllables for a word it does not hold, but an acronym is spelled.
  if ((!acronym || LooksLikeSyllable(lower)) && Speakable(lower)) {
    out.words.push_back(std::move(lower));
    return true;
  }
  return false;
}

bool PieceReader::ReplaceByAutoCorrect(std::string_view piece, int depth, PieceWords& out) {
  if (depth >= kMaxDepth || stores_.auto_correct == nullptr || Expanding(piece)) return false;
  auto replacement = stores_.auto_correct->FindReplacement(piece);
  if (!replacement) { // "iPhone", "YouTube": the table holds words as written and capitalised
    const std::string lower = LowerInternal(piece);
    if (lower != piece) replacement = stores_.auto_correct->FindReplacement(lower);
  }
  if (!replacement || *replacement == piece) return false;
  ReadReplacement(piece, *replacement, depth, out);
  stores_answered_ = true;
  return true;
}

// Telephone numbers: after a label (ĐT, Hotline, Fax ...) any number written as one; numbers
// of nine to twelve digits that start with 0 or +; service numbers that are dialled (gọi 113,
// hotline 1900 1234).
bool PieceReader::ReadTelephone(std::string_view piece, const PieceContext& ctx, PieceWords& out) {
  const std::string_view t = WithoutClosingMarks(piece);
  const bool label = IsTelephoneLabel(previous_word_) && IsPhoneShaped(t, 3);
  const bool service_head = t.starts_with("1900") || t.starts_with("1800");
  const std::size_t digits = static_cast<std::size_t>(std::count_if(t.begin(), t.end(), IsDigit));
  const bool dotted = !AllDigits(t) && IsPhoneShaped(t, 8) && t.find_first_of("()+") == t.npos;
  const bool so = EqualsIgnoreCase(ctx.Before(), "so\xE1"); // số
  const bool dialled =
      AllDigits(t) && t[0] == '1' &&
      ((t.size() == 8 && service_head) || (t.size() == 4 && service_head && so) || // đầu số 1900
       (t.size() >= 3 && t.size() <= 5 &&
        (IntroducesDialledNumber(ctx.Before()) || IntroducesDialledNumber(ctx.Before(2)) ||
         (so && (IntroducesDialledNumber(ctx.Before(2)) || (t.size() == 3 && t[1] == '1'))))));
  // An emergency number with its service after it: 113 (Công an), 115 (Cấp cứu).
  const bool emergency = AllDigits(t) && t.size() == 3 && t[0] == '1' && t[1] == '1' &&
                         t[2] >= '1' && ctx.After().starts_with("(") && ctx.After().size() > 1 &&
                         IsLetter(ctx.After()[1]);
  const bool service =
      (dotted && service_head && (digits == 8 || digits == 10)) || // 1900.1234, 1800.599.920
      dialled || emergency;
  if (!label && !service && !LooksLikePhoneNumber(t)) return false;
  if (t.find('+') != std::string_view::npos) AddReading(ReadSymbol('+'), out.words);
  AddReading(ReadPhone(t.substr(t.find_first_of("0123456789"))), out.words);
  return true;
}

// A dash standing alone: "đến" between the ends of a range ("7:30 - 11:30", "Thứ 2 - Thứ 6",
// "100.000 - 200.000đ"), "trừ" in a sum ("5 - 3 = 2"), nothing in a score or between words.
bool PieceReader::ReadDash(std::string_view, const PieceContext& ctx, PieceWords& out) {
  const std::string_view left = ctx.Before();
  const std::string_view right = ctx.After();
  if (left.empty() || right.empty() || IsTelephoneLabel(previous_word_)) return false;
  const bool sum = ctx.After(2).starts_with("=") || IsOperatorPiece(ctx.Before(2));
  if (sum && IsDigit(left.back()) && IsDigit(right[0])) {
    AddReading(ReadSymbol('-'), out.words);
    return true;
  }
  if (IsSmallNumber(left) && IsSmallNumber(right) &&
      (IsScoreContext(ctx, 2) || IsScoreWithoutWord(left, right, ctx, 2))) {
    score_read_ = true;
    return false;
  }
  if (IsYearPair(left, right) && NamesSpanOfYears(ctx.Before(2))) return false;
  if (CanOpenRange(left, ctx.Before(2)) && CanCloseRange(right, ctx.Before(2))) {
    AddReading(words::kRangeWord, out.words);
    return true;
  }
  return false;
}

// Whether a word that announces a score ("thắng", "tỷ số") stands among the few pieces before.
bool PieceReader::IsScoreContext(const PieceContext& ctx, std::size_t from) const {
  // A score handed on over a comma ("thắng 6-4, 7-5") opens the next sentence; further on, or
  // after a word that opens a range ("vé từ 5-7 triệu"), two numbers are a range again.
  static const WordTable kRangeOpeners(
      {{"từ", ""}, {"khoảng", ""}, {"tầm", ""}, {"chừng", ""}, {"giá", ""}, {"trong", ""}}, true);
  if (score_carried_ && ctx.index + 1 <= from + 3 && !kRangeOpeners.Contains(ctx.Before(from)))
    return true;
  for (std::size_t n = from; n < from + 6 && !ctx.Before(n).empty(); ++n)
    if (IntroducesScore(ctx.Before(n), ctx.Before(n + 1))) return true;
  return false;
}

// A score that no word announces: two small numbers that go down or stay ("Việt Nam 3-0
// Lào", "2-2"), which no range does, or that stand between two names ("Arsenal 1-2 Chelsea").
// Numbered things (lớp 1-5, Thứ 2-6) keep their range.
bool PieceReader::IsScoreWithoutWord(std::string_view left, std::string_view right,
                                     const PieceContext& ctx, std::size_t from) const {
  static const WordTable kNumbered(
      {{"thứ", ""},    {"ngày", ""}, {"tháng", ""}, {"lớp", ""},    {"khối", ""},  {"phòng", ""},
       {"tầng", ""},   {"số", ""},   {"quận", ""},  {"phường", ""}, {"khu", ""},   {"lô", ""},
       {"chương", ""}, {"phần", ""}, {"mục", ""},   {"điều", ""},   {"khoản", ""}, {"trang", ""},
       {"tập", ""},    {"kỳ", ""},   {"tuần", ""},  {"cấp", ""},    {"hạng", ""},  {"nhóm", ""},
       {"size", ""},   {"cỡ", ""},   {"từ", ""},    {"khoảng", ""}, {"tầm", ""},   {"tuổi", ""}},
      true);
  const std::string_view before = ctx.Before(from);
  if (kNumbered.Contains(before)) return false;
  if (std::stoi(std::string(right)) <= std::stoi(std::string(left))) return true;
  const auto capital = [](std::string_view w) {
    return !w.empty() && IsLetter(w[0]) && ToLowerInternal(w[0]) != w[0];
  };
  return capital(before) && IsAllLetters(before) && capital(ctx.After(from == 1 ? 1 : 2));
}

// "thua 0-3", "tỷ số 2:2": the two numbers of a score, with nothing between them.
bool PieceReader::ReadScore(std::string_view piece, const PieceContext& ctx, PieceWords& out) {
  const std::string_view t = WithoutClosingMarks(piece);
  const std::size_t sep = t.find_first_of("-:");
  if (sep == std::string_view::npos || !IsSmallNumber(t.substr(0, sep)) ||
      !IsSmallNumber(t.substr(sep + 1)) || (t[sep] == ':' && IsTimeToken(t, {})) ||
      ctx.After().starts_with("=") ||
      !(IsScoreContext(ctx, 1) || IsScoreWithoutWord(t.substr(0, sep), t.substr(sep + 1), ctx, 1)))
    return false;
  AddReading(ReadNumber(t.substr(0, sep)), out.words);
  AddReading(ReadNumber(t.substr(sep + 1)), out.words);
  score_read_ = true;
  return true;
}

// "12/2020/TT-BGDĐT", "1234/QĐ-TTg", "Nghị định 100/2019": the number, the year after năm,
// then each code by name.
bool PieceReader::ReadDocument(std::string_view piece, const PieceContext& ctx, int depth,
                               PieceWords& out) {
  const std::string_view t = WithoutClosingMarks(piece);
  if (t.find('/') == std::string_view::npos) return false;
  const bool after_name =
      NamesDocument(ctx.Before(), ctx.Before(2)) ||
      (EqualsIgnoreCase(ctx.Before(), "so\xE1") && NamesDocument(ctx.Before(2), ctx.Before(3)));
  const auto parts = ParseDocumentNumber(t, after_name);
  if (!parts) return false;
  bool first = true;
  for (const DocumentPart& part : *parts) {
    switch (part.kind) {
    case DocumentPart::kNumber:
      if (!first) AddReading(words::kPerWord, out.words);
      AddReading(ReadNumber(part.text), out.words);
      break;
    case DocumentPart::kYear:
      AddReading(words::kYearWord, out.words);
      AddReading(ReadNumber(part.text), out.words);
      break;
    case DocumentPart::kCode:
      ReadCode(part.text, depth, out);
      break;
    }
    first = false;
  }
  return true;
}

// One code of a document number: the table of codes, the user's definitions, or letters and
// a number ("QH14": quốc hội mười bốn), else letter by letter.
bool PieceReader::ReadCode(std::string_view code, int depth, PieceWords& out) {
  if (const std::string* known = ReadDocumentCode(code)) {
    AddReading(*known, out.words);
    return true;
  }
  if (depth < kMaxDepth)
    if (auto definition = FindDefinition(code)) {
      ReadInline(*definition, depth + 1, out);
      return true;
    }
  const std::size_t digit = code.find_first_of("0123456789");
  if (digit != std::string_view::npos && digit > 0) {
    ReadCode(code.substr(0, digit), depth, out);
    AddReading(ReadNumber(code.substr(digit)), out.words);
    return true;
  }
  AddReading(SpellWord(code), out.words);
  return true;
}

// "4,5%/năm", "1,5%/tháng": a rate for each year or month, said một năm, not trên năm.
bool PieceReader::ReadPercentPer(std::string_view piece, int depth, PieceWords& out) {
  const std::string_view t = WithoutClosingMarks(piece);
  const std::size_t slash = t.find('/');
  const std::string_view left = t.substr(0, slash);
  const std::string_view right = t.substr(slash + 1);
  std::size_t number = NumberPrefixLength(left);
  // "6-9%/năm": a range of rates.
  const std::size_t dash =
      number > 0 && number < left.size() && left[number] == '-' ? number : std::string_view::npos;
  if (dash != std::string_view::npos) number += 1 + NumberPrefixLength(left.substr(number + 1));
  if (number == 0 || left.substr(number) != "%" || !IsAllLetters(right) || !IsPerWord(right))
    return false;
  if (dash != std::string_view::npos) {
    AddReading(ReadNumber(left.substr(0, dash)), out.words);
    AddReading(words::kRangeWord, out.words);
    AddReading(ReadExpression(left.substr(dash + 1)), out.words);
  } else {
    AddReading(ReadExpression(left), out.words);
  }
  AddReading(words::kDigitWords[1], out.words); // một
  PieceWords rest{out.words};
  Read(right, {}, depth + 1, rest);
  return true;
}

// "4G", "5G": the network generation, gờ; "4K", "8K": the picture, ca. Only as written in
// capitals: 5g is five grams, 4k four thousand.
bool PieceReader::ReadGenerationOrPicture(std::string_view piece, PieceWords& out) {
  const std::string_view t = WithoutClosingMarks(piece);
  if (t.size() != 2 || !IsDigit(t[0])) return false;
  if (t[1] == 'G' && t[0] >= '2' && t[0] <= '6') {
    AddReading(ReadNumber(t.substr(0, 1)), out.words);
    AddReading(words::kNetworkG, out.words);
    return true;
  }
  if (t[1] == 'K' && (t[0] == '4' || t[0] == '8')) {
    AddReading(ReadNumber(t.substr(0, 1)), out.words);
    AddReading(SpellWord("k"), out.words);
    return true;
  }
  return false;
}

// "năm học 2024-2025", "nhiệm kỳ 2021-2026": one span named by its two years, no đến.
bool PieceReader::ReadSpanOfYears(std::string_view piece, PieceWords& out) {
  const std::string_view t = WithoutClosingMarks(piece);
  const std::size_t dash = t.find('-');
  if (!NamesSpanOfYears(previous_word_) || !IsYearPair(t.substr(0, dash), t.substr(dash + 1)))
    return false;
  AddReading(ReadNumber(t.substr(0, dash)), out.words);
  AddReading(ReadNumber(t.substr(dash + 1)), out.words);
  return true;
}

// "8tr5", "1tr850", "2k5": an amount in chat and shop writing, the digits after tr or k filling
// the next group (tám triệu năm trăm nghìn, một triệu tám trăm năm mươi nghìn, hai nghìn năm
// trăm).
bool PieceReader::ReadAmountWithRest(std::string_view piece, PieceWords& out) {
  const std::string_view t = WithoutClosingMarks(piece);
  std::size_t head = 0;
  while (head < t.size() && IsDigit(t[head]))
    ++head;
  if (head == 0 || head > 3 || t[0] == '0') return false;
  const bool million = t.substr(head).starts_with("tr");
  const bool thousand = t.substr(head).starts_with("k");
  const std::size_t rest = head + (million ? 2 : 1);
  if ((!million && !thousand) || rest >= t.size() || t.size() - rest > 3 ||
      !AllDigits(t.substr(rest)))
    return false;
  std::string group(t.substr(rest));
  group.resize(3, '0');
  AddReading(ReadNumber(t.substr(0, head)), out.words);
  AddReading(million ? words::kMillionWord : words::kThousandWord, out.words);
  AddReading(ReadNumber(group), out.words);
  if (million) AddReading(words::kThousandWord, out.words);
  return true;
}

// "GPA 3.6/4.0", "6,5/10": a mark over the most there is, trên between two decimals.
bool PieceReader::ReadDecimalOverDecimal(std::string_view piece, PieceWords& out) {
  const std::string_view t = WithoutClosingMarks(piece);
  const std::size_t slash = t.find('/');
  const std::string_view left = t.substr(0, slash);
  const std::string_view right = t.substr(slash + 1);
  const auto decimal = [](std::string_view n) {
    const std::size_t sep = n.find_first_of(".,");
    return n.size() <= 6 && sep != std::string_view::npos && sep > 0 && sep + 1 < n.size() &&
           AllDigits(n.substr(0, sep)) && AllDigits(n.substr(sep + 1));
  };
  if (!(decimal(left) || decimal(right)) || !IsNumberToken(left) || !IsNumberToken(right))
    return false;
  AddReading(ReadNumber(left), out.words);
  AddReading(words::kOver, out.words);
  AddReading(ReadNumber(right), out.words);
  return true;
}

// "2024/25", "2024/2025": a season or a school year, the two years one after the other; no
// one writes such a fraction.
bool PieceReader::ReadSeason(std::string_view piece, PieceWords& out) {
  const std::string_view t = WithoutClosingMarks(piece);
  const std::size_t slash = t.find('/');
  const std::string_view first = t.substr(0, slash);
  const std::string_view second = t.substr(slash + 1);
  if (first.size() != 4 || !AllDigits(first) || !AllDigits(second)) return false;
  const int year = std::stoi(std::string(first));
  const bool next = (second.size() == 4 && std::stoi(std::string(second)) == year + 1) ||
                    (second.size() == 2 && std::stoi(std::string(second)) == (year + 1) % 100);
  if (!next || year < 1900 || year > 2099) return false;
  AddReading(ReadNumber(first), out.words);
  AddReading(ReadNumber(second), out.words);
  return true;
}

// "chuyến bay VN123", "tàu SE1", "mã KM50": the letters of a flight or train are spelled, whatever
// they abbreviate elsewhere (KM is no kilometre here), and a number of three digits or more is read
// digit by digit.
bool PieceReader::ReadVehicleCode(std::string_view piece, PieceWords& out) {
  const std::string_view t = WithoutClosingMarks(piece);
  std::size_t letters = 0;
  while (letters < t.size() && t[letters] >= 'A' && t[letters] <= 'Z')
    ++letters;
  if (letters == 0 || letters > 3 || letters == t.size() || !AllDigits(t.substr(letters)) ||
      t.size() - letters > 4 || !IntroducesSpelledCode(previous_word_))
    return false;
  AddReading(SpellWord(t.substr(0, letters)), out.words);
  const std::string_view number = t.substr(letters);
  AddReading(number.size() >= 3 ? ReadDigits(number) : ReadNumber(number), out.words);
  return true;
}

// "Python 3.12", "phiên bản 2.10": after the name of a program or the word bản, the part after
// the point is a number of its own (ba chấm mười hai), not decimals read digit by digit.
bool PieceReader::ReadVersion(std::string_view piece, PieceWords& out) {
  const std::string_view t = WithoutClosingMarks(piece);
  const std::size_t dot = t.find('.');
  if (dot == std::string_view::npos || dot == 0 || dot > 2 || t.size() - dot - 1 != 2 ||
      t[dot + 1] == '0' || !AllDigits(t.substr(0, dot)) || !AllDigits(t.substr(dot + 1)))
    return false;
  const std::string_view before = previous_word_;
  const bool program = !before.empty() && before[0] >= 'A' && before[0] <= 'Z' &&
                       IsAllLetters(before) && !LooksLikeSyllable(LowerInternal(before));
  static const std::string kBan = Utf8ToInternal("bản");
  if (!program && !EqualsIgnoreCase(before, kBan) && !EqualsIgnoreCase(before, "version"))
    return false;
  AddReading(ReadNumber(t.substr(0, dot)), out.words);
  AddReading(words::kDotWord, out.words);
  AddReading(ReadNumber(t.substr(dot + 1)), out.words);
  return true;
}

// "5g muối", "nặng 8g": grams. A number with a small g is an hour only where a time of day
// follows or a word that leads to a time stands before ("8g sáng", "lúc 8g").
bool PieceReader::ReadGrams(std::string_view piece, const PieceContext& ctx, PieceWords& out) {
  const std::string_view t = WithoutClosingMarks(piece);
  if (t.size() < 2 || t.size() > 3 || t.back() != 'g' || !AllDigits(t.substr(0, t.size() - 1)))
    return false;
  if (IsTimeOfDayWord(ctx.After()) || LeadsToTime(ctx.Before())) return false;
  AddReading(ReadNumber(t.substr(0, t.size() - 1)), out.words);
  AddReading(words::kGram, out.words);
  return true;
}

// Two numbers joined by a colon that are no time: the year of a standard ("TCVN 5574:2018",
// "ISO 9001:2015": năm), else a ratio ("1:500": chia), both numbers read as numbers.
bool PieceReader::ReadNumberColonNumber(std::string_view piece, PieceWords& out) {
  const std::string_view t = WithoutClosingMarks(piece);
  const std::size_t colon = t.find(':');
  if (colon == 0 || colon == std::string_view::npos) return false;
  const std::string_view left = t.substr(0, colon);
  const std::string_view right = t.substr(colon + 1);
  // After tỷ lệ even "1:10" is a ratio, not ten past one.
  static const std::string kRatio = Utf8ToInternal("lệ");
  if (!AllDigits(left) || !AllDigits(right) ||
      (IsTimeToken(t, {}) && !EqualsIgnoreCase(previous_word_, kRatio)))
    return false;
  const bool year =
      left.size() >= 3 && right.size() == 4 && (right.starts_with("19") || right.starts_with("20"));
  AddReading(ReadNumber(left), out.words);
  AddReading(year ? words::kYearWord : ReadSymbol(':'), out.words);
  AddReading(ReadNumber(right), out.words);
  return true;
}

// A day and month without a year, after a word that introduces a date ("từ 15/6 đến 20/7",
// "hạn 30/9", "lễ 2/9"), in brackets ("Thứ Hai (15/7)"), or after an earlier date.
bool PieceReader::ReadDayMonth(std::string_view piece, const PieceContext& ctx, PieceWords& out) {
  bool bracketed = false;
  const std::string_view core = DayMonthCore(piece, bracketed);
  if (core.empty()) return false;
  const std::string_view before = ctx.Before();
  const bool after_date =
      (saw_date_ && (before == "-" || before == "," || EqualsIgnoreCase(before, "va\xF8") ||
                     EqualsIgnoreCase(before, words::kRangeWord.substr(0, 4)))) ||
      (before == "-" && IntroducesDate(ctx.Before(3))); // ngày 27 - 28/6
  // A day past the twelfth over a month is no fraction anyone writes, 24/7 aside.
  const std::size_t slash = core.find('/');
  const int day = std::stoi(std::string(core.substr(0, slash)));
  const bool plainly_date = day > 12 && core != "24/7" && !IsAddressWord(before);
  bool before_date = false;
  if (ctx.After() == "-") {
    bool b = false;
    before_date = !DayMonthCore(ctx.After(2), b).empty();
  }
  if (!bracketed && !IntroducesDate(before) && !after_date && !before_date && !plainly_date)
    return false;
  AddReading(ReadDate(core, EqualsIgnoreCase(before, words::kMonth)), out.words);
  saw_date_ = true;
  return true;
}

// "sáng 5-3", "ngày 12-3", "đến 20-3": the press writes a day and month with a dash too. Read
// as a date after a time of day or ngày, or after a date earlier in the sentence, unless a
// unit follows (sáng 8-10 giờ).
bool PieceReader::ReadDashedDayMonth(std::string_view piece, const PieceContext& ctx,
                                     PieceWords& out) {
  const std::string_view t = WithoutClosingMarks(piece);
  const std::size_t dash = t.find('-');
  const std::string_view day = t.substr(0, dash);
  const std::string_view month = t.substr(dash + 1);
  if (day.empty() || day.size() > 2 || month.empty() || month.size() > 2 || !AllDigits(day) ||
      !AllDigits(month))
    return false;
  const int d = std::stoi(std::string(day));
  const int m = std::stoi(std::string(month));
  // Counts per day stay ranges: "mỗi ngày 2-3 lần", "ngày 2-3 tiếng".
  static const WordTable kCounting(
      {{"mỗi", ""}, {"hằng", ""}, {"hàng", ""}, {"một", ""}, {"tiếng", ""}, {"bữa", ""}}, true);
  if (d < 1 || d > 31 || m < 1 || m > 12 || IsPerWord(ctx.After()) ||
      kCounting.Contains(ctx.After()) || kCounting.Contains(ctx.Before(2)))
    return false;
  const std::string_view before = ctx.Before();
  const bool after_date = saw_date_ && (EqualsIgnoreCase(before, words::kRangeWord.substr(0, 4)) ||
                                        EqualsIgnoreCase(before, "va\xF8") || before == ",");
  if (!IsTimeOfDayWord(before) && !after_date) return false;
  AddReading(ReadDate(std::string(day) + "/" + std::string(month), false), out.words);
  saw_date_ = true;
  return true;
}

// A number glued to a defined abbreviation that is no unit or money: "2PN" (hai phòng ngủ).
bool PieceReader::ReadNumberAndDefinition(std::string_view piece, int depth, PieceWords& out) {
  const std::size_t number = NumberPrefixLength(piece);
  if (number == 0 || number == piece.size() || depth >= kMaxDepth) return false;
  const std::string_view rest = piece.substr(number);
  if (!IsAllLetters(rest) || ReadUnit(rest) || ReadCurrencyWord(rest) ||
      EqualsIgnoreCase(rest, "k") || EqualsIgnoreCase(rest, "tr") || IsTimeToken(piece, {}))
    return false;
  const auto definition = FindDefinition(rest);
  if (!definition) return false;
  AddReading(ReadNumber(piece.substr(0, number)), out.words);
  ReadInline(*definition, depth + 1, out);
  out.from_definition = true;
  stores_answered_ = true;
  return true;
}

// Groups of digits joined by points that are no number with thousands (an IP address
// 192.168.1.1, a version 1.2.3): each group on its own, chấm between them.
bool PieceReader::ReadDottedGroups(std::string_view piece, PieceWords& out) {
  const std::string_view t = WithoutClosingMarks(piece);
  std::size_t groups = 0;
  bool thousands = true;
  for (std::size_t start = 0; start <= t.size(); ++groups) {
    std::size_t dot = t.find('.', start);
    if (dot == std::string_view::npos) dot = t.size();
    const std::string_view group = t.substr(start, dot - start);
    if (group.empty() || group.size() > 3 || !AllDigits(group)) return false;
    thousands = thousands && (groups == 0 || group.size() == 3);
    start = dot + 1;
  }
  if (groups < 3 || thousands || IsDateToken(t, {})) return false;
  for (std::size_t start = 0; start <= t.size();) {
    std::size_t dot = t.find('.', start);
    if (dot == std::string_view::npos) dot = t.size();
    if (start > 0) AddReading(words::kDotWord, out.words);
    AddReading(ReadNumber(t.substr(start, dot - start)), out.words);
    start = dot + 1;
  }
  return true;
}

// "quý 3/2023", "quý IV/2023", "học kỳ 1/2024": the period, then năm and the year.
bool PieceReader::ReadPeriodAndYear(std::string_view piece, const PieceContext& ctx,
                                    PieceWords& out) {
  const std::string_view t = WithoutClosingMarks(piece);
  if (t.size() == 7 && t[0] == 'Q' && t[1] >= '1' && t[1] <= '4' && t[2] == '/' &&
      AllDigits(t.substr(3))) { // Q3/2024: the third quarter
    AddReading(words::kQuarter, out.words);
    AddReading(ReadNumber(t.substr(1, 1)), out.words);
    AddReading(words::kYearWord, out.words);
    AddReading(ReadNumber(t.substr(3)), out.words);
    return true;
  }
  if (!TakesPeriodAndYear(ctx.Before())) return false;
  const std::size_t slash = t.find('/');
  if (slash == std::string_view::npos || slash == 0) return false;
  const std::string_view period = t.substr(0, slash);
  const std::string_view year = t.substr(slash + 1);
  if (year.size() != 4 || !AllDigits(year)) return false;
  std::string digits;
  if (AllDigits(period) && period.size() <= 2)
    digits = std::string(period);
  else if (const auto value = RomanNumeralValue(period))
    digits = std::to_string(*value);
  else
    return false;
  AddReading(ReadNumber(digits), out.words);
  AddReading(words::kYearWord, out.words);
  AddReading(ReadNumber(year), out.words);
  return true;
}

// One end of a range glued to the other by a dash: a number, amount, measure, time, date or
// percentage. False, reading nothing, for anything else.
bool PieceReader::ReadRangeSide(std::string_view side, int depth, PieceWords& out) {
  (void)depth;
  if (side.empty() || !(IsDigit(side[0]) || IsCurrencySign(side[0]))) return false;
  if (side.size() > 1 && side[0] == '0' && IsDigit(side[1])) return false; // a code
  if (IsTimeToken(side, {})) {
    AddReading(ReadTime(side), out.words);
    return true;
  }
  if (IsDateToken(side, words::kDate)) {
    AddReading(ReadDate(side), out.words);
    return true;
  }
  if (IsNumberToken(side) && side.find('/') == std::string_view::npos) {
    AddReading(ReadNumber(side), out.words);
    return true;
  }
  if (IsMeasureToken(side)) {
    AddReading(ReadMeasure(side), out.words);
    return true;
  }
  const std::size_t number = NumberPrefixLength(side);
  if (number > 0 && side.substr(number) == "%") {
    AddReading(ReadExpression(side), out.words);
    return true;
  }
  if (IsAmountToken(side, {})) {
    AddReading(ReadAmount(side), out.words);
    return true;
  }
  return false;
}

// Two sides joined by one dash: times ("8h-17h", "7:30-11:30", "8-17h"), dates ("30/4-1/5"),
// amounts ("100.000-200.000đ") and two defined abbreviations ("T2-T6", thứ hai đến thứ sáu),
// read with đến. False, reading nothing, for any other piece.
bool PieceReader::ReadDashedRange(std::string_view piece, int depth, PieceWords& out) {
  const std::string_view t = WithoutClosingMarks(piece);
  const std::size_t dash = t.find('-');
  if (dash == std::string_view::npos || dash == 0 || dash + 1 >= t.size() ||
      t.find('-', dash + 1) != std::string_view::npos)
    return false;
  const std::string_view left = t.substr(0, dash);
  const std::string_view right = t.substr(dash + 1);
  const std::size_t mark = out.words.size();
  const bool right_date = IsDateToken(right, words::kDate);
  if (right_date && AllDigits(left) && left.size() <= 2 &&
      right.find('/') != std::string_view::npos) {
    AddReading(ReadNumber(left), out.words); // 27-28/6: from the 27th to the 28th of June
    AddReading(words::kRangeWord, out.words);
    AddReading(ReadDate(right), out.words);
    return true;
  }
  const bool both_days = IsDateToken(left, words::kDate) == right_date;
  if (both_days && ReadRangeSide(left, depth, out)) {
    AddReading(words::kRangeWord, out.words);
    if (ReadRangeSide(right, depth, out)) return true;
    out.words.resize(mark);
  }
  if (depth >= kMaxDepth || stores_.definitions == nullptr) return false;
  const auto first = FindDefinition(left);
  const auto second = first ? FindDefinition(right) : std::nullopt;
  if (!second) return false;
  ReadInline(*first, depth + 1, out);
  AddReading(words::kRangeWord, out.words);
  ReadInline(*second, depth + 1, out);
  out.from_definition = true;
  stores_answered_ = true;
  return true;
}

// Web and e-mail addresses, part by part: known words (www, com, vn), the user's words
// (google, gmail), runs of unmarked syllables (dichvucong: dịch vụ công), else letter by
// letter; chấm, a còng, gạch chéo, gạch ngang between them.
void PieceReader::ReadWebAddress(std::string_view piece, int depth, PieceWords& out) {
  static const WordTable kSeparators({{"@", "a còng"},
                                      {"/", "gạch chéo"},
                                      {"-", "gạch ngang"},
                                      {"_", "gạch dưới"},
                                      {".", "chấm"},
                                      {":", "hai chấm"},
                                      {"?", "chấm hỏi"},
                                      {"=", "bằng"},
                                      {"&", "và"},
                                      {"#", "thăng"}},
                                     false);
  std::string_view t = piece;
  while (!t.empty() && std::string_view(".,;:!?)").find(t.back()) != std::string_view::npos)
    t.remove_suffix(1);
  std::size_t i = 0;
  while (i < t.size()) {
    const char c = t[i];
    if (IsLetter(c)) {
      std::size_t j = i;
      while (j < t.size() && IsLetter(t[j]))
        ++j;
      const std::string_view part = t.substr(i, j - i);
      const std::string lower = LowerInternal(part);
      if (const std::string* known = WebWords().Find(lower)) {
        AddReading(*known, out.words);
      } else if (auto definition = depth < kMaxDepth ? FindDefinition(part) : std::nullopt) {
        ReadInline(*definition, depth + 1, out);
      } else if (auto syllables = SplitUnmarkedRun(lower)) {
        for (std::string& s : *syllables)
          out.words.push_back(std::move(s));
      } else {
        AddReading(SpellWord(std::string_view(lower).substr(0, kMaxSpelledLetters)), out.words);
      }
      i = j;
    } else if (IsDigit(c)) {
      std::size_t j = i;
      while (j < t.size() && IsDigit(t[j]))
        ++j;
      const std::string_view digits = t.substr(i, j - i);
      AddReading(digits.size() > 3 || digits[0] == '0' ? ReadDigits(digits) : ReadNumber(digits),
                 out.words);
      i = j;
    } else if (t.substr(i, 3) == "://") {
      AddReading(words::kColonWord, out.words);
      AddReading(words::kDoubleSlash, out.words);
      i += 3;
    } else {
      if (const std::string* word = kSeparators.Find(t.substr(i, 1))) AddReading(*word, out.words);
      ++i;
    }
  }
}

// Parts joined by '/': a unit over another ("km/h"), money by a unit ("25.000 đồng/kg": đồng
// một ki lô gam), a count by a time or a thing ("người/phòng": trên), two words otherwise
// ("và/hoặc": both words, no word between).
void PieceReader::ReadSlashed(std::string_view piece, int depth, PieceWords& out) {
  if (auto unit = ReadUnit(piece)) { // km/h, m/s, kWh/ngày
    AddReading(*unit, out.words);
    return;
  }
  std::size_t start = 0;
  std::string_view left;
  while (start <= piece.size()) {
    std::size_t slash = piece.find('/', start);
    if (slash == std::string_view::npos) slash = piece.size();
    const std::string_view part = piece.substr(start, slash - start);
    if (!left.empty() && !part.empty()) {
      // A unit of measure over another, or over a number, is trên (GB/tháng, lít/100km, vòng
      // /phút); money or a count over a unit or a thing is một (đồng/kg, người/phòng, lần/ngày).
      // người/km2: trên; but money over an area is a price, một (20 triệu đồng/m2).
      static const WordTable kScales(
          {{"nghìn", ""}, {"ngàn", ""}, {"triệu", ""}, {"tỷ", ""}, {"tỉ", ""}}, true);
      const bool powered = (part.back() == '2' || part.back() == '3' || part.back() == '\xB2' ||
                            part.back() == '\xB3') &&
                           !IsMoneyPart(left) && !kScales.Contains(left);
      const bool left_unit = IsAllLetters(left) && ReadUnit(left);
      const bool right_unit = IsAllLetters(part) && ReadUnit(part);
      // A rate is a unit over a unit or over a clock unit (mg/kg, lít/phút), anything over a
      // number or a powered unit, a count of turns or beats, money over money.
      const bool rate = (left_unit && (right_unit || IsClockUnit(part))) || IsDigit(part[0]) ||
                        IsTechnicalCount(left) || IsMoneyPart(part) || powered;
      const bool per = IsPerWord(part) || ReadUnit(part) || IsMoneyPart(part) ||
                       (IsDigit(part[0]) && IsMeasureToken(part));
      // Otherwise an amount or a measure is given for each of something: một (GB/tháng,
      // km/lần sạc, 350ml/đơn vị).
      if ((per || left_unit) && rate)
        AddReading(words::kPerWord, out.words);
      else if (per || left_unit || IsMoneyPart(left) || IsMeasureToken(left))
        AddReading(words::kDigitWords[1], out.words); // một
    }
    if (!part.empty()) {
      if (auto unit = IsDigit(part[0]) ? std::nullopt : ReadUnit(part)) {
        AddReading(*unit, out.words);
      } else if (auto money = ReadCurrencyWord(part)) {
        AddReading(*money, out.words);
      } else {
        PieceWords inner{out.words};
        Read(part, {}, depth + 1, inner);
        out.from_definition = out.from_definition || inner.from_definition;
      }
    }
    left = part;
    start = slash + 1;
  }
}

// Letters and numbers glued together ("A4", "H2O", "COVID-19"): each run on its own;
// dashes, dots and brackets between them are silent, other symbols say their word.
void PieceReader::ReadCompound(std::string_view piece, int depth, PieceWords& out,
                               bool digit_by_digit) {
  std::size_t i = 0;
  while (i < piece.size()) {
    const char c = piece[i];
    if (IsLetter(c)) {
      std::size_t j = i;
      while (j < piece.size() && IsLetter(piece[j]))
        ++j;
      const std::string_view letters = piece.substr(i, j - i);
      const std::string lower = LowerInternal(letters);
      const bool after_digit = i > 0 && IsDigit(piece[i - 1]);
      const bool before_digit = j < piece.size() && IsDigit(piece[j]);
      // A unit between two numbers: 1m75 is một mét bảy mươi lăm (but 4G stays letters).
      // And one after the last number: 3x4m, 60x40cm (but 4G stays letters).
      const bool last = j == piece.size();
      auto unit = after_digit && (before_digit || (last && letters != "G")) ? ReadUnit(letters)
                                                                            : std::nullopt;
      const auto roman = i > 0 && piece[i - 1] == '-' && letters.size() > 1
                             ? RomanNumeralValue(letters)
                             : std::nullopt; // RON95-III
      // Q3, P12: the quận or phường of an address, as Q.3 and P.12 are; but "trong Q3" is a
      // quarter of the year.
      const bool quarter = i == 0 && letters == "Q" && piece.size() == 2 && piece[1] >= '1' &&
                           piece[1] <= '4' && IntroducesPeriod(previous_word_);
      auto place = i == 0 && before_digit && (letters == "Q" || letters == "P") && !quarter &&
                           depth < kMaxDepth
                       ? FindDefinition(std::string(letters) + ".")
                       : std::nullopt;
      if (unit) {
        AddReading(*unit, out.words);
      } else if (roman) {
        AddReading(ReadNumber(std::to_string(*roman)), out.words);
      } else if (place) {
        ReadInline(*place, depth + 1, out);
        out.from_definition = true;
      } else if (quarter) {
        AddReading(words::kQuarter, out.words);
      } else if ((after_digit && before_digit && lower == "x" && !digit_by_digit) ||
                 (i == 0 && letters == "x" && before_digit && AllDigits(piece.substr(1)))) {
        AddReading(ReadSymbol('*'), out.words); // 3x4, 1920x1080
      } else if (i == 0 && before_digit && lower == "km") {
        AddReading(words::kKilometre, out.words); // Km42
      } else if (auto definition = depth < kMaxDepth && letters.size() > 1 ? FindDefinition(letters)
                                                                           : std::nullopt) {
        ReadInline(*definition, depth + 1, out);
        out.from_definition = true;
      } else if (letters.size() == 2 && before_digit && IsCapitalPair(letters)) {
        AddReading(SpellWord(lower), out.words); // SE3, a code: ét e, not the syllable se
      } else {
        PieceWords part{out.words};
        ReadLetters(letters, {}, depth, part);
      }
      i = j;
    } else if (IsDigit(c)) {
      // Long runs of digits in a code are read digit by digit (VN123456789, a parcel).
      std::size_t run = i;
      while (run < piece.size() && IsDigit(piece[run]))
        ++run;
      const std::size_t len = NumberPrefixLength(piece.substr(i));
      const std::string_view number = piece.substr(i, len);
      // And so are runs with a leading zero (A00, D01, -0015); a version has groups (v2.3.1).
      if (digit_by_digit || run - i >= 7 || (run - i >= 2 && c == '0')) {
        AddReading(ReadDigits(number), out.words);
      } else if (std::count(number.begin(), number.end(), '.') >= 2) {
        PieceWords groups{out.words};
        if (!ReadDottedGroups(number, groups)) AddReading(ReadNumber(number), out.words);
      } else {
        AddReading(ReadNumber(number), out.words);
      }
      i += len;
    } else {
      if (IsSymbol(c) && c != '-' && c != '.' && c != ',' && c != ':')
        AddReading(ReadSymbol(c), out.words);
      ++i;
    }
  }
}

// Anything else is taken apart by the scanner and read token by token.
void PieceReader::ReadTokens(std::string_view piece, int depth, PieceWords& out) {
  TextSegment segment{std::string(piece)};
  segment.First();
  std::vector<std::string> tokens;
  while (!segment.Next().empty())
    tokens.push_back(segment.current);
  std::vector<std::string_view> views(tokens.begin(), tokens.end());
  for (std::size_t k = 0; k < tokens.size(); ++k) {
    PieceContext inner;
    inner.pieces = views;
    inner.index = k;
    // Inside one piece a dash glued to the number after it, with no number or closing
    // bracket before it, is that number's sign: "x=-2".
    if (tokens[k] == "-" && inner.BeforeNumber() && !inner.AfterNumber() &&
        (k == 0 || tokens[k - 1].back() != ')')) {
      AddReading(words::kNegativeWord, out.words);
      continue;
    }
    if (tokens[k] == "-" && inner.AfterNumber() && inner.BeforeNumber() &&
        !IsTelephoneLabel(previous_word_)) {
      AddReading(ReadSymbol('-'), out.words); // 3-(-2), 10-5+2
      continue;
    }
    PieceWords part{out.words};
    Read(tokens[k], inner, depth + 1, part);
    out.from_definition = out.from_definition || part.from_definition;
  }
}

// The word before the next piece: a label keeps its place while a telephone number is
// read in several pieces ("ĐT: 0912 345 678").
void PieceReader::Remember(std::string_view piece, int mark) {
  if (mark == kTelephone || (mark == kSymbol && IsTelephoneLabel(previous_word_))) return;
  std::string_view word = piece;
  while (word.size() > 1 && (word.back() == ':' || word.back() == ','))
    word.remove_suffix(1);
  if (word.size() > 64) word = word.substr(word.size() - 64);
  if (IsExtraPhoneLabel(word))
    previous_word_ = "tel";
  else
    previous_word_.assign(word);
}

} // namespace vntts
