// SPDX-License-Identifier: MIT
#include "text/reading_cache.h"

namespace vntts {

const ReadingCache::Reading* ReadingCache::Find(std::string_view piece) const {
  return readings_.Find(piece);
}

void ReadingCache::Add(std::string_view piece, int mark, bool telephone_label,
                       const std::vector<std::string>& words, std::size_t from) {
  if (piece.size() > kLongestPiece || readings_.size() >= kMostPieces) return;
  Reading reading;
  reading.mark = mark;
  reading.telephone_label = telephone_label;
  for (std::size_t w = from; w < words.size(); ++w) {
    if (w > from) reading.words += ' ';
    reading.words += words[w];
  }
  readings_.Insert(piece, std::move(reading));
}

void ReadingCache::AppendWords(const Reading& reading, std::vector<std::string>& words) {
  const std::string_view all = reading.words;
  std::size_t i = 0;
  while (i < all.size()) {
    std::size_t j = all.find(' ', i);
    if (j == std::string_view::npos) j = all.size();
    words.emplace_back(all.substr(i, j - i));
    i = j + 1;
  }
}

} // namespace vntts
