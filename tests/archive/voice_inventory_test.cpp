// SPDX-License-Identifier: MIT
// The default voice's spelling rules, one case a line in tests/data/voice_spelling.tsv: where
// the tone mark goes and which syllables the inventory holds.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "orthography.h"
#include "support/tsv_table.h"
#include "vietnamese_letters.h"

namespace voicegen {
namespace {

std::string Toned(const std::string& plain, Tone tone, bool old_style) {
  const std::u32string s = FromUtf8(plain);
  return ToUtf8(PlaceTone(s, RhymeStart(s), tone, old_style));
}

std::string Outcome(const std::string& op, const std::string& in) {
  if (op == "tone") {
    std::istringstream fields(in);
    std::string plain;
    int tone = 0;
    fields >> plain >> tone;
    return Toned(plain, static_cast<Tone>(tone), false) + " " +
           Toned(plain, static_cast<Tone>(tone), true);
  }
  if (op == "variants") {
    std::string joined;
    for (const auto& v : TonePlacementVariants(in))
      joined += (joined.empty() ? "" : " ") + v;
    return joined;
  }
  static const auto all = OrthographicSyllables();
  if (op == "syllable") return std::binary_search(all.begin(), all.end(), in) ? "yes" : "no";
  return "unknown operation " + op;
}

class VoiceSpelling : public ::testing::TestWithParam<vntts::test::TsvRow> {};

TEST_P(VoiceSpelling, FollowsTheOrthography) {
  const auto& row = GetParam();
  EXPECT_EQ(Outcome(row.at(1), row.at(2)), row.at(3))
      << "tests/data/voice_spelling.tsv:" << row.line;
}

INSTANTIATE_TEST_SUITE_P(Table, VoiceSpelling,
                         ::testing::ValuesIn(vntts::test::ReadTsv("voice_spelling")),
                         [](const auto& param_info) {
                           return vntts::test::TsvName(param_info.param);
                         });

TEST(Orthography, TheInventoryIsLarge) {
  EXPECT_GT(OrthographicSyllables().size(), 12000u);
}

} // namespace
} // namespace voicegen
