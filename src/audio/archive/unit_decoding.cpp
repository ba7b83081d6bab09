// SPDX-License-Identifier: MIT
#include "audio/archive/unit_decoding.h"

#include "audio/mpeg/unit_decoder.h"
#include "dsp/resample.h"

namespace vntts {

bool DecodeToUnitFormat(UnitDecoder& decoder, std::span<const std::uint8_t> stream,
                        std::vector<std::int16_t>& samples) {
  if (stream.empty() || stream.size() > UINT32_MAX) return false;
  decoder.UseStream(stream.data(), static_cast<std::uint32_t>(stream.size()));
  const auto& format = decoder.output_format();
  if (!decoder.DecodeInto(samples) || format.channels == 0 || format.samples_per_sec == 0) {
    samples.clear();
    return false;
  }
  if (format.channels != 1 || format.samples_per_sec != 22050)
    samples =
        ConvertToUnitFormat(samples, static_cast<int>(format.samples_per_sec), format.channels);
  return !samples.empty();
}

} // namespace vntts
