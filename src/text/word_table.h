// SPDX-License-Identifier: MIT
#pragma once
// Small read-only tables of the readings that the front end knows by heart (units, document
// codes, parts of web addresses, words typed without tone marks), written in the source as
// readable UTF-8 and turned into internal text once, on first use.
#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "core/short_string_map.h"

namespace vntts {

struct WordEntry {
  std::string_view written; // UTF-8
  std::string_view reading; // UTF-8 words separated by blanks
};

class WordTable {
public:
  // With foldCase, keys are compared in lower case (the written forms must then be lower case).
  WordTable(std::initializer_list<WordEntry> entries, bool fold_case);

  // The reading of an internal-text key, with a blank before and after it, or nothing.
  const std::string* Find(std::string_view key) const;
  bool Contains(std::string_view key) const { return Find(key) != nullptr; }

private:
  static constexpr std::size_t kLongestKey = 32;
  // Which (first, last) byte pairs of keys the table holds, one bit each: most words of a
  // text are turned away here without hashing.
  static std::size_t PairBit(char first, char last) {
    return (static_cast<unsigned char>(first) * 7u + static_cast<unsigned char>(last)) & 255u;
  }
  std::array<std::uint64_t, 4> pairs_{};
  ShortStringMap<std::string> readings_;
  std::size_t longest_ = 0;
  bool fold_case_;
};

} // namespace vntts
