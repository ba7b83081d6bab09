// SPDX-License-Identifier: MIT
#include "engine/word_gap.h"

#include <algorithm>
#include <array>

namespace vntts {

namespace {
constexpr std::array<std::uint32_t, 5> kSteps = {3400, 3600, 3800, 4000, 4200};

// The slowest rate gives 5000 bytes. A rate set above the range wraps the unsigned slowness
// to a value beyond that; such a value asks for speech faster than the fastest, so it adds no
// silence instead of gigabytes of it.
constexpr std::uint32_t kMaxSlowness = 5000;
} // namespace

std::uint32_t PaddingToNextStep(std::uint32_t word_bytes) {
  for (std::uint32_t step : kSteps)
    if (step > word_bytes) return step - word_bytes;
  return 0;
}

WordGap ComputeWordGap(const WordGapInput& in) {
  const bool wrapped = in.slowness > kMaxSlowness;
  const std::uint64_t s = wrapped ? 0 : in.slowness;
  const std::uint64_t twice = 2 * s;
  std::uint64_t gap = std::max<std::uint64_t>(PaddingToNextStep(in.word_bytes), twice) + twice;
  std::uint64_t slowness = s;

  if (in.phrase_with_next) {
    slowness = in.slowness;
    gap = gap >= s ? gap - s : 0;
  } else if (in.phrase_closes_text) {
    gap = static_cast<std::uint64_t>(static_cast<double>(gap) * 0.005);
    slowness = static_cast<std::uint64_t>(static_cast<double>(s) * 0.005);
  } else {
    // Halving the stored slowness on every unphrased word is how the rate decays along a text;
    // it is kept on purpose.
    gap = static_cast<std::uint64_t>(static_cast<double>(gap) * 0.5);
    slowness = static_cast<std::uint64_t>(static_cast<double>(s) * 0.5);
  }
  if (!wrapped && gap < slowness) gap = slowness;
  if (in.from_definition) gap = static_cast<std::uint64_t>(static_cast<double>(gap) * 0.2);

  WordGap out;
  out.gap_bytes = static_cast<std::uint32_t>(gap);
  out.silence_bytes = out.gap_bytes - out.gap_bytes % 10;
  out.next_slowness = static_cast<std::uint32_t>(slowness);
  return out;
}

} // namespace vntts
