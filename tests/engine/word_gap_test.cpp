// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "engine/word_gap.h"

namespace vntts {
namespace {

TEST(PaddingToNextStep, DistanceToTheNextLargerStep) {
  struct Row {
    std::uint32_t bytes, padding;
  };
  constexpr Row rows[] = {{0, 3400},   {3399, 1},   {3400, 200}, {3500, 100}, {3599, 1},
                          {3600, 200}, {4000, 200}, {4199, 1},   {4200, 0},   {5000, 0}};
  for (const auto& r : rows)
    EXPECT_EQ(PaddingToNextStep(r.bytes), r.padding) << r.bytes;
}

struct GapRow {
  const char* name;
  WordGapInput in;
  std::uint32_t gap, silence, next_slowness;
};

class WordGapTable : public ::testing::TestWithParam<GapRow> {};

TEST_P(WordGapTable, MatchesTheRules) {
  const GapRow& r = GetParam();
  const WordGap g = ComputeWordGap(r.in);
  EXPECT_EQ(g.gap_bytes, r.gap);
  EXPECT_EQ(g.silence_bytes, r.silence);
  EXPECT_EQ(g.next_slowness, r.next_slowness);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, WordGapTable,
    ::testing::Values(
        // Default rate: the distance to the step 3600, halved without a phrase.
        GapRow{"short_no_phrase", {3500, 0, false, false, false}, 50, 50, 0},
        GapRow{"short_phrase", {3500, 0, true, false, false}, 100, 100, 0},
        GapRow{"long_word", {5000, 0, false, false, false}, 0, 0, 0},
        GapRow{"long_word_phrase", {5000, 0, true, false, false}, 0, 0, 0},
        // Slowest rate: max(400, 10000) + 10000, minus s for a phrase, halved otherwise.
        GapRow{"slow_phrase", {3000, 5000, true, false, false}, 15000, 15000, 5000},
        GapRow{"slow_no_phrase", {3000, 5000, false, false, false}, 10000, 10000, 2500},
        // The phrase that closes the text: both scaled by 0.005, gap raised to the slowness.
        GapRow{"closing_phrase", {3000, 5000, false, true, false}, 100, 100, 25},
        GapRow{"closing_phrase_default", {3500, 0, false, true, false}, 0, 0, 0},
        // A known pair with the lookahead wins over the closing rule.
        GapRow{"both_phrases", {3000, 5000, true, true, false}, 15000, 15000, 5000},
        // Words from a user definition get a fifth of the gap.
        GapRow{"definition", {3000, 5000, true, false, true}, 3000, 3000, 5000},
        GapRow{"definition_default", {3500, 0, true, false, true}, 20, 20, 0},
        // The gap is never below the (scaled) slowness; silence is cut to whole 10 bytes.
        GapRow{"odd_slowness_halved", {5000, 33, false, false, false}, 66, 60, 16},
        GapRow{"odd_slowness_phrase", {5000, 7, true, false, false}, 21, 20, 7},
        // A rate above the range wraps the slowness: no extra silence, and the first unphrased
        // word brings the stored value back to the default.
        GapRow{"wrapped_phrase", {3000, 4294966296u, true, false, false}, 400, 400, 4294966296u},
        GapRow{"wrapped_no_phrase", {3000, 4294966296u, false, false, false}, 200, 200, 0},
        GapRow{"wrapped_small", {3500, 5001, false, false, false}, 50, 50, 0}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(WordGap, SlownessHalvesAlongATextWithoutPhrases) {
  std::uint32_t s = 5000;
  const std::uint32_t expected[] = {2500, 1250, 625, 312, 156, 78, 39, 19, 9, 4, 2, 1, 0};
  for (std::uint32_t want : expected) {
    s = ComputeWordGap({3000, s, false, false, false}).next_slowness;
    EXPECT_EQ(s, want);
  }
}

} // namespace
} // namespace vntts
