// SPDX-License-Identifier: MIT
#include "text/sentence_parser.h"

#include <algorithm>

#include "text/char_classes.h"
#include "text/classifier.h"
#include "text/context_words.h"
#include "text/piece_reader.h"
#include "text/roman_numerals.h"

namespace vntts {

namespace {

constexpr std::size_t kMaxPhraseSegment = 64;
// A sentence stops taking pieces once it holds this many words (a number of thousands of
// digits, a run of glued codes): the rest becomes the next sentence, without a pause, so that
// the words of one sentence, and the driver's buffers for them, stay small.
constexpr std::size_t kMostWordsPerSentence = 4096;

} // namespace

SentenceParser::SentenceParser(std::string_view text, FrontEndStores stores,
                               PhraseTexts phrase_texts)
    : text_(text), stores_(stores), phrase_texts_(phrase_texts) {}

void SentenceParser::Reset() {
  pos_ = 0;
  readings_.Clear();
  previous_word_.clear();
  at_line_start_ = true;
  yielded_any_ = false;
  sentence_scored_ = false;
  score_carried_ = false;
}

bool SentenceParser::Next(Sentence& out) {
  while (pos_ < text_.size()) {
    SentenceBounds bounds = ScanSentence(text_, pos_, at_line_start_, pieces_);
    const bool complete = ReadPieces(bounds);
    pos_ = bounds.next;
    at_line_start_ = complete && bounds.ends_line;
    // A telephone label does not reach over the end of a sentence, except a colon's.
    if (bounds.terminator != ':' && bounds.terminator != 0 && IsTelephoneLabel(previous_word_))
      previous_word_.clear();
    score_carried_ = sentence_scored_ && (bounds.terminator == ',' || bounds.terminator == ':' ||
                                          bounds.terminator == ';');
    // Punctuation before the first word of the text is not a sentence of its own.
    if (words_.empty() && !yielded_any_ && pieces_.empty()) continue;
    yielded_any_ = true;
    Sentence s;
    s.start = bounds.start;
    s.end = bounds.end;
    s.terminator = bounds.terminator;
    s.pause_weight = bounds.pause_weight;
    s.words = std::move(out.words);
    out = std::move(s);
    if (phrase_texts_ == PhraseTexts::kFill) FillPhraseTexts();
    EmitWords(out);
    return true;
  }
  return false;
}

bool SentenceParser::ReadPieces(SentenceBounds& bounds) {
  piece_texts_.clear();
  for (const Piece& piece : pieces_)
    piece_texts_.push_back(text_.substr(piece.start, piece.end - piece.start));
  words_.clear();
  PieceReader reader(stores_, previous_word_, readings_);
  reader.StartSentence(score_carried_);
  std::string joined;
  for (std::size_t k = 0; k < pieces_.size(); ++k) {
    Piece& piece = pieces_[k];
    PieceContext ctx;
    ctx.pieces = piece_texts_;
    ctx.index = k;
    // "II. Viết", "III. Nghe": a Roman numeral alone before its point heads a part when more
    // text follows (but "size M, L." ends on a size).
    ctx.list_marker = piece.list_marker || (pieces_.size() == 1 && bounds.terminator == '.' &&
                                            bounds.next < text_.size() && piece_texts_[k] != "L" &&
                                            RomanNumeralValue(piece_texts_[k]).has_value());
    ctx.phone_run = piece.phone_run;
    PieceWords read{words_};
    piece.first_word = words_.size();
    std::string_view text = piece_texts_[k];
    if (piece.spaced_number) {
      joined.clear();
      for (char c : text)
        if (!IsSpaceByte(c)) joined += c;
      text = joined;
    }
    reader.Read(text, ctx, 0, read);
    piece.end_word = words_.size();
    piece.mark = read.mark;
    piece.from_definition = read.from_definition;
    if (words_.size() >= kMostWordsPerSentence && k + 1 < pieces_.size()) {
      // Too long: the sentence ends after this piece, without a pause.
      bounds.next = pieces_[k + 1].start;
      bounds.end = piece.end;
      bounds.terminator = 0;
      bounds.pause_weight = 0;
      pieces_.resize(k + 1);
      sentence_scored_ = false;
      return false;
    }
  }
  const char t = bounds.terminator;
  sentence_scored_ = (t == ',' || t == ':' || t == ';') && (reader.ScoreRead() || AnnouncesScore());
  return true;
}

// "Kết quả:", "thắng Thái Lan 3-2,": a word that announces a score among the last pieces.
bool SentenceParser::AnnouncesScore() const {
  const std::size_t n = piece_texts_.size();
  for (std::size_t k = n > 6 ? n - 6 : 0; k < n; ++k)
    if (IntroducesScore(piece_texts_[k], k > 0 ? piece_texts_[k - 1] : std::string_view()))
      return true;
  return false;
}

// Phrases are two words, so only short spoken pieces can take part in one.
void SentenceParser::FillPhraseTexts() {
  segment_texts_.resize(pieces_.size() + 1);
  for (std::size_t k = 0; k <= pieces_.size(); ++k) {
    std::string& text = segment_texts_[k];
    text.clear();
    if (k == pieces_.size()) break;
    std::size_t bytes = 0;
    for (std::size_t w = pieces_[k].first_word; w < pieces_[k].end_word; ++w)
      bytes += words_[w].size() + 1;
    if (bytes > kMaxPhraseSegment) continue;
    for (std::size_t w = pieces_[k].first_word; w < pieces_[k].end_word; ++w) {
      if (!text.empty()) text += ' ';
      text += words_[w];
    }
  }
  // The spoken text of the piece before that has words (the empty slot for none).
  previous_piece_.assign(pieces_.size(), pieces_.size());
  for (std::size_t k = 1; k < pieces_.size(); ++k)
    previous_piece_[k] =
        pieces_[k - 1].end_word > pieces_[k - 1].first_word ? k - 1 : previous_piece_[k - 1];
}

// Fills the caller's sentence in place so that its strings keep their storage.
void SentenceParser::EmitWords(Sentence& out) {
  const bool fill_phrases = phrase_texts_ == PhraseTexts::kFill;
  out.words.resize(words_.size());
  for (std::size_t k = 0; k < pieces_.size(); ++k) {
    const Piece& piece = pieces_[k];
    for (std::size_t w = piece.first_word; w < piece.end_word; ++w) {
      SpokenWord& spoken = out.words[w];
      spoken.word.swap(words_[w]);
      spoken.start = piece.start;
      spoken.end = piece.end;
      spoken.mark = piece.mark;
      spoken.from_definition = piece.from_definition;
      spoken.lookahead.clear();
      if (!fill_phrases) {
        spoken.segment_text.clear();
        spoken.previous_segment_text.clear();
        continue;
      }
      spoken.segment_text = segment_texts_[k];
      spoken.previous_segment_text = segment_texts_[previous_piece_[k]];
      if (w > 0) out.words[w - 1].lookahead = spoken.word;
    }
  }
  // The sentence's last word looks ahead at the mark that ends it.
  if (fill_phrases && !out.words.empty() && out.terminator != 0)
    out.words.back().lookahead.assign(1, out.terminator);
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
