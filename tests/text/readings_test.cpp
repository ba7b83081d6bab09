#include "text/readings.h"

#include <gtest/gtest.h>

#include "text/syllable.h"
#include "text/token_class.h"
#include "text_test_util.h"

namespace vntts {
namespace {

using testing::In;
using testing::Words;

struct Case {
  const char* token;
  const char* words;
};

void ExpectReadings(std::string (*read)(std::string_view), std::initializer_list<Case> cases) {
  for (const auto& c : cases)
    EXPECT_EQ(Words(read(In(c.token))), c.words) << c.token;
}

TEST(ReadSymbol, EverySymbolWord) {
  const struct {
    char symbol;
    const char* words;
  } cases[] = {
      {'%', "phần trăm"},
      {'&', "và"},
      {'*', "nhân"},
      {'+', "cộng"},
      {'-', "trừ"},
      {'/', "trên"},
      {':', "chia"},
      {'<', "nhỏ hơn"},
      {'=', "bằng"},
      {'>', "lớn hơn"},
      {'@', "a vòng"},
      {'[', "mở ngoặc vuông"},
      {']', "đóng ngoặc vuông"},
      {'_', "gạch dưới"},
      {'{', "mở ngoặc"},
      {'}', "đóng ngoặc"},
      {'(', ""},
      {')', ""},
      {',', ""},
      {'.', ""},
      {'#', ""},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Words(ReadSymbol(c.symbol)), c.words) << c.symbol;
  EXPECT_EQ(ReadSymbol('+'), In("cộng "));
}

TEST(ReadPhone, DigitByDigitUpToTheFirstStranger) {
  ExpectReadings(ReadPhone, {
                                {"0912-345", "không chín một hai ba bốn năm"},
                                {"(08) 38.123", "không tám ba tám một hai ba"},
                                {"113!", "một một ba"},
                                {"0912x345", "không chín một hai"},
                                {"-", ""},
                            });
}

TEST(ReadDate, DayMonthYear) {
  ExpectReadings(
      [](std::string_view t) { return ReadDate(t); },
      {
          {"2/9/1945", "hai tháng chín năm một nghìn chín trăm bốn mươi lăm"},
          {"30/4/1975", "ba mươi tháng tư năm một nghìn chín trăm bảy mươi lăm"},
          {"1-4-2024", "một tháng tư năm hai nghìn không trăm hai mươi bốn"},
          // Only the month written "4" says tư.
          {"01/04/2024", "một tháng bốn năm hai nghìn không trăm hai mươi bốn"},
          {"24/4", "hai mươi bốn tháng tư"},
          {"12/2024", "tháng mười hai năm hai nghìn không trăm hai mươi bốn"},
          {"2024-12-31", "ba mươi mốt tháng mười hai năm hai nghìn không trăm hai mươi bốn"},
          {"2/9/45", "hai tháng chín năm bốn mươi lăm"},
          {"2/9/1945.", "hai tháng chín năm một nghìn chín trăm bốn mươi lăm"},
      });
  EXPECT_EQ(Words(ReadDate("12/2024", true)), "mười hai năm hai nghìn không trăm hai mươi bốn");
}

TEST(ReadTime, HoursMinutesSeconds) {
  ExpectReadings(ReadTime, {
                               {"14:30", "mười bốn giờ ba mươi phút"},
                               {"14:00", "mười bốn giờ"},
                               {"0:05", "không giờ năm phút"},
                               {"14:30:15", "mười bốn giờ ba mươi phút mười lăm giây"},
                               {"7h15", "bảy giờ mười lăm phút"},
                               {"7h05", "bảy giờ năm phút"},
                               {"7h", "bảy giờ"},
                               {"8g", "tám giờ"},
                               {"8g30", "tám giờ ba mươi phút"},
                               {"7h15p", "bảy giờ mười lăm phút"},
                               {"7h15'20''", "bảy giờ mười lăm phút hai mươi giây"},
                               {"15'", "mười lăm phút"},
                               {"15'30''", "mười lăm phút ba mươi giây"},
                               {"30''", "ba mươi giây"},
                               {"30p", "ba mươi phút"},
                           });
}

TEST(ReadAmount, AmountThenCurrency) {
  ExpectReadings(ReadAmount, {
                                 {"$100", "một trăm đô la"},
                                 {"100$", "một trăm đô la"},
                                 {"$1,000", "một nghìn đô la"},
                                 {"$1,5", "một phẩy năm đô la"},
                                 {"$2.50", "hai chấm năm không đô la"},
                                 {"50.000đ", "năm mươi nghìn đồng"},
                                 {"50.000Đ", "năm mươi nghìn đồng"},
                                 {"50k", "năm mươi nghìn"},
                                 {"5tr", "năm triệu"},
                                 {"100USD", "một trăm đô la mỹ"},
                                 {"100vnđ", "một trăm việt nam đồng"},
                                 {"3ngày", "ba ngày"},
                             });
}

TEST(ReadAmount, PoundAndYenSigns) {
  EXPECT_EQ(Words(ReadAmount("\xA3"
                             "20")),
            "hai mươi bảng");
  EXPECT_EQ(Words(ReadAmount("\xA5"
                             "500")),
            "năm trăm yên");
}

TEST(ReadRange, TwoNumbersJoinedByDen) {
  ExpectReadings(ReadRange, {
                                {"5-10", "năm đến mười"},
                                {"1.000-2.000", "một nghìn đến hai nghìn"},
                                {"5-10km", "năm đến mười ki lô mét"},
                                {"20-30%", "hai mươi đến ba mươi phần trăm"},
                                {"2,5-3,5", "hai phẩy năm đến ba phẩy năm"},
                            });
}

TEST(ReadMeasure, NumberThenUnitWords) {
  ExpectReadings(ReadMeasure, {
                                  {"5km", "năm ki lô mét"},
                                  {"2,5kg", "hai phẩy năm ki lô gam"},
                                  {"30m2", "ba mươi mét vuông"},
                                  {"2m3", "hai mét khối"},
                                  {"100ml", "một trăm mi li lít"},
                                  {"5mm", "năm mi li mét"},
                                  {"3cm", "ba xen ti mét"},
                                  {"4dm", "bốn đề xi mét"},
                                  {"200g", "hai trăm gam"},
                                  {"5mg", "năm mi li gam"},
                                  {"2l", "hai lít"},
                                  {"5ha", "năm héc ta"},
                                  {"5km2", "năm ki lô mét vuông"},
                                  {"120km/h", "một trăm hai mươi ki lô mét trên giờ"},
                                  {"10m/s", "mười mét trên giây"},
                                  {"5KG", "năm ki lô gam"},
                              });
  EXPECT_EQ(ReadMeasure(In("5km")), In(" năm  ki lô mét "));
}

TEST(ReadAddress, SeparatorsByName) {
  ExpectReadings(ReadAddress,
                 {
                     {"www.example.com", "www chấm example chấm com"},
                     {"http://a.vn/b", "http hai chấm suyệt kép a chấm vn suyệt b"},
                     {"ab@mail.vn", "ab a vòng mail chấm vn"},
                     {"a-b_c", "a gạch ngang b gạch dưới c"},
                     {"x.vn/2024", "x chấm vn suyệt hai nghìn không trăm hai mươi bốn"},
                 });
}

TEST(ReadExpression, NumbersAndSymbolWords) {
  ExpectReadings(ReadExpression, {
                                     {"1+2=3", "một cộng hai bằng ba"},
                                     {"50%", "năm mươi phần trăm"},
                                     {"5,67%", "năm phẩy sáu mươi bảy phần trăm"},
                                     {"-5", "âm năm"},
                                     {"2*-3", "hai nhân âm ba"},
                                     {"3-(-2)", "ba trừ âm hai"},
                                     {"(-2)", "âm hai"},
                                     {"(1+2)*3", "một cộng hai nhân ba"},
                                     {"3>2", "ba lớn hơn hai"},
                                     {"1:2:3:4", "một chia hai chia ba chia bốn"},
                                     {"12.", "mười hai"},
                                 });
}

TEST(ReadOver, PartsJoinedByTren) {
  ExpectReadings(ReadOver, {
                               {"km/h", "ki lô mét trên giờ"},
                               {"người/phòng", "người trên phòng"},
                               {"50.000đ/kg", "năm mươi nghìn đồng trên ki lô gam"},
                               {"5k/người", "năm nghìn trên người"},
                           });
}

TEST(Normalise, ClassesWithoutReadingGiveNothing) {
  for (int cls : {int{'@'}, int{'E'}, int{'F'}, int{'I'}, int{'P'}, 255})
    EXPECT_FALSE(Normalise(cls, "abc").has_value()) << cls;
  EXPECT_EQ(Words(*Normalise('C', "12.")), "mười hai");
  EXPECT_EQ(Words(*Normalise('B', "12/2024", In("tháng"))),
            "mười hai năm hai nghìn không trăm hai mươi bốn");
}

TEST(Syllable, ShapeOfAVietnameseSyllable) {
  for (const char* w : {"a", "ba", "nghiêng", "người", "khuya", "thoại", "gì", "gin", "quy", "com",
                        "tỉ", "đường", "ưng", "oanh", "hát", "ki", "lô", "mét"})
    EXPECT_TRUE(LooksLikeSyllable(In(w))) << w;
  for (const char* w :
       {"", "km", "www", "vn", "http", "usb", "example", "covid", "tel", "b", "abcdefghijklm"})
    EXPECT_FALSE(LooksLikeSyllable(In(w))) << w;
}

TEST(Syllable, SpellsLetterNames) {
  EXPECT_EQ(Words(SpellWord(In("USB"))), "u ét bê");
  EXPECT_EQ(Words(SpellWord(In("wxyz"))), "vê kép ích i dét");
  EXPECT_EQ(Words(SpellWord(In("đf"))), "đê ép");
  EXPECT_EQ(Words(SpellWord(In("Bê"))), "bê ê");
  EXPECT_EQ(Words(SpellWord(In("a1"))), "a một");
}

} // namespace
} // namespace vntts
