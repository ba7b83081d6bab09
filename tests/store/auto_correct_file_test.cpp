#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "store/auto_correct_file.h"
#include "store/auto_correct_table.h"
#include "temp_folder.h"
#include "text/charset/charsets.h"

namespace vntts {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes B(std::string_view s) {
  return Bytes(s.begin(), s.end());
}
Bytes Cat(std::initializer_list<Bytes> parts) {
  Bytes out;
  for (const auto& p : parts)
    out.insert(out.end(), p.begin(), p.end());
  return out;
}

// "ko" -> "không", "dc" -> "được", written out byte by byte.
const Bytes kHandMadeFile = {
    0x02, 0x00, 0x00, 0x00,                 // two pairs
    0x02, 'k',  'o',                        // ko
    0x06, 'k',  'h',  'o',  0xE2, 'n', 'g', // không
    0x02, 'd',  'c',                        // dc
    0x05, 0xF1, 0xF6, 0xF4, 0xEF, 'c',      // được
};

TEST(AutoCorrectFile, HandMadeFileReadsAndWritesByteForByte) {
  const std::vector<AutoCorrectPair> pairs = {{"ko", Utf8ToInternal("không")},
                                              {"dc", Utf8ToInternal("được")}};
  const auto parsed = ParseAutoCorrectFile(kHandMadeFile);
  ASSERT_TRUE(parsed.ok()) << parsed.error;
  EXPECT_EQ(parsed.pairs, pairs);
  EXPECT_EQ(SerializeAutoCorrectFile(pairs), kHandMadeFile);
}

TEST(AutoCorrectFile, LengthPrefixTakesOneThreeOrSevenBytes) {
  struct Case {
    std::size_t length;
    Bytes prefix;
  };
  const Case cases[] = {
      {0, {0x00}},
      {254, {0xFE}},
      {255, {0xFF, 0xFF, 0x00}},
      {0x1234, {0xFF, 0x34, 0x12}},
      {0xFFFD, {0xFF, 0xFD, 0xFF}},
      {0xFFFE, {0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0x00, 0x00}},
      {70000, {0xFF, 0xFF, 0xFF, 0x70, 0x11, 0x01, 0x00}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.length);
    Bytes prefix;
    AppendArchiveStringLength(prefix, c.length);
    EXPECT_EQ(prefix, c.prefix);
    const std::vector<AutoCorrectPair> pairs = {{std::string(c.length, 'x'), "y"}};
    const auto bytes = SerializeAutoCorrectFile(pairs);
    EXPECT_EQ(bytes.size(), 4 + c.prefix.size() + c.length + 2);
    const auto parsed = ParseAutoCorrectFile(bytes);
    ASSERT_TRUE(parsed.ok()) << parsed.error;
    EXPECT_EQ(parsed.pairs, pairs);
  }
}

TEST(AutoCorrectFile, EmptyTableIsJustACount) {
  EXPECT_EQ(SerializeAutoCorrectFile({}), (Bytes{0, 0, 0, 0}));
  const auto parsed = ParseAutoCorrectFile(Bytes{0, 0, 0, 0});
  EXPECT_TRUE(parsed.ok());
  EXPECT_TRUE(parsed.pairs.empty());
}

TEST(AutoCorrectFile, BytesAfterTheLastPairAreIgnored) {
  auto bytes = kHandMadeFile;
  bytes.insert(bytes.end(), {0x99, 0x98});
  const auto parsed = ParseAutoCorrectFile(bytes);
  EXPECT_TRUE(parsed.ok());
  EXPECT_EQ(parsed.pairs.size(), 2u);
}

TEST(AutoCorrectFile, MalformedFilesGiveAClearErrorAndNoPairs) {
  struct Case {
    const char* what;
    Bytes bytes;
    const char* errorMentions;
  };
  const Case cases[] = {
      {"empty", {}, "pair count"},
      {"count cut off", {0x01, 0x00, 0x00}, "pair count"},
      {"count with no pairs", {0x01, 0x00, 0x00, 0x00}, "pair count 1"},
      {"count past the end", {0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00}, "pair count 4294967295"},
      {"second pair missing", Cat({{0x02, 0x00, 0x00, 0x00, 0x01, 'a', 0x01, 'b', 0x00}}),
       "pair 2 of 2"},
      {"With text missing", Cat({{0x01, 0, 0, 0, 0x01, 'a'}}), "pair 1 of 1"},
      {"string runs past the end", Cat({{0x01, 0, 0, 0, 0x09, 'a', 'b', 0x00, 0x00}}),
       "runs past the end"},
      {"16-bit length cut off", Cat({{0x01, 0, 0, 0, 0xFF, 0x10}}), "cut off"},
      {"32-bit length cut off", Cat({{0x01, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0x01}}), "cut off"},
      {"huge 32-bit length", Cat({{0x01, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F, 0x00}}),
       "runs past the end"},
      {"wide string marker", Cat({{0x01, 0, 0, 0, 0xFF, 0xFE, 0xFF, 0x02, 'a', 0, 'b', 0}}),
       "wide-character"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const auto parsed = ParseAutoCorrectFile(c.bytes);
    EXPECT_FALSE(parsed.ok());
    EXPECT_TRUE(parsed.pairs.empty());
    EXPECT_NE(parsed.error.find(c.errorMentions), std::string::npos) << parsed.error;
  }
}

TEST(AutoCorrectTable, LooksTokensUpAsTheyStandAndTheLastDuplicateWins) {
  AutoCorrectTable table(
      std::vector<AutoCorrectPair>{{"ko", "kho"}, {"Ko", "Kho"}, {"ko", "khong"}});
  const AutoCorrectLookup& lookup = table;
  EXPECT_EQ(lookup.FindReplacement("ko"), "khong");
  EXPECT_EQ(lookup.FindReplacement("Ko"), "Kho");
  EXPECT_EQ(lookup.FindReplacement("KO"), std::nullopt);
  EXPECT_EQ(lookup.FindReplacement(""), std::nullopt);
  EXPECT_EQ(table.size(), 3u);
}

TEST(AutoCorrectTable, SavesAndLoadsThroughAFile) {
  testing::TempFolder folder;
  const auto path = folder / "AutoCrt.crt";
  AutoCorrectTable table(std::vector<AutoCorrectPair>{{"ko", Utf8ToInternal("không")},
                                                      {"dc", Utf8ToInternal("được")}});
  ASSERT_TRUE(table.Save(path));
  EXPECT_EQ(B(folder.Read("AutoCrt.crt")), kHandMadeFile);
  AutoCorrectTable loaded;
  ASSERT_TRUE(loaded.Load(path));
  EXPECT_EQ(loaded.Pairs(), table.Pairs());
  EXPECT_EQ(folder.Names(), std::vector<std::string>{"AutoCrt.crt"}) << "no temporary left";
}

TEST(AutoCorrectTable, AFailedLoadKeepsTheOldPairs) {
  testing::TempFolder folder;
  folder.Write("broken.crt", std::string("\x05\x00\x00\x00\x01", 5));
  AutoCorrectTable table(std::vector<AutoCorrectPair>{{"ko", "khong"}});
  const auto missing = table.Load(folder / "missing.crt");
  EXPECT_FALSE(missing);
  EXPECT_NE(missing.error.find("missing.crt"), std::string::npos) << missing.error;
  const auto broken = table.Load(folder / "broken.crt");
  EXPECT_FALSE(broken);
  EXPECT_NE(broken.error.find("broken.crt"), std::string::npos) << broken.error;
  EXPECT_EQ(table.FindReplacement("ko"), "khong");
  EXPECT_FALSE(table.Load(folder.path())) << "a folder is not a table";
}

} // namespace
} // namespace vntts
