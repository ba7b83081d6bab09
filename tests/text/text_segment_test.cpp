// SPDX-License-Identifier: MIT
#include "text/text_segment.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "text_test_util.h"

namespace vntts {
namespace {

using testing::In;
using testing::Words;

std::vector<std::string> Tokens(std::string text, int tokenClass = token_class::kNone) {
  TextSegment segment(std::move(text), tokenClass);
  std::vector<std::string> tokens;
  segment.First();
  for (int guard = 0; guard < 1000 && !segment.Next().empty(); ++guard)
    tokens.push_back(segment.current);
  return tokens;
}

TEST(TextSegmentScan, SplitsTokensTheWayTheScannerDefines) {
  struct Case {
    std::string text;
    std::vector<std::string> tokens;
  };
  const Case cases[] = {
      {"", {}},
      {"   \t ", {}},
      {"abc,", {"abc", ","}},
      {"12.500 3/4", {"12.500", "3/4"}},
      {"3.", {"3."}},
      {"  12,5kg", {"12,5kg"}},
      {"a+b", {"a", "+", "b"}},
      {"5-10", {"5", "-", "10"}},
      {"x1.2", {"x1", ".", "2"}},
      {"1..2", {"1.", ".", "2"}},
      {"(0912)", {"(", "0912", ")"}},
      {"Tel: 0912-345", {"Tel", ":", "0912", "-", "345"}},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Tokens(c.text), c.tokens) << c.text;
}

TEST(TextSegmentScan, VietnameseLettersJoinTheirWord) {
  EXPECT_EQ(Tokens(In("Việt Nam, đẹp!")),
            (std::vector<std::string>{In("Việt"), "Nam", ",", In("đẹp"), "!"}));
}

TEST(TextSegmentScan, RestOfTextComesWholeOnceThenScansNormally) {
  TextSegment segment("  ab  cd ", token_class::kRestOfText);
  segment.First();
  EXPECT_EQ(segment.lookahead, "  ab  cd ");
  EXPECT_EQ(segment.token_class, token_class::kNone);
  EXPECT_EQ(segment.Next(), "  ab  cd ");
  EXPECT_EQ(segment.Next(), "");
}

TEST(TextSegmentScan, FirstAndNextKeepOneTokenOfLookahead) {
  TextSegment segment(In("một hai ba"));
  EXPECT_EQ(segment.First(), "");
  EXPECT_EQ(segment.lookahead, In("một"));
  EXPECT_EQ(segment.Next(), In("một"));
  EXPECT_EQ(segment.lookahead, "hai");
  EXPECT_EQ(segment.Next(), "hai");
  EXPECT_EQ(segment.lookahead, "ba");
  EXPECT_EQ(segment.Next(), "ba");
  EXPECT_EQ(segment.lookahead, "");
  EXPECT_EQ(segment.Next(), "");
}

TEST(TextSegmentScan, SetTextResetsThePositions) {
  TextSegment segment("a b");
  segment.First();
  segment.Next();
  segment.SetText("c");
  EXPECT_EQ(segment.scan_pos, 0);
  EXPECT_EQ(segment.token_start, 0);
  EXPECT_TRUE(segment.current.empty());
  EXPECT_TRUE(segment.lookahead.empty());
  segment.First();
  EXPECT_EQ(segment.Next(), "c");
}

TEST(TextSegmentPause, WeightsOfCharacters) {
  struct Case {
    char c;
    int weight;
  };
  const Case cases[] = {{'\n', 5000}, {'\r', 5000}, {'!', 5000}, {'?', 5000}, {',', 600},
                        {'.', 4000},  {':', 4000},  {';', 4000}, {'a', 0},    {'7', 0},
                        {'-', 20},    {'"', 20},    {' ', 20},   {'\xF4', 0}, {'\xA3', 20}};
  for (const auto& c : cases)
    EXPECT_EQ(TextSegment::PauseWeight(c.c), c.weight) << int(c.c);
}

TEST(TextSegmentPause, OnlyShortSegmentsArePauses) {
  EXPECT_EQ(TextSegment("?").SegmentPauseWeight(), 5000);
  EXPECT_EQ(TextSegment("?!").SegmentPauseWeight(), 0);
  EXPECT_EQ(TextSegment("\r\n").SegmentPauseWeight(), 5000);
  EXPECT_EQ(TextSegment("\n.").SegmentPauseWeight(), 5000);
  EXPECT_EQ(TextSegment("a").SegmentPauseWeight(), 0);
  EXPECT_EQ(TextSegment("").SegmentPauseWeight(), 0);

  TextSegment question("?", token_class::kSymbol);
  question.Dispatch();
  EXPECT_EQ(question.text, "?");
  EXPECT_TRUE(question.source_text.empty()); // a pause is never normalised
}

TEST(TextSegmentDispatch, ReplacesTextByTheReadingOfItsClass) {
  struct Case {
    std::string text;
    int tokenClass;
    std::string words;
  };
  const Case cases[] = {
      {"12.500", 'A', "mười hai nghìn năm trăm"},
      {"12", 'C', "mười hai"},
      {"2/9/1945", 'B', "hai tháng chín năm một nghìn chín trăm bốn mươi lăm"},
      {"0912-345", 'N', "không chín một hai ba bốn năm"},
      {"abc", 'E', "abc"},
      {"abc", 'P', "abc"},
  };
  for (const auto& c : cases) {
    TextSegment segment(c.text, c.tokenClass);
    segment.Dispatch();
    EXPECT_EQ(Words(segment.text), c.words) << c.text;
    EXPECT_EQ(segment.source_text, c.text);
    EXPECT_EQ(segment.token_class, c.tokenClass);
  }
}

TEST(TextSegmentDispatch, ASingleSymbolIsAPauseAndKeepsItsText) {
  TextSegment percent("%", token_class::kSymbol);
  EXPECT_EQ(percent.SegmentPauseWeight(), 20);
  percent.Dispatch();
  EXPECT_EQ(percent.text, "%");
  EXPECT_TRUE(percent.source_text.empty());
}

TEST(TextSegmentDispatch, CompoundReadsItsDefinitionPieceByPiece) {
  MemoryDefinitions definitions;
  definitions.entries["Q1"] = "12 3/4 abc 5km";
  TextSegment segment("Q1", token_class::kCompound);
  segment.Dispatch(&definitions);
  EXPECT_EQ(segment.definition_checked, 1);
  // Numbers, dates, measures ... are read; plain words and symbols add nothing.
  EXPECT_EQ(Words(segment.text), "mười hai ba trên bốn năm ki lô mét");
  EXPECT_EQ(segment.source_text, "Q1");
}

TEST(TextSegmentDispatch, CompoundWithoutDefinitionStillChecks) {
  TextSegment segment("7 x", token_class::kCompound);
  segment.Dispatch(nullptr);
  EXPECT_EQ(segment.definition_checked, 1);
  EXPECT_EQ(Words(segment.text), "bảy");
}

} // namespace
} // namespace vntts
