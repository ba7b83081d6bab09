// SPDX-License-Identifier: MIT
// Plain text on the roads to and from the engine (the cases of single words and broken input
// are rows of tests/data/charset_cases.tsv).
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "text/charset/charsets.h"

namespace vntts {
namespace {

// Long texts copy words of printable ASCII, tabs and line ends without converting them. That
// holds only if such bytes are themselves on the whole road, in every neighbourhood: every
// single byte, every pair and random runs of them (short texts always take the whole road).
TEST(PlainAscii, IsTheSameBytesInBothDirections) {
  std::vector<char> plain = {'\t', '\n', '\r'};
  for (char c = 0x20; c < 0x7F; ++c)
    plain.push_back(c);
  for (char a : plain) {
    const std::string one(1, a);
    ASSERT_EQ(Utf8ToInternal(one), one) << int{a};
    ASSERT_EQ(InternalToUtf8(one), one) << int{a};
    for (char b : plain) {
      const std::string two{a, b};
      ASSERT_EQ(Utf8ToInternal(two), two) << int{a} << " " << int{b};
      ASSERT_EQ(InternalToUtf8(two), two) << int{a} << " " << int{b};
    }
  }
  std::mt19937 random(17);
  for (int k = 0; k < 5000; ++k) {
    std::string run(1 + random() % 12, ' ');
    for (char& c : run)
      c = plain[random() % plain.size()];
    ASSERT_EQ(Utf8ToInternal(run), run) << run;
    ASSERT_EQ(InternalToUtf8(run), run) << run;
  }
}

} // namespace
} // namespace vntts
