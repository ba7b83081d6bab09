// SPDX-License-Identifier: MIT
// The engine end to end over the null sink (real pace, no sound) with a small unit table.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "audio/wave_buffer.h"
#include "engine/output_target.h"
#include "fake_speech.h"

namespace vntts {
namespace {

using namespace std::chrono_literals;
using SpeechEngineTest = testing::EngineFixture;

// The fixture's words last 0.05 s: sentences play quickly through a sink that keeps real time.
constexpr std::size_t kWordFrames = 1100;

TEST_F(SpeechEngineTest, TwoSentencesIntoOneFileWithThePauseBetween) {
  auto& e = Engine();
  const auto path = Path("two.wav");
  EXPECT_EQ(e.SpeakToFile("xin chao. ba ca.", path), 1);
  ASSERT_TRUE(e.WaitUntilDone(10s));
  WaveBuffer wav(messages_);
  ASSERT_EQ(wav.Load(path), 0);
  EXPECT_EQ(wav.Channels(), 2);
  EXPECT_EQ(wav.SampleRate(), 22050u);
  EXPECT_TRUE(wav.Events().empty()) << "files carry no speech events";
  // Each sentence: two words of 2200 bytes, each followed by half the distance to the step
  // 3400 (600 bytes), then the '.' pause of 40000 bytes.
  const std::size_t word_frames = (2200 + 600) / 2, pause_frames = 40000 / 2;
  const std::size_t sentence = 2 * word_frames + pause_frames;
  ASSERT_EQ(wav.SampleCount(), 2 * sentence);
  auto sample = [&](std::size_t frame) {
    const std::uint8_t* p = wav.data() + frame * 4;
    return static_cast<std::int16_t>(p[0] | p[1] << 8);
  };
  EXPECT_EQ(sample(0), 1100);                  // "xin"
  EXPECT_EQ(sample(word_frames + 10), 1200);   // "chao"
  EXPECT_EQ(sample(2 * word_frames + 100), 0); // the pause
  EXPECT_EQ(sample(sentence + 5), 1400);       // "ba"
  EXPECT_EQ(sample(2 * sentence - 1), 0);
}

// The same path again replaces the file; a new path deletes the last output and appends to a
// file that is already there. 8-bit output pauses with the silence of unsigned samples. No
// events fire while a file is written, and the next plain speak plays again.
TEST_F(SpeechEngineTest, SamePathTwiceReplacesANewPathAppends) {
  auto& e = Engine();
  e.SetNotify(&testing::EventLog::Record, log_.user());
  const auto a = Path("a.wav"), b = Path("b.wav");
  WaveBuffer wav(messages_);
  for (const char* text : {"ba.", "ca."}) {
    e.SpeakToFile(text, a);
    ASSERT_TRUE(e.WaitUntilDone(10s));
  }
  ASSERT_EQ(wav.Load(a), 0);
  const auto one = wav.SampleCount();
  EXPECT_EQ(one, (2800 + 40000) / 2) << "replaced, not appended";

  std::filesystem::copy_file(a, b);
  e.SpeakToFile("to.", b);
  ASSERT_TRUE(e.WaitUntilDone(10s));
  EXPECT_FALSE(std::filesystem::exists(a));
  ASSERT_EQ(wav.Load(b), 0);
  EXPECT_EQ(wav.SampleCount(), 2 * one);

  ASSERT_EQ(e.SetAudioFormat(8), 1);
  e.SpeakToFile("ba.", Path("eight.wav"));
  ASSERT_TRUE(e.WaitUntilDone(10s));
  ASSERT_EQ(wav.Load(Path("eight.wav")), 0);
  EXPECT_EQ(wav.Bits(), 8);
  EXPECT_EQ(wav.SampleRate(), 11025u);
  ASSERT_GT(wav.DataLength(), 100u);
  EXPECT_EQ(wav.data()[wav.DataLength() - 1], 0x7F);
  EXPECT_EQ(log_.Count(VN_EVENT_WORD_BOUNDARY), 0u);
  e.Speak("ba.");
  ASSERT_TRUE(e.WaitUntilDone(10s));
  EXPECT_EQ(log_.Count(VN_EVENT_WORD_BOUNDARY), 1u);
}

// The host's own event stays in the list and fires with every sentence, after the word that
// starts at the same position.
TEST_F(SpeechEngineTest, TheHostsEventsFireWithEverySentence) {
  auto& e = Engine();
  EXPECT_EQ(e.SetNotify(&testing::EventLog::Record, log_.user()), &testing::EventLog::Record);
  VNEvent mine{};
  mine.kind = VN_EVENT_DRAW;
  EXPECT_EQ(e.AddEvent(mine), 1u);
  e.Speak("Xin chao ban. Ba ca!");
  ASSERT_TRUE(e.WaitUntilDone(20s));
  const auto kinds = log_.Kinds();
  const std::vector<std::uint32_t> first = {VN_EVENT_START_INPUT_STREAM, VN_EVENT_SOUND_START,
                                            VN_EVENT_SENTENCE_BOUNDARY, VN_EVENT_WORD_BOUNDARY,
                                            VN_EVENT_DRAW};
  ASSERT_GE(kinds.size(), first.size());
  EXPECT_EQ(std::vector<std::uint32_t>(kinds.begin(), kinds.begin() + 5), first);
  EXPECT_EQ(kinds.back(), static_cast<std::uint32_t>(VN_EVENT_SOUND_END));
  EXPECT_EQ(log_.Count(VN_EVENT_DRAW), 2u);
  EXPECT_EQ(log_.Count(VN_EVENT_WORD_BOUNDARY), 5u);
}

// A sound server takes a while to open each sentence's stream. Pause and stop in that gap
// still hold the sentence, as they do once it sounds.
TEST_F(SpeechEngineTest, PauseAndStopWhileTheStreamOpensTakeEffect) {
  auto audio = std::make_unique<testing::SlowOpeningAudio>(40ms);
  auto* slow = audio.get();
  auto& e = Engine(std::move(audio), kWordFrames);
  e.SetNotify(&testing::EventLog::Record, log_.user());
  e.Speak("xin chao ban.");
  WaitUntilPlaying();
  ASSERT_EQ(e.Pause(), 1);
  std::this_thread::sleep_for(400ms);
  EXPECT_EQ(log_.Count(VN_EVENT_WORD_BOUNDARY), 1u)
      << "only the first word's event, at the sound's first frame";
  EXPECT_EQ(slow->pauses, 1);
  EXPECT_EQ(e.IsPlaying(), 1);
  EXPECT_EQ(e.Resume(), 1);
  ASSERT_TRUE(e.WaitUntilDone(10s));
  EXPECT_EQ(log_.Count(VN_EVENT_WORD_BOUNDARY), 3u);

  e.Speak("xin chao ban.");
  WaitUntilPlaying();
  e.StopPlayWave();
  ASSERT_TRUE(e.WaitUntilDone(10s));
  EXPECT_EQ(log_.Count(VN_EVENT_WORD_BOUNDARY), 3u) << "the stopped sentence did not play";
}

// The output handle of an Ex call is kept until the host closes it; then speech goes back to
// the default output.
TEST_F(SpeechEngineTest, AClosedOutputHandleIsLetGo) {
  auto audio = std::make_unique<testing::SlowOpeningAudio>(0ms);
  auto* system = audio.get();
  auto& e = Engine(std::move(audio), kWordFrames);
  OutputTarget one{"one"}, two{"two"};
  const auto handle = [](OutputTarget& t) { return reinterpret_cast<VNOutputHandle>(&t); };
  e.SpeakEx("ba.", handle(one));
  ASSERT_TRUE(e.WaitUntilDone(5s));
  e.SpeakEx("ba.", handle(two));
  ASSERT_TRUE(e.WaitUntilDone(5s));
  e.ForgetOutput(handle(one));
  e.SpeakEx("ba.", handle(two));
  ASSERT_TRUE(e.WaitUntilDone(5s));
  std::lock_guard lock(system->mutex);
  EXPECT_EQ(system->named, (std::vector<std::string>{"one", "one", "two"}));
}

// Muting remembers the volume and a second mute brings it back; resetting the settings leaves
// the volume alone.
TEST_F(SpeechEngineTest, MuteRestoresAndTheResetLeavesTheVolume) {
  auto& e = Engine();
  EXPECT_EQ(e.SetVolume(0x12345678), 0);
  EXPECT_EQ(e.MuteVolume(), 1);
  EXPECT_EQ(e.GetVolume(), 0u);
  EXPECT_EQ(e.MuteVolume(), 1);
  EXPECT_EQ(e.GetVolume(), 0x12345678u);
  e.SetRateSpeech(6000);
  e.SetAudioFormat(35);
  e.ResetAllToDefault();
  EXPECT_EQ(e.GetWaveInfo().bits_per_sample, 8);
  EXPECT_EQ(e.GetRateSpeech(), 5000u);
  EXPECT_EQ(e.GetVolume(), 0x12345678u);
}

TEST_F(SpeechEngineTest, RenderWordFillsTheCallersBuffer) {
  auto& e = Engine();
  std::vector<std::uint8_t> buffer(VN_WORD_BUFFER_BYTES);
  std::uint32_t length = 99;
  EXPECT_NE(e.RenderWord("Chao", buffer.data(), &length), 0);
  EXPECT_EQ(length, kWordFrames * 2);
  EXPECT_EQ(buffer[0], 1200 & 0xFF);
  EXPECT_EQ(e.RenderWord("qqqq", buffer.data(), &length), 0);
  EXPECT_EQ(length, 0u);
}

} // namespace
} // namespace vntts
