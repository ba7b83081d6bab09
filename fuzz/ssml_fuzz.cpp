// SPDX-License-Identifier: MIT
// Feeds arbitrary bytes to the speech markup reader. Whatever it makes of them, every text
// piece must map each of its bytes to a place inside the input, in order, and the factors
// must stay finite and positive (volume may be 0); plain text must come back unchanged.
#include <cmath>
#include <cstdlib>
#include <string_view>

#include "ssml/speech_markup.h"

namespace {

void Check(bool condition) {
  if (!condition) std::abort();
}

bool Sane(double factor, bool zero_allowed) {
  return std::isfinite(factor) && (factor > 0 || (zero_allowed && factor == 0));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const vntts::SpeechMarkup markup = vntts::ReadSpeechMarkup(text);
  if (!markup.is_markup) {
    Check(markup.pieces.size() == (text.empty() ? 0u : 1u));
    if (!text.empty()) Check(markup.pieces[0].text == text);
    return 0;
  }
  std::uint32_t previous = 0;
  for (const vntts::SpeechPiece& piece : markup.pieces) {
    if (piece.kind == vntts::SpeechPiece::Kind::kBreak) Check(piece.break_ms <= vntts::kMaxBreakMs);
    if (piece.kind != vntts::SpeechPiece::Kind::kText) {
      Check(piece.base >= previous && piece.base < size);
      previous = piece.base;
      continue;
    }
    Check(!piece.text.empty() && piece.source.size() == piece.text.size() + 1);
    for (std::size_t i = 0; i <= piece.text.size(); ++i) {
      Check(piece.SourceAt(i) >= previous && piece.SourceAt(i) <= size);
      previous = piece.SourceAt(i);
    }
    Check(Sane(piece.prosody.rate, false) && Sane(piece.prosody.pitch, false) &&
          Sane(piece.prosody.volume, true));
  }
  return 0;
}
