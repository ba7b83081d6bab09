// SPDX-License-Identifier: MIT
#include "dsp/sound_onset.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace vntts {

std::size_t SoundOnset(std::span<const std::int16_t> samples, std::size_t block) {
  if (samples.empty() || block == 0) return 0;
  std::vector<double> energy((samples.size() + block - 1) / block, 0.0);
  for (std::size_t i = 0; i < samples.size(); ++i)
    energy[i / block] += static_cast<double>(samples[i]) * samples[i];
  const double loudest = *std::max_element(energy.begin(), energy.end());
  if (loudest <= 0) return 0;
  const double floor = loudest * std::pow(10.0, -kOnsetRangeDb / 10);
  const auto first =
      std::find_if(energy.begin(), energy.end(), [&](double e) { return e >= floor; });
  return static_cast<std::size_t>(first - energy.begin()) * block;
}

} // namespace vntts
