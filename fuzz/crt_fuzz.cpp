// SPDX-License-Identifier: MIT
// Feeds arbitrary bytes to the readers of the user word stores: the AutoCorrect file, the
// lines of a definition file and the phrase rule. Whatever the AutoCorrect reader accepts must
// write back to bytes that read as the same pairs; the other two must hand back only
// well-formed entries.
#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "store/auto_correct_file.h"
#include "store/definition_store.h"
#include "store/phrase_store.h"

namespace {

void Check(bool condition) {
  if (!condition) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto parsed = vntts::ParseAutoCorrectFile(std::span(data, size));
  if (parsed.ok()) {
    const auto again = vntts::ParseAutoCorrectFile(vntts::SerializeAutoCorrectFile(parsed.pairs));
    Check(again.ok() && again.pairs == parsed.pairs);
  } else {
    Check(parsed.pairs.empty() && !parsed.error.empty());
  }

  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const auto& d : vntts::ParseDefinitionLines(text)) {
    Check(d.short_form.find_first_of("\t\n") == std::string::npos);
    Check(d.expansion.find('\n') == std::string::npos);
  }
  const auto phrases = vntts::ExtractTwoWordPhrases(text);
  Check(std::is_sorted(phrases.begin(), phrases.end()));
  for (const auto& p : phrases) {
    Check(std::count(p.begin(), p.end(), ' ') == 1 && p.front() != ' ' && p.back() != ' ');
    Check(p.find_first_of("\r\n,.") == std::string::npos);
  }
  return 0;
}
