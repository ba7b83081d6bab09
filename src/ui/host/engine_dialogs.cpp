// SPDX-License-Identifier: MIT
#include "ui/host/engine_dialogs.h"

#include "audio/wave_device.h"

namespace vntts::ui {

EngineDialogs::EngineDialogs(SpeechEngine& engine)
    : engine_(engine), speaker_(engine), recorder_(engine), tools_(engine) {}

EngineDialogs::~EngineDialogs() = default;

// ---- Speaker ---------------------------------------------------------------------------------

EngineDialogs::Speaker::~Speaker() {
  Detach();
  if (watcher_.joinable()) {
    engine_.Stop();
    watcher_.join();
  }
  std::lock_guard lock(mutex_);
  if (relay_installed_) engine_.SetNotify(nullptr, 0);
}

OutputFormat EngineDialogs::Speaker::Format() {
  const WaveInfo info = engine_.GetWaveInfo();
  return {info.channels, info.samples_per_second, info.bits_per_sample};
}

void EngineDialogs::Speaker::SetSlowness(std::uint32_t slowness) {
  // The engine's public rate is the range's top minus the stored value.
  const SettingRange range = engine_.GetRateSpeechRange();
  engine_.SetRateSpeech(range.minimum + range.maximum - slowness);
}

void EngineDialogs::Speaker::Speak(std::string internal_text, std::uint32_t text_base,
                                   std::uint32_t speech, std::shared_ptr<SpeechListener> listener) {
  {
    std::lock_guard lock(mutex_);
    listener_ = std::move(listener);
    speech_ = speech;
    relay_installed_ = true;
  }
  // The window becomes the engine's notification target, in place of any the host had set.
  engine_.SetNotify(&Speaker::Relay, reinterpret_cast<std::uintptr_t>(this));
  engine_.SpeakFrom(internal_text, text_base);
  // The previous watcher has seen its speech end: starting this one ended it.
  if (watcher_.joinable()) watcher_.join();
  watcher_ = std::thread([this, speech] {
    engine_.WaitUntilDone();
    std::uint32_t current = 0;
    if (auto target = Listener(&current); target && current == speech)
      target->OnSpeechEnded(speech);
  });
}

void EngineDialogs::Speaker::Detach() {
  std::lock_guard lock(mutex_);
  listener_.reset();
}

std::shared_ptr<SpeechListener> EngineDialogs::Speaker::Listener(std::uint32_t* speech) {
  std::lock_guard lock(mutex_);
  *speech = speech_;
  return listener_;
}

void VNTTS_CALL EngineDialogs::Speaker::Relay(std::uintptr_t self, VNEvent e) {
  std::uint32_t speech = 0;
  if (auto listener = reinterpret_cast<Speaker*>(self)->Listener(&speech))
    listener->OnSpeechEvent(speech, {e.kind, e.text_start, e.text_length, e.param[0], e.param[1]});
}

// ---- Recorder --------------------------------------------------------------------------------

int EngineDialogs::Recorder::Start() {
  return static_cast<int>(engine_.wave_device().StartRecording());
}
int EngineDialogs::Recorder::Pause() {
  return static_cast<int>(engine_.wave_device().PauseRecording());
}
int EngineDialogs::Recorder::Resume() {
  return static_cast<int>(engine_.wave_device().ResumeRecording());
}
int EngineDialogs::Recorder::Stop() {
  return static_cast<int>(engine_.wave_device().StopRecording());
}
int EngineDialogs::Recorder::Save(const std::string& path) {
  return static_cast<int>(engine_.wave_device().SaveRecording(path));
}
void EngineDialogs::Recorder::Close() {
  engine_.wave_device().CloseRecording();
}

} // namespace vntts::ui
