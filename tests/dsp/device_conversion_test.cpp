// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <sstream>

#include "dsp/device_conversion.h"
#include "support/tsv_table.h"

namespace vntts {
namespace {

template <typename T> std::vector<T> Numbers(const std::string& field) {
  std::istringstream in(field);
  std::vector<T> out;
  for (long v; in >> v;)
    out.push_back(static_cast<T>(v));
  return out;
}

class DeviceConversion : public ::testing::TestWithParam<test::TsvRow> {};

TEST_P(DeviceConversion, GivesTheOutputLayout) {
  const auto& row = GetParam();
  const OutputLayout layout{static_cast<std::uint16_t>(std::stoi(row.at(1))),
                            static_cast<std::uint32_t>(std::stoul(row.at(2))),
                            static_cast<std::uint16_t>(std::stoi(row.at(3)))};
  const auto bytes = ConvertSentence(Numbers<std::int16_t>(row[5]), std::stoul(row.at(4)), layout);
  std::vector<long> got;
  for (std::size_t i = 0; i < bytes.size(); i += layout.bits_per_sample / 8)
    got.push_back(layout.bits_per_sample == 8
                      ? bytes[i]
                      : static_cast<std::int16_t>(bytes[i] | bytes[i + 1] << 8));
  EXPECT_EQ(got, Numbers<long>(row[6]));
}

INSTANTIATE_TEST_SUITE_P(Table, DeviceConversion,
                         ::testing::ValuesIn(test::ReadTsv("device_conversion")),
                         [](const auto& param_info) { return test::TsvName(param_info.param); });

// Event positions follow the samples (the engine's sentence tests check the usual rates); a
// position past the range stays at its end.
TEST(DeviceRates, FramePositionsFollowTheRate) {
  EXPECT_EQ(MapFramePosition(1000, 88200), 4000u);
  EXPECT_EQ(MapFramePosition(4000000000u, 44100), UINT32_MAX);
}

double Level(const std::vector<std::uint8_t>& bytes) {
  double sum = 0;
  const std::size_t n = bytes.size() / 2;
  for (std::size_t i = 0; i < n; ++i) {
    const auto s = static_cast<std::int16_t>(bytes[2 * i] | bytes[2 * i + 1] << 8);
    sum += double(s) * s;
  }
  return std::sqrt(sum / double(n));
}

TEST(DeviceRates, ElevenKiloHertzHalvesAndFiltersWhatWouldFoldBack) {
  auto tone = [](double hz) {
    std::vector<std::int16_t> v(22050);
    for (std::size_t i = 0; i < v.size(); ++i)
      v[i] = static_cast<std::int16_t>(10000 * std::sin(2 * std::numbers::pi * hz * i / 22050));
    return v;
  };
  const auto low = ConvertSentence(tone(500), 22050, {1, 11025, 16});
  EXPECT_EQ(low.size(), 11025u * 2);
  EXPECT_GT(Level(low), 6000.0) << "a tone well below 5512 Hz passes";
  const auto high = ConvertSentence(tone(9000), 22050, {1, 11025, 16});
  EXPECT_LT(Level(high), 0.5 * 7071) << "a tone above the new Nyquist is damped";
}

} // namespace
} // namespace vntts
