// SPDX-License-Identifier: MIT
#include "speech_speed.h"

#include <algorithm>

namespace vntts::cli {

SpeedSetting SpeedForWordsPerMinute(unsigned words_per_minute) {
  constexpr std::uint32_t kFastestRate = 5000;
  const unsigned wpm = std::clamp(words_per_minute, kSlowestWordsPerMinute, kFastestWordsPerMinute);
  // The time a word takes grows linearly with the silence the rate adds, so the rate is
  // interpolated on minutes per word, not on words per minute.
  const double fastest = 1.0 / kFastestWordsPerMinute;
  const double slowest = 1.0 / kSlowestWordsPerMinute;
  const double share = (1.0 / wpm - fastest) / (slowest - fastest);
  SpeedSetting s;
  s.rate = static_cast<std::uint32_t>(kFastestRate * (1.0 - share) + 0.5);
  s.words_per_minute = wpm;
  return s;
}

} // namespace vntts::cli
