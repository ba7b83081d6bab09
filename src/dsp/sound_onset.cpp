// SPDX-License-Identifier: MIT
#include "dsp/sound_onset.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vntts {
namespace {

// The exact sum of the squares of n samples.
std::uint64_t SumOfSquares(const std::int16_t* samples, std::size_t n) {
  std::uint64_t sum = 0;
  std::size_t i = 0;
#if defined(__SSE2__)
  const __m128i zero = _mm_setzero_si128();
  __m128i lanes = zero; // two 64-bit sums
  for (; i + 8 <= n; i += 8) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(samples + i));
    // Sums of two squares: at most 2 * 32768^2 = 2^31, exact when read as unsigned.
    const __m128i pairs = _mm_madd_epi16(v, v);
    lanes = _mm_add_epi64(lanes, _mm_unpacklo_epi32(pairs, zero));
    lanes = _mm_add_epi64(lanes, _mm_unpackhi_epi32(pairs, zero));
  }
  alignas(16) std::uint64_t parts[2];
  _mm_store_si128(reinterpret_cast<__m128i*>(parts), lanes);
  sum = parts[0] + parts[1];
#endif
  for (; i < n; ++i)
    sum += static_cast<std::uint64_t>(std::int32_t{samples[i]} * samples[i]);
  return sum;
}

} // namespace

std::size_t SoundOnset(std::span<const std::int16_t> samples, std::size_t block) {
  if (samples.empty() || block == 0) return 0;
  // Block by block in whole numbers (a block's sum of squares stays far below 2^63): this runs
  // for every word spoken, and a division per sample cost more than the rest of the sentence.
  std::vector<double> energy((samples.size() + block - 1) / block, 0.0);
  for (std::size_t b = 0, start = 0; start < samples.size(); ++b, start += block) {
    const std::size_t end = std::min(samples.size(), start + block);
    energy[b] = static_cast<double>(SumOfSquares(samples.data() + start, end - start));
  }
  const double loudest = *std::max_element(energy.begin(), energy.end());
  if (loudest <= 0) return 0;
  const double floor = loudest * std::pow(10.0, -kOnsetRangeDb / 10);
  const auto first =
      std::find_if(energy.begin(), energy.end(), [&](double e) { return e >= floor; });
  return static_cast<std::size_t>(first - energy.begin()) * block;
}

} // namespace vntts
