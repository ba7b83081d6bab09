// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "engine/sentence_assembler.h"

namespace vntts {
namespace {

QueueRecord Word(std::vector<std::int16_t> samples, std::uint32_t start, std::uint32_t end) {
  QueueRecord r;
  r.samples.resize(samples.size() * 2);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    r.samples[2 * i] = static_cast<std::uint8_t>(samples[i] & 0xFF);
    r.samples[2 * i + 1] = static_cast<std::uint8_t>(static_cast<std::uint16_t>(samples[i]) >> 8);
  }
  r.byte_count = static_cast<std::uint32_t>(r.samples.size());
  r.text_start = start;
  r.text_end = end;
  return r;
}

QueueRecord End(std::uint32_t pause_bytes, std::uint32_t start, std::uint32_t end) {
  QueueRecord r;
  r.samples = {'.'};
  r.byte_count = pause_bytes;
  r.text_start = start;
  r.text_end = end;
  r.sentence_end = true;
  return r;
}

// "kind@frame:start+length" for each event; a sentence boundary's text is in its params.
std::string Describe(const std::vector<EventRecord>& events) {
  std::string out;
  for (const auto& e : events) {
    const bool sentence = e.kind == static_cast<std::uint32_t>(EventKind::kSentenceBoundary);
    out += std::to_string(e.kind) + "@" + std::to_string(e.position) + ":" +
           std::to_string(sentence ? e.params[0] : e.text_start) + "+" +
           std::to_string(sentence ? e.params[1] : e.text_length) + " ";
  }
  return out;
}

TEST(SentenceAssembler, JoinsWordsAddsPauseAndEventsInFrames) {
  SentenceAssembler a;
  a.AppendWord(Word({1, 2, 3}, 0, 3));
  a.AppendWord(Word({4, 5}, 4, 9));
  EXPECT_EQ(a.Bytes(), 10u);
  const auto end = End(8, 0, 10);
  const PlayableSentence s = a.Finish(&end, {1, 22050, 16});
  EXPECT_TRUE(a.Empty());
  ASSERT_EQ(s.bytes.size(), (5u + 4u) * 2);
  EXPECT_EQ(s.bytes[8], 5);
  EXPECT_EQ(s.bytes[10], 0);
  EXPECT_EQ(Describe(s.events), "4@0:0+10 3@0:0+3 3@3:4+5 ") << "the sentence boundary first";
}

TEST(SentenceAssembler, PositionsFollowTheOutputRate) {
  struct Row {
    OutputLayout layout;
    std::uint32_t second_word_position;
    std::size_t bytes;
  };
  const Row rows[] = {
      {{2, 44100, 16}, 200, (2 * 150 - 1) * 4},
      {{1, 44100, 8}, 200, 2 * 150 - 1},
      {{1, 11025, 8}, 50, 75},
      {{2, 22050, 8}, 100, 300},
  };
  for (const auto& r : rows) {
    SentenceAssembler a;
    a.AppendWord(Word(std::vector<std::int16_t>(100, 1000), 0, 2));
    a.AppendWord(Word(std::vector<std::int16_t>(30, 1000), 3, 5));
    const auto end = End(40, 5, 6);
    const auto s = a.Finish(&end, r.layout);
    SCOPED_TRACE(r.layout.samples_per_second);
    ASSERT_EQ(s.events.size(), 3u);
    EXPECT_EQ(s.events[2].position, r.second_word_position);
    EXPECT_EQ(s.bytes.size(), r.bytes);
  }
}

TEST(SentenceAssembler, WordEventsFallOnTheSoundNotOnLeadingSilence) {
  std::vector<std::int16_t> late(200, 0);
  late.insert(late.end(), 100, 3000); // heard from frame 198 on, in whole blocks of 22
  for (const OutputLayout layout :
       {OutputLayout{1, 22050, 16}, OutputLayout{2, 44100, 8}, OutputLayout{1, 11025, 16}}) {
    SentenceAssembler a;
    a.AppendWord(Word(std::vector<std::int16_t>(50, 1000), 0, 2));
    a.AppendWord(Word(late, 3, 5));
    const auto s = a.Finish(nullptr, layout);
    ASSERT_EQ(s.events.size(), 3u);
    EXPECT_EQ(s.events[2].position, MapFramePosition(50 + 198, layout.samples_per_second));
  }
}

TEST(SentenceAssembler, SentenceOfOnlyPunctuationIsJustThePause) {
  SentenceAssembler a;
  const auto end = End(100, 7, 8); // a sentence of one mark
  const auto s = a.Finish(&end, {1, 22050, 8});
  EXPECT_EQ(s.bytes, std::vector<std::uint8_t>(50, 0x7F));
  EXPECT_EQ(Describe(s.events), "4@0:7+1 ");
}

TEST(SentenceAssembler, OddByteCountsKeepWholeFrames) {
  SentenceAssembler a;
  auto w = Word({7, 7}, 0, 1);
  w.byte_count = 3;
  a.AppendWord(w);
  a.AppendWord(Word({9}, 1, 2));
  const auto s = a.Finish(nullptr, {1, 22050, 16});
  ASSERT_EQ(s.bytes.size(), 4u);
  EXPECT_EQ(s.bytes[2], 9);
  EXPECT_EQ(s.events[0].params[1], 2u);
}

} // namespace
} // namespace vntts
