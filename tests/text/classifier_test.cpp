#include "text/classifier.h"

#include <gtest/gtest.h>

#include "text/token_class.h"
#include "text_test_util.h"

namespace vntts {
namespace {

using testing::In;

struct Case {
  const char* token; // UTF-8
  const char* previous;
  int expected;
};

TEST(Classify, DecidesInTheFixedOrder) {
  const Case cases[] = {
      // '@' letters only (and the empty token)
      {"", "", '@'},
      {"Việt", "", '@'},
      {"đường", "", '@'},
      // 'B' dates: three parts always, day/month only after a context word
      {"2/9/1945", "", 'B'},
      {"02-09-1945", "", 'B'},
      {"2.9.1945", "", 'B'},
      {"2024-12-31", "", 'B'},
      {"12/2024", "", 'B'},
      {"2/9", "ngày", 'B'},
      {"2/9", "Sáng", 'B'},
      {"15/8", "hôm:", 'B'},
      {"2-9", "ngày", 'B'},
      {"2/9/1945.", "", 'B'},
      {"2/9", "", 'A'},
      {"32/1/2000", "", 'A'},
      {"2.5", "ngày", 'A'},
      // 'A' numbers
      {"0", "", 'A'},
      {"12.500", "", 'A'},
      {"3,25", "", 'A'},
      {"3/4", "", 'A'},
      {"1.2.3.4", "", 'A'},
      {"0912345", "tel", 'N'},
      // 'J' single symbols
      {"+", "", 'J'},
      {"%", "", 'J'},
      {"{", "", 'J'},
      {".", "", 'J'},
      // 'K' expressions
      {"12.", "", 'K'},
      {"50%", "", 'K'},
      {"1+2=3", "", 'K'},
      {"-5", "", 'K'},
      {"1:2:3:4", "", 'K'},
      {"(12)", "", 'K'},
      {"1-2-3", "", 'K'},
      // 'E' letters with single slashes
      {"km/h", "", 'E'},
      {"và/hoặc", "", 'E'},
      // 'D' amounts
      {"$100", "", 'D'},
      {"100$", "", 'D'},
      {"50.000đ", "", 'D'},
      {"50k", "", 'D'},
      {"3ngày", "", 'D'},
      // 'G' times
      {"14:30", "", 'G'},
      {"14:30:15", "", 'G'},
      {"7h15", "", 'G'},
      {"7h", "", 'G'},
      {"8g", "", 'G'},
      {"8g30", "", 'G'},
      {"7h15p", "", 'G'},
      {"15'", "", 'G'},
      {"15'30''", "", 'G'},
      {"30''", "", 'G'},
      // 'L' addresses
      {"www.example.com", "", 'L'},
      {"http://a.vn/b", "", 'L'},
      {"TP.HCM", "", 'L'},
      // 'M' ranges
      {"5-10", "", 'M'},
      {"1.000-2.000", "", 'M'},
      {"2020-2024", "", 'M'},
      {"5-10km", "", 'M'},
      {"20-30%", "", 'M'},
      // 'N' telephone numbers need their label
      {"0912-345", "Tel", 'N'},
      {"0912-345", "thoại", 'N'},
      {"0912-345", "PHONE", 'N'},
      {"0912-345", ":", 'N'},
      {"(08)3456", "No", 'N'},
      {"0912-345", "", 'K'}, // no label: digits and symbols
      // 'O' measures
      {"5km", "", 'O'},
      {"2,5kg", "", 'O'},
      {"12,5kg", "", 'O'},
      {"30°C", "", 'O'},
      {"-5°C", "", 'O'},
      {"45°", "", 'O'},
      {"30m2", "", 'O'},
      {"100ml", "", 'O'},
      {"100g", "", 'O'},
      {"8g", "nặng", 'O'},
      {"120km/h", "", 'O'},
      {"5ha", "", 'O'},
      // nothing fits
      {"A4", "", 255},
      {"a+b", "", 255},
      {"{x}", "", 255},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Classify(In(c.token), In(c.previous)), c.expected)
        << c.token << " after '" << c.previous << "'";
}

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
