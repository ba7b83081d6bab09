#include "text/sentence_parser.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "text/char_classes.h"
#include "text/classifier.h"
#include "text/number_reading.h"
#include "text/reading_cache.h"
#include "text/readings.h"
#include "text/roman_numerals.h"
#include "text/syllable.h"
#include "text/text_segment.h"
#include "text/token_class.h"
#include "text/units.h"
#include "text/vocabulary.h"

namespace vntts {

namespace {

using namespace token_class;

// Replacements and definitions may themselves hold words that have replacements; a small
// depth keeps a table that refers to itself from looping.
constexpr int kMaxDepth = 3;
// Longer letter runs are not words of any language; only their start is spelled.
constexpr std::size_t kMaxSpelledLetters = 64;
constexpr std::size_t kMaxSpeakableWord = 40;
constexpr std::size_t kMaxPhraseSegment = 64;
constexpr int kFromDefinitionBit = 0x1000;
// A run without punctuation is cut after this many pieces into sentences without a pause, so
// that one sentence's words (and the driver's buffers) stay bounded on text with no stops.
constexpr std::size_t kMostPiecesPerSentence = 1000;

bool IsLineEnd(char c) {
  return c == '\n' || c == '\r';
}

// The no-break space (A0 in the internal text, as in code page 1258) separates words like a
// blank; it is also the usual thousands separator of "12 500".
constexpr char kNoBreakSpace = '\xA0';
bool IsSpace(char c) {
  return IsBlank(c) || c == kNoBreakSpace;
}

bool IsCutChar(char c) {
  return c == '.' || c == ',' || c == ';' || c == ':' || c == '!' || c == '?';
}

enum : std::uint8_t { kStop = 1, kCut = 2 };
constexpr std::array<std::uint8_t, 256> MakeScanTable() {
  std::array<std::uint8_t, 256> t{};
  for (char c : std::string_view(" \t\r\n\xA0"))
    t[static_cast<unsigned char>(c)] = kStop;
  for (char c : std::string_view(".,;:!?"))
    t[static_cast<unsigned char>(c)] = kCut;
  return t;
}
constexpr std::array<std::uint8_t, 256> kScanTable = MakeScanTable();
constexpr std::size_t Byte(char c) {
  return static_cast<unsigned char>(c);
}

// Closing marks that stay with the punctuation before them: "(xem trang 5.)".
bool IsClosingMark(char c) {
  return c == ')' || c == '"' || c == '\'';
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

// Labels after which a number is a telephone number, beyond the classifier's own list.
bool IsExtraPhoneLabel(std::string_view word) {
  static constexpr std::string_view kLabels[] = {"\xF1t", "s\xF1t", "d\xF1", "hotline",
                                                 "fax",   "mobile", "zalo",  "mob"};
  if (word.size() > 7) return false;
  for (std::string_view label : kLabels)
    if (EqualsIgnoreCase(word, label)) return true;
  return false;
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

bool LooksLikeWebAddress(std::string_view t) {
  const std::string lower = LowerInternal(t.substr(0, std::min<std::size_t>(t.size(), 8)));
  if (t.find("://") != std::string_view::npos || lower.starts_with("www.")) return true;
  const std::size_t at = t.find('@');
  return at != std::string_view::npos && at > 0 && IsWordChar(t[at - 1]) &&
         t.find('.', at) != std::string_view::npos && at + 1 < t.size() && IsWordChar(t[at + 1]);
}

struct PieceContext {
  bool listMarker = false;
  bool afterNumber = false;  // the piece before ends in a digit ("5 km")
  bool beforeNumber = false; // the piece after starts with a digit ("5 - 3")
};

// The words of one piece go to the end of a list shared by the whole sentence.
struct PieceWords {
  std::vector<std::string>& words;
  int mark = kWord;
  bool fromDefinition = false;
};

class PieceReader {
public:
  PieceReader(const FrontEndStores& stores, std::string& previousWord, ReadingCache& cache)
      : stores_(stores), previousWord_(previousWord), cache_(cache) {}

  void Read(std::string_view piece, const PieceContext& ctx, int depth, PieceWords& out) {
    if (piece.empty()) return;
    // A word of letters alone reads the same wherever it stands, unless it is a unit after a
    // number, a numeral after a word that takes one, or one of the stores has a say.
    const bool plain = depth == 0 && !ctx.listMarker &&
                       piece.size() <= ReadingCache::kLongestPiece && IsAllLetters(piece) &&
                       !HasRomanNumeralLetters(piece) && // "XXI" depends on the word before it
                       !(ctx.afterNumber && ReadUnit(piece));
    if (plain) {
      if (const auto* known = cache_.Find(piece)) {
        ReadingCache::AppendWords(*known, out.words);
        out.mark = known->mark;
        Remember(piece, known->mark);
        return;
      }
    }
    const std::size_t firstWord = out.words.size();
    storesAnswered_ = false;
    if (depth < kMaxDepth && stores_.definitions != nullptr) {
      if (auto definition = FindDefinition(piece)) {
        out.mark = kCompound;
        out.fromDefinition = true;
        ReadInline(*definition, depth + 1, out);
        Remember(piece, kCompound);
        storesAnswered_ = true;
        return;
      }
      // An abbreviation with its point glued to what follows: "Q.1", "P.Bến", "Tr.5".
      const std::size_t dot = piece.find('.');
      if (dot != std::string_view::npos && dot > 0 && dot + 1 < piece.size() &&
          IsAllLetters(piece.substr(0, dot)))
        if (auto head = FindDefinition(piece.substr(0, dot + 1))) {
          out.mark = kCompound;
          out.fromDefinition = true;
          ReadInline(*head, depth + 1, out);
          PieceWords rest{out.words};
          Read(piece.substr(dot + 1), {}, depth + 1, rest);
          Remember(piece, kCompound);
          storesAnswered_ = true;
          return;
        }
    }
    const int mark = ReadUndefined(piece, ctx, depth, out);
    out.mark = mark;
    Remember(piece, mark);
    if (plain && !storesAnswered_) cache_.Add(piece, mark, out.words, firstWord);
  }

  // Text that stands in for one piece (a definition or a replacement): its blank-separated
  // pieces in turn, punctuation at their ends dropped.
  void ReadInline(std::string_view text, int depth, PieceWords& out) {
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
        out.fromDefinition = out.fromDefinition || inner.fromDefinition;
      }
      i = j;
    }
  }

private:
  std::optional<std::string> FindDefinition(std::string_view piece) const {
    auto definition = stores_.definitions->FindDefinition(piece);
    if (!definition) {
      const std::string lower = LowerInternal(piece);
      if (lower != piece) definition = stores_.definitions->FindDefinition(lower);
    }
    return definition;
  }

  bool Speakable(const std::string& lower) const {
    if (lower.size() > kMaxSpeakableWord) return false;
    return stores_.speakable != nullptr ? stores_.speakable->CanSpeak(lower)
                                        : LooksLikeSyllable(lower);
  }

  // The words of a reading; a word of input letters that no Vietnamese reader would take
  // for a syllable ("www", "vn") is spelled.
  static void AddReading(std::string_view reading, PieceWords& out) {
    std::size_t i = 0;
    while (i < reading.size()) {
      while (i < reading.size() && IsBlank(reading[i]))
        ++i;
      std::size_t j = i;
      while (j < reading.size() && !IsBlank(reading[j]))
        ++j;
      if (j > i) {
        const std::string word = LowerInternal(reading.substr(i, j - i));
        if (IsAllLetters(word) && !LooksLikeSyllable(word))
          AddSpelled(word, out);
        else
          out.words.push_back(word);
      }
      i = j;
    }
  }

  static void AddSpelled(std::string_view word, PieceWords& out) {
    if (word.size() > kMaxSpelledLetters) word = word.substr(0, kMaxSpelledLetters);
    const std::string spelled = SpellWord(word);
    std::size_t i = 0;
    while (i < spelled.size()) {
      while (i < spelled.size() && spelled[i] == ' ')
        ++i;
      std::size_t j = i;
      while (j < spelled.size() && spelled[j] != ' ')
        ++j;
      if (j > i) out.words.emplace_back(spelled.substr(i, j - i));
      i = j;
    }
  }

  int ReadLetters(std::string_view piece, int depth, PieceWords& out) {
    std::string lower = LowerInternal(piece);
    if (TakesRomanNumeral(previousWord_))
      if (const auto value = RomanNumeralValue(piece)) { // thế kỷ XXI, chương IV, lần thứ IV
        const std::string digits = std::to_string(*value);
        const auto special = ReadAfterWord(previousWord_, digits);
        AddReading(special ? *special : ReadNumber(digits), out);
        return kNumber;
      }
    if (Speakable(lower)) {
      out.words.push_back(std::move(lower));
      return kWord;
    }
    if (auto money = ReadCurrencyWord(lower)) {
      AddReading(*money, out);
      return kAmount;
    }
    if (ReplaceByAutoCorrect(piece, depth, out)) return kWord;
    AddSpelled(lower, out);
    return kSpelled;
  }

  bool ReplaceByAutoCorrect(std::string_view piece, int depth, PieceWords& out) {
    if (depth >= kMaxDepth || stores_.autoCorrect == nullptr) return false;
    auto replacement = stores_.autoCorrect->FindReplacement(piece);
    if (!replacement) { // "iPhone", "YouTube": the table holds words as written and capitalised
      const std::string lower = LowerInternal(piece);
      if (lower != piece) replacement = stores_.autoCorrect->FindReplacement(lower);
    }
    if (!replacement || *replacement == piece) return false;
    ReadInline(*replacement, depth + 1, out);
    storesAnswered_ = true;
    return true;
  }

  int ReadUndefined(std::string_view piece, const PieceContext& ctx, int depth, PieceWords& out) {
    if (ctx.afterNumber)
      if (auto unit = ReadUnit(piece)) { // 5 km, 30 °C, 60 km/h
        AddReading(*unit, out);
        return kMeasure;
      }
    if (IsAllLetters(piece)) return ReadLetters(piece, depth, out);
    if (ctx.listMarker) {
      AddReading(ReadNumber(piece), out);
      return kDriverNumber;
    }
    if (ReplaceByAutoCorrect(piece, depth, out)) return kWord;
    const bool phoneLabel = IsTelephoneLabel(previousWord_);
    if (!phoneLabel && LooksLikePhoneNumber(piece)) {
      if (piece[0] == '+') AddReading(ReadSymbol('+'), out);
      AddReading(ReadPhone(piece.substr(piece[0] == '+' ? 1 : 0)), out);
      return kTelephone;
    }
    if (LooksLikeWebAddress(piece)) {
      AddReading(ReadAddress(piece), out);
      return kAddress;
    }
    if (piece == "\xB1") { // 5 ± 2
      AddReading(words::kPlusMinus, out);
      return kSymbol;
    }
    if (ReadDashedRange(piece, depth, out)) return kRange;
    int cls = Classify(piece, previousWord_);
    if (cls == kSymbol && (piece[0] == '-' || piece[0] == ':')) {
      // A dash between words, or after a telephone label, is punctuation; between two
      // numbers it is the minus sign or the ratio.
      if (!(ctx.afterNumber && ctx.beforeNumber) || phoneLabel) return kSymbol;
    }
    if (cls == kSlashedWords) {
      AddReading(ReadOver(piece), out);
      return kOver;
    }
    if (cls != kNone) {
      if (auto reading = Normalise(cls, piece, previousWord_)) AddReading(*reading, out);
      return cls;
    }
    const std::size_t slash = piece.find('/');
    if (slash != std::string_view::npos && slash > 0 && slash + 1 < piece.size() &&
        IsWordChar(piece[slash - 1]) && IsWordChar(piece[slash + 1])) {
      AddReading(ReadOver(piece), out);
      return kOver;
    }
    if (depth > 0 || piece.size() == 1 || IsGluedCompound(piece)) {
      ReadCompound(piece, depth, out);
      return kCompound;
    }
    // Anything else is taken apart by the scanner and read token by token.
    TextSegment segment{std::string(piece)};
    segment.First();
    std::vector<std::string> tokens;
    while (!segment.Next().empty())
      tokens.push_back(segment.current);
    for (std::size_t k = 0; k < tokens.size(); ++k) {
      PieceContext inner;
      inner.afterNumber = k > 0 && IsDigit(tokens[k - 1].back());
      inner.beforeNumber = k + 1 < tokens.size() && IsDigit(tokens[k + 1].front());
      // Inside one piece a dash glued to the number after it, with no number or closing
      // bracket before it, is that number's sign: "x=-2".
      if (tokens[k] == "-" && inner.beforeNumber && !inner.afterNumber &&
          (k == 0 || tokens[k - 1].back() != ')')) {
        AddReading(words::kNegativeWord, out);
        continue;
      }
      PieceWords part{out.words};
      Read(tokens[k], inner, depth + 1, part);
      out.fromDefinition = out.fromDefinition || part.fromDefinition;
    }
    return kNone;
  }

  // Two sides joined by one dash that the classifier would not read as a range: times
  // ("8h-17h", "7:30-11:30", "8-17h", read with đến) and two defined abbreviations ("T2-T6",
  // thứ hai đến thứ sáu). False, reading nothing, for any other piece.
  bool ReadDashedRange(std::string_view piece, int depth, PieceWords& out) {
    const std::size_t dash = piece.find('-');
    if (dash == std::string_view::npos || dash == 0 || dash + 1 >= piece.size() ||
        piece.find('-', dash + 1) != std::string_view::npos)
      return false;
    const std::string_view left = piece.substr(0, dash);
    const std::string_view right = piece.substr(dash + 1);
    if (IsTimeToken(right, {})) {
      const bool leftTime = IsTimeToken(left, {});
      const bool leftHour = left.size() <= 2 && IsDigit(left[0]) && IsDigit(left.back()) &&
                            std::stoi(std::string(left)) <= 24;
      if (!leftTime && !leftHour) return false;
      AddReading(leftTime ? ReadTime(left) : ReadNumber(left), out);
      AddReading(words::kRangeWord, out);
      AddReading(ReadTime(right), out);
      return true;
    }
    if (depth >= kMaxDepth || stores_.definitions == nullptr) return false;
    const auto first = FindDefinition(left);
    const auto second = first ? FindDefinition(right) : std::nullopt;
    if (!second) return false;
    ReadInline(*first, depth + 1, out);
    AddReading(words::kRangeWord, out);
    ReadInline(*second, depth + 1, out);
    out.fromDefinition = true;
    storesAnswered_ = true;
    return true;
  }

  // Letters and numbers glued together ("A4", "H2O", "COVID-19"): each run on its own;
  // dashes, dots and brackets between them are silent, other symbols say their word.
  void ReadCompound(std::string_view piece, int depth, PieceWords& out) {
    std::size_t i = 0;
    while (i < piece.size()) {
      const char c = piece[i];
      if (IsLetter(c)) {
        std::size_t j = i;
        while (j < piece.size() && IsLetter(piece[j]))
          ++j;
        const std::string_view letters = piece.substr(i, j - i);
        // A unit between two numbers: 1m75 is một mét bảy mươi lăm (but 4G stays letters).
        const bool betweenNumbers =
            i > 0 && IsDigit(piece[i - 1]) && j < piece.size() && IsDigit(piece[j]);
        if (auto unit = betweenNumbers ? ReadUnit(letters) : std::nullopt)
          AddReading(*unit, out);
        else
          ReadLetters(letters, depth, out);
        i = j;
      } else if (IsDigit(c)) {
        const std::size_t len = NumberPrefixLength(piece.substr(i));
        AddReading(ReadNumber(piece.substr(i, len)), out);
        i += len;
      } else {
        if (IsSymbol(c) && c != '-' && c != '.' && c != ',' && c != ':')
          AddReading(ReadSymbol(c), out);
        ++i;
      }
    }
  }

  // The word before the next piece: a label keeps its place while a telephone number is
  // read in several pieces ("ĐT: 0912 345 678").
  void Remember(std::string_view piece, int mark) {
    if (mark == kTelephone || (mark == kSymbol && IsTelephoneLabel(previousWord_))) return;
    std::string_view word = piece;
    while (word.size() > 1 && (word.back() == ':' || word.back() == ','))
      word.remove_suffix(1);
    if (word.size() > 64) word = word.substr(word.size() - 64);
    if (IsExtraPhoneLabel(word))
      previousWord_ = "tel";
    else
      previousWord_.assign(word);
  }

  const FrontEndStores& stores_;
  std::string& previousWord_;
  ReadingCache& cache_;
  // Set when a definition or an auto-correct pair took part in the reading under way.
  bool storesAnswered_ = false;
};

struct PieceSpan {
  std::size_t start = 0;
  std::size_t end = 0;
  bool listMarker = false;
  bool spacedNumber = false; // "12 500": groups of a number with blanks between them
};

bool AllDigits(std::string_view s) {
  return !s.empty() && std::all_of(s.begin(), s.end(), [](char c) { return IsDigit(c); });
}

// Joins the pieces of numbers written with a blank (or no-break space) between groups of
// three: "12 500", "1 000 000 đồng". The first group has one to three digits, no leading
// zero and no group of digits just before it (so "0912 345 678" and "091 234 567" stay
// telephone numbers), every later one exactly three; the last may carry letters ("12 500đ").
void JoinSpacedNumbers(std::string_view text, std::vector<PieceSpan>& pieces) {
  std::size_t kept = 0;
  for (std::size_t k = 0; k < pieces.size(); ++k) {
    PieceSpan piece = pieces[k];
    const std::string_view first = text.substr(piece.start, piece.end - piece.start);
    // A group right after another group of digits belongs to something else: 091 234 567.
    const bool afterDigits =
        k > 0 && pieces[k - 1].end + 1 == piece.start && IsDigit(text[pieces[k - 1].end - 1]);
    if (!piece.listMarker && !afterDigits && AllDigits(first) && first.size() <= 3 &&
        first[0] != '0') {
      while (k + 1 < pieces.size() && pieces[k + 1].start == piece.end + 1) {
        const PieceSpan& next = pieces[k + 1];
        const std::string_view group = text.substr(next.start, next.end - next.start);
        const bool threeDigits = group.size() >= 3 && AllDigits(group.substr(0, 3)) &&
                                 (group.size() == 3 || !IsDigit(group[3]));
        if (!threeDigits || next.listMarker) break;
        piece.end = next.end;
        piece.spacedNumber = true;
        ++k;
        if (group.size() > 3) break; // letters end the number
      }
    }
    pieces[kept++] = piece;
  }
  pieces.resize(kept);
}

} // namespace

SentenceParser::SentenceParser(std::string_view text, FrontEndStores stores,
                               PhraseTexts phraseTexts)
    : text_(text), stores_(stores), phraseTexts_(phraseTexts) {}

void SentenceParser::Reset() {
  pos_ = 0;
  readings_.Clear();
  previousWord_.clear();
  atLineStart_ = true;
  yieldedAny_ = false;
}

bool SentenceParser::Next(Sentence& out) {
  const std::size_t n = text_.size();
  auto isStop = [&](std::size_t i) { return (kScanTable[Byte(text_[i])] & kStop) != 0; };
  // Whether the punctuation at i ends a sentence rather than belonging to a token.
  auto cutAt = [&](std::size_t i, std::size_t chunkStart) {
    const char c = text_[i];
    const char prev = i > chunkStart ? text_[i - 1] : ' ';
    const char next = i + 1 < n && !isStop(i + 1) ? text_[i + 1] : ' ';
    switch (c) {
    case ',':
      return !(IsDigit(prev) && IsDigit(next));
    case '.':
      return !(IsWordChar(prev) && IsWordChar(next));
    case ':':
      return !(IsWordChar(prev) && (IsWordChar(next) || next == '/'));
    default:
      return true;
    }
  };

  while (pos_ < n) {
    Sentence s;
    s.start = pos_;
    const bool sentenceAtLineStart = atLineStart_;
    std::vector<PieceSpan> pieces;
    std::size_t p = pos_;
    std::size_t cut = std::string_view::npos;
    bool listMarker = false;
    bool capped = false;
    while (p < n) {
      const char c = text_[p];
      if (IsSpace(c)) {
        ++p;
        continue;
      }
      if (IsLineEnd(c)) {
        cut = p;
        break;
      }
      std::size_t i = p;
      bool cutHere = false;
      for (; i < n; ++i) {
        const std::uint8_t k = kScanTable[Byte(text_[i])];
        if (k & kStop) break;
        if ((k & kCut) && cutAt(i, p)) {
          cutHere = true;
          break;
        }
      }
      if (i > p) pieces.push_back({p, i, false});
      if (!cutHere && pieces.size() >= kMostPiecesPerSentence) {
        p = i;
        capped = true;
        break;
      }
      if (cutHere) {
        cut = i;
        // "1. Giới thiệu" at the start of a line: a list marker, not the end of a sentence.
        const bool chunkEndsHere = i + 1 == n || isStop(i + 1);
        if (text_[i] == '.' && sentenceAtLineStart && pieces.size() == 1 && chunkEndsHere &&
            i - p <= 3 && i > p &&
            std::all_of(text_.begin() + static_cast<std::ptrdiff_t>(p),
                        text_.begin() + static_cast<std::ptrdiff_t>(i),
                        [](char d) { return IsDigit(d); })) {
          std::size_t r = i + 1;
          while (r < n && IsSpace(text_[r]))
            ++r;
          if (r < n && !IsLineEnd(text_[r])) {
            listMarker = true;
            pieces.back().listMarker = true;
          }
        }
        break;
      }
      p = i;
    }

    JoinSpacedNumbers(text_, pieces);
    bool sawLineEnd = false;
    if (cut != std::string_view::npos) {
      // The run of punctuation (and blanks and closing marks) that ends the sentence; the
      // heaviest mark gives the pause.
      std::size_t r = cut;
      std::size_t lastMark = cut;
      int weight = 0;
      char terminator = 0;
      while (r < n) {
        const char c = text_[r];
        if (IsCutChar(c) || IsLineEnd(c)) {
          const int w = TextSegment::PauseWeight(c);
          if (w > weight) {
            weight = w;
            terminator = c;
          }
          sawLineEnd = sawLineEnd || IsLineEnd(c);
        } else if (!IsSpace(c) && !IsClosingMark(c)) {
          break;
        }
        if (!IsSpace(c)) lastMark = r;
        ++r;
        if (listMarker) break;
      }
      s.terminator = terminator;
      s.pauseWeight = listMarker ? TextSegment::PauseWeight(',') : weight;
      p = r;
      s.end = lastMark + 1;
    } else {
      if (!capped) p = n;
      s.end = p;
    }
    pos_ = p;
    if (!pieces.empty())
      s.start = pieces.front().start;
    else if (cut != std::string_view::npos)
      s.start = cut;
    atLineStart_ = sawLineEnd;
    // Trailing blanks belong to no sentence.
    if (cut == std::string_view::npos) {
      while (s.end > s.start && IsSpace(text_[s.end - 1]))
        --s.end;
    }

    PieceReader reader(stores_, previousWord_, readings_);
    flatWords_.clear();
    pieceWords_.assign(pieces.size() + 1, 0);
    pieceMarks_.assign(pieces.size(), 0);
    for (std::size_t k = 0; k < pieces.size(); ++k) {
      PieceContext ctx;
      ctx.listMarker = pieces[k].listMarker;
      ctx.afterNumber = k > 0 && IsDigit(text_[pieces[k - 1].end - 1]);
      ctx.beforeNumber = k + 1 < pieces.size() && IsDigit(text_[pieces[k + 1].start]);
      PieceWords read{flatWords_};
      const std::string_view piece = text_.substr(pieces[k].start, pieces[k].end - pieces[k].start);
      if (pieces[k].spacedNumber) {
        std::string joined;
        for (char c : piece)
          if (!IsSpace(c)) joined += c;
        reader.Read(joined, ctx, 0, read);
      } else {
        reader.Read(piece, ctx, 0, read);
      }
      pieceWords_[k + 1] = flatWords_.size();
      pieceMarks_[k] = read.mark | (read.fromDefinition ? kFromDefinitionBit : 0);
    }
    // A telephone label does not reach over the end of a sentence, except a colon's.
    if (s.terminator != ':' && s.terminator != 0 && IsTelephoneLabel(previousWord_))
      previousWord_.clear();

    // Phrases are two words, so only short spoken pieces can take part in one.
    const bool fillPhrases = phraseTexts_ == PhraseTexts::Fill;
    segmentTexts_.resize(pieces.size() + 1);
    for (std::size_t k = 0; fillPhrases && k <= pieces.size(); ++k) {
      std::string& text = segmentTexts_[k];
      text.clear();
      if (k == pieces.size()) break;
      std::size_t bytes = 0;
      for (std::size_t w = pieceWords_[k]; w < pieceWords_[k + 1]; ++w)
        bytes += flatWords_[w].size() + 1;
      if (bytes > kMaxPhraseSegment) continue;
      for (std::size_t w = pieceWords_[k]; w < pieceWords_[k + 1]; ++w) {
        if (!text.empty()) text += ' ';
        text += flatWords_[w];
      }
    }
    // The spoken text of the next piece that has words.
    nextPiece_.assign(pieces.size(), pieces.size());
    for (std::size_t k = pieces.size(); k-- > 1;)
      nextPiece_[k - 1] = pieceWords_[k + 1] > pieceWords_[k] ? k : nextPiece_[k];

    // Fill the caller's sentence in place so that its strings keep their storage.
    std::vector<SpokenWord> words = std::move(out.words);
    words.resize(flatWords_.size());
    for (std::size_t k = 0; k < pieces.size(); ++k)
      for (std::size_t w = pieceWords_[k]; w < pieceWords_[k + 1]; ++w) {
        SpokenWord& spoken = words[w];
        spoken.word.swap(flatWords_[w]);
        spoken.start = pieces[k].start;
        spoken.end = pieces[k].end;
        spoken.mark = pieceMarks_[k] & ~kFromDefinitionBit;
        spoken.fromDefinition = (pieceMarks_[k] & kFromDefinitionBit) != 0;
        spoken.lookahead.clear();
        if (!fillPhrases) {
          spoken.segmentText.clear();
          spoken.nextSegmentText.clear();
          continue;
        }
        spoken.segmentText = segmentTexts_[k];
        spoken.nextSegmentText = segmentTexts_[nextPiece_[k]];
        if (w > pieceWords_[k]) words[w - 1].lookahead = spoken.word;
      }
    s.words = std::move(words);
    // Punctuation before the first word of the text is not a sentence of its own.
    if (s.words.empty() && !yieldedAny_ && pieces.empty()) continue;
    yieldedAny_ = true;
    out = std::move(s);
    return true;
  }
  return false;
}

std::vector<std::string> SpokenLines(std::string_view text, FrontEndStores stores) {
  std::vector<std::string> lines;
  SentenceParser parser(text, stores);
  Sentence s;
  while (parser.Next(s)) {
    if (s.words.empty()) continue;
    std::string line;
    for (const auto& w : s.words) {
      if (!line.empty()) line += ' ';
      line += w.word;
    }
    lines.push_back(std::move(line));
  }
  return lines;
}

} // namespace vntts
