// SPDX-License-Identifier: MIT
#include "core/short_string_map.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

namespace vntts {
namespace {

// Keys that differ only after eight bytes, only in length or in NUL and high bytes, and many
// short keys of few letters that collide often: the map agrees with an ordered map throughout
// its growth, and after Clear starts again empty.
TEST(ShortStringMap, AgreesWithAnOrderedMapThroughGrowth) {
  using namespace std::string_literals;
  std::map<std::string, int> reference;
  for (const auto& key : {""s, "12345678"s, "123456789"s, "123456780"s, "1234567\0"s, "12345678\0"s,
                          "1234567890123456x"s, "1234567"s})
    reference.emplace(key, static_cast<int>(reference.size()));
  std::mt19937 rng(3);
  for (int i = 0; i < 20000; ++i) {
    std::string key(rng() % 12, '\0');
    for (char& c : key)
      c = static_cast<char>("ab\0\xF4z"[rng() % 5]);
    reference.emplace(key, i + 100);
  }
  ShortStringMap<int> map;
  EXPECT_EQ(map.Find("a"), nullptr) << "an empty map finds nothing";
  for (const auto& [key, value] : reference)
    map.Insert(key, value);
  ASSERT_EQ(map.size(), reference.size());
  for (const auto& [key, value] : reference) {
    const int* found = map.Find(key);
    ASSERT_NE(found, nullptr) << key.size();
    EXPECT_EQ(*found, value);
  }
  for (const char* missing : {"abc\xF4\xF4\xF4zzzzzzz", "zzzzzzzzzzzzz", "q"})
    EXPECT_EQ(map.Find(missing), nullptr) << missing;
  map.Clear();
  EXPECT_EQ(map.size(), 0U);
  EXPECT_EQ(map.Find("12345678"), nullptr);
  map.Insert("again", 1);
  EXPECT_EQ(*map.Find("again"), 1);
}

} // namespace
} // namespace vntts
