// SPDX-License-Identifier: MIT
// Odd and hostile input: every byte in every record, broken UTF-8, lone surrogates, and a
// 10 MB text. Nothing may crash, and the output is what docs/charsets.md says.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "letter_sequences.h"
#include "text/charset/charsets.h"
#include "text/charset/text_folding.h"
#include "text/charset/unicode_codecs.h"
#include "text/charset/utf16_to_legacy.h"

namespace vntts {
namespace {

using testing::Bytes;
using testing::Hex;
using testing::SequenceOf;

std::string AllBytes() {
  std::string s;
  for (int b = 0; b < 256; ++b)
    s.push_back(static_cast<char>(b));
  return s;
}

// A lone byte is the first letter whose code it is, even when that code is a mark: a lone
// tone byte of code page 1258 (EC) reads as á.
TEST(BadInput, EveryByteInEveryRecordIsALetterOrPassesThrough) {
  for (int r = 0; r < kEncodingCount; ++r) {
    const WorkingRecord record(r);
    const int to = r == kEncodingWindows95 ? kEncodingPivot : kEncodingWindows95;
    const WorkingRecord target(to);
    for (int b = 0; b < 256; ++b) {
      const std::string byte(1, static_cast<char>(b));
      std::string out;
      ASSERT_TRUE(ConvertCharset(byte, out, r, to));
      const int x = record.FindLetter(static_cast<std::uint8_t>(b));
      const bool bracket = b == '[' || b == ']' || b == '{' || b == '}';
      const std::string expected =
          x == WorkingRecord::kNotFound || bracket ? byte : SequenceOf(target, x);
      EXPECT_EQ(Hex(out), Hex(expected)) << "record " << r << " byte " << b;
    }
  }
}

TEST(BadInput, AllBytesAtOnceThroughEveryConverter) {
  const std::string all = AllBytes();
  for (int from = 0; from < kEncodingCount; ++from) {
    for (int to = 0; to < kEncodingCount; ++to) {
      std::string out;
      ASSERT_TRUE(ConvertCharset(all, out, from, to));
      EXPECT_LE(out.size(), 2 * all.size());
    }
    std::string expanded;
    EXPECT_LE(ExpandFromPivot(all, expanded, from), 2 * all.size());
    std::u16string utf16;
    EXPECT_LE(LegacyToUtf16(from, all, &utf16), 2 * all.size());
    EXPECT_FALSE(LegacyToUtf8(all, from).empty());
  }
}

TEST(BadInput, EveryBytePairThroughTheSpeakPaths) {
  for (int a = 0; a < 256; ++a) {
    for (int b = 0; b < 256; ++b) {
      const std::string pair{static_cast<char>(a), static_cast<char>(b)};
      EXPECT_LE(AsciiToInternal(pair).size(), 4u);
      EXPECT_LE(Utf8ToInternal(pair).size(), 4u);
      EXPECT_LE(InternalToUtf8(pair).size(), 8u);
    }
  }
}

// Long texts are converted in pieces cut after blanks; on any input, noise included, that must
// give exactly what one pass over the whole text gives.
TEST(BadInput, PiecewiseConversionEqualsOnePass) {
  std::mt19937 random(7);
  std::string noise(1u << 20, '\0');
  for (char& c : noise)
    c = static_cast<char>(random() % 5 == 0 ? ' ' : random() & 0xFF);
  std::u16string utf16;
  DecodeUtf8(noise, utf16, u'?');
  std::string internal;
  Utf16ToLegacy(kEncodingInternal).Append(utf16, internal);
  EXPECT_TRUE(Utf8ToInternal(noise) == internal); // (not EXPECT_EQ: a megabyte in the report)

  std::string pivot;

  ConvertCharset(noise, pivot, kEncodingWindows95, kEncodingPivot);
  ExpandFromPivot(pivot, internal, kEncodingInternal);
  EXPECT_EQ(AsciiToInternal(noise), internal);

  std::u16string display;
  LegacyToUtf16(kEncodingInternal, noise, &display);
  std::string utf8;
  EncodeUtf8(display, utf8);
  EXPECT_EQ(InternalToUtf8(noise), utf8);

  // A text without blanks is one piece.
  const std::string word(200000, 'a');
  EXPECT_EQ(Utf8ToInternal(word), word);
}

TEST(BadInput, LoneSurrogatesKeepTheirLowByteInCodePage1258) {
  std::string out;
  EXPECT_EQ(Utf16ToCp1258(u"\xD800", &out), 1u);
  EXPECT_EQ(out, std::string(1, '\0'));
  EXPECT_EQ(Utf16ToCp1258(u"a\xDC41z", &out), 3u);
  EXPECT_EQ(out, "aAz");
  EXPECT_FALSE(ContainsVietnamese(u"\xD800\xDFFF"));
  std::u16string composed;
  EXPECT_EQ(ComposeUtf16(u"\xD800\u0301", composed), 2u);
}

// Vietnamese prose of about 10 MB: converting it whole gives the same bytes as converting
// each sentence (random bytes go through PiecewiseConversionEqualsOnePass).
TEST(BadInput, TenMegabytes) {
  const std::string sentence = "Hôm nay trời đẹp, chúng tôi đi dạo quanh Hồ Gươm và ăn phở. ";
  const std::string converted = Utf8ToInternal(sentence);
  std::string text;
  std::string expected;
  while (text.size() < 10u << 20) {
    text += sentence;
    expected += converted;
  }
  EXPECT_EQ(Utf8ToInternal(text), expected);
  EXPECT_EQ(InternalToUtf8(expected), text);
}

} // namespace
} // namespace vntts
