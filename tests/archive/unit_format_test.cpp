// SPDX-License-Identifier: MIT
// Conversion of decoded units to the unit format (mono, 22050 Hz) and the general resampler
// that the output side also uses for 22050 -> 11025 Hz.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "archive_files.h"
#include "dsp/resample.h"

namespace vntts {
namespace {

TEST(MixToMono, AveragesFramesAndDropsAPartialOne) {
  const std::vector<std::int16_t> stereo = {100, 300, -32768, -32768, 32767, 32767, 1, 2, 9};
  EXPECT_EQ(MixToMono(stereo, 2), (std::vector<std::int16_t>{200, -32768, 32767, 2}));
  EXPECT_EQ(MixToMono(stereo, 1), stereo);
  EXPECT_EQ(MixToMono(std::vector<std::int16_t>{3, 6, 9}, 3), (std::vector<std::int16_t>{6}));
}

// Our resampler against sox's best one, for each rate change a unit or the output meets: two
// tones in the pass band and a third at 0.8 of the old Nyquist frequency, which a lower rate
// must remove without an alias and a higher one must pass without images (for a slight drop in
// rate, where that lies in the two filters' different transition bands, one higher in the pass
// band instead).
TEST(Resampler, AgreesWithSox) {
  if (std::system("command -v sox > /dev/null 2>&1") != 0) GTEST_SKIP() << "sox is not installed";
  test::TempFolder dir;
  for (const auto& [from, to] : {std::pair{44100, 22050},
                                 {48000, 22050},
                                 {16000, 22050},
                                 {8000, 22050},
                                 {22050, 11025},
                                 {24000, 22050}}) {
    SCOPED_TRACE(std::to_string(from) + " -> " + std::to_string(to));
    const double third = from > to && 0.4 * from < 0.5 * to ? 0.3 * to : 0.4 * from;
    std::vector<std::int16_t> in(static_cast<std::size_t>(from / 2));
    for (std::size_t i = 0; i < in.size(); ++i) {
      const double t = static_cast<double>(i) / from;
      in[i] = static_cast<std::int16_t>(6000 * std::sin(2 * M_PI * 700 * t) +
                                        3000 * std::sin(2 * M_PI * 2900 * t) +
                                        3000 * std::sin(2 * M_PI * third * t));
    }
    const std::string raw_in = (dir / "in.raw").string(), raw_out = (dir / "out.raw").string();
    testing::WriteBytes(
        raw_in, testing::Bytes(reinterpret_cast<const std::uint8_t*>(in.data()),
                               reinterpret_cast<const std::uint8_t*>(in.data()) + in.size() * 2));
    const std::string cmd = "sox -t raw -r " + std::to_string(from) + " -e signed -b 16 -c 1 " +
                            raw_in + " -t raw -r " + std::to_string(to) + " -e signed -b 16 -c 1 " +
                            raw_out + " rate -v";
    ASSERT_EQ(std::system(cmd.c_str()), 0);
    const auto bytes = testing::ReadBytes(raw_out);
    std::vector<std::int16_t> reference(bytes.size() / 2);
    std::memcpy(reference.data(), bytes.data(), reference.size() * 2);
    const auto ours = Resampler(from, to).Process(in);
    ASSERT_NEAR(static_cast<double>(ours.size()), static_cast<double>(reference.size()), 2);
    // Compare the middle (the two filters treat the edges differently).
    double err = 0, sig = 0;
    for (std::size_t i = ours.size() / 4; i < ours.size() * 3 / 4; ++i) {
      err += std::pow(ours[i] - reference[i], 2);
      sig += std::pow(reference[i], 2);
    }
    std::printf("%d -> %d: %.1f dB from sox\n", from, to, 10 * std::log10(err / sig));
    EXPECT_LT(10 * std::log10(err / sig), -50);
  }
}

} // namespace
} // namespace vntts
