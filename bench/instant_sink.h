// SPDX-License-Identifier: MIT
#pragma once
// The part of a benchmark's sound sink that never waits: it takes whatever it is given at once,
// has nothing to pause, drop or close, and wakes nobody. A sink built on it says what becomes
// of the bytes and how far the listener has got.
#include "audio/audio_sink.h"

namespace vntts::bench {

class InstantSink : public AudioSink {
public:
  std::size_t writable() override { return std::size_t{1} << 30; }
  DeviceResult finish() override { return 0; }
  DeviceResult pause() override { return 0; }
  DeviceResult resume() override { return 0; }
  DeviceResult reset() override { return 0; }
  void wait(std::chrono::microseconds) override {}
  void wake() override {}
  void close() override {}
};

} // namespace vntts::bench
