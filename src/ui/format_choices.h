// SPDX-License-Identifier: MIT
#pragma once
// The output formats the Speaker window offers in its format box, with the codes of
// SetVNAudioFormat: four per rate, in the order mono 8-bit, stereo 8-bit, mono 16-bit, stereo
// 16-bit.
#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "ui/dialog_engine.h"

namespace vntts::ui {

struct FormatChoice {
  std::uint32_t code;
  OutputFormat format;
  std::u16string_view label;
};

inline constexpr std::array kFormatChoices = {
    FormatChoice{8, {1, 11025, 8}, u"11025 Hz, 8-bit, mono"},
    FormatChoice{9, {2, 11025, 8}, u"11025 Hz, 8-bit, stereo"},
    FormatChoice{10, {1, 11025, 16}, u"11025 Hz, 16-bit, mono"},
    FormatChoice{11, {2, 11025, 16}, u"11025 Hz, 16-bit, stereo"},
    FormatChoice{20, {1, 22050, 8}, u"22050 Hz, 8-bit, mono"},
    FormatChoice{21, {2, 22050, 8}, u"22050 Hz, 8-bit, stereo"},
    FormatChoice{22, {1, 22050, 16}, u"22050 Hz, 16-bit, mono"},
    FormatChoice{23, {2, 22050, 16}, u"22050 Hz, 16-bit, stereo"},
    FormatChoice{32, {1, 44100, 8}, u"44100 Hz, 8-bit, mono"},
    FormatChoice{33, {2, 44100, 8}, u"44100 Hz, 8-bit, stereo"},
    FormatChoice{34, {1, 44100, 16}, u"44100 Hz, 16-bit, mono"},
    FormatChoice{35, {2, 44100, 16}, u"44100 Hz, 16-bit, stereo"},
};

// The index in kFormatChoices of a format, or nothing for a format not offered.
constexpr std::optional<int> FormatChoiceIndex(const OutputFormat& f) {
  for (std::size_t i = 0; i < kFormatChoices.size(); ++i) {
    const OutputFormat& c = kFormatChoices[i].format;
    if (c.channels == f.channels && c.samples_per_second == f.samples_per_second &&
        c.bits_per_sample == f.bits_per_sample)
      return static_cast<int>(i);
  }
  return std::nullopt;
}

} // namespace vntts::ui
