// SPDX-License-Identifier: MIT
#include "text/number_reading.h"

#include <gtest/gtest.h>

#include "text_test_util.h"

namespace vntts {
namespace {

using testing::In;
using testing::Words;

TEST(ReadGroup, ZeroReadsNothingEvenWithThePrefix) {
  EXPECT_EQ(ReadGroup("0"), "");
  EXPECT_EQ(ReadGroup("000"), "");
  EXPECT_EQ(ReadGroup(""), "");
}

TEST(ReadGroup, EndsInOneBlankAndBuildsFromBlankLedWords) {
  EXPECT_EQ(ReadGroup("21"), In(" hai mươi mốt "));
  EXPECT_EQ(ReadGroup("005"), In(" không trăm lẻ  năm "));
}

TEST(ReadInteger, TenThousandDigitsStayLinear) {
  const std::string digits(10'000, '7');
  const std::string reading = ReadInteger(digits);
  EXPECT_GT(reading.size(), 10'000U);
  EXPECT_LT(reading.size(), 200'000U);
}

TEST(ReadNumber, ZeroAloneIsTheBareWord) {
  EXPECT_EQ(ReadNumber("0"), In("không "));
}

TEST(ReadDigits, OneWordPerDigit) {
  EXPECT_EQ(Words(ReadDigits("0912")), "không chín một hai");
  EXPECT_EQ(Words(ReadDigits("a-1")), "một");
}

} // namespace
} // namespace vntts
