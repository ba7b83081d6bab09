// SPDX-License-Identifier: MIT
#include "text/word_table.h"

#include <algorithm>

#include "text/char_classes.h"
#include "text/charset/charsets.h"

namespace vntts {

WordTable::WordTable(std::initializer_list<WordEntry> entries, bool fold_case)
    : fold_case_(fold_case) {
  for (const WordEntry& e : entries) {
    std::string key = Utf8ToInternal(e.written);
    if (fold_case) key = LowerInternal(key);
    if (key.size() > kLongestKey || readings_.Find(key) != nullptr) continue;
    longest_ = std::max(longest_, key.size());
    const std::size_t bit = PairBit(key.front(), key.back());
    pairs_[bit / 64] |= std::uint64_t{1} << (bit % 64);
    readings_.Insert(key, " " + Utf8ToInternal(e.reading) + " ");
  }
}

// Asked for most pieces of a text: no allocation, and most keys are turned away by length.
const std::string* WordTable::Find(std::string_view key) const {
  if (key.empty() || key.size() > longest_) return nullptr;
  const char first = fold_case_ ? ToLowerInternal(key.front()) : key.front();
  const char last = fold_case_ ? ToLowerInternal(key.back()) : key.back();
  const std::size_t bit = PairBit(first, last);
  if ((pairs_[bit / 64] >> (bit % 64) & 1) == 0) return nullptr;
  if (!fold_case_) return readings_.Find(key);
  char lower[kLongestKey];
  for (std::size_t i = 0; i < key.size(); ++i)
    lower[i] = ToLowerInternal(key[i]);
  return readings_.Find(std::string_view(lower, key.size()));
}

} // namespace vntts
