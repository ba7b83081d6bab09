// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <vector>

#include "dsp/crossfade.h"

namespace vntts {
namespace {

std::vector<std::int16_t> Constant(std::size_t n, std::int16_t value) {
  return std::vector<std::int16_t>(n, value);
}

std::vector<std::int16_t> Sine(std::size_t n, double hz, double phase, double amplitude) {
  std::vector<std::int16_t> out(n);
  for (std::size_t i = 0; i < n; ++i)
    out[i] = static_cast<std::int16_t>(
        std::lround(amplitude * std::sin(phase + 2 * std::numbers::pi * hz * i / 22050.0)));
  return out;
}

int LargestStep(const std::vector<std::int16_t>& s) {
  int step = 0;
  for (std::size_t i = 1; i < s.size(); ++i)
    step = std::max(step, std::abs(int{s[i]} - int{s[i - 1]}));
  return step;
}

// The overlap is cut to the shorter piece; no fade is a plain joint, an empty piece leaves the
// other as it is.
TEST(Crossfade, LengthIsBothPiecesLessTheOverlap) {
  const std::size_t cases[][4] = {{1000, 1000, 110, 1890}, {50, 1000, 110, 1000},
                                  {1000, 30, 110, 1000},   {1000, 1000, 0, 2000},
                                  {0, 500, 110, 500},      {500, 0, 110, 500}};
  for (const auto& c : cases) {
    const auto joined = CrossfadeJoin(Constant(c[0], 100), Constant(c[1], 100), c[2]);
    EXPECT_EQ(joined.size(), c[3]) << c[0] << "+" << c[1] << " fade " << c[2];
  }
}

// Full scale apart: a butt joint jumps 65535 in one sample; the raised cosine spreads it over
// the fade, monotonically and without overshoot (UBSan reports an out-of-range conversion).
TEST(Crossfade, RemovesTheStepBetweenPiecesThatEndApart) {
  const auto joined = CrossfadeJoin(Constant(2000, 32767), Constant(2000, -32768));
  EXPECT_LT(LargestStep(joined), 65535 * std::numbers::pi / (2 * kWordJoinCrossfadeFrames) + 2);
  EXPECT_EQ(joined.front(), 32767);
  EXPECT_EQ(joined.back(), -32768);
  EXPECT_TRUE(std::is_sorted(joined.rbegin(), joined.rend())) << "the fade is monotonic";
}

// Sampled at frame centres, the fade is point-symmetric: its first and last frames stand as far
// from the piece they leave as from the piece they join.
TEST(Crossfade, TheFadeIsSymmetricAboutItsMiddle) {
  const auto joined = CrossfadeJoin(Constant(1000, 10000), Constant(1000, -10000));
  const std::size_t start = 1000 - kWordJoinCrossfadeFrames;
  for (std::size_t k = 0; k < kWordJoinCrossfadeFrames; ++k)
    EXPECT_NEAR(joined[start + k], -joined[start + kWordJoinCrossfadeFrames - 1 - k], 1) << k;
}

std::vector<std::uint8_t> Bytes(const std::vector<std::int16_t>& samples) {
  std::vector<std::uint8_t> out;
  for (std::int16_t s : samples) {
    out.push_back(static_cast<std::uint8_t>(static_cast<std::uint16_t>(s) & 0xFF));
    out.push_back(static_cast<std::uint8_t>(static_cast<std::uint16_t>(s) >> 8));
  }
  return out;
}

TEST(Crossfade, ByteFormMatchesTheSampleForm) {
  const auto a = Sine(700, 300, 0.2, 15000);
  const auto b = Sine(900, 200, 2.0, -15000);
  auto first = Bytes(a);
  first.push_back(0x55); // a stray odd byte is not a sample
  std::vector<std::uint8_t> out(100000, 0xEE);
  const std::size_t n = CrossfadeJoinBytes(first, Bytes(b), out);
  const auto expected = Bytes(CrossfadeJoin(a, b));
  ASSERT_EQ(n, expected.size());
  EXPECT_TRUE(std::equal(expected.begin(), expected.end(), out.begin()));
  EXPECT_EQ(out[n], 0xEE) << "nothing written past the joined bytes";
  out.resize(n - 1, 0xEE); // too small for the result: left untouched
  std::fill(out.begin(), out.end(), 0xEE);
  EXPECT_EQ(CrossfadeJoinBytes(first, Bytes(b), out), 0u);
  EXPECT_EQ(out, std::vector<std::uint8_t>(n - 1, 0xEE));
}

} // namespace
} // namespace vntts
