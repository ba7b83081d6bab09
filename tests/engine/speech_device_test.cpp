// SPDX-License-Identifier: MIT
// The engine speaking through a real PulseAudio daemon (scripts/with-pulseaudio starts a private
// one with a null sink); skipped when none is reachable.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "fake_speech.h"

namespace vntts {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// 0.2 s per word.
constexpr std::size_t kWordFrames = 4410;

bool PulseReachable() {
  auto audio = make_system_audio("pulse");
  auto sink = audio ? audio->MakeSink() : nullptr;
  if (!sink || sink->Open(WaveFormat::Pcm(2, 22050, 16)) != 0) return false;
  sink->Close();
  return true;
}

class PulseSpeech : public testing::EngineFixture {
protected:
  void SetUp() override {
    if (!PulseReachable())
      GTEST_SKIP() << "no PulseAudio daemon (run under scripts/with-pulseaudio)";
    Engine(make_system_audio("pulse"), kWordFrames)
        .SetNotify(&testing::EventLog::Record, log_.user());
  }
  void TearDown() override {
    engine_.reset();
    for (const auto& m : messages_.entries)
      if (m.icon != MessageIcon::kInformation) ADD_FAILURE() << "unexpected message: " << m.text;
  }
};

TEST_F(PulseSpeech, WordEventsFireInTextOrderAsTheSoundPlays) {
  const std::string text = "xin chao ban. ba ca to.";
  const auto start = Clock::now();
  engine_->Speak(text);
  ASSERT_TRUE(engine_->WaitUntilDone(20s));
  std::vector<std::string> words;
  std::vector<Clock::time_point> times;
  for (const auto& [ev, t] : log_.events)
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
  engine_->Speak("xin chao ban ba ca to xin chao ban ba ca to.");
  WaitUntilPlaying();
  std::this_thread::sleep_for(300ms);
  ASSERT_EQ(engine_->Pause(), 1);
  const std::size_t during = log_.Kinds().size();
  std::this_thread::sleep_for(800ms);
  EXPECT_LE(log_.Kinds().size(), during + 1) << "no words fire while paused";
  EXPECT_EQ(engine_->Resume(), 1);
  std::this_thread::sleep_for(400ms);
  EXPECT_GT(log_.Kinds().size(), during + 1) << "resumed speech goes on";
  EXPECT_EQ(engine_->Stop(), 1);
  EXPECT_TRUE(engine_->WaitUntilDone(3s));
  EXPECT_EQ(engine_->IsPlaying(), 0);
}

} // namespace
} // namespace vntts
