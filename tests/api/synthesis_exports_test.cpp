// SPDX-License-Identifier: MIT
// Synthesis into the host's function: the same sound as a WAV file of the speech, events in the
// caller's UTF-8 offsets, marks at their place, the host's answer ends it; the lasting speed.
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

#include "library_fixture.h"

namespace vntts::test {
namespace {

struct Taken {
  std::vector<std::int16_t> samples;
  struct Event {
    std::uint32_t kind, sample, start, length;
    std::string name;
  };
  std::vector<Event> events;
  int calls = 0;
  int stop_at_call = 0;            // answer 0 on this call (0: never)
  bool stop_speech_inside = false; // call StopSpeak from inside, and go on
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

class SynthesisExports : public LibraryTest {
protected:
  void SetUp() override {
    LibraryTest::SetUp();
    if (!std::filesystem::exists(VoiceFolder() / "main_dic.dat"))
      GTEST_SKIP() << "no voice built";
  }
};

TEST_F(SynthesisExports, SoundIsWhatTheWaveFileHoldsAndWordsAreTheCallersText) {
  const std::string text = "Chào “bạn”, hôm nay trời đẹp. Tạm biệt!";
  Taken taken;
  ASSERT_EQ(VNSynthesizeUTF8(text.c_str(), 0, Take, reinterpret_cast<uintptr_t>(&taken)), 1);

  const auto path = std::filesystem::temp_directory_path() /
                    ("vntts-synthesis-" + std::to_string(getpid()) + ".wav");
  std::filesystem::remove(path);
  ASSERT_EQ(SetVNAudioFormat(22), 1); // mono, 22050 Hz, 16 bits
  ASSERT_EQ(SaveVNToWaveFile(text.c_str(), path.c_str()), 1);
  ASSERT_EQ(VNWaitUntilDone(60000), 1);
  ASSERT_EQ(LoadFileWave(path.c_str()), 1);
  const auto* file = static_cast<const std::int16_t*>(GetDataBuf());
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(std::vector<std::int16_t>(file, file + GetCountSample()), taken.samples);
  std::filesystem::remove(path);

  std::vector<std::string> words, sentences;
  for (const auto& e : taken.events) {
    EXPECT_LE(e.sample, taken.samples.size());
    (e.kind == VN_EVENT_WORD_BOUNDARY ? words : sentences)
        .push_back(text.substr(e.start, e.length));
  }
  // A comma ends a sentence of the speak path; a word's span takes in its quotes.
  EXPECT_EQ(words, (std::vector<std::string>{"Chào", "“bạn”", "hôm", "nay", "trời", "đẹp", "Tạm",
                                             "biệt"}));
  EXPECT_EQ(sentences, (std::vector<std::string>{"Chào “bạn”,", "hôm nay trời đẹp.", "Tạm biệt!"}));
}

TEST_F(SynthesisExports, MarksArriveInOrderWhereTheyStand) {
  const std::string text = "<speak>Một <mark name=\"a\"/>hai &amp; ba.<mark name=\"b\"/>"
                           "<break time=\"200ms\"/>Bốn.<mark name=\"c\"/></speak>";
  Taken taken;
  ASSERT_EQ(VNSynthesizeUTF8(text.c_str(), VN_SYNTHESIS_MARKUP, Take,
                             reinterpret_cast<uintptr_t>(&taken)),
            1);
  std::vector<std::string> seen;
  for (const auto& e : taken.events) {
    if (e.kind == VN_EVENT_MARK) seen.push_back("#" + e.name);
    if (e.kind == VN_EVENT_WORD_BOUNDARY) seen.push_back(text.substr(e.start, e.length));
  }
  EXPECT_EQ(seen, (std::vector<std::string>{"Một", "#a", "hai", "&amp;", "ba", "#b", "Bốn", "#c"}));
  for (std::size_t i = 1; i < taken.events.size(); ++i)
    EXPECT_GE(taken.events[i].sample, taken.events[i - 1].sample) << "events in sound order";
  EXPECT_EQ(taken.events.back().sample, taken.samples.size()) << "c is heard at the end";
}

TEST_F(SynthesisExports, TheHostsAnswerAndStopSpeakEndItAtOnce) {
  const char* text = "Một. Hai. Ba. Bốn. Năm.";
  Taken first;
  first.stop_at_call = 1;
  EXPECT_EQ(VNSynthesizeUTF8(text, 0, Take, reinterpret_cast<uintptr_t>(&first)), 2);
  EXPECT_EQ(first.calls, 1);

  Taken inside;
  inside.stop_speech_inside = true;
  EXPECT_EQ(VNSynthesizeUTF8(text, 0, Take, reinterpret_cast<uintptr_t>(&inside)), 2);
  EXPECT_EQ(inside.calls, 1) << "StopSpeak from the function ends the synthesis";

  EXPECT_EQ(VNSynthesizeUTF8(nullptr, 0, Take, 0), 0);
  EXPECT_EQ(VNSynthesizeUTF8(text, 0, nullptr, 0), 0);
}

TEST_F(SynthesisExports, SpeedCompressesAndPitchKeepsTheLength) {
  const char* text = "Hôm nay trời đẹp quá, chúng ta đi chơi nhé.";
  const auto length = [&] {
    Taken t;
    VNSynthesizeUTF8(text, 0, Take, reinterpret_cast<uintptr_t>(&t));
    return static_cast<double>(t.samples.size());
  };
  EXPECT_EQ(VNGetSpeed(), 100u);
  const double natural = length();
  EXPECT_EQ(VNSetSpeed(200), 200u);
  EXPECT_NEAR(length() / natural, 0.5, 0.01);
  EXPECT_EQ(VNSetSpeed(1000), 400u);
  EXPECT_EQ(VNSetSpeed(10), 50u);
  EXPECT_NEAR(length() / natural, 2.0, 0.02);
  ResetAllToDefault();
  EXPECT_EQ(VNGetSpeed(), 50u) << "the speed lasts until changed";
  VNSetSpeed(100);

  uint32_t lo = 1, hi = 0;
  GetPitchRange(&lo, &hi);
  EXPECT_EQ(lo, 0u);
  EXPECT_EQ(hi, 0xFFFFFFFFu);
  EXPECT_EQ(GetPitch(), 0x10000u);
  EXPECT_EQ(SetPitch(0x18000), 0);
  EXPECT_EQ(GetPitch(), 0x18000u);
  EXPECT_NEAR(length() / natural, 1.0, 0.001);
}

} // namespace
} // namespace vntts::test
