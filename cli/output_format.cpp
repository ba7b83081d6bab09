// SPDX-License-Identifier: MIT
#include "output_format.h"

#include <array>
#include <cstdlib>

namespace vntts::cli {
namespace {

struct RateGroup {
  std::uint32_t rate;
  std::uint32_t first_code;
};
constexpr std::array<RateGroup, 3> kGroups{{{11025, 8}, {22050, 20}, {44100, 32}}};
// Order within a group: mono 8, stereo 8, mono 16, stereo 16.
constexpr std::array<const char*, 4> kShapes{"mono-8", "stereo-8", "mono-16", "stereo-16"};

} // namespace

std::optional<std::uint32_t> FormatCode(const std::string& text) {
  for (const auto& g : kGroups) {
    for (std::uint32_t i = 0; i < kShapes.size(); ++i) {
      if (text == std::to_string(g.rate) + "-" + kShapes[i] ||
          text == std::to_string(g.first_code + i))
        return g.first_code + i;
    }
  }
  return std::nullopt;
}

std::string FormatError(const std::string& text) {
  return "unknown format '" + text +
         "': RATE-CHANNELS-BITS with RATE 11025, 22050 or 44100, CHANNELS mono or stereo, BITS "
         "8 or 16 (22050-mono-16), or a code 8..11, 20..23, 32..35";
}

WaveFormat StandardFormatOf(std::uint32_t code) {
  for (const auto& g : kGroups) {
    if (code >= g.first_code && code < g.first_code + kShapes.size()) {
      const std::uint32_t i = code - g.first_code;
      return WaveFormat::Pcm(static_cast<std::uint16_t>(i % 2 + 1), g.rate,
                             static_cast<std::uint16_t>(i < 2 ? 8 : 16));
    }
  }
  return WaveFormat::Pcm(1, 22050, 16);
}

} // namespace vntts::cli
