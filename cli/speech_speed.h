// SPDX-License-Identifier: MIT
#pragma once
// `-s WPM`: a speed in words a minute, as speech users set it, put on the library's lasting
// speed (time compression, in percent of the recorded pace), which changes the pace without the
// pitch. The rate setting (`-r`) stays what it is: silence after words that decays along a text.
#include <cstdint>

namespace vntts::cli {

// The default voice reading prose at its own pace (`vntts say -w`, see docs/cli.md).
inline constexpr unsigned kVoiceWordsPerMinute = 254;

// The speed in percent for a pace in words a minute, within the library's 50..400 (127 to 1016
// words a minute with the default voice); `clamped` tells whether the pace was out of reach.
std::uint32_t SpeedPercentForWordsPerMinute(unsigned words_per_minute, bool* clamped);

} // namespace vntts::cli
