// SPDX-License-Identifier: MIT
#pragma once
// What the speak driver needs from the engine's wave device: the client's notification target,
// the sinks a speech plays or writes through, and the controls that reach a playing sentence
// from the client's thread. The engine adapts its wave device to this; tests put a fake behind
// it.
#include <cstdint>
#include <memory>
#include <string>

#include "audio/event_record.h"
#include "engine/sentence_sink.h"
#include "vntts/vntts.h"

namespace vntts {

class SpeechDevice {
public:
  virtual ~SpeechDevice() = default;

  // The client's function; Notify does nothing without one.
  virtual bool HasNotify() = 0;
  virtual void Notify(const EventRecord& event) = 0;

  // Plays sentences on the device: each returns when heard or stopped, its events firing with
  // the client's own events of the device's list.
  virtual std::unique_ptr<SentenceSink> MakePlayback() = 0;
  // Writes the first sentence as a new WAV file at path (appends when one is there) and
  // appends the others. The device's event list is emptied around each sentence.
  virtual std::unique_ptr<SentenceSink> MakeFileWriter(const std::string& path) = 0;

  // True while a sentence is in the device (also while it is paused or still opening).
  virtual bool IsPlaying() = 0;
  // True when the pause or resume took effect.
  virtual bool Pause() = 0;
  virtual bool Resume() = 0;
  virtual void Stop() = 0;

  // The ...Ex calls' output; kept only when the device holds none yet (0 offers nothing).
  virtual void OfferOutput(VNOutputHandle output) = 0;
  // Reads the default output's capabilities again (format and pitch checks use them).
  virtual void RefreshCapabilities() = 0;
  // The pitch speech is converted with, in 16.16 fixed point (0x10000: unchanged).
  virtual std::uint32_t Pitch() { return 0x10000; }
};

} // namespace vntts
