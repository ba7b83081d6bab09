// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "audio/archive/key_case.h"
#include "audio/archive/sorted_name_set.h"
#include "audio/archive/sorted_search.h"
#include "support/tsv_table.h"

namespace vntts {
namespace {

using Strings = std::vector<std::string>;

template <typename T> std::vector<T> Split(const std::string& field) {
  std::istringstream in(field);
  std::vector<T> out;
  for (T v; in >> v;)
    out.push_back(v);
  return out;
}

class SortedSearch : public ::testing::TestWithParam<test::TsvRow> {};

TEST_P(SortedSearch, FindsInsertionPointsAndProbesInOrder) {
  const auto& row = GetParam();
  const auto entries = Split<std::string>(row.at(1));
  std::vector<std::size_t> probes;
  const auto r = SearchSorted(entries, row.at(2), 0, entries.size(), &probes);
  EXPECT_EQ(r.found, row.at(3) == "yes");
  EXPECT_EQ(r.index, std::stoul(row.at(4)));
  EXPECT_EQ(probes, Split<std::size_t>(row[5]));
}

INSTANTIATE_TEST_SUITE_P(Table, SortedSearch, ::testing::ValuesIn(test::ReadTsv("sorted_search")),
                         [](const auto& param_info) { return test::TsvName(param_info.param); });

TEST(SortedSearchBytes, ComparesBytesUnsigned) {
  EXPECT_LT(CompareKeyBytes("z", "\xE0"), 0); // a high byte sorts after ASCII
  EXPECT_LT(CompareKeyBytes("a", "a-"), 0);
  EXPECT_LT(CompareKeyBytes("a-b", "a."), 0);
  EXPECT_EQ(CompareKeyBytes("ba", "ba"), 0);
  const Strings keys = {"a", "ba", "b\xE0", "\xF1o\xE2"};
  for (std::size_t i = 0; i < keys.size(); ++i)
    EXPECT_EQ(SearchSorted(keys, keys[i]).index, i);
}

TEST(KeyCase, LowersAsciiAndTheLatin1UpperRange) {
  EXPECT_EQ(LowerKey("BA"), "ba");
  EXPECT_EQ(LowerKey("\xD1\x4F\xC2"), "\xF1o\xE2");    // upper-case internal letters
  EXPECT_EQ(LowerKey("\xD7"), "\xD7");                 // the multiplication sign stays
  EXPECT_EQ(LowerKey("\xDF\xDE\xC0"), "\xDF\xFE\xE0"); // DF is outside the range
  EXPECT_EQ(LowerKey("a1-_."), "a1-_.");
}

TEST(SortedNameSet, KeepsLowerCasedNamesSortedWithoutDuplicates) {
  SortedNameSet set;
  EXPECT_TRUE(set.Insert("ba.mp3"));
  EXPECT_TRUE(set.Insert("a.mp3"));
  EXPECT_TRUE(set.Insert("B.MP3"));
  EXPECT_FALSE(set.Insert("b.mp3")); // the same name after lower-casing
  EXPECT_FALSE(set.Insert("BA.Mp3"));
  EXPECT_FALSE(set.Insert(""));
  EXPECT_EQ(set.Names(), (Strings{"a.mp3", "b.mp3", "ba.mp3"}));
  EXPECT_EQ(set.Find("B.mp3"), 1);
  EXPECT_EQ(set.Find("c.mp3"), -1);
  set.RemoveAll();
  EXPECT_EQ(set.Count(), 0u);
}

} // namespace
} // namespace vntts
