// The three ways text reaches the engine, end to end.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "text/charset/charsets.h"

namespace vntts {
namespace {

std::string Bytes(std::initializer_list<unsigned> values) {
  std::string s;
  for (unsigned v : values)
    s.push_back(static_cast<char>(v));
  return s;
}

struct Utf8Case {
  const char* utf8;
  std::string internal;
};

TEST(Utf8ToInternal, GivesTheInternalBytesOfEachWord) {
  const Utf8Case cases[] = {
      {"Việt", Bytes({0x56, 0x69, 0x65, 0xE4, 0x74})},
      {"một", Bytes({0x6D, 0x6F, 0xE4, 0x74})},
      {"mười", Bytes({0x6D, 0xF6, 0xF4, 0xF8, 0x69})},
      {"ấ", Bytes({0x61, 0xE1})},
      {"đĐ", Bytes({0xF1, 0xD1})},
      {"íìỉĩị", Bytes({0xED, 0xEC, 0xE6, 0xF3, 0xF2})},
      {"ÍÌỈĨỊ", Bytes({0xCD, 0xCC, 0xC6, 0xD3, 0xD2})},
      {"ỵỴ", Bytes({0xEE, 0xCE})},
      {"ơưƠƯ", Bytes({0xF4, 0xF6, 0xD4, 0xD6})},
      {"", ""},
      {"Hà Nội 2024.",
       Bytes({'H', 0x61, 0xF8, ' ', 'N', 0x6F, 0xE4, 0x69, ' ', '2', '0', '2', '4', '.'})},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Utf8ToInternal(c.utf8), c.internal) << c.utf8;
}

TEST(Utf8ToInternal, DecomposedInputGivesTheSameBytes) {
  // "Việt" with ê precomposed and the dot below as a combining mark.
  EXPECT_EQ(Utf8ToInternal("Vi\xC3\xAA\xCC\xA3t"), Utf8ToInternal("Việt"));
}

TEST(InternalToUtf8, RoundTripsVietnameseText) {
  const char* texts[] = {"Việt Nam", "Tiếng Việt có dấu: ắ ằ ẳ ẵ ặ Ữ Ự Ỵ Đ", "Hà Nội", ""};
  for (const char* t : texts)
    EXPECT_EQ(InternalToUtf8(Utf8ToInternal(t)), t) << t;
}

TEST(AsciiToInternal, TakesCodePage1258WithSeparateToneBytes) {
  // V i ê + nặng t, as code page 1258 writes it.
  EXPECT_EQ(AsciiToInternal(Bytes({0x56, 0x69, 0xEA, 0xF2, 0x74})),
            Bytes({0x56, 0x69, 0x65, 0xE4, 0x74}));
  // Ý is Y + sắc: the completed record keeps it a toned letter.
  EXPECT_EQ(AsciiToInternal(Bytes({0x59, 0xEC})), Bytes({0x59, 0xD9}));
}

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
