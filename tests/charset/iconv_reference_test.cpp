// SPDX-License-Identifier: MIT
// glibc's iconv as an outside reference: VISCII, TCVN5712-1 (VN1) and CP1258. Every letter
// must convert to the same bytes through our tables as through iconv, except for the
// differences listed here, each of which is the record's own (see docs/charsets.md).
#include <gtest/gtest.h>
#include <iconv.h>

#include <optional>
#include <string>

#include "letter_sequences.h"
#include "text/charset/charsets.h"
#include "text/charset/unicode_codecs.h"

namespace vntts {
namespace {

using testing::Hex;
using testing::LetterUtf8;
using testing::SequenceOf;

std::optional<std::string> Iconv(const char* from, const char* to, const std::string& in) {
  iconv_t cd = iconv_open(to, from);
  if (cd == reinterpret_cast<iconv_t>(-1)) return std::nullopt;
  std::string out(in.size() * 4 + 16, '\0');
  char* src = const_cast<char*>(in.data());
  std::size_t src_left = in.size();
  char* dst = out.data();
  std::size_t dst_left = out.size();
  bool ok = iconv(cd, &src, &src_left, &dst, &dst_left) != static_cast<std::size_t>(-1);
  ok = ok && iconv(cd, nullptr, nullptr, &dst, &dst_left) != static_cast<std::size_t>(-1);
  iconv_close(cd);
  if (!ok) return std::nullopt;
  out.resize(out.size() - dst_left);
  return out;
}

struct Reference {
  int record;
  const char* iconv_name;
  std::string_view expected_differences; // letters whose bytes differ, in table order
};

// VS1 moves seven capitals off 0x11..0x17; TCVN2 composes 37 capitals that VN1 has as single
// bytes; "Windows 95VN" always writes base + tone byte where code page 1258 has a
// precomposed Latin-1 letter.
constexpr Reference kReferences[] = {
    {15, "VISCII", ""},
    {12, "TCVN5712-1", ""},
    {14, "TCVN5712-1", ""},
    {7, "TCVN5712-1", "ỨỰÝỲỶỸỴ"},
    {16, "TCVN5712-1", "ÁÀẢÃẠÉÈẺẼẸỆÓÒỎÕỌỘỚỜỞỠỢÚÙỦŨỤỨỪỬỮỰÝỲỶỸỴ"},
    {17, "CP1258", "áàéèóíúùÁÀÉÈÓÍÚÙ"},
};

std::string Differences(const Reference& ref, bool decode) {
  const WorkingRecord record(ref.record);
  std::string differing;
  for (int x = 0; x < kLetterCount; ++x) {
    const std::string letter = LetterUtf8(x);
    const std::string ours = SequenceOf(record, x);
    if (decode) {
      const auto theirs = Iconv(ref.iconv_name, "UTF-8", ours);
      if (!theirs || *theirs != LegacyToUtf8(ours, ref.record)) differing += letter;
    } else {
      EXPECT_EQ(Hex(Utf8ToLegacy(letter, ref.record)), Hex(ours)) << letter;
      const auto theirs = Iconv("UTF-8", ref.iconv_name, letter);
      if (!theirs || *theirs != ours) differing += letter;
    }
  }
  return differing;
}

TEST(IconvReference, EveryLetterEncodesAsIconvDoesExceptTheRecordsOwnChoices) {
  for (const auto& ref : kReferences) {
    if (!Iconv("UTF-8", ref.iconv_name, "a")) GTEST_SKIP() << "iconv lacks " << ref.iconv_name;
    EXPECT_EQ(Differences(ref, false), ref.expected_differences)
        << "record " << ref.record << " vs " << ref.iconv_name;
  }
}

TEST(IconvReference, EveryLetterDecodesAsIconvDoes) {
  // Decoding is one-to-one for the one-byte records; for code page 1258 iconv composes the
  // base and tone byte, as we do, so no letter differs.
  for (const auto& ref : kReferences) {
    if (ref.record == 7 || ref.record == 16)
      continue; // their differing letters are not VN1 bytes at all
    EXPECT_EQ(Differences(ref, true), "") << "record " << ref.record;
  }
}

TEST(IconvReference, CodePage1258DecodesByteForByte) {
  for (int b = 0; b < 256; ++b) {
    const std::string byte(1, static_cast<char>(b));
    std::u16string ours;
    DecodeCp1258(byte, ours);
    std::string ours_utf8;
    EncodeUtf8(ours, ours_utf8);
    const auto theirs = Iconv("CP1258", "UTF-8", byte);
    if (!theirs) {
      // Unassigned in the code page: we keep the byte's own value.
      EXPECT_EQ(ours, std::u16string(1, static_cast<char16_t>(b))) << b;
      continue;
    }
    EXPECT_EQ(Hex(ours_utf8), Hex(*theirs)) << "byte " << b;
  }
}

TEST(IconvReference, Utf8DecodesAsIconvDoesOnValidText) {
  const std::string text =
      "Tiếng Việt là ngôn ngữ chính thức của Việt Nam. ĐẶNG Thị Ửng, Nguyễn Ỷ, ỹ, €, 😀, ß";
  std::u16string ours;
  DecodeUtf8(text, ours);
  const auto theirs = Iconv("UTF-8", "UTF-16LE", text);
  ASSERT_TRUE(theirs);
  ASSERT_EQ(theirs->size(), ours.size() * 2);
  for (std::size_t i = 0; i < ours.size(); ++i) {
    const auto lo = static_cast<unsigned char>((*theirs)[2 * i]);
    const auto hi = static_cast<unsigned char>((*theirs)[2 * i + 1]);
    EXPECT_EQ(ours[i], static_cast<char16_t>(lo | hi << 8)) << i;
  }
}

} // namespace
} // namespace vntts
