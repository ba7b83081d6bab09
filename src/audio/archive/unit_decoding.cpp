// SPDX-License-Identifier: MIT
#include "audio/archive/unit_decoding.h"

#include <cstring>

#include "audio/mpeg/unit_decoder.h"
#include "dsp/resample.h"

namespace vntts {

bool DecodeToUnitFormat(std::span<const std::uint8_t> stream, std::vector<std::int16_t>& samples) {
  if (stream.empty() || stream.size() > UINT32_MAX) return false;
  UnitDecoder decoder;
  decoder.SetStream(stream.data(), static_cast<std::uint32_t>(stream.size()));
  const auto pcm = decoder.DecodeAll();
  const std::uint32_t bytes = decoder.decoded_length();
  const auto& format = decoder.output_format();
  if (!pcm || bytes < 2 || format.channels == 0 || format.samples_per_sec == 0) return false;
  std::vector<std::int16_t> decoded(bytes / 2);
  std::memcpy(decoded.data(), pcm.get(), decoded.size() * 2);
  if (format.channels == 1 && format.samples_per_sec == 22050) {
    samples = std::move(decoded);
  } else {
    samples =
        ConvertToUnitFormat(decoded, static_cast<int>(format.samples_per_sec), format.channels);
  }
  return !samples.empty();
}

} // namespace vntts
