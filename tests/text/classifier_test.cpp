// SPDX-License-Identifier: MIT
#include "text/classifier.h"

#include <gtest/gtest.h>

#include "support/tsv_table.h"
#include "text/token_class.h"
#include "text_test_util.h"

namespace vntts {
namespace {

using testing::In;

class TokenClass : public ::testing::TestWithParam<test::TsvRow> {};

TEST_P(TokenClass, IsDecidedInTheFixedOrder) {
  const auto field = [&](std::size_t i) { return GetParam()[i] == "-" ? "" : GetParam()[i]; };
  const std::string& want = GetParam()[2];
  EXPECT_EQ(Classify(In(field(0)), In(field(1))), want == "none" ? 255 : want.at(0))
      << "tests/data/token_classes.tsv:" << GetParam().line;
}

INSTANTIATE_TEST_SUITE_P(Table, TokenClass, ::testing::ValuesIn(test::ReadTsv("token_classes")),
                         [](const auto& row) { return "line_" + std::to_string(row.param.line); });

TEST(Classify, TelephoneTestToleratesOneClosingMark) {
  EXPECT_TRUE(IsTelephoneToken("0912-345.", "tel"));
  EXPECT_TRUE(IsTelephoneToken("0912-345+", "tel"));
  EXPECT_FALSE(IsTelephoneToken("0912.345", "tel"));
  EXPECT_FALSE(IsTelephoneToken("0912a", "tel"));
  EXPECT_FALSE(IsTelephoneToken("", "tel"));
}

TEST(Classify, TelephoneLabelsIgnoreCase) {
  for (const char* label : {"tel", "TEL", "thoại", "THOẠI", "No", "no", "telephone", "Phone", ":"})
    EXPECT_TRUE(IsTelephoneLabel(In(label))) << label;
  for (const char* label : {"", "số", "te", "phones"})
    EXPECT_FALSE(IsTelephoneLabel(In(label))) << label;
}

TEST(Classify, ContextWords) {
  for (const char* w : {"tháng", "mai", "trước", "sau", "nay", "qua", "khuya", "hôm", "đêm", "tối",
                        "chiều", "trưa", "sáng", "ngày", "Ngày:", "NGÀY"})
    EXPECT_TRUE(IsDateContextWord(In(w))) << w;
  EXPECT_FALSE(IsDateContextWord(In("năm")));
  for (const char* w : {"tích", "dài", "cách", "tịnh", "nặng", "cân", "lượng"})
    EXPECT_TRUE(IsMeasureContextWord(In(w))) << w;
  EXPECT_FALSE(IsMeasureContextWord(In("giờ")));
}

TEST(Classify, RangeExcludesOperatorsAndTelephoneNumbers) {
  EXPECT_FALSE(IsRangeToken("5-10+1", ""));
  EXPECT_FALSE(IsRangeToken("5-10=5", ""));
  EXPECT_FALSE(IsRangeToken("0912-345", ""));
  EXPECT_FALSE(IsRangeToken("5-", ""));
  EXPECT_FALSE(IsRangeToken("-5", ""));
  EXPECT_TRUE(IsRangeToken("5-10", ""));
}

TEST(Classify, TimesNeedPlausibleFields) {
  for (const char* t : {"25:00", "14:3", "14:300", "14:60", "100g", "7h60", "7x15", "h15", "1:2"})
    EXPECT_FALSE(IsTimeToken(t, "")) << t;
}

} // namespace
} // namespace vntts
