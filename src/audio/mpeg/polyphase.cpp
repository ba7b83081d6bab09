#include "audio/mpeg/polyphase.h"

#include <array>
#include <cstring>

#include "audio/mpeg/const_math.h"

#if defined(__SSE2__)
#include <xmmintrin.h>
#endif

namespace vntts::mpeg {
namespace {

// The synthesis window of the standard, first half: every coefficient is a whole multiple of
// 2^-16, listed here as those multiples (index 0..256).
constexpr std::int32_t kWindowHalf[257] = {
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
constexpr std::array<float, 512> make_window() {
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
alignas(16) constexpr std::array<float, 512> kWindow = make_window();

// Butterfly factors 1 / (2 cos(pi (2n + 1) / (2N))) of the recursive DCT-II for N = 32..2.
template <int N> constexpr std::array<float, N / 2> make_dct_factors() {
  std::array<float, N / 2> f{};
  for (int n = 0; n < N / 2; ++n)
    f[n] = static_cast<float>(0.5 / cmath::cos(cmath::kPi * (2 * n + 1) / (2.0 * N)));
  return f;
}
template <int N> constexpr std::array<float, N / 2> kDctFactors = make_dct_factors<N>();

// X[k] = sum x[n] cos(pi (2n + 1) k / 2N), by even/odd splitting.
template <int N> inline void dct(const float* x, float* out) {
  if constexpr (N == 2) {
    out[0] = x[0] + x[1];
    out[1] = (x[0] - x[1]) * kDctFactors<2>[0];
  } else {
    float even[N / 2], odd[N / 2], e[N / 2], o[N / 2];
    for (int n = 0; n < N / 2; ++n) {
      even[n] = x[n] + x[N - 1 - n];
      odd[n] = (x[n] - x[N - 1 - n]) * kDctFactors<N>[n];
    }
    dct<N / 2>(even, e);
    dct<N / 2>(odd, o);
    for (int k = 0; k < N / 2; ++k)
      out[2 * k] = e[k];
    for (int k = 0; k < N / 2 - 1; ++k)
      out[2 * k + 1] = o[k] + o[k + 1];
    out[N - 1] = o[N / 2 - 1];
  }
}

} // namespace

void Polyphase::reset() {
  std::memset(v_, 0, sizeof v_);
  newest_[0] = newest_[1] = 0;
}

void Polyphase::filter(int ch, const float* subbands, float* out) {
  float a[32];
  dct<32>(subbands, a);
  const unsigned slot = (newest_[ch] + 15) & 15;
  newest_[ch] = slot;
  float* v = v_[ch][slot];
  // The 64 matrixed values follow from the 32 DCT outputs by the kernel's symmetries.
  for (int i = 0; i < 16; ++i)
    v[i] = a[16 + i];
  v[16] = 0;
  for (int i = 17; i < 48; ++i)
    v[i] = -a[48 - i];
  for (int i = 48; i < 64; ++i)
    v[i] = -a[i - 48];

#if defined(__SSE2__)
  __m128 acc[8];
  for (int j = 0; j < 8; ++j)
    acc[j] = _mm_setzero_ps();
  for (int i = 0; i < 8; ++i) {
    const float* even = v_[ch][(slot + 2 * i) & 15];
    const float* odd = v_[ch][(slot + 2 * i + 1) & 15] + 32;
    const float* w0 = kWindow.data() + 64 * i;
    const float* w1 = w0 + 32;
    for (int j = 0; j < 8; ++j)
      acc[j] = _mm_add_ps(
          acc[j], _mm_add_ps(_mm_mul_ps(_mm_load_ps(even + 4 * j), _mm_load_ps(w0 + 4 * j)),
                             _mm_mul_ps(_mm_load_ps(odd + 4 * j), _mm_load_ps(w1 + 4 * j))));
  }
  for (int j = 0; j < 8; ++j)
    _mm_storeu_ps(out + 4 * j, acc[j]);
#else
  float acc[32] = {};
  for (int i = 0; i < 8; ++i) {
    const float* even = v_[ch][(slot + 2 * i) & 15];
    const float* odd = v_[ch][(slot + 2 * i + 1) & 15] + 32;
    const float* w0 = kWindow.data() + 64 * i;
    const float* w1 = w0 + 32;
    for (int j = 0; j < 32; ++j)
      acc[j] += even[j] * w0[j] + odd[j] * w1[j];
  }
  std::memcpy(out, acc, sizeof acc);
#endif
}

} // namespace vntts::mpeg
