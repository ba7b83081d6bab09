// SPDX-License-Identifier: MIT
#include "audio/mpeg/layer3.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>

#include "audio/mpeg/const_math.h"
#include "audio/mpeg/huffman.h"
#include "audio/mpeg/kernel_tables.h"
#include "audio/mpeg/layer3_tables.h"

namespace vntts::mpeg {
namespace {

// |x|^(4/3) for every value the Huffman decoder can produce (15 + 13 linbits).
constexpr int kPow43Size = 8207;
constexpr std::array<float, kPow43Size> MakePow43() {
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
constexpr std::array<float, kPow43Size> kPow43 = MakePow43();

// 2^(q/4) for the quarter-step gain exponents q = kGainMin..kGainMax that side information
// and scale factors can produce.
constexpr int kGainMin = -420;
constexpr int kGainMax = 48;
constexpr std::array<float, kGainMax - kGainMin + 1> MakeGains() {
  std::array<float, kGainMax - kGainMin + 1> t{};
  const double quarter[4] = {1.0, cmath::Sqrt(cmath::Sqrt(2.0)), cmath::Sqrt(2.0),
                             cmath::Sqrt(cmath::Sqrt(8.0))};
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
constexpr auto kGains = MakeGains();

inline float GainFor(int q) {
  return kGains[static_cast<std::size_t>(std::clamp(q, kGainMin, kGainMax) - kGainMin)];
}

// Antialias butterflies.
struct Butterfly {
  float cs[8];
  float ca[8];
};
constexpr Butterfly MakeButterfly() {
  constexpr double kC[8] = {-0.6, -0.535, -0.33, -0.185, -0.095, -0.041, -0.0142, -0.0037};
  Butterfly b{};
  for (int i = 0; i < 8; ++i) {
    const double sq = cmath::Sqrt(1 + kC[i] * kC[i]);
    b.cs[i] = static_cast<float>(1 / sq);
    b.ca[i] = static_cast<float>(kC[i] / sq);
  }
  return b;
}
constexpr Butterfly kButterfly = MakeButterfly();

using tables::kImdct36;
using tables::kWindows;

// u[r] = sum_k in[k] kImdct36[k][r], r = 0..17.
inline void Imdct36Core(const float* in, float* u) {
  for (int r = 0; r < 18; ++r) {
    float sum = 0;
    for (int k = 0; k < 18; ++k)
      sum += in[k] * kImdct36[k][r];
    u[r] = sum;
  }
}

// Short IMDCT: y[n] = sum_k X[k] cos(pi/24 (2n + 7)(2k + 1)), n = 0..11, already multiplied
// by the short window; stored by input k.
constexpr std::array<std::array<float, 12>, 6> MakeImdct12() {
  std::array<std::array<float, 12>, 6> m{};
  for (int k = 0; k < 6; ++k)
    for (int n = 0; n < 12; ++n)
      m[k][n] = static_cast<float>(cmath::Cos(cmath::kPi / 24 * (2 * n + 7) * (2 * k + 1)) *
                                   cmath::Sin(cmath::kPi / 12 * (n + 0.5)));
  return m;
}
alignas(16) constexpr auto kImdct12 = MakeImdct12();

// The three short windows of one subband (inputs interleaved by window) into z[6..29].
inline void Imdct12Windows(const float* in, float* z) {
  for (int w = 0; w < 3; ++w)
    for (int n = 0; n < 12; ++n) {
      float sum = 0;
      for (int k = 0; k < 6; ++k)
        sum += in[3 * k + w] * kImdct12[k][n];
      z[6 + 6 * w + n] += sum;
    }
}

// Intensity stereo weights (left, right) of MPEG-1 positions 0..6.
struct Weights {
  float l[7];
  float r[7];
};
constexpr Weights MakeIsWeights() {
  Weights w{};
  for (int p = 0; p < 7; ++p) {
    const double s = cmath::Sin(p * cmath::kPi / 12), c = cmath::Cos(p * cmath::kPi / 12);
    w.l[p] = static_cast<float>(s / (s + c));
    w.r[p] = static_cast<float>(c / (s + c));
  }
  return w;
}
constexpr Weights kIsWeights = MakeIsWeights();

// LSF intensity stereo: io^k for io = 2^-1/4 (scale 0) and 2^-1/2 (scale 1), k = 0..31.
constexpr std::array<std::array<float, 32>, 2> MakeLsfPowers() {
  std::array<std::array<float, 32>, 2> t{};
  const double io[2] = {1 / cmath::Sqrt(cmath::Sqrt(2.0)), 1 / cmath::Sqrt(2.0)};
  for (int s = 0; s < 2; ++s) {
    double v = 1;
    for (int k = 0; k < 32; ++k) {
      t[s][k] = static_cast<float>(v);
      v *= io[s];
    }
  }
  return t;
}
constexpr auto kLsfPowers = MakeLsfPowers();

constexpr float kInvSqrt2 = 0.70710678118654752440f;

void MidSide(float* l, float* r, int n) {
  for (int i = 0; i < n; ++i) {
    const float m = l[i], s = r[i];
    l[i] = (m + s) * kInvSqrt2;
    r[i] = (m - s) * kInvSqrt2;
  }
}

bool AnyNonzero(const float* x, int n) {
  for (int i = 0; i < n; ++i)
    if (x[i] != 0) return true;
  return false;
}

} // namespace

void Layer3Decoder::Reset() {
  std::memset(overlap_, 0, sizeof overlap_);
  sf_[0] = sf_[1] = ScaleFactors{};
  reservoir_bytes_ = 0;
}

void Layer3Decoder::StoreMainData(const std::uint8_t* data, std::size_t bytes, std::size_t keep) {
  keep = std::min({keep, reservoir_bytes_, std::size_t{511}});
  if (keep) std::memmove(reservoir_, reservoir_ + reservoir_bytes_ - keep, keep);
  bytes = std::min(bytes, kMaxFrameBytes);
  std::memcpy(reservoir_ + keep, data, bytes);
  reservoir_bytes_ = keep + bytes;
  // Reads that run past the data stop at its end and see zeros there.
  std::memset(reservoir_ + reservoir_bytes_, 0, kBitReaderPadding);
}

bool Layer3Decoder::Decode(const FrameHeader& h, const std::uint8_t* frame, std::size_t length,
                           Polyphase& synth, float* const pcm[2]) {
  const std::size_t side_start = h.has_crc ? 6 : 4;
  const std::size_t main_start = side_start + h.SideInfoBytes();
  if (length < main_start || length > kMaxFrameBytes) return false;
  BitReader side(frame + side_start, h.SideInfoBytes());
  if (!ReadSideInfo(h, side, si_)) return false;

  const std::uint8_t* main = frame + main_start;
  const std::size_t main_bytes = length - main_start;
  if (si_.main_data_begin > reservoir_bytes_) {
    // Not enough data held to decode this frame: drop it, but keep its bytes for the next.
    StoreMainData(main, main_bytes, 511);
    return false;
  }
  StoreMainData(main, main_bytes, si_.main_data_begin);

  BitReader br(reservoir_, reservoir_bytes_);
  const int channels = h.channels;
  const int granules = h.lsf ? 1 : 2;
  for (int gr = 0; gr < granules; ++gr) {
    for (int ch = 0; ch < channels; ++ch) {
      const GranuleInfo& g = si_.gr[gr][ch];
      const std::size_t part2_start = br.Position();
      if (h.lsf)
        ReadLsfScalefactors(h, br, ch);
      else
        ReadScalefactors(h, br, gr, ch);
      const std::size_t part3_end = part2_start + g.part2_3_length;
      nonzero_[ch] = DecodeSpectrum(h, br, g, sf_[ch], part3_end, xr_[ch]);
      br.Seek(part3_end);
    }
    if (channels == 2 && h.mode == Mode::kJointStereo && h.mode_extension != 0) {
      Stereo(h, si_.gr[gr][0], nonzero_[1]);
    }
    for (int ch = 0; ch < channels; ++ch) {
      if (si_.gr[gr][ch].ShortBlocks()) Reorder(h, si_.gr[gr][ch], xr_[ch]);
      Hybrid(si_.gr[gr][ch], ch, nonzero_[ch], slots_);
      float* out = pcm[ch] + gr * 576;
      synth.FilterSlots(ch, slots_, 18, out);
    }
  }
  return true;
}

void Layer3Decoder::ReadScalefactors(const FrameHeader&, BitReader& br, int gr, int ch) {
  const GranuleInfo& g = si_.gr[gr][ch];
  ScaleFactors& sf = sf_[ch];
  const unsigned s1 = layer3::kSlen[0][g.scalefac_compress & 15];
  const unsigned s2 = layer3::kSlen[1][g.scalefac_compress & 15];
  if (g.ShortBlocks()) {
    int first_short = 0;
    if (g.mixed) {
      for (int b = 0; b < 8; ++b)
        sf.l[b] = static_cast<std::uint8_t>(br.Read(s1));
      first_short = 3;
    }
    for (int b = first_short; b < 12; ++b)
      for (int w = 0; w < 3; ++w)
        sf.s[b][w] = static_cast<std::uint8_t>(br.Read(b < 6 ? s1 : s2));
    sf.s[12][0] = sf.s[12][1] = sf.s[12][2] = 0;
    return;
  }
  static constexpr int kGroupStart[5] = {0, 6, 11, 16, 21};
  for (int group = 0; group < 4; ++group) {
    if (gr == 1 && (si_.scfsi[ch] & (8 >> group))) continue; // shared with granule 0
    const unsigned bits = group < 2 ? s1 : s2;
    for (int b = kGroupStart[group]; b < kGroupStart[group + 1]; ++b)
      sf.l[b] = static_cast<std::uint8_t>(br.Read(bits));
  }
  sf.l[21] = 0;
}

void Layer3Decoder::ReadLsfScalefactors(const FrameHeader& h, BitReader& br, int ch) {
  GranuleInfo& g = si_.gr[0][ch];
  ScaleFactors& sf = sf_[ch];
  const bool intensity_right =
      ch == 1 && h.mode == Mode::kJointStereo && (h.mode_extension & 1) != 0;
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
  const int kind = g.ShortBlocks() ? (g.mixed ? 2 : 1) : 0;
  std::uint8_t values[40] = {};
  std::uint8_t illegal[40] = {};
  int n = 0;
  for (int p = 0; p < 4; ++p) {
    for (int k = 0; k < layer3::kLsfPartitions[table][kind][p]; ++k, ++n) {
      values[n] = static_cast<std::uint8_t>(br.Read(slen[p]));
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

namespace {

// Big-value pairs of lines [i, stop) (stop rounded up to the pair) with one table and one
// gain: Huffman decoding and requantisation in one pass. Returns where it stopped; `last`
// becomes one past the last nonzero line.
template <bool kLinbits>
int DecodePairs(BitReader& br, const PairTable& table, float gain, int i, int stop, float* xr,
                int& last) {
  const unsigned linbits = table.linbits;
  const std::uint32_t* lookup = table.lookup;
  for (; i < stop; i += 2) {
    // One load covers the code word (up to 19 bits), both linbits fields and both signs.
    std::uint64_t bits = br.Peek64();
    std::uint32_t e = lookup[bits >> (64 - huffman_detail::kPrimaryBits)];
    if (e & huffman_detail::kBranch) {
      const unsigned sub = (e >> 24) & 0x1F;
      e = lookup[(e & 0xFFFFFF) + ((bits << huffman_detail::kPrimaryBits) >> (64 - sub))];
    }
    unsigned used = e & 0xFF;
    bits <<= used;
    std::uint32_t x = (e >> 8) & 0xFF;
    std::uint32_t y = (e >> 16) & 0xFF;
    if (kLinbits && x == 15) {
      x += static_cast<std::uint32_t>(bits >> (64 - linbits));
      bits <<= linbits;
      used += linbits;
    }
    const std::uint32_t x_nonzero = x != 0;
    const std::uint32_t x_sign = static_cast<std::uint32_t>(bits >> 63) & x_nonzero;
    bits <<= x_nonzero;
    used += x_nonzero;
    if (kLinbits && y == 15) {
      y += static_cast<std::uint32_t>(bits >> (64 - linbits));
      bits <<= linbits;
      used += linbits;
    }
    const std::uint32_t y_nonzero = y != 0;
    const std::uint32_t y_sign = static_cast<std::uint32_t>(bits >> 63) & y_nonzero;
    used += y_nonzero;
    br.Skip(used);
    xr[i] = std::bit_cast<float>(std::bit_cast<std::uint32_t>(kPow43[x] * gain) ^ (x_sign << 31));
    xr[i + 1] =
        std::bit_cast<float>(std::bit_cast<std::uint32_t>(kPow43[y] * gain) ^ (y_sign << 31));
    last = (x | y) ? static_cast<int>(i + 1 + y_nonzero) : last;
  }
  return i;
}

} // namespace

int Layer3Decoder::DecodeSpectrum(const FrameHeader& h, BitReader& br, const GranuleInfo& g,
                                  const ScaleFactors& sf, std::size_t part3_end, float* xr) {
  // The gain of every stretch of lines that shares one scale factor, in coded order: long
  // bands, then for short blocks each band's three windows.
  const auto& bands = layer3::BandEdgesFor(h.lsf, h.mpeg25, h.rate_index);
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
  if (!g.ShortBlocks() || g.mixed) {
    const int long_end = g.ShortBlocks() ? 36 : 576;
    for (int b = 0; b < 22 && bands.l[b] < long_end; ++b) {
      const int q = base - (sf.l[b] + (g.preflag ? layer3::kPretab[b] : 0)) * step;
      line = bands.l[b + 1];
      stretches[n++] = {line, GainFor(q)};
    }
  }
  if (g.ShortBlocks()) {
    for (int b = g.mixed ? 3 : 0; b < 13; ++b) {
      const int width = bands.s[b + 1] - bands.s[b];
      for (int w = 0; w < 3; ++w) {
        const int q = base - 8 * g.subblock_gain[w] - sf.s[b][w] * step;
        line += width;
        stretches[n++] = {line, GainFor(q)};
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
  for (int region = 0; region < 3; ++region) {
    const int end = std::max(ends[region], i);
    const PairTable& table = kPairTables[g.table_select[region]];
    // Lines of one stretch and one region share the gain and the table: the inner loops run
    // without looking at either.
    while (i < end) {
      while (st->end <= i)
        ++st;
      const int stop = std::min(end, st->end);
      if (!table.lookup) {
        std::fill(xr + i, xr + stop + (stop & 1), 0.0f);
        i = stop + (stop & 1);
      } else if (table.linbits) {
        i = DecodePairs<true>(br, table, st->gain, i, stop, xr, last);
      } else {
        i = DecodePairs<false>(br, table, st->gain, i, stop, xr, last);
      }
    }
  }
  // count1 region: quadruples of -1, 0, 1 until the granule's bits are used up.
  const std::uint32_t* quad_a = huffman_detail::kLookupQuadA.data();
  while (i + 4 <= 576 && br.Position() < part3_end) {
    // A quadruple's code word (at most 6 bits) and its up to four signs fit in one load.
    std::uint64_t bits = br.Peek64();
    unsigned q, used;
    if (g.count1_table_b) {
      q = static_cast<unsigned>(bits >> 60) ^ 15;
      used = 4;
    } else {
      const std::uint32_t e = quad_a[bits >> (64 - huffman_detail::kPrimaryBits)];
      q = (e >> 16) & 15;
      used = e & 0xFF;
    }
    bits <<= used;
    // Without branches on the values, which no predictor can guess: a line's sign bit is
    // consumed only when the line is nonzero.
    int new_last = last;
    for (int k = 0; k < 4; ++k) {
      while (st->end <= i + k)
        ++st;
      const std::uint32_t nonzero = (q >> (3 - k)) & 1;
      const auto sign = static_cast<std::uint32_t>(bits >> 63) & nonzero;
      bits <<= nonzero;
      used += nonzero;
      const std::uint32_t magnitude = std::bit_cast<std::uint32_t>(st->gain) & (0u - nonzero);
      xr[i + k] = std::bit_cast<float>(magnitude | sign << 31);
      new_last = nonzero ? i + k + 1 : new_last;
    }
    br.Skip(used);
    // A quadruple that runs past the granule is not part of it; the zeroing below undoes it.
    if (br.Position() > part3_end) break;
    last = new_last;
    i += 4;
  }
  for (int k = i; k < 576; ++k)
    xr[k] = 0.0f;
  return last;
}

void Layer3Decoder::Stereo(const FrameHeader& h, const GranuleInfo& g, int nonzero_right) {
  float* l = xr_[0];
  float* r = xr_[1];
  const bool ms = (h.mode_extension & 2) != 0;
  const bool intensity = (h.mode_extension & 1) != 0;
  const int used = std::max(nonzero_[0], nonzero_[1]);
  if (!intensity) {
    MidSide(l, r, used);
    nonzero_[0] = nonzero_[1] = used;
    return;
  }
  const auto& bands = layer3::BandEdgesFor(h.lsf, h.mpeg25, h.rate_index);
  const ScaleFactors& sf = sf_[1];
  const float* lsf_powers = kLsfPowers[si_.gr[0][1].scalefac_compress & 1].data();

  // One band of lines [start, start + n) at intensity position pos (or none when illegal).
  auto apply = [&](int start, int n, int pos, int illegal) {
    if (pos >= illegal) {
      if (ms) MidSide(l + start, r + start, n);
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

  if (!g.ShortBlocks()) {
    // Intensity starts at the band after the one holding the right channel's last value.
    int first = 0;
    while (first < 22 && bands.l[first] < nonzero_right)
      ++first;
    if (ms) MidSide(l, r, bands.l[std::min(first, 22)]);
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
      if (AnyNonzero(r + 3 * bands.s[b] + w * width, width)) {
        bound = b + 1;
        break;
      }
    }
    max_bound = std::max(max_bound, bound);
    for (int b = first_band; b < 13; ++b) {
      const int width = bands.s[b + 1] - bands.s[b];
      const int start = 3 * bands.s[b] + w * width;
      if (b < bound) {
        if (ms) MidSide(l + start, r + start, width);
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
        if (ms) MidSide(l + start, r + start, n);
      } else {
        apply(start, n, sf.l[b], long_illegal(b));
      }
    }
  }
  nonzero_[0] = nonzero_[1] = 576;
}

void Layer3Decoder::Reorder(const FrameHeader& h, const GranuleInfo& g, float* x) {
  // Short blocks arrive band by band, each band's three windows one after the other; the
  // short IMDCT wants each frequency's three windows side by side.
  const auto& bands = layer3::BandEdgesFor(h.lsf, h.mpeg25, h.rate_index);
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

void Layer3Decoder::Hybrid(const GranuleInfo& g, int ch, int nonzero, float* slots) {
  float* x = xr_[ch];
  float* overlap = overlap_[ch];
  const bool short_blocks = g.ShortBlocks();

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
  if (!g.window_switching || (g.block_type != 2 && !g.mixed))
    sb = kernels_->long_subbands(x, limit_sb, kWindows[g.block_type].data(), overlap, slots);
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
        Imdct36Core(in, u);
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
        Imdct12Windows(in, z);
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
