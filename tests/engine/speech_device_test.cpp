// SPDX-License-Identifier: MIT
// The engine speaking through a real PulseAudio daemon (scripts/with-pulseaudio starts a private
// one with a null sink); skipped when none is reachable.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <mutex>
#include <thread>

#include "audio/audio_system.h"
#include "engine/speech_engine.h"
#include "fake_speech.h"

namespace vntts {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

bool PulseReachable() {
  auto audio = make_system_audio("pulse");
  auto sink = audio ? audio->MakeSink() : nullptr;
  if (!sink || sink->Open(WaveFormat::Pcm(2, 22050, 16)) != 0) return false;
  sink->Close();
  return true;
}

struct Log {
  std::mutex mutex;
  std::vector<std::pair<VNEvent, Clock::time_point>> events;
};

void VNTTS_CALL Record(std::uintptr_t user, VNEvent e) {
  auto* log = reinterpret_cast<Log*>(user);
  std::lock_guard lock(log->mutex);
  log->events.push_back({e, Clock::now()});
}

class PulseSpeech : public ::testing::Test {
protected:
  void SetUp() override {
    if (!PulseReachable())
      GTEST_SKIP() << "no PulseAudio daemon (run under scripts/with-pulseaudio)";
    dir_ = std::filesystem::temp_directory_path() /
           ("vntts_pulse_speech_" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir_);
  }
  void TearDown() override {
    engine_.reset();
    if (!dir_.empty()) std::filesystem::remove_all(dir_);
    for (const auto& m : messages_.entries)
      if (m.icon != MessageIcon::kInformation) ADD_FAILURE() << "unexpected message: " << m.text;
  }
  SpeechEngine& Engine(std::unique_ptr<RecordingSource> units) {
    EngineOverrides o;
    o.audio = make_system_audio("pulse");
    o.units = std::move(units);
    engine_ = std::make_unique<SpeechEngine>(messages_, DataFolder(dir_), std::move(o));
    return *engine_;
  }
  static std::unique_ptr<RecordingSource> SmallVoice() {
    auto units = std::make_unique<testing::TableUnits>();
    for (const char* w : {"xin", "chao", "ban", "ba", "ca", "to"})
      units->Add(w, 4410, 3000); // 0.2 s each
    return units;
  }

  RecordedMessages messages_;
  std::filesystem::path dir_;
  Log log; // outlives the engine: the callback may run until the engine is gone
  std::unique_ptr<SpeechEngine> engine_;
};

TEST_F(PulseSpeech, WordEventsFireInTextOrderAsTheSoundPlays) {
  auto& e = Engine(SmallVoice());
  e.SetNotify(&Record, reinterpret_cast<std::uintptr_t>(&log));
  const std::string text = "xin chao ban. ba ca to.";
  const auto start = Clock::now();
  e.Speak(text);
  ASSERT_TRUE(e.WaitUntilDone(20s));
  std::vector<std::string> words;
  std::vector<Clock::time_point> times;
  for (const auto& [ev, t] : log.events)
    if (ev.kind == VN_EVENT_WORD_BOUNDARY) {
      words.push_back(text.substr(ev.text_start, ev.text_length));
      times.push_back(t);
    }
  EXPECT_EQ(words, (std::vector<std::string>{"xin", "chao", "ban", "ba", "ca", "to"}));
  ASSERT_EQ(times.size(), 6u);
  // Words of one sentence are 0.2 s apart in the sound; the events follow the sound.
  EXPECT_GT(times[2] - times[0], 300ms);
  EXPECT_LT(times[2] - times[0], 700ms);
  // Two sentences of 0.6 s and a 0.9 s pause each take at least their length to play.
  EXPECT_GT(Clock::now() - start, 2500ms);
}

TEST_F(PulseSpeech, PauseHoldsResumeContinuesStopEnds) {
  auto& e = Engine(SmallVoice());
  e.SetNotify(&Record, reinterpret_cast<std::uintptr_t>(&log));
  e.Speak("xin chao ban ba ca to xin chao ban ba ca to.");
  for (int i = 0; i < 5000 && !e.IsPlaying(); ++i)
    std::this_thread::sleep_for(2ms);
  std::this_thread::sleep_for(300ms);
  ASSERT_EQ(e.Pause(), 1);
  std::size_t during;
  {
    std::lock_guard lock(log.mutex);
    during = log.events.size();
  }
  std::this_thread::sleep_for(800ms);
  {
    std::lock_guard lock(log.mutex);
    EXPECT_LE(log.events.size(), during + 1) << "no words fire while paused";
  }
  EXPECT_EQ(e.Resume(), 1);
  std::this_thread::sleep_for(400ms);
  {
    std::lock_guard lock(log.mutex);
    EXPECT_GT(log.events.size(), during + 1) << "resumed speech goes on";
  }
  EXPECT_EQ(e.Stop(), 1);
  EXPECT_TRUE(e.WaitUntilDone(3s));
  EXPECT_EQ(e.IsPlaying(), 0);
}

} // namespace
} // namespace vntts
