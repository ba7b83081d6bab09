// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "store/auto_correct_file.h"
#include "store/auto_correct_table.h"
#include "support/temp_folder.h"
#include "support/tsv_table.h"
#include "text/charset/charsets.h"

namespace vntts {
namespace {

using Bytes = std::vector<std::uint8_t>;

// "ko" -> "không", "dc" -> "được", written out byte by byte.
const Bytes kHandMadeFile = {
    0x02, 0x00, 0x00, 0x00,                 // two pairs
    0x02, 'k',  'o',                        // ko
    0x06, 'k',  'h',  'o',  0xE2, 'n', 'g', // không
    0x02, 'd',  'c',                        // dc
    0x05, 0xF1, 0xF6, 0xF4, 0xEF, 'c',      // được
};

TEST(AutoCorrectTable, SavesAndLoadsTheFileByteForByte) {
  test::TempFolder folder;
  const auto path = folder / "AutoCrt.crt";
  const AutoCorrectTable table(std::vector<AutoCorrectPair>{{"ko", Utf8ToInternal("không")},
                                                            {"dc", Utf8ToInternal("được")}});
  ASSERT_TRUE(table.Save(path));
  const std::string saved = folder.Read("AutoCrt.crt");
  EXPECT_EQ(Bytes(saved.begin(), saved.end()), kHandMadeFile);
  folder.Write("AutoCrt.crt", saved + "\x99\x98"); // bytes after the last pair are ignored
  AutoCorrectTable loaded;
  ASSERT_TRUE(loaded.Load(path));
  EXPECT_EQ(loaded.Pairs(), table.Pairs());
  EXPECT_EQ(SerializeAutoCorrectFile({}), (Bytes{0, 0, 0, 0}));
  EXPECT_TRUE(ParseAutoCorrectFile(Bytes{0, 0, 0, 0}).ok());
}

TEST(AutoCorrectFile, LengthPrefixTakesOneThreeOrSevenBytes) {
  const std::pair<std::size_t, Bytes> cases[] = {
      {0, {0x00}},
      {254, {0xFE}},
      {255, {0xFF, 0xFF, 0x00}},
      {0x1234, {0xFF, 0x34, 0x12}},
      {0xFFFD, {0xFF, 0xFD, 0xFF}},
      {0xFFFE, {0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0x00, 0x00}},
      {70000, {0xFF, 0xFF, 0xFF, 0x70, 0x11, 0x01, 0x00}},
  };
  for (const auto& [length, prefix] : cases) {
    SCOPED_TRACE(length);
    const std::vector<AutoCorrectPair> pairs = {{std::string(length, 'x'), "y"}};
    Bytes expected = {1, 0, 0, 0};
    for (std::uint8_t b : prefix)
      expected.push_back(b);
    expected.resize(expected.size() + length, 'x');
    expected.push_back(1);
    expected.push_back('y');
    EXPECT_EQ(SerializeAutoCorrectFile(pairs), expected);
    const auto parsed = ParseAutoCorrectFile(expected);
    ASSERT_TRUE(parsed.ok()) << parsed.error;
    EXPECT_EQ(parsed.pairs, pairs);
  }
}

class MalformedAutoCorrectFile : public ::testing::TestWithParam<test::TsvRow> {};

TEST_P(MalformedAutoCorrectFile, GivesAClearErrorAndNoPairs) {
  Bytes bytes;
  std::istringstream hex(GetParam()[1]);
  for (unsigned byte = 0; hex >> std::hex >> byte;)
    bytes.push_back(static_cast<std::uint8_t>(byte));
  const auto parsed = ParseAutoCorrectFile(bytes);
  EXPECT_FALSE(parsed.ok());
  EXPECT_TRUE(parsed.pairs.empty());
  EXPECT_NE(parsed.error.find(GetParam().at(2)), std::string::npos) << parsed.error;
}

INSTANTIATE_TEST_SUITE_P(Table, MalformedAutoCorrectFile,
                         ::testing::ValuesIn(test::ReadTsv("auto_correct_malformed")),
                         [](const auto& row) { return test::TsvName(row.param); });

TEST(AutoCorrectTable, LooksTokensUpAsTheyStandAndTheLastDuplicateWins) {
  AutoCorrectTable table(
      std::vector<AutoCorrectPair>{{"ko", "kho"}, {"Ko", "Kho"}, {"ko", "khong"}});
  const AutoCorrectLookup& lookup = table;
  EXPECT_EQ(lookup.FindReplacement("ko"), "khong");
  EXPECT_EQ(lookup.FindReplacement("Ko"), "Kho");
  EXPECT_EQ(lookup.FindReplacement("KO"), std::nullopt);
  EXPECT_EQ(lookup.FindReplacement(""), std::nullopt);
}

TEST(AutoCorrectTable, AFailedLoadKeepsTheOldPairs) {
  test::TempFolder folder;
  folder.Write("broken.crt", std::string("\x05\x00\x00\x00\x01", 5));
  AutoCorrectTable table(std::vector<AutoCorrectPair>{{"ko", "khong"}});
  for (const char* name : {"missing.crt", "broken.crt", ""}) {
    const auto result = table.Load(folder / name);
    EXPECT_FALSE(result) << name;
    EXPECT_NE(result.error.find(name), std::string::npos) << result.error;
  }
  EXPECT_EQ(table.FindReplacement("ko"), "khong");
}

} // namespace
} // namespace vntts
