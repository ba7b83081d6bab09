// SPDX-License-Identifier: MIT
#pragma once
// The words the readings are built from, in internal text. Most carry their own blanks:
// a reading is a concatenation of them and any run of blanks separates two words.
#include <array>
#include <string_view>

namespace vntts::words {

// Digit words, each with one leading blank: không một hai ba bốn năm sáu bảy tám chín.
inline constexpr std::array<std::string_view, 10> kDigitWords = {
    " kho\xE2ng", // không
    " mo\xE4t",   // một
    " hai",       // hai
    " ba",        // ba
    " bo\xE1n",   // bốn
    " na\xEAm",   // năm
    " sa\xF9u",   // sáu
    " ba\xFBy",   // bảy
    " ta\xF9m",   // tám
    " ch\xEDn",   // chín
};

// Number words.
inline constexpr std::string_view kTens = " m\xF6\xF4i";                 // " mươi"
inline constexpr std::string_view kTen = " m\xF6\xF4\xF8i";              // " mười"
inline constexpr std::string_view kOneAfterTens = " mo\xE1t";            // " mốt"
inline constexpr std::string_view kFiveAfterTens = " la\xEAm";           // " lăm"
inline constexpr std::string_view kOddUnit = " le\xFB";                  // " lẻ"
inline constexpr std::string_view kHundred = " tra\xEAm";                // " trăm"
inline constexpr std::string_view kZeroHundred = " kho\xE2ng tra\xEAm "; // " không trăm "
inline constexpr std::string_view kZeroHundredOdd =
    " kho\xE2ng tra\xEAm le\xFB ";                              // " không trăm lẻ "
inline constexpr std::string_view kThousand = " ngh\xECn";      // " nghìn"
inline constexpr std::string_view kMillion = " trie\xE4u";      // " triệu"
inline constexpr std::string_view kBillion = " t\xE6";          // " tỉ"
inline constexpr std::string_view kZeroWhole = "kho\xE2ng ";    // "không "
inline constexpr std::string_view kDecimalPoint = " cha\xE1m "; // " chấm "
inline constexpr std::string_view kDecimalComma = "pha\xE5y";   // "phẩy"
inline constexpr std::string_view kOver = "tre\xE2n";           // "trên"

// Ordinals: thứ, then nhất and tư where the cardinal would be một and bốn.
inline constexpr std::string_view kOrdinalWord = "th\xF6\xF9";  // "thứ"
inline constexpr std::string_view kOrdinalFirst = " nha\xE1t "; // " nhất "
inline constexpr std::string_view kOrdinalFourth = " t\xF6 ";   // " tư "
inline constexpr std::string_view kNumberWord = "so\xE1";       // "số", before a rank: #1
inline constexpr std::string_view kAboutWord = "khoa\xFBng";    // "khoảng", for ~40

// Dates.
inline constexpr std::string_view kMonthWord = " tha\xF9ng"; // " tháng"
inline constexpr std::string_view kYearWord = " na\xEAm";    // " năm"
inline constexpr std::string_view kMonthFour = " t\xF6";     // " tư"

// Times.
inline constexpr std::string_view kHourWord = "gi\xF4\xF8 "; // "giờ "
inline constexpr std::string_view kMinuteWord = "phu\xF9t "; // "phút "
inline constexpr std::string_view kSecondWord = "gia\xE2y "; // "giây "

// Money.
inline constexpr std::string_view kDollarWord = " \xF1o\xE2 la ";          // " đô la "
inline constexpr std::string_view kPoundWord = " ba\xFBng ";               // " bảng "
inline constexpr std::string_view kYenWord = " ye\xE2n ";                  // " yên "
inline constexpr std::string_view kDongWord = " \xF1o\xE0ng ";             // " đồng "
inline constexpr std::string_view kThousandWord = " ngh\xECn ";            // " nghìn "
inline constexpr std::string_view kMillionWord = " trie\xE4u ";            // " triệu "
inline constexpr std::string_view kUsDollarWord = " \xF1o\xE2 la my\xF5 "; // " đô la mỹ "
inline constexpr std::string_view kVietnamDongWord =
    " vie\xE4t nam \xF1o\xE0ng ";                              // " việt nam đồng "
inline constexpr std::string_view kEuroWord = " \xF4 ro\xE2 "; // " ơ rô "

// Ranges.
inline constexpr std::string_view kRangeWord = "\xF1"
                                               "e\xE1n "; // "đến "

// Measures.
inline constexpr std::string_view kDegree = " \xF1o\xE4 ";            // " độ "
inline constexpr std::string_view kCelsius = " \xF1o\xE4 xe\xE2 ";    // " độ xê "
inline constexpr std::string_view kFahrenheit = " \xF1o\xE4 e\xF9p "; // " độ ép "
// The plus-minus sign ± (B1), which the symbol table leaves out.
inline constexpr std::string_view kPlusMinus = " co\xE4ng tr\xF6\xF8 "; // " cộng trừ "
// The sign of a negative number (the symbol '-' between numbers reads trừ).
inline constexpr std::string_view kNegativeWord = " a\xE2m ";           // " âm "
inline constexpr std::string_view kLitre = " l\xEDt ";                  // " lít "
inline constexpr std::string_view kMilli = " mi li ";                   // " mi li "
inline constexpr std::string_view kSquareMetre = " me\xF9t vuo\xE2ng "; // " mét vuông "
inline constexpr std::string_view kCubicMetre = " me\xF9t kho\xE1i ";   // " mét khối "
inline constexpr std::string_view kMetre = " me\xF9t ";                 // " mét "
inline constexpr std::string_view kKilometre = " ki lo\xE2 me\xF9t ";   // " ki lô mét "
inline constexpr std::string_view kDeci = " \xF1"
                                          "e\xE0 xi ";   // " đề xi "
inline constexpr std::string_view kCenti = " xen ti ";   // " xen ti "
inline constexpr std::string_view kKilo = " ki lo\xE2 "; // " ki lô "
inline constexpr std::string_view kGram = " gam ";       // " gam "
inline constexpr std::string_view kHectare = " he\xF9"
                                             "c ta ";        // " héc ta "
inline constexpr std::string_view kNetworkG = " g\xF4\xF8 "; // " gờ " (4G, 5G)
inline constexpr std::string_view kQuarter = " quy\xF9 ";    // " quý "
inline constexpr std::string_view kPerWord = " tre\xE2n ";   // " trên "
inline constexpr std::string_view kPerHour = " gi\xF4\xF8 "; // " giờ "

// Addresses.
inline constexpr std::string_view kDoubleSlash = "suye\xE4t ke\xF9p "; // "suyệt kép "
inline constexpr std::string_view kColonWord = "hai cha\xE1m ";        // "hai chấm "
inline constexpr std::string_view kDotWord = "cha\xE1m ";              // "chấm "
inline constexpr std::string_view kSlashWord = "suye\xE4t ";           // "suyệt "
inline constexpr std::string_view kAtWord = "a vo\xF8ng ";             // "a vòng "
inline constexpr std::string_view kHyphenWord = "ga\xEF"
                                                "ch ngang "; // "gạch ngang "
inline constexpr std::string_view kUnderscoreWord = "ga\xEF"
                                                    "ch d\xF6\xF4\xF9i "; // "gạch dưới "

// Context words of the classifier tests.
inline constexpr std::string_view kMonth = "tha\xF9ng"; // "tháng"
inline constexpr std::string_view kTomorrow = "mai";    // "mai"
inline constexpr std::string_view kBefore = "tr\xF6\xF4\xF9"
                                            "c";        // "trước"
inline constexpr std::string_view kAfter = "sau";       // "sau"
inline constexpr std::string_view kNow = "nay";         // "nay"
inline constexpr std::string_view kPast = "qua";        // "qua"
inline constexpr std::string_view kLateNight = "khuya"; // "khuya"
inline constexpr std::string_view kDay = "ho\xE2m";     // "hôm"
inline constexpr std::string_view kNight = "\xF1"
                                           "e\xE2m";        // "đêm"
inline constexpr std::string_view kEvening = "to\xE1i";     // "tối"
inline constexpr std::string_view kAfternoon = "chie\xE0u"; // "chiều"
inline constexpr std::string_view kNoon = "tr\xF6"
                                          "a";           // "trưa"
inline constexpr std::string_view kMorning = "sa\xF9ng"; // "sáng"
inline constexpr std::string_view kDate = "nga\xF8y";    // "ngày"
inline constexpr std::string_view kArea = "t\xED"
                                          "ch";      // "tích"
inline constexpr std::string_view kLong = "da\xF8i"; // "dài"
inline constexpr std::string_view kDistant = "ca\xF9"
                                             "ch";             // "cách"
inline constexpr std::string_view kNet = "t\xF2nh";            // "tịnh"
inline constexpr std::string_view kHeavy = "na\xEBng";         // "nặng"
inline constexpr std::string_view kWeigh = "ca\xE2n";          // "cân"
inline constexpr std::string_view kWeight = "l\xF6\xF4\xEFng"; // "lượng"
inline constexpr std::string_view kPhone = "thoa\xEFi";        // "thoại"

// Names of the Latin letters a..z, used to spell words the voice cannot say.
inline constexpr std::array<std::string_view, 26> kLetterNames = {
    "a",      // a: a
    "be\xE2", // b: bê
    "xe\xE2", // c: xê
    "\xF1"
    "e\xE2",          // d: đê
    "e",              // e: e
    "e\xF9p",         // f: ép
    "gie\xE2",        // g: giê
    "ha\xF9t",        // h: hát
    "i",              // i: i
    "gi",             // j: gi
    "ca",             // k: ca
    "e l\xF4\xF8",    // l: e lờ
    "em",             // m: em
    "en",             // n: en
    "o",              // o: o
    "pe\xE2",         // p: pê
    "qui",            // q: qui
    "e r\xF4\xF8",    // r: e rờ
    "e\xF9t",         // s: ét
    "te\xE2",         // t: tê
    "u",              // u: u
    "ve\xE2",         // v: vê
    "ve\xE2 ke\xF9p", // w: vê kép
    "\xED"
    "ch",      // x: ích
    "i",       // y: i
    "de\xF9t", // z: dét
};

// The name of the letter đ.
inline constexpr std::string_view kLetterDd = "\xF1"
                                              "e\xE2"; // đê

// Symbol words (trailing blank); ( ) , . read as nothing.
struct SymbolWord {
  char symbol;
  std::string_view word;
};
inline constexpr std::array<SymbolWord, 16> kSymbolWords = {{
    {'%', "pha\xE0n tra\xEAm "}, // phần trăm
    {'&', "va\xF8 "},            // và
    {'*', "nha\xE2n "},          // nhân
    {'+', "co\xE4ng "},          // cộng
    {'-', "tr\xF6\xF8 "},        // trừ
    {'/', "tre\xE2n "},          // trên
    {':', "chia "},              // chia
    {'<', "nho\xFB h\xF4n "},    // nhỏ hơn
    {'=', "ba\xE8ng "},          // bằng
    {'>', "l\xF4\xF9n h\xF4n "}, // lớn hơn
    {'@', "a vo\xF8ng "},        // a vòng
    {'[', "m\xF4\xFB ngoa\xEB"
          "c vuo\xE2ng "}, // mở ngoặc vuông
    {']', "\xF1o\xF9ng ngoa\xEB"
          "c vuo\xE2ng "}, // đóng ngoặc vuông
    {'_', "ga\xEF"
          "ch d\xF6\xF4\xF9i "}, // gạch dưới
    {'{', "m\xF4\xFB ngoa\xEB"
          "c "}, // mở ngoặc
    {'}', "\xF1o\xF9ng ngoa\xEB"
          "c "}, // đóng ngoặc
}};

} // namespace vntts::words
