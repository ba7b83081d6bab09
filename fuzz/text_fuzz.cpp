// SPDX-License-Identifier: MIT
// Any bytes through the text front end: the scanner, the classifier with and without a
// telephone label, every reading, and the sentence walk with small word stores. Checks that
// nothing crashes, that the walk ends and that its output stays in proportion to the input.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "text/classifier.h"
#include "text/number_reading.h"
#include "text/readings.h"
#include "text/sentence_parser.h"
#include "text/syllable.h"
#include "text/text_segment.h"

namespace {

void Check(bool condition) {
  if (!condition) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);

  // Scanner: every token is non-empty and the scan ends.
  vntts::TextSegment segment{std::string(text)};
  segment.First();
  std::size_t tokens = 0;
  std::size_t readingBytes = 0;
  while (!segment.Next().empty()) {
    Check(++tokens <= size);
    const std::string& token = segment.current;
    for (const char* previous : {"", "tel", "ng\xE0y", "n\xE4ng"}) {
      const int cls = vntts::Classify(token, previous);
      if (auto reading = vntts::Normalise(cls, token, previous)) readingBytes += reading->size();
    }
    readingBytes += vntts::ReadNumber(token).size() + vntts::ReadInteger(token).size();
    readingBytes += vntts::ReadTime(token).size() + vntts::ReadDate(token).size();
    readingBytes += vntts::ReadOver(token).size() + vntts::ReadAddress(token).size();
    readingBytes += vntts::SpellWord(token.substr(0, 64)).size();
    (void)vntts::LooksLikeSyllable(token);
  }
  Check(readingBytes <= 400 * size + 4096);

  // Rest-of-text scanning and dispatch of each class.
  for (int cls = 'A'; cls <= 'P'; ++cls) {
    vntts::TextSegment whole(std::string(text.substr(0, 256)), cls);
    vntts::MemoryDefinitions definitions;
    definitions.entries["x"] = "1 2";
    whole.Dispatch(&definitions);
  }

  // The sentence walk, with stores that refer to themselves.
  vntts::MemoryDefinitions definitions;
  definitions.entries["a"] = "a b";
  vntts::MemoryAutoCorrect autoCorrect;
  autoCorrect.entries["b"] = "c";
  autoCorrect.entries["c"] = "b";
  vntts::FrontEndStores stores;
  stores.definitions = &definitions;
  stores.auto_correct = &autoCorrect;
  vntts::SentenceParser parser(text, stores);
  vntts::Sentence sentence;
  std::size_t sentences = 0, words = 0;
  while (parser.Next(sentence)) {
    Check(++sentences <= size + 1);
    Check(sentence.start <= sentence.end && sentence.end <= size);
    for (const auto& w : sentence.words) {
      Check(!w.word.empty());
      Check(w.start <= w.end && w.end <= size);
      words += w.word.size() + 1;
    }
  }
  Check(words <= 400 * size + 4096);
  return 0;
}
