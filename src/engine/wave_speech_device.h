#pragma once
// The speak driver's view of the engine's wave device: a finished sentence becomes the wave
// buffer's samples, its events join the client's in the buffer's event list for the length of
// one play, and speak-to-file writes or appends the buffer's WAV file.
#include <mutex>
#include <string>
#include <vector>

#include "audio/wave_device.h"
#include "engine/speech_device.h"

namespace vntts {

class WaveSpeechDevice final : public SpeechDevice {
public:
  WaveSpeechDevice(WaveDevice& device, Messages& messages) : device_(device), messages_(messages) {}

  OutputLayout Layout() override;
  bool HasNotify() override;
  void Notify(const EventRecord& event) override;
  int PlaySentence(const PlayableSentence& sentence) override;
  int WriteSentence(const PlayableSentence& sentence, const std::string& path) override;
  bool IsPlaying() override { return device_.IsPlaying(); }
  void Pause() override { device_.Pause(); }
  void Resume() override { device_.Resume(); }
  void Stop() override { device_.Stop(); }
  void OfferOutput(VNOutputHandle output) override;
  void RefreshCapabilities() override { device_.RefreshCapabilities(); }

  // The client's function and value, as SetNotifyFunc gives them.
  void SetClientNotify(VNNotifyProc notify, std::uintptr_t user);
  VNOutputHandle output() const;

private:
  WaveDevice& device_;
  Messages& messages_;
  mutable std::mutex mutex_;
  VNNotifyProc notify_ = nullptr;
  std::uintptr_t user_ = 0;
  VNOutputHandle output_ = 0;
};

// The public event struct and ours are the same nine words.
VNEvent ToPublicEvent(const EventRecord& e);
EventRecord FromPublicEvent(const VNEvent& e);

} // namespace vntts
