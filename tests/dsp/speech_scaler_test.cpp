// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <string>
#include <vector>

#include "dsp/speech_scaler.h"
#include "support/tsv_table.h"

namespace vntts {
namespace {

constexpr double kRate = 22050;
// Two steady vowels with a pause between them: 50 ms silence, vowel A, pause, vowel B, 100 ms.
constexpr double kLead = 0.05, kVowel = 0.8, kPause = 0.3, kTail = 0.1;
constexpr double kF0A = 120, kF0B = 150;

// A vowel-like tone: harmonics of f0 under three formant peaks, everything (f0 and formants)
// times `shift`, which is what an ideal pitch shift of a recording gives.
double VowelSample(double t, double f0, double shift) {
  constexpr double kFormants[] = {700, 1220, 2600};
  double v = 0;
  for (int h = 1; h * f0 < 5000; ++h) {
    const double f = h * f0 * shift;
    double a = 0.3 / h;
    for (double formant : kFormants)
      a += std::exp(-std::pow((f - formant * shift) / 150.0, 2));
    v += a * std::sin(2 * std::numbers::pi * f * t + 1.7 * h * h);
  }
  return v;
}

std::vector<std::int16_t> TwoVowels(double shift) {
  const auto at = [](double s) { return static_cast<std::size_t>(s * kRate); };
  std::vector<double> v(at(kLead + 2 * kVowel + kPause + kTail), 0.0);
  const auto put = [&](double start, double f0) {
    const std::size_t n = at(kVowel), ramp = at(0.01);
    for (std::size_t i = 0; i < n; ++i) {
      const double edge = std::min({1.0, double(i) / ramp, double(n - 1 - i) / ramp});
      v[at(start) + i] = edge * VowelSample(i / kRate, f0, shift);
    }
  };
  put(kLead, kF0A);
  put(kLead + kVowel + kPause, kF0B);
  const double peak = *std::max_element(
      v.begin(), v.end(), [](double a, double b) { return std::abs(a) < std::abs(b); });
  std::vector<std::int16_t> out(v.size());
  for (std::size_t i = 0; i < v.size(); ++i)
    out[i] = static_cast<std::int16_t>(std::lround(12000 * v[i] / std::abs(peak)));
  return out;
}

// Frame at which the energy of s[from, to) is centred.
double EnergyCentre(const std::vector<std::int16_t>& s, std::size_t from, std::size_t to) {
  double weighted = 0, total = 0;
  for (std::size_t i = from; i < to; ++i) {
    const double e = double(s[i]) * s[i];
    weighted += e * i;
    total += e;
  }
  return weighted / total;
}

// Fundamental frequency over 2048 frames centred on `centre`: the first lag whose normalised
// autocorrelation peaks within 20% of the best, refined by a parabola through its neighbours.
double FundamentalAt(const std::vector<std::int16_t>& s, std::size_t centre) {
  constexpr long kWindow = 2048, kMinLag = 40, kMaxLag = 460;
  const long start = static_cast<long>(centre) - kWindow / 2 - kMaxLag / 2;
  std::vector<double> r(kMaxLag + 2, 0.0);
  for (long lag = kMinLag - 1; lag <= kMaxLag + 1; ++lag) {
    double xy = 0, xx = 0, yy = 0;
    for (long i = 0; i < kWindow; ++i) {
      const double x = s[start + i], y = s[start + i + lag];
      xy += x * y, xx += x * x, yy += y * y;
    }
    r[lag] = xy / std::sqrt(xx * yy + 1e-9);
  }
  const double best = *std::max_element(r.begin() + kMinLag, r.begin() + kMaxLag);
  long lag = kMinLag;
  while (r[lag] < 0.8 * best || r[lag + 1] > r[lag])
    ++lag;
  const double a = r[lag - 1], b = r[lag], c = r[lag + 1];
  return kRate / (lag + 0.5 * (a - c) / (a - 2 * b + c));
}

int LargestCurvature(const std::vector<std::int16_t>& s) {
  int peak = 0;
  for (std::size_t i = 2; i < s.size(); ++i)
    peak = std::max(peak, std::abs(s[i] - 2 * s[i - 1] + s[i - 2]));
  return peak;
}

// Largest over smallest level of 30 ms blocks inside s[from, to).
double LevelSwing(const std::vector<std::int16_t>& s, std::size_t from, std::size_t to) {
  const std::size_t block = static_cast<std::size_t>(0.03 * kRate);
  double lo = 1e300, hi = 0;
  for (std::size_t b = from; b + block <= to; b += block) {
    double e = 0;
    for (std::size_t i = b; i < b + block; ++i)
      e += double(s[i]) * s[i];
    lo = std::min(lo, e), hi = std::max(hi, e);
  }
  return std::sqrt(hi / lo);
}

TEST(SpeechScaler, PaceAndPitchMoveAsAskedWithoutClicks) {
  const auto in = TwoVowels(1.0);
  double worst_pace = 0, worst_f0 = 0; // largest relative errors, for the figures printed
  for (const auto& row : test::ReadTsv("speech_scaling")) {
    const SpeechScaler scaler(std::stod(row[0]), std::stod(row[1]));
    const double speed = std::stod(row[2]), pitch = std::stod(row[3]);
    SCOPED_TRACE("speed " + row[0] + " pitch " + row[1]);
    EXPECT_DOUBLE_EQ(scaler.speed(), speed);
    EXPECT_NEAR(scaler.pitch(), pitch, 1.0 / 1024);

    const auto out = scaler.Process(in);
    ASSERT_EQ(out.size(), std::lround(in.size() / speed));
    EXPECT_EQ(scaler.OutputLength(in.size()), out.size());
    const auto at = [&](double seconds) {
      return static_cast<std::size_t>(seconds * kRate / speed);
    };

    const std::size_t split = at(kLead + kVowel + kPause / 2);
    const double apart = EnergyCentre(out, split, out.size()) - EnergyCentre(out, 0, split);
    const double pace = apart / (kRate * (kVowel + kPause) / speed);
    EXPECT_NEAR(pace, 1.0, 0.02) << "pace";
    const double f0_a = FundamentalAt(out, at(kLead + kVowel / 2)) / (kF0A * pitch);
    const double f0_b = FundamentalAt(out, at(kLead + 1.5 * kVowel + kPause)) / (kF0B * pitch);
    EXPECT_NEAR(f0_a, 1.0, 0.02);
    EXPECT_NEAR(f0_b, 1.0, 0.02);
    worst_pace = std::max(worst_pace, std::abs(pace - 1));
    worst_f0 = std::max({worst_f0, std::abs(f0_a - 1), std::abs(f0_b - 1)});

    // A join out of phase shows as a spike of curvature (a click) or a dip in level.
    EXPECT_LE(LargestCurvature(out), 1.25 * LargestCurvature(TwoVowels(pitch))) << "clicks";
    const double margin = 0.06;
    EXPECT_LT(LevelSwing(out, at(kLead + margin), at(kLead + kVowel - margin)), 1.10) << "dips";
    EXPECT_LT(LevelSwing(out, at(kLead + kVowel + kPause + margin),
                         at(kLead + 2 * kVowel + kPause - margin)),
              1.10)
        << "dips";
  }
  std::printf("figure worst_pace_error_percent %.2f\nfigure worst_f0_error_percent %.2f\n",
              100 * worst_pace, 100 * worst_f0);
}

TEST(SpeechScaler, UnitFactorsKeepTheSamples) {
  const auto in = TwoVowels(1.0);
  EXPECT_EQ(SpeechScaler(1.0, 1.0).Process(in), in);
  EXPECT_EQ(SpeechScaler(2.0, 1.0).MapFrame(22050), 11025u);
}

} // namespace
} // namespace vntts
