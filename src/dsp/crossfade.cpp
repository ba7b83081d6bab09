// SPDX-License-Identifier: MIT
#include "dsp/crossfade.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace vntts {
namespace {

std::vector<std::int16_t> SamplesOf(std::span<const std::uint8_t> bytes) {
  std::vector<std::int16_t> samples(bytes.size() / 2);
  for (std::size_t i = 0; i < samples.size(); ++i)
    samples[i] = static_cast<std::int16_t>(
        static_cast<std::uint16_t>(bytes[2 * i] | (static_cast<unsigned>(bytes[2 * i + 1]) << 8)));
  return samples;
}

} // namespace

std::size_t CrossfadeOverlap(std::size_t first_frames, std::size_t second_frames,
                             std::size_t fade_frames) {
  return std::min({fade_frames, first_frames, second_frames});
}

std::vector<std::int16_t> CrossfadeJoin(std::span<const std::int16_t> first,
                                        std::span<const std::int16_t> second,
                                        std::size_t fade_frames) {
  const std::size_t overlap = CrossfadeOverlap(first.size(), second.size(), fade_frames);
  std::vector<std::int16_t> out;
  out.reserve(first.size() + second.size() - overlap);
  const std::size_t head_end = first.size() - overlap;
  out.insert(out.end(), first.begin(), first.begin() + static_cast<std::ptrdiff_t>(head_end));
  for (std::size_t k = 0; k < overlap; ++k) {
    // Rises from near 0 to near 1, sampled at frame centres so both ends are touched alike.
    const double phase =
        std::numbers::pi * (static_cast<double>(k) + 0.5) / static_cast<double>(overlap);
    const double in = 0.5 * (1.0 - std::cos(phase));
    const double mixed = first[head_end + k] * (1.0 - in) + second[k] * in;
    out.push_back(static_cast<std::int16_t>(std::lround(mixed)));
  }
  out.insert(out.end(), second.begin() + static_cast<std::ptrdiff_t>(overlap), second.end());
  return out;
}

std::size_t CrossfadeJoinBytes(std::span<const std::uint8_t> first,
                               std::span<const std::uint8_t> second, std::span<std::uint8_t> out,
                               std::size_t fade_frames) {
  const std::size_t first_frames = first.size() / 2;
  const std::size_t second_frames = second.size() / 2;
  const std::size_t frames =
      first_frames + second_frames - CrossfadeOverlap(first_frames, second_frames, fade_frames);
  if (frames * 2 > out.size()) return 0;
  const auto joined = CrossfadeJoin(SamplesOf(first), SamplesOf(second), fade_frames);
  for (std::size_t i = 0; i < joined.size(); ++i) {
    const auto bits = static_cast<std::uint16_t>(joined[i]);
    out[2 * i] = static_cast<std::uint8_t>(bits & 0xFF);
    out[2 * i + 1] = static_cast<std::uint8_t>(bits >> 8);
  }
  return joined.size() * 2;
}

} // namespace vntts
