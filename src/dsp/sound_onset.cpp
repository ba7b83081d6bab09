// SPDX-License-Identifier: MIT
#include "dsp/sound_onset.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace vntts {

std::size_t SoundOnset(std::span<const std::int16_t> samples, std::size_t block) {
  if (samples.empty() || block == 0) return 0;
  // Block by block in whole numbers (a block's sum of squares stays far below 2^63): this runs
  // for every word spoken, and a division per sample cost more than the rest of the sentence.
  std::vector<double> energy((samples.size() + block - 1) / block, 0.0);
  for (std::size_t b = 0, start = 0; start < samples.size(); ++b, start += block) {
    const std::size_t end = std::min(samples.size(), start + block);
    std::int64_t sum = 0;
    for (std::size_t i = start; i < end; ++i)
      sum += std::int64_t{samples[i]} * samples[i];
    energy[b] = static_cast<double>(sum);
  }
  const double loudest = *std::max_element(energy.begin(), energy.end());
  if (loudest <= 0) return 0;
  const double floor = loudest * std::pow(10.0, -kOnsetRangeDb / 10);
  const auto first =
      std::find_if(energy.begin(), energy.end(), [&](double e) { return e >= floor; });
  return static_cast<std::size_t>(first - energy.begin()) * block;
}

} // namespace vntts
