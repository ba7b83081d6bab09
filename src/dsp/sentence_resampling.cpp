#include "dsp/sentence_resampling.h"

#include <cstddef>

namespace vntts {

// Halving by the mean of each pair (a two-tap low-pass); other ratios by the nearest earlier
// sample.
std::vector<std::int16_t> ResampleSentence(std::span<const std::int16_t> in, std::uint32_t from,
                                           std::uint32_t to) {
  std::vector<std::int16_t> out;
  if (in.empty() || from == 0 || to == 0) return out;
  const std::size_t n = static_cast<std::size_t>(static_cast<std::uint64_t>(in.size()) * to / from);
  out.resize(n);
  for (std::size_t i = 0; i < n; ++i) {
    const std::size_t j = static_cast<std::size_t>(static_cast<std::uint64_t>(i) * from / to);
    if (from == 2 * to && j + 1 < in.size())
      out[i] = static_cast<std::int16_t>((in[j] + in[j + 1]) >> 1);
    else
      out[i] = in[j];
  }
  return out;
}

} // namespace vntts
