// SPDX-License-Identifier: MIT
#pragma once
// Coefficient tables of the synthesis filter bank and the long-block IMDCT, shared by the
// per-instruction-set kernels and the plain code around them. All computed at compile time in
// double precision.
#include <array>
#include <cstdint>

#include "audio/mpeg/const_math.h"

namespace vntts::mpeg::tables {

// The synthesis window of the standard, first half: every coefficient is a whole multiple of
// 2^-16, listed here as those multiples (index 0..256).
inline constexpr std::int32_t kWindowHalf[257] = {
    0,      -1,     -1,     -1,     -1,     -1,     -1,     -2,     -2,     -2,     -2,     -3,
    -3,     -4,     -4,     -5,     -5,     -6,     -7,     -7,     -8,     -9,     -10,    -11,
    -13,    -14,    -16,    -17,    -19,    -21,    -24,    -26,    -29,    -31,    -35,    -38,
    -41,    -45,    -49,    -53,    -58,    -63,    -68,    -73,    -79,    -85,    -91,    -97,
    -104,   -111,   -117,   -125,   -132,   -139,   -147,   -154,   -161,   -169,   -176,   -183,
    -190,   -196,   -202,   -208,   213,    218,    222,    225,    227,    228,    228,    227,
    224,    221,    215,    208,    200,    189,    177,    163,    146,    127,    106,    83,
    57,     29,     -2,     -36,    -72,    -111,   -153,   -197,   -244,   -294,   -347,   -401,
    -459,   -519,   -581,   -645,   -711,   -779,   -848,   -919,   -991,   -1064,  -1137,  -1210,
    -1283,  -1356,  -1428,  -1498,  -1567,  -1634,  -1698,  -1759,  -1817,  -1870,  -1919,  -1962,
    -2001,  -2032,  -2057,  -2075,  -2085,  -2087,  -2080,  -2063,  2037,   2000,   1952,   1893,
    1822,   1739,   1644,   1535,   1414,   1280,   1131,   970,    794,    605,    402,    185,
    -45,    -288,   -545,   -814,   -1095,  -1388,  -1692,  -2006,  -2330,  -2663,  -3004,  -3351,
    -3705,  -4063,  -4425,  -4788,  -5153,  -5517,  -5879,  -6237,  -6589,  -6935,  -7271,  -7597,
    -7910,  -8209,  -8491,  -8755,  -8998,  -9219,  -9416,  -9585,  -9727,  -9838,  -9916,  -9959,
    -9966,  -9935,  -9863,  -9750,  -9592,  -9389,  -9139,  -8840,  -8492,  -8092,  -7640,  -7134,
    6574,   5959,   5288,   4561,   3776,   2935,   2037,   1082,   70,     -998,   -2122,  -3300,
    -4533,  -5818,  -7154,  -8540,  -9975,  -11455, -12980, -14548, -16155, -17799, -19478, -21189,
    -22929, -24694, -26482, -28289, -30112, -31947, -33791, -35640, -37489, -39336, -41176, -43006,
    -44821, -46617, -48390, -50137, -51853, -53534, -55178, -56778, -58333, -59838, -61289, -62684,
    -64019, -65290, -66494, -67629, -68692, -69679, -70590, -71420, -72169, -72835, -73415, -73908,
    -74313, -74630, -74856, -74992, 75038,
};

// The full 512-tap window scaled to 16-bit output (x 32768): the second half mirrors the
// first, negated except at multiples of 64.
consteval std::array<float, 512> MakeWindow() {
  std::array<float, 512> w{};
  for (int i = 0; i < 512; ++i) {
    std::int32_t v;
    if (i <= 256)
      v = kWindowHalf[i];
    else
      v = (i % 64 == 0) ? kWindowHalf[512 - i] : -kWindowHalf[512 - i];
    w[i] = static_cast<float>(v) * 0.5f;
  }
  return w;
}
alignas(32) inline constexpr std::array<float, 512> kWindow = MakeWindow();

// Butterfly factors 1 / (2 cos(pi (2n + 1) / (2N))) of the recursive DCT-II for N = 32..2.
template <int kN> consteval std::array<float, kN / 2> MakeDctFactors() {
  std::array<float, kN / 2> f{};
  for (int n = 0; n < kN / 2; ++n)
    f[n] = static_cast<float>(0.5 / cmath::Cos(cmath::kPi * (2 * n + 1) / (2.0 * kN)));
  return f;
}
template <int kN> inline constexpr std::array<float, kN / 2> kDctFactors = MakeDctFactors<kN>();

// Windows of the four block types, 36 taps each (type 2 holds the 12-tap short window).
consteval std::array<std::array<float, 36>, 4> MakeWindows() {
  std::array<std::array<float, 36>, 4> w{};
  for (int i = 0; i < 36; ++i)
    w[0][i] = static_cast<float>(cmath::Sin(cmath::kPi / 36 * (i + 0.5)));
  for (int i = 0; i < 18; ++i)
    w[1][i] = w[0][i];
  for (int i = 18; i < 24; ++i)
    w[1][i] = 1;
  for (int i = 24; i < 30; ++i)
    w[1][i] = static_cast<float>(cmath::Sin(cmath::kPi / 12 * (i - 18 + 0.5)));
  for (int i = 30; i < 36; ++i)
    w[1][i] = 0;
  for (int i = 0; i < 12; ++i)
    w[2][i] = static_cast<float>(cmath::Sin(cmath::kPi / 12 * (i + 0.5)));
  for (int i = 0; i < 6; ++i)
    w[3][i] = 0;
  for (int i = 6; i < 12; ++i)
    w[3][i] = static_cast<float>(cmath::Sin(cmath::kPi / 12 * (i - 6 + 0.5)));
  for (int i = 12; i < 18; ++i)
    w[3][i] = 1;
  for (int i = 18; i < 36; ++i)
    w[3][i] = w[0][i];
  return w;
}
alignas(32) inline constexpr auto kWindows = MakeWindows();

// Long IMDCT: z[n] = sum_k X[k] cos(pi/72 (2n + 19)(2k + 1)). Only n = 0..8 and 18..26 are
// computed (columns 0..17 here, padded to 20 for whole vectors); z[17 - n] = -z[n] and
// z[53 - n] = z[n] give the rest. Stored by input line k so that each input scales one row.
consteval std::array<std::array<float, 20>, 18> MakeImdct36() {
  std::array<std::array<float, 20>, 18> m{};
  for (int k = 0; k < 18; ++k) {
    for (int r = 0; r < 18; ++r) {
      const int n = r < 9 ? r : r + 9;
      m[k][r] = static_cast<float>(cmath::Cos(cmath::kPi / 72 * (2 * n + 19) * (2 * k + 1)));
    }
  }
  return m;
}
alignas(32) inline constexpr auto kImdct36 = MakeImdct36();

} // namespace vntts::mpeg::tables
