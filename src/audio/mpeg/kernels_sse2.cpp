// SPDX-License-Identifier: MIT
// The kernels with SSE2, four lanes: every x86-64 processor has it.
#include "audio/mpeg/kernels.h"

#if defined(__SSE2__)
#include <emmintrin.h>

#include "audio/mpeg/kernel_body.h"
#include "audio/mpeg/kernel_sse2_convert.h"

namespace vntts::mpeg {
namespace {

struct Sse2 {
  __m128 v;
  static constexpr int kLanes = 4;
  static Sse2 Load(const float* p) { return {_mm_load_ps(p)}; }
  static Sse2 LoadU(const float* p) { return {_mm_loadu_ps(p)}; }
  static void Store(float* p, Sse2 a) { _mm_store_ps(p, a.v); }
  static void StoreU(float* p, Sse2 a) { _mm_storeu_ps(p, a.v); }
  static Sse2 Broadcast(float f) { return {_mm_set1_ps(f)}; }
  static Sse2 Zero() { return {_mm_setzero_ps()}; }
  static Sse2 Gather(const float* p, int stride) {
    return {_mm_set_ps(p[3 * stride], p[2 * stride], p[stride], p[0])};
  }
};
Sse2 operator+(Sse2 a, Sse2 b) {
  return {_mm_add_ps(a.v, b.v)};
}
Sse2 operator-(Sse2 a, Sse2 b) {
  return {_mm_sub_ps(a.v, b.v)};
}
Sse2 operator*(Sse2 a, Sse2 b) {
  return {_mm_mul_ps(a.v, b.v)};
}
Sse2 operator*(Sse2 a, float f) {
  return {_mm_mul_ps(a.v, _mm_set1_ps(f))};
}
Sse2 MulAdd(Sse2 a, Sse2 b, Sse2 c) {
  return {_mm_add_ps(_mm_mul_ps(a.v, b.v), c.v)};
}
Sse2 Negate(Sse2 a) {
  return {_mm_xor_ps(a.v, _mm_set1_ps(-0.0f))};
}
Sse2 Xor(Sse2 a, Sse2 b) {
  return {_mm_xor_ps(a.v, b.v)};
}
Sse2 Reverse(Sse2 a) {
  return {_mm_shuffle_ps(a.v, a.v, _MM_SHUFFLE(0, 1, 2, 3))};
}
void Transpose(Sse2* r) {
  _MM_TRANSPOSE4_PS(r[0].v, r[1].v, r[2].v, r[3].v);
}

constexpr Kernels kSse2 = {InstructionSet::kSse2, kernel_body::Synthesize<Sse2>,
                           kernel_body::LongSubbands<Sse2>, kernel_body::ToS16Sse2<Sse2>};

} // namespace

const Kernels* Sse2Kernels() {
  return &kSse2;
}

} // namespace vntts::mpeg

#else

namespace vntts::mpeg {
const Kernels* Sse2Kernels() {
  return nullptr;
}
} // namespace vntts::mpeg

#endif
