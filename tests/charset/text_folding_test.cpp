// SPDX-License-Identifier: MIT
// Folding Unicode text into what the legacy encodings and the internal text can hold.
#include <gtest/gtest.h>

#include "letter_sequences.h"
#include "text/charset/charsets.h"
#include "text/charset/text_folding.h"
#include "text/charset/unicode_codecs.h"

namespace vntts {
namespace {

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
