// SPDX-License-Identifier: MIT
#pragma once
// One word to samples: the recording of the word itself, else of one of its spelling variants,
// else of the word with i and y swapped, else of its two syllables joined when the word is two
// syllables run together. Output is the unit format (signed 16-bit mono 22050 Hz).
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "engine/recording_source.h"
#include "text/word_stores.h"

namespace vntts {

class WordRenderer final : public SpeakableCheck {
public:
  // The scratch size a rendered word is cut to.
  static constexpr std::size_t kMaxWordBytes = 100000;

  explicit WordRenderer(const RecordingSource& units) : units_(units) {}

  // Samples of the word, or false when no rule finds a recording.
  bool Render(std::string_view word, std::vector<std::int16_t>& samples) const;

  // Gets the word ready for a Render soon after (its units decoded into a cache); the word
  // is rendered in full only when it is not a unit of its own. `scratch` is the caller's.
  void Prepare(std::string_view word, std::vector<std::int16_t>& scratch) const;

  // Into a caller's buffer, cut to whole samples that fit; bytes receives the count (0 on a
  // miss). Nonzero when the word was rendered.
  int RenderInto(std::string_view word, std::span<std::uint8_t> buffer, std::uint32_t& bytes) const;

  // Whether Render would find something; the front end asks this to decide between saying a
  // word and spelling it.
  bool CanSpeak(std::string_view lower_case_word) const override;

private:
  bool HasWithVariants(std::string_view key) const;

  const RecordingSource& units_;
};

} // namespace vntts
