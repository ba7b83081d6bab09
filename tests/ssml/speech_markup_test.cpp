// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "ssml/speech_markup.h"
#include "support/tsv_table.h"

namespace vntts {
namespace {

std::string Unescape(std::string s) {
  for (std::size_t p; (p = s.find("\\n")) != std::string::npos;)
    s.replace(p, 2, "\n");
  return s;
}

std::string Factor(const char* name, double value) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%s=%g", name, value);
  return buffer;
}

// The pieces in the notation of tests/data/speech_markup.tsv.
std::string Describe(const SpeechMarkup& markup) {
  std::string out = markup.is_markup ? "" : "plain: ";
  for (const SpeechPiece& piece : markup.pieces) {
    if (&piece != &markup.pieces.front()) out += " | ";
    if (piece.kind == SpeechPiece::Kind::kMark) {
      out += "#" + piece.text;
      continue;
    }
    if (piece.kind == SpeechPiece::Kind::kBreak) {
      out += "_" + std::to_string(piece.break_ms);
      continue;
    }
    out += "\"" + piece.text + "\"";
    std::vector<std::string> notes;
    if (piece.prosody.rate != 1) notes.push_back(Factor("r", piece.prosody.rate));
    if (piece.prosody.pitch != 1) notes.push_back(Factor("p", piece.prosody.pitch));
    if (piece.prosody.volume != 1) notes.push_back(Factor("v", piece.prosody.volume));
    if (piece.spell) notes.push_back("spell");
    for (std::size_t i = 0; i < notes.size(); ++i)
      out += (i == 0 ? "{" : " ") + notes[i] + (i + 1 == notes.size() ? "}" : "");
  }
  return out;
}

TEST(SpeechMarkup, ReadsTheSubsetScreenReadersSendAndLeavesTheRestAsText) {
  for (const auto& row : test::ReadTsv("speech_markup")) {
    const std::string input = Unescape(row.at(0));
    EXPECT_EQ(Describe(ReadSpeechMarkup(input)), row.size() > 1 ? row[1] : "") << input;
  }
}

TEST(SpeechMarkup, EveryByteKnowsWhereItCameFrom) {
  const std::string text = "<speak>a &amp; <mark name=\"m\"/>b<sub alias=\"xy\">z</sub></speak>";
  const SpeechMarkup markup = ReadSpeechMarkup(text);
  ASSERT_EQ(markup.pieces.size(), 3u);
  const SpeechPiece& first = markup.pieces[0];
  ASSERT_EQ(first.text, "a & ");
  const auto amp = static_cast<std::uint32_t>(text.find("&amp;"));
  EXPECT_EQ(first.SourceAt(0), amp - 2);
  EXPECT_EQ(first.SourceAt(2), amp);
  EXPECT_EQ(first.SourceAt(3), amp + 5);
  EXPECT_EQ(first.SourceAt(4), amp + 6) << "the end of the piece";
  EXPECT_EQ(markup.pieces[1].base, text.find("<mark"));
  const SpeechPiece& last = markup.pieces[2];
  ASSERT_EQ(last.text, "bxy");
  EXPECT_EQ(last.SourceAt(0), text.find('b', text.find("/>")));
  EXPECT_EQ(last.SourceAt(1), text.find("<sub"));
  EXPECT_EQ(last.SourceAt(3), text.find(">z") + 1) << "an alias spans its start tag";

  const SpeechMarkup plain = ReadSpeechMarkup("Chào bạn");
  ASSERT_EQ(plain.pieces.size(), 1u);
  EXPECT_EQ(plain.pieces[0].SourceAt(5), 5u);
  EXPECT_TRUE(ReadSpeechMarkup("").pieces.empty());
}

TEST(SpeechMarkup, HostileTextsStayLinear) {
  // Each of these would cost a search to the end of the text per construct if the reader
  // looked for closings naively: a million of them must still read in well under a second.
  for (const std::string unit : {"<!--", "&", "<a b=\"", "<?", "<![CDATA[", "<!"}) {
    std::string text = "<speak>";
    while (text.size() < 1'000'000)
      text += unit;
    EXPECT_FALSE(ReadSpeechMarkup(text).pieces.empty()) << unit;
  }
  std::string deep = "<speak>";
  for (int i = 0; i < 100000; ++i)
    deep += "<prosody rate=\"fast\">";
  EXPECT_EQ(ReadSpeechMarkup(deep + "a").pieces.at(0).prosody.rate, 16);
}

} // namespace
} // namespace vntts
