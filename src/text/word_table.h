// SPDX-License-Identifier: MIT
#pragma once
// Small read-only tables of the readings that the front end knows by heart (units, document
// codes, parts of web addresses, words typed without tone marks), written in the source as
// readable UTF-8 and turned into internal text once, on first use.
#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace vntts {

struct WordEntry {
  std::string_view written; // UTF-8
  std::string_view reading; // UTF-8 words separated by blanks
};

class WordTable {
public:
  // With foldCase, keys are compared in lower case (the written forms must then be lower case).
  WordTable(std::initializer_list<WordEntry> entries, bool foldCase);

  // The reading of an internal-text key, with a blank before and after it, or nothing.
  const std::string* Find(std::string_view key) const;
  bool Contains(std::string_view key) const { return Find(key) != nullptr; }

private:
  std::map<std::string, std::string, std::less<>> readings_;
  bool foldCase_;
};

} // namespace vntts
