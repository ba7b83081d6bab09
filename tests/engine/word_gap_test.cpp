// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "engine/word_gap.h"
#include "support/tsv_table.h"

namespace vntts {
namespace {

// The rows of tests/data/word_gaps.tsv.
class WordGapTable : public ::testing::TestWithParam<test::TsvRow> {};

TEST_P(WordGapTable, MatchesTheRules) {
  const test::TsvRow& row = GetParam();
  const auto number = [&](std::size_t i) {
    return static_cast<std::uint32_t>(std::stoul(row.at(i)));
  };
  if (row[0] == "padding") {
    EXPECT_EQ(PaddingToNextStep(number(1)), number(2));
    return;
  }
  const WordGap g =
      ComputeWordGap({number(1), number(2), row.at(3) == "1", row.at(4) == "1", row.at(5) == "1"});
  EXPECT_EQ(g.gap_bytes, number(6));
  EXPECT_EQ(g.silence_bytes, number(7));
  EXPECT_EQ(g.next_slowness, number(8));
}

INSTANTIATE_TEST_SUITE_P(Rows, WordGapTable, ::testing::ValuesIn(test::ReadTsv("word_gaps")),
                         [](const ::testing::TestParamInfo<test::TsvRow>& param_info) {
                           return param_info.param[0] + "_line" +
                                  std::to_string(param_info.param.line);
                         });

} // namespace
} // namespace vntts
