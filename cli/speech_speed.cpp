// SPDX-License-Identifier: MIT
#include "speech_speed.h"

#include <algorithm>

namespace vntts::cli {

std::uint32_t RateForWordsPerMinute(unsigned words_per_minute) {
  constexpr unsigned kFastestRate = 5000;
  const unsigned wpm = std::clamp(words_per_minute, kSlowestWordsPerMinute, kVoiceWordsPerMinute);
  return kFastestRate * (wpm - kSlowestWordsPerMinute) /
         (kVoiceWordsPerMinute - kSlowestWordsPerMinute);
}

} // namespace vntts::cli
