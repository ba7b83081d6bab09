// SPDX-License-Identifier: MIT
// The default voice's unit shaping, on synthetic signals whose answers are known: trimming to
// the sound, the cut release of a final stop, faded ends, offset, loudness and peaks.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "reference_codecs.h"
#include "unit_encoding.h"
#include "unit_shaping.h"

namespace voicegen {
namespace {

constexpr int kRate = 22050;

std::size_t Ms(double ms) {
  return static_cast<std::size_t>(std::lround(ms * kRate / 1000));
}

class Signal {
public:
  Signal& Silence(double ms) { return Tone(ms, 0); }
  Signal& Tone(double ms, double amplitude, double hz = 220) {
    for (std::size_t i = 0; i < Ms(ms); ++i)
      pcm_.push_back(static_cast<std::int16_t>(std::lround(
          amplitude * std::sin(2 * std::numbers::pi * hz * static_cast<double>(i) / kRate))));
    return *this;
  }
  Signal& Offset(double by) {
    for (auto& s : pcm_)
      s = static_cast<std::int16_t>(s + by);
    return *this;
  }
  const std::vector<std::int16_t>& pcm() const { return pcm_; }

private:
  std::vector<std::int16_t> pcm_;
};

double LevelDb(const ShapedUnit& u, const ShapingSettings& settings) {
  const std::vector<double> x(u.sound.begin(), u.sound.end());
  return 20 * std::log10(GatedRms(x, Ms(5), -30) / settings.target_rms);
}

int Peak(const std::vector<std::int16_t>& v) {
  int peak = 0;
  for (auto s : v)
    peak = std::max(peak, std::abs(static_cast<int>(s)));
  return peak;
}

// Silence around a tone is cut to a few milliseconds, an offset is taken out, both ends come
// to zero, the loudness is the target's and the join silence is designed, not recorded.
TEST(ShapeUnit, KeepsTheSoundCentredAtTheTargetLoudnessWithFadedEnds) {
  const ShapingSettings settings;
  for (const double offset : {0.0, 900.0}) {
    SCOPED_TRACE(offset);
    const auto u = ShapeUnit(
        Signal().Silence(100).Tone(200, 8000).Silence(100).Offset(offset).pcm(), settings);
    ASSERT_FALSE(u.empty);
    EXPECT_FALSE(u.final_stop);
    EXPECT_GE(u.sound.size(), Ms(199));
    EXPECT_LE(u.sound.size(), Ms(206));
    EXPECT_EQ(u.silence, Ms(settings.gap_ms));
    EXPECT_LT(std::abs(u.sound.front()), 30);
    EXPECT_LT(std::abs(u.sound.back()), 30);
    double sum = 0;
    for (auto s : u.sound)
      sum += s;
    EXPECT_LT(std::abs(sum / static_cast<double>(u.sound.size())), 0.5);
    EXPECT_NEAR(LevelDb(u, settings), 0, 0.1);
  }
  EXPECT_TRUE(ShapeUnit(Signal().Silence(200).pcm()).empty);
  EXPECT_TRUE(ShapeUnit({}).empty);
}

TEST(ShapeUnit, CutsAFaintReleaseAfterAClosureAndKeepsTheClosureAsSilence) {
  const ShapingSettings settings;
  const auto faint =
      ShapeUnit(Signal().Silence(20).Tone(150, 8000).Silence(50).Tone(5, 250, 3000).pcm());
  EXPECT_TRUE(faint.final_stop);
  EXPECT_LE(faint.sound.size(), Ms(156));
  EXPECT_EQ(faint.silence, Ms(settings.closure_ms));
  // A burst carrying a real share of the energy is part of the syllable.
  const auto loud =
      ShapeUnit(Signal().Silence(20).Tone(150, 8000).Silence(50).Tone(30, 8000, 3000).pcm());
  EXPECT_FALSE(loud.final_stop);
  EXPECT_GT(loud.sound.size(), Ms(150 + 50 + 30));
  EXPECT_EQ(loud.silence, Ms(settings.gap_ms));
}

TEST(ShapeUnit, BringsPeaksUnderTheLimitWithoutLosingLoudness) {
  Signal s;
  s.Silence(10);
  for (int k = 0; k < 6; ++k)
    s.Tone(45, 3000).Tone(1, 28000, 2000); // clicks far above the tone
  const ShapingSettings settings;
  const auto u = ShapeUnit(s.pcm(), settings);
  EXPECT_TRUE(u.peak_limited);
  EXPECT_LE(Peak(u.sound), settings.peak_limit * 1.001); // the offset removal moves it a step
  EXPECT_NEAR(LevelDb(u, settings), 0, 0.1);
}

#ifdef VNTTS_HAVE_REFERENCE_CODECS
// Encoded, a unit decodes gaplessly (libmpg123 as ours) to exactly the samples encoded, its end
// faded under -60 dBFS and its mean near zero, although the low tone gives the codec every reason
// to leave an offset.
TEST(EncodeChecked, DecodesToTheSamplesEncodedFadedAndCentred) {
  const auto u =
      ShapeUnit(Signal().Silence(20).Tone(160, 9000, 180).Tone(90, 6000, 95).Silence(20).pcm());
  const auto e = EncodeChecked(u);
  ASSERT_EQ(e.error, nullptr);
  EXPECT_TRUE(e.passed);
  EXPECT_GE(e.samples, u.sound.size() + u.silence);
  const auto reference = vntts::testing::mpg123_decode(e.mp3.data(), e.mp3.size());
  ASSERT_EQ(reference.samples.size(), e.samples);
  EXPECT_LT(TailLevelDbfs(reference.samples, kRate), -60);
  double sum = 0;
  for (auto s : reference.samples)
    sum += s;
  EXPECT_LT(std::abs(sum / static_cast<double>(e.samples)), 4.0);
}
#endif

} // namespace
} // namespace voicegen
