// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>

#include "support/tsv_table.h"
#include "synthesis/utf8_text_map.h"
#include "text/charset/charsets.h"

namespace vntts {
namespace {

std::string Unescape(std::string_view s) {
  std::string out;
  for (std::size_t i = 0; i < s.size(); ++i) {
    if (s[i] != '\\' || i + 1 >= s.size()) {
      out += s[i];
    } else if (s[i + 1] == 'x') {
      out += static_cast<char>(std::stoi(std::string(s.substr(i + 2, 2)), nullptr, 16));
      i += 3;
    } else {
      out += s[i + 1] == 't' ? '\t' : s[i + 1] == 'n' ? '\n' : s[i + 1];
      ++i;
    }
  }
  return out;
}

TEST(Utf8TextMap, EveryWordOfTheInternalTextMapsBackToItsUtf8) {
  for (const auto& row : test::ReadTsv("utf8_text_map")) {
    const std::string text = Unescape(row.at(0));
    const Utf8TextMap map(text);
    ASSERT_EQ(map.internal(), Utf8ToInternal(text)) << row[0];
    std::string pieces;
    std::uint32_t last_end = 0;
    const std::string& internal = map.internal();
    for (std::size_t start = 0; start < internal.size();) {
      const std::size_t blank = internal.find(' ', start);
      const std::size_t end = blank == std::string::npos ? internal.size() : blank + 1;
      const auto [from, to] = map.ToUtf8(start, end - start);
      EXPECT_EQ(from, last_end) << "words follow one another: " << row[0];
      pieces += (start == 0 ? "" : "|") + text.substr(from, to - from);
      last_end = to;
      start = end;
    }
    EXPECT_EQ(pieces, Unescape(row.size() > 1 ? row[1] : "")) << row[0];
  }
}

TEST(Utf8TextMap, RangesInsideACharacterWidenToIt) {
  const std::string text = "xệ y"; // ệ: 3 bytes of UTF-8, 2 of internal text (e, then ^ and dot)
  const Utf8TextMap map(text);
  ASSERT_EQ(map.internal().size(), 5u);
  EXPECT_EQ(map.ToUtf8(2, 1), std::pair(1u, 4u));
  EXPECT_EQ(map.ToUtf8(1, 1), std::pair(1u, 4u));
  EXPECT_EQ(map.ToUtf8(0, 2), std::pair(0u, 4u));
  EXPECT_EQ(map.ToUtf8(4, 100), std::pair(5u, 6u)) << "a length past the end stops there";
  EXPECT_EQ(map.ToUtf8(50, 1), std::pair(6u, 6u));
  EXPECT_EQ(Utf8TextMap("").ToUtf8(0, 1), std::pair(0u, 0u));
}

} // namespace
} // namespace vntts
