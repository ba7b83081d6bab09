// SPDX-License-Identifier: MIT
#include "audio/format_codes.h"

namespace vntts {

std::optional<StandardFormat> FormatForCode(std::uint32_t code, std::uint32_t capabilities) {
  if (code >= 8 && code <= 11) {
    // Code 8 is the only one that looks at mono 8-bit; 8 and 9 both go on from stereo 8-bit.
    if (code == 8 && (capabilities & kStandardFormats[0].capability_bit))
      return kStandardFormats[0];
    for (std::uint32_t i = code == 8 ? 1 : code - 8; i < 4; ++i)
      if (capabilities & kStandardFormats[i].capability_bit) return kStandardFormats[i];
    return std::nullopt;
  }
  std::uint32_t index = 0;
  if (code >= 20 && code <= 23)
    index = 4 + (code - 20);
  else if (code >= 32 && code <= 35)
    index = 8 + (code - 32);
  else
    return std::nullopt;
  if (capabilities & kStandardFormats[index].capability_bit) return kStandardFormats[index];
  return std::nullopt;
}

std::uint32_t CapabilityBitOf(std::uint16_t channels, std::uint32_t rate, std::uint16_t bits) {
  for (const auto& f : kStandardFormats)
    if (f.channels == channels && f.rate == rate && f.bits == bits) return f.capability_bit;
  return 0;
}

} // namespace vntts
