// SPDX-License-Identifier: MIT
#pragma once
// The device volume word applied to samples: left channel gain in the low 16 bits, right in
// the high 16 bits, 0xFFFF being full level. Mono follows the left gain; with more than two
// channels even channels follow the left and odd ones the right.
#include <cstdint>
#include <span>

namespace vntts {

inline constexpr std::uint32_t kFullVolume = 0xFFFFFFFF;

// Scales interleaved 8-bit unsigned or 16-bit signed samples in place; other sizes are left
// alone.
void ApplyVolume(std::span<std::uint8_t> samples, std::uint16_t bits, std::uint16_t channels,
                 std::uint32_t volume);

} // namespace vntts
