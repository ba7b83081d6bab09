// SPDX-License-Identifier: MIT
#pragma once
// Turns a finished sentence from the unit format (signed 16-bit, mono, 22050 Hz) into the
// format the output plays, and maps sample positions along with it.
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace vntts {

// The rate every unit reaches the speak path at.
inline constexpr std::uint32_t kUnitSampleRate = 22050;

struct OutputLayout {
  std::uint16_t channels = 1;
  std::uint32_t samples_per_second = kUnitSampleRate;
  std::uint16_t bits_per_sample = 16;
};

// One pass of the neighbour-mean upsampler: n samples become 2n - 1, the old ones at the even
// places and, between two neighbours, their mean rounded down. Empty stays empty.
std::vector<std::int16_t> UpsampleNeighbourMean(std::span<const std::int16_t> in);

// How many neighbour-mean passes take the unit rate to `rate` (1 for 44100, 2 for 88200), or -1
// when `rate` is not the unit rate times a power of two.
int NeighbourMeanPasses(std::uint32_t rate);

// Unit frames to frames at `rate`: times the ratio for the doubling rates, proportionally
// (rounded down) for the others.
std::uint32_t MapFramePosition(std::uint32_t unit_frame, std::uint32_t rate);

// The sentence in the output layout. `speech_frames` is where the sentence pause begins in
// `unit`; for 8-bit output the pause is filled with 0x7F (the value kept from the first 8-bit
// devices), not with the midpoint 0x80 that silent speech samples convert to.
std::vector<std::uint8_t> ConvertSentence(std::span<const std::int16_t> unit,
                                          std::size_t speech_frames, const OutputLayout& out);

// Bytes of one frame in the layout (at least 1 for a sane layout, 0 for bits below 8).
std::size_t FrameBytes(const OutputLayout& out);

} // namespace vntts
