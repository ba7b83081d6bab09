// SPDX-License-Identifier: MIT
#include "dsp/sentence_resampling.h"

#include <climits>

#include "dsp/resample.h"

namespace vntts {

std::vector<std::int16_t> ResampleSentence(std::span<const std::int16_t> in, std::uint32_t from,
                                           std::uint32_t to) {
  if (in.empty() || from == 0 || to == 0 || from > INT_MAX || to > INT_MAX) return {};
  if (from == to) return {in.begin(), in.end()};
  return Resampler(static_cast<int>(from), static_cast<int>(to)).Process(in);
}

} // namespace vntts
