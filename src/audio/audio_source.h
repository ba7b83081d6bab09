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
  virtual std::string_view backend() const = 0;
  // Sets up capture in this format without starting it.
  virtual DeviceResult open(const WaveFormat& format) = 0;
  virtual DeviceResult start() = 0;
  virtual DeviceResult pause() = 0;
  virtual DeviceResult resume() = 0;
  // Stops capturing; what was captured stays available.
  virtual DeviceResult stop() = 0;
  // Bytes captured so far.
  virtual std::size_t captured() = 0;
  // Waits until at least this many bytes were captured, or the time ran out.
  virtual bool wait_for_bytes(std::size_t bytes, std::chrono::milliseconds timeout) = 0;
  // Hands over everything captured and empties the source.
  virtual std::vector<std::uint8_t> take() = 0;
  virtual void close() = 0;
};

} // namespace vntts
