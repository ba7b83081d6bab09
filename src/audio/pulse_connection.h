// SPDX-License-Identifier: MIT
#pragma once
// A connection to a PulseAudio server on its own threaded main loop, shared by the pulse
// sink and source. Callers hold the loop lock around every libpulse call.
#include <memory>
#include <optional>

#include <pulse/pulseaudio.h>

#include "audio/device_result.h"
#include "audio/wave_format.h"

namespace vntts {

class PulseConnection {
public:
  // Null when no server answers (nothing is spawned).
  static std::unique_ptr<PulseConnection> Connect();
  ~PulseConnection();
  PulseConnection(const PulseConnection&) = delete;
  PulseConnection& operator=(const PulseConnection&) = delete;

  pa_threaded_mainloop* Loop() const { return loop_; }
  pa_context* Context() const { return context_; }
  bool Alive() const;
  // The last failure of the context, as a device result.
  DeviceResult LastError() const;
  // Waits (lock held) until the operation finished, then drops it. False for a null one.
  bool Complete(pa_operation* op) const;
  // Waits (lock held) until a just-connected stream is ready. On failure the stream is
  // released and the context's error returned.
  DeviceResult WaitUntilReady(pa_stream*& stream) const;

  // PulseAudio's description of our PCM formats (8-bit unsigned, 16-bit signed); none for a
  // format it cannot play or record.
  static std::optional<pa_sample_spec> SampleSpec(const WaveFormat& format);
  // Detaches our callbacks, disconnects when asked, drops the stream and nulls the pointer
  // (lock held).
  static void Release(pa_stream*& stream, bool disconnect);

  class Lock {
  public:
    explicit Lock(const PulseConnection& c) : loop_(c.loop_) { pa_threaded_mainloop_lock(loop_); }
    ~Lock() { pa_threaded_mainloop_unlock(loop_); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

  private:
    pa_threaded_mainloop* loop_;
  };

private:
  PulseConnection() = default;
  pa_threaded_mainloop* loop_ = nullptr;
  pa_context* context_ = nullptr;
};

DeviceResult PulseErrorToResult(int pa_error);

} // namespace vntts
