// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "support/tsv.h"
#include "text/charset/charsets.h"
#include "text/charset/mapped_text.h"
#include "text/charset/unicode_codecs.h"

namespace vntts {
namespace {

std::u16string Utf16(const std::string& utf8) {
  std::u16string out;
  DecodeUtf8(utf8, out);
  return out;
}

TEST(MappedText, SpansOfInternalBytesCoverTheCharactersTheyCameFrom) {
  for (const auto& row : test::ReadTsv("mapped_text")) {
    const std::u16string text = Utf16(row.fields.at(0));
    const MappedText mapped(text);
    std::string utf8;
    EncodeUtf8(text, utf8);
    EXPECT_EQ(mapped.internal(), Utf8ToInternal(utf8)) << "line " << row.line;
    const UnitRange units =
        mapped.UnitsOf(std::stoul(row.fields.at(1)), std::stoul(row.fields.at(2)));
    ASSERT_LE(units.begin, units.end);
    EXPECT_EQ(text.substr(units.begin, units.end - units.begin), Utf16(row.fields.at(3)))
        << "line " << row.line;
  }
}

} // namespace
} // namespace vntts
