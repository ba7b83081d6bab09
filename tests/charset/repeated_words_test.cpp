// SPDX-License-Identifier: MIT
// Long texts reuse the conversion of words they repeat. The result must be byte for byte what
// converting the text in short stretches gives (short texts always take the whole road), for
// running prose and for hostile input alike.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "text/charset/charsets.h"

namespace vntts {
namespace {

// Converts in stretches of under 3 KB that end just after a blank: each stretch is short
// enough to be converted without remembering words.
template <typename Convert> std::string InShortStretches(std::string_view text, Convert convert) {
  std::string out;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.size();
    if (end - start > 3000) {
      const std::size_t blank = text.rfind(' ', start + 3000);
      end = blank != std::string_view::npos && blank >= start ? blank + 1 : text.size();
    }
    out += convert(text.substr(start, end - start));
    start = end;
  }
  return out;
}

std::string RandomText(std::mt19937& rng, const std::vector<std::string>& words, std::size_t n) {
  std::string text;
  std::uniform_int_distribution<std::size_t> pick(0, words.size() - 1);
  for (std::size_t i = 0; i < n; ++i) {
    text += words[pick(rng)];
    text += (i % 17 == 16) ? "\n" : " ";
  }
  return text;
}

// Words of prose, numbers and typography, then the odd ones: a combining mark with and
// without a base, broken UTF-8, an encoded surrogate, a no-break space, a tab, brackets.
std::vector<std::string> Words() {
  std::istringstream prose("Việt Nam người thuỷ thủy hoà hòa quý quí kỹ KHÔNG Đà Nẵng ẫ Ỵ ư Ư ơi ờ "
                           "gì giữ 2/9/1945 50.000đ 14:30 … “trích” – €");
  std::vector<std::string> words{std::istream_iterator<std::string>(prose), {}};
  words.insert(words.end(), {"a\xCC\x81", "\xCC\x81", "Y\xCC\x80", "x\xC3", "\xED\xA0\x80",
                             "\xC2\xA0nbsp", "tab\tseparated", "{}", ""});
  return words;
}

// Prose in UTF-8 and in the internal text, and random bytes read as either.
TEST(RepeatedWords, TextConvertsAsInShortStretches) {
  std::mt19937 rng(7);
  const std::string utf8 = RandomText(rng, Words(), 20000);
  ASSERT_GT(utf8.size(), 64u * 1024);
  std::string bytes(40000, ' ');
  for (char& c : bytes)
    if (rng() % 6) c = static_cast<char>(rng() & 0xFF);
  for (const std::string& text : {utf8, Utf8ToInternal(utf8), bytes}) {
    EXPECT_EQ(Utf8ToInternal(text),
              InShortStretches(text, [](std::string_view t) { return Utf8ToInternal(t); }));
    EXPECT_EQ(InternalToUtf8(text),
              InShortStretches(text, [](std::string_view t) { return InternalToUtf8(t); }));
  }
}

TEST(RepeatedWords, StreamConvertsItsPartsAsTheWholeText) {
  std::mt19937 rng(5);
  const std::string internal = Utf8ToInternal(RandomText(rng, Words(), 30000));
  InternalToUtf8Stream stream;
  std::string parts;
  std::size_t start = 0;
  while (start < internal.size()) {
    // Parts of every size from a few bytes up, each ending just after a line end or a blank.
    const std::size_t want = start + 1 + rng() % 20000;
    std::size_t end = internal.find_first_of(" \n", std::min(want, internal.size()));
    end = end == std::string::npos ? internal.size() : end + 1;
    parts += stream.Convert(std::string_view(internal).substr(start, end - start));
    start = end;
  }
  EXPECT_EQ(parts, InternalToUtf8(internal));
}

TEST(RepeatedWords, ManyDistinctWordsStillConvert) {
  // More distinct words than are remembered: the rest go the whole road.
  std::string utf8;
  for (int i = 0; i < 90000; ++i)
    utf8 += "từ" + std::to_string(i) + ' ';
  EXPECT_EQ(Utf8ToInternal(utf8),
            InShortStretches(utf8, [](std::string_view t) { return Utf8ToInternal(t); }));
}

} // namespace
} // namespace vntts
