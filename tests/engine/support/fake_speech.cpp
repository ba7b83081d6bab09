#include "fake_speech.h"

#include <chrono>

namespace vntts::testing {

OutputLayout FakeDevice::Layout() {
  std::lock_guard lock(mutex);
  return layout;
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

int FakeDevice::PlaySentence(const PlayableSentence& sentence) {
  std::vector<EventRecord> events;
  {
    std::unique_lock lock(mutex);
    ++sentences;
    if (keep_sentences) played.push_back(sentence);
    playing_ = true;
    reset_ = false;
    events = sentence.events;
    for (const auto& e : client_events) // client events join the sentence's, newest first
      events.insert(events.begin(), e);
  }
  changed_.notify_all();
  Notify({static_cast<std::uint32_t>(EventKind::SoundStart), 0, 0, 0, {0, 0, 1, 0, 0}});
  for (const auto& e : events) {
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
  Notify({static_cast<std::uint32_t>(EventKind::SoundEnd),
          static_cast<std::uint32_t>(sentence.bytes.size()),
          0,
          0,
          {0, 0, 1, 0, 0}});
  return 0;
}

int FakeDevice::WriteSentence(const PlayableSentence& sentence, const std::string& path) {
  std::lock_guard lock(mutex);
  written.push_back({path, sentence});
  return 0;
}

bool FakeDevice::IsPlaying() {
  std::lock_guard lock(mutex);
  return playing_;
}

void FakeDevice::Pause() {
  {
    std::lock_guard lock(mutex);
    ++pauses;
    paused_ = true;
  }
  changed_.notify_all();
}

void FakeDevice::Resume() {
  {
    std::lock_guard lock(mutex);
    ++resumes;
    paused_ = false;
  }
  changed_.notify_all();
}

void FakeDevice::Stop() {
  {
    std::lock_guard lock(mutex);
    ++stops;
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

bool FakeDevice::WaitUntilPlaying(int ms) {
  std::unique_lock lock(mutex);
  return changed_.wait_for(lock, std::chrono::milliseconds(ms), [&] { return playing_; });
}

} // namespace vntts::testing
