// SPDX-License-Identifier: MIT
#pragma once
// The standard formats a device can report, and the format codes hosts choose from: a code
// is (rate group x 12) + (mono 8, stereo 8, mono 16, stereo 16) with the groups at 8 (11025
// Hz), 20 (22050 Hz) and 32 (44100 Hz).
#include <array>
#include <cstdint>
#include <optional>

namespace vntts {

struct StandardFormat {
  std::uint16_t channels;
  std::uint32_t rate;
  std::uint16_t bits;
  std::uint32_t capability_bit;
};

// In capability-bit order: for each rate, mono 8, stereo 8, mono 16, stereo 16.
inline constexpr std::array<StandardFormat, 12> kStandardFormats{{
    {1, 11025, 8, 0x1},
    {2, 11025, 8, 0x2},
    {1, 11025, 16, 0x4},
    {2, 11025, 16, 0x8},
    {1, 22050, 8, 0x10},
    {2, 22050, 8, 0x20},
    {1, 22050, 16, 0x40},
    {2, 22050, 16, 0x80},
    {1, 44100, 8, 0x100},
    {2, 44100, 8, 0x200},
    {1, 44100, 16, 0x400},
    {2, 44100, 16, 0x800},
}};

// The format a code selects on a device with these capability bits, if any. The 11025 Hz
// codes walk along the 11025 Hz entries until one is supported (code 8 first tries mono
// 8-bit, code 9 starts at stereo 8-bit, 10 at mono 16-bit, 11 at stereo 16-bit); every other
// code takes its own entry or nothing.
std::optional<StandardFormat> FormatForCode(std::uint32_t code, std::uint32_t capabilities);

// The capability bit for a format, 0 when it is not one of the standard twelve.
std::uint32_t CapabilityBitOf(std::uint16_t channels, std::uint32_t rate, std::uint16_t bits);

} // namespace vntts
