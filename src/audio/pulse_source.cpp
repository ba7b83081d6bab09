// SPDX-License-Identifier: MIT
// Capture through a PulseAudio record stream.
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "audio/audio_system.h"
#include "audio/capture_buffer.h"
#include "audio/pulse_connection.h"

namespace vntts {
namespace {

constexpr pa_usec_t kFragment = 50'000;

class PulseSource final : public AudioSource {
public:
  PulseSource(std::unique_ptr<PulseConnection> connection, std::string device)
      : connection_(std::move(connection)), device_(std::move(device)) {}
  ~PulseSource() override { Close(); }

  std::string_view Backend() const override { return "pulse"; }

  DeviceResult Open(const WaveFormat& format) override {
    Close();
    const std::optional<pa_sample_spec> valid = PulseConnection::SampleSpec(format);
    if (!valid) return device_result::kBadFormat;
    const pa_sample_spec spec = *valid;
    captured_.Reset();
    silence_ = format.bits_per_sample == 8 ? 0x80 : 0;
    PulseConnection::Lock lock(*connection_);
    if (!connection_->Alive()) return device_result::kNoDriver;
    stream_ = pa_stream_new(connection_->Context(), "vntts record", &spec, nullptr);
    if (!stream_) return connection_->LastError();
    pa_stream_set_state_callback(stream_, OnState, this);
    pa_stream_set_read_callback(stream_, OnData, this);
    pa_buffer_attr attr{};
    attr.maxlength = static_cast<std::uint32_t>(-1);
    attr.fragsize = static_cast<std::uint32_t>(pa_usec_to_bytes(kFragment, &spec));
    const auto flags =
        static_cast<pa_stream_flags_t>(PA_STREAM_START_CORKED | PA_STREAM_ADJUST_LATENCY);
    if (pa_stream_connect_record(stream_, device_.empty() ? nullptr : device_.c_str(), &attr,
                                 flags) < 0)
      return FailOpen();
    return connection_->WaitUntilReady(stream_);
  }

  DeviceResult Start() override { return Run(true); }
  DeviceResult Pause() override { return Run(false); }
  DeviceResult Resume() override { return Run(true); }
  DeviceResult Stop() override { return Run(false); }

  std::size_t Captured() override { return captured_.size(); }
  bool WaitForBytes(std::size_t bytes, std::chrono::milliseconds timeout) override {
    return captured_.WaitFor(bytes, timeout);
  }
  std::vector<std::uint8_t> Take() override { return captured_.Take(); }

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

  // Corks or uncorks; data that still arrives while corked is not kept.
  DeviceResult Run(bool capture) {
    PulseConnection::Lock lock(*connection_);
    if (!stream_) return device_result::kInvalidHandle;
    captured_.SetCapturing(capture);
    if (!connection_->Complete(
            pa_stream_cork(stream_, capture ? 0 : 1, OnSuccess, connection_->Loop())))
      return connection_->LastError();
    return device_result::kOk;
  }

  static void OnState(pa_stream*, void* self) {
    pa_threaded_mainloop_signal(static_cast<PulseSource*>(self)->connection_->Loop(), 0);
  }
  static void OnSuccess(pa_stream*, int, void* loop) {
    pa_threaded_mainloop_signal(static_cast<pa_threaded_mainloop*>(loop), 0);
  }
  static void OnData(pa_stream* stream, std::size_t, void* self) {
    auto* source = static_cast<PulseSource*>(self);
    const void* bytes = nullptr;
    std::size_t count = 0;
    while (pa_stream_readable_size(stream) > 0) {
      if (pa_stream_peek(stream, &bytes, &count) < 0 || count == 0) break;
      // A hole (null bytes) is silence.
      source->captured_.Append(static_cast<const std::uint8_t*>(bytes), count, source->silence_);
      pa_stream_drop(stream);
    }
  }

  std::unique_ptr<PulseConnection> connection_;
  std::string device_;
  pa_stream* stream_ = nullptr;
  std::uint8_t silence_ = 0;
  CaptureBuffer captured_;
};

} // namespace

std::unique_ptr<AudioSource> MakePulseSource(const std::string& device) {
  auto connection = PulseConnection::Connect();
  if (!connection) return nullptr;
  return std::make_unique<PulseSource>(std::move(connection), device);
}

} // namespace vntts
