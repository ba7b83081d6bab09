// SPDX-License-Identifier: MIT
// The UTF-16 side: code page 1258 output, composition, detection, display conversion and
// our own UTF-8 and code page 1258 codecs.
#include <gtest/gtest.h>

#include <string>

#include "letter_sequences.h"
#include "text/charset/charsets.h"
#include "text/charset/unicode_codecs.h"
#include "text/charset/unicode_letter_data.h"

namespace vntts {
namespace {

using testing::Bytes;
using testing::Hex;
using testing::LetterUtf8;
using testing::SequenceOf;

std::u16string U16(std::string_view utf8) {
  std::u16string out;
  DecodeUtf8(utf8, out);
  return out;
}

std::string Cp1258(std::u16string_view text) {
  std::string out;
  const std::size_t written = Utf16ToCp1258(text, &out);
  EXPECT_EQ(written, out.size());
  EXPECT_EQ(Utf16ToCp1258(text, nullptr), out.size());
  return out;
}

TEST(Utf16ToCp1258, EveryLetterIsBaseAndToneByte) {
  const WorkingRecord windows95(kEncodingWindows95);
  for (int x = 0; x < kLetterCount; ++x)
    EXPECT_EQ(Hex(Cp1258(U16(LetterUtf8(x)))), Hex(SequenceOf(windows95, x))) << LetterUtf8(x);
}

TEST(ComposeUtf16, ComposesEveryPairOfTheList) {
  for (int k = 0; k < 120; ++k) {
    const std::u16string pair{kDecompositionList[15 + 2 * k], kDecompositionList[16 + 2 * k]};
    std::u16string out;
    EXPECT_EQ(ComposeUtf16(pair, out), 1u);
    EXPECT_EQ(out, std::u16string(1, kPrecomposedList[15 + k])) << k;
  }
}

TEST(LegacyToUtf16, EveryLetterOfEveryRecord) {
  for (int r = 0; r < kEncodingCount; ++r) {
    const WorkingRecord record(r);
    for (int x = 0; x < kLetterCount; ++x) {
      const std::string seq = SequenceOf(record, x);
      if (seq == "{" || seq == "}")
        continue; // brackets are never letters (see convert_charset_test)
      std::u16string out;
      const std::size_t n = LegacyToUtf16(r, seq, &out);
      EXPECT_EQ(n, out.size());
      EXPECT_EQ(LegacyToUtf16(r, seq, nullptr), n);
      EXPECT_EQ(out, U16(LetterUtf8(x))) << "record " << r << " letter " << x;
    }
  }
  std::u16string out = u"stale";
  EXPECT_EQ(LegacyToUtf16(19, "abc", &out), 0u);
  EXPECT_EQ(LegacyToUtf16(3, "", &out), 0u);
  EXPECT_EQ(out, u"");
}

TEST(MultiByteToUtf16, BothCodePagesAndNothingElse) {
  std::u16string out;
  EXPECT_EQ(MultiByteToUtf16(kCodePageUtf8, "Vi\xE1\xBB\x87t", out), 4u);
  EXPECT_EQ(out, u"Việt");
  EXPECT_EQ(
      MultiByteToUtf16(kCodePageWindows1258, Bytes({0x56, 0x69, 0xEA, 0xF2, 0x74, 0x80}), out), 6u);
  EXPECT_EQ(out, u"Vi\u00EA\u0323t\u20AC"); // tone bytes stay separate marks
  EXPECT_EQ(MultiByteToUtf16(437, "abc", out), 0u);
  EXPECT_EQ(out, u"");
  EXPECT_EQ(MultiByteToUtf16(kCodePageUtf8, "", out), 0u);
}

TEST(Utf8Codec, LoneSurrogatesBecomeReplacementCharacters) {
  std::string out;
  EXPECT_EQ(EncodeUtf8(u"a\xD800z\xDC00", out), 2u);
  EXPECT_EQ(out, "a\xEF\xBF\xBDz\xEF\xBF\xBD");
  out.clear();
  EXPECT_EQ(EncodeUtf8(u"\xD83D\xDE00", out), 0u);
  EXPECT_EQ(out, "\xF0\x9F\x98\x80");
}

} // namespace
} // namespace vntts
