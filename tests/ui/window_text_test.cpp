// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "support/tsv_table.h"
#include "text/charset/charsets.h"
#include "text/charset/unicode_codecs.h"
#include "ui/window_text.h"

namespace vntts::ui {
namespace {

// The table writes invisible characters as \uXXXX (UTF-16 units, so a surrogate pair is two).
std::u16string Utf16(const std::string& field) {
  std::u16string out;
  std::size_t from = 0;
  for (std::size_t at; (at = field.find("\\u", from)) != std::string::npos; from = at + 6) {
    DecodeUtf8(field.substr(from, at - from), out);
    out += static_cast<char16_t>(std::stoul(field.substr(at + 2, 4), nullptr, 16));
  }
  DecodeUtf8(field.substr(from), out);
  return out;
}

TEST(WindowText, SpokenByteRangesComeBackAsTheCharactersTheyCameFrom) {
  for (const auto& row : vntts::test::ReadTsv("window_text")) {
    const std::u16string text = Utf16(row[0]);
    const WindowText spoken(text);
    std::string utf8;
    EncodeUtf8(text, utf8);
    EXPECT_EQ(spoken.internal(), Utf8ToInternal(utf8)) << "line " << row.line;
    const TextSelection units = spoken.UnitsOf(static_cast<std::uint32_t>(std::stoul(row[1])),
                                               static_cast<std::uint32_t>(std::stoul(row[2])));
    ASSERT_LE(units.start, units.end) << "line " << row.line;
    EXPECT_EQ(text.substr(static_cast<std::size_t>(units.start),
                          static_cast<std::size_t>(units.end - units.start)),
              Utf16(row[3]))
        << "line " << row.line;
  }
}

} // namespace
} // namespace vntts::ui
