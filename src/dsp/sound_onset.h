// SPDX-License-Identifier: MIT
#pragma once
// Where a piece of speech becomes audible. A unit may begin with silence (a recording trimmed
// loosely, the codec's noise before a stop's burst), and a word event belongs where the word is
// heard, not where its samples begin.
#include <cstddef>
#include <cstdint>
#include <span>

namespace vntts {

// A block quieter than the loudest block of the piece by more than this is silence.
inline constexpr double kOnsetRangeDb = 50;
// 1 ms at the unit rate.
inline constexpr std::size_t kOnsetBlockFrames = 22;

// The first frame of the first block whose energy lies within kOnsetRangeDb of the loudest
// block; 0 for a silent or empty piece.
std::size_t SoundOnset(std::span<const std::int16_t> samples,
                       std::size_t block = kOnsetBlockFrames);

} // namespace vntts
