// SPDX-License-Identifier: MIT
// Conversion of decoded units to the unit format (mono, 22050 Hz) and the general resampler
// that the output side also uses for 22050 -> 11025 Hz.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "archive_files.h"
#include "dsp/resample.h"

namespace vntts {
namespace {

std::vector<std::int16_t> Tone(int rate, double hz, double seconds, double amplitude = 10000) {
  std::vector<std::int16_t> s(static_cast<std::size_t>(rate * seconds));
  for (std::size_t i = 0; i < s.size(); ++i)
    s[i] = static_cast<std::int16_t>(amplitude * std::sin(2 * M_PI * hz * i / rate));
  return s;
}

// Amplitude of one frequency over the middle of a signal (Goertzel), edges left out.
double AmplitudeAt(const std::vector<std::int16_t>& s, int rate, double hz) {
  const std::size_t from = s.size() / 4, to = s.size() * 3 / 4;
  double re = 0, im = 0;
  for (std::size_t i = from; i < to; ++i) {
    re += s[i] * std::cos(2 * M_PI * hz * i / rate);
    im += s[i] * std::sin(2 * M_PI * hz * i / rate);
  }
  return 2 * std::hypot(re, im) / static_cast<double>(to - from);
}

double Db(double ratio) {
  return 20 * std::log10(ratio);
}

TEST(MixToMono, AveragesFramesAndDropsAPartialOne) {
  const std::vector<std::int16_t> stereo = {100, 300, -32768, -32768, 32767, 32767, 1, 2, 9};
  EXPECT_EQ(MixToMono(stereo, 2), (std::vector<std::int16_t>{200, -32768, 32767, 2}));
  EXPECT_EQ(MixToMono(stereo, 1), stereo);
  EXPECT_EQ(MixToMono(std::vector<std::int16_t>{3, 6, 9}, 3), (std::vector<std::int16_t>{6}));
}

TEST(Resampler, KeepsAHeldLevel) {
  for (const auto& [from, to] : {std::pair{44100, 22050},
                                 {16000, 22050},
                                 {48000, 22050},
                                 {22050, 11025},
                                 {8000, 22050},
                                 {22050, 44100}}) {
    const std::vector<std::int16_t> level(static_cast<std::size_t>(from / 10), 1234);
    const auto out = Resampler(from, to).Process(level);
    for (std::size_t i = out.size() / 4; i < out.size() * 3 / 4; ++i)
      ASSERT_NEAR(out[i], 1234, 1) << from << " -> " << to << " at " << i;
  }
}

// Pass band kept within 0.2 dB, what the lower rate cannot hold removed by 60 dB or more.
TEST(Resampler, PassesTheBandAndStopsAliases) {
  struct Case {
    int from, to;
    double hz;
    bool passes;
  };
  const Case cases[] = {
      {44100, 22050, 1000, true},  {44100, 22050, 9000, true},   {44100, 22050, 15000, false},
      {48000, 22050, 3000, true},  {48000, 22050, 13000, false}, {22050, 11025, 3000, true},
      {22050, 11025, 7000, false}, {16000, 22050, 1000, true},   {24000, 22050, 5000, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.from) + " -> " + std::to_string(c.to) + " at " +
                 std::to_string(c.hz));
    const auto out = Resampler(c.from, c.to).Process(Tone(c.from, c.hz, 0.5));
    if (c.passes) {
      EXPECT_NEAR(Db(AmplitudeAt(out, c.to, c.hz) / 10000), 0.0, 0.2);
    } else {
      // The alias of hz would land at |to - hz| (folded into the new band).
      const double alias = std::abs(c.to - c.hz);
      EXPECT_LT(Db(AmplitudeAt(out, c.to, alias) / 10000), -60);
    }
  }
}

// Raising the rate must not add images of the old band above the old Nyquist frequency.
TEST(Resampler, UpsamplingAddsNoImages) {
  const auto out = Resampler(16000, 22050).Process(Tone(16000, 6000, 0.5));
  EXPECT_LT(Db(AmplitudeAt(out, 22050, 16000 - 6000) / 10000), -60);
}

TEST(Resampler, AgreesWithSox) {
  if (std::system("command -v sox > /dev/null 2>&1") != 0) GTEST_SKIP() << "sox is not installed";
  testing::ScratchDir dir;
  auto a = Tone(44100, 700, 0.5, 6000), b = Tone(44100, 2900, 0.5, 3000);
  for (std::size_t i = 0; i < a.size(); ++i)
    a[i] = static_cast<std::int16_t>(a[i] + b[i]);
  const std::string in = dir.file("in.raw"), out = dir.file("out.raw");
  std::ofstream(in, std::ios::binary)
      .write(reinterpret_cast<const char*>(a.data()), static_cast<std::streamsize>(a.size() * 2));
  const std::string cmd = "sox -t raw -r 44100 -e signed -b 16 -c 1 " + in +
                          " -t raw -r 22050 -e signed -b 16 -c 1 " + out + " rate -v";
  ASSERT_EQ(std::system(cmd.c_str()), 0);
  const auto bytes = testing::ReadBytes(out);
  std::vector<std::int16_t> reference(bytes.size() / 2);
  std::memcpy(reference.data(), bytes.data(), reference.size() * 2);
  const auto ours = Resampler(44100, 22050).Process(a);
  ASSERT_NEAR(static_cast<double>(ours.size()), static_cast<double>(reference.size()), 2);
  // Compare the middle (the two filters treat the edges differently).
  double err = 0, sig = 0;
  for (std::size_t i = ours.size() / 4; i < ours.size() * 3 / 4; ++i) {
    err += std::pow(ours[i] - reference[i], 2);
    sig += std::pow(reference[i], 2);
  }
  EXPECT_LT(10 * std::log10(err / sig), -50);
}

} // namespace
} // namespace vntts
