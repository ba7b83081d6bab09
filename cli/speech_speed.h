// SPDX-License-Identifier: MIT
#pragma once
// `-s WPM`: a speed in words a minute, as speech users set it. The library's only speed control
// today is its rate setting, which adds silence after words; the silence decays along a text, so
// it slows the first words of each piece and leaves the voice's own pace (kVoiceWordsPerMinute
// for prose) nearly as it is. -s maps onto that setting and says so; once the library has a
// lasting speed setting (time compression), -s moves onto it.
#include <cstdint>

namespace vntts::cli {

// The default voice reading prose with `vntts say -w` (see docs/cli.md).
inline constexpr unsigned kVoiceWordsPerMinute = 156;

// The rate setting for a speed: 5000 (no added silence) from the voice's pace up, less below it,
// 0 at kSlowestWordsPerMinute and slower.
inline constexpr unsigned kSlowestWordsPerMinute = 80;
std::uint32_t RateForWordsPerMinute(unsigned words_per_minute);

} // namespace vntts::cli
