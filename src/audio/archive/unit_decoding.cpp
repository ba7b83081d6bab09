#include "audio/archive/unit_decoding.h"

#if __has_include("audio/mpeg/unit_decoder.h")
#include "audio/mpeg/unit_decoder.h"
#define VNTTS_HAVE_UNIT_DECODER 1
#endif
#include "dsp/resample.h"

namespace vntts {

bool DecodeToUnitFormat(std::span<const std::uint8_t> stream, std::vector<std::int16_t>& samples) {
#ifdef VNTTS_HAVE_UNIT_DECODER
#error adapt to the decoder
#else
  (void)stream;
  (void)samples;
  return false;
#endif
}

} // namespace vntts
