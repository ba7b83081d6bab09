// SPDX-License-Identifier: MIT
#pragma once
// The part of a benchmark's sound sink that never waits: it takes whatever it is given at once,
// has nothing to pause, drop or close, and wakes nobody. A sink built on it says what becomes
// of the bytes and how far the listener has got.
#include "audio/audio_sink.h"

namespace vntts::bench {

class InstantSink : public AudioSink {
public:
  std::size_t Writable() override { return std::size_t{1} << 30; }
  DeviceResult Finish() override { return 0; }
  DeviceResult Pause() override { return 0; }
  DeviceResult Resume() override { return 0; }
  DeviceResult Reset() override { return 0; }
  void Wait(std::chrono::microseconds) override {}
  void Wake() override {}
  void Close() override {}
};

} // namespace vntts::bench
