#pragma once
// What the speak driver needs from the engine's wave device: the output layout, the client's
// notification target, the event list, synchronous playing with events, and the controls that
// reach a playing sentence from the client's thread. The engine adapts its wave device to this;
// tests put a fake behind it.
#include <cstdint>
#include <string>

#include "audio/event_record.h"
#include "dsp/device_conversion.h"
#include "vntts/vntts.h"

namespace vntts {

struct PlayableSentence;

class SpeechDevice {
public:
  virtual ~SpeechDevice() = default;

  // The channels, rate and bits that sentences are converted to.
  virtual OutputLayout Layout() = 0;

  // The client's function; Notify does nothing without one.
  virtual bool HasNotify() = 0;
  virtual void Notify(const EventRecord& event) = 0;

  // Plays the sentence on the calling thread and returns when it was heard or stopped. The
  // sentence's events fire with the client's own events of the device's list; the sentence's
  // events are gone from the list afterwards. 0, or a device error after it was reported.
  virtual int PlaySentence(const PlayableSentence& sentence) = 0;

  // Writes the sentence to a new WAV file at path, or appends it to the one that is there.
  // The device's event list is emptied before and after, so a file gets no events. 0 or 1.
  virtual int WriteSentence(const PlayableSentence& sentence, const std::string& path) = 0;

  // True while a sentence is in the device (also while it is paused).
  virtual bool IsPlaying() = 0;
  virtual void Pause() = 0;
  virtual void Resume() = 0;
  virtual void Stop() = 0;

  // The ...Ex calls' output; kept only when the device holds none yet (0 offers nothing).
  virtual void OfferOutput(VNOutputHandle output) = 0;
  // Reads the default output's capabilities again (format and pitch checks use them).
  virtual void RefreshCapabilities() = 0;
};

} // namespace vntts
