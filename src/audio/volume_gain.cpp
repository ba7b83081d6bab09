// SPDX-License-Identifier: MIT
#include "audio/volume_gain.h"

namespace vntts {

void ApplyVolume(std::span<std::uint8_t> samples, std::uint16_t bits, std::uint16_t channels,
                 std::uint32_t volume) {
  if (volume == kFullVolume || channels == 0) return;
  const std::int64_t gain[2] = {volume & 0xFFFF, volume >> 16};
  const auto gain_of = [&](std::size_t sample_index) {
    return gain[channels == 1 ? 0 : (sample_index % channels) & 1];
  };
  if (bits == 8) {
    for (std::size_t i = 0; i < samples.size(); ++i) {
      const std::int64_t centred = static_cast<std::int64_t>(samples[i]) - 128;
      samples[i] = static_cast<std::uint8_t>(centred * gain_of(i) / 0xFFFF + 128);
    }
  } else if (bits == 16) {
    for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
      const auto raw = static_cast<std::uint16_t>(samples[i] | samples[i + 1] << 8);
      const std::int64_t scaled = static_cast<std::int16_t>(raw) * gain_of(i / 2) / 0xFFFF;
      const auto out = static_cast<std::uint16_t>(static_cast<std::int16_t>(scaled));
      samples[i] = static_cast<std::uint8_t>(out);
      samples[i + 1] = static_cast<std::uint8_t>(out >> 8);
    }
  }
}

} // namespace vntts
