#pragma once
// Stand-ins for the engine's collaborators: a unit table in memory and a device that "plays"
// at once (or holds a sentence until told) and records what it was given.
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "engine/recording_source.h"
#include "engine/sentence_assembler.h"
#include "engine/speech_device.h"

namespace vntts::testing {

class TableUnits final : public RecordingSource {
public:
  std::map<std::string, std::vector<std::int16_t>, std::less<>> units;
  // A unit of `frames` samples whose every sample is `value`.
  void Add(const std::string& key, std::size_t frames, std::int16_t value) {
    units[key] = std::vector<std::int16_t>(frames, value);
  }
  bool Has(std::string_view key) const override { return units.find(key) != units.end(); }
  bool Fetch(std::string_view key, std::vector<std::int16_t>& samples) const override {
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

  OutputLayout Layout() override;
  bool HasNotify() override;
  void Notify(const EventRecord& event) override;
  int PlaySentence(const PlayableSentence& sentence) override;
  int WriteSentence(const PlayableSentence& sentence, const std::string& path) override;
  bool IsPlaying() override;
  void Pause() override;
  void Resume() override;
  void Stop() override;
  void OfferOutput(VNOutputHandle output) override;
  void RefreshCapabilities() override;

  // While held, a sentence stays "playing" until Release() or Stop().
  void Hold();
  void Release();
  // Waits until a sentence is in the device (true) or the time is up.
  bool WaitUntilPlaying(int ms = 5000);

  // Called for every event on the playing thread; null means no notification function.
  std::function<void(const EventRecord&)> on_event;

  std::mutex mutex;
  OutputLayout layout{2, 22050, 16};
  bool keep_sentences = true; // false: only count them (long texts)
  std::size_t sentences = 0;
  std::vector<PlayableSentence> played;
  std::vector<Written> written;
  std::vector<EventRecord> fired; // in firing order
  std::vector<EventRecord> client_events;
  int pauses = 0, resumes = 0, stops = 0, refreshes = 0;
  VNOutputHandle output = 0;

private:
  std::condition_variable changed_;
  bool hold_ = false;
  bool playing_ = false;
  bool paused_ = false;
  bool reset_ = false;
};

} // namespace vntts::testing
