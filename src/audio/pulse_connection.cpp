// SPDX-License-Identifier: MIT
#include "audio/pulse_connection.h"

#include <algorithm>

namespace vntts {
namespace {

void OnContextState(pa_context*, void* loop) {
  pa_threaded_mainloop_signal(static_cast<pa_threaded_mainloop*>(loop), 0);
}

} // namespace

DeviceResult PulseErrorToResult(int pa_error) {
  switch (pa_error) {
  case PA_OK:
    return device_result::kOk;
  case PA_ERR_NOENTITY:
    return device_result::kBadDeviceId;
  case PA_ERR_BUSY:
  case PA_ERR_ACCESS:
  case PA_ERR_EXIST:
    return device_result::kAllocated;
  case PA_ERR_BADSTATE:
  case PA_ERR_NODATA:
    return device_result::kInvalidHandle;
  case PA_ERR_CONNECTIONREFUSED:
  case PA_ERR_CONNECTIONTERMINATED:
  case PA_ERR_KILLED:
  case PA_ERR_INVALIDSERVER:
  case PA_ERR_MODINITFAILED:
    return device_result::kNoDriver;
  case PA_ERR_TOOLARGE:
    return device_result::kNoMemory;
  case PA_ERR_INVALID:
  case PA_ERR_NOTSUPPORTED:
    return device_result::kBadFormat;
  default:
    return device_result::kError;
  }
}

std::unique_ptr<PulseConnection> PulseConnection::Connect() {
  std::unique_ptr<PulseConnection> c(new PulseConnection());
  c->loop_ = pa_threaded_mainloop_new();
  if (!c->loop_) return nullptr;
  c->context_ = pa_context_new(pa_threaded_mainloop_get_api(c->loop_), "vntts");
  if (!c->context_) return nullptr;
  pa_context_set_state_callback(c->context_, OnContextState, c->loop_);
  if (pa_context_connect(c->context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) return nullptr;
  if (pa_threaded_mainloop_start(c->loop_) < 0) return nullptr;
  Lock lock(*c);
  for (;;) {
    const pa_context_state_t state = pa_context_get_state(c->context_);
    if (state == PA_CONTEXT_READY) return c;
    if (!PA_CONTEXT_IS_GOOD(state)) break;
    pa_threaded_mainloop_wait(c->loop_);
  }
  return nullptr; // the destructor runs after the lock is released
}

PulseConnection::~PulseConnection() {
  if (loop_) pa_threaded_mainloop_stop(loop_);
  if (context_) {
    pa_context_disconnect(context_);
    pa_context_unref(context_);
  }
  if (loop_) pa_threaded_mainloop_free(loop_);
}

bool PulseConnection::Alive() const {
  return PA_CONTEXT_IS_GOOD(pa_context_get_state(context_));
}

DeviceResult PulseConnection::LastError() const {
  const DeviceResult r = PulseErrorToResult(pa_context_errno(context_));
  return r == device_result::kOk ? device_result::kError : r;
}

bool PulseConnection::Complete(pa_operation* op) const {
  if (!op) return false;
  while (pa_operation_get_state(op) == PA_OPERATION_RUNNING)
    pa_threaded_mainloop_wait(loop_);
  pa_operation_unref(op);
  return true;
}

DeviceResult PulseConnection::WaitUntilReady(pa_stream*& stream) const {
  for (;;) {
    const pa_stream_state_t state = pa_stream_get_state(stream);
    if (state == PA_STREAM_READY) return device_result::kOk;
    if (!PA_STREAM_IS_GOOD(state)) {
      const DeviceResult r = LastError();
      Release(stream, false);
      return r;
    }
    pa_threaded_mainloop_wait(loop_);
  }
}

std::optional<pa_sample_spec> PulseConnection::SampleSpec(const WaveFormat& format) {
  if (!format.DevicePcm()) return std::nullopt;
  pa_sample_spec spec{};
  spec.format = format.bits_per_sample == 8    ? PA_SAMPLE_U8
                : format.bits_per_sample == 16 ? PA_SAMPLE_S16LE
                                               : PA_SAMPLE_INVALID;
  spec.rate = format.samples_per_second;
  spec.channels = static_cast<std::uint8_t>(std::min<unsigned>(format.channels, 255));
  if (format.channels > PA_CHANNELS_MAX || !pa_sample_spec_valid(&spec)) return std::nullopt;
  return spec;
}

void PulseConnection::Release(pa_stream*& stream, bool disconnect) {
  if (!stream) return;
  pa_stream_set_state_callback(stream, nullptr, nullptr);
  pa_stream_set_write_callback(stream, nullptr, nullptr);
  pa_stream_set_read_callback(stream, nullptr, nullptr);
  if (disconnect) pa_stream_disconnect(stream);
  pa_stream_unref(stream);
  stream = nullptr;
}

} // namespace vntts
