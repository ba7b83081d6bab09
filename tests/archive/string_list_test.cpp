// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "audio/archive/string_list.h"

namespace vntts {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Cat(std::initializer_list<Bytes> parts) {
  Bytes out;
  for (const auto& p : parts)
    out.insert(out.end(), p.begin(), p.end());
  return out;
}

Bytes Chars(std::size_t n, char c) {
  return Bytes(n, static_cast<std::uint8_t>(c));
}

struct Case {
  const char* name;
  std::vector<std::string> strings;
  Bytes bytes;
};

// The byte layouts the reader must accept and the writer must produce.
TEST(StringList, KnownLayoutsRoundTrip) {
  const std::vector<Case> cases = {
      {"no strings", {}, {0x00, 0x00}},
      {"one string", {"ba"}, {0x01, 0x00, 0x02, 'b', 'a'}},
      {"three strings", {"a", "b", "c"}, {0x03, 0x00, 1, 'a', 1, 'b', 1, 'c'}},
      {"empty string", {""}, {0x01, 0x00, 0x00}},
      {"254 bytes keep the one-byte prefix",
       {std::string(254, 'x')},
       Cat({{0x01, 0x00, 0xFE}, Chars(254, 'x')})},
      {"255 bytes escape to 16 bits",
       {std::string(255, 'x')},
       Cat({{0x01, 0x00, 0xFF, 0xFF, 0x00}, Chars(255, 'x')})},
      {"300 bytes use 0xFF and a 16-bit length",
       {std::string(300, 'k')},
       Cat({{0x01, 0x00, 0xFF, 0x2C, 0x01}, Chars(300, 'k')})},
      {"0xFFFD bytes are the last 16-bit length",
       {std::string(0xFFFD, 'y')},
       Cat({{0x01, 0x00, 0xFF, 0xFD, 0xFF}, Chars(0xFFFD, 'y')})},
      {"0xFFFE bytes escape to 32 bits",
       {std::string(0xFFFE, 'z')},
       Cat({{0x01, 0x00, 0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0x00, 0x00}, Chars(0xFFFE, 'z')})},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(SerializeStringList(c.strings), c.bytes);
    const auto parsed = ParseStringList(c.bytes);
    ASSERT_TRUE(parsed.has_value());
    EXPECT_EQ(*parsed, c.strings);
  }
}

TEST(StringList, CountOf0xFFFFSwitchesTo32Bits) {
  // Written by the writer for 65535 strings...
  const std::vector<std::string> many(0xFFFF, "a");
  const Bytes bytes = SerializeStringList(many);
  ASSERT_GE(bytes.size(), 6u);
  EXPECT_EQ((Bytes{bytes.begin(), bytes.begin() + 6}), (Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00}));
  EXPECT_EQ(ParseStringList(bytes)->size(), 0xFFFFu);
  // ...and accepted by the reader for a small count too.
  const Bytes escaped = {0xFF, 0xFF, 0x02, 0x00, 0x00, 0x00, 1, 'a', 1, 'b'};
  EXPECT_EQ(*ParseStringList(escaped), (std::vector<std::string>{"a", "b"}));
}

TEST(StringList, TrailingBytesAreIgnored) {
  const Bytes bytes = {0x01, 0x00, 0x01, 'a', 0xDE, 0xAD};
  EXPECT_EQ(*ParseStringList(bytes), (std::vector<std::string>{"a"}));
}

// Every way a key file can lie must be refused without reading past the end or
// reserving room for a count the bytes cannot hold.
TEST(StringList, RefusesTruncatedAndLyingInput) {
  const std::vector<std::pair<const char*, Bytes>> bad = {
      {"escaped count without its 32 bits", {0xFF, 0xFF, 0x01, 0x00}},
      {"count beyond the strings", {0x02, 0x00, 0x01, 'a'}},
      {"4 billion strings in 6 bytes", {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}},
      {"32-bit length cut", {0x01, 0x00, 0xFF, 0xFF, 0xFF, 0x00}},
      {"32-bit length past the end", {0x01, 0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F, 'a'}},
  };
  for (const auto& [name, bytes] : bad) {
    SCOPED_TRACE(name);
    EXPECT_FALSE(ParseStringList(bytes).has_value());
  }
}

// Every prefix of a valid list is either refused or (for the whole) accepted; none crashes.
TEST(StringList, EveryPrefixOfAValidListIsRefused) {
  const Bytes full = SerializeStringList(std::vector<std::string>{"a", std::string(300, 'q'), "c"});
  for (std::size_t n = 0; n < full.size(); ++n)
    EXPECT_FALSE(ParseStringList(std::span(full).first(n)).has_value()) << n;
  EXPECT_TRUE(ParseStringList(full).has_value());
}

} // namespace
} // namespace vntts
