// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "dsp/speech_scaler.h"
#include "synthesis/host_synthesis.h"
#include "text/charset/charsets.h"

namespace vntts {
namespace {

// Renders internal text as the speak path would in shape: sentences end at '.', words are cut
// at blanks, each word sounds for 100 samples per byte, each sentence ends with 50 samples of
// pause; the speed and pitch factors are applied as the engine applies them.
class FakeSentences : public SentenceSource {
public:
  bool Render(std::string_view text, double speed_factor, double pitch_factor,
              const Handler& handler) override {
    const SpeechScaler shape(speed_factor, pitch_factor);
    const auto at = [](std::size_t n) { return static_cast<std::uint32_t>(n); };
    for (std::size_t pos = 0; pos < text.size();) {
      pos = std::min(text.find_first_not_of(' ', pos), text.size());
      const std::size_t end = std::min(text.find('.', pos), text.size() - 1) + 1;
      RenderedSentence sentence;
      sentence.text_start = at(pos);
      sentence.text_length = at(end - pos);
      for (std::size_t w = text.find_first_not_of(" .", pos); w < end;) {
        const std::size_t e = std::min(text.find_first_of(" .", w), end);
        sentence.words.push_back({at(sentence.samples.size()), at(w), at(e - w)});
        sentence.samples.insert(sentence.samples.end(), 100 * (e - w), 1000);
        w = text.find_first_not_of(" .", e);
      }
      sentence.samples.insert(sentence.samples.end(), 50, 0);
      sentence.samples = shape.Process(sentence.samples);
      for (RenderedWord& w : sentence.words)
        w.frame = static_cast<std::uint32_t>(shape.MapFrame(w.frame));
      if (!handler(sentence)) return false;
      pos = end;
    }
    return true;
  }
};

struct Heard {
  std::vector<std::int16_t> samples;
  std::vector<HostEvent> events;
  int chunks = 0;
};

HostSynthesisResult Synthesize(std::string_view text, Heard& heard,
                               const HostSynthesisOptions& options = {}, int stop_after = -1) {
  FakeSentences source;
  return SynthesizeForHost(text, options, source, [&](auto samples, auto events) {
    for (const HostEvent& e : events) {
      EXPECT_GE(e.sample, heard.samples.size()) << "an event lies in its own chunk";
      EXPECT_LE(e.sample, heard.samples.size() + samples.size());
      heard.events.push_back(e);
    }
    heard.samples.insert(heard.samples.end(), samples.begin(), samples.end());
    return ++heard.chunks != stop_after;
  });
}

std::vector<std::string> Words(std::string_view text, const Heard& heard) {
  std::vector<std::string> words;
  for (const HostEvent& e : heard.events)
    if (e.kind == HostEvent::Kind::kWord)
      words.emplace_back(text.substr(e.text_start, e.text_length));
  return words;
}

TEST(HostSynthesis, WordEventsNameTheWordsOfTheCallersText) {
  struct Case {
    std::string text;
    HostSynthesisOptions options;
    std::vector<std::string> words;
  };
  const Case cases[] = {
      {"Đây là “tiếng” Việt. Hết.", {}, {"Đây", "là", "“tiếng”", "Việt", "Hết"}},
      {"<speak>Mưa &amp; nắng <mark name=\"m\"/>ở Huế</speak>",
       {},
       {"Mưa", "&amp;", "nắng", "ở", "Huế"}},
      {"<speak>gõ <say-as interpret-as=\"characters\">Đ&amp;ạ</say-as></speak>",
       {},
       {"gõ", "Đ", "&amp;", "ạ"}},
      {"<speak>a</speak>", {.markup = false}, {"<speak>a</speak>"}},
      {"ạ b", {.spell = true}, {"ạ", "b"}},
  };
  for (const Case& c : cases) {
    Heard heard;
    EXPECT_EQ(Synthesize(c.text, heard, c.options), HostSynthesisResult::kDone);
    EXPECT_EQ(Words(c.text, heard), c.words) << c.text;
  }
}

TEST(HostSynthesis, MarksBreaksAndSentencesStandWhereTheirSoundIs) {
  const std::string text = "<speak><mark name=\"a\"/>Một. Hai<break time=\"10ms\"/><mark "
                           "name=\"b\"/>ba<mark name=\"c\"/></speak>";
  Heard heard;
  ASSERT_EQ(Synthesize(text, heard), HostSynthesisResult::kDone);
  std::vector<std::string> seen;
  for (const HostEvent& e : heard.events) {
    if (e.kind == HostEvent::Kind::kMark) seen.push_back(e.name + "@" + std::to_string(e.sample));
    if (e.kind == HostEvent::Kind::kSentence)
      seen.push_back(text.substr(e.text_start, e.text_length) + "@" + std::to_string(e.sample));
  }
  // The fake sounds 100 samples per internal byte of a word, then 50 of pause.
  const std::size_t one = 100 * Utf8ToInternal("Một").size() + 50;
  const std::size_t two = 100 * Utf8ToInternal("Hai").size() + 50;
  const std::size_t pause = 221; // 10 ms
  EXPECT_EQ(seen, (std::vector<std::string>{"a@0", "Một.@0", "Hai@" + std::to_string(one),
                                            "b@" + std::to_string(one + two + pause),
                                            "ba@" + std::to_string(one + two + pause),
                                            "c@" + std::to_string(one + two + pause + 250)}));
  EXPECT_EQ(heard.samples.size(), one + two + pause + 250);
}

TEST(HostSynthesis, ProsodyAndSpeedScaleTheSoundAndItsEvents) {
  Heard plain, fast, soft;
  Synthesize("<speak>một hai ba bốn năm sáu bảy tám</speak>", plain);
  Synthesize("<speak><prosody rate=\"2\">một hai ba bốn năm sáu bảy tám</prosody></speak>", fast);
  Synthesize("<speak><prosody volume=\"50\">một</prosody></speak>", soft);
  EXPECT_EQ(fast.samples.size(), (plain.samples.size() + 1) / 2);
  ASSERT_EQ(fast.events.size(), plain.events.size());
  for (std::size_t i = 0; i < plain.events.size(); ++i)
    EXPECT_NEAR(double(fast.events[i].sample), plain.events[i].sample / 2.0, 1.0);
  EXPECT_EQ(soft.samples.front(), 500);
}

TEST(HostSynthesis, TheHostStopsItWithItsAnswer) {
  Heard heard;
  EXPECT_EQ(Synthesize("Một. Hai. Ba. Bốn.", heard, {}, 2), HostSynthesisResult::kStopped);
  EXPECT_EQ(heard.chunks, 2);
  Heard marks;
  EXPECT_EQ(Synthesize("<speak>a<mark name=\"x\"/></speak>", marks, {}, 1),
            HostSynthesisResult::kStopped)
      << "a trailing mark is still a chunk the host may refuse";
  Heard nothing;
  EXPECT_EQ(Synthesize("", nothing), HostSynthesisResult::kDone);
  EXPECT_EQ(nothing.chunks, 0);
}

} // namespace
} // namespace vntts
