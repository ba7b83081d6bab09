// SPDX-License-Identifier: MIT
#pragma once
// Readings of the plain words of one text, kept while the text is read. Running text says the
// same few thousand words over and over, and the road to a word's reading (definitions,
// auto-correct, the voice's own check, spelling) costs far more than finding it again here.
// Only readings that depend on nothing but the word itself are kept: the parser leaves out
// units after a number, Roman numerals and words its stores answered for.
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "core/short_string_map.h"

namespace vntts {

class ReadingCache {
public:
  struct Reading {
    int mark = 0;
    bool telephone_label = false; // the piece is a label such as Hotline (context_words.h)
    std::string words;            // joined by single blanks
  };

  // Longer pieces are rare enough not to be worth keeping; a text of random letters stops
  // adding once the cache holds this many words.
  static constexpr std::size_t kLongestPiece = 40;
  static constexpr std::size_t kMostPieces = 1u << 16;

  const Reading* Find(std::string_view piece) const;
  // Keeps words[from..] as the reading of the piece.
  void Add(std::string_view piece, int mark, bool telephone_label,
           const std::vector<std::string>& words, std::size_t from);
  // Appends the words of a reading, one string each.
  static void AppendWords(const Reading& reading, std::vector<std::string>& words);

  void Clear() { readings_.Clear(); }

private:
  ShortStringMap<Reading> readings_;
};

} // namespace vntts
