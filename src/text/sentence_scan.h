// SPDX-License-Identifier: MIT
#pragma once
// The first step of the sentence walk: where the next sentence lies in the text, the pieces it
// is made of, and the punctuation that ends it. Nothing is read here.
#include <cstddef>
#include <string_view>
#include <vector>

namespace vntts {

// One piece of a sentence (a run between blanks, or part of one cut at punctuation), and once
// read, the words it gave.
struct Piece {
  std::size_t start = 0;
  std::size_t end = 0;
  bool list_marker = false;   // "1." at a line start
  bool spaced_number = false; // "12 500": groups of one number with blanks between them
  bool phone_run = false;     // "0912 345 678", "+84 24 3823 4567": one telephone number
  // Filled by the reading step: the piece's words in the sentence's word list, its class mark.
  std::size_t first_word = 0;
  std::size_t end_word = 0;
  int mark = 0;
  bool from_definition = false;
};

struct SentenceBounds {
  std::size_t start = 0;
  std::size_t end = 0;
  std::size_t next = 0; // where the following sentence starts
  char terminator = 0;
  int pause_weight = 0;
  bool ends_line = false; // a line end closes the sentence (the next starts a line)
  bool cut = false;       // punctuation or a line end closes it (not the text's end or a cap)
};

// The longest piece kept whole: a longer run of letters is cut there and its rest dropped
// (only its start is spelled anyway), any other run is cut into pieces of this size.
inline constexpr std::size_t kMostPieceBytes = 256;

// Finds the sentence that starts at `pos` and fills `pieces` (cleared first). `atLineStart` says
// whether `pos` starts a line (list markers are recognised only there).
SentenceBounds ScanSentence(std::string_view text, std::size_t pos, bool at_line_start,
                            std::vector<Piece>& pieces);

// A blank of the internal text: space, TAB or the no-break space A0.
bool IsSpaceByte(char c);

} // namespace vntts
