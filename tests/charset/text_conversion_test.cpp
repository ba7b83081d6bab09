// Encoding names and whole-text conversion as the command line uses them.
#include <gtest/gtest.h>

#include "letter_sequences.h"
#include "text/charset/text_conversion.h"

namespace vntts {
namespace {

using Kind = TextEncoding::Kind;
using testing::Hex;

TEST(FindTextEncoding, IndicesNamesAndShortNames) {
  const struct {
    const char* name;
    Kind kind;
    int index;
  } found[] = {
      {"utf-8", Kind::Utf8, 0},
      {"UTF8", Kind::Utf8, 0},
      {"utf-16", Kind::Utf16, 0},
      {"UTF-16LE", Kind::Utf16, 0},
      {"0", Kind::Legacy, 0},
      {"18", Kind::Legacy, 18},
      {"07", Kind::Legacy, 7},
      {"VNI-CorelDRAW ASCII", Kind::Legacy, 0},
      {"vni-coreldraw ascii ", Kind::Legacy, 0},
      {"VNI-Windows ANSI", Kind::Legacy, 3},
      {"a b c", Kind::Legacy, 14},
      {"ABC", Kind::Legacy, 14},
      {"windows 95vn", Kind::Legacy, 17},
      {"VietRes (Seatic Corp)", Kind::Legacy, 5},
      {"vni", Kind::Legacy, 3},
      {"cp1258", Kind::Legacy, 17},
      {"TCVN3", Kind::Legacy, 14},
  };
  for (const auto& f : found) {
    const auto e = FindTextEncoding(f.name);
    ASSERT_TRUE(e) << f.name;
    EXPECT_EQ(e->kind, f.kind) << f.name;
    EXPECT_EQ(e->index, f.index) << f.name;
  }
  for (const char* name : {"", "19", "-1", "100", "latin1", "utf-32", "vni ansi"})
    EXPECT_FALSE(FindTextEncoding(name)) << name;
}

TEST(ConvertText, ReadsBothByteOrdersOfUtf16) {
  const TextEncoding utf16{Kind::Utf16, 0};
  const TextEncoding utf8{Kind::Utf8, 0};
  EXPECT_EQ(ConvertText(std::string("\xFE\xFF\x1E\xC7", 4), utf16, utf8).bytes, "ệ");
  EXPECT_EQ(ConvertText(std::string("\xFF\xFE\xC7\x1E", 4), utf16, utf8).bytes, "ệ");
  EXPECT_EQ(ConvertText(std::string("\xC7\x1E", 2), utf16, utf8).bytes, "ệ");
}

TEST(ConvertText, CountsBrokenUtf16) {
  const TextEncoding utf16{Kind::Utf16, 0};
  // A lone high surrogate, then an odd trailing byte.
  const ConvertedText text = ConvertText(std::string("a\0\0\xD8z\0!", 7), utf16, {Kind::Utf8, 0});
  EXPECT_EQ(text.invalid, 2u);
  EXPECT_EQ(text.bytes, "a\xEF\xBF\xBDz\xEF\xBF\xBD");
  const ConvertedText legacy = ConvertText(std::string("a\0\0\xD8", 4), utf16, {Kind::Legacy, 3});
  EXPECT_EQ(legacy.bytes, "a?");
}

TEST(ConvertText, LegacyToLegacyGoesThroughThePivot) {
  // ấ from code page 1258 (E2 EC) to the internal encoding is a + E1, not E2 E1.
  const ConvertedText text = ConvertText("\xE2\xEC", {Kind::Legacy, 17}, {Kind::Legacy, 3});
  EXPECT_EQ(Hex(text.bytes), "61 E1");
  EXPECT_EQ(ConvertText("same", {Kind::Legacy, 5}, {Kind::Legacy, 5}).bytes, "same");
}

TEST(ConvertText, CountsCharactersALegacyTargetCannotHold) {
  const ConvertedText text = ConvertText("Việt € 😀 ñ", {Kind::Utf8, 0}, {Kind::Legacy, 3});
  EXPECT_EQ(text.unrepresentable, 1u); // the emoji; € has a byte of its own, ñ folds to n
  EXPECT_EQ(text.invalid, 0u);
  EXPECT_EQ(Hex(text.bytes.substr(0, 7)), "56 69 65 E4 74 20 80");
  // Where the pivot's letters would take them, the currency signs cannot be written.
  EXPECT_EQ(ConvertText("€£¥", {Kind::Utf8, 0}, {Kind::Legacy, 15}).unrepresentable, 3u);
}

} // namespace
} // namespace vntts
