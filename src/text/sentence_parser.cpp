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
                               PhraseTexts phraseTexts)
    : text_(text), stores_(stores), phraseTexts_(phraseTexts) {}

void SentenceParser::Reset() {
  pos_ = 0;
  readings_.Clear();
  previousWord_.clear();
  atLineStart_ = true;
  yieldedAny_ = false;
  sentenceScored_ = false;
  scoreCarried_ = false;
}

bool SentenceParser::Next(Sentence& out) {
  while (pos_ < text_.size()) {
    SentenceBounds bounds = ScanSentence(text_, pos_, atLineStart_, pieces_);
    const bool complete = ReadPieces(bounds);
    pos_ = bounds.next;
    atLineStart_ = complete && bounds.endsLine;
    // A telephone label does not reach over the end of a sentence, except a colon's.
    if (bounds.terminator != ':' && bounds.terminator != 0 && IsTelephoneLabel(previousWord_))
      previousWord_.clear();
    scoreCarried_ = sentenceScored_ && (bounds.terminator == ',' || bounds.terminator == ':' ||
                                        bounds.terminator == ';');
    // Punctuation before the first word of the text is not a sentence of its own.
    if (words_.empty() && !yieldedAny_ && pieces_.empty()) continue;
    yieldedAny_ = true;
    Sentence s;
    s.start = bounds.start;
    s.end = bounds.end;
    s.terminator = bounds.terminator;
    s.pauseWeight = bounds.pauseWeight;
    s.words = std::move(out.words);
    out = std::move(s);
    if (phraseTexts_ == PhraseTexts::Fill) FillPhraseTexts();
    EmitWords(out);
    return true;
  }
  return false;
}

bool SentenceParser::ReadPieces(SentenceBounds& bounds) {
  pieceTexts_.clear();
  for (const Piece& piece : pieces_)
    pieceTexts_.push_back(text_.substr(piece.start, piece.end - piece.start));
  words_.clear();
  PieceReader reader(stores_, previousWord_, readings_);
  reader.StartSentence(scoreCarried_);
  std::string joined;
  for (std::size_t k = 0; k < pieces_.size(); ++k) {
    Piece& piece = pieces_[k];
    PieceContext ctx;
    ctx.pieces = pieceTexts_;
    ctx.index = k;
    // "II. Viết", "III. Nghe": a Roman numeral alone before its point heads a part when more
    // text follows (but "size M, L." ends on a size).
    ctx.listMarker = piece.listMarker || (pieces_.size() == 1 && bounds.terminator == '.' &&
                                          bounds.next < text_.size() && pieceTexts_[k] != "L" &&
                                          RomanNumeralValue(pieceTexts_[k]).has_value());
    ctx.phoneRun = piece.phoneRun;
    PieceWords read{words_};
    piece.firstWord = words_.size();
    std::string_view text = pieceTexts_[k];
    if (piece.spacedNumber) {
      joined.clear();
      for (char c : text)
        if (!IsSpaceByte(c)) joined += c;
      text = joined;
    }
    reader.Read(text, ctx, 0, read);
    piece.endWord = words_.size();
    piece.mark = read.mark;
    piece.fromDefinition = read.fromDefinition;
    if (words_.size() >= kMostWordsPerSentence && k + 1 < pieces_.size()) {
      // Too long: the sentence ends after this piece, without a pause.
      bounds.next = pieces_[k + 1].start;
      bounds.end = piece.end;
      bounds.terminator = 0;
      bounds.pauseWeight = 0;
      pieces_.resize(k + 1);
      sentenceScored_ = false;
      return false;
    }
  }
  const char t = bounds.terminator;
  sentenceScored_ = (t == ',' || t == ':' || t == ';') && (reader.ScoreRead() || AnnouncesScore());
  return true;
}

// "Kết quả:", "thắng Thái Lan 3-2,": a word that announces a score among the last pieces.
bool SentenceParser::AnnouncesScore() const {
  const std::size_t n = pieceTexts_.size();
  for (std::size_t k = n > 6 ? n - 6 : 0; k < n; ++k)
    if (IntroducesScore(pieceTexts_[k], k > 0 ? pieceTexts_[k - 1] : std::string_view()))
      return true;
  return false;
}

// Phrases are two words, so only short spoken pieces can take part in one.
void SentenceParser::FillPhraseTexts() {
  segmentTexts_.resize(pieces_.size() + 1);
  for (std::size_t k = 0; k <= pieces_.size(); ++k) {
    std::string& text = segmentTexts_[k];
    text.clear();
    if (k == pieces_.size()) break;
    std::size_t bytes = 0;
    for (std::size_t w = pieces_[k].firstWord; w < pieces_[k].endWord; ++w)
      bytes += words_[w].size() + 1;
    if (bytes > kMaxPhraseSegment) continue;
    for (std::size_t w = pieces_[k].firstWord; w < pieces_[k].endWord; ++w) {
      if (!text.empty()) text += ' ';
      text += words_[w];
    }
  }
  // The spoken text of the piece before that has words (the empty slot for none).
  previousPiece_.assign(pieces_.size(), pieces_.size());
  for (std::size_t k = 1; k < pieces_.size(); ++k)
    previousPiece_[k] =
        pieces_[k - 1].endWord > pieces_[k - 1].firstWord ? k - 1 : previousPiece_[k - 1];
}

// Fills the caller's sentence in place so that its strings keep their storage.
void SentenceParser::EmitWords(Sentence& out) {
  const bool fillPhrases = phraseTexts_ == PhraseTexts::Fill;
  out.words.resize(words_.size());
  for (std::size_t k = 0; k < pieces_.size(); ++k) {
    const Piece& piece = pieces_[k];
    for (std::size_t w = piece.firstWord; w < piece.endWord; ++w) {
      SpokenWord& spoken = out.words[w];
      spoken.word.swap(words_[w]);
      spoken.start = piece.start;
      spoken.end = piece.end;
      spoken.mark = piece.mark;
      spoken.fromDefinition = piece.fromDefinition;
      spoken.lookahead.clear();
      if (!fillPhrases) {
        spoken.segmentText.clear();
        spoken.previousSegmentText.clear();
        continue;
      }
      spoken.segmentText = segmentTexts_[k];
      spoken.previousSegmentText = segmentTexts_[previousPiece_[k]];
      if (w > 0) out.words[w - 1].lookahead = spoken.word;
    }
  }
  // The sentence's last word looks ahead at the mark that ends it.
  if (fillPhrases && !out.words.empty() && out.terminator != 0)
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
