// SPDX-License-Identifier: MIT
// The kernels in plain C++: one lane, no intrinsics. They run on any processor and are what
// the other sets are tested against.
#include <bit>
#include <cstdint>

#include "audio/mpeg/kernel_body.h"

namespace vntts::mpeg {
namespace {

struct Scalar {
  float v;
  static constexpr int kLanes = 1;
  static Scalar Load(const float* p) { return {*p}; }
  static Scalar LoadU(const float* p) { return {*p}; }
  static void Store(float* p, Scalar a) { *p = a.v; }
  static void StoreU(float* p, Scalar a) { *p = a.v; }
  static Scalar Broadcast(float f) { return {f}; }
  static Scalar Zero() { return {0.0f}; }
  static Scalar Gather(const float* p, int) { return {*p}; }
};
Scalar operator+(Scalar a, Scalar b) {
  return {a.v + b.v};
}
Scalar operator-(Scalar a, Scalar b) {
  return {a.v - b.v};
}
Scalar operator*(Scalar a, Scalar b) {
  return {a.v * b.v};
}
Scalar operator*(Scalar a, float f) {
  return {a.v * f};
}
Scalar MulAdd(Scalar a, Scalar b, Scalar c) {
  return {a.v * b.v + c.v};
}
Scalar Negate(Scalar a) {
  return {-a.v};
}
Scalar Xor(Scalar a, Scalar b) {
  return {
      std::bit_cast<float>(std::bit_cast<std::uint32_t>(a.v) ^ std::bit_cast<std::uint32_t>(b.v))};
}
Scalar Reverse(Scalar a) {
  return a;
}
void Transpose(Scalar*) {}

constexpr Kernels kPortable = {InstructionSet::kPortable, kernel_body::Synthesize<Scalar>,
                               kernel_body::LongSubbands<Scalar>, kernel_body::ToS16<Scalar>};

} // namespace

const Kernels* PortableKernels() {
  return &kPortable;
}

} // namespace vntts::mpeg
