// SPDX-License-Identifier: MIT
#pragma once
// One compressed unit to PCM in the unit format (signed 16-bit, mono, 22050 Hz).
#include <cstdint>
#include <span>
#include <vector>

namespace vntts {

class UnitDecoder;

// Decodes with `decoder` (reused from unit to unit; it reads `stream` in place, so the bytes
// must stay mapped while it works). False when the decoder rejects the stream or it holds no
// samples.
bool DecodeToUnitFormat(UnitDecoder& decoder, std::span<const std::uint8_t> stream,
                        std::vector<std::int16_t>& samples);

} // namespace vntts
