// SPDX-License-Identifier: MIT
#include "speech_speed.h"

#include <algorithm>

#include "engine/speech_engine.h"

namespace vntts::cli {

std::uint32_t SpeedPercentForWordsPerMinute(unsigned words_per_minute, bool* clamped) {
  const unsigned wanted =
      (words_per_minute * 100 + kVoiceWordsPerMinute / 2) / kVoiceWordsPerMinute;
  const unsigned percent = std::clamp<unsigned>(wanted, kMinSpeedPercent, kMaxSpeedPercent);
  if (clamped) *clamped = percent != wanted;
  return percent;
}

} // namespace vntts::cli
