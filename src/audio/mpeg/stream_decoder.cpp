#include "audio/mpeg/stream_decoder.h"

#include <cmath>
#include <cstring>

#include "audio/mpeg/crc16.h"
#include "audio/mpeg/layer12.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vntts::mpeg {

void StreamDecoder::reset() {
  synth_.reset();
  layer3_.reset();
  channels_ = 0;
  crc_errors_ = 0;
}

int StreamDecoder::decode(const std::uint8_t* frame, std::size_t length, const FrameHeader& h) {
  if (length < 4 || length > kMaxFrameBytes) return 0;
  // A padded private copy: every bit read stays inside this buffer.
  std::memcpy(frame_, frame, length);
  std::memset(frame_ + length, 0, 2 * kBitReaderPadding);
  float* const out[2] = {pcm_[0], pcm_[1]};
  std::size_t protected_bits = 0;
  switch (h.layer) {
  case 1:
    decode_layer1(h, frame_, length, synth_, out, protected_bits);
    break;
  case 2:
    decode_layer2(h, frame_, length, synth_, out, protected_bits);
    break;
  default:
    if (length < (h.has_crc ? 6u : 4u) + h.side_info_bytes()) return 0;
    protected_bits = h.side_info_bytes() * 8;
    if (h.has_crc && !crc_matches(frame_, protected_bits)) ++crc_errors_;
    if (!layer3_.decode(h, frame_, length, synth_, out)) return 0;
    channels_ = h.channels;
    return h.samples;
  }
  if (h.has_crc && (protected_bits + 7) / 8 + 6 <= length && !crc_matches(frame_, protected_bits))
    ++crc_errors_;
  channels_ = h.channels;
  return h.samples;
}

namespace {

inline std::int16_t clip(float v) {
  const long r = std::lrint(v);
  return static_cast<std::int16_t>(r > 32767 ? 32767 : r < -32768 ? -32768 : r);
}

} // namespace

void to_s16(const float* left, const float* right, int frame_channels, int out_channels,
            std::size_t samples, std::int16_t* out) {
  std::size_t i = 0;
  if (frame_channels == 1 && out_channels == 1) {
#if defined(__SSE2__)
    for (; i + 8 <= samples; i += 8) {
      const __m128i a = _mm_cvtps_epi32(_mm_loadu_ps(left + i));
      const __m128i b = _mm_cvtps_epi32(_mm_loadu_ps(left + i + 4));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), _mm_packs_epi32(a, b));
    }
#endif
    for (; i < samples; ++i)
      out[i] = clip(left[i]);
    return;
  }
  if (frame_channels == 2 && out_channels == 2) {
#if defined(__SSE2__)
    for (; i + 4 <= samples; i += 4) {
      const __m128i l = _mm_cvtps_epi32(_mm_loadu_ps(left + i));
      const __m128i r = _mm_cvtps_epi32(_mm_loadu_ps(right + i));
      const __m128i lr_lo = _mm_unpacklo_epi32(l, r);
      const __m128i lr_hi = _mm_unpackhi_epi32(l, r);
      _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 2 * i), _mm_packs_epi32(lr_lo, lr_hi));
    }
#endif
    for (; i < samples; ++i) {
      out[2 * i] = clip(left[i]);
      out[2 * i + 1] = clip(right[i]);
    }
    return;
  }
  if (frame_channels == 1) { // mono frame into stereo output
    for (; i < samples; ++i)
      out[2 * i] = out[2 * i + 1] = clip(left[i]);
    return;
  }
  for (; i < samples; ++i) // stereo frame into mono output
    out[i] = clip(0.5f * (left[i] + right[i]));
}

} // namespace vntts::mpeg
