// SPDX-License-Identifier: MIT
#include "text/sentence_scan.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "text/char_classes.h"
#include "text/text_segment.h"

namespace vntts {

namespace {

// A run without punctuation is cut after this many pieces, or once its pieces cover this many
// bytes, into sentences without a pause, so that one sentence's words (and the driver's
// buffers) stay bounded on text with no stops.
constexpr std::size_t kMostPiecesPerSentence = 1000;
constexpr std::size_t kMostSentenceBytes = 16 * 1024;

bool IsLineEnd(char c) {
  return c == '\n' || c == '\r';
}

bool IsCutChar(char c) {
  return c == '.' || c == ',' || c == ';' || c == ':' || c == '!' || c == '?';
}

// Closing marks that stay with the punctuation before them: "(xem trang 5.)".
bool IsClosingMark(char c) {
  return c == ')' || c == '"' || c == '\'';
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

bool IsStop(char c) {
  return (kScanTable[static_cast<unsigned char>(c)] & kStop) != 0;
}

bool AllLetters(std::string_view s) {
  return std::all_of(s.begin(), s.end(), [](char c) { return IsLetter(c); });
}

// Chat faces typed with punctuation: ":)", ":))", ":D", ";)", "=))", "^^", "<3". They are not
// read, and their colon does not end a sentence.
bool IsEmoticon(std::string_view s) {
  static constexpr std::string_view kWhole[] = {"^^",  "^_^", "^.^", "-_-", "T_T", "<3", ">.<",
                                                ">_<", "@@",  "xD",  "XD",  "o.O", "=.="};
  for (std::string_view e : kWhole)
    if (s == e) return true;
  std::size_t i = 0;
  if (i < s.size() && (s[i] == ':' || s[i] == ';' || s[i] == '='))
    ++i;
  else
    return false;
  if (i < s.size() && (s[i] == '-' || s[i] == '\'')) ++i;
  const std::size_t face = i;
  while (i < s.size() && std::string_view(")(DdPpVv3oO|*").find(s[i]) != std::string_view::npos)
    ++i;
  if (i == face || i != s.size()) return false;
  // ":3" and ":o" alone also end ratios and labels ("1 :3", "Chú ý :o"): only the faces.
  return s.size() - face >= 2 ||
         std::string_view(")(DPpVv").find(s[face]) != std::string_view::npos;
}

// A capital letter of the internal text: A-Z and the high capitals C0..DE (Đ, Ơ, Ư and the
// capitals that carry a mark byte after them).
bool IsCapital(char c) {
  const auto b = static_cast<unsigned char>(c);
  return (b >= 'A' && b <= 'Z') || (b >= 0xC0 && b <= 0xDE && b != 0xD7);
}

// Abbreviations with a point that always stand before a name or a number: a title (ThS. Lê
// Văn A, Mr. Hùng), a signature (TM. UBND) or a unit of a place (Tp. Hồ Chí Minh, P. Bến Nghé, Q.
// 1). Their point ends no sentence when a capital or a digit follows.
bool IsTitleBeforeName(std::string_view word) {
  static constexpr std::string_view kTitles[] = {
      "Tp", "TP", "Tx", "TX", "Tt", "P", "Q", "H", "ThS", "TS", "PGS", "GS", "BS", "Bs", "KS", "Ks",
      "Ls", "LS", "Ts", "Gs", "Pgs", "Th", "Ng", "Mr", "Mrs", "Ms", "Dr", "GS.TS", "PGS.TS",
      "TS.BS", "BSCKI", "BSCKII",
      // and the signature of an office's letter: TM. UBND, KT. GIÁM ĐỐC, TL. BỘ TRƯỞNG
      "TM", "KT", "TL", "TUQ"};
  while (!word.empty() && word.front() == '(')
    word.remove_prefix(1);
  for (std::string_view t : kTitles)
    if (word == t) return true;
  return false;
}

bool TitleBeforeName(std::string_view text, std::size_t point, std::size_t chunk_start) {
  if (point + 1 >= text.size() || !IsSpaceByte(text[point + 1]) ||
      !IsTitleBeforeName(text.substr(chunk_start, point - chunk_start)))
    return false;
  std::size_t next = point + 1;
  while (next < text.size() && IsSpaceByte(text[next]))
    ++next;
  return next < text.size() && (IsCapital(text[next]) || IsDigit(text[next]));
}

// Whether the punctuation at i ends a sentence rather than belonging to a token.
bool CutsAt(std::string_view text, std::size_t i, std::size_t chunk_start) {
  const char c = text[i];
  const char prev = i > chunk_start ? text[i - 1] : ' ';
  const char next = i + 1 < text.size() && !IsStop(text[i + 1]) ? text[i + 1] : ' ';
  switch (c) {
  case ',':
    return !(IsDigit(prev) && IsDigit(next));
  case '.':
    return !(IsWordChar(prev) && IsWordChar(next)) && !TitleBeforeName(text, i, chunk_start);
  case ':':
    return !(IsWordChar(prev) && (IsWordChar(next) || next == '/'));
  default:
    return true;
  }
}

std::size_t ChunkEnd(std::string_view text, std::size_t i) {
  while (i < text.size() && !IsStop(text[i]))
    ++i;
  return i;
}

// Adds [from, to) as pieces of at most kMostPieceBytes bytes, at most `room` of them; a longer
// run of letters keeps only its first piece. Returns where the pieces added end (the rest of
// a long run that did not fit starts the next sentence).
std::size_t AddPiece(std::string_view text, std::size_t from, std::size_t to, std::size_t room,
                     std::vector<Piece>& out) {
  if (to <= from) return to;
  const bool letters = to - from > kMostPieceBytes && AllLetters(text.substr(from, to - from));
  while (to - from > kMostPieceBytes) {
    if (letters) {
      out.push_back({from, from + kMostPieceBytes});
      return to;
    }
    if (room-- == 0) return from;
    // Cut between two words of a glued run where one ends in the second half ("a1-a1-...").
    std::size_t cut = from + kMostPieceBytes;
    while (cut > from + kMostPieceBytes / 2 && IsLetter(text[cut]) && IsLetter(text[cut - 1]))
      --cut;
    if (IsLetter(text[cut]) && IsLetter(text[cut - 1])) cut = from + kMostPieceBytes;
    out.push_back({from, cut});
    from = cut;
  }
  if (room == 0) return from;
  out.push_back({from, to});
  return to;
}

std::size_t DigitCount(std::string_view s) {
  return static_cast<std::size_t>(
      std::count_if(s.begin(), s.end(), [](char c) { return IsDigit(c); }));
}

// A group of a telephone number: digits with dots, dashes and brackets ("(024)", "3823").
bool IsPhoneGroup(std::string_view s) {
  return DigitCount(s) > 0 && std::all_of(s.begin(), s.end(), [](char c) {
           return IsDigit(c) || c == '.' || c == '-' || c == '(' || c == ')';
         });
}

// Joins the groups of a telephone number written with blanks: "0912 345 678", "(024) 3823 4567",
// "+84 24 3823 4567", "1900 1234". A number that starts with 0 has 9 to 11 digits, one that
// starts with + 8 to 13, a 1900 or 1800 service number 8 or 10.
void JoinPhoneRuns(std::string_view text, std::vector<Piece>& pieces) {
  std::size_t kept = 0;
  for (std::size_t k = 0; k < pieces.size(); ++k) {
    // Most pieces are words: they are kept where they are, without a copy.
    const char lead = text[pieces[k].start];
    if (!(lead == '+' || lead == '(' || lead == '0' || lead == '1')) {
      if (kept != k) pieces[kept] = pieces[k];
      ++kept;
      continue;
    }
    Piece piece = pieces[k];
    std::string_view first = text.substr(piece.start, piece.end - piece.start);
    const bool plus = first.starts_with("+") || first.starts_with("(+");
    const std::size_t digits_from = first.find_first_not_of("(+");
    const std::string_view body = first.substr(std::min(digits_from, first.size()));
    const bool zero = !plus && body.starts_with("0") && body.size() > 1;
    const bool service = !plus && (body == "1900" || body == "1800");
    if (!piece.list_marker && (plus || zero || service) && IsPhoneGroup(body)) {
      std::size_t digits = DigitCount(body);
      std::size_t last = k;
      while (last + 1 < pieces.size() && digits < 13) {
        const Piece& next = pieces[last + 1];
        const std::string_view group = text.substr(next.start, next.end - next.start);
        if (!IsPhoneGroup(group) || next.list_marker ||
            text.substr(pieces[last].end, next.start - pieces[last].end)
                    .find_first_not_of(" \t\xA0") != std::string_view::npos)
          break;
        digits += DigitCount(group);
        ++last;
      }
      const bool fits = plus      ? digits >= 8 && digits <= 13
                        : service ? digits == 8 || digits == 10
                                  : digits >= 9 && digits <= 11;
      if (last > k && fits) {
        piece.end = pieces[last].end;
        piece.phone_run = true;
        k = last;
      }
    }
    pieces[kept++] = piece;
  }
  pieces.resize(kept);
}

// Joins the pieces of numbers written with a blank (or no-break space) between groups of
// three: "12 500", "1 000 000 đồng". The first group has one to three digits, no leading
// zero and no group of digits just before it (so "0912 345 678" and "091 234 567" stay
// telephone numbers), every later one exactly three; the last may carry letters ("12 500đ").
void JoinSpacedNumbers(std::string_view text, std::vector<Piece>& pieces) {
  std::size_t kept = 0;
  for (std::size_t k = 0; k < pieces.size(); ++k) {
    if (!IsDigit(text[pieces[k].start])) {
      if (kept != k) pieces[kept] = pieces[k];
      ++kept;
      continue;
    }
    Piece piece = pieces[k];
    const std::string_view first = text.substr(piece.start, piece.end - piece.start);
    // A group right after another group of digits belongs to something else: 091 234 567.
    const bool after_digits =
        k > 0 && pieces[k - 1].end + 1 == piece.start && IsDigit(text[pieces[k - 1].end - 1]);
    if (!piece.list_marker && !piece.phone_run && !after_digits && AllDigits(first) &&
        first.size() <= 3 && first[0] != '0') {
      while (k + 1 < pieces.size() && pieces[k + 1].start == piece.end + 1 &&
             piece.end - piece.start < kMostPieceBytes) {
        const Piece& next = pieces[k + 1];
        const std::string_view group = text.substr(next.start, next.end - next.start);
        const bool three_digits = group.size() >= 3 && AllDigits(group.substr(0, 3)) &&
                                  (group.size() == 3 || !IsDigit(group[3]));
        if (!three_digits || next.list_marker || next.phone_run) break;
        piece.end = next.end;
        piece.spaced_number = true;
        ++k;
        if (group.size() > 3) break; // letters end the number
      }
    }
    pieces[kept++] = piece;
  }
  pieces.resize(kept);
}

// "1. Giới thiệu" at the start of a line: a number of up to three digits, its point, and more
// text on the line.
bool IsListMarker(std::string_view text, std::size_t from, std::size_t point) {
  if (point == from || point - from > 3 || !AllDigits(text.substr(from, point - from)))
    return false;
  if (point + 1 < text.size() && !IsStop(text[point + 1])) return false;
  std::size_t r = point + 1;
  while (r < text.size() && IsSpaceByte(text[r]))
    ++r;
  return r < text.size() && !IsLineEnd(text[r]);
}

// The run of punctuation (and blanks and closing marks) from `cut` that ends the sentence; the
// heaviest mark gives the pause.
void CloseSentence(std::string_view text, std::size_t cut, bool list_marker, SentenceBounds& b) {
  std::size_t r = cut;
  std::size_t last_mark = cut;
  int weight = 0;
  char terminator = 0;
  while (r < text.size()) {
    const char c = text[r];
    if (IsCutChar(c) || IsLineEnd(c)) {
      const int w = TextSegment::PauseWeight(c);
      if (w > weight) {
        weight = w;
        terminator = c;
      }
      b.ends_line = b.ends_line || IsLineEnd(c);
    } else if (!IsSpaceByte(c) && !IsClosingMark(c)) {
      break;
    }
    if (!IsSpaceByte(c)) last_mark = r;
    ++r;
    if (list_marker) break;
  }
  b.terminator = terminator;
  b.pause_weight = list_marker ? TextSegment::PauseWeight(',') : weight;
  b.next = r;
  b.end = last_mark + 1;
  b.cut = true;
}

} // namespace

bool IsSpaceByte(char c) {
  return IsBlank(c) || c == '\xA0';
}

SentenceBounds ScanSentence(std::string_view text, std::size_t pos, bool at_line_start,
                            std::vector<Piece>& pieces) {
  pieces.clear();
  SentenceBounds b;
  const std::size_t n = text.size();
  std::size_t p = pos;
  std::size_t cut = std::string_view::npos;
  bool list_marker = false;
  bool capped = false;
  while (p < n) {
    const char c = text[p];
    if (IsSpaceByte(c)) {
      ++p;
      continue;
    }
    if (IsLineEnd(c)) {
      cut = p;
      break;
    }
    std::size_t i = p;
    bool cut_here = false;
    // A chunk is looked at no further than one sentence can hold, so that a run of megabytes
    // is not scanned again for every sentence cut from it; a run of letters is passed over
    // whole (only its start is read).
    std::size_t limit = p + kMostSentenceBytes + kMostPieceBytes;
    for (; i < n; ++i) {
      const std::uint8_t k = kScanTable[static_cast<unsigned char>(text[i])];
      if (k & kStop) break;
      if (i == limit) {
        if (!AllLetters(text.substr(p, i - p))) break;
        limit = std::string_view::npos; // letters: on to the end of the run
      }
      if (limit == std::string_view::npos && !IsLetter(text[i])) break;
      if ((k & kCut) && CutsAt(text, i, p)) {
        // A face such as ":)" at the end of a chunk is neither read nor a stop.
        const std::size_t end = ChunkEnd(text, i);
        if (IsEmoticon(text.substr(i, end - i))) {
          AddPiece(text, p, i, kMostPiecesPerSentence, pieces);
          p = end;
          i = std::string_view::npos;
          break;
        }
        cut_here = true;
        break;
      }
    }
    if (i == std::string_view::npos) continue;
    const std::size_t room =
        std::min(kMostPiecesPerSentence - std::min(pieces.size(), kMostPiecesPerSentence),
                 kMostSentenceBytes / kMostPieceBytes);
    const std::size_t added = AddPiece(text, p, i, room, pieces);
    const bool full =
        pieces.size() >= kMostPiecesPerSentence ||
        (!pieces.empty() && pieces.back().end - pieces.front().start > kMostSentenceBytes);
    if (added < i || (!cut_here && full)) {
      p = added;
      capped = true;
      break;
    }
    if (cut_here) {
      cut = i;
      if (text[i] == '.' && at_line_start && pieces.size() == 1 && pieces[0].start == p &&
          IsListMarker(text, p, i)) {
        list_marker = true;
        pieces.back().list_marker = true;
      }
      break;
    }
    p = i;
  }

  JoinPhoneRuns(text, pieces);
  JoinSpacedNumbers(text, pieces);
  if (cut != std::string_view::npos) {
    CloseSentence(text, cut, list_marker, b);
  } else {
    b.next = capped ? p : n;
    b.end = b.next;
    while (b.end > pos && IsSpaceByte(text[b.end - 1])) // trailing blanks belong to no sentence
      --b.end;
  }
  b.start = !pieces.empty() ? pieces.front().start : cut != std::string_view::npos ? cut : pos;
  if (b.end < b.start) b.end = b.start;
  return b;
}

} // namespace vntts
