// SPDX-License-Identifier: MIT
#pragma once
// A list of names kept in ascending byte order without duplicates. Names are lower-cased (the
// key rule of key_case.h) before they are compared and stored, so "B.MP3" and "b.mp3" are one
// name; a set made with NameCase::kKept stores and compares names as they are (the phrase list
// of the Phrase Express page, whose phrases the engine matches case and all).
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vntts {

enum class NameCase { kLowered, kKept };

class SortedNameSet {
public:
  explicit SortedNameSet(NameCase name_case = NameCase::kLowered) : case_(name_case) {}

  // Refuses an empty name and a name already present (after lower-casing); otherwise inserts
  // the lower-cased name at its place and returns true.
  bool Insert(std::string_view name) { return InsertAt(name) >= 0; }
  // As Insert; the index the name went to, or -1 when it was refused.
  long InsertAt(std::string_view name);
  void RemoveAt(std::size_t index);

  std::size_t Count() const { return names_.size(); }
  const std::string& At(std::size_t index) const { return names_.at(index); }
  const std::vector<std::string>& Names() const { return names_; }
  void RemoveAll() { names_.clear(); }

  // Index of name (lower-cased) or -1.
  long Find(std::string_view name) const;

private:
  NameCase case_;
  std::vector<std::string> names_;
};

} // namespace vntts
