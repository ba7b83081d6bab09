#include "text/number_reading.h"

#include <gtest/gtest.h>

#include "text_test_util.h"

namespace vntts {
namespace {

using testing::In;
using testing::Words;

struct Case {
  const char* input;
  const char* words;
};

TEST(ReadGroup, ReadsUpToNineDigits) {
  const Case cases[] = {
      {"1", "một"},
      {"10", "mười"},
      {"11", "mười một"},
      {"15", "mười lăm"},
      {"21", "hai mươi mốt"},
      {"24", "hai mươi bốn"},
      {"25", "hai mươi lăm"},
      {"31", "ba mươi mốt"},
      {"100", "một trăm"},
      {"101", "một trăm lẻ một"},
      {"105", "một trăm lẻ năm"},
      {"110", "một trăm mười"},
      {"111", "một trăm mười một"},
      {"115", "một trăm mười lăm"},
      {"121", "một trăm hai mươi mốt"},
      {"999", "chín trăm chín mươi chín"},
      {"050", "không trăm năm mươi"},
      {"005", "không trăm lẻ năm"},
      {"015", "không trăm mười lăm"},
      {"1005", "một nghìn không trăm lẻ năm"},
      {"1945", "một nghìn chín trăm bốn mươi lăm"},
      {"2024", "hai nghìn không trăm hai mươi bốn"},
      {"1000000", "một triệu"},
      {"1000005", "một triệu không trăm lẻ năm"},
      {"1001000", "một triệu không trăm lẻ một nghìn"},
      {"123456789",
       "một trăm hai mươi ba triệu bốn trăm năm mươi sáu nghìn bảy trăm tám mươi chín"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Words(ReadGroup(c.input)), c.words) << c.input;
}

TEST(ReadGroup, ZeroReadsNothingEvenWithThePrefix) {
  EXPECT_EQ(ReadGroup("0"), "");
  EXPECT_EQ(ReadGroup("000"), "");
  EXPECT_EQ(ReadGroup(""), "");
}

TEST(ReadGroup, EndsInOneBlankAndBuildsFromBlankLedWords) {
  EXPECT_EQ(ReadGroup("21"), In(" hai mươi mốt "));
  EXPECT_EQ(ReadGroup("005"), In(" không trăm lẻ  năm "));
}

TEST(ReadInteger, ReadsAnyLength) {
  const Case cases[] = {
      {"0", ""},
      {"000", ""},
      {"0021", "hai mươi mốt"},
      {"1000", "một nghìn"},
      {"1005", "một nghìn không trăm lẻ năm"},
      {"1010", "một nghìn không trăm mười"},
      {"12500", "mười hai nghìn năm trăm"},
      {"1000005", "một triệu không trăm lẻ năm"},
      {"1200000", "một triệu hai trăm nghìn"},
      {"1000000000", "một tỉ"},
      {"2000000001", "hai tỉ không trăm lẻ một"},
      {"1234567890",
       "một tỉ hai trăm ba mươi bốn triệu năm trăm sáu mươi bảy nghìn tám trăm chín mươi"},
      {"1234000000000", "một nghìn hai trăm ba mươi bốn tỉ"},
      // A zero fourth group loses its name and the naming starts again at nghìn.
      {"1000000000000", "một nghìn"},
      {"5000000000000000", "năm triệu"},
      {"1000000000001", "một nghìn không trăm lẻ một"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Words(ReadInteger(c.input)), c.words) << c.input;
}

TEST(ReadInteger, TenThousandDigitsStayLinear) {
  const std::string digits(10'000, '7');
  const std::string reading = ReadInteger(digits);
  EXPECT_GT(reading.size(), 10'000U);
  EXPECT_LT(reading.size(), 200'000U);
}

TEST(ReadNumber, ReadsSeparatorsTheVietnameseWay) {
  const Case cases[] = {
      {"0", "không"},
      {"0,5", "không phẩy năm"},
      {"0.5", "không chấm năm"},
      {"1.000", "một nghìn"},
      {"12.500", "mười hai nghìn năm trăm"},
      {"1.200.000", "một triệu hai trăm nghìn"},
      {"1.25", "một chấm hai năm"},
      {"1.5", "một chấm năm"},
      {"10", "mười"},
      {"12.", "mười hai"},
      {"12,", "mười hai"},
      {"3,05", "ba phẩy không năm"},
      {"3,25", "ba phẩy hai mươi lăm"},
      {"3,5", "ba phẩy năm"},
      {"3,1415", "ba phẩy một bốn một năm"},
      {"1.234,5", "một nghìn hai trăm ba mươi bốn phẩy năm"},
      {"3/4", "ba trên bốn"},
      {"1/2", "một trên hai"},
      {"00", "không"},
      {".5", "không chấm năm"},
      {"1.234.56", "một nghìn hai trăm ba mươi bốn chấm năm sáu"},
      {"1 000", "một nghìn"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Words(ReadNumber(c.input)), c.words) << c.input;
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
