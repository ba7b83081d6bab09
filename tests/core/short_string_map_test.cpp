#include "core/short_string_map.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

namespace vntts {
namespace {

TEST(ShortStringMap, AgreesWithAnOrderedMapThroughGrowth) {
  std::mt19937 rng(3);
  std::map<std::string, int> reference;
  ShortStringMap<int> map;
  EXPECT_EQ(map.Find("a"), nullptr) << "an empty map finds nothing";
  for (int i = 0; i < 20000; ++i) {
    // Short keys of few letters collide often; NUL bytes and high bytes are ordinary bytes.
    std::string key(rng() % 12, '\0');
    for (char& c : key)
      c = static_cast<char>("ab\0\xF4z"[rng() % 5]);
    if (reference.count(key) == 0) {
      reference[key] = i;
      map.Insert(key, i);
    }
  }
  ASSERT_EQ(map.size(), reference.size());
  for (const auto& [key, value] : reference) {
    const int* found = map.Find(key);
    ASSERT_NE(found, nullptr) << key.size();
    EXPECT_EQ(*found, value);
  }
  for (const char* missing : {"abc\xF4\xF4\xF4zzzzzzz", "zzzzzzzzzzzzz", "q"})
    EXPECT_EQ(map.Find(missing), nullptr) << missing;
}

TEST(ShortStringMap, KeysDifferingOnlyAfterEightBytesOrInLength) {
  ShortStringMap<std::string> map;
  using namespace std::string_literals;
  const std::string keys[] = {""s,          "12345678"s,   "123456789"s,         "123456780"s,
                              "1234567\0"s, "12345678\0"s, "1234567890123456x"s, "1234567"s};
  for (const auto& key : keys)
    map.Insert(key, "v" + key);
  for (const auto& key : keys) {
    const std::string* found = map.Find(key);
    ASSERT_NE(found, nullptr) << key;
    EXPECT_EQ(*found, "v" + key);
  }
  map.Clear();
  EXPECT_EQ(map.size(), 0U);
  EXPECT_EQ(map.Find("12345678"), nullptr);
  map.Insert("again", "yes");
  EXPECT_EQ(*map.Find("again"), "yes");
}

} // namespace
} // namespace vntts
