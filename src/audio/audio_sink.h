#pragma once
// One playback stream on a sound system. The wave device feeds it in slices as it asks for
// them and reads back how far the listener has heard. Every method may be called from any
// thread; wait() blocks only the caller.
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
  virtual std::string_view backend() const = 0;

  // Starts a stream in this format (the sink converts nothing: 8-bit unsigned or 16-bit
  // signed little-endian, interleaved).
  virtual DeviceResult open(const WaveFormat& format) = 0;
  // Bytes that write() accepts now without blocking.
  virtual std::size_t writable() = 0;
  virtual DeviceResult write(std::span<const std::uint8_t> bytes) = 0;
  // Nothing more follows: play out what is queued.
  virtual DeviceResult finish() = 0;
  // True once everything written before finish() has been heard, or after reset().
  virtual bool drained() = 0;
  // Sample frames heard since open, by the sound system's own clock; stands still while
  // paused and never goes back.
  virtual DeviceResult position(std::uint64_t& frames) = 0;
  virtual DeviceResult pause() = 0;
  virtual DeviceResult resume() = 0;
  // Drops what is queued and ends the stream early; drained() becomes true.
  virtual DeviceResult reset() = 0;
  // Returns when the sink wants data, its state changed, wake() was called, or the time ran
  // out, whichever comes first.
  virtual void wait(std::chrono::microseconds timeout) = 0;
  virtual void wake() = 0;
  virtual void close() = 0;
};

} // namespace vntts
