// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "dsp/sound_onset.h"

namespace vntts {
namespace {

// `lead` frames at `lead_level`, then a second of tone at 10000.
std::vector<std::int16_t> LeadThenTone(std::size_t lead, double lead_level) {
  std::vector<std::int16_t> v(lead + 22050);
  for (std::size_t i = 0; i < v.size(); ++i) {
    const double level = i < lead ? lead_level : 10000;
    v[i] = static_cast<std::int16_t>(level * std::sin(2 * std::numbers::pi * 300 * i / 22050));
  }
  return v;
}

TEST(SoundOnset, IsWhereTheSoundRisesAboveTheSilence) {
  struct Row {
    std::size_t lead;
    double lead_level;
    std::size_t onset;
  };
  const Row rows[] = {
      {0, 0, 0},      {220, 0, 220}, {230, 0, 220}, // the block that holds the start
      {440, 20, 440}, // 54 dB under the tone: codec noise before a burst is still silence
      {440, 100, 0},  // 40 dB under: a soft onset is already sound
  };
  for (const auto& r : rows)
    EXPECT_EQ(SoundOnset(LeadThenTone(r.lead, r.lead_level)), r.onset) << r.lead;
  // A lead that sounds only in frames 4-7 and 12-15 of each block is sound too: the energy
  // sums take samples eight at a time, and every lane counts.
  auto sparse = LeadThenTone(440, 0);
  for (std::size_t i = 0; i < 440; ++i)
    sparse[i] = i % kOnsetBlockFrames % 8 >= 4 && i % kOnsetBlockFrames < 16 ? 300 : 0;
  EXPECT_EQ(SoundOnset(sparse), 0u);
  // Silence and nothing start at zero.
  EXPECT_EQ(SoundOnset({}), 0u);
  EXPECT_EQ(SoundOnset(std::vector<std::int16_t>(500, 0)), 0u);
}

} // namespace
} // namespace vntts
