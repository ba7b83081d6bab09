// SPDX-License-Identifier: MIT
#pragma once
// `-s WPM`: a speed in words a minute, as speech users set it. The engine's only speed control
// today is the rate setting, which adds silence after words and so can only slow the voice
// down from its natural pace; speeds beyond that pace are spoken at it, and the command says so.
// Once the library has a lasting speed setting (time compression), -s moves onto it.
#include <cstdint>

namespace vntts::cli {

// The default voice reading ordinary prose, measured with `vntts say -w` (see docs/cli.md):
// at the fastest rate (no added silence) and at the slowest.
inline constexpr unsigned kFastestWordsPerMinute = 174;
inline constexpr unsigned kSlowestWordsPerMinute = 140;

struct SpeedSetting {
  std::uint32_t rate = 5000;
  unsigned words_per_minute = kFastestWordsPerMinute; // what the voice will actually do
};

SpeedSetting SpeedForWordsPerMinute(unsigned words_per_minute);

} // namespace vntts::cli
