// SPDX-License-Identifier: MIT
#include "text/roman_numerals.h"

#include <gtest/gtest.h>

namespace vntts {
namespace {

TEST(RomanNumerals, OnlyTheUsualFormsUpToEightyNine) {
  struct Case {
    const char* token;
    int value; // 0: not a numeral
  };
  const Case cases[] = {
      {"I", 1},    {"IV", 4},    {"IX", 9},      {"XIV", 14}, {"XIII", 13}, {"XXI", 21},
      {"XL", 40},  {"XLIX", 49}, {"LXXXIX", 89}, {"IIII", 0}, {"VX", 0},    {"IL", 0},
      {"XXXX", 0}, {"VV", 0},    {"xxi", 0},     {"XXi", 0},  {"C", 0},     {"CD", 0},
      {"MC", 0},   {"", 0},      {"XIIII", 0},   {"IIX", 0},  {"LL", 0},    {"XXXXXXXXX", 0},
  };
  for (const auto& c : cases) {
    const auto value = RomanNumeralValue(c.token);
    EXPECT_EQ(value.value_or(0), c.value) << c.token;
  }
}

} // namespace
} // namespace vntts
