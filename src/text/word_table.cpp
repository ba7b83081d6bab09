// SPDX-License-Identifier: MIT
#include "text/word_table.h"

#include "text/char_classes.h"
#include "text/charset/charsets.h"

namespace vntts {

WordTable::WordTable(std::initializer_list<WordEntry> entries, bool foldCase)
    : foldCase_(foldCase) {
  for (const WordEntry& e : entries) {
    std::string key = Utf8ToInternal(e.written);
    if (foldCase) key = LowerInternal(key);
    readings_.emplace(std::move(key), " " + Utf8ToInternal(e.reading) + " ");
  }
}

const std::string* WordTable::Find(std::string_view key) const {
  if (key.empty() || key.size() > 24) return nullptr;
  const auto it = foldCase_ ? readings_.find(LowerInternal(key)) : readings_.find(key);
  return it == readings_.end() ? nullptr : &it->second;
}

} // namespace vntts
