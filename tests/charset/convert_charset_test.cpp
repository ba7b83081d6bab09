// SPDX-License-Identifier: MIT
// ConvertCharset and ExpandFromPivot: the letter-lookup rules, the completed "Windows 95VN"
// record, and every letter of every record through the pivot.
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "letter_sequences.h"
#include "text/charset/charsets.h"

namespace vntts {
namespace {

using testing::Bytes;
using testing::Hex;
using testing::SequenceOf;

std::string Convert(const std::string& s, int from, int to) {
  std::string out;
  EXPECT_TRUE(ConvertCharset(s, out, from, to));
  return out;
}

std::string Expand(const std::string& s, int to) {
  std::string out;
  const std::size_t written = ExpandFromPivot(s, out, to);
  EXPECT_EQ(written, out.size());
  return out;
}

// Equal indices copy every byte; text without letters passes any conversion unchanged.
TEST(ConvertCharset, CopiesWhatIsNotALetter) {
  std::string all;
  for (int b = 0; b < 256; ++b)
    all.push_back(static_cast<char>(b));
  const std::string text = "Xin chao 123 !?.,;:-()\"'\t\r\n";
  for (int from = 0; from < kEncodingCount; ++from) {
    EXPECT_EQ(Convert(all, from, from), all) << from;
    EXPECT_EQ(Convert(text, from, kEncodingWindows95), text) << from;
    for (int to = 0; to < kEncodingCount; ++to)
      EXPECT_EQ(Convert("", from, to), "");
    EXPECT_EQ(Expand("", from), "");
  }
  // In code page 1258 the five tone bytes are shared by every group and resolve to á..ạ; a
  // modified base still takes them: ê + EC is ế, as e + the internal text's ấ-mark is.
  EXPECT_EQ(Convert(Bytes({0xEA, 0xEC}), kEncodingWindows95, kEncodingPivot),
            Convert(Bytes({0x65, 0xE1}), kEncodingInternal, kEncodingPivot));
}

TEST(ConvertCharset, AModifiedVowelMarkAfterYCannotPassTheLastLetter) {
  // Y + the ầ-mark would point past the last letter: Y stays Y and the mark byte is read on
  // its own (as ầ, the first letter with that code).
  const WorkingRecord windows95(kEncodingWindows95);
  EXPECT_EQ(Hex(Convert(Bytes({0x59, 0xE0}), kEncodingInternal, kEncodingWindows95)),
            Hex("Y" + SequenceOf(windows95, 8)));
}

bool IsBracket(const std::string& seq) {
  return seq == "[" || seq == "]" || seq == "{" || seq == "}";
}

// Every letter of every record reaches the pivot as its one byte and comes back from it as
// the record's own sequence. The exceptions are the letters that two one-byte records put
// on { and } (record 0: Ã Ặ; record 9: Ý Đ): brackets are never read as letters.
TEST(ConvertCharset, EveryLetterOfEveryRecordThroughThePivot) {
  const WorkingRecord pivot(kEncodingPivot);
  int brackets = 0;
  for (int r = 0; r < kEncodingCount; ++r) {
    const WorkingRecord record(r);
    for (int x = 0; x < kLetterCount; ++x) {
      const std::string seq = SequenceOf(record, x);
      const std::string pivot_byte(1, static_cast<char>(pivot.Code(x)));
      if (IsBracket(seq)) {
        ++brackets;
        EXPECT_EQ(Convert(seq, r, kEncodingPivot), seq);
        continue;
      }
      EXPECT_EQ(Hex(Convert(seq, r, kEncodingPivot)), Hex(pivot_byte))
          << "record " << r << " letter " << x << " " << Hex(seq);
      EXPECT_EQ(Hex(Expand(pivot_byte, r)), Hex(seq)) << "record " << r << " letter " << x;
    }
  }
  EXPECT_EQ(brackets, 4);
}

TEST(ExpandFromPivot, WritesThePlainVowelInFrontOfAMark) {
  const WorkingRecord pivot(kEncodingPivot);
  const auto p = [&](int x) { return std::string(1, static_cast<char>(pivot.Code(x))); };
  EXPECT_EQ(Expand(p(7), kEncodingInternal), Bytes({0x61, 0xE1}));  // ấ
  EXPECT_EQ(Expand(p(6), kEncodingInternal), Bytes({0x61, 0xE2}));  // â
  EXPECT_EQ(Expand(p(43), kEncodingInternal), Bytes({0xF4, 0xF9})); // ớ: ơ is one byte
  EXPECT_EQ(Expand(p(49), kEncodingInternal), Bytes({0xED}));       // í
  EXPECT_EQ(Expand(p(29), kEncodingInternal), Bytes({0x65, 0xE4})); // ệ
  EXPECT_EQ(Expand("pivot text", kEncodingPivot), "pivot text");
}

// The tables of a pair are built by whichever thread converts first; threads that meet
// there must all see the finished tables.
TEST(ConvertCharset, ThreadsConvertingTheSamePairsAtOnceAgree) {
  std::string all;
  for (int b = 0; b < 256; ++b)
    all.push_back(static_cast<char>(b));
  all += all;
  std::vector<std::string> results(4 * kEncodingCount);
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([&, t] {
      for (int from = 0; from < kEncodingCount; ++from) {
        std::string pivot;
        ConvertCharset(all, pivot, from, kEncodingPivot);
        std::string expanded;
        ExpandFromPivot(pivot, expanded, (from + t) % kEncodingCount);
        results[static_cast<std::size_t>(t * kEncodingCount + from)] = pivot + expanded;
      }
    });
  for (auto& thread : threads)
    thread.join();
  for (int t = 1; t < 4; ++t)
    for (int from = 0; from < kEncodingCount; ++from) {
      const int to = (from + t) % kEncodingCount;
      EXPECT_EQ(results[static_cast<std::size_t>(t * kEncodingCount + from)],
                Convert(all, from, kEncodingPivot) + Expand(Convert(all, from, kEncodingPivot), to))
          << from << " -> " << to;
    }
}

} // namespace
} // namespace vntts
