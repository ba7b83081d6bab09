// SPDX-License-Identifier: MIT
#pragma once
// Stand-ins for the engine's collaborators: a unit table in memory, a device whose sentences
// "play" at once (or are held until told) and that records what it was given, and a sound
// system whose sink takes as long to open as a real server's does; and a whole engine over a
// small voice for the tests that go through the exported behaviour.
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "audio/audio_system.h"
#include "engine/recording_source.h"
#include "engine/sentence_assembler.h"
#include "engine/speech_device.h"
#include "engine/speech_engine.h"
#include "support/temp_folder.h"

namespace vntts::testing {

class TableUnits final : public RecordingSource {
public:
  std::map<std::string, std::vector<std::int16_t>, std::less<>> units;
  // A unit of `frames` samples whose every sample is `value`.
  void Add(const std::string& key, std::size_t frames, std::int16_t value) {
    units[key] = std::vector<std::int16_t>(frames, value);
  }
  bool Has(std::string_view key) const override { return units.find(key) != units.end(); }
  // Each fetch takes this long; `fetching` counts the fetches under way, `fetches` all of them.
  std::chrono::milliseconds fetch_delay{0};
  mutable std::atomic<int> fetching{0}, fetches{0};
  bool Fetch(std::string_view key, std::vector<std::int16_t>& samples) const override {
    ++fetches;
    if (fetch_delay.count() > 0) {
      ++fetching;
      std::this_thread::sleep_for(fetch_delay);
      --fetching;
    }
    auto it = units.find(key);
    if (it == units.end()) return false;
    samples = it->second;
    return true;
  }
};

class FakeDevice final : public SpeechDevice {
public:
  struct Written {
    std::string path;
    PlayableSentence sentence;
  };

  bool HasNotify() override;
  void Notify(const EventRecord& event) override;
  std::unique_ptr<SentenceSink> MakePlayback() override;
  std::unique_ptr<SentenceSink> MakeFileWriter(const std::string& path) override;
  bool IsPlaying() override;
  bool Pause() override;
  bool Resume() override;
  void Stop() override;
  void OfferOutput(VNOutputHandle output) override;
  void RefreshCapabilities() override;

  // While held, a sentence stays "playing" until Release() or Stop().
  void Hold();
  void Release();
  // Waits until a sentence is in the device (true) or the time is up.
  bool WaitUntilPlaying(int ms = 5000);
  int Play(PlayableSentence& sentence, const std::atomic<bool>& stop);

  // Called for every event on the playing thread; null means no notification function.
  std::function<void(const EventRecord&)> on_event;

  std::mutex mutex;
  OutputLayout layout{2, 22050, 16};
  bool keep_sentences = true; // false: only count them (long texts)
  std::size_t sentences = 0;
  std::vector<PlayableSentence> played;
  std::vector<Written> written;
  std::vector<EventRecord> fired; // in firing order
  int resumes = 0, refreshes = 0;
  VNOutputHandle output = 0;

private:
  std::condition_variable changed_;
  bool hold_ = false;
  bool playing_ = false;
  bool paused_ = false;
  bool reset_ = false;
};

// The null sink (real pace, no sound) behind an open that takes `open_delay`, as a sound
// server's stream does; counts the pauses the sinks were given.
class SlowOpeningAudio final : public AudioSystem {
public:
  explicit SlowOpeningAudio(std::chrono::milliseconds open_delay) : delay_(open_delay) {}
  std::unique_ptr<AudioSink> MakeSink() override;
  std::unique_ptr<AudioSink> MakeNamedSink(const std::string& name) override {
    std::lock_guard lock(mutex);
    named.push_back(name);
    return MakeSink();
  }
  std::unique_ptr<AudioSource> MakeSource() override { return make_null_source(); }
  DeviceCapabilities OutputCapabilities() override { return {}; }
  DeviceCapabilities InputCapabilities() override { return {}; }
  std::atomic<int> pauses{0};
  std::mutex mutex;
  std::vector<std::string> named; // the named outputs asked for

private:
  std::chrono::milliseconds delay_;
};

// The words "xin chao ban ba ca to mot hai", each `frames` samples at a level of its own:
// 1100, 1200, ... in that order.
std::unique_ptr<TableUnits> SmallVoice(std::size_t frames);

// What the host's notification function was given, and when.
struct EventLog {
  std::mutex mutex;
  std::vector<std::pair<VNEvent, std::chrono::steady_clock::time_point>> events;
  static void VNTTS_CALL Record(std::uintptr_t user, VNEvent event);
  std::uintptr_t user() { return reinterpret_cast<std::uintptr_t>(this); }
  std::vector<std::uint32_t> Kinds();
  std::size_t Count(std::uint32_t kind);
};

// A speech engine over `audio` and SmallVoice(word_frames), in a data folder of its own.
class EngineFixture : public ::testing::Test {
protected:
  ~EngineFixture() override { engine_.reset(); }
  SpeechEngine& Engine(std::unique_ptr<AudioSystem> audio = make_system_audio("null"),
                       std::size_t word_frames = 1100);
  std::string Path(const char* name) const { return (folder_ / name).string(); }
  // Waits up to five seconds for the speech to reach the device.
  void WaitUntilPlaying();

  RecordedMessages messages_;
  test::TempFolder folder_;
  EventLog log_; // outlives the engine: the callback may run until the engine is gone
  std::unique_ptr<SpeechEngine> engine_;
};

} // namespace vntts::testing
