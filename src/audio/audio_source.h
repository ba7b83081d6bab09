// SPDX-License-Identifier: MIT
#pragma once
// One capture stream. Captured bytes collect inside the source until taken.
#include <chrono>
#include <cstdint>
#include <string_view>
#include <vector>

#include "audio/device_result.h"
#include "audio/wave_format.h"

namespace vntts {

class AudioSource {
public:
  virtual ~AudioSource() = default;
  virtual std::string_view Backend() const = 0;
  // Sets up capture in this format without starting it.
  virtual DeviceResult Open(const WaveFormat& format) = 0;
  virtual DeviceResult Start() = 0;
  virtual DeviceResult Pause() = 0;
  virtual DeviceResult Resume() = 0;
  // Stops capturing; what was captured stays available.
  virtual DeviceResult Stop() = 0;
  // Bytes captured so far.
  virtual std::size_t Captured() = 0;
  // Waits until at least this many bytes were captured, or the time ran out.
  virtual bool WaitForBytes(std::size_t bytes, std::chrono::milliseconds timeout) = 0;
  // Hands over everything captured and empties the source.
  virtual std::vector<std::uint8_t> Take() = 0;
  virtual void Close() = 0;
};

} // namespace vntts
