// SPDX-License-Identifier: MIT
// The engine end to end over the null sink (real pace, no sound) with a small unit table.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <thread>

#include "audio/audio_system.h"
#include "audio/wave_buffer.h"
#include "engine/output_target.h"
#include "engine/speech_engine.h"
#include "fake_speech.h"

namespace vntts {
namespace {

using namespace std::chrono_literals;

// 0.05 s per word: sentences play quickly through a sink that keeps real time.
constexpr std::size_t kWordFrames = 1100;

std::unique_ptr<testing::TableUnits> SmallVoice() {
  auto units = std::make_unique<testing::TableUnits>();
  std::int16_t level = 1000;
  for (const char* w : {"xin", "chao", "ban", "ba", "ca", "to", "mot", "hai"})
    units->Add(w, kWordFrames, level += 100);
  return units;
}

class SpeechEngineTest : public ::testing::Test {
protected:
  SpeechEngineTest() {
    dir_ = std::filesystem::temp_directory_path() /
           ("vntts_engine_test_" + std::to_string(::getpid()) + "_" +
            ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::create_directories(dir_);
  }
  ~SpeechEngineTest() override {
    engine_.reset();
    std::filesystem::remove_all(dir_);
  }
  SpeechEngine& Engine(std::unique_ptr<AudioSystem> audio = make_system_audio("null")) {
    EngineOverrides o;
    o.audio = std::move(audio);
    o.units = SmallVoice();
    engine_ = std::make_unique<SpeechEngine>(messages_, DataFolder(dir_), std::move(o));
    return *engine_;
  }
  std::string Path(const char* name) const { return (dir_ / name).string(); }

  RecordedMessages messages_;
  std::filesystem::path dir_;
  std::unique_ptr<SpeechEngine> engine_;
};

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

TEST_F(SpeechEngineTest, SamePathTwiceReplacesANewPathAppends) {
  auto& e = Engine();
  const auto a = Path("a.wav"), b = Path("b.wav");
  e.SpeakToFile("ba.", a);
  ASSERT_TRUE(e.WaitUntilDone(10s));
  WaveBuffer wav(messages_);
  ASSERT_EQ(wav.Load(a), 0);
  const auto one = wav.SampleCount();
  e.SpeakToFile("ca.", a);
  ASSERT_TRUE(e.WaitUntilDone(10s));
  ASSERT_EQ(wav.Load(a), 0);
  EXPECT_EQ(wav.SampleCount(), one) << "replaced, not appended";

  std::filesystem::copy_file(a, b);
  e.SpeakToFile("to.", b); // deletes a (the last output), appends to the existing b
  ASSERT_TRUE(e.WaitUntilDone(10s));
  EXPECT_FALSE(std::filesystem::exists(a));
  ASSERT_EQ(wav.Load(b), 0);
  EXPECT_EQ(wav.SampleCount(), 2 * one);
}

TEST_F(SpeechEngineTest, EightBitOutputPausesWith0x7F) {
  auto& e = Engine();
  ASSERT_EQ(e.SetAudioFormat(8), 1);
  e.SpeakToFile("ba.", Path("eight.wav"));
  ASSERT_TRUE(e.WaitUntilDone(10s));
  WaveBuffer wav(messages_);
  ASSERT_EQ(wav.Load(Path("eight.wav")), 0);
  EXPECT_EQ(wav.Bits(), 8);
  EXPECT_EQ(wav.SampleRate(), 11025u);
  ASSERT_GT(wav.DataLength(), 100u);
  EXPECT_EQ(wav.data()[wav.DataLength() - 1], 0x7F);
  EXPECT_EQ(wav.data()[wav.DataLength() / 2 + 100], 0x7F);
}

struct Collected {
  std::mutex mutex;
  std::vector<VNEvent> events;
};

void VNTTS_CALL Collect(std::uintptr_t user, VNEvent e) {
  auto* c = reinterpret_cast<Collected*>(user);
  std::lock_guard lock(c->mutex);
  c->events.push_back(e);
}

TEST_F(SpeechEngineTest, WordEventsArriveInTextOrderAndCoverTheWords) {
  auto& e = Engine();
  Collected c;
  EXPECT_EQ(e.SetNotify(&Collect, reinterpret_cast<std::uintptr_t>(&c)), &Collect);
  VNEvent mine{};
  mine.kind = VN_EVENT_DRAW;
  mine.position = 0;
  EXPECT_EQ(e.AddEvent(mine), 1u);
  const std::string text = "Xin chao ban. Ba ca!";
  e.Speak(text);
  ASSERT_TRUE(e.WaitUntilDone(20s));
  std::vector<std::string> words;
  std::vector<std::uint32_t> kinds;
  for (const auto& ev : c.events) {
    kinds.push_back(ev.kind);
    if (ev.kind == VN_EVENT_WORD_BOUNDARY)
      words.push_back(text.substr(ev.text_start, ev.text_length));
  }
  EXPECT_EQ(words, (std::vector<std::string>{"Xin", "chao", "ban", "Ba", "ca"}));
  const std::vector<std::uint32_t> first = {VN_EVENT_START_INPUT_STREAM, VN_EVENT_SOUND_START,
                                            VN_EVENT_SENTENCE_BOUNDARY, VN_EVENT_WORD_BOUNDARY,
                                            VN_EVENT_DRAW};
  ASSERT_GE(kinds.size(), first.size());
  EXPECT_EQ(std::vector<std::uint32_t>(kinds.begin(), kinds.begin() + 5), first);
  EXPECT_EQ(kinds.back(), static_cast<std::uint32_t>(VN_EVENT_SOUND_END));
  // The client's event stays in the list and fires with every sentence.
  EXPECT_EQ(std::count(kinds.begin(), kinds.end(), VN_EVENT_DRAW), 2);
  e.RemoveAllEvents();
  e.RemoveAllEvents();
}

TEST_F(SpeechEngineTest, StopAndDestructionDuringSpeechEndCleanly) {
  auto& e = Engine();
  std::string text;
  for (int i = 0; i < 200; ++i)
    text += "xin chao ban. ";
  e.Speak(text);
  for (int i = 0; i < 500 && !e.IsPlaying(); ++i)
    std::this_thread::sleep_for(2ms);
  EXPECT_EQ(e.Stop(), 1);
  EXPECT_TRUE(e.WaitUntilDone(2s));
  EXPECT_EQ(e.IsPlaying(), 0);
  e.Speak(text);
  for (int i = 0; i < 500 && !e.IsPlaying(); ++i)
    std::this_thread::sleep_for(2ms);
  engine_.reset(); // what ReleaseLib does mid-speech
}

// A sound server takes a while to open each sentence's stream. Pause and stop in that gap
// still hold the sentence, as they do once it sounds.
TEST_F(SpeechEngineTest, PauseAndStopWhileTheStreamOpensTakeEffect) {
  auto audio = std::make_unique<testing::SlowOpeningAudio>(40ms);
  auto* slow = audio.get();
  auto& e = Engine(std::move(audio));
  Collected c;
  e.SetNotify(&Collect, reinterpret_cast<std::uintptr_t>(&c));
  auto words = [&] {
    std::lock_guard lock(c.mutex);
    return std::count_if(c.events.begin(), c.events.end(),
                         [](const VNEvent& ev) { return ev.kind == VN_EVENT_WORD_BOUNDARY; });
  };
  e.Speak("xin chao ban.");
  for (int i = 0; i < 2000 && !e.IsPlaying(); ++i)
    std::this_thread::sleep_for(1ms);
  ASSERT_EQ(e.Pause(), 1);
  std::this_thread::sleep_for(400ms);
  EXPECT_EQ(words(), 1) << "only the first word's event, at the sound's first frame";
  EXPECT_EQ(slow->pauses, 1);
  EXPECT_EQ(e.IsPlaying(), 1);
  EXPECT_EQ(e.Resume(), 1);
  ASSERT_TRUE(e.WaitUntilDone(10s));
  EXPECT_EQ(words(), 3);

  e.Speak("xin chao ban.");
  for (int i = 0; i < 2000 && !e.IsPlaying(); ++i)
    std::this_thread::sleep_for(1ms);
  e.StopPlayWave();
  ASSERT_TRUE(e.WaitUntilDone(10s));
  EXPECT_EQ(words(), 3) << "the stopped sentence did not play";
}

// The output handle of an Ex call is kept until the host closes it; then speech goes back to
// the default output.
TEST_F(SpeechEngineTest, AClosedOutputHandleIsLetGo) {
  auto audio = std::make_unique<testing::SlowOpeningAudio>(0ms);
  auto* system = audio.get();
  auto& e = Engine(std::move(audio));
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

// Volume mutes and comes back; pitch takes the branch of an output with pitch support (the
// software shifter); the rate is kept as given; the format codes outside the table change nothing.
TEST_F(SpeechEngineTest, SettingsRows) {
  auto& e = Engine();
  EXPECT_EQ(e.SetVolume(0x12345678), 0);
  EXPECT_EQ(e.MuteVolume(), 1);
  EXPECT_EQ(e.GetVolume(), 0u);
  EXPECT_EQ(e.MuteVolume(), 1);
  EXPECT_EQ(e.GetVolume(), 0x12345678u);
  EXPECT_EQ(e.GetPitchRange().maximum, 0xFFFFFFFFu);
  EXPECT_EQ(e.SetPitch(0x20000), 0);
  EXPECT_EQ(e.GetPitch(), 0x20000u);
  EXPECT_EQ(e.SetRateSpeech(6000), 5000u);
  EXPECT_EQ(e.GetRateSpeech(), 6000u);

  struct Code {
    std::uint32_t code;
    int result;
    WaveInfo info;
  };
  const Code codes[] = {{7, 0, {2, 22050, 16}},  {12, 0, {2, 22050, 16}}, {36, 0, {2, 22050, 16}},
                        {8, 1, {1, 11025, 8}},   {11, 1, {2, 11025, 16}}, {22, 1, {1, 22050, 16}},
                        {24, 0, {1, 22050, 16}}, {33, 1, {2, 44100, 8}},  {35, 1, {2, 44100, 16}}};
  for (const auto& c : codes) {
    EXPECT_EQ(e.SetAudioFormat(c.code), c.result) << c.code;
    const WaveInfo w = e.GetWaveInfo();
    EXPECT_EQ(w.channels, c.info.channels) << c.code;
    EXPECT_EQ(w.samples_per_second, c.info.samples_per_second) << c.code;
    EXPECT_EQ(w.bits_per_sample, c.info.bits_per_sample) << c.code;
  }
  e.ResetAllToDefault();
  const WaveInfo w = e.GetWaveInfo();
  EXPECT_EQ(w.channels, 1);
  EXPECT_EQ(w.samples_per_second, 11025u);
  EXPECT_EQ(w.bits_per_sample, 8);
  EXPECT_EQ(e.GetRateSpeech(), 5000u);
  EXPECT_EQ(e.GetVolume(), 0x12345678u) << "the reset leaves the volume";
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
  EXPECT_EQ(e.RenderWord("", buffer.data(), &length), 0);
  EXPECT_EQ(e.RenderWord("xin", nullptr, &length), 0);
  EXPECT_EQ(e.RenderWord("xin", buffer.data(), nullptr), 1);
}

} // namespace
} // namespace vntts
