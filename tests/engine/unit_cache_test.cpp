// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <thread>

#include "engine/unit_cache.h"
#include "fake_speech.h"

namespace vntts {
namespace {

TEST(CachedRecordings, DecodesEachUnitOnceAndForgetsTheLeastRecentlyUsed) {
  testing::TableUnits table;
  table.Add("a", 100, 1); // 200 bytes each
  table.Add("b", 100, 2);
  table.Add("c", 100, 3);
  table.Add("huge", 1000, 4);
  CachedRecordings cache(table, 450); // room for two
  std::vector<std::int16_t> s;
  ASSERT_TRUE(cache.Fetch("a", s));
  ASSERT_TRUE(cache.Fetch("b", s));
  ASSERT_TRUE(cache.Fetch("a", s));
  EXPECT_EQ(s[0], 1);
  EXPECT_EQ(table.fetches, 2);
  ASSERT_TRUE(cache.Fetch("c", s)); // b is the least recently used
  EXPECT_EQ(cache.CachedUnits(), 2u);
  EXPECT_EQ(cache.CachedBytes(), 400u);
  ASSERT_TRUE(cache.Fetch("a", s));
  EXPECT_EQ(table.fetches, 3);
  ASSERT_TRUE(cache.Fetch("b", s));
  EXPECT_EQ(table.fetches, 4);
  EXPECT_EQ(s[0], 2);
  // A unit larger than the budget is handed out but not kept; misses are not kept either.
  ASSERT_TRUE(cache.Fetch("huge", s));
  EXPECT_EQ(s.size(), 1000u);
  EXPECT_FALSE(cache.Fetch("zz", s));
  EXPECT_FALSE(cache.Has("zz"));
  EXPECT_TRUE(cache.Has("c"));
  EXPECT_LE(cache.CachedBytes(), 450u);
}

TEST(CachedRecordings, SharedBetweenThreads) {
  testing::TableUnits table;
  for (int i = 0; i < 50; ++i)
    table.Add("k" + std::to_string(i), 10, static_cast<std::int16_t>(i));
  CachedRecordings cache(table, 20 * 20);
  auto work = [&] {
    std::vector<std::int16_t> s;
    for (int round = 0; round < 200; ++round)
      for (int i = 0; i < 50; i += 3) {
        ASSERT_TRUE(cache.Fetch("k" + std::to_string(i), s));
        ASSERT_EQ(s[0], i);
      }
  };
  std::thread a(work), b(work);
  a.join();
  b.join();
  EXPECT_LE(cache.CachedBytes(), 400u);
}

} // namespace
} // namespace vntts
