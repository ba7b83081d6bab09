// SPDX-License-Identifier: MIT
#pragma once
// The silence that follows a spoken word. Short words are padded up to the next of a few fixed
// lengths so that syllables fall on an even beat; the speaking rate (slowness, in bytes of
// silence) stretches that pause; and the pause shrinks when the word and the next one belong
// together. All lengths are bytes of the unit format (16-bit mono 22050 Hz).
#include <cstdint>

namespace vntts {

struct WordGapInput {
  std::uint32_t word_bytes = 0;    // length of the rendered word
  std::uint32_t slowness = 0;      // the engine's current slowness
  bool phrase_with_next = false;   // the word and the next one form a known phrase
  bool phrase_closes_text = false; // the parser's own pair is a known phrase and nothing follows
  bool from_definition = false;    // the word came out of a user definition
};

struct WordGap {
  std::uint32_t gap_bytes = 0;     // the gap as the rules compute it
  std::uint32_t silence_bytes = 0; // what is actually appended: the gap cut to whole 10 bytes
  std::uint32_t next_slowness = 0; // the slowness the engine keeps for the following words
};

// The padding step: the distance to the smallest of 3400..4200 (in steps of 200) that is
// greater than the word, or 0 for words of 4200 bytes and more.
std::uint32_t PaddingToNextStep(std::uint32_t word_bytes);

WordGap ComputeWordGap(const WordGapInput& in);

} // namespace vntts
