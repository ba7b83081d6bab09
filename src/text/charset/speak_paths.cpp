// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <string>

#include "core/short_string_map.h"
#include "text/charset/charset_record.h"
#include "text/charset/charsets.h"
#include "text/charset/unicode_codecs.h"
#include "text/charset/utf16_to_legacy.h"
#include "text/charset/working_record.h"

namespace vntts {

namespace {

// Long texts are converted piece by piece so that the intermediate forms stay small and are
// reused. A piece ends just after a blank: every stage looks at most one character ahead, and
// a blank is never part of a multi-byte sequence, a letter + mark pair or a base + combining
// mark pair, so the pieces convert exactly as the whole text would.
constexpr std::size_t kPieceSize = 64 * 1024;

template <typename ConvertPiece>
std::string ConvertInPieces(std::string_view text, std::size_t output_hint, ConvertPiece convert) {
  std::string out;
  out.reserve(output_hint);
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.size();
    if (end - start > kPieceSize) {
      const std::size_t limit = start + kPieceSize;
      const std::size_t blank = text.rfind(' ', limit - 1);
      if (blank != std::string_view::npos && blank >= start) {
        end = blank + 1;
      } else {
        const std::size_t next = text.find(' ', limit);
        end = next == std::string_view::npos ? text.size() : next + 1;
      }
    }
    convert(text.substr(start, end - start), out);
    start = end;
  }
  return out;
}

// Running text repeats its words, and the road through the tables costs far more than a hash
// lookup. A word that ends just after a blank converts exactly as it would inside the whole
// text (the same reason the pieces above are exact), so each distinct word is converted once
// and its result reused. Short texts, long words and texts with too many distinct words
// (random bytes, say) simply go the whole road.
constexpr std::size_t kRememberFrom = 4 * 1024;   // shorter texts are not worth a table
constexpr std::size_t kLongestRemembered = 64;    // bytes of one word, blank included
constexpr std::size_t kMostRemembered = 1u << 14; // distinct words per memo: stays in cache

// Between UTF-8 and the internal text, printable ASCII, tab and line ends are the same bytes
// on both sides: no stage reads them as letters or marks, and no mark follows them in such a
// word (tests/charset/speak_paths_test.cpp checks every pair of these bytes both ways). Words
// made of them alone (numbers, and the many Vietnamese words without marks) are copied.
enum class PlainAscii { kConvert, kCopy };
constexpr std::array<bool, 256> MakePlainAsciiTable() {
  std::array<bool, 256> t{};
  for (int c = 0x20; c < 0x7F; ++c)
    t[static_cast<std::size_t>(c)] = true;
  t['\t'] = t['\n'] = t['\r'] = true;
  return t;
}
constexpr std::array<bool, 256> kPlainAscii = MakePlainAsciiTable();
bool IsPlainAscii(std::string_view word) {
  for (char c : word)
    if (!kPlainAscii[static_cast<unsigned char>(c)]) return false;
  return true;
}

class WordMemo {
public:
  struct Span {
    std::uint32_t offset = 0;
    std::uint32_t length = 0;
  };
  // The remembered conversion of `word`, if there is one.
  bool Find(std::string_view word, std::string_view& result) const {
    const Span* span = words_.Find(word);
    if (span == nullptr) return false;
    result = std::string_view(results_).substr(span->offset, span->length);
    return true;
  }
  bool Full() const { return words_.size() >= kMostRemembered; }
  void Prefetch(std::string_view word) const { words_.Prefetch(word); }
  void Add(std::string_view word, std::string_view converted) {
    words_.Insert(word, {static_cast<std::uint32_t>(results_.size()),
                         static_cast<std::uint32_t>(converted.size())});
    results_.append(converted);
  }

private:
  ShortStringMap<Span> words_;
  std::string results_;
};

template <typename ConvertPiece>
void ConvertByWords(std::string_view text, WordMemo& memo, std::string& out, PlainAscii ascii,
                    ConvertPiece convert) {
  std::string converted;
  std::size_t start = 0;
  std::size_t pending = 0; // start of text not yet converted: runs of unremembered words
  auto flush = [&](std::size_t end) {
    if (end > pending) out += ConvertInPieces(text.substr(pending, end - pending), 0, convert);
    pending = end;
  };
  std::string_view known;
  const auto word_end = [&](std::size_t from) {
    const std::size_t blank = text.find(' ', from);
    return blank == std::string_view::npos ? text.size() : blank + 1;
  };
  std::size_t end = word_end(0);
  while (start < text.size()) {
    const std::size_t next_end = end < text.size() ? word_end(end) : end;
    if (next_end - end <= kLongestRemembered) memo.Prefetch(text.substr(end, next_end - end));
    const std::string_view word = text.substr(start, end - start);
    if (ascii == PlainAscii::kCopy && IsPlainAscii(word)) {
      flush(start);
      out += word;
      pending = end;
    } else if (word.size() <= kLongestRemembered) {
      if (memo.Find(word, known)) {
        flush(start);
        out += known;
        pending = end;
      } else if (!memo.Full()) {
        flush(start);
        converted.clear();
        convert(word, converted);
        out += converted;
        memo.Add(word, converted);
        pending = end;
      }
    }
    start = end;
    end = next_end;
  }
  flush(text.size());
}

template <typename ConvertPiece>
std::string ConvertByWords(std::string_view text, std::size_t output_hint, PlainAscii ascii,
                           ConvertPiece convert) {
  if (text.size() < kRememberFrom) return ConvertInPieces(text, output_hint, convert);
  std::string out;
  out.reserve(output_hint);
  WordMemo memo;
  ConvertByWords(text, memo, out, ascii, convert);
  return out;
}

// Scratch space of one conversion, reused from piece to piece.
struct Scratch {
  std::u16string utf16;
  std::u16string composed;
  std::string windows95;
  std::string pivot;
  std::string legacy;
};

void Windows95ToLegacy(std::string_view windows95vn, int to_index, Scratch& s, std::string& out) {
  ConvertCharset(windows95vn, s.pivot, kEncodingWindows95, kEncodingPivot);
  ExpandFromPivot(s.pivot, s.legacy, to_index);
  out += s.legacy;
}

void LegacyPieceToUtf8(std::string_view piece, int from_index, Scratch& s, std::string& out) {
  ConvertCharset(piece, s.windows95, from_index, kEncodingWindows95);
  MultiByteToUtf16(kCodePageWindows1258, s.windows95, s.utf16);
  ComposeUtf16(s.utf16, s.composed);
  EncodeUtf8(s.composed, out);
}

} // namespace

struct InternalToUtf8Stream::State {
  WordMemo memo;
  Scratch scratch;
};

InternalToUtf8Stream::InternalToUtf8Stream() : state_(std::make_unique<State>()) {}
InternalToUtf8Stream::~InternalToUtf8Stream() = default;

std::string InternalToUtf8Stream::Convert(std::string_view internal) {
  std::string out;
  out.reserve(internal.size() + internal.size() / 2);
  ConvertByWords(internal, state_->memo, out, PlainAscii::kCopy,
                 [&](std::string_view piece, std::string& to) {
                   LegacyPieceToUtf8(piece, kEncodingInternal, state_->scratch, to);
                 });
  return out;
}

std::string AsciiToInternal(std::string_view windows95vn) {
  Scratch s;
  return ConvertInPieces(windows95vn, windows95vn.size() + windows95vn.size() / 4,
                         [&](std::string_view piece, std::string& out) {
                           Windows95ToLegacy(piece, kEncodingInternal, s, out);
                         });
}

std::string Utf8ToLegacy(std::string_view utf8, int to_index) {
  if (WorkingRecord::Stored(to_index) == nullptr) return {};
  std::u16string utf16;
  Utf16ToLegacy to_legacy(to_index);
  const PlainAscii ascii = to_index == kEncodingInternal ? PlainAscii::kCopy : PlainAscii::kConvert;
  return ConvertByWords(utf8, utf8.size(), ascii, [&](std::string_view piece, std::string& out) {
    // A broken sequence becomes '?' rather than the letter that the low byte of U+FFFD
    // would otherwise be; typography and foreign letters are folded to what the internal
    // text can hold (text_folding.h).
    utf16.clear();
    DecodeUtf8(piece, utf16, u'?');
    to_legacy.Append(utf16, out);
  });
}

std::string Utf8ToInternal(std::string_view utf8) {
  return Utf8ToLegacy(utf8, kEncodingInternal);
}

std::string LegacyToUtf8(std::string_view text, int from_index) {
  if (WorkingRecord::Stored(from_index) == nullptr) return {};
  Scratch s;
  const PlainAscii ascii =
      from_index == kEncodingInternal ? PlainAscii::kCopy : PlainAscii::kConvert;
  return ConvertByWords(text, text.size() + text.size() / 2, ascii,
                        [&](std::string_view piece, std::string& out) {
                          LegacyPieceToUtf8(piece, from_index, s, out);
                        });
}

std::string InternalToUtf8(std::string_view internal) {
  return LegacyToUtf8(internal, kEncodingInternal);
}

} // namespace vntts
