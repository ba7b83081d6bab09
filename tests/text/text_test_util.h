// SPDX-License-Identifier: MIT
#pragma once
// Helpers for the text front end tests: readable UTF-8 in, readings compared as words.
#include <string>
#include <string_view>

#include "text/charset/charsets.h"
#include "text/sentence_parser.h"

namespace vntts::testing {

inline std::string In(std::string_view utf8) {
  return Utf8ToInternal(utf8);
}

// A reading as UTF-8 words separated by single blanks (readings carry their own blanks).
inline std::string Words(std::string_view internal) {
  std::string out;
  std::size_t i = 0;
  while (i < internal.size()) {
    while (i < internal.size() && (internal[i] == ' ' || internal[i] == '\t'))
      ++i;
    std::size_t j = i;
    while (j < internal.size() && internal[j] != ' ' && internal[j] != '\t')
      ++j;
    if (j > i) {
      if (!out.empty()) out += ' ';
      out.append(internal.substr(i, j - i));
    }
    i = j;
  }
  return InternalToUtf8(out);
}

// Every sentence's words, sentences separated by " | ".
inline std::string Spoken(std::string_view utf8, FrontEndStores stores = {}) {
  const std::string text = In(utf8);
  std::string out;
  for (const std::string& line : SpokenLines(text, stores)) {
    if (!out.empty()) out += " | ";
    out += InternalToUtf8(line);
  }
  return out;
}

} // namespace vntts::testing
