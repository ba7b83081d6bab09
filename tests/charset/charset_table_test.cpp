// SPDX-License-Identifier: MIT
// The character-set table itself: its stored layout and what every record must hold.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <set>
#include <sstream>

#include "letter_sequences.h"
#include "text/charset/charset_table_data.h"

namespace vntts {
namespace {

using testing::Hex;
using testing::SequenceOf;

TEST(CharsetTable, KeepsTheStoredLayout) {
  EXPECT_EQ(sizeof(kCharsetTable), 6574u);
  const auto* bytes = reinterpret_cast<const unsigned char*>(kCharsetTable.data());
  // Record 3 starts at 3 x 346 and its a-group codes follow the 50-byte name.
  EXPECT_EQ(std::memcmp(bytes + 3 * 346, "VNI-Windows ANSI", 16), 0);
  EXPECT_EQ(bytes[3 * 346 + 50 + 1], 0xF9);
  EXPECT_EQ(bytes[3 * 346 + 198 + 1], 2);
}

TEST(CharsetTable, EveryRecordWritesTheLettersDistinctly) {
  for (int i = 0; i < kEncodingCount; ++i) {
    const WorkingRecord record(i);
    std::set<std::string> seen;
    for (int x = 0; x < kLetterCount; ++x) {
      const std::string seq = SequenceOf(record, x);
      EXPECT_TRUE(seen.insert(seq).second) << "record " << i << " letter " << x << ": " << Hex(seq);
    }
  }
}

TEST(CharsetTable, StoredWindows95RecordLacksTheTonedCapitalIAndY) {
  const CharsetRecord& r = kCharsetTable[kEncodingWindows95];
  for (int k = 0; k < 5; ++k) {
    EXPECT_EQ(r.code[123 + k], 0x49);
    EXPECT_EQ(r.length[123 + k], 1);
    EXPECT_EQ(r.code[141 + k], 0x59);
    EXPECT_EQ(r.length[141 + k], 1);
  }
  // The working copy completes them with the marks of Á..Ạ.
  const WorkingRecord patched(kEncodingWindows95);
  const unsigned marks[] = {0xEC, 0xCC, 0xD2, 0xDE, 0xF2};
  for (int k = 0; k < 5; ++k) {
    EXPECT_EQ(patched.Code(123 + k), marks[k]);
    EXPECT_EQ(patched.Length(141 + k), 2);
  }
}

// The published tables beside the repository: every record taken from one must write each
// letter exactly as the table's full-sequence column says.
TEST(CharsetTable, PublishedRecordsMatchTheirTables) {
  const struct {
    int index;
    const char* file;
  } published[] = {
      {0, "0-vni-coreldraw-ascii.tsv"}, {1, "1-vietware-windows.tsv"}, {3, "3-vni-windows.tsv"},
      {8, "8-dhbk-2byte.tsv"},          {12, "12-tcvn1.tsv"},          {15, "15-viscii.tsv"},
      {17, "17-windows95vn.tsv"},       {18, "18-vpswin.tsv"}};
  for (const auto& p : published) {
    std::ifstream in(std::string(VNTTS_SHARED_DIR) + "/charsets/" + p.file);
    if (!in) GTEST_SKIP() << "published tables not found under " << VNTTS_SHARED_DIR;
    const WorkingRecord record(p.index);
    std::string line;
    int x = 0;
    while (std::getline(in, line)) {
      const std::string expected = line.substr(line.rfind('\t') + 1);
      EXPECT_EQ(Hex(SequenceOf(record, x)), expected) << p.file << " letter " << x;
      ++x;
    }
    EXPECT_EQ(x, kLetterCount);
  }
}

} // namespace
} // namespace vntts
