// SPDX-License-Identifier: MIT
#pragma once
// The kernels written once over a vector type V of V::kLanes floats. Each kernels_*.cpp
// defines its own V in an anonymous namespace and instantiates these templates with it. Every
// function here is a template on V, so each file's code stays its own: no instruction of a
// wider set can reach a narrower file through a shared inline function.
//
// V gives: kLanes; static Load and Store (aligned to the vector), LoadU and StoreU, Broadcast,
// Zero and Gather(p, stride); and, found by argument lookup, + and - of two vectors, * by a
// vector or a float, MulAdd(a, b, c) = a * b + c, Negate, Xor (of the bits), Reverse (the lanes'
// order) and Transpose (kLanes vectors of kLanes lanes, in place).
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "audio/mpeg/kernel_tables.h"
#include "audio/mpeg/kernels.h"

// Loops over vectors are unrolled whole, so that their arrays live in registers. Not in
// sanitizer builds: there the unrolled copies only multiply the coverage points a fuzzer must
// track (six times fewer runs a second).
#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(coverage_sanitizer)
#define VNTTS_NO_UNROLL 1
#endif
#endif
#if defined(VNTTS_NO_UNROLL) || defined(__SANITIZE_ADDRESS__)
#define VNTTS_UNROLL
#elif defined(__clang__)
#define VNTTS_UNROLL _Pragma("unroll")
#else
#define VNTTS_UNROLL _Pragma("GCC unroll 64")
#endif

namespace vntts::mpeg::kernel_body {

// -0.0 in every other lane, starting with the second: a subband group's frequency inversion
// mask is read from here at the group's parity.
alignas(32) inline constexpr float kAlternatingSigns[9] = {0.0f,  -0.0f, 0.0f,  -0.0f, 0.0f,
                                                           -0.0f, 0.0f,  -0.0f, 0.0f};

// X[k] = sum x[n] cos(pi (2n + 1) k / 2N), by even/odd splitting. T is a float (one time slot)
// or a vector (one time slot per lane).
template <class V, int kN, typename T> inline void Dct(const T* x, T* out) {
  if constexpr (kN == 2) {
    out[0] = x[0] + x[1];
    out[1] = (x[0] - x[1]) * tables::kDctFactors<2>[0];
  } else {
    T even[kN / 2], odd[kN / 2], e[kN / 2], o[kN / 2];
    VNTTS_UNROLL
    for (int n = 0; n < kN / 2; ++n) {
      even[n] = x[n] + x[kN - 1 - n];
      odd[n] = (x[n] - x[kN - 1 - n]) * tables::kDctFactors<kN>[n];
    }
    Dct<V, kN / 2>(even, e);
    Dct<V, kN / 2>(odd, o);
    VNTTS_UNROLL
    for (int k = 0; k < kN / 2; ++k)
      out[2 * k] = e[k];
    VNTTS_UNROLL
    for (int k = 0; k < kN / 2 - 1; ++k)
      out[2 * k + 1] = o[k] + o[k + 1];
    out[kN - 1] = o[kN / 2 - 1];
  }
}

// Shifts one slot's 32 DCT outputs (a[32] = 0 after them) into the history as the 64 matrixed
// values and applies the 512-tap window.
template <class V>
inline void Window(SynthesisHistory& history, int ch, const float* a, float* out) {
  constexpr int kL = V::kLanes;
  const unsigned slot = (history.newest[ch] + 15) & 15;
  history.newest[ch] = slot;
  float* v = history.v[ch][slot];
  // v[0..15] = a[16..31], v[16 + p] = -a[32 - p] for p = 0..31, v[48..63] = -a[0..15].
  VNTTS_UNROLL
  for (int i = 0; i < 16; i += kL) {
    V::Store(v + i, V::LoadU(a + 16 + i));
    V::Store(v + 48 + i, Negate(V::LoadU(a + i)));
  }
  VNTTS_UNROLL
  for (int p = 0; p < 32; p += kL)
    V::Store(v + 16 + p, Negate(Reverse(V::LoadU(a + 33 - p - kL))));

  V acc[32 / kL];
  VNTTS_UNROLL
  for (auto& c : acc)
    c = V::Zero();
  VNTTS_UNROLL
  for (int i = 0; i < 8; ++i) {
    const float* even = history.v[ch][(slot + 2 * i) & 15];
    const float* odd = history.v[ch][(slot + 2 * i + 1) & 15] + 32;
    const float* w0 = tables::kWindow.data() + 64 * i;
    const float* w1 = w0 + 32;
    VNTTS_UNROLL
    for (int c = 0; c < 32 / kL; ++c) {
      acc[c] = MulAdd(V::Load(even + kL * c), V::Load(w0 + kL * c), acc[c]);
      acc[c] = MulAdd(V::Load(odd + kL * c), V::Load(w1 + kL * c), acc[c]);
    }
  }
  VNTTS_UNROLL
  for (int c = 0; c < 32 / kL; ++c)
    V::StoreU(out + kL * c, acc[c]);
}

// The polyphase synthesis of `count` slots: one DCT serves kLanes slots side by side.
template <class V>
void Synthesize(SynthesisHistory& history, int ch, const float* slots, int count, float* out) {
  constexpr int kL = V::kLanes;
  for (int t = 0; t < count; t += kL) {
    const int n = count - t < kL ? count - t : kL;
    const float* in = slots + 32 * t;
    alignas(32) float padded[kL * 32];
    if (n < kL) {
      for (int i = 0; i < kL * 32; ++i)
        padded[i] = i < n * 32 ? in[i] : 0.0f;
      in = padded;
    }
    V x[32], y[32];
    VNTTS_UNROLL
    for (int k = 0; k < 32; k += kL) {
      V block[kL];
      VNTTS_UNROLL
      for (int l = 0; l < kL; ++l)
        block[l] = V::LoadU(in + 32 * l + k);
      Transpose(block);
      VNTTS_UNROLL
      for (int j = 0; j < kL; ++j)
        x[k + j] = block[j];
    }
    Dct<V, 32>(x, y);
    alignas(32) float per_slot[kL][33 + 7];
    VNTTS_UNROLL
    for (int k = 0; k < 32; k += kL) {
      V block[kL];
      VNTTS_UNROLL
      for (int j = 0; j < kL; ++j)
        block[j] = y[k + j];
      Transpose(block);
      VNTTS_UNROLL
      for (int l = 0; l < kL; ++l)
        V::StoreU(per_slot[l] + k, block[l]);
    }
    for (int l = 0; l < n; ++l) {
      per_slot[l][32] = 0.0f;
      Window<V>(history, ch, per_slot[l], out + 32 * (t + l));
    }
  }
}

// Long blocks of kLanes neighbouring subbands at once, one per lane.
template <class V>
int LongSubbands(const float* x, int count, const float* window, float* overlap, float* slots) {
  constexpr int kL = V::kLanes;
  const int end = (count + kL - 1) / kL * kL;
  for (int sb = 0; sb < end; sb += kL) {
    V in[18];
    VNTTS_UNROLL
    for (int k = 0; k < 18; ++k)
      in[k] = V::Gather(x + 18 * sb + k, 18);
    // Two passes of nine accumulators each, so that they stay in registers.
    V u[18];
    VNTTS_UNROLL
    for (int half = 0; half < 18; half += 9) {
      V a[9];
      VNTTS_UNROLL
      for (auto& v : a)
        v = V::Zero();
      VNTTS_UNROLL
      for (int k = 0; k < 18; ++k)
        VNTTS_UNROLL
      for (int j = 0; j < 9; ++j)
        a[j] = MulAdd(in[k], V::Broadcast(tables::kImdct36[k][half + j]), a[j]);
      VNTTS_UNROLL
      for (int j = 0; j < 9; ++j)
        u[half + j] = a[j];
    }
    // Odd time samples of odd subbands change sign (frequency inversion).
    const V odd_subbands = V::LoadU(kAlternatingSigns + (sb & 1));
    VNTTS_UNROLL
    for (int i = 0; i < 18; ++i) {
      // z[i] for the output half, z[18 + i] for the half kept for the next granule.
      const V lo = i < 9 ? u[i] : Negate(u[17 - i]);
      const V hi = i < 9 ? u[9 + i] : u[26 - i];
      float* prev = overlap + 32 * i + sb;
      V o = MulAdd(lo, V::Broadcast(window[i]), V::Load(prev));
      V::Store(prev, hi * V::Broadcast(window[18 + i]));
      if (i & 1) o = Xor(o, odd_subbands);
      V::Store(slots + 32 * i + sb, o);
    }
  }
  return end;
}

// Rounding to nearest (ties to even, as the FPU rounds by default) and clipping, one sample
// at a time.
template <class V>
void ToS16(const float* left, const float* right, int frame_channels, int out_channels,
           std::size_t samples, std::int16_t* out) {
  const auto clip = [](float v) {
    const long r = std::lrint(v);
    return static_cast<std::int16_t>(r > 32767 ? 32767 : r < -32768 ? -32768 : r);
  };
  for (std::size_t i = 0; i < samples; ++i) {
    if (frame_channels == out_channels) {
      out[i * out_channels] = clip(left[i]);
      if (out_channels == 2) out[2 * i + 1] = clip(right[i]);
    } else if (frame_channels == 1) { // mono frame into stereo output
      out[2 * i] = out[2 * i + 1] = clip(left[i]);
    } else { // stereo frame into mono output
      out[i] = clip(0.5f * (left[i] + right[i]));
    }
  }
}

} // namespace vntts::mpeg::kernel_body

#undef VNTTS_UNROLL
#undef VNTTS_NO_UNROLL
