// SPDX-License-Identifier: MIT
#pragma once
// The sentence walk of the speak driver. The parser cuts internal text into sentences at the
// pause-weighted punctuation, reads every piece of a sentence (plain words as they stand,
// numbers, dates, times, money, measures, addresses, symbols and abbreviations through their
// readings) and hands back, per sentence, the words to speak with the span of text each came
// from, and the pause that ends the sentence.
//
// Usage:
//   SentenceParser parser(text, stores);
//   Sentence sentence;
//   while (parser.Next(sentence)) { for (const SpokenWord& w : sentence.words) ...; }
//
// The parser works on a view of the caller's text, which must outlive it. It never fails:
// whatever it cannot read it leaves out. Work is linear in the length of the text.
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "text/reading_cache.h"
#include "text/sentence_scan.h"
#include "text/word_stores.h"

namespace vntts {

// Where the parser finds the user's word stores. Every pointer may be null.
struct FrontEndStores {
  const DefinitionLookup* definitions = nullptr;
  const AutoCorrectLookup* auto_correct = nullptr;
  // Decides whether a letters-only word is said as it stands or spelled letter by letter;
  // without it the parser accepts the words that have the shape of a Vietnamese syllable.
  const SpeakableCheck* speakable = nullptr;
};

// One word to render: a single syllable (or letter name) in lower-case internal text.
struct SpokenWord {
  std::string word;
  // The piece of input the word was read from: every word of one expansion ("12" ->
  // "mười hai") carries the span of the whole piece, [start, end) in bytes of the text.
  std::size_t start = 0;
  std::size_t end = 0;
  // Token class of that piece: '@' plain word, 'A'..'O' the classifier's classes, and the
  // driver's own marks 'C' (list-marker number), 'F' (user definition or letter-digit
  // compound read piece by piece), 'H' (x/y compound read with "trên"), 'P' (a word spelled
  // letter by letter); 255 for pieces of no class read token by token.
  int mark = '@';
  // The word came from the user's definition table (the driver shortens its gap).
  bool from_definition = false;
  // For the phrase adjustment of the word gap: the next word of the text (the sentence's next
  // word, else the mark that ends the sentence; empty only where the text ends), the whole
  // spoken text of the piece (words joined by one blank), and the spoken text of the piece
  // before it in the sentence that has words (empty for the first). The two piece texts are
  // left empty past 64 bytes: no two-word phrase is that long.
  std::string lookahead;
  std::string segment_text;
  std::string previous_segment_text;
};

struct Sentence {
  std::vector<SpokenWord> words; // may be empty (a sentence of symbols read as nothing)
  // The punctuation that ends the sentence ('.', ',', ';', ':', '!', '?', '\n', '\r') and its
  // pause weight (TextSegment::PauseWeight); 0 and 0 when the text simply ends. The point of
  // a list marker ("1. " at a line start) pauses like a comma: '.' with weight 600.
  char terminator = 0;
  int pause_weight = 0;
  // Span of the sentence in the text, from its first byte to just after the last mark of its
  // closing run of punctuation, line ends and closing brackets or quotes (blanks after it are
  // left out), or to its last non-blank byte at the end of the text.
  std::size_t start = 0;
  std::size_t end = 0;
};

// The phrase texts of SpokenWord (lookahead, segment_text, previous_segment_text) serve only the
// speak driver's word gap; a caller that just lists the words skips building them.
enum class PhraseTexts { kFill, kSkip };

class SentenceParser {
public:
  explicit SentenceParser(std::string_view text, FrontEndStores stores = {},
                          PhraseTexts phrase_texts = PhraseTexts::kFill);

  // Fills `out` with the next sentence; false when the text is used up. Sentences that end
  // in punctuation but hold no words are still returned (their pause matters) unless they
  // stand at the very start of the text.
  bool Next(Sentence& out);

  // Back to the start of the text.
  void Reset();

private:
  // The steps of Next: read every piece of the sentence into words_ (false when the sentence
  // was cut short because it grew too long), then fill the phrase texts of the word gap, then
  // hand the words to the caller.
  bool ReadPieces(SentenceBounds& bounds);
  bool AnnouncesScore() const;
  void FillPhraseTexts();
  void EmitWords(Sentence& out);

  std::string_view text_;
  FrontEndStores stores_;
  PhraseTexts phrase_texts_;
  std::size_t pos_ = 0;
  std::string previous_word_;
  bool at_line_start_ = true;
  bool yielded_any_ = false;
  // The sentence just read announced or read a score (for the next, after a comma or colon).
  bool sentence_scored_ = false;
  bool score_carried_ = false;
  ReadingCache readings_;
  // Work space kept from sentence to sentence: the pieces (one record each), their texts as
  // written, the words of all pieces in order, and the phrase text of each piece.
  std::vector<Piece> pieces_;
  std::vector<std::string_view> piece_texts_;
  std::vector<std::string> words_;
  std::vector<std::string> segment_texts_;
  std::vector<std::size_t> previous_piece_;
};

// Convenience for tools and tests: every sentence's words joined by single blanks, one string
// per sentence that has words.
std::vector<std::string> SpokenLines(std::string_view text, FrontEndStores stores = {});

} // namespace vntts
