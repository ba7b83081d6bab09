// SPDX-License-Identifier: MIT
// The kernels with AVX2 and FMA, eight lanes. This file alone is built for those units (see
// src/CMakeLists.txt) and only runs where the processor has them.
#include "audio/mpeg/kernels.h"

#if defined(__AVX2__) && defined(__FMA__)
#include <immintrin.h>

#include "audio/mpeg/kernel_body.h"
#include "audio/mpeg/kernel_sse2_convert.h"

namespace vntts::mpeg {
namespace {

struct Avx2 {
  __m256 v;
  static constexpr int kLanes = 8;
  static Avx2 Load(const float* p) { return {_mm256_load_ps(p)}; }
  static Avx2 LoadU(const float* p) { return {_mm256_loadu_ps(p)}; }
  static void Store(float* p, Avx2 a) { _mm256_store_ps(p, a.v); }
  static void StoreU(float* p, Avx2 a) { _mm256_storeu_ps(p, a.v); }
  static Avx2 Broadcast(float f) { return {_mm256_set1_ps(f)}; }
  static Avx2 Zero() { return {_mm256_setzero_ps()}; }
  static Avx2 Gather(const float* p, int stride) {
    const __m256i index =
        _mm256_mullo_epi32(_mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7), _mm256_set1_epi32(stride));
    return {_mm256_i32gather_ps(p, index, 4)};
  }
};
Avx2 operator+(Avx2 a, Avx2 b) {
  return {_mm256_add_ps(a.v, b.v)};
}
Avx2 operator-(Avx2 a, Avx2 b) {
  return {_mm256_sub_ps(a.v, b.v)};
}
Avx2 operator*(Avx2 a, Avx2 b) {
  return {_mm256_mul_ps(a.v, b.v)};
}
Avx2 operator*(Avx2 a, float f) {
  return {_mm256_mul_ps(a.v, _mm256_set1_ps(f))};
}
Avx2 MulAdd(Avx2 a, Avx2 b, Avx2 c) {
  return {_mm256_fmadd_ps(a.v, b.v, c.v)};
}
Avx2 Negate(Avx2 a) {
  return {_mm256_xor_ps(a.v, _mm256_set1_ps(-0.0f))};
}
Avx2 Xor(Avx2 a, Avx2 b) {
  return {_mm256_xor_ps(a.v, b.v)};
}
Avx2 Reverse(Avx2 a) {
  return {_mm256_permutevar8x32_ps(a.v, _mm256_setr_epi32(7, 6, 5, 4, 3, 2, 1, 0))};
}
void Transpose(Avx2* r) {
  __m256 t[8], s[8];
  for (int i = 0; i < 8; i += 2) {
    t[i] = _mm256_unpacklo_ps(r[i].v, r[i + 1].v);
    t[i + 1] = _mm256_unpackhi_ps(r[i].v, r[i + 1].v);
  }
  for (int i = 0; i < 8; i += 4) {
    s[i] = _mm256_shuffle_ps(t[i], t[i + 2], _MM_SHUFFLE(1, 0, 1, 0));
    s[i + 1] = _mm256_shuffle_ps(t[i], t[i + 2], _MM_SHUFFLE(3, 2, 3, 2));
    s[i + 2] = _mm256_shuffle_ps(t[i + 1], t[i + 3], _MM_SHUFFLE(1, 0, 1, 0));
    s[i + 3] = _mm256_shuffle_ps(t[i + 1], t[i + 3], _MM_SHUFFLE(3, 2, 3, 2));
  }
  for (int i = 0; i < 4; ++i) {
    r[i].v = _mm256_permute2f128_ps(s[i], s[i + 4], 0x20);
    r[i + 4].v = _mm256_permute2f128_ps(s[i], s[i + 4], 0x31);
  }
}

constexpr Kernels kAvx2 = {InstructionSet::kAvx2, kernel_body::Synthesize<Avx2>,
                           kernel_body::LongSubbands<Avx2>, kernel_body::ToS16Sse2<Avx2>};

} // namespace

const Kernels* Avx2Kernels() {
  return &kAvx2;
}

} // namespace vntts::mpeg

#else

namespace vntts::mpeg {
const Kernels* Avx2Kernels() {
  return nullptr;
}
} // namespace vntts::mpeg

#endif
