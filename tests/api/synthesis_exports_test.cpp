// SPDX-License-Identifier: MIT
// Where the host hears its own text: synthesis into the host's function (the same sound as a
// WAV file of the speech, events in the caller's UTF-8 offsets, marks where they stand, the
// host's answer ends it, the lasting speed), and the word events of spoken text in each form.
#include <string>
#include <vector>

#include "library_fixture.h"

namespace vntts::test {
namespace {

struct Taken {
  struct Event {
    std::uint32_t kind, sample, start, length;
    std::string name;
  };
  std::vector<std::int16_t> samples;
  std::vector<Event> events;
  int calls = 0;
  int stop_at_call = 0;            // answer 0 on this call (0: never)
  bool stop_speech_inside = false; // call StopSpeak from inside, and go on

  // The words (their text) and marks (#name) in the order they came.
  std::vector<std::string> Seen(const std::string& text) const {
    std::vector<std::string> seen;
    for (const auto& e : events) {
      if (e.kind == VN_EVENT_MARK) seen.push_back("#" + e.name);
      if (e.kind == VN_EVENT_WORD_BOUNDARY) seen.push_back(text.substr(e.start, e.length));
    }
    return seen;
  }
};

int VNTTS_CALL Take(uintptr_t user, const int16_t* samples, uint32_t count,
                    const VNSynthesisEvent* events, uint32_t event_count) {
  auto& t = *reinterpret_cast<Taken*>(user);
  ++t.calls;
  for (uint32_t i = 0; i < event_count; ++i)
    t.events.push_back({events[i].kind, events[i].sample, events[i].text_start,
                        events[i].text_length, events[i].name ? events[i].name : ""});
  t.samples.insert(t.samples.end(), samples, samples + count);
  if (t.stop_speech_inside) StopSpeak();
  return t.calls == t.stop_at_call ? 0 : 1;
}

int Synthesize(const std::string& text, Taken& taken, uint32_t flags = 0) {
  return VNSynthesizeUTF8(text.c_str(), flags, Take, reinterpret_cast<uintptr_t>(&taken));
}

using SynthesisExports = VoiceTest;

TEST_F(SynthesisExports, SoundIsWhatTheWaveFileHoldsAndWordsAreTheCallersText) {
  const std::string text = "Chào “bạn”, hôm nay trời đẹp. Tạm biệt!";
  Taken taken;
  ASSERT_EQ(Synthesize(text, taken), 1);
  ASSERT_EQ(SetVNAudioFormat(22), 1); // mono, 22050 Hz, 16 bits
  ASSERT_EQ(SaveVNToWaveFile(text.c_str(), Path("speech.wav").c_str()), 1);
  ASSERT_EQ(VNWaitUntilDone(60000), 1);
  ASSERT_EQ(LoadFileWave(Path("speech.wav").c_str()), 1);
  const auto* file = static_cast<const std::int16_t*>(GetDataBuf());
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(std::vector<std::int16_t>(file, file + GetCountSample()), taken.samples);
  // A word's span takes in its quotes; a comma ends a sentence of the speak path.
  EXPECT_EQ(taken.Seen(text), (std::vector<std::string>{"Chào", "“bạn”", "hôm", "nay", "trời",
                                                        "đẹp", "Tạm", "biệt"}));
  std::vector<std::string> sentences;
  for (const auto& e : taken.events)
    if (e.kind == VN_EVENT_SENTENCE_BOUNDARY) sentences.push_back(text.substr(e.start, e.length));
  EXPECT_EQ(sentences, (std::vector<std::string>{"Chào “bạn”,", "hôm nay trời đẹp.", "Tạm biệt!"}));
}

TEST_F(SynthesisExports, MarksArriveInOrderWhereTheyStand) {
  const std::string text = "<speak>Một <mark name=\"a\"/>hai &amp; ba.<mark name=\"b\"/>"
                           "<break time=\"200ms\"/>Bốn.<mark name=\"c\"/></speak>";
  Taken taken;
  ASSERT_EQ(Synthesize(text, taken, VN_SYNTHESIS_MARKUP), 1);
  EXPECT_EQ(taken.Seen(text),
            (std::vector<std::string>{"Một", "#a", "hai", "&amp;", "ba", "#b", "Bốn", "#c"}));
  EXPECT_EQ(taken.events.back().sample, taken.samples.size()) << "c is heard at the end";
}

TEST_F(SynthesisExports, TheHostsAnswerAndStopSpeakEndItAtOnce) {
  Taken first, inside;
  first.stop_at_call = 1;
  inside.stop_speech_inside = true;
  for (Taken* taken : {&first, &inside}) {
    EXPECT_EQ(Synthesize("Một. Hai. Ba. Bốn. Năm.", *taken), 2);
    EXPECT_EQ(taken->calls, 1);
  }
}

TEST_F(SynthesisExports, SpeedCompressesAndPitchKeepsTheLength) {
  const auto length = [] {
    Taken t;
    Synthesize("Hôm nay trời đẹp quá, chúng ta đi chơi nhé.", t);
    return static_cast<double>(t.samples.size());
  };
  const double natural = length();
  EXPECT_EQ(VNSetSpeed(200), 200u);
  EXPECT_NEAR(length() / natural, 0.5, 0.01);
  EXPECT_EQ(VNSetSpeed(1000), 400u);
  EXPECT_EQ(VNSetSpeed(10), 50u);
  EXPECT_NEAR(length() / natural, 2.0, 0.02);
  ResetAllToDefault();
  EXPECT_EQ(VNGetSpeed(), 50u) << "the speed lasts until changed";
  VNSetSpeed(100);
  EXPECT_EQ(SetPitch(0x18000), 0);
  EXPECT_NEAR(length() / natural, 1.0, 0.001);
}

// The three text forms reach the engine as the same internal text, so word events carry offsets
// into it: in "Đà Nẵng" (internal D1 61 F8 20 ...) the second word starts at byte 4, where UTF-8
// would put it at 6 and code page 1258 at 3. VNTextRangeToUTF8 takes them back to the UTF-8.
using TextOffsetExports = VoiceTest;

TEST_F(TextOffsetExports, WordOffsetsOfEveryTextFormAreThoseOfTheInternalText) {
  using Speak = void (*)(VNNotifyProc, uintptr_t);
  const std::pair<const char*, Speak> forms[] = {
      {"internal",
       [](VNNotifyProc n, uintptr_t u) { SpeakVN("\xD1\x61\xF8 N\x61\xFC\x6Eg.", n, u); }},
      {"UTF-8", [](VNNotifyProc n, uintptr_t u) { SpeakVNUTF8("Đà Nẵng.", n, u); }},
      {"Windows 95VN",
       [](VNNotifyProc n, uintptr_t u) { SpeakVNASCII("\xD0\xE0 N\xE3\xDEng.", n, u); }},
  };
  for (const auto& [name, speak] : forms) {
    Calls heard;
    speak(&Count, Pass(heard));
    ASSERT_EQ(VNWaitUntilDone(30000), 1) << name;
    EXPECT_EQ(heard.WordSpans(), (decltype(heard.WordSpans()){{0, 3}, {4, 5}})) << name;
  }
  const std::string text = "Tôi có 2 con “mèo” ở Đà Lạt.";
  Calls heard;
  SpeakVNUTF8(text.c_str(), &Count, Pass(heard));
  ASSERT_EQ(VNWaitUntilDone(30000), 1);
  std::vector<std::string> words;
  for (const auto& [start, length] : heard.WordSpans()) {
    std::uint32_t from = 0, count = 0;
    ASSERT_EQ(VNTextRangeToUTF8(text.c_str(), start, length, &from, &count), 1);
    words.push_back(text.substr(from, count));
  }
  EXPECT_EQ(words, (std::vector<std::string>{"Tôi", "có", "2", "con", "“mèo”", "ở", "Đà", "Lạt"}));
}

} // namespace
} // namespace vntts::test
