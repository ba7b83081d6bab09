// SPDX-License-Identifier: MIT
#pragma once
// `--format`: the output format as a person writes it ("22050-mono-16") or as a format code of
// the C interface (8..11, 20..23, 32..35: rate group plus mono 8, stereo 8, mono 16, stereo 16).
#include <cstdint>
#include <optional>
#include <string>

#include "audio/wave_format.h"

namespace vntts::cli {

// 22050 Hz, mono, 16-bit: the voice's own format, for every file the command writes.
inline constexpr std::uint32_t kDefaultFileFormatCode = 22;

std::optional<std::uint32_t> FormatCode(const std::string& text);
std::string FormatError(const std::string& text);
// The format of a valid code.
WaveFormat StandardFormatOf(std::uint32_t code);

} // namespace vntts::cli
