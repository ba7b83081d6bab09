// SPDX-License-Identifier: MIT
#pragma once
// A piece of internal text with its scanner, its token class and the dispatch to the reading
// of that class. The scanner yields one token at a time with one token of look-ahead.
#include <string>
#include <string_view>

#include "text/token_class.h"
#include "text/word_stores.h"

namespace vntts {

class TextSegment {
public:
  TextSegment(std::string initial_text, int initial_class)
      : text(std::move(initial_text)), token_class(initial_class) {}
  explicit TextSegment(std::string initial_text) : text(std::move(initial_text)) {}
  virtual ~TextSegment() = default;

  // Starts a scan: positions to 0, current empty, lookahead the first token; returns current.
  const std::string& First();
  // Moves one token on; an empty result ends the scan.
  const std::string& Next();
  // The scan step: numeric tokens keep a single '/', '.' or ',' between their characters.
  std::string NextToken();
  void SetText(std::string s);

  static int PauseWeight(char c);
  // The weight of the segment as a whole: its first character's when the text is one
  // character, or a line end followed by one more; 0 (no pause) otherwise.
  int SegmentPauseWeight() const;
  bool IsPause() const { return SegmentPauseWeight() != 0; }

  int Classify(std::string_view token) const;
  // Replaces text by its spoken form. Class 'F' consults the definitions (may be null).
  void Dispatch(const DefinitionLookup* definitions = nullptr);

  std::string text;
  int definition_checked = 0;
  std::string previous_word;
  int token_start = 0;
  int scan_pos = 0;
  std::string lookahead;
  std::string current;
  std::string source_text;
  int token_class = token_class::kNone;
};

} // namespace vntts
