// SPDX-License-Identifier: MIT
#include "text/sentence_parser.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

#include "text_test_util.h"

namespace vntts {
namespace {

using testing::In;
using testing::Spoken;

struct Case {
  const char* text;
  const char* spoken; // sentences separated by " | "
};

void ExpectSpoken(std::initializer_list<Case> cases, FrontEndStores stores = {}) {
  for (const auto& c : cases)
    EXPECT_EQ(Spoken(c.text, stores), c.spoken) << c.text;
}

std::vector<Sentence> Parse(std::string_view internal, FrontEndStores stores = {}) {
  SentenceParser parser(internal, stores);
  std::vector<Sentence> out;
  Sentence s;
  while (parser.Next(s))
    out.push_back(s);
  return out;
}

TEST(SentenceParser, SentencesEndAtPausePunctuation) {
  const auto sentences = Parse(In("Chào bạn. Hẹn gặp lại!\n\nTạm biệt"));
  ASSERT_EQ(sentences.size(), 3U);
  EXPECT_EQ(sentences[0].terminator, '.');
  EXPECT_EQ(sentences[0].pause_weight, 4000);
  EXPECT_EQ(sentences[1].terminator, '!');
  EXPECT_EQ(sentences[1].pause_weight, 5000);
  EXPECT_EQ(sentences[2].terminator, 0);
  EXPECT_EQ(sentences[2].pause_weight, 0);
}

TEST(SentenceParser, CommaPausesLightly) {
  const auto sentences = Parse("mot, hai");
  ASSERT_EQ(sentences.size(), 2U);
  EXPECT_EQ(sentences[0].terminator, ',');
  EXPECT_EQ(sentences[0].pause_weight, 600);
}

TEST(SentenceParser, ListMarkersAtLineStart) {
  const std::string text = In("1. Giới thiệu\n2. Nội dung\nCó 3. Hết");
  const auto sentences = Parse(text);
  ASSERT_EQ(sentences.size(), 6U);
  ASSERT_EQ(sentences[0].words.size(), 1U);
  EXPECT_EQ(sentences[0].words[0].word, In("một"));
  EXPECT_EQ(sentences[0].words[0].mark, 'C');
  EXPECT_EQ(sentences[0].pause_weight, 600);
  EXPECT_EQ(sentences[2].words[0].mark, 'C');
  // Not at a line start: "3." ends a sentence.
  EXPECT_EQ(sentences[4].words.back().mark, 'A');
  EXPECT_EQ(sentences[4].pause_weight, 4000);
}

TEST(SentenceParser, WordsCarryTheSpanOfTheirPiece) {
  const std::string text = In("Có 12 quả.");
  const auto sentences = Parse(text);
  ASSERT_EQ(sentences.size(), 1U);
  const auto& w = sentences[0].words;
  ASSERT_EQ(w.size(), 4U);
  EXPECT_EQ(text.substr(w[0].start, w[0].end - w[0].start), In("Có"));
  EXPECT_EQ(text.substr(w[1].start, w[1].end - w[1].start), "12");
  EXPECT_EQ(w[1].start, w[2].start);
  EXPECT_EQ(w[1].end, w[2].end);
  EXPECT_EQ(text.substr(w[3].start, w[3].end - w[3].start), In("quả"));
  EXPECT_EQ(sentences[0].start, 0U);
  EXPECT_EQ(sentences[0].end, text.size());
  EXPECT_EQ(text[sentences[0].end - 1], '.');
}

TEST(SentenceParser, SentenceSpansLeaveBlanksOut) {
  const std::string text = "  mot (hai.)  ba!\n\n  bon  ";
  const auto sentences = Parse(text);
  ASSERT_EQ(sentences.size(), 3U);
  auto span = [&](const Sentence& s) { return text.substr(s.start, s.end - s.start); };
  EXPECT_EQ(span(sentences[0]), "mot (hai.)");
  EXPECT_EQ(span(sentences[1]), "ba!\n\n");
  EXPECT_EQ(span(sentences[2]), "bon");
  EXPECT_EQ(sentences[1].terminator, '!');
}

TEST(SentenceParser, PhraseFieldsForTheWordGap) {
  const std::string text = In("Hà Nội có 12 quận");
  const auto sentences = Parse(text);
  ASSERT_EQ(sentences.size(), 1U);
  const auto& w = sentences[0].words;
  ASSERT_EQ(w.size(), 6U);
  // The lookahead is the text's next word, across pieces.
  EXPECT_EQ(w[0].word, In("hà"));
  EXPECT_EQ(w[0].lookahead, In("nội"));
  EXPECT_EQ(w[0].segment_text, In("hà"));
  EXPECT_EQ(w[0].previous_segment_text, "");
  EXPECT_EQ(w[3].word, In("mười"));
  EXPECT_EQ(w[3].lookahead, "hai");
  EXPECT_EQ(w[3].segment_text, In("mười hai"));
  EXPECT_EQ(w[4].lookahead, In("quận"));
  EXPECT_EQ(w[5].lookahead, "") << "the text ends here";
  EXPECT_EQ(w[5].previous_segment_text, In("mười hai"));
  EXPECT_EQ(Parse(In("con trai. Em"))[0].words[1].lookahead, ".");
}

TEST(SentenceParser, DefinitionsComeFirstAndMarkTheirWords) {
  MemoryDefinitions definitions;
  definitions.entries[In("TP")] = In("thành phố");
  definitions.entries["ubnd"] = In("ủy ban nhân dân");
  FrontEndStores stores;
  stores.definitions = &definitions;
  ExpectSpoken({{"TP Huế", "thành phố huế"}, {"UBND tỉnh", "ủy ban nhân dân tỉnh"}}, stores);
  const auto sentences = Parse(In("TP Huế"), stores);
  ASSERT_EQ(sentences.size(), 1U);
  EXPECT_TRUE(sentences[0].words[0].from_definition);
  EXPECT_EQ(sentences[0].words[0].mark, 'F');
  EXPECT_EQ(sentences[0].words[0].lookahead, In("phố"));
  EXPECT_FALSE(sentences[0].words[2].from_definition);
}

TEST(SentenceParser, ASpacedNumberIsOnePieceWithOneSpan) {
  const auto sentences = Parse("gia 12 500 000 dong");
  ASSERT_EQ(sentences.size(), 1U);
  const auto& w = sentences[0].words;
  ASSERT_GE(w.size(), 3U);
  EXPECT_EQ(w[1].start, 4U);
  EXPECT_EQ(w[1].end, 14U);
  EXPECT_EQ(w[1].mark, 'A');
  EXPECT_EQ(w.back().start, 15U);
}

TEST(SentenceParser, AnAbbreviationGluedByItsPointToWhatFollows) {
  MemoryDefinitions definitions;
  definitions.entries["Q."] = In("quận");
  definitions.entries[In("p.")] = In("phường");
  definitions.entries["TP.HCM"] = In("thành phố Hồ Chí Minh");
  definitions.entries["T2"] = In("thứ hai");
  definitions.entries["T6"] = In("thứ sáu");
  FrontEndStores stores;
  stores.definitions = &definitions;
  ExpectSpoken({{"Q.1", "quận một"},
                {"T2-T6", "thứ hai đến thứ sáu"},
                {"T2-X6", "tê hai ích sáu"},
                {"P.Bến Nghé", "phường bến nghé"},
                {"TP.HCM", "thành phố hồ chí minh"},
                {"X.1", "ích một"},
                {"1.Q", "một qui"}},
               stores);
  const auto sentences = Parse(In("Q.1"), stores);
  ASSERT_EQ(sentences.size(), 1U);
  EXPECT_TRUE(sentences[0].words[1].from_definition);
  EXPECT_EQ(sentences[0].words[1].mark, 'F');
}

TEST(SentenceParser, AutoCorrectReplacesWhatCannotBeSaid) {
  MemoryAutoCorrect autoCorrect;
  autoCorrect.entries["ko"] = In("không");
  autoCorrect.entries["vs"] = In("với");
  autoCorrect.entries["lp"] = "lp"; // a replacement equal to the token changes nothing
  autoCorrect.entries["a1"] = "b1"; // and replacements that cycle end
  autoCorrect.entries["b1"] = "a1";
  FrontEndStores stores;
  stores.auto_correct = &autoCorrect;
  autoCorrect.entries["iphone"] = In("ai phôn");
  ExpectSpoken({{"anh vs em", "anh với em"},
                {"lp", "e lờ pê"},
                {"iPhone IPHONE", "ai phôn ai phôn"},
                {"VS", "với"}},
               stores);
  EXPECT_FALSE(Spoken("a1", stores).empty());
}

TEST(SentenceParser, SpeakableCheckDecidesWhatIsSpelled) {
  struct Voice final : SpeakableCheck {
    bool CanSpeak(std::string_view w) const override { return w == "email" || w == "anh"; }
  } voice;
  FrontEndStores stores;
  stores.speakable = &voice;
  ExpectSpoken({{"anh email", "anh email"}, {"anh em", "anh e em"}}, stores);
}

// Words met again are read from what the parser remembers; they must read exactly as they did
// the first time, or as their new neighbours make them read.
TEST(SentenceParser, RepeatedWordsReadAsWhereverTheyStand) {
  ExpectSpoken({{"km nay 5 km, km km", "ca em nay năm ki lô mét | ca em ca em"},
                {"5 km km 5 km", "năm ki lô mét ca em năm ki lô mét"}});

  MemoryDefinitions definitions;
  definitions.entries[In("TP")] = In("thành phố");
  MemoryAutoCorrect autoCorrect;
  autoCorrect.entries["vs"] = In("với");
  struct CountingVoice final : SpeakableCheck {
    bool CanSpeak(std::string_view w) const override {
      ++asked[std::string(w)];
      return w != "xyz" && w != "vs";
    }
    mutable std::map<std::string, int> asked;
  } voice;
  FrontEndStores stores{&definitions, &autoCorrect, &voice};
  const auto sentences = Parse(In("TP vs xyz TP vs xyz anh anh"), stores);
  ASSERT_EQ(sentences.size(), 1U);
  std::string words;
  for (const auto& w : sentences[0].words) {
    words += InternalToUtf8(w.word) + (w.from_definition ? "/D" : "") + "/" +
             std::string(1, static_cast<char>(w.mark)) + " ";
  }
  EXPECT_EQ(words, "thành/D/F phố/D/F với/@ ích/P i/P dét/P thành/D/F phố/D/F với/@ ích/P "
                   "i/P dét/P anh/@ anh/@ ");
  EXPECT_EQ(voice.asked["anh"], 1) << "a plain word is checked once";
  EXPECT_EQ(voice.asked["xyz"], 1);
  EXPECT_EQ(voice.asked["vs"], 2) << "a word the stores answered for is read afresh";
}

TEST(SentenceParser, ARunWithoutStopsIsCutEveryThousandPieces) {
  std::string text;
  for (int i = 0; i < 2500; ++i)
    text += "ba ";
  text += "xong.";
  const auto sentences = Parse(text);
  ASSERT_EQ(sentences.size(), 3U);
  std::size_t words = 0;
  for (std::size_t k = 0; k < sentences.size(); ++k) {
    words += sentences[k].words.size();
    EXPECT_EQ(sentences[k].terminator, k + 1 < sentences.size() ? 0 : '.');
    EXPECT_EQ(sentences[k].pause_weight == 0, k + 1 < sentences.size()) << k;
  }
  EXPECT_EQ(words, 2501U);
  EXPECT_EQ(sentences[0].words.size(), 1000U);
  EXPECT_EQ(sentences[0].end, 3U * 1000 - 1);
  EXPECT_EQ(sentences[1].start, 3U * 1000);
  EXPECT_EQ(sentences[2].end, text.size());
}

TEST(SentenceParser, LeadingPunctuationIsSkipped) {
  EXPECT_TRUE(Parse("").empty());
  EXPECT_TRUE(Parse("   ").empty());
  EXPECT_TRUE(Parse("\n\n...").empty());
  const auto sentences = Parse("\n\n. mot");
  ASSERT_EQ(sentences.size(), 1U);
  EXPECT_EQ(sentences[0].words.size(), 1U);
}

TEST(SentenceParser, ResetStartsOver) {
  const std::string text = "mot. hai";
  SentenceParser parser(text);
  Sentence s;
  int first = 0;
  while (parser.Next(s))
    ++first;
  parser.Reset();
  int second = 0;
  while (parser.Next(s))
    ++second;
  EXPECT_EQ(first, 2);
  EXPECT_EQ(second, 2);
}

// Bad input: no crash, no hang, output in proportion to the input.
std::size_t SpokenBytes(std::string_view text) {
  std::size_t bytes = 0;
  SentenceParser parser(text);
  Sentence s;
  while (parser.Next(s))
    for (const auto& w : s.words)
      bytes += w.word.size() + 1;
  return bytes;
}

TEST(SentenceParserBadInput, RandomBytes) {
  std::mt19937 random(12345);
  for (int round = 0; round < 200; ++round) {
    std::string text(static_cast<std::size_t>(random() % 2000), '\0');
    for (char& c : text)
      c = static_cast<char>(random() & 0xFF);
    EXPECT_LT(SpokenBytes(text), 40 * text.size() + 64);
  }
}

TEST(SentenceParserBadInput, HugeInputs) {
  const std::string noBlank(1 << 20, 'a');
  EXPECT_LT(SpokenBytes(noBlank),
            1000U); // a run that long is not a word: only its start is spelled
  std::string mixed;
  for (int i = 0; i < (1 << 18); ++i)
    mixed += "a1-";
  EXPECT_LT(SpokenBytes(mixed), 40 * mixed.size());
  const std::string digits(10'000, '9');
  const std::size_t bytes = SpokenBytes(digits);
  EXPECT_GT(bytes, 10'000U);
  EXPECT_LT(bytes, 40 * digits.size());
  // A megabyte of digits is read in sentences of bounded size (it once took hundreds of
  // megabytes, and four of them ran out of memory).
  const std::string manyDigits(1 << 20, '7');
  SentenceParser parser(manyDigits, {}, PhraseTexts::kSkip);
  Sentence s;
  std::size_t most = 0, words = 0;
  while (parser.Next(s)) {
    most = std::max(most, s.words.size());
    words += s.words.size();
  }
  EXPECT_LT(most, 5000U);
  EXPECT_GT(words, manyDigits.size());
  const std::string punctuation(1 << 20, '.');
  EXPECT_EQ(SpokenBytes(punctuation), 0U);
  std::string symbols;
  for (int i = 0; i < (1 << 17); ++i)
    symbols += "+-*/(){}";
  EXPECT_LT(SpokenBytes(symbols), 40 * symbols.size());
}

} // namespace
} // namespace vntts

namespace vntts {
namespace {

// A caller that only lists words may skip the phrase texts: the words, spans and marks are the
// same, and the phrase fields stay empty even when the parser's sentence is reused.
TEST(SentenceParserPhraseTexts, SkippingKeepsWordsAndLeavesPhraseFieldsEmpty) {
  const std::string text = In("Xin chào các bạn, hôm nay 12/3. Giá 50.000đ; Tel: 0912-345.");
  SentenceParser filled(text);
  SentenceParser skipped(text, {}, PhraseTexts::kSkip);
  Sentence a, b;
  int sentences = 0;
  bool sawPhraseText = false;
  while (filled.Next(a)) {
    ASSERT_TRUE(skipped.Next(b));
    ++sentences;
    ASSERT_EQ(a.words.size(), b.words.size());
    for (std::size_t i = 0; i < a.words.size(); ++i) {
      EXPECT_EQ(a.words[i].word, b.words[i].word);
      EXPECT_EQ(a.words[i].start, b.words[i].start);
      EXPECT_EQ(a.words[i].end, b.words[i].end);
      EXPECT_EQ(a.words[i].mark, b.words[i].mark);
      sawPhraseText = sawPhraseText || !a.words[i].segment_text.empty();
      EXPECT_TRUE(b.words[i].lookahead.empty());
      EXPECT_TRUE(b.words[i].segment_text.empty());
      EXPECT_TRUE(b.words[i].previous_segment_text.empty());
    }
    EXPECT_EQ(a.pause_weight, b.pause_weight);
  }
  EXPECT_FALSE(skipped.Next(b));
  EXPECT_GE(sentences, 3);
  EXPECT_TRUE(sawPhraseText);
}

} // namespace
} // namespace vntts
