// SPDX-License-Identifier: MIT
#pragma once
// One playback stream on a sound system. The wave device feeds it in slices as it asks for
// them and reads back how far the listener has heard. Every method may be called from any
// thread; Wait() blocks only the caller.
#include <chrono>
#include <cstdint>
#include <span>
#include <string_view>

#include "audio/device_result.h"
#include "audio/wave_format.h"

namespace vntts {

class AudioSink {
public:
  virtual ~AudioSink() = default;
  virtual std::string_view Backend() const = 0;

  // Starts a stream in this format (the sink converts nothing: 8-bit unsigned or 16-bit
  // signed little-endian, interleaved).
  virtual DeviceResult Open(const WaveFormat& format) = 0;
  // Bytes that Write() accepts now without blocking.
  virtual std::size_t Writable() = 0;
  virtual DeviceResult Write(std::span<const std::uint8_t> bytes) = 0;
  // Nothing more follows: play out what is queued.
  virtual DeviceResult Finish() = 0;
  // True once everything written before Finish() has been heard, or after Reset().
  virtual bool Drained() = 0;
  // Sample frames heard since open, by the sound system's own clock; stands still while
  // paused and never goes back.
  virtual DeviceResult Position(std::uint64_t& frames) = 0;
  virtual DeviceResult Pause() = 0;
  virtual DeviceResult Resume() = 0;
  // Drops what is queued and ends the stream early; Drained() becomes true.
  virtual DeviceResult Reset() = 0;
  // Returns when the sink wants data, its state changed, Wake() was called, or the time ran
  // out, whichever comes first.
  virtual void Wait(std::chrono::microseconds timeout) = 0;
  virtual void Wake() = 0;
  virtual void Close() = 0;
};

} // namespace vntts
