// SPDX-License-Identifier: MIT
#include "audio/mpeg/layer12.h"

#include <array>
#include <cstring>

#include "audio/mpeg/bit_reader.h"
#include "audio/mpeg/const_math.h"

namespace vntts::mpeg {
namespace {

// Scale factors of Layers I and II: 2^(1 - i/3), i = 0..62; index 63 is not allowed and is
// read as the next step of the same series.
constexpr std::array<float, 64> MakeScalefactors() {
  std::array<float, 64> t{};
  const double step = 1 / cmath::Cbrt(2.0);
  double v = 2.0;
  for (int i = 0; i < 64; ++i) {
    t[i] = static_cast<float>(v);
    v *= step;
  }
  return t;
}
constexpr std::array<float, 64> kScalefactors = MakeScalefactors();

// Quantisation classes of Layer II.
struct QuantClass {
  std::uint16_t steps;
  std::uint8_t bits; // per sample, or per group of three when grouped
  bool grouped;
  float inverse = 1.0f / steps;
};
constexpr QuantClass kClasses[17] = {
    {3, 5, true},       {5, 7, true},      {7, 3, false},     {9, 10, true},     {15, 4, false},
    {31, 5, false},     {63, 6, false},    {127, 7, false},   {255, 8, false},   {511, 9, false},
    {1023, 10, false},  {2047, 11, false}, {4095, 12, false}, {8191, 13, false}, {16383, 14, false},
    {32767, 15, false}, {65535, 16, false}};

// The three values of every grouped code (3, 5 or 9 steps in 5, 7 or 10 bits), split the way
// the standard splits them: the first value is the code modulo the steps, and so on; a code
// past the last valid one splits the same way.
template <int kSteps, int kBits> constexpr auto MakeGroups() {
  std::array<std::array<std::uint8_t, 3>, 1 << kBits> t{};
  for (std::uint32_t code = 0; code < t.size(); ++code) {
    std::uint32_t c = code;
    for (int k = 0; k < 3; ++k) {
      t[code][k] = static_cast<std::uint8_t>(c % kSteps);
      c /= kSteps;
    }
  }
  return t;
}
constexpr auto kGroups3 = MakeGroups<3, 5>();
constexpr auto kGroups5 = MakeGroups<5, 7>();
constexpr auto kGroups9 = MakeGroups<9, 10>();

const std::uint8_t* GroupValues(std::uint16_t steps, std::uint32_t code) {
  return steps == 3   ? kGroups3[code].data()
         : steps == 5 ? kGroups5[code].data()
                      : kGroups9[code].data();
}

// 1 / (2^n - 1) for the Layer I sample sizes n = 2..15.
constexpr std::array<float, 16> MakeLayer1Inverses() {
  std::array<float, 16> t{};
  for (int n = 2; n < 16; ++n)
    t[n] = 1.0f / static_cast<float>((1u << n) - 1);
  return t;
}
constexpr auto kLayer1Inverses = MakeLayer1Inverses();

// Allocation rows: the class for each allocation code 1..15 (code 0 = nothing sent).
struct AllocRow {
  std::uint8_t nbal;
  std::uint8_t cls[15];
};
constexpr AllocRow kRowA = {4, {0, 2, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}};
constexpr AllocRow kRowB = {4, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 16}};
constexpr AllocRow kRowC = {3, {0, 1, 2, 3, 4, 5, 16}};
constexpr AllocRow kRowD = {2, {0, 1, 16}};
constexpr AllocRow kRowE = {4, {0, 1, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}};
constexpr AllocRow kRowF = {3, {0, 1, 3, 4, 5, 6, 7}};
constexpr AllocRow kRowG = {2, {0, 1, 3}};
constexpr AllocRow kRowH = {4, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14}};

struct AllocTable {
  int sblimit;
  const AllocRow* rows[32];
};

#define A &kRowA
#define B &kRowB
#define C &kRowC
#define D &kRowD
#define E &kRowE
#define F &kRowF
#define G &kRowG
#define H &kRowH
constexpr AllocTable kTableA = {
    27, {A, A, A, B, B, B, B, B, B, B, B, C, C, C, C, C, C, C, C, C, C, C, C, D, D, D, D}};
constexpr AllocTable kTableB = {
    30, {A, A, A, B, B, B, B, B, B, B, B, C, C, C, C, C, C, C, C, C, C, C, C, D, D, D, D, D, D, D}};
constexpr AllocTable kTableC = {8, {E, E, F, F, F, F, F, F}};
constexpr AllocTable kTableD = {12, {E, E, F, F, F, F, F, F, F, F, F, F}};
constexpr AllocTable kTableLsf = {
    30, {H, H, H, H, F, F, F, F, F, F, F, G, G, G, G, G, G, G, G, G, G, G, G, G, G, G, G, G, G, G}};
#undef A
#undef B
#undef C
#undef D
#undef E
#undef F
#undef G
#undef H

const AllocTable& SelectTable(const FrameHeader& h, std::size_t length) {
  if (h.lsf) return kTableLsf;
  std::uint32_t kbps = h.kbps;
  if (h.FreeFormat()) // free format: the bit rate that the frame's size stands for
    kbps = static_cast<std::uint32_t>(length * 8 * h.sample_rate / 1152 / 1000);
  const std::uint32_t per_channel = kbps / h.channels;
  if (per_channel <= 48) return h.sample_rate == 32000 ? kTableD : kTableC;
  if (per_channel <= 80) return kTableA;
  return h.sample_rate == 48000 ? kTableA : kTableB;
}

// (2 code - (steps - 1)) / steps, by the reciprocal.
inline float Dequantize(std::uint32_t code, std::uint32_t steps, float inverse) {
  return static_cast<float>(static_cast<std::int32_t>(2 * code) -
                            static_cast<std::int32_t>(steps - 1)) *
         inverse;
}

std::size_t HeaderBytes(const FrameHeader& h) {
  return h.has_crc ? 6 : 4;
}

} // namespace

void DecodeLayer1(const FrameHeader& h, const std::uint8_t* frame, std::size_t length,
                  Polyphase& synth, float* const pcm[2], std::size_t& protected_bits) {
  const int channels = h.channels;
  const int bound = h.mode == Mode::kJointStereo ? (h.mode_extension + 1) * 4 : 32;
  const std::size_t start = HeaderBytes(h);
  BitReader br(frame + start, length > start ? length - start : 0);

  std::uint8_t alloc[2][32] = {};
  for (int sb = 0; sb < 32; ++sb) {
    if (sb < bound) {
      for (int ch = 0; ch < channels; ++ch)
        alloc[ch][sb] = static_cast<std::uint8_t>(br.Read(4));
    } else {
      alloc[0][sb] = alloc[1][sb] = static_cast<std::uint8_t>(br.Read(4));
    }
  }
  protected_bits = br.Position();
  float scale[2][32] = {};
  for (int sb = 0; sb < 32; ++sb)
    for (int ch = 0; ch < channels; ++ch)
      if (alloc[ch][sb]) scale[ch][sb] = kScalefactors[br.Read(6)];

  // All twelve time slots first, so that the synthesis filters them together.
  alignas(16) float sub[2][12 * 32];
  for (int s = 0; s < 12; ++s) {
    for (int sb = 0; sb < 32; ++sb) {
      if (sb < bound || channels == 1) {
        for (int ch = 0; ch < channels; ++ch) {
          const unsigned a = alloc[ch][sb];
          if (a == 0 || a == 15) {
            sub[ch][32 * s + sb] = 0;
            continue;
          }
          const unsigned nb = a + 1;
          sub[ch][32 * s + sb] =
              Dequantize(br.Read(nb), (1u << nb) - 1, kLayer1Inverses[nb]) * scale[ch][sb];
        }
      } else {
        const unsigned a = alloc[0][sb];
        if (a == 0 || a == 15) {
          sub[0][32 * s + sb] = sub[1][32 * s + sb] = 0;
          continue;
        }
        const unsigned nb = a + 1;
        const float v = Dequantize(br.Read(nb), (1u << nb) - 1, kLayer1Inverses[nb]);
        sub[0][32 * s + sb] = v * scale[0][sb];
        sub[1][32 * s + sb] = v * scale[1][sb];
      }
    }
  }
  for (int ch = 0; ch < channels; ++ch)
    synth.FilterSlots(ch, sub[ch], 12, pcm[ch]);
}

void DecodeLayer2(const FrameHeader& h, const std::uint8_t* frame, std::size_t length,
                  Polyphase& synth, float* const pcm[2], std::size_t& protected_bits) {
  const int channels = h.channels;
  const AllocTable& table = SelectTable(h, length);
  const int sblimit = table.sblimit;
  int bound = h.mode == Mode::kJointStereo ? (h.mode_extension + 1) * 4 : sblimit;
  if (bound > sblimit) bound = sblimit;
  const std::size_t start = HeaderBytes(h);
  BitReader br(frame + start, length > start ? length - start : 0);

  const QuantClass* cls[2][32] = {};
  for (int sb = 0; sb < sblimit; ++sb) {
    const AllocRow& row = *table.rows[sb];
    for (int ch = 0; ch < channels; ++ch) {
      if (sb >= bound && ch == 1) {
        cls[1][sb] = cls[0][sb];
        continue;
      }
      const unsigned code = br.Read(row.nbal);
      cls[ch][sb] = code ? &kClasses[row.cls[code - 1]] : nullptr;
    }
  }
  std::uint8_t scfsi[2][32] = {};
  for (int sb = 0; sb < sblimit; ++sb)
    for (int ch = 0; ch < channels; ++ch)
      if (cls[ch][sb]) scfsi[ch][sb] = static_cast<std::uint8_t>(br.Read(2));
  protected_bits = br.Position();

  float scale[2][32][3] = {};
  for (int sb = 0; sb < sblimit; ++sb) {
    for (int ch = 0; ch < channels; ++ch) {
      if (!cls[ch][sb]) continue;
      float* s = scale[ch][sb];
      switch (scfsi[ch][sb]) {
      case 0:
        s[0] = kScalefactors[br.Read(6)];
        s[1] = kScalefactors[br.Read(6)];
        s[2] = kScalefactors[br.Read(6)];
        break;
      case 1:
        s[0] = s[1] = kScalefactors[br.Read(6)];
        s[2] = kScalefactors[br.Read(6)];
        break;
      case 2:
        s[0] = s[1] = s[2] = kScalefactors[br.Read(6)];
        break;
      default:
        s[0] = kScalefactors[br.Read(6)];
        s[1] = s[2] = kScalefactors[br.Read(6)];
        break;
      }
    }
  }

  // All 36 time slots first, so that the synthesis filters them together.
  alignas(16) float sub[2][36][32];
  std::memset(sub, 0, sizeof sub);
  for (int gr = 0; gr < 12; ++gr) {
    const int part = gr / 4;
    for (int sb = 0; sb < sblimit; ++sb) {
      for (int ch = 0; ch < channels; ++ch) {
        const QuantClass* q = cls[ch][sb];
        float* slot = &sub[ch][3 * gr][sb];
        if (!q) {
          slot[0] = slot[32] = slot[64] = 0;
          continue;
        }
        if (sb >= bound && ch == 1) continue; // filled with the left channel below
        float v[3];
        if (q->grouped) {
          const std::uint8_t* group = GroupValues(q->steps, br.Read(q->bits));
          for (int k = 0; k < 3; ++k)
            v[k] = Dequantize(group[k], q->steps, q->inverse);
        } else {
          for (int k = 0; k < 3; ++k)
            v[k] = Dequantize(br.Read(q->bits), q->steps, q->inverse);
        }
        for (int k = 0; k < 3; ++k)
          slot[32 * k] = v[k] * scale[ch][sb][part];
        // Joint stereo above the bound: one set of samples, each channel's own scale.
        if (sb >= bound && channels == 2)
          for (int k = 0; k < 3; ++k)
            sub[1][3 * gr + k][sb] = v[k] * scale[1][sb][part];
      }
    }
  }
  for (int ch = 0; ch < channels; ++ch)
    synth.FilterSlots(ch, sub[ch][0], 36, pcm[ch]);
}

} // namespace vntts::mpeg
