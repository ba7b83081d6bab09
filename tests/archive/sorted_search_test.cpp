// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "audio/archive/key_case.h"
#include "audio/archive/sorted_name_set.h"
#include "audio/archive/sorted_search.h"

namespace vntts {
namespace {

using Strings = std::vector<std::string>;
using Probes = std::vector<std::size_t>;

struct SearchCase {
  Strings entries;
  std::string key;
  bool found;
  std::size_t index; // found index or insertion point
  Probes probes;
};

TEST(SortedSearch, FindsInsertionPointsAndProbesInOrder) {
  const Strings abc = {"a", "b", "c"};
  const Strings five = {"a", "c", "e", "g", "i"};
  const std::vector<SearchCase> cases = {
      {{}, "a", false, 0, {}},
      {{"ba"}, "ba", true, 0, {0}},
      {{"ba"}, "a", false, 0, {0}},
      {{"ba"}, "c", false, 1, {0}},
      {abc, "c", true, 2, {1, 2}},
      {abc, "b", true, 1, {1}},
      // d = 3, key below the middle: the lower range [0, 2) still holds the middle entry.
      {abc, "a", true, 0, {1, 1, 0}},
      {abc, "bb", false, 2, {1, 2, 1}},
      {abc, "0", false, 0, {1, 1, 0}},
      {abc, "d", false, 3, {1, 2, 2}},
      {five, "a", true, 0, {2, 1, 1, 0}},
      {five, "h", false, 4, {2, 3, 4, 3}},
      {five, "f", false, 3, {2, 3, 3, 2}},
      {five, "i", true, 4, {2, 3, 4}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.key + " in " + std::to_string(c.entries.size()) + " entries");
    Probes probes;
    const auto r = SearchSorted(c.entries, c.key, 0, c.entries.size(), &probes);
    EXPECT_EQ(r.found, c.found);
    EXPECT_EQ(r.index, c.index);
    EXPECT_EQ(probes, c.probes);
  }
}

TEST(SortedSearch, ComparesBytesUnsigned) {
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
