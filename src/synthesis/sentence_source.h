// SPDX-License-Identifier: MIT
#pragma once
// What host synthesis needs of the engine: internal text rendered sentence by sentence, each
// sentence with its sound (16-bit mono 22050 Hz, its pause included, the engine's speed and
// pitch and the given factors applied) and its words, as the speak path makes them.
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace vntts {

struct RenderedWord {
  std::uint32_t frame = 0;      // where the word starts in the sentence's samples
  std::uint32_t text_start = 0; // internal-text span of the word
  std::uint32_t text_length = 0;
};

struct RenderedSentence {
  std::vector<std::int16_t> samples;
  std::vector<RenderedWord> words;
  std::uint32_t text_start = 0; // internal-text span of the sentence
  std::uint32_t text_length = 0;
};

class SentenceSource {
public:
  using Handler = std::function<bool(RenderedSentence&)>;
  virtual ~SentenceSource() = default;
  // Renders `internal` into `handler`, a sentence at a time, with the speed and pitch scaled
  // by the factors, until the text is used up (true) or the handler answers false or the
  // speech is stopped otherwise (false).
  virtual bool Render(std::string_view internal, double speed_factor, double pitch_factor,
                      const Handler& handler) = 0;
};

} // namespace vntts
