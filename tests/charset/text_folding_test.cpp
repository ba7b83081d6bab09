// Folding Unicode text into what the legacy encodings and the internal text can hold.
#include <gtest/gtest.h>

#include "letter_sequences.h"
#include "text/charset/charsets.h"
#include "text/charset/text_folding.h"
#include "text/charset/unicode_codecs.h"

namespace vntts {
namespace {

using testing::Bytes;
using testing::Hex;

TEST(FoldToLegacyRepertoire, Table) {
  const struct {
    std::u16string in;
    std::u16string out;
    std::size_t unknown;
  } cases[] = {
      {u"", u"", 0},
      {u"Việt Nam", u"Vi\u00EA\u0323t Nam", 0},     // toned letters are split: ê + dot below
      {u"Vie\u0323\u0302t", u"Vi\u00EA\u0323t", 0}, // NFD order: dot below, circumflex
      {u"Vie\u0302\u0323t", u"Vi\u00EA\u0323t", 0}, // the other order
      {u"u\u031B\u0300", u"\u01B0\u0300", 0},       // ừ from u + horn + grave
      {u"A\u0306\u0301", u"\u0102\u0301", 0},       // Ắ
      {u"\u00E1\u0302", u"\u00E2\u0301", 0},        // á + circumflex is ấ
      {u"b\u0301", u"b", 0},                        // a mark with no vowel is dropped
      {u"u\u0308", u"u", 0},                        // other marks are dropped
      {u"\u2013 \u2014 \u201Cx\u201D \u2018y\u2019 \u2026", u"- - \"x\" 'y' ...", 0},
      {u"\u00AB\u00BB \u00A0\u200B\u00AD", u"\"\" \u00A0", 0},
      {u"25\u00B0C 3m\u00B2", u"25\u00B0C 3m\u00B2", 0}, // ° and ² survive the pivot
      {u"M\u00FCller Fran\u00E7ois Stra\u00DFe", u"Muller Francois Strasse", 0},
      {u"2\u00D73", u"2x3", 0},
      {u"a\x01\x13\tb\r\n", u"a  \tb\r\n", 0}, // controls the pivot uses as letters
      {u"\u20AC\u6F22\xD83D\xDE00!",
       u"?"
       u"?"
       u" !",
       3}, // €, a Han character, an emoji (a blank: it stands between words)
      {u"\u00A9\u2764\uFE0F\u2705", u"   ", 3}, // ©, a heart with its selector, a check mark
  };
  for (const auto& c : cases) {
    std::u16string out;
    EXPECT_EQ(FoldToLegacyRepertoire(c.in, out), c.unknown);
    EXPECT_EQ(out, c.out);
  }
}

TEST(FoldToLegacyRepertoire, SpeakPathReadsDecomposedAndTypographicText) {
  const std::string viet = Bytes({0x56, 0x69, 0x65, 0xE4, 0x74});
  EXPECT_EQ(Hex(Utf8ToInternal("Vie\xCC\xA3\xCC\x82t")), Hex(viet)); // NFD, as macOS writes it
  EXPECT_EQ(Utf8ToInternal("\xE2\x80\x9C"
                           "a\xE2\x80\x9D \xE2\x80\x93 b\xE2\x80\xA6"),
            "\"a\" - b...");
  // The euro, pound and yen signs keep their code page bytes, which the pivot would read
  // as letters; the readings say them as money.
  EXPECT_EQ(Hex(Utf8ToInternal("\xE2\x82\xAC"
                               "5 \xC2\xA3 \xC2\xA5")),
            "80 35 20 A3 20 A5");
  EXPECT_EQ(InternalToUtf8("\x80\xA3\xA5"), "\xE2\x82\xAC\xC2\xA3\xC2\xA5");
  EXPECT_EQ(Utf8ToInternal("a\xE2\x82\xAC\xCC\x81"), "a\x80")
      << "a mark after the sign has no vowel";
  // ° passes into the internal text as its own byte, for the normalisers.
  EXPECT_EQ(Hex(Utf8ToInternal("\xC2\xB0")), "B0");
}

// Every character the fold keeps or produces comes back unchanged from the internal text.
TEST(FoldToLegacyRepertoire, EverythingItKeepsSurvivesTheRoundTrip) {
  for (char16_t u = 0x20; u < 0x3400; ++u) {
    if (u == 0x7F || (u >= 0xD800 && u <= 0xDFFF)) continue;
    const std::u16string in(1, u);
    std::u16string folded;
    if (FoldToLegacyRepertoire(in, folded) != 0) continue;
    std::u16string composed;
    ComposeUtf16(folded, composed);
    std::string input;
    EncodeUtf8(in, input);
    std::string expected;
    EncodeUtf8(composed, expected);
    EXPECT_EQ(InternalToUtf8(Utf8ToInternal(input)), expected) << std::hex << unsigned{u};
  }
}

} // namespace
} // namespace vntts
