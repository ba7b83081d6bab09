#include "audio/mpeg/layer3.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>

#include "audio/mpeg/const_math.h"
#include "audio/mpeg/huffman.h"
#include "audio/mpeg/layer3_tables.h"

#if defined(__SSE2__)
#include <xmmintrin.h>
#endif

namespace vntts::mpeg {
namespace {

// |x|^(4/3) for every value the Huffman decoder can produce (15 + 13 linbits).
constexpr int kPow43Size = 8207;
constexpr std::array<float, kPow43Size> make_pow43() {
  std::array<float, kPow43Size> t{};
  double root = 1; // cube root by Newton's method, starting from the previous entry's
  for (int i = 1; i < kPow43Size; ++i) {
    const double x = i;
    for (int k = 0; k < 4; ++k)
      root = (2 * root + x / (root * root)) / 3;
    t[i] = static_cast<float>(x * root);
  }
  return t;
}
constexpr std::array<float, kPow43Size> kPow43 = make_pow43();

// 2^(q/4) for the quarter-step gain exponents q = kGainMin..kGainMax that side information
// and scale factors can produce.
constexpr int kGainMin = -420;
constexpr int kGainMax = 48;
constexpr std::array<float, kGainMax - kGainMin + 1> make_gains() {
  std::array<float, kGainMax - kGainMin + 1> t{};
  const double quarter[4] = {1.0, cmath::sqrt(cmath::sqrt(2.0)), cmath::sqrt(2.0),
                             cmath::sqrt(cmath::sqrt(8.0))};
  for (int q = kGainMin; q <= kGainMax; ++q) {
    const int whole = q >= 0 ? q / 4 : -((-q + 3) / 4);
    double v = quarter[q - 4 * whole];
    for (int k = 0; k < whole; ++k)
      v *= 2;
    for (int k = 0; k > whole; --k)
      v /= 2;
    t[q - kGainMin] = static_cast<float>(v);
  }
  return t;
}
constexpr auto kGains = make_gains();

inline float gain_for(int q) {
  return kGains[static_cast<std::size_t>(std::clamp(q, kGainMin, kGainMax) - kGainMin)];
}

// Antialias butterflies.
struct Butterfly {
  float cs[8];
  float ca[8];
};
constexpr Butterfly make_butterfly() {
  constexpr double c[8] = {-0.6, -0.535, -0.33, -0.185, -0.095, -0.041, -0.0142, -0.0037};
  Butterfly b{};
  for (int i = 0; i < 8; ++i) {
    const double sq = cmath::sqrt(1 + c[i] * c[i]);
    b.cs[i] = static_cast<float>(1 / sq);
    b.ca[i] = static_cast<float>(c[i] / sq);
  }
  return b;
}
constexpr Butterfly kButterfly = make_butterfly();

// Windows of the four block types, 36 taps each (type 2 holds the 12-tap short window).
constexpr std::array<std::array<float, 36>, 4> make_windows() {
  std::array<std::array<float, 36>, 4> w{};
  for (int i = 0; i < 36; ++i)
    w[0][i] = static_cast<float>(cmath::sin(cmath::kPi / 36 * (i + 0.5)));
  for (int i = 0; i < 18; ++i)
    w[1][i] = w[0][i];
  for (int i = 18; i < 24; ++i)
    w[1][i] = 1;
  for (int i = 24; i < 30; ++i)
    w[1][i] = static_cast<float>(cmath::sin(cmath::kPi / 12 * (i - 18 + 0.5)));
  for (int i = 30; i < 36; ++i)
    w[1][i] = 0;
  for (int i = 0; i < 12; ++i)
    w[2][i] = static_cast<float>(cmath::sin(cmath::kPi / 12 * (i + 0.5)));
  for (int i = 0; i < 6; ++i)
    w[3][i] = 0;
  for (int i = 6; i < 12; ++i)
    w[3][i] = static_cast<float>(cmath::sin(cmath::kPi / 12 * (i - 6 + 0.5)));
  for (int i = 12; i < 18; ++i)
    w[3][i] = 1;
  for (int i = 18; i < 36; ++i)
    w[3][i] = w[0][i];
  return w;
}
constexpr auto kWindows = make_windows();

// Long IMDCT: z[n] = sum_k X[k] cos(pi/72 (2n + 19)(2k + 1)). Only n = 0..8 and 18..26 are
// computed (columns 0..17 here, padded to 20 for whole SSE vectors); z[17 - n] = -z[n] and
// z[53 - n] = z[n] give the rest. Stored by input line k so that each input scales one row.
constexpr std::array<std::array<float, 20>, 18> make_imdct36() {
  std::array<std::array<float, 20>, 18> m{};
  for (int k = 0; k < 18; ++k) {
    for (int r = 0; r < 18; ++r) {
      const int n = r < 9 ? r : r + 9;
      m[k][r] = static_cast<float>(cmath::cos(cmath::kPi / 72 * (2 * n + 19) * (2 * k + 1)));
    }
  }
  return m;
}
alignas(16) constexpr auto kImdct36 = make_imdct36();

// The same matrix with every coefficient repeated four times, rows split in halves of nine:
// [k][0] holds r = 0..8, [k][9] holds r = 9..17 (36 floats each, for aligned vector loads).
constexpr std::array<std::array<std::array<float, 36>, 18>, 18> make_imdct36_splat() {
  std::array<std::array<std::array<float, 36>, 18>, 18> t{};
  for (int k = 0; k < 18; ++k)
    for (int half = 0; half < 18; half += 9)
      for (int j = 0; j < 9; ++j)
        for (int lane = 0; lane < 4; ++lane)
          t[k][half][4 * j + lane] = kImdct36[k][half + j];
  return t;
}
alignas(16) constexpr auto kImdct36Splat = make_imdct36_splat();

// u[r] = sum_k in[k] kImdct36[k][r], r = 0..17.
inline void imdct36_core(const float* in, float* u) {
#if defined(__SSE2__)
  __m128 a0 = _mm_setzero_ps(), a1 = a0, a2 = a0, a3 = a0, a4 = a0;
  for (int k = 0; k < 18; ++k) {
    const __m128 x = _mm_set1_ps(in[k]);
    const float* m = kImdct36[k].data();
    a0 = _mm_add_ps(a0, _mm_mul_ps(x, _mm_load_ps(m)));
    a1 = _mm_add_ps(a1, _mm_mul_ps(x, _mm_load_ps(m + 4)));
    a2 = _mm_add_ps(a2, _mm_mul_ps(x, _mm_load_ps(m + 8)));
    a3 = _mm_add_ps(a3, _mm_mul_ps(x, _mm_load_ps(m + 12)));
    a4 = _mm_add_ps(a4, _mm_mul_ps(x, _mm_load_ps(m + 16)));
  }
  _mm_storeu_ps(u, a0);
  _mm_storeu_ps(u + 4, a1);
  _mm_storeu_ps(u + 8, a2);
  _mm_storeu_ps(u + 12, a3);
  alignas(16) float tail[4];
  _mm_store_ps(tail, a4);
  u[16] = tail[0];
  u[17] = tail[1];
#else
  for (int r = 0; r < 18; ++r) {
    float s = 0;
    for (int k = 0; k < 18; ++k)
      s += in[k] * kImdct36[k][r];
    u[r] = s;
  }
#endif
}

#if defined(__SSE2__)
// Four neighbouring long-block subbands at once, one per lane: IMDCT, window, overlap-add and
// frequency inversion. `in` is the first subband's 18 lines; the overlap and the output slots
// are laid out time-major ([i * 32 + sb]), so a lane group is one aligned vector.
inline void long_subbands_x4(const float* in, const float* window, float* overlap, float* slots) {
  __m128 x[18];
  for (int k = 0; k < 18; ++k)
    x[k] = _mm_set_ps(in[54 + k], in[36 + k], in[18 + k], in[k]);
  // Two passes of nine accumulators each, so that they stay in registers.
  __m128 u[18];
  for (int half = 0; half < 18; half += 9) {
    __m128 a0 = _mm_setzero_ps(), a1 = a0, a2 = a0, a3 = a0, a4 = a0, a5 = a0, a6 = a0, a7 = a0,
           a8 = a0;
    for (int k = 0; k < 18; ++k) {
      const float* m = kImdct36Splat[k][half].data();
      const __m128 v = x[k];
      a0 = _mm_add_ps(a0, _mm_mul_ps(v, _mm_load_ps(m)));
      a1 = _mm_add_ps(a1, _mm_mul_ps(v, _mm_load_ps(m + 4)));
      a2 = _mm_add_ps(a2, _mm_mul_ps(v, _mm_load_ps(m + 8)));
      a3 = _mm_add_ps(a3, _mm_mul_ps(v, _mm_load_ps(m + 12)));
      a4 = _mm_add_ps(a4, _mm_mul_ps(v, _mm_load_ps(m + 16)));
      a5 = _mm_add_ps(a5, _mm_mul_ps(v, _mm_load_ps(m + 20)));
      a6 = _mm_add_ps(a6, _mm_mul_ps(v, _mm_load_ps(m + 24)));
      a7 = _mm_add_ps(a7, _mm_mul_ps(v, _mm_load_ps(m + 28)));
      a8 = _mm_add_ps(a8, _mm_mul_ps(v, _mm_load_ps(m + 32)));
    }
    u[half] = a0;
    u[half + 1] = a1;
    u[half + 2] = a2;
    u[half + 3] = a3;
    u[half + 4] = a4;
    u[half + 5] = a5;
    u[half + 6] = a6;
    u[half + 7] = a7;
    u[half + 8] = a8;
  }
  const __m128 negate = _mm_set1_ps(-0.0f);
  const __m128 odd_lanes = _mm_castsi128_ps(_mm_set_epi32(INT32_MIN, 0, INT32_MIN, 0));
  for (int i = 0; i < 18; ++i) {
    // z[i] for the output half, z[18 + i] for the half kept for the next granule.
    const __m128 lo = i < 9 ? u[i] : _mm_xor_ps(u[17 - i], negate);
    const __m128 hi = i < 9 ? u[9 + i] : u[26 - i];
    float* prev = overlap + 32 * i;
    __m128 out = _mm_add_ps(_mm_mul_ps(lo, _mm_set1_ps(window[i])), _mm_load_ps(prev));
    _mm_store_ps(prev, _mm_mul_ps(hi, _mm_set1_ps(window[18 + i])));
    if (i & 1) out = _mm_xor_ps(out, odd_lanes); // odd subbands, odd time samples
    _mm_store_ps(slots + 32 * i, out);
  }
}
#endif

// Short IMDCT: y[n] = sum_k X[k] cos(pi/24 (2n + 7)(2k + 1)), n = 0..11, already multiplied
// by the short window; stored by input k.
constexpr std::array<std::array<float, 12>, 6> make_imdct12() {
  std::array<std::array<float, 12>, 6> m{};
  for (int k = 0; k < 6; ++k)
    for (int n = 0; n < 12; ++n)
      m[k][n] = static_cast<float>(cmath::cos(cmath::kPi / 24 * (2 * n + 7) * (2 * k + 1)) *
                                   cmath::sin(cmath::kPi / 12 * (n + 0.5)));
  return m;
}
alignas(16) constexpr auto kImdct12 = make_imdct12();

// The three short windows of one subband (inputs interleaved by window) into z[6..29].
inline void imdct12_windows(const float* in, float* z) {
#if defined(__SSE2__)
  for (int w = 0; w < 3; ++w) {
    __m128 a0 = _mm_setzero_ps(), a1 = a0, a2 = a0;
    for (int k = 0; k < 6; ++k) {
      const __m128 x = _mm_set1_ps(in[3 * k + w]);
      const float* m = kImdct12[k].data();
      a0 = _mm_add_ps(a0, _mm_mul_ps(x, _mm_load_ps(m)));
      a1 = _mm_add_ps(a1, _mm_mul_ps(x, _mm_load_ps(m + 4)));
      a2 = _mm_add_ps(a2, _mm_mul_ps(x, _mm_load_ps(m + 8)));
    }
    float* d = z + 6 + 6 * w;
    _mm_storeu_ps(d, _mm_add_ps(_mm_loadu_ps(d), a0));
    _mm_storeu_ps(d + 4, _mm_add_ps(_mm_loadu_ps(d + 4), a1));
    _mm_storeu_ps(d + 8, _mm_add_ps(_mm_loadu_ps(d + 8), a2));
  }
#else
  for (int w = 0; w < 3; ++w)
    for (int n = 0; n < 12; ++n) {
      float s = 0;
      for (int k = 0; k < 6; ++k)
        s += in[3 * k + w] * kImdct12[k][n];
      z[6 + 6 * w + n] += s;
    }
#endif
}

// Intensity stereo weights (left, right) of MPEG-1 positions 0..6.
struct Weights {
  float l[7];
  float r[7];
};
constexpr Weights make_is_weights() {
  Weights w{};
  for (int p = 0; p < 7; ++p) {
    const double s = cmath::sin(p * cmath::kPi / 12), c = cmath::cos(p * cmath::kPi / 12);
    w.l[p] = static_cast<float>(s / (s + c));
    w.r[p] = static_cast<float>(c / (s + c));
  }
  return w;
}
constexpr Weights kIsWeights = make_is_weights();

// LSF intensity stereo: io^k for io = 2^-1/4 (scale 0) and 2^-1/2 (scale 1), k = 0..31.
constexpr std::array<std::array<float, 32>, 2> make_lsf_powers() {
  std::array<std::array<float, 32>, 2> t{};
  const double io[2] = {1 / cmath::sqrt(cmath::sqrt(2.0)), 1 / cmath::sqrt(2.0)};
  for (int s = 0; s < 2; ++s) {
    double v = 1;
    for (int k = 0; k < 32; ++k) {
      t[s][k] = static_cast<float>(v);
      v *= io[s];
    }
  }
  return t;
}
constexpr auto kLsfPowers = make_lsf_powers();

constexpr float kInvSqrt2 = 0.70710678118654752440f;

void mid_side(float* l, float* r, int n) {
  for (int i = 0; i < n; ++i) {
    const float m = l[i], s = r[i];
    l[i] = (m + s) * kInvSqrt2;
    r[i] = (m - s) * kInvSqrt2;
  }
}

bool any_nonzero(const float* x, int n) {
  for (int i = 0; i < n; ++i)
    if (x[i] != 0) return true;
  return false;
}

} // namespace

void Layer3Decoder::reset() {
  std::memset(overlap_, 0, sizeof overlap_);
  sf_[0] = sf_[1] = ScaleFactors{};
  reservoir_bytes_ = 0;
}

void Layer3Decoder::store_main_data(const std::uint8_t* data, std::size_t bytes, std::size_t keep) {
  keep = std::min({keep, reservoir_bytes_, std::size_t{511}});
  if (keep) std::memmove(reservoir_, reservoir_ + reservoir_bytes_ - keep, keep);
  bytes = std::min(bytes, kMaxFrameBytes);
  std::memcpy(reservoir_ + keep, data, bytes);
  reservoir_bytes_ = keep + bytes;
  // Reads that run past the data stop at its end and see zeros there.
  std::memset(reservoir_ + reservoir_bytes_, 0, kBitReaderPadding);
}

bool Layer3Decoder::decode(const FrameHeader& h, const std::uint8_t* frame, std::size_t length,
                           Polyphase& synth, float* const pcm[2]) {
  const std::size_t side_start = h.has_crc ? 6 : 4;
  const std::size_t main_start = side_start + h.side_info_bytes();
  if (length < main_start || length > kMaxFrameBytes) return false;
  BitReader side(frame + side_start, h.side_info_bytes());
  if (!read_side_info(h, side, si_)) return false;

  const std::uint8_t* main = frame + main_start;
  const std::size_t main_bytes = length - main_start;
  if (si_.main_data_begin > reservoir_bytes_) {
    // Not enough data held to decode this frame: drop it, but keep its bytes for the next.
    store_main_data(main, main_bytes, 511);
    return false;
  }
  store_main_data(main, main_bytes, si_.main_data_begin);

  BitReader br(reservoir_, reservoir_bytes_);
  const int channels = h.channels;
  const int granules = h.lsf ? 1 : 2;
  for (int gr = 0; gr < granules; ++gr) {
    for (int ch = 0; ch < channels; ++ch) {
      const GranuleInfo& g = si_.gr[gr][ch];
      const std::size_t part2_start = br.position();
      if (h.lsf)
        read_lsf_scalefactors(h, br, ch);
      else
        read_scalefactors(h, br, gr, ch);
      const std::size_t part3_end = part2_start + g.part2_3_length;
      nonzero_[ch] = decode_spectrum(h, br, g, sf_[ch], part3_end, xr_[ch]);
      br.seek(part3_end);
    }
    if (channels == 2 && h.mode == Mode::JointStereo && h.mode_extension != 0) {
      stereo(h, si_.gr[gr][0], nonzero_[1]);
    }
    for (int ch = 0; ch < channels; ++ch) {
      if (si_.gr[gr][ch].short_blocks()) reorder(h, si_.gr[gr][ch], xr_[ch]);
      hybrid(si_.gr[gr][ch], ch, nonzero_[ch], slots_);
      float* out = pcm[ch] + gr * 576;
      synth.filter_slots(ch, slots_, 18, out);
    }
  }
  return true;
}

void Layer3Decoder::read_scalefactors(const FrameHeader&, BitReader& br, int gr, int ch) {
  const GranuleInfo& g = si_.gr[gr][ch];
  ScaleFactors& sf = sf_[ch];
  const unsigned s1 = layer3::kSlen[0][g.scalefac_compress & 15];
  const unsigned s2 = layer3::kSlen[1][g.scalefac_compress & 15];
  if (g.short_blocks()) {
    int first_short = 0;
    if (g.mixed) {
      for (int b = 0; b < 8; ++b)
        sf.l[b] = static_cast<std::uint8_t>(br.read(s1));
      first_short = 3;
    }
    for (int b = first_short; b < 12; ++b)
      for (int w = 0; w < 3; ++w)
        sf.s[b][w] = static_cast<std::uint8_t>(br.read(b < 6 ? s1 : s2));
    sf.s[12][0] = sf.s[12][1] = sf.s[12][2] = 0;
    return;
  }
  static constexpr int kGroupStart[5] = {0, 6, 11, 16, 21};
  for (int group = 0; group < 4; ++group) {
    if (gr == 1 && (si_.scfsi[ch] & (8 >> group))) continue; // shared with granule 0
    const unsigned bits = group < 2 ? s1 : s2;
    for (int b = kGroupStart[group]; b < kGroupStart[group + 1]; ++b)
      sf.l[b] = static_cast<std::uint8_t>(br.read(bits));
  }
  sf.l[21] = 0;
}

void Layer3Decoder::read_lsf_scalefactors(const FrameHeader& h, BitReader& br, int ch) {
  GranuleInfo& g = si_.gr[0][ch];
  ScaleFactors& sf = sf_[ch];
  const bool intensity_right =
      ch == 1 && h.mode == Mode::JointStereo && (h.mode_extension & 1) != 0;
  unsigned slen[4] = {0, 0, 0, 0};
  int table;
  unsigned sfc = g.scalefac_compress;
  if (!intensity_right) {
    if (sfc < 400) {
      slen[0] = (sfc >> 4) / 5;
      slen[1] = (sfc >> 4) % 5;
      slen[2] = (sfc & 15) >> 2;
      slen[3] = sfc & 3;
      table = 0;
    } else if (sfc < 500) {
      sfc -= 400;
      slen[0] = (sfc >> 2) / 5;
      slen[1] = (sfc >> 2) % 5;
      slen[2] = sfc & 3;
      table = 1;
    } else {
      sfc -= 500;
      slen[0] = sfc / 3;
      slen[1] = sfc % 3;
      table = 2;
      g.preflag = true;
    }
  } else {
    sfc >>= 1;
    if (sfc < 180) {
      slen[0] = sfc / 36;
      slen[1] = (sfc % 36) / 6;
      slen[2] = (sfc % 36) % 6;
      table = 3;
    } else if (sfc < 244) {
      sfc -= 180;
      slen[0] = (sfc & 63) >> 4;
      slen[1] = (sfc & 15) >> 2;
      slen[2] = sfc & 3;
      table = 4;
    } else {
      sfc -= 244;
      slen[0] = sfc / 3;
      slen[1] = sfc % 3;
      table = 5;
    }
  }
  const int kind = g.short_blocks() ? (g.mixed ? 2 : 1) : 0;
  std::uint8_t values[40] = {};
  std::uint8_t illegal[40] = {};
  int n = 0;
  for (int p = 0; p < 4; ++p) {
    for (int k = 0; k < layer3::kLsfPartitions[table][kind][p]; ++k, ++n) {
      values[n] = static_cast<std::uint8_t>(br.read(slen[p]));
      illegal[n] = static_cast<std::uint8_t>((1u << slen[p]) - 1);
    }
  }
  int i = 0;
  if (kind == 0) {
    for (int b = 0; b < 21; ++b, ++i) {
      sf.l[b] = values[i];
      sf.l_illegal[b] = illegal[i];
    }
    sf.l[21] = 0;
    sf.l_illegal[21] = sf.l_illegal[20];
    return;
  }
  int first_short = 0;
  if (kind == 2) {
    for (int b = 0; b < 6; ++b, ++i) {
      sf.l[b] = values[i];
      sf.l_illegal[b] = illegal[i];
    }
    first_short = 3;
  }
  for (int b = first_short; b < 12; ++b) {
    for (int w = 0; w < 3; ++w, ++i)
      sf.s[b][w] = values[i];
    sf.s_illegal[b] = illegal[i - 1];
  }
  sf.s[12][0] = sf.s[12][1] = sf.s[12][2] = 0;
  sf.s_illegal[12] = sf.s_illegal[11];
}

int Layer3Decoder::decode_spectrum(const FrameHeader& h, BitReader& br, const GranuleInfo& g,
                                   const ScaleFactors& sf, std::size_t part3_end, float* xr) {
  // The gain of every stretch of lines that shares one scale factor, in coded order: long
  // bands, then for short blocks each band's three windows.
  const auto& bands = layer3::band_edges(h.lsf, h.mpeg25, h.rate_index);
  // Scale factors step by 2^-1/2 or, with scalefac_scale, 2^-1: 2 or 4 quarter steps.
  const int step = g.scalefac_scale ? 4 : 2;
  const int base = static_cast<int>(g.global_gain) - 210;
  struct Stretch {
    int end;
    float gain;
  };
  Stretch stretches[48];
  int n = 0;
  int line = 0;
  if (!g.short_blocks() || g.mixed) {
    const int long_end = g.short_blocks() ? 36 : 576;
    for (int b = 0; b < 22 && bands.l[b] < long_end; ++b) {
      const int q = base - (sf.l[b] + (g.preflag ? layer3::kPretab[b] : 0)) * step;
      line = bands.l[b + 1];
      stretches[n++] = {line, gain_for(q)};
    }
  }
  if (g.short_blocks()) {
    for (int b = g.mixed ? 3 : 0; b < 13; ++b) {
      const int width = bands.s[b + 1] - bands.s[b];
      for (int w = 0; w < 3; ++w) {
        const int q = base - 8 * g.subblock_gain[w] - sf.s[b][w] * step;
        line += width;
        stretches[n++] = {line, gain_for(q)};
      }
    }
  }
  stretches[n - 1].end = 576;
  stretches[n] = {1 << 30, 0.0f};

  const int big = g.big_values * 2;
  const int ends[3] = {std::min<int>(g.region1_start, big), std::min<int>(g.region2_start, big),
                       big};
  int i = 0;
  int last = 0; // one past the last nonzero line
  const Stretch* st = stretches;
  float gain = st->gain;
  for (int region = 0; region < 3; ++region) {
    const int end = std::max(ends[region], i);
    const PairTable& table = kPairTables[g.table_select[region]];
    if (!table.lookup) {
      for (; i < end; ++i)
        xr[i] = 0.0f;
      while (st->end <= i)
        gain = (++st)->gain;
      continue;
    }
    const unsigned linbits = table.linbits;
    const std::uint32_t* lookup = table.lookup;
    for (; i < end; i += 2) {
      while (st->end <= i)
        gain = (++st)->gain;
      // One load covers the code word (up to 19 bits), both linbits fields and both signs.
      std::uint64_t bits = br.peek64();
      std::uint32_t e = lookup[bits >> (64 - huffman_detail::kPrimaryBits)];
      if (e & huffman_detail::kBranch) {
        const unsigned sub = (e >> 24) & 0x1F;
        e = lookup[(e & 0xFFFFFF) + ((bits << huffman_detail::kPrimaryBits) >> (64 - sub))];
      }
      unsigned used = e & 0xFF;
      bits <<= used;
      std::uint32_t x = (e >> 8) & 0xFF;
      std::uint32_t y = (e >> 16) & 0xFF;
      if (x == 15 && linbits) {
        x += static_cast<std::uint32_t>(bits >> (64 - linbits));
        bits <<= linbits;
        used += linbits;
      }
      const std::uint32_t x_nonzero = x != 0;
      const std::uint32_t x_sign = static_cast<std::uint32_t>(bits >> 63) & x_nonzero;
      bits <<= x_nonzero;
      used += x_nonzero;
      if (y == 15 && linbits) {
        y += static_cast<std::uint32_t>(bits >> (64 - linbits));
        bits <<= linbits;
        used += linbits;
      }
      const std::uint32_t y_nonzero = y != 0;
      const std::uint32_t y_sign = static_cast<std::uint32_t>(bits >> 63) & y_nonzero;
      used += y_nonzero;
      br.skip(used);
      xr[i] = std::bit_cast<float>(std::bit_cast<std::uint32_t>(kPow43[x] * gain) ^ (x_sign << 31));
      xr[i + 1] =
          std::bit_cast<float>(std::bit_cast<std::uint32_t>(kPow43[y] * gain) ^ (y_sign << 31));
      last = (x | y) ? static_cast<int>(i + 1 + y_nonzero) : last;
    }
  }
  // count1 region: quadruples of -1, 0, 1 until the granule's bits are used up.
  while (i + 4 <= 576 && br.position() < part3_end) {
    unsigned q;
    if (g.count1_table_b)
      q = br.read(4) ^ 15;
    else
      q = (decode_code(br, huffman_detail::kLookupQuadA.data()) >> 16) & 15;
    float v[4];
    int new_last = last;
    for (int k = 0; k < 4; ++k) {
      v[k] = 0.0f;
      if ((q >> (3 - k)) & 1) {
        while (st->end <= i + k)
          gain = (++st)->gain;
        v[k] = br.read_bit() ? -gain : gain;
        new_last = i + k + 1;
      }
    }
    if (br.position() > part3_end)
      break; // the last quadruple ran past the granule: it is not part of it
    xr[i] = v[0];
    xr[i + 1] = v[1];
    xr[i + 2] = v[2];
    xr[i + 3] = v[3];
    last = new_last;
    i += 4;
  }
  for (int k = i; k < 576; ++k)
    xr[k] = 0.0f;
  return last;
}

void Layer3Decoder::stereo(const FrameHeader& h, const GranuleInfo& g, int nonzero_right) {
  float* l = xr_[0];
  float* r = xr_[1];
  const bool ms = (h.mode_extension & 2) != 0;
  const bool intensity = (h.mode_extension & 1) != 0;
  const int used = std::max(nonzero_[0], nonzero_[1]);
  if (!intensity) {
    mid_side(l, r, used);
    nonzero_[0] = nonzero_[1] = used;
    return;
  }
  const auto& bands = layer3::band_edges(h.lsf, h.mpeg25, h.rate_index);
  const ScaleFactors& sf = sf_[1];
  const float* lsf_powers = kLsfPowers[si_.gr[0][1].scalefac_compress & 1].data();

  // One band of lines [start, start + n) at intensity position pos (or none when illegal).
  auto apply = [&](int start, int n, int pos, int illegal) {
    if (pos >= illegal) {
      if (ms) mid_side(l + start, r + start, n);
      return;
    }
    float wl, wr;
    if (h.lsf) {
      if (pos == 0) {
        wl = wr = 1;
      } else if (pos & 1) {
        wl = lsf_powers[(pos + 1) >> 1];
        wr = 1;
      } else {
        wl = 1;
        wr = lsf_powers[pos >> 1];
      }
    } else {
      wl = kIsWeights.l[pos];
      wr = kIsWeights.r[pos];
    }
    for (int i = start; i < start + n; ++i) {
      const float v = l[i];
      l[i] = v * wl;
      r[i] = v * wr;
    }
  };
  auto long_illegal = [&](int b) { return h.lsf ? int(sf.l_illegal[b]) : 7; };
  auto short_illegal = [&](int b) { return h.lsf ? int(sf.s_illegal[b]) : 7; };

  if (!g.short_blocks()) {
    // Intensity starts at the band after the one holding the right channel's last value.
    int first = 0;
    while (first < 22 && bands.l[first] < nonzero_right)
      ++first;
    if (ms) mid_side(l, r, bands.l[std::min(first, 22)]);
    for (int b = first; b < 22; ++b) {
      const int pos = b < 21 ? sf.l[b] : (first <= 20 ? sf.l[20] : 255);
      const int ill = b < 21 ? long_illegal(b) : (first <= 20 ? long_illegal(20) : 0);
      apply(bands.l[b], bands.l[b + 1] - bands.l[b], pos, ill);
    }
    nonzero_[0] = nonzero_[1] = 576;
    return;
  }

  // Short blocks: each window has its own boundary.
  const int first_band = g.mixed ? 3 : 0;
  int max_bound = first_band;
  for (int w = 0; w < 3; ++w) {
    int bound = first_band;
    for (int b = 12; b >= first_band; --b) {
      const int width = bands.s[b + 1] - bands.s[b];
      if (any_nonzero(r + 3 * bands.s[b] + w * width, width)) {
        bound = b + 1;
        break;
      }
    }
    max_bound = std::max(max_bound, bound);
    for (int b = first_band; b < 13; ++b) {
      const int width = bands.s[b + 1] - bands.s[b];
      const int start = 3 * bands.s[b] + w * width;
      if (b < bound) {
        if (ms) mid_side(l + start, r + start, width);
        continue;
      }
      const int pos = b < 12 ? sf.s[b][w] : (bound <= 11 ? sf.s[11][w] : 255);
      const int ill = b < 12 ? short_illegal(b) : (bound <= 11 ? short_illegal(11) : 0);
      apply(start, width, pos, ill);
    }
  }
  if (g.mixed) {
    // The long part (below line 36) takes intensity only when no short band of the right
    // channel holds a value.
    int first = 0;
    if (max_bound > first_band) {
      first = 99;
    } else {
      int last = -1;
      for (int i = 35; i >= 0; --i)
        if (r[i] != 0) {
          last = i;
          break;
        }
      while (bands.l[first] <= last)
        ++first;
    }
    for (int b = 0; bands.l[b] < 36; ++b) {
      const int start = bands.l[b], n = bands.l[b + 1] - bands.l[b];
      if (b < first) {
        if (ms) mid_side(l + start, r + start, n);
      } else {
        apply(start, n, sf.l[b], long_illegal(b));
      }
    }
  }
  nonzero_[0] = nonzero_[1] = 576;
}

void Layer3Decoder::reorder(const FrameHeader& h, const GranuleInfo& g, float* x) {
  // Short blocks arrive band by band, each band's three windows one after the other; the
  // short IMDCT wants each frequency's three windows side by side.
  const auto& bands = layer3::band_edges(h.lsf, h.mpeg25, h.rate_index);
  alignas(16) float tmp[576];
  const int first_band = g.mixed ? 3 : 0;
  const int start = 3 * bands.s[first_band];
  for (int b = first_band; b < 13; ++b) {
    const int width = bands.s[b + 1] - bands.s[b];
    const int base = 3 * bands.s[b];
    for (int w = 0; w < 3; ++w)
      for (int k = 0; k < width; ++k)
        tmp[base + 3 * k + w] = x[base + w * width + k];
  }
  std::memcpy(x + start, tmp + start, sizeof(float) * (576 - start));
}

void Layer3Decoder::hybrid(const GranuleInfo& g, int ch, int nonzero, float* slots) {
  float* x = xr_[ch];
  float* overlap = overlap_[ch];
  const bool short_blocks = g.short_blocks();

  // Antialias between long subbands.
  int limit_sb = (nonzero + 17) / 18;
  if (limit_sb > 32) limit_sb = 32;
  const int alias_end = short_blocks ? (g.mixed ? 2 : 0) : std::min(limit_sb + 1, 32);
  for (int sb = 1; sb < alias_end; ++sb) {
    float* lo = x + 18 * sb - 1;
    float* hi = x + 18 * sb;
    for (int i = 0; i < 8; ++i) {
      const float a = lo[-i], b = hi[i];
      lo[-i] = a * kButterfly.cs[i] - b * kButterfly.ca[i];
      hi[i] = b * kButterfly.cs[i] + a * kButterfly.ca[i];
    }
  }
  if (!short_blocks && alias_end > limit_sb) limit_sb = alias_end;

  int sb = 0;
#if defined(__SSE2__)
  if (!g.window_switching || (g.block_type != 2 && !g.mixed)) {
    const float* w = kWindows[g.block_type].data();
    const int end = (limit_sb + 3) & ~3;
    for (; sb < end; sb += 4)
      long_subbands_x4(x + 18 * sb, w, overlap + sb, slots + sb);
  }
#endif
  for (; sb < 32; ++sb) {
    float out[18];
    if (sb >= limit_sb && !short_blocks) {
      for (int i = 0; i < 18; ++i) {
        out[i] = overlap[32 * i + sb];
        overlap[32 * i + sb] = 0;
      }
    } else {
      const float* in = x + 18 * sb;
      // The mixed flag puts the two lowest subbands on the normal long window whatever the
      // block type says.
      const int type = (g.window_switching && g.mixed && sb < 2) ? 0 : g.block_type;
      float z[36];
      if (type != 2) {
        float u[18];
        imdct36_core(in, u);
        for (int n = 0; n < 9; ++n) {
          z[n] = u[n];
          z[17 - n] = -u[n];
          z[18 + n] = u[9 + n];
          z[35 - n] = u[9 + n];
        }
        const float* w = kWindows[type].data();
        for (int i = 0; i < 36; ++i)
          z[i] *= w[i];
      } else {
        for (int i = 0; i < 36; ++i)
          z[i] = 0;
        imdct12_windows(in, z);
      }
      for (int i = 0; i < 18; ++i) {
        out[i] = z[i] + overlap[32 * i + sb];
        overlap[32 * i + sb] = z[18 + i];
      }
    }
    // Frequency inversion: odd time samples of odd subbands change sign.
    if (sb & 1)
      for (int i = 1; i < 18; i += 2)
        out[i] = -out[i];
    for (int i = 0; i < 18; ++i)
      slots[32 * i + sb] = out[i];
  }
}

} // namespace vntts::mpeg
