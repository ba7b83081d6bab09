// SPDX-License-Identifier: MIT
#pragma once
// Values of the prosody and break attributes, as factors of the speaker's own settings.
// A value that cannot be read yields nothing and the attribute changes nothing.
#include <cstdint>
#include <optional>
#include <string_view>

namespace vntts {

// rate: x-slow .. x-fast, default, "150%", "+20%", "-20%", or a bare multiplier "1.5".
std::optional<double> ReadRate(std::string_view value);

// pitch: x-low .. x-high, default, "+10%", "90%", "+2st", "-3st", "+20Hz", "150Hz" (hertz are
// taken against a voice speaking at 120 Hz).
std::optional<double> ReadPitch(std::string_view value);

// volume: silent, x-soft .. x-loud, default, "+6dB", "-3dB", "50" (of 100), "+10", "-10".
std::optional<double> ReadVolume(std::string_view value);

// break: time "500ms", "2s", "1.5s"; or strength none, x-weak .. x-strong. Milliseconds,
// at most kMaxBreakMs.
std::optional<std::uint32_t> ReadBreakTime(std::string_view value);
std::optional<std::uint32_t> ReadBreakStrength(std::string_view value);

} // namespace vntts
