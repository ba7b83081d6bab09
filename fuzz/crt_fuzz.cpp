// Feeds arbitrary bytes to the AutoCorrect file reader. Whatever it accepts must write back to
// bytes that read as the same pairs.
#include <cstdlib>

#include "store/auto_correct_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto parsed = vntts::ParseAutoCorrectFile(std::span(data, size));
  if (!parsed.ok()) {
    if (!parsed.pairs.empty() || parsed.error.empty())
      std::abort();
    return 0;
  }
  const auto again = vntts::ParseAutoCorrectFile(vntts::SerializeAutoCorrectFile(parsed.pairs));
  if (!again.ok() || again.pairs != parsed.pairs)
    std::abort();
  return 0;
}
