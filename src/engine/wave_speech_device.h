// SPDX-License-Identifier: MIT
#pragma once
// The speak driver's view of the engine's wave device. A played sentence becomes the wave
// buffer's samples (GetDataBuf shows the last one) and plays with its own events beside the
// client's; speak-to-file writes or appends a WAV file. The client's notification target lives
// here too: every event reads it afresh, so a changed or cleared target counts from the moment
// SetNotify returns, and a change waits (bounded) for the old function to come back, so that a
// host may free what that function used.
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>

#include "audio/wave_device.h"
#include "engine/speech_device.h"

namespace vntts {

class WaveSpeechDevice final : public SpeechDevice {
public:
  WaveSpeechDevice(WaveDevice& device, Messages& messages);

  bool HasNotify() override;
  void Notify(const EventRecord& event) override;
  std::unique_ptr<SentenceSink> MakePlayback() override;
  std::unique_ptr<SentenceSink> MakeFileWriter(const std::string& path) override;
  bool IsPlaying() override { return device_.IsPlaying(); }
  bool Pause() override { return device_.Pause() == device_result::kOk; }
  bool Resume() override { return device_.Resume() == device_result::kOk; }
  void Stop() override { device_.Stop(); }
  void OfferOutput(VNOutputHandle output) override;
  void RefreshCapabilities() override { device_.RefreshCapabilities(); }
  std::uint32_t Pitch() override {
    return device_.PitchRangeMaximum() ? device_.GetPitch() : 0x10000;
  }

  // How long a change of target waits for a call of the old one running on another thread: the
  // same bound as a speak call's wait for interrupted speech.
  static constexpr std::chrono::milliseconds kOldCallWait{1000};

  // The client's function and value, as SetNotifyFunc gives them. No call of the old function
  // begins after this returns. When the target changes, a call of the old one that is running
  // on another thread has returned too, unless it took longer than kOldCallWait; called from
  // inside a notification or on a worker thread (where the running call may be the caller's
  // own, or may wait for it) it never waits. Returns false when the wait ran out.
  bool SetClientNotify(VNNotifyProc notify, std::uintptr_t user);
  VNOutputHandle output() const;
  // The host closed this handle: when it is the one held, speech goes back to the default
  // output and the next ...Ex call's handle is taken.
  void ForgetOutput(VNOutputHandle output);

private:
  WaveDevice& device_;
  Messages& messages_;
  mutable std::mutex mutex_;
  std::condition_variable call_returned_;
  VNNotifyProc notify_ = nullptr;
  std::uintptr_t user_ = 0;
  // Each change of target starts a new generation; calls running from an older one are old.
  std::uint64_t generation_ = 0;
  int running_calls_ = 0;
  int old_calls_ = 0;
  VNOutputHandle output_ = 0;
};

// The public event struct and ours are the same nine words.
VNEvent ToPublicEvent(const EventRecord& e);
EventRecord FromPublicEvent(const VNEvent& e);

} // namespace vntts
