// SPDX-License-Identifier: MIT
#pragma once
// Rounding and clipping to 16-bit samples with SSE2, for the SSE2 and AVX2 kernel files. A
// template on the file's own vector type V, so that each file keeps its own copy.
#include <emmintrin.h>

#include <cstddef>
#include <cstdint>

#include "audio/mpeg/kernel_body.h"

namespace vntts::mpeg::kernel_body {

template <class V>
void ToS16Sse2(const float* left, const float* right, int frame_channels, int out_channels,
               std::size_t samples, std::int16_t* out) {
  std::size_t i = 0;
  if (frame_channels == 1 && out_channels == 1) {
    for (; i + 8 <= samples; i += 8) {
      const __m128i a = _mm_cvtps_epi32(_mm_loadu_ps(left + i));
      const __m128i b = _mm_cvtps_epi32(_mm_loadu_ps(left + i + 4));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), _mm_packs_epi32(a, b));
    }
  } else if (frame_channels == 2 && out_channels == 2) {
    for (; i + 4 <= samples; i += 4) {
      const __m128i l = _mm_cvtps_epi32(_mm_loadu_ps(left + i));
      const __m128i r = _mm_cvtps_epi32(_mm_loadu_ps(right + i));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 2 * i),
                       _mm_packs_epi32(_mm_unpacklo_epi32(l, r), _mm_unpackhi_epi32(l, r)));
    }
  }
  ToS16<V>(left + i, right + i, frame_channels, out_channels, samples - i, out + i * out_channels);
}

} // namespace vntts::mpeg::kernel_body
