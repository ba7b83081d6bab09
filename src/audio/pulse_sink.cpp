// SPDX-License-Identifier: MIT
// Playback through a PulseAudio server (the default backend).
#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>

#include "audio/audio_system.h"
#include "audio/pulse_connection.h"

namespace vntts {
namespace {

// The volume is applied to samples as they are written, so what is queued ahead of the
// listener is what a volume change waits behind: 40 ms keeps it heard within 50 ms. The server
// asks for 20 ms at a time, which keeps the wake-ups few.
constexpr pa_usec_t kTargetLatency = 40'000;
constexpr pa_usec_t kRequestSize = 20'000;

class PulseSink final : public AudioSink {
public:
  PulseSink(std::unique_ptr<PulseConnection> connection, std::string device)
      : connection_(std::move(connection)), device_(std::move(device)) {}
  ~PulseSink() override { Close(); }

  std::string_view Backend() const override { return "pulse"; }

  DeviceResult Open(const WaveFormat& format) override {
    Close();
    const std::optional<pa_sample_spec> valid = PulseConnection::SampleSpec(format);
    if (!valid) return device_result::kBadFormat;
    const pa_sample_spec spec = *valid;
    rate_ = format.samples_per_second;
    frame_bytes_ = format.FrameBytes();
    {
      std::lock_guard lock(mutex_);
      drained_ = was_reset_ = signalled_ = false;
      written_frames_ = last_position_ = 0;
    }

    PulseConnection::Lock lock(*connection_);
    if (!connection_->Alive()) return device_result::kNoDriver;
    stream_ = pa_stream_new(connection_->Context(), "vntts", &spec, nullptr);
    if (!stream_) return connection_->LastError();
    pa_stream_set_state_callback(stream_, OnState, this);
    pa_stream_set_write_callback(stream_, OnRequest, this);
    pa_buffer_attr attr{};
    attr.maxlength = static_cast<std::uint32_t>(-1);
    attr.tlength = static_cast<std::uint32_t>(pa_usec_to_bytes(kTargetLatency, &spec));
    attr.prebuf = static_cast<std::uint32_t>(-1);
    attr.minreq = static_cast<std::uint32_t>(pa_usec_to_bytes(kRequestSize, &spec));
    attr.fragsize = static_cast<std::uint32_t>(-1);
    const auto flags = static_cast<pa_stream_flags_t>(
        PA_STREAM_INTERPOLATE_TIMING | PA_STREAM_AUTO_TIMING_UPDATE | PA_STREAM_ADJUST_LATENCY);
    if (pa_stream_connect_playback(stream_, device_.empty() ? nullptr : device_.c_str(), &attr,
                                   flags, nullptr, nullptr) < 0)
      return FailOpen();
    return connection_->WaitUntilReady(stream_);
  }

  std::size_t Writable() override {
    PulseConnection::Lock lock(*connection_);
    if (!stream_ || pa_stream_get_state(stream_) != PA_STREAM_READY) return 0;
    const std::size_t n = pa_stream_writable_size(stream_);
    return n == static_cast<std::size_t>(-1) ? 0 : n - n % frame_bytes_;
  }

  DeviceResult Write(std::span<const std::uint8_t> bytes) override {
    PulseConnection::Lock lock(*connection_);
    if (!stream_) return device_result::kInvalidHandle;
    if (pa_stream_write(stream_, bytes.data(), bytes.size(), nullptr, 0, PA_SEEK_RELATIVE) < 0)
      return connection_->LastError();
    std::lock_guard guard(mutex_);
    written_frames_ += bytes.size() / frame_bytes_;
    return device_result::kOk;
  }

  DeviceResult Finish() override {
    PulseConnection::Lock lock(*connection_);
    if (!stream_) return device_result::kInvalidHandle;
    pa_operation* op = pa_stream_drain(stream_, OnDrained, this);
    if (!op) return connection_->LastError();
    pa_operation_unref(op);
    return device_result::kOk;
  }

  bool Drained() override {
    std::lock_guard lock(mutex_);
    return drained_ || was_reset_;
  }

  DeviceResult Position(std::uint64_t& frames) override {
    PulseConnection::Lock lock(*connection_);
    if (!stream_ || !PA_STREAM_IS_GOOD(pa_stream_get_state(stream_)))
      return device_result::kInvalidHandle;
    pa_usec_t usec = 0;
    std::lock_guard guard(mutex_);
    // Before the first timing report there is nothing heard yet.
    if (pa_stream_get_time(stream_, &usec) == 0) {
      const std::uint64_t heard = usec * rate_ / 1'000'000;
      last_position_ = std::max(last_position_, std::min(heard, written_frames_));
    }
    frames = last_position_;
    return device_result::kOk;
  }

  DeviceResult Pause() override { return Cork(true); }
  DeviceResult Resume() override { return Cork(false); }

  DeviceResult Reset() override {
    {
      PulseConnection::Lock lock(*connection_);
      if (!stream_) return device_result::kInvalidHandle;
      if (pa_operation* op = pa_stream_flush(stream_, nullptr, nullptr)) pa_operation_unref(op);
    }
    {
      std::lock_guard guard(mutex_);
      was_reset_ = true;
    }
    Wake();
    return device_result::kOk;
  }

  void Wait(std::chrono::microseconds timeout) override {
    std::unique_lock lock(mutex_);
    cv_.wait_for(lock, timeout, [&] { return signalled_; });
    signalled_ = false;
  }

  void Wake() override { Signal(); }

  void Close() override {
    PulseConnection::Lock lock(*connection_);
    PulseConnection::Release(stream_, true);
  }

private:
  DeviceResult FailOpen() {
    const DeviceResult r = connection_->LastError();
    PulseConnection::Release(stream_, false);
    return r;
  }

  DeviceResult Cork(bool corked) {
    {
      PulseConnection::Lock lock(*connection_);
      if (!stream_) return device_result::kInvalidHandle;
      if (!connection_->Complete(
              pa_stream_cork(stream_, corked ? 1 : 0, OnSuccess, connection_->Loop())))
        return connection_->LastError();
    }
    Signal();
    return device_result::kOk;
  }

  void Signal() {
    {
      std::lock_guard lock(mutex_);
      signalled_ = true;
    }
    cv_.notify_all();
  }

  static void OnState(pa_stream*, void* self) {
    auto* sink = static_cast<PulseSink*>(self);
    pa_threaded_mainloop_signal(sink->connection_->Loop(), 0);
    sink->Signal();
  }
  static void OnRequest(pa_stream*, std::size_t, void* self) {
    static_cast<PulseSink*>(self)->Signal();
  }
  static void OnDrained(pa_stream*, int, void* self) {
    auto* sink = static_cast<PulseSink*>(self);
    {
      std::lock_guard lock(sink->mutex_);
      sink->drained_ = true;
    }
    sink->Signal();
  }
  static void OnSuccess(pa_stream*, int, void* loop) {
    pa_threaded_mainloop_signal(static_cast<pa_threaded_mainloop*>(loop), 0);
  }

  std::unique_ptr<PulseConnection> connection_;
  std::string device_;
  pa_stream* stream_ = nullptr;
  std::uint32_t rate_ = 1;
  std::uint32_t frame_bytes_ = 1;

  // Guards what the server's thread reports back; taken after the loop lock, never before.
  std::mutex mutex_;
  std::condition_variable cv_;
  bool signalled_ = false;
  bool drained_ = false;
  bool was_reset_ = false;
  std::uint64_t written_frames_ = 0;
  std::uint64_t last_position_ = 0;
};

} // namespace

std::unique_ptr<AudioSink> MakePulseSink(const std::string& device) {
  auto connection = PulseConnection::Connect();
  if (!connection) return nullptr;
  return std::make_unique<PulseSink>(std::move(connection), device);
}

} // namespace vntts
