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

#if defined(__SSE2__)
// Four time slots side by side, one per lane, so that one DCT serves four slots.
struct Quad {
  __m128 v;
};
inline Quad operator+(Quad a, Quad b) {
  return {_mm_add_ps(a.v, b.v)};
}
inline Quad operator-(Quad a, Quad b) {
  return {_mm_sub_ps(a.v, b.v)};
}
inline Quad operator*(Quad a, float f) {
  return {_mm_mul_ps(a.v, _mm_set1_ps(f))};
}
#endif

// X[k] = sum x[n] cos(pi (2n + 1) k / 2N), by even/odd splitting.
template <int N, typename T> inline void dct(const T* x, T* out) {
  if constexpr (N == 2) {
    out[0] = x[0] + x[1];
    out[1] = (x[0] - x[1]) * kDctFactors<2>[0];
  } else {
    T even[N / 2], odd[N / 2], e[N / 2], o[N / 2];
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
  window(ch, a, out);
}

void Polyphase::filter_slots(int ch, const float* slots, int count, float* out) {
  int t = 0;
#if defined(__SSE2__)
  for (; t + 4 <= count; t += 4) {
    const float* in = slots + 32 * t;
    Quad x[32], a[32];
    for (int k = 0; k < 32; k += 4) {
      __m128 r0 = _mm_loadu_ps(in + k), r1 = _mm_loadu_ps(in + 32 + k);
      __m128 r2 = _mm_loadu_ps(in + 64 + k), r3 = _mm_loadu_ps(in + 96 + k);
      _MM_TRANSPOSE4_PS(r0, r1, r2, r3);
      x[k] = {r0};
      x[k + 1] = {r1};
      x[k + 2] = {r2};
      x[k + 3] = {r3};
    }
    dct<32>(x, a);
    alignas(16) float per_slot[4][32];
    for (int k = 0; k < 32; k += 4) {
      __m128 r0 = a[k].v, r1 = a[k + 1].v, r2 = a[k + 2].v, r3 = a[k + 3].v;
      _MM_TRANSPOSE4_PS(r0, r1, r2, r3);
      _mm_store_ps(per_slot[0] + k, r0);
      _mm_store_ps(per_slot[1] + k, r1);
      _mm_store_ps(per_slot[2] + k, r2);
      _mm_store_ps(per_slot[3] + k, r3);
    }
    for (int s = 0; s < 4; ++s)
      window(ch, per_slot[s], out + 32 * (t + s));
  }
#endif
  for (; t < count; ++t)
    filter(ch, slots + 32 * t, out + 32 * t);
}

void Polyphase::window(int ch, const float* a, float* out) {
  const unsigned slot = (newest_[ch] + 15) & 15;
  newest_[ch] = slot;
  float* v = v_[ch][slot];
  // The 64 matrixed values follow from the 32 DCT outputs by the kernel's symmetries:
  // v[0..15] = a[16..31], v[16] = 0, v[17..47] = -a[31..1], v[48..63] = -a[0..15].
#if defined(__SSE2__)
  const __m128 sign = _mm_set1_ps(-0.0f);
  for (int i = 0; i < 16; i += 4)
    _mm_store_ps(v + i, _mm_loadu_ps(a + 16 + i));
  for (int i = 48; i < 64; i += 4)
    _mm_store_ps(v + i, _mm_xor_ps(_mm_loadu_ps(a + i - 48), sign));
  // v[16 + 4m .. 19 + 4m] = -a[32 - 4m .. 29 - 4m] (reversed), a[32] being 0.
  _mm_store_ps(v + 16, _mm_xor_ps(_mm_set_ps(a[29], a[30], a[31], 0.0f), sign));
  for (int m = 1; m < 8; ++m) {
    const __m128 x = _mm_loadu_ps(a + 29 - 4 * m);
    _mm_store_ps(v + 16 + 4 * m, _mm_xor_ps(_mm_shuffle_ps(x, x, _MM_SHUFFLE(0, 1, 2, 3)), sign));
  }
  v[16] = 0;
#else
  for (int i = 0; i < 16; ++i)
    v[i] = a[16 + i];
  v[16] = 0;
  for (int i = 17; i < 48; ++i)
    v[i] = -a[48 - i];
  for (int i = 48; i < 64; ++i)
    v[i] = -a[i - 48];
#endif

#if defined(__SSE2__)
  // Eight accumulators held in registers across the 16 history rows.
  __m128 c0 = _mm_setzero_ps(), c1 = c0, c2 = c0, c3 = c0, c4 = c0, c5 = c0, c6 = c0, c7 = c0;
  for (int i = 0; i < 8; ++i) {
    const float* even = v_[ch][(slot + 2 * i) & 15];
    const float* odd = v_[ch][(slot + 2 * i + 1) & 15] + 32;
    const float* w0 = kWindow.data() + 64 * i;
    const float* w1 = w0 + 32;
#define VNTTS_TAP(c, j)                                                                            \
  c = _mm_add_ps(c, _mm_add_ps(_mm_mul_ps(_mm_load_ps(even + 4 * j), _mm_load_ps(w0 + 4 * j)),     \
                               _mm_mul_ps(_mm_load_ps(odd + 4 * j), _mm_load_ps(w1 + 4 * j))))
    VNTTS_TAP(c0, 0);
    VNTTS_TAP(c1, 1);
    VNTTS_TAP(c2, 2);
    VNTTS_TAP(c3, 3);
    VNTTS_TAP(c4, 4);
    VNTTS_TAP(c5, 5);
    VNTTS_TAP(c6, 6);
    VNTTS_TAP(c7, 7);
#undef VNTTS_TAP
  }
  _mm_storeu_ps(out, c0);
  _mm_storeu_ps(out + 4, c1);
  _mm_storeu_ps(out + 8, c2);
  _mm_storeu_ps(out + 12, c3);
  _mm_storeu_ps(out + 16, c4);
  _mm_storeu_ps(out + 20, c5);
  _mm_storeu_ps(out + 24, c6);
  _mm_storeu_ps(out + 28, c7);
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
