// SPDX-License-Identifier: MIT
#include "fake_speech.h"

#include <algorithm>
#include <thread>

namespace vntts::testing {
namespace {

// Plays on the device or, given a path, keeps what would have been written there.
class FakeSink final : public SentenceSink {
public:
  FakeSink(FakeDevice& d, std::string path) : d_(d), path_(std::move(path)) {}
  OutputLayout Layout() override {
    std::lock_guard lock(d_.mutex);
    return d_.layout;
  }
  bool Put(PlayableSentence& s, const std::atomic<bool>& stop) override {
    if (path_.empty()) return d_.Play(s, stop) == 0;
    std::lock_guard lock(d_.mutex);
    d_.written.push_back({path_, s});
    return true;
  }
  std::string CreatedFile() const override { return path_; }

private:
  FakeDevice& d_;
  std::string path_;
};

class SlowSink final : public AudioSink {
public:
  SlowSink(std::unique_ptr<AudioSink> inner, std::chrono::milliseconds delay, std::atomic<int>& n)
      : inner_(std::move(inner)), delay_(delay), pauses_(n) {}
  std::string_view Backend() const override { return "slow"; }
  DeviceResult Open(const WaveFormat& f) override {
    std::this_thread::sleep_for(delay_);
    return inner_->Open(f);
  }
  std::size_t Writable() override { return inner_->Writable(); }
  DeviceResult Write(std::span<const std::uint8_t> b) override { return inner_->Write(b); }
  DeviceResult Finish() override { return inner_->Finish(); }
  bool Drained() override { return inner_->Drained(); }
  DeviceResult Position(std::uint64_t& f) override { return inner_->Position(f); }
  DeviceResult Pause() override {
    ++pauses_;
    return inner_->Pause();
  }
  DeviceResult Resume() override { return inner_->Resume(); }
  DeviceResult Reset() override { return inner_->Reset(); }
  void Wait(std::chrono::microseconds t) override { inner_->Wait(t); }
  void Wake() override { inner_->Wake(); }
  void Close() override { inner_->Close(); }

private:
  std::unique_ptr<AudioSink> inner_;
  std::chrono::milliseconds delay_;
  std::atomic<int>& pauses_;
};

} // namespace

std::unique_ptr<AudioSink> SlowOpeningAudio::MakeSink() {
  return std::make_unique<SlowSink>(make_null_sink(), delay_, pauses);
}

bool FakeDevice::HasNotify() {
  return static_cast<bool>(on_event);
}

void FakeDevice::Notify(const EventRecord& event) {
  {
    std::lock_guard lock(mutex);
    fired.push_back(event);
  }
  if (on_event) on_event(event);
}

std::unique_ptr<SentenceSink> FakeDevice::MakePlayback() {
  return std::make_unique<FakeSink>(*this, "");
}

std::unique_ptr<SentenceSink> FakeDevice::MakeFileWriter(const std::string& path) {
  return std::make_unique<FakeSink>(*this, path);
}

int FakeDevice::Play(PlayableSentence& sentence, const std::atomic<bool>& stop) {
  {
    std::unique_lock lock(mutex);
    if (stop.load()) return 0;
    ++sentences;
    if (keep_sentences) played.push_back(sentence);
    playing_ = true;
    reset_ = false;
  }
  changed_.notify_all();
  Notify({static_cast<std::uint32_t>(EventKind::kSoundStart), 0, 0, 0, {0, 0, 1, 0, 0}});
  for (const auto& e : sentence.events) {
    {
      std::unique_lock lock(mutex);
      changed_.wait(lock, [&] { return !paused_ || reset_; });
      if (reset_) break;
    }
    Notify(e);
  }
  {
    std::unique_lock lock(mutex);
    changed_.wait(lock, [&] { return (!hold_ && !paused_) || reset_; });
    playing_ = false;
  }
  changed_.notify_all();
  Notify({static_cast<std::uint32_t>(EventKind::kSoundEnd),
          static_cast<std::uint32_t>(sentence.bytes.size()),
          0,
          0,
          {0, 0, 1, 0, 0}});
  return 0;
}

bool FakeDevice::IsPlaying() {
  std::lock_guard lock(mutex);
  return playing_;
}

bool FakeDevice::Pause() {
  {
    std::lock_guard lock(mutex);
    if (!playing_) return false;
    paused_ = true;
  }
  changed_.notify_all();
  return true;
}

bool FakeDevice::Resume() {
  {
    std::lock_guard lock(mutex);
    if (!playing_) return false;
    ++resumes;
    paused_ = false;
  }
  changed_.notify_all();
  return true;
}

void FakeDevice::Stop() {
  {
    std::lock_guard lock(mutex);
    if (playing_) reset_ = true;
    paused_ = false;
  }
  changed_.notify_all();
}

void FakeDevice::OfferOutput(VNOutputHandle handle) {
  std::lock_guard lock(mutex);
  if (output == 0) output = handle;
}

void FakeDevice::RefreshCapabilities() {
  std::lock_guard lock(mutex);
  ++refreshes;
}

void FakeDevice::Hold() {
  std::lock_guard lock(mutex);
  hold_ = true;
}

void FakeDevice::Release() {
  {
    std::lock_guard lock(mutex);
    hold_ = false;
  }
  changed_.notify_all();
}

std::unique_ptr<TableUnits> SmallVoice(std::size_t frames) {
  auto units = std::make_unique<TableUnits>();
  std::int16_t level = 1000;
  for (const char* w : {"xin", "chao", "ban", "ba", "ca", "to", "mot", "hai"})
    units->Add(w, frames, level += 100);
  return units;
}

void VNTTS_CALL EventLog::Record(std::uintptr_t user, VNEvent event) {
  auto* log = reinterpret_cast<EventLog*>(user);
  std::lock_guard lock(log->mutex);
  log->events.emplace_back(event, std::chrono::steady_clock::now());
}

std::vector<std::uint32_t> EventLog::Kinds() {
  std::lock_guard lock(mutex);
  std::vector<std::uint32_t> kinds;
  for (const auto& [event, time] : events)
    kinds.push_back(event.kind);
  return kinds;
}

std::size_t EventLog::Count(std::uint32_t kind) {
  const auto kinds = Kinds();
  return static_cast<std::size_t>(std::count(kinds.begin(), kinds.end(), kind));
}

SpeechEngine& EngineFixture::Engine(std::unique_ptr<AudioSystem> audio, std::size_t word_frames) {
  EngineOverrides o;
  o.audio = std::move(audio);
  o.units = SmallVoice(word_frames);
  engine_ = std::make_unique<SpeechEngine>(messages_, DataFolder(folder_.path()), std::move(o));
  return *engine_;
}

void EngineFixture::WaitUntilPlaying() {
  for (int i = 0; i < 2500 && !engine_->IsPlaying(); ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
}

bool FakeDevice::WaitUntilPlaying(int ms) {
  std::unique_lock lock(mutex);
  return changed_.wait_for(lock, std::chrono::milliseconds(ms), [&] { return playing_; });
}

} // namespace vntts::testing
